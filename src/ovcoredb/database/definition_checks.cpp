#include "ovcoredb/database/definition_checks.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <string>

namespace ovcoredb {
namespace {

constexpr std::array type_names = {"none",    "uint64", "int64",  "decimal",   "float32",
                                   "float64", "text",   "binary", "reference", "bool"};
constexpr std::int64_t largest_decimal = 4'398'046'511'103'999'999;
constexpr std::size_t longest_cell = std::numeric_limits<std::uint32_t>::max() / 4;

[[noreturn]] void refuse(const std::string& reason) { throw std::invalid_argument(reason); }

std::string name_of(std::uint16_t tag, std::uint32_t column) {
  return "column " + std::to_string(column) + " of table " + std::to_string(tag);
}

std::string name_of_place(const table& in, std::size_t place) {
  const auto segment =
      std::find_if(in.segments.begin(), in.segments.end(), [&](const auto& each) { return each.first <= place; });
  return name_of(segment->tag, static_cast<std::uint32_t>(place) - segment->first + first_declared_column);
}

void check_cell(const table& to, std::size_t place, const cell& value) {
  if (std::holds_alternative<std::monostate>(value)) return;
  const column_type type = to.columns[place].type();
  if (type == column_type::none) refuse(name_of_place(to, place) + " is unused and takes no value");
  if (value.index() != static_cast<std::size_t>(type)) {
    refuse(name_of_place(to, place) + " is " + type_names[static_cast<std::size_t>(type)] + ", the cell holds " +
           type_names[value.index()]);
  }
  const auto* const number = std::get_if<decimal>(&value);
  if (number != nullptr && (number->millionths > largest_decimal || number->millionths < -largest_decimal)) {
    refuse(name_of_place(to, place) + ": the decimal is out of range");
  }
  const auto* const text = std::get_if<std::u16string_view>(&value);
  const auto* const bytes = std::get_if<std::span<const std::uint8_t>>(&value);
  if ((text != nullptr && text->size() > longest_cell) || (bytes != nullptr && bytes->size() > longest_cell)) {
    refuse(name_of_place(to, place) + ": the value is too long");
  }
}

key_part resolve_declared(const table& on, const key_column& key) {
  const std::uint16_t tag = key.table == 0 ? on.tag : key.table;
  const column_segment* const segment = on.find_segment(tag);
  if (segment == nullptr) {
    refuse("table " + std::to_string(on.tag) + " does not derive from table " + std::to_string(tag));
  }
  if (key.column - first_declared_column >= segment->count) refuse("there is no " + name_of(tag, key.column));
  const std::uint32_t place = segment->first + key.column - first_declared_column;
  const column_type type = on.columns[place].type();
  if (type == column_type::none) refuse("there is no " + name_of(tag, key.column));
  if (type == column_type::float32 || type == column_type::float64) {
    refuse(name_of(tag, key.column) + " is " + type_names[static_cast<std::size_t>(type)] +
           " and cannot be part of a key");
  }
  return {part_source::column, type, key.ascending, place};
}

}  // namespace

const table& existing_table(const object_store& objects, std::uint16_t tag) {
  const table* const found = objects.find_table(tag);
  if (found == nullptr) refuse("there is no table " + std::to_string(tag));
  return *found;
}

void check_table(const object_store& objects, const table_definition& definition) {
  const std::u16string& specifier = definition.set_specifier;
  if (definition.tag != 0 && objects.find_table(definition.tag) != nullptr) {
    refuse("table " + std::to_string(definition.tag) + " exists already");
  }
  if (specifier.empty() || specifier.find(u'\0') != std::u16string::npos) {
    refuse("a set specifier is not empty and holds no zero unit");
  }
  for (const auto& each : objects.tables()) {
    if (each != nullptr && each->set_specifier == specifier) {
      refuse("table " + std::to_string(each->tag) + " has the same set specifier");
    }
  }
  if (definition.base == 0) return;
  if (!specifier.starts_with(existing_table(objects, definition.base).set_specifier)) {
    refuse("the set specifier does not begin with that of table " + std::to_string(definition.base));
  }
}

void check_cells(const table& to, std::span<const cell> cells) {
  if (cells.size() != to.columns.size()) {
    refuse("table " + std::to_string(to.tag) + " takes " + std::to_string(to.columns.size()) + " cells, not " +
           std::to_string(cells.size()));
  }
  for (std::size_t place = 0; place < cells.size(); ++place) check_cell(to, place, cells[place]);
}

std::vector<key_part> resolve_key(const table& on, std::span<const key_column> columns) {
  if (columns.empty()) refuse("an index has at least one key column");
  std::vector<key_part> parts;
  for (const key_column& key : columns) {
    if (key.column == number_column) {
      parts.push_back({part_source::number, column_type::uint64, key.ascending, 0});
    } else if (key.column == set_specifier_column) {
      parts.push_back({part_source::set_specifier, column_type::text, key.ascending, 0});
    } else {
      parts.push_back(resolve_declared(on, key));
    }
  }
  return parts;
}

}  // namespace ovcoredb
