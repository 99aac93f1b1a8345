#include "ovhost/schema/catalog.hpp"

#include <algorithm>

#include "ovdbmetalayer/layout.hpp"
#include "ovhost/schema/index_range.hpp"
#include "ovhost/schema/metadata_object.hpp"
#include "ovhost/schema/primitive_types.hpp"
#include "ovhost/schema/system_member.hpp"
#include "ovhost/schema/type_name.hpp"
#include "ovhost/values/text.hpp"

namespace ovhost {
namespace {

namespace layout = metalayer::layout;

template <class Named>
std::string list_names(const std::vector<Named>& all) {
  std::string names;
  for (const Named& each : all) names += (names.empty() ? "" : ", ") + each.name;
  return names.empty() ? "none" : names;
}

template <class Named>
[[noreturn]] void raise_unknown(const std::string& what, std::string_view name, const std::vector<Named>& known) {
  throw unknown_name("there is no " + what + " \"" + std::string(name) + "\"; there are: " + list_names(known));
}

}  // namespace

std::vector<table_info> catalog::tables() const {
  std::vector<table_info> result;
  for (const OV_OBJ_REF& object : objects_with_key(context_, metalayer::Table::index_id_TableName(), {})) {
    result.push_back(table(object));
  }
  return result;
}

std::optional<table_info> catalog::find_table(std::string_view name) const {
  const auto object =
      first_with_key(context_, metalayer::Table::index_id_TableName(), index_key().add_text(utf16(name)));
  if (!object) return std::nullopt;
  return table(*object);
}

table_info catalog::table(std::string_view name) const {
  if (auto found = find_table(name)) return *std::move(found);
  raise_unknown("table", name, tables());
}

table_info catalog::table(OV_OBJ_REF object) const {
  const metadata_object read(context_, object);
  return {object, utf8(read.text(layout::table_column::name)),
          static_cast<std::uint16_t>(read.number(layout::table_column::reference_tag)),
          read.reference(layout::table_column::base)};
}

std::vector<OV_OBJ_REF> catalog::member_objects(OV_OBJ_REF table) const {
  return objects_with_key(context_, metalayer::Member::index_id_MemberPK(),
                          index_key().add_number(table.object_number));
}

std::vector<property_info> catalog::properties(const table_info& table) const {
  std::vector<property_info> result;
  if (table.base.object_number != 0) result = properties(this->table(table.base));
  const auto own = static_cast<std::ptrdiff_t>(result.size());
  for (const OV_OBJ_REF& object : member_objects(table.object)) {
    property_info each = property(object);
    if (each.column >= system_members.size()) result.push_back(std::move(each));
  }
  std::sort(result.begin() + own, result.end(),
            [](const property_info& left, const property_info& right) { return left.column < right.column; });
  return result;
}

std::optional<property_info> catalog::find_property(const table_info& table, std::string_view name) const {
  const index_key key = index_key().add_number(table.object.object_number).add_text(utf16(name));
  if (const auto object = first_with_key(context_, metalayer::Member::index_id_MemberPK(), key)) {
    return property(*object);
  }
  if (table.base.object_number == 0) return std::nullopt;
  return find_property(this->table(table.base), name);
}

property_info catalog::property(const table_info& table, std::string_view name) const {
  if (auto found = find_property(table, name)) return *std::move(found);
  raise_unknown("property of table \"" + table.name + "\" called", name, properties(table));
}

property_info catalog::property(OV_OBJ_REF object) const {
  const metadata_object read(context_, object);
  property_info result{object, utf8(read.text(layout::member_column::name)),
                       read.reference(layout::member_column::table)};
  result.column = static_cast<std::uint16_t>(read.integer(layout::member_column::column));
  const OV_OBJ_REF type = read.reference(layout::member_column::type);
  result.kind = result.column == object_type_column
                    ? value_kind::set_specifier
                    : kind_of_primitive(metadata_object(context_, type).number(layout::type_column::primitive_type));
  if (result.kind == value_kind::reference) result.target = type;
  return result;
}

std::vector<index_info> catalog::indexes(const table_info& table) const {
  const index_key key = index_key().add_number(table.object.object_number);
  std::vector<index_info> result;
  for (const OV_OBJ_REF& object : objects_with_key(context_, metalayer::Index::index_id_IndexPK(), key)) {
    result.push_back(index(object));
  }
  return result;
}

std::optional<index_info> catalog::find_index(const table_info& table, std::string_view name) const {
  const index_key key = index_key().add_number(table.object.object_number).add_text(utf16(name));
  const auto object = first_with_key(context_, metalayer::Index::index_id_IndexPK(), key);
  if (!object) return std::nullopt;
  return index(*object);
}

index_info catalog::index(const table_info& table, std::string_view name) const {
  if (auto found = find_index(table, name)) return *std::move(found);
  raise_unknown("index of table \"" + table.name + "\" called", name, indexes(table));
}

index_info catalog::index(OV_OBJ_REF object) const {
  const metadata_object read(context_, object);
  index_info result{object,
                    utf8(read.text(layout::index_column::name)),
                    read.number(layout::index_column::handle),
                    read.flag(layout::index_column::unique),
                    {}};
  const index_key key = index_key().add_number(object.object_number);
  for (const OV_OBJ_REF& column :
       objects_with_key(context_, metalayer::IndexedColumn::index_id_IndexedColumnPK(), key)) {
    const metadata_object indexed(context_, column);
    result.columns.push_back({property(indexed.reference(layout::indexed_column_column::member)),
                              indexed.flag(layout::indexed_column_column::ascending)});
  }
  return result;
}

bool catalog::is_type_name(std::string_view name) const {
  const index_key key = index_key().add_number(type_name_word(utf16(name)));
  return first_with_key(context_, metalayer::SetSpecifier::index_id_Type(), key).has_value();
}

std::shared_ptr<meta_data::Table::TableCache> catalog::members(const table_info& table) const {
  auto cache = std::make_shared<meta_data::Table::TableCache>();
  const std::vector<OV_OBJ_REF> objects = member_objects(table.object);
  cache->members.resize(objects.size());
  for (const OV_OBJ_REF& object : objects) {
    const auto column =
        static_cast<std::size_t>(metadata_object(context_, object).integer(layout::member_column::column));
    cache->members.at(column) = object;
  }
  return cache;
}

}  // namespace ovhost
