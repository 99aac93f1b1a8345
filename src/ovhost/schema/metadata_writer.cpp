#include "ovhost/schema/metadata_writer.hpp"

#include <cassert>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "ovdbmetalayer/layout.hpp"
#include "ovhost/schema/primitive_types.hpp"
#include "ovhost/schema/type_name.hpp"
#include "ovhost/values/text.hpp"

namespace ovhost {
namespace {

namespace layout = metalayer::layout;
using ovcoredb::cell;
using ovcoredb::column_type;

constexpr std::uint32_t first_declared_column = 2;

// Orders things by column number, from the first declared column on. A column that is not mentioned gets the default.
// Requires: every column is declared.
template <class T>
std::vector<T> by_column(std::initializer_list<std::pair<std::uint32_t, T>> numbered) {
  std::vector<T> result;
  for (const auto& [column, each] : numbered) {
    assert(column >= first_declared_column);
    const std::size_t place = column - first_declared_column;
    if (result.size() <= place) result.resize(place + 1);
    result[place] = each;
  }
  return result;
}

using attributes = std::initializer_list<std::pair<std::uint32_t, column_type>>;

// The double slash keeps the specifiers apart from those of applications, whose names have no empty part.
void create(ovcoredb::database& database, std::uint16_t tag, std::u16string_view name, attributes numbered) {
  database.create_table({u"//" + std::u16string(name) + u"/", by_column<column_type>(numbered), 0, tag});
}

// Stores the null reference as no value.
cell reference_cell(OV_OBJ_REF reference) { return reference.object_number == 0 ? cell() : cell(reference); }

}  // namespace

metadata_writer::metadata_writer(ovcoredb::database& database) : database_(database) {
  ovcoredb::savepoint before(database);
  create_tables();
  create_indexes();
  add_types();
  before.keep();
}

void metadata_writer::create_tables() {
  create(database_, layout::table_tag::table, u"table",
         {{layout::table_column::base, column_type::reference},
          {layout::table_column::name, column_type::text},
          {layout::table_column::reference_tag, column_type::uint64},
          {layout::table_column::primitive_type, column_type::uint64}});
  create(database_, layout::table_tag::type, u"type",
         {{layout::type_column::name, column_type::text}, {layout::type_column::primitive_type, column_type::uint64}});
  create(database_, layout::table_tag::member, u"member",
         {{layout::member_column::table, column_type::reference},
          {layout::member_column::type, column_type::reference},
          {layout::member_column::name, column_type::text},
          {layout::member_column::column, column_type::int64}});
  create(database_, layout::table_tag::index, u"index",
         {{layout::index_column::table, column_type::reference},
          {layout::index_column::handle, column_type::uint64},
          {layout::index_column::name, column_type::text},
          {layout::index_column::unique, column_type::boolean}});
  create(database_, layout::table_tag::indexed_column, u"indexed column",
         {{layout::indexed_column_column::index, column_type::reference},
          {layout::indexed_column_column::member, column_type::reference},
          {layout::indexed_column_column::position, column_type::uint64},
          {layout::indexed_column_column::ascending, column_type::boolean}});
  create(database_, layout::table_tag::set_specifier, u"set specifier",
         {{layout::set_specifier_column::text, column_type::text},
          {layout::set_specifier_column::name_word, column_type::uint64}});
}

void metadata_writer::create_indexes() {
  namespace tag = layout::table_tag;
  namespace handle = layout::index_handle;
  database_.create_index({tag::table, {{layout::table_column::name}}, true, handle::table_name});
  database_.create_index(
      {tag::member, {{layout::member_column::table}, {layout::member_column::name}}, true, handle::member_pk});
  database_.create_index(
      {tag::index, {{layout::index_column::table}, {layout::index_column::name}}, true, handle::index_pk});
  database_.create_index({tag::indexed_column,
                          {{layout::indexed_column_column::index}, {layout::indexed_column_column::position}},
                          true,
                          handle::indexed_column_pk});
  database_.create_index(
      {tag::set_specifier, {{layout::set_specifier_column::name_word}}, true, handle::set_specifier_type});
}

void metadata_writer::add_types() {
  for (const primitive_type& type : primitive_types) {
    const std::u16string name = utf16(type.name);
    types_[type.kind] = database_.insert(layout::table_tag::type,
                                         by_column<cell>({{layout::type_column::name, std::u16string_view(name)},
                                                          {layout::type_column::primitive_type, type.number}}));
  }
}

OV_OBJ_REF metadata_writer::add_table(std::u16string_view name, OV_OBJ_REF base, std::uint16_t tag) {
  return database_.insert(layout::table_tag::table,
                          by_column<cell>({{layout::table_column::base, reference_cell(base)},
                                           {layout::table_column::name, name},
                                           {layout::table_column::reference_tag, std::uint64_t{tag}},
                                           {layout::table_column::primitive_type, layout::primitive_type::reference}}));
}

void metadata_writer::add_set_specifier(std::u16string_view specifier, std::u16string_view type_name) {
  database_.insert(layout::table_tag::set_specifier,
                   by_column<cell>({{layout::set_specifier_column::text, specifier},
                                    {layout::set_specifier_column::name_word, type_name_word(type_name)}}));
}

OV_OBJ_REF metadata_writer::add_member(OV_OBJ_REF table, std::u16string_view name, OV_OBJ_REF type,
                                       std::uint32_t column) {
  return database_.insert(layout::table_tag::member,
                          by_column<cell>({{layout::member_column::table, table},
                                           {layout::member_column::type, type},
                                           {layout::member_column::name, name},
                                           {layout::member_column::column, std::int64_t{column}}}));
}

OV_OBJ_REF metadata_writer::add_index(OV_OBJ_REF table, std::u16string_view name, std::uint64_t handle, bool unique) {
  return database_.insert(layout::table_tag::index, by_column<cell>({{layout::index_column::table, table},
                                                                     {layout::index_column::handle, handle},
                                                                     {layout::index_column::name, name},
                                                                     {layout::index_column::unique, unique}}));
}

void metadata_writer::add_indexed_column(OV_OBJ_REF index, OV_OBJ_REF member, std::uint64_t position, bool ascending) {
  database_.insert(layout::table_tag::indexed_column,
                   by_column<cell>({{layout::indexed_column_column::index, index},
                                    {layout::indexed_column_column::member, member},
                                    {layout::indexed_column_column::position, position},
                                    {layout::indexed_column_column::ascending, ascending}}));
}

}  // namespace ovhost
