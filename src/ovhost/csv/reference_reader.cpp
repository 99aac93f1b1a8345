#include "ovhost/csv/reference_reader.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include "ovhost/schema/index_key.hpp"
#include "ovhost/schema/index_range.hpp"

namespace ovhost {
namespace {

using ovcoredb::cell;

index_key key_of(const cell& value) {
  index_key key;
  if (const auto* const text = std::get_if<std::u16string_view>(&value)) return key.add_text(*text);
  if (const auto* const number = std::get_if<std::int64_t>(&value)) return key.add_number(*number);
  return key.add_number(std::get<std::uint64_t>(value));
}

class reference_reader final : public field_reader {
 public:
  reference_reader(const catalog& names, const table_info& table, const property_info& property, std::uint64_t index)
      : context_(names.context()),
        index_(index),
        what_(table.name + " with the " + property.name),
        key_reader_(make_field_reader(property.kind)) {}

  cell read(const std::string& field) override {
    if (const auto object = first_with_key(context_, index_, key_of(key_reader_->read(field)))) return *object;
    throw bad_field("there is no " + what_ + " \"" + field + "\"");
  }

 private:
  std::uint64_t context_;
  std::uint64_t index_;
  std::string what_;
  std::unique_ptr<field_reader> key_reader_;
};

bool can_be_key(value_kind kind) {
  return kind == value_kind::text || kind == value_kind::int64 || kind == value_kind::uint64;
}

}  // namespace

std::unique_ptr<field_reader> make_reference_reader(const catalog& names, const table_info& table,
                                                    std::string_view name) {
  const property_info property = names.property(table, name);
  const std::vector<index_info> indexes = names.indexes(table);
  const auto fits = std::find_if(indexes.begin(), indexes.end(), [&](const index_info& each) {
    return each.unique && each.columns.size() == 1 &&
           each.columns.front().property.object.object_number == property.object.object_number;
  });
  if (fits == indexes.end() || !can_be_key(property.kind)) {
    throw std::invalid_argument("table \"" + table.name + "\" has no unique index on \"" + property.name +
                                "\" alone to look up texts or whole numbers in");
  }
  return std::make_unique<reference_reader>(names, table, property, fits->handle);
}

}  // namespace ovhost
