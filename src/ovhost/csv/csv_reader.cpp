#include "ovhost/csv/csv_reader.hpp"

#include <csv.h>

#include <ios>
#include <new>
#include <string_view>
#include <utility>

namespace ovhost {
namespace {

constexpr unsigned char strict = CSV_STRICT | CSV_STRICT_FINI | CSV_EMPTY_IS_NULL | CSV_REPALL_NL;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

int no_blank_is_cut_off(unsigned char) { return 0; }

}  // namespace

csv_reader::csv_reader(std::istream& input, char separator) : input_(input), parser_(std::make_unique<csv_parser>()) {
  if (csv_init(parser_.get(), strict) != 0) throw std::bad_alloc();
  csv_set_delim(parser_.get(), static_cast<unsigned char>(separator));
  csv_set_space_func(parser_.get(), no_blank_is_cut_off);
}

csv_reader::~csv_reader() { csv_free(parser_.get()); }

std::optional<csv_row> csv_reader::next() {
  while (complete_.empty() && !finished_) feed_line();
  if (complete_.empty()) return std::nullopt;
  csv_row row = std::move(complete_.front());
  complete_.pop_front();
  return row;
}

// Feeds the parser line by line, so that rows and errors are known by their line.
void csv_reader::feed_line() {
  std::string line = read_line();
  if (line.empty()) return finish();
  ++line_;
  if (line_ == 1 && line.starts_with(byte_order_mark)) line.erase(0, byte_order_mark.size());
  if (between_rows_) row_.line = line_;
  between_rows_ = false;
  const std::size_t parsed = csv_parse(parser_.get(), line.data(), line.size(), on_field, on_row, this);
  check(parsed == line.size());
}

// Returns a line with its line end; empty after the last line. Reads from the buffer, since a stream takes a failed
// allocation for a failed read.
std::string csv_reader::read_line() try {
  constexpr auto end = std::istream::traits_type::eof();
  if (input_.bad()) throw std::ios_base::failure("the stream has no buffer");
  std::string line;
  while (!line.ends_with('\n')) {
    const auto next = input_.rdbuf()->sbumpc();
    if (next == end) break;
    line += std::istream::traits_type::to_char_type(next);
  }
  return line;
} catch (const std::ios_base::failure&) {
  throw csv_syntax_error{line_, "the file cannot be read"};
}

void csv_reader::finish() {
  finished_ = true;
  check(csv_fini(parser_.get(), on_field, on_row, this) == 0);
}

void csv_reader::check(bool parsed) const {
  if (failure_) std::rethrow_exception(failure_);
  if (parsed) return;
  if (::csv_error(parser_.get()) != CSV_EPARSE) throw std::bad_alloc();
  throw csv_syntax_error{finished_ ? row_.line : line_,
                         finished_ ? "a quoted field does not end" : "a quote stands inside a field"};
}

// An empty line ends a row without fields.
void csv_reader::end_row() {
  if (!row_.fields.empty()) complete_.push_back(std::move(row_));
  row_ = csv_row{line_, {}};
  between_rows_ = true;
}

void csv_reader::on_field(void* bytes, std::size_t length, void* self) {
  auto& reader = *static_cast<csv_reader*>(self);
  try {
    csv_field& field = reader.row_.fields.emplace_back();
    if (bytes != nullptr) field.emplace(static_cast<const char*>(bytes), length);
  } catch (...) {
    reader.failure_ = std::current_exception();
  }
}

void csv_reader::on_row(int, void* self) {
  auto& reader = *static_cast<csv_reader*>(self);
  try {
    reader.end_row();
  } catch (...) {
    reader.failure_ = std::current_exception();
  }
}

}  // namespace ovhost
