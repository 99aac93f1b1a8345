#include "run_file.hpp"

#include <cstddef>
#include <fstream>
#include <optional>
#include <utility>

#include "file_run.hpp"
#include "test_reader.hpp"

namespace slt {
namespace {

constexpr std::size_t most_failures = 5;  // of a file that are listed

std::string read(const std::string& path) {
  std::ifstream input(path, std::ios::binary | std::ios::ate);
  std::string text(input ? static_cast<std::size_t>(input.tellg()) : 0, '\0');
  input.seekg(0);
  if (!input.read(text.data(), static_cast<std::streamsize>(text.size()))) throw format_error(0, "cannot be read");
  return text;
}

// One line, cut to what fits a screen.
std::string shortened(std::string_view sql) {
  constexpr std::size_t most = 200;
  std::string text(sql.substr(0, most));
  for (char& each : text) {
    if (each == '\n' || each == '\r') each = ' ';
  }
  return sql.size() > most ? text + "..." : text;
}

class reporting_run {
 public:
  reporting_run(const std::string& path, run_progress& progress, const run_listener& listener)
      : path_(path), progress_(progress), listener_(listener) {}

  void run(std::string_view engine) try {
    const std::string text = read(path_);
    test_reader reader(text, engine);
    while (const std::optional<test_record> record = reader.next()) {
      if (record->skipped) continue;
      if (record->kind == record_kind::halt) break;
      run(*record);
    }
  } catch (const format_error& error) {
    progress_.line = error.line;
    add({outcome::error, error.what()}, {});
  }

  void hand_over_reasons() const {
    for (const auto& [key, known] : report_.reasons) listener_.reason(key.first, key.second, known);
  }

 private:
  void run(const test_record& record) {
    progress_.line = record.line;
    add(run_.run(record), record.sql);
  }

  void add(const verdict& result, std::string_view sql) {
    ++progress_.counts[static_cast<std::size_t>(result.is)];
    if (result.is == outcome::right) return;
    const std::string place = path_ + ":" + std::to_string(progress_.line);
    if (result.is != outcome::wrong) report_.add_reason(result.is, result.reason, 1, place);
    if (result.is != outcome::unsupported) list(result, place, sql);
  }

  void list(const verdict& failed, const std::string& place, std::string_view sql) {
    if (++failures_ > most_failures) return;
    const std::string what = failed.is == outcome::wrong ? "wrong" : "error";
    listener_.failure(what + ": " + place + ": " + shortened(sql) + "\n    " + failed.reason);
  }

  const std::string& path_;
  run_progress& progress_;
  const run_listener& listener_;
  file_run run_;
  file_report report_;  // its reasons
  std::size_t failures_ = 0;
};

}  // namespace

void run_file(const std::string& path, std::string_view engine, run_progress& progress, const run_listener& listener) {
  reporting_run run(path, progress, listener);
  run.run(engine);
  run.hand_over_reasons();
}

}  // namespace slt
