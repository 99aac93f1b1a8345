#include "ov_sql_executor/database/metadata.hpp"

#include <gtest/gtest.h>

#include "core_shim/core_shim.hpp"
#include "outcome.hpp"
#include "ovcoredb/database.hpp"
#include "ovdbmetalayer/layout.hpp"
#include "ovdbmetalayer/metalayer.hpp"

namespace tests {
namespace {

namespace layout = metalayer::layout;
using ovcoredb::cell;
using ovcoredb::column_type;

template <class T>
using numbered = std::vector<std::pair<std::uint32_t, T>>;

// The metadata tables, as far as they are read here, and objects that a host would not write.
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
  ~Metadata() override {
    metalayer::TlsMetalayerContext::Current() = 0;
    EXPECT_EQ(core_shim::open_iterators(), 0U);
    EXPECT_EQ(core_shim::wrong_frees(), 0U);
  }

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
  OV_OBJ_REF add_table(const numbered<cell>& columns) { return add(layout::table_tag::table, columns); }
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
  const OV_OBJ_REF before = add_table({});
  const OV_OBJ_REF table = add_table({});
  const OV_OBJ_REF after = add_table({});
  add_member(before, u"z", type, 0);
  add_member(after, u"a", type, 0);
  const OV_OBJ_REF second = add_member(table, u"d", type, 1);
  const OV_OBJ_REF fourth = add_member(table, u"b", type, 3);
  const OV_OBJ_REF first = add_member(table, u"\uFFFF", type, 0x10000);  // 0 in its low 16 bits
  const OV_OBJ_REF third = add_member(table, u"", type, 2);
  EXPECT_EQ(members_of(table), numbers({first, second, third, fourth}));
  EXPECT_EQ(meta_data::property_table(first).table.object_number, table.object_number);
  EXPECT_EQ(members_of({4242, 0}), "");
}

TEST_F(Metadata, column_indexes_that_are_not_dense_are_reported) {
  for (const std::int64_t column : {2, 0xFFFF, -1, 0x7FFF}) {
    const OV_OBJ_REF table = add_table({});
    add_member(table, u"a", add_type(3), 0);
    add_member(table, u"b", add_type(3), column);
    EXPECT_EQ(outcome([&] { return members_of(table); }), bad_subscript) << column;
  }
}

TEST_F(Metadata, what_has_no_value_is_empty) {
  const OV_OBJ_REF nameless = add_table({});
  const OV_OBJ_REF named = add_table({{6, std::u16string_view(u"T\u00E4\xD83D\xDE00")}, {9, std::uint64_t{0x12345}}});
  EXPECT_EQ(meta_data::object_name(nameless), L"");
  EXPECT_EQ(meta_data::object_name(named), (std::wstring{L'T', 0xE4, 0xD83D, 0xDE00}));
  EXPECT_EQ(meta_data::reference_tag({named, nullptr}), 0x2345);
  const OV_OBJ_REF orphan = add(layout::table_tag::member, {{9, std::int64_t{5}}});
  EXPECT_EQ(meta_data::property_table(orphan).table.object_number, 0U);
  EXPECT_EQ(meta_data::property_type_object(orphan).object_number, 0U);
  EXPECT_EQ(outcome([&] { meta_data::reference_tag({nameless, nullptr}); }), "4272") << "a tag there must be";
}

TEST_F(Metadata, types_follow_the_primitive_type_but_for_column_1) {
  const std::pair<std::uint64_t, int> codes[] = {{1, 5}, {2, 6}, {3, 1}, {4, 0}, {5, 2},
                                                 {6, 3}, {7, 4}, {8, 7}, {10, 9}};
  for (const auto& [primitive, code] : codes) {
    const OV_OBJ_REF member = add_member({1, 0}, u"m", add_type(primitive), 5);
    EXPECT_EQ(static_cast<int>(meta_data::property_type(member)), code) << primitive;
  }
  for (const std::uint64_t primitive : {0, 9, 11}) {
    const OV_OBJ_REF type = add_type(primitive);
    EXPECT_EQ(meta_data::property_type(add_member({1, 0}, u"s", type, 1)), type_code::set_specifier);
    const OV_OBJ_REF other = add_member({1, 0}, u"m", type, 2);
    EXPECT_EQ(outcome([&] { meta_data::property_type(other); }), "7022 unexpected type") << primitive;
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

// The status of every core call leaves as it is, and iterators that were open are freed.
TEST_F(Metadata, every_failing_call_is_reported) {
  const OV_OBJ_REF table = add_table({});
  const OV_OBJ_REF member = add_member(table, u"a", add_type(1), 0);
  const OV_OBJ_REF index = add(layout::table_tag::index, {{6, std::uint64_t{17}}});
  add_key(index, member, 0, true);
  add_key(index, member, 1, true);
  for (const auto& read : {std::function<void()>([&] { meta_data::property_table(member); }),
                           std::function<void()>([&] { meta_data::index_key_columns(index); })}) {
    std::uint64_t k = 1;
    for (std::string result; result != "ok"; ++k) {
      core_shim::fail_call(k, 4700 + static_cast<std::uint32_t>(k));
      result = outcome(read);
      EXPECT_EQ(core_shim::open_iterators(), 0U);
      ASSERT_TRUE(result == "ok" || result == std::to_string(4700 + k)) << result;
    }
    EXPECT_GT(k, 6U);
    core_shim::reset();
  }
}

TEST_F(Metadata, an_iterator_that_cannot_be_freed_ends_the_process) {
  const OV_OBJ_REF table = add_table({});
  EXPECT_DEATH(
      {
        core_shim::fail_call("orv_iterator_free", 1, 4103);
        meta_data::make_table_ref(table);
      },
      "0xE0530002 \\(1070, ");
}

}  // namespace
}  // namespace tests
