#include "session.hpp"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <iostream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <utility>

#include "commands/commands.hpp"
#include "interactive/interrupt.hpp"
#include "text/script_scan.hpp"

namespace shell {
namespace {

constexpr std::size_t most_files = 50;  // that read each other

class stopwatch {
 public:
  double seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count(); }

  // "0.012 s"
  std::string text() const {
    const std::string digits = std::to_string(seconds());
    return digits.substr(0, digits.size() - 3) + " s";
  }

 private:
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

std::string counted_rows(std::uint64_t count) { return std::to_string(count) + (count == 1 ? " row" : " rows"); }

std::string read_all(std::istream& input) {
  return {std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
}

std::string read_file(const std::string& path) {
  if (path == "-") return read_all(std::cin);
  std::ifstream input(path, std::ios::binary);
  if (!input) throw std::runtime_error(path + " cannot be opened");
  std::string text = read_all(input);
  if (input.bad()) throw std::runtime_error(path + " cannot be read");
  return text;
}

// The rows of EXPLAIN are lines of one text.
bool is_explanation(std::string_view sql) {
  const std::vector<std::string> words = split_words(sql.substr(skip_blanks_and_comments(sql, 0), 8));
  std::string first = words.empty() ? "" : words.front();
  std::transform(first.begin(), first.end(), first.begin(), [](char each) { return static_cast<char>(each | 0x20); });
  return first == "explain";
}

}  // namespace

session::session(std::ostream& out, std::ostream& errors, const shell_settings& settings)
    : settings_(settings), first_out_(out), out_(&out), errors_(errors) {}

void session::run(std::string_view script, const std::string& file) {
  const std::string source_before = std::exchange(source_, file);
  for (std::size_t next = 0; !stopped();) {
    next = skip_blanks_and_comments(script, next);
    if (next == script.size()) break;
    if (script[next] == '.') {
      const std::size_t end = std::min(script.find('\n', next), script.size());
      run_command(script.substr(next + 1, end - next - 1));
      next = end;
    } else {
      run_next(script, next);
    }
  }
  source_ = source_before;
}

void session::run_file(const std::string& path) {
  if (depth_ == most_files) throw std::runtime_error("files read each other more than 50 deep");
  const std::string text = read_file(path);
  ++depth_;
  run(text, path == "-" ? "" : path);
  --depth_;
}

void session::run_command(std::string_view line) try {
  shell::run_command(*this, line);
} catch (const std::exception& error) {
  report(std::string("error: ") + error.what());
}

// An error shows its line of the whole script.
void session::run_next(std::string_view script, std::size_t& next) try {
  std::optional<ovsql::statement> of = database_.prepare_next(script, next);
  if (of) run_statement(*of);
} catch (const ovsql::error& error) {
  report(error.describe(script));
} catch (const std::exception& error) {
  report(std::string("error: ") + error.what());
}

void session::run_statement(ovsql::statement& of) {
  const stopwatch watch;
  if (settings_.explain && of.column_count() > 0 && !is_explanation(of.sql())) {
    ovsql::statement explanation = database_.prepare("EXPLAIN " + std::string(of.sql()));
    write_lines(explanation);
  }
  if (of.column_count() == 0) {
    run_without_rows(of);
  } else {
    is_explanation(of.sql()) ? write_lines(of) : write_rows(of);
  }
  if (settings_.timer) *out_ << "time: " << watch.text() << '\n';
}

void session::run_without_rows(ovsql::statement& of) {
  of.step();
  if (of.changes() != 0) note(counted_rows(of.changes()));
}

void session::write_rows(ovsql::statement& of) {
  output_settings how = settings_.output;
  if (out_ == &file_) how.width = 0, how.colours = false;
  const auto writer = settings_.mode->make(of, *out_, how);
  std::size_t rows = 0;
  std::string end;
  for (; of.step() && (end = why_enough(rows)).empty(); ++rows) writer->add(of);
  of.reset();
  writer->end();
  out_->flush();
  end.empty() ? note(counted_rows(rows)) : void(errors_ << end << '\n');
}

// Says why no more rows are shown; empty where they are.
std::string session::why_enough(std::size_t rows) const {
  if (settings_.interactive && take_interrupt()) return "stopped";
  if (settings_.limit == 0 || rows < settings_.limit) return {};
  return "there are more rows; .limit is " + std::to_string(rows);
}

void session::write_lines(ovsql::statement& of) {
  while (of.step()) *out_ << of.text(0) << '\n';
}

void session::import(const std::string& path, const ovsql::csv_import_options& how) {
  const stopwatch watch;
  const ovsql::csv_import made = ovsql::import_csv(database_, path, how);
  const double rate = static_cast<double>(made.rows) / std::max(watch.seconds(), 1e-6);
  note(made.table + ": " + counted_rows(made.rows) + ", " + std::to_string(made.columns.size()) + " columns (" +
       watch.text() + ", " + std::to_string(static_cast<std::uint64_t>(rate)) + " rows a second)");
}

// Says what nobody but a user at a terminal wants to know.
void session::note(const std::string& message) {
  if (settings_.interactive) errors_ << message << '\n';
}

void session::write_to(const std::string& path) {
  file_.close();
  file_.clear();
  out_ = &first_out_;
  if (path.empty()) return;
  file_.open(path, std::ios::binary);
  if (!file_) throw std::runtime_error(path + " cannot be written");
  out_ = &file_;
}

void session::report(const std::string& message) {
  failed_ = true;
  out_->flush();
  errors_ << (source_.empty() ? "" : source_ + ": ") << message << '\n';
}

}  // namespace shell
