#include <gtest/gtest.h>

#include <set>

#include "core_shim/core_shim.hpp"
#include "outcome.hpp"
#include "ov_sql_executor/database/column_read.hpp"
#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/database/metadata.hpp"
#include "ovcoredb/database.hpp"
#include "ovdbmetalayer/layout.hpp"
#include "ovdbmetalayer/metalayer.hpp"

namespace tests {
namespace {

namespace layout = metalayer::layout;
using ovcoredb::cell, ovcoredb::column_type;

template <class T>
using numbered = std::vector<std::pair<std::uint32_t, T>>;

// The metadata tables, as far as these tests read them, and objects that a host would not write.
class Metadata : public testing::Test {
 protected:
  Metadata() {
    using enum column_type;
    create(layout::table_tag::table, {{6, text}, {9, uint64}, {10, uint64}});
    create(layout::table_tag::type, {{10, uint64}});
    create(layout::table_tag::member, {{3, reference}, {5, reference}, {6, text}, {9, int64}});
    create(layout::table_tag::index, {{6, uint64}});
    create(layout::table_tag::indexed_column, {{3, reference}, {4, reference}, {5, uint64}, {6, boolean}});
    database.create_index({layout::table_tag::member, {{3}, {6}}, false, layout::index_handle::member_pk});
    // By member and not by position, so that the order of the key is not the order of the walk.
    database.create_index(
        {layout::table_tag::indexed_column, {{3}, {4}}, false, layout::index_handle::indexed_column_pk});
    metalayer::TlsMetalayerContext::Current() = context.handle();
  }
  ~Metadata() override { metalayer::TlsMetalayerContext::Current() = 0; }

  void create(std::uint16_t tag, const numbered<column_type>& columns) {
    ovcoredb::table_definition table{u"/" + std::u16string(1, static_cast<char16_t>(u'0' + tag)) + u"/", {}, 0, tag};
    table.columns.resize(11);
    for (const auto& [column, type] : columns) table.columns[column - 2] = type;
    database.create_table(table);
  }

  OV_OBJ_REF add(std::uint16_t tag, const numbered<cell>& columns) {
    std::vector<cell> cells(database.cell_count(tag));
    for (const auto& [column, content] : columns) cells[column - 2] = content;
    return database.insert(tag, cells);
  }
  OV_OBJ_REF add_type(std::uint64_t primitive) { return add(layout::table_tag::type, {{10, primitive}}); }
  OV_OBJ_REF add_member(OV_OBJ_REF table, std::u16string_view name, OV_OBJ_REF type, std::int64_t column) {
    return add(layout::table_tag::member, {{3, table}, {5, type}, {6, name}, {9, column}});
  }
  void add_key(OV_OBJ_REF index, OV_OBJ_REF member, std::uint64_t position, bool ascending) {
    add(layout::table_tag::indexed_column, {{3, index}, {4, member}, {5, position}, {6, ascending}});
  }

