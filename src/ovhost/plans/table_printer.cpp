#include "ovhost/plans/table_printer.hpp"

#include <algorithm>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "ovhost/values/text.hpp"
#include "ovhost/values/value_words.hpp"

namespace ovhost {
namespace {

// Counts characters, by the bytes that begin one.
std::size_t width_of(std::string_view utf8) {
  return static_cast<std::size_t>(std::count_if(
      utf8.begin(), utf8.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

std::string table_of(const physical_to_exec::column_type& type) {
  const auto* const reference = std::get_if<physical_to_exec::RefInfo>(&type);
  if (reference == nullptr) return {};
  return utf8(std::u16string(reference->name.begin(), reference->name.end()));
}

bool is_number(const physical_to_exec::RefInfo&) { return false; }

template <class T>
bool is_number(meta_support::TypeIdentity<T>) {
  return std::is_same_v<T, operator_library::Decimal> || (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>);
}

}  // namespace

table_printer::table_printer(std::vector<std::string> headings, const std::vector<physical_to_exec::column_type>& types,
                             std::size_t max_rows)
    : headings_(std::move(headings)), max_rows_(max_rows) {
  for (const auto& type : types) {
    tables_.push_back(table_of(type));
    right_aligned_.push_back(std::visit([](const auto& held) { return is_number(held); }, type));
  }
  headings_.resize(types.size());
  for (const std::string& heading : headings_) widths_.push_back(width_of(heading));
}

void table_printer::add(const ov::sql_executor::row& added) {
  ++count_;
  if (rows_.size() == max_rows_) return;
  std::vector<std::string>& cells = rows_.emplace_back();
  for (std::size_t column = 0; column < tables_.size(); ++column) {
    cells.push_back(cell_words(added.at(column), tables_[column]));
    widths_[column] = std::max(widths_[column], width_of(cells.back()));
  }
}

void table_printer::print(std::ostream& out) const {
  print_line(out, headings_);
  std::vector<std::string> rules;
  for (const std::size_t width : widths_) rules.emplace_back(width, '-');
  print_line(out, rules);
  for (const auto& cells : rows_) print_line(out, cells);
  out << count_ << (count_ == 1 ? " row" : " rows");
  if (count_ > rows_.size()) out << ", " << count_ - rows_.size() << " of them not shown";
  out << '\n';
}

void table_printer::print_line(std::ostream& out, const std::vector<std::string>& cells) const {
  std::string line;
  for (std::size_t column = 0; column < cells.size(); ++column) {
    const std::string padding(widths_[column] - width_of(cells[column]), ' ');
    line += (column == 0 ? "" : "  ") + (right_aligned_[column] ? padding + cells[column] : cells[column] + padding);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  out << line << '\n';
}

}  // namespace ovhost
