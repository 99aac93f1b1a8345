// What the host defines and loads is what the C interface reads, and what is refused changes nothing.
#include "ovcoredb/database.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "key_writer.hpp"
#include "sample_database.hpp"

namespace {

using ovcoredb::cell, ovcoredb::column_type;
using sample = sample_database;
using testing::ElementsAre, testing::HasSubstr;

std::vector<std::uint64_t> all_of(std::uint64_t context, std::uint64_t index) {
  return walk(context, index, inclusive, key_writer().end(), key_writer().end());
}

struct database_test : testing::Test {
  sample db;
  ovcoredb::context context{db.database};
  std::uint64_t handle = context.handle();

  template <class Out>
  Out read(std::uint32_t (*get)(std::uint64_t, std::uint64_t, std::uint64_t, std::uint32_t, Out*), OV_OBJ_REF object,
           std::uint32_t column) {
    Out value{};
    EXPECT_EQ(get(handle, object.object_number, object.second_word, column, &value), ORV_OK);
    return value;
  }
  std::u16string string_of(std::uint64_t number, std::uint16_t tag, std::uint32_t column) {
    const std::uint8_t* const block = read(orv_context_get_string, {number, tag}, column);
    std::uint32_t count = 0;
    std::memcpy(&count, block, sizeof count);
    std::u16string units(count, u'\0');
    std::memcpy(units.data(), block + 4, count * sizeof(char16_t));
    return units;
  }
};

TEST_F(database_test, tag_selects_the_table_of_the_column) {
  const OV_OBJ_REF city = db.insert_city(1, u"Bern", u"Ada");
  EXPECT_EQ(city.second_word, db.city);
  EXPECT_EQ(string_of(city.object_number, db.place, sample::name), u"Bern");
  EXPECT_EQ(string_of(city.object_number, db.city, sample::mayor), u"Ada");
  std::uint64_t word = 0;
  EXPECT_EQ(orv_context_lookup(handle, city.object_number, &word), ORV_OK);
  EXPECT_EQ(word, db.city);
}

TEST_F(database_test, unique_index_keeps_its_first_object) {
  db.insert_place(1, u"a");
  try {
    db.insert_place(1, u"b");
    FAIL();
  } catch (const ovcoredb::unique_violation& violation) {
    EXPECT_EQ(violation.index(), db.by_id);
    EXPECT_EQ(violation.holder(), 1u);
  }
  EXPECT_EQ(db.database.object_count(), 1u);
  db.insert_empty_place();  // NULL equals nothing, not even NULL
  EXPECT_EQ(db.insert_empty_place().object_number, 3u);
  EXPECT_THAT(all_of(handle, db.by_id), ElementsAre(2, 3, 1));
  EXPECT_THAT(all_of(handle, db.by_name), ElementsAre(2, 3, 1));
  EXPECT_THROW(db.database.create_index(
                   {.table = db.place, .columns = {{sample::price}, {0, false}}, .unique = true, .handle = 1}),
               std::invalid_argument);
  db.insert_place(2, u"c");
  const std::uint64_t by_unique_name =
      db.database.create_index({.table = db.place, .columns = {{sample::name}}, .unique = true});
  EXPECT_THROW(db.insert_place(9, u"c"), ovcoredb::unique_violation);  // after other indexes took it in
  EXPECT_THAT(all_of(handle, db.by_id), ElementsAre(2, 3, 1, 4));
  EXPECT_THAT(all_of(handle, by_unique_name), ElementsAre(2, 3, 1, 4));
  EXPECT_THROW(db.database.create_index({.table = db.place, .columns = {{sample::price}}, .unique = true}),
               ovcoredb::unique_violation);
  EXPECT_THAT(all_of(handle, db.database.create_index({.table = db.place, .columns = {{sample::price}, {0, false}}})),
              ElementsAre(3, 2, 4, 1));
}

using components = std::vector<std::uint64_t>;  // of an object or an end, which may say less; 0 is no value, the lowest

// Orders as an index whose columns descend as these bits say.
int order_of(const components& object, const components& end, unsigned descending) {
  for (std::size_t n = 0; n < end.size(); ++n) {
    const int order = object[n] < end[n] ? -1 : 1;
    if (object[n] != end[n]) return (descending >> n & 1) != 0 ? -order : order;
  }
  return 0;
}

std::vector<std::uint8_t> key_of(const components& end) {
  key_writer key;
  for (const std::uint64_t each : end) each == 0 ? key.lowest() : key.number(each);
  return key.end();
}

// Tries every range over two columns of few values.
TEST_F(database_test, ranges_hold_what_lies_between_their_ends) {
  std::vector<components> objects;
  std::vector<components> ends = {{}, {2}, {1, 9}, {2, 9}};
  const std::uint16_t table =
      db.database.create_table({.set_specifier = u"/Two/", .columns = {column_type::uint64, column_type::uint64}});
  for (const std::uint64_t first : {0, 1, 3}) {
    ends.push_back({first});
    for (const std::uint64_t second : {2, 0, 1}) {
      const auto cell_of = [](std::uint64_t number) { return number == 0 ? cell() : number; };
      db.database.insert(table, std::vector<cell>{cell_of(first), cell_of(second)});
      objects.push_back({first, second});
      ends.push_back(objects.back());
    }
  }
  const auto check = [&](std::uint64_t index, unsigned directions, std::uint32_t flags, const components& first,
                         const components& last) {
    const unsigned descending = (flags & ORV_ITERATOR_DESCENDING) != 0 ? ~directions : directions;
    std::vector<std::uint64_t> expected = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    std::sort(expected.begin(), expected.end(), [&](std::uint64_t left, std::uint64_t right) {
      return order_of(objects[left - 1], objects[right - 1], descending) < 0;
    });
    std::erase_if(expected, [&](std::uint64_t number) {
      const int from = order_of(objects[number - 1], first, descending);
      const int to = order_of(objects[number - 1], last, descending);
      return from < 0 || (from == 0 && (flags & ORV_ITERATOR_FIRST_INCLUSIVE) == 0) || to > 0 ||
             (to == 0 && (flags & ORV_ITERATOR_LAST_INCLUSIVE) == 0);
    });
    ASSERT_EQ(walk(handle, index, flags, key_of(first), key_of(last)), expected);
  };
  for (const unsigned directions : {0U, 1U, 2U, 3U}) {
    const std::uint64_t index =
        db.database.create_index({.table = table, .columns = {{2, (directions & 1) == 0}, {3, (directions & 2) == 0}}});
    for (const std::uint32_t flags : {0x00U, 0x10U, 0x20U, 0x30U, 0x80000U, 0x80010U, 0x80020U, 0x80030U}) {
      for (const components& first : ends) {
        for (const components& last : ends) check(index, directions, flags, first, last);
      }
    }
  }
}

// Columns and blocks of indexes move to large pages as they grow, some of them when entries are put between others.
// What is refused leaves no bytes, wherever among the groups of a column it would have stood.
TEST_F(database_test, large_tables_hold_what_was_loaded) {
  constexpr std::uint64_t count = 300'000;
  const auto key_of = [](std::uint64_t row) { return row * 0x9E3779B97F4A7C15; };  // no two alike, in no order
  const auto text_of = [](std::uint64_t row) { return std::u16string_view(u"twelve units").substr(row % 12); };
  const std::uint16_t table =
      db.database.create_table({.set_specifier = u"/Large/", .columns = {column_type::uint64, column_type::text}});
  const std::uint64_t index = db.database.create_index({.table = table, .columns = {{2}}, .unique = true});
  for (std::uint64_t row = 0; row < count; ++row) {
    db.database.insert(table, std::vector<cell>{key_of(row), text_of(row)});
    if (row % 63 != 0) continue;
    ASSERT_THROW(db.database.insert(table, std::vector<cell>{key_of(row), u"refused"}), ovcoredb::unique_violation);
  }
  const std::vector<std::uint64_t> found = all_of(handle, index);
  ASSERT_EQ(found.size(), count);
  for (std::size_t i = 0; i < count; ++i) {
    ASSERT_TRUE(i == 0 || key_of(found[i - 1] - 1) < key_of(found[i] - 1));
    ASSERT_EQ(read(orv_context_get_ulong, {found[i], table}, 2), key_of(found[i] - 1));
    ASSERT_EQ(string_of(found[i], table, 3), text_of(found[i] - 1));
  }
}

TEST_F(database_test, definitions_are_checked) {
  auto& database = db.database;
  const ovcoredb::table_definition tables[] = {{u""},
                                               {std::u16string(u"/A\0/", 4)},
                                               {u"/Place/"},
                                               {u"/Town/", {}, db.place},
                                               {u"/Place/Town/", {}, 999},
                                               {u"/Town/", {}, 0, db.city}};
  for (const auto& each : tables) EXPECT_THROW(database.create_table(each), std::invalid_argument);
  const ovcoredb::index_definition indexes[] = {
      {.table = 999, .columns = {{0}}},
      {.table = db.place},
      {.table = db.place, .columns = {{sample::ratio}}},
      {.table = db.place, .columns = {{sample::area}}},
      {.table = db.place, .columns = {{sample::unused}}},
      {.table = db.place, .columns = {{sample::unused + 1}}},
      {.table = db.place, .columns = {{sample::mayor, true, db.city}}},
      {.table = db.place, .columns = {{0}}, .handle = db.by_id},
      {.table = db.place, .columns = {{0}}, .handle = 65536},
  };
  for (const auto& each : indexes) EXPECT_THROW(database.create_index(each), std::invalid_argument);
  EXPECT_EQ(database.create_table({.set_specifier = u"/Far/", .tag = 65535}), 65535);
  EXPECT_THROW(database.create_table({.set_specifier = u"/Further/"}), std::invalid_argument);
  EXPECT_EQ(database.create_index({.table = db.city, .columns = {{sample::name, true, db.place}, {sample::mayor}}}),
            db.by_name + 1);
}

TEST_F(database_test, a_savepoint_takes_back_what_came_after_it) {
  auto& database = db.database;
  db.insert_place(1, u"a");
  const ovcoredb::index_definition by_price{.table = db.place, .columns = {{sample::price}}};
  const ovcoredb::table_definition town{u"/Place/Town/", {column_type::text}, db.place};
  const auto define_and_load = [&](bool keeps) {
    ovcoredb::savepoint before(database);
    const std::pair made(database.create_table(town), database.create_index(by_price));
    auto cells = db.place_cells(2, u"b");
    cells.emplace_back(u"of the town");
    EXPECT_EQ(database.insert(made.first, cells).object_number, 2u);
    EXPECT_THAT(all_of(handle, made.second), ElementsAre(1, 2));
    EXPECT_THAT(all_of(handle, db.by_id), ElementsAre(1, 2));
    EXPECT_EQ(string_of(2, made.first, 2), u"of the town");
    if (keeps) before.keep();
    return made;
  };
  const auto first = define_and_load(false);
  EXPECT_EQ(database.object_count(), 1u);
  EXPECT_THAT(all_of(handle, db.by_id), ElementsAre(1));
  EXPECT_THROW(database.cell_count(first.first), std::invalid_argument);
  std::uint64_t iterator = 0;
  EXPECT_NE(orv_context_create_iterator(handle, first.second, inclusive, key_writer().end().data(),
                                        key_writer().end().data(), &iterator),
            ORV_OK);
  EXPECT_EQ(define_and_load(true), first) << "tags and handles are free again";
  EXPECT_EQ(database.object_count(), 2u);
}

TEST_F(database_test, cells_are_checked) {
  EXPECT_EQ(db.database.cell_count(db.city), 11u);
  const std::tuple<std::size_t, cell, const char*> cases[] = {
      {0, std::int64_t{1}, "column 2 of table 1 is uint64, the cell holds int64"},
      {8, std::uint64_t{1}, "column 10 of table 1 is bool, the cell holds uint64"},
      {9, true, "column 11 of table 1 is unused"},
      {10, 1.0, "column 2 of table 2 is text, the cell holds float64"},
      {2, ovcoredb::decimal{4398046511104000000}, "out of range"},
      {2, ovcoredb::decimal{INT64_MIN}, "out of range"}};
  for (const auto& [place, value, message] : cases) {
    auto cells = db.place_cells(1, u"x");
    cells.emplace_back(u"m");
    cells[place] = value;
    EXPECT_THAT([&] { db.database.insert(db.city, cells); },
                testing::ThrowsMessage<std::invalid_argument>(HasSubstr(message)));
  }
  EXPECT_THROW(db.database.insert(db.city, db.place_cells(1, u"x")), std::invalid_argument);
  EXPECT_THROW(db.database.insert(999, {}), std::invalid_argument);
  EXPECT_EQ(db.database.object_count(), 0u);
  EXPECT_THROW(db.database.remove_after(1), std::invalid_argument);
}

}  // namespace