  ovcoredb::database database;
  ovcoredb::context context{database};
};

std::string numbers(std::initializer_list<OV_OBJ_REF> objects) { return spell(row(objects.begin(), objects.end())); }
std::string members_of(OV_OBJ_REF table) {
  const auto members = meta_data::make_table_ref(table).cache->members;
  return spell(row(members.begin(), members.end()));
}

TEST_F(Metadata, members_stand_at_their_column_indexes) {
  const OV_OBJ_REF type = add_type(3);
  const OV_OBJ_REF table{1000, 0};
  add_member({999, 0}, u"z", type, 0);
  add_member({1001, 0}, u"a", type, 0);
  const OV_OBJ_REF second = add_member(table, u"d", type, 1);
  const OV_OBJ_REF fourth = add_member(table, u"b", type, 3);
  const OV_OBJ_REF first = add_member(table, u"\uFFFF", type, 0x10000);  // 0 in its low 16 bits
  const OV_OBJ_REF third = add_member(table, u"", type, 2);
  EXPECT_EQ(members_of(table), numbers({first, second, third, fourth}));
  EXPECT_EQ(meta_data::property_table(first).table.object_number, table.object_number);
  EXPECT_EQ(members_of({4242, 0}), "");
  EXPECT_EQ(core_shim::opening_flags().back(), 0x70U) << "both ends included, and metadata";
}

TEST_F(Metadata, column_indexes_that_are_not_dense_are_reported) {
  OV_OBJ_REF table{1000, 0};
  for (const std::int64_t column : {2, 0xFFFF, -1, 0x7FFF}) {
    ++table.object_number;
    add_member(table, u"a", add_type(3), 0);
    add_member(table, u"b", add_type(3), column);
    EXPECT_EQ(outcome([&] { return members_of(table); }), bad_subscript) << column;
  }
}

TEST_F(Metadata, what_has_no_value_is_empty) {
  const OV_OBJ_REF nameless = add(layout::table_tag::table, {});
  const OV_OBJ_REF named =
      add(layout::table_tag::table, {{6, std::u16string_view(u"T\u00E4\xD83D\xDE00")}, {9, std::uint64_t{0x12345}}});
  EXPECT_EQ(meta_data::object_name(nameless), L"");
  EXPECT_EQ(meta_data::object_name(named), (std::wstring{L'T', 0xE4, 0xD83D, 0xDE00}));
  EXPECT_EQ(meta_data::reference_tag({named, nullptr}), 0x2345);
  const OV_OBJ_REF orphan = add(layout::table_tag::member, {{9, std::int64_t{5}}});
  EXPECT_EQ(meta_data::property_table(orphan).table.object_number, 0U);
  EXPECT_EQ(meta_data::property_type_object(orphan).object_number, 0U);
}

TEST_F(Metadata, numbers_and_flags_without_a_value_are_errors) {
  const OV_OBJ_REF empty_table = add(layout::table_tag::table, {});
  const OV_OBJ_REF empty_index = add(layout::table_tag::index, {});
  const OV_OBJ_REF empty_member = add(layout::table_tag::member, {{3, empty_table}, {6, u"m"}});
  EXPECT_EQ(outcome([&] { meta_data::reference_tag({empty_table, nullptr}); }), "4272");
  EXPECT_EQ(outcome([&] { meta_data::index_handle(empty_index); }), "4272");
  EXPECT_EQ(outcome([&] { meta_data::property_column(empty_member); }), "4272");
  EXPECT_EQ(outcome([&] { meta_data::make_table_ref(empty_table); }), "4272");
  EXPECT_EQ(outcome([&] { meta_data::property_type(empty_member); }), "4272");
  const OV_OBJ_REF member = add_member({1, 0}, u"m", add_type(3), 2);
  const OV_OBJ_REF no_position = add(layout::table_tag::index, {});
  add(layout::table_tag::indexed_column, {{3, no_position}, {4, member}, {6, true}});
  EXPECT_EQ(outcome([&] { meta_data::index_key_columns(no_position); }), "4272");
  const OV_OBJ_REF no_direction = add(layout::table_tag::index, {});
  add(layout::table_tag::indexed_column, {{3, no_direction}, {4, member}, {5, std::uint64_t{0}}});
  EXPECT_EQ(outcome([&] { meta_data::index_key_columns(no_direction); }), "4272");
}

TEST_F(Metadata, types_follow_the_primitive_type_but_for_column_1) {
  const std::pair<std::uint64_t, int> codes[] = {{1, 5}, {2, 6}, {3, 1}, {4, 0}, {5, 2},
                                                 {6, 3}, {7, 4}, {8, 7}, {10, 9}};
  for (const auto& [primitive, code] : codes) {
    const OV_OBJ_REF member = add_member({1, 0}, u"m", add_type(primitive), 5);
    EXPECT_EQ(static_cast<int>(meta_data::property_type(member)), code) << primitive;
  }
  const OV_OBJ_REF no_type{};
  for (const OV_OBJ_REF& type : {add_type(0), add_type(9), add_type(11), add(layout::table_tag::type, {}), no_type}) {
    EXPECT_EQ(meta_data::property_type(add_member({1, 0}, u"s", type, 1)), type_code::set_specifier);
    const OV_OBJ_REF other = add_member({1, 0}, u"m", type, 2);
    EXPECT_EQ(outcome([&] { meta_data::property_type(other); }), "7022 unexpected type") << type.object_number;
  }
}

TEST_F(Metadata, key_columns_are_in_the_order_of_their_positions) {
  const OV_OBJ_REF text = add_member({1, 0}, u"a", add_type(1), 2);
  const OV_OBJ_REF number = add_member({1, 0}, u"b", add_type(4), 3);
  const OV_OBJ_REF specifier = add_member({1, 0}, u"c", add_type(1), 1);
  const OV_OBJ_REF other = add(layout::table_tag::index, {{6, std::uint64_t{17}}});
  const OV_OBJ_REF index = add(layout::table_tag::index, {{6, std::uint64_t{18}}});
  add_key(index, text, 2, true);
  add_key(other, text, 1, true);
  add_key(index, number, 0, false);
  add_key(index, specifier, 1, true);
  std::string found;
  for (const meta_data::key_column& column : meta_data::index_key_columns(index)) {
    found += std::to_string(static_cast<int>(column.type)) + (column.ascending ? "up " : "down ");
  }
  EXPECT_EQ(found, "0down 8up 5up ");
  EXPECT_EQ(meta_data::index_handle(index), 18U);
}

TEST_F(Metadata, an_iterator_that_cannot_be_freed_ends_the_process) {
  EXPECT_DEATH((core_shim::fail_call("orv_iterator_free", 1, 4103), meta_data::make_table_ref({1, 0})),
               "0xE0530002 \\(1070, ");
}

TEST(DottedName, digest_tells_names_apart) {
  const metalayer::DottedName names[] = {{}, {u""}, {u"a"}, {u"a", u"b"}, {u"ab"}, {u"a", u"", u"b"}, {u"b", u"a"}};
  std::set<std::pair<std::uint64_t, std::uint64_t>> digests;
  for (const auto& name : names) {
    const metalayer::RawView view = metalayer::DottedName2RawView(name);
    digests.emplace(view.words[0], view.words[1]);
  }
  EXPECT_EQ(digests.size(), std::size(names));
  // Computed from the definition elsewhere.
  const metalayer::RawView a = metalayer::DottedName2RawView({u"a"});
  EXPECT_EQ(a.words[0], 0x697128E1AE757277u);
  EXPECT_EQ(a.words[1], 0xB806E976F4C4D852u);
}

// Reads an object that has values, one with other values and one without any, into a list and as a view. The test of
// scans reads the other types.
TEST(ColumnRead, gives_the_values_of_types_that_are_in_no_key) {
  ovcoredb::database database;
  const std::uint16_t table =
      database.create_table({u"/T/", {column_type::float32, column_type::float64, column_type::uint64}});
  const std::vector<cell> all[] = {{2.5F, 4.5, std::uint64_t{2}}, {0.0F, 0.0, std::uint64_t{0}}, std::vector<cell>(3)};
  const ovcoredb::context context(database);
  const auto read = [&context](type_code type, const OV_OBJ_REF& object, std::uint32_t column) {
    return outcome([&] {
      value room;
      row made;
      db_util::append_column(type, context.handle(), object, column, made);
      made.push_back(to_value(db_util::read_column(type, context.handle(), object, column, room)));
      return made;
    });
  };
  using enum type_code;
  const std::tuple<type_code, std::uint32_t, const char*> columns[] = {
      {float32, 2, "f2.5 f2.5 f0 f0 NULL NULL "},
      {float64, 3, "d4.5 d4.5 d0 d0 NULL NULL "},
      {boolean, 4, "true true false false NULL NULL "},                                // anything but zero is true
      {set_specifier, 77, "set'/T/' set'/T/' set'/T/' set'/T/' set'/T/' set'/T/' "}};  // whatever the column
  std::vector<OV_OBJ_REF> objects;
  for (const std::vector<cell>& cells : all) objects.push_back(database.insert(table, cells));
  for (const auto& [type, column, words] : columns) {
    std::string found;
    for (const OV_OBJ_REF& each : objects) found += read(type, each, column) + " ";
    EXPECT_EQ(found, words);
  }
  for (const auto& [status, result] :
       {std::pair<std::uint32_t, const char*>(ORV_NO_VALUE, "NULL set'/T/'"), {12, "12"}}) {
    core_shim::fail_call("orv_context_get_setspec", 1, status);
    EXPECT_EQ(read(set_specifier, objects[0], 1), result);
  }
}

// A core may announce a text and then write less of it, or nothing.
TEST(CoreText, has_zeros_where_the_core_wrote_nothing) {
  const ovcoredb::database database;
  const ovcoredb::context context(database);
  const db_string::tt_string abc = db_util::ucs2_to_turbotext(context.handle(), u"abc", db_util::upper_limit::no);
  const text_view text{{abc.data(), abc.size()}};
  for (int round = 0; round < 2; ++round) {  // memory that was used before
    db_util::unit_buffer units;
    db_util::append_ucs2(text, units);
    core_shim::fail_call("orv_convert_turbotext_to_ucs2", 2, 3);
    db_util::append_ucs2(text, units);
    EXPECT_EQ(std::u16string(units.begin(), units.end()), std::u16string(u"abc\0\0\0", 6));
    core_shim::fail_call("orv_convert_turbotext_to_base_ucs2", 2, 2);
    EXPECT_EQ(db_util::turbotext_to_base_ucs2(text), std::u16string(3, u'\0'));
  }
  for (const std::uint64_t call : {1, 2}) {
    core_shim::fail_call("orv_convert_turbotext_to_ucs2", call, 0x80000000);
    EXPECT_EQ(outcome([&] { db_util::turbotext_to_ucs2(text); }), std::to_string(ORV_OUT_OF_MEMORY));
  }
  core_shim::reset();
}

}  // namespace
}  // namespace tests
