#include "ov_sql_executor/database/db_iterator.hpp"

#include <gtest/gtest.h>

#include "core_shim/core_shim.hpp"
#include "outcome.hpp"
#include "ov_sql_executor/database/core_text.hpp"
#include "ovcoredb/database.hpp"

namespace tests {
namespace {

using db_util::db_iterator;
using db_util::fixed_key;

// Three objects with the numbers 10, 20 and 30 in an index over them.
class DbIterator : public testing::Test {
 protected:
  DbIterator() {
    const std::uint16_t table = database.create_table({u"/T/", {ovcoredb::column_type::uint64}, 0, 16});
    index = database.create_index({table, {{2}}});
    for (const std::uint64_t number : {30, 10, 20}) {
      const ovcoredb::cell cells[] = {number};
      database.insert(table, cells);
    }
    core_shim::reset();
  }
  ~DbIterator() override {
    EXPECT_EQ(core_shim::open_iterators(), 0U);
    EXPECT_EQ(core_shim::wrong_frees(), 0U);
  }

  static fixed_key key(std::uint64_t number) {
    fixed_key made;
    made.append(number);
    made.terminate();
    return made;
  }

  std::string walk(std::uint64_t first, std::uint64_t last) {
    return outcome([&] {
      db_util::db_iter_with_keys iterator(context.handle(), index, [&](db_util::key_range& keys) {
        keys.first = key(first);
        keys.last = key(last);
      });
      std::string seen;
      for (; iterator.current().is_valid(); iterator.advance())
        seen += digits(iterator.current().reference().object_number);
      return seen;
    });
  }

  ovcoredb::database database;
  ovcoredb::context context{database};
  std::uint64_t index = 0;
};

TEST_F(DbIterator, walks_from_key_to_key_both_included) {
  EXPECT_EQ(walk(10, 30), "231");
  EXPECT_EQ(walk(11, 20), "3");
  EXPECT_EQ(walk(21, 29), "") << "an empty range";
  ASSERT_EQ(core_shim::opening_flags().size(), 3U);
  EXPECT_EQ(core_shim::opening_flags()[0], 0x70U);
  EXPECT_EQ(core_shim::calls("orv_iterator_free"), 3U);
}

TEST_F(DbIterator, finds_one_object_by_its_key) {
  EXPECT_EQ(find_object(context.handle(), index, key(20)).object_number, 3U);
  EXPECT_EQ(find_object(context.handle(), index, key(21)).object_number, 0U);
}

TEST_F(DbIterator, frees_what_it_opened_when_any_call_fails) {
  core_shim::fail_call("orv_context_create_iterator", 1, 4711);
  EXPECT_EQ(walk(10, 30), "4711");
  EXPECT_EQ(core_shim::calls("orv_iterator_free"), 0U);
  for (const std::uint64_t step : {1, 2, 4}) {
    core_shim::reset();
    core_shim::fail_call("orv_iterator_next", step, 4712);
    EXPECT_EQ(walk(10, 30), "4712") << step;
    EXPECT_EQ(core_shim::calls("orv_iterator_free"), 1U) << step;
  }
}

// What the texts are is the core's business.
TEST_F(DbIterator, texts_are_converted_by_the_core) {
  const std::uint64_t handle = context.handle();
  const db_string::tt_string encoded = db_util::ucs2_to_turbotext(handle, u"A\xD83D", db_util::upper_limit::no);
  const text_view view{{encoded.data(), encoded.size()}};
  EXPECT_EQ(spell(value(encoded)), "'A<d83d>'");
  EXPECT_EQ(db_util::turbotext_to_ucs2(handle, view), u"A\xD83D");
  EXPECT_EQ(db_util::turbotext_to_base_ucs2(handle, view), u"a\xD83D");
  EXPECT_EQ(db_util::turbotext_to_base_ucs2(view), u"a\xD83D");
  EXPECT_EQ(db_util::turbotext_to_ucs2(text_view{}), u"") << "a text without bytes";
  core_shim::fail_call("orv_context_convert_turbotext_to_ucs2", 1, 4711);
  EXPECT_EQ(outcome([&] { db_util::turbotext_to_ucs2(handle, {}); }), "4711");
  core_shim::fail_call("orv_context_convert_ucs2_to_setspectt", 1, 4712);
  EXPECT_EQ(outcome([&] { db_util::ucs2_to_setspec_turbotext(handle, u"", db_util::upper_limit::yes); }), "4712");
}

}  // namespace
}  // namespace tests
