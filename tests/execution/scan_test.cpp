// Scans of an index of the embedded core, held against a filter over all objects.
#include "ov_sql_executor/execution/scan.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core_shim/core_shim.hpp"
#include "outcome.hpp"
#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"
#include "ov_sql_executor/values/comparison.hpp"
#include "ov_sql_executor/values/encoded_text.hpp"
#include "ov_sql_executor/values/sort_order.hpp"
#include "ovcoredb/database.hpp"

namespace tests {
namespace {

using meta_data::key_column;

struct condition {
  key_operation op;
  value bound;
  bool rejects_null;
};
using conditions = std::vector<condition>;

// NULL is below every value of a column and equal to itself, unless the condition rejects it; only a number below all
// that the column can hold is lower. A NaN matches nothing.
std::partial_ordering order_of(const value& key, const value& bound, const value& least) {
  const bool key_is_null = std::holds_alternative<NullValue>(key);
  const bool bound_is_null = std::holds_alternative<NullValue>(bound);
  if (key_is_null && bound_is_null) return std::partial_ordering::equivalent;
  if (bound_is_null) return std::partial_ordering::greater;
  if (!key_is_null) return *compare_values(view_of(key), view_of(bound));
  if (std::holds_alternative<NullValue>(least)) return std::partial_ordering::less;
  const std::partial_ordering bound_to_least = *compare_values(view_of(bound), view_of(least));
  return bound_to_least < 0    ? std::partial_ordering::greater
         : bound_to_least >= 0 ? std::partial_ordering::less
                               : bound_to_least;
}

bool matches(const value& key, const condition& each, const value& least) {
  const bool a_null = std::holds_alternative<NullValue>(key) || std::holds_alternative<NullValue>(each.bound);
  if (each.rejects_null && a_null) return false;
  if (each.op == key_operation::starts_with) {
    return !a_null && text_starts_with(std::get<text_view>(view_of(key)), std::get<text_view>(view_of(each.bound)));
  }
  const std::partial_ordering order = order_of(key, each.bound, least);
  switch (each.op) {
    case key_operation::greater:
      return order > 0;
    case key_operation::less:
      return order < 0;
    case key_operation::equal:
      return order == 0;
    case key_operation::at_least:
      return order >= 0;
    default:
      return order <= 0;
  }
}

// The key types, in the order of the table's columns from number 2 on.
constexpr type_code key_types[] = {type_code::uint64, type_code::int64,   type_code::decimal, type_code::tt_string,
                                   type_code::binary, type_code::obj_ref, type_code::boolean};
constexpr std::size_t key_count = std::size(key_types);

// The least number that a column holds; NULL for columns of no numbers.
value least_of(type_code type) {
  switch (type) {
    case type_code::uint64:
    case type_code::boolean:
      return false;
    case type_code::int64:
      return i(std::numeric_limits<std::int64_t>::min());
    case type_code::decimal:
      return dec(-Decimal::max_raw);
    default:
      return null();
  }
}

bool matches(const value& key, const conditions& all, type_code type) {
  return std::all_of(all.begin(), all.end(), [&](const condition& each) { return matches(key, each, least_of(type)); });
}

// Three hundred objects of few different values, many of them NULL.
class Scan : public testing::Test {
 protected:
  Scan() {
    using enum ovcoredb::column_type;
    SCOPED_TRACE(seed);
    table = database.create_table({u"/T/", {uint64, int64, decimal, text, binary, reference, boolean}, 0, 16});
    for (int n = 0; n < 300; ++n) add_object();
    core_shim::reset();
  }
  ~Scan() override {
    EXPECT_EQ(core_shim::open_iterators(), 0U);
    EXPECT_EQ(core_shim::wrong_frees(), 0U);
  }

  std::size_t below(std::size_t bound) { return random() % bound; }

  std::int64_t small() { return static_cast<std::int64_t>(below(9)) - 4; }

  std::u16string letters() {
    std::u16string units;
    for (std::size_t left = below(4); left != 0; --left) units += u"aB\u00E9\u4E2D"[below(4)];
    return units;
  }

  value text_of(const std::u16string& units) {
    return db_util::ucs2_to_turbotext(context.handle(), units, db_util::upper_limit::no);
  }

  // Long enough to need several chunks now and then.
  std::vector<std::uint8_t> bytes() {
    std::vector<std::uint8_t> made(below(3) * below(20));
    for (std::uint8_t& byte : made) byte = below(8) == 0 ? 0xFF : 0x00;
    return made;
  }

  void add_object() {
    const bool has[key_count] = {below(5) != 0, below(5) != 0, below(5) != 0, below(5) != 0,
                                 below(5) != 0, below(5) != 0, below(5) != 0};
    const std::uint64_t number = below(9);
    const std::int64_t integer = small();
    const std::int64_t millionths = small() * 250'000;
    const std::u16string units = letters();
    const std::vector<std::uint8_t> data = bytes();
    const OV_OBJ_REF reference{below(9), 16};
    const bool flag = below(2) == 0;
    const ovcoredb::cell cells[] = {number,
                                    integer,
                                    ovcoredb::decimal{millionths},
                                    std::u16string_view(units),
                                    std::span<const std::uint8_t>(data),
                                    reference,
                                    flag};
    std::vector<ovcoredb::cell> stored(key_count);
    row keys = {u(number), i(integer), dec(millionths), text_of(units), Binary{data}, reference, flag};
    for (std::size_t key = 0; key < key_count; ++key) {
      if (has[key]) {
        stored[key] = cells[key];
      } else {
        keys[key] = null();
      }
    }
    ASSERT_EQ(database.insert(table, stored).object_number, objects.size() + 1);
    objects.push_back(keys);
  }

  // A number that may lie between two values of the column or beyond them all.
  value number() {
    switch (below(5)) {
      case 0:
        return u(below(9));
      case 1:
        return i(small());
      case 2:
        return dec(small() * 125'000);
      case 3:
        return d(static_cast<double>(small()) / 2);
      default:
        return below(5) != 0 ? f(static_cast<float>(small()) / 4) : beyond();
    }
  }

  value beyond() {
    const float edges[] = {1e30F, -1e30F, std::numeric_limits<float>::quiet_NaN()};
    return f(edges[below(3)]);
  }

  value bound_for(std::size_t key) {
    if (below(8) == 0) return null();
    switch (key_types[key]) {
      case type_code::tt_string:
        return text_of(letters());
      case type_code::binary:
        return Binary{bytes()};
      case type_code::obj_ref:
        return OV_OBJ_REF{below(9), 99};
      default:
        return number();
    }
  }

  conditions conditions_for(std::size_t key) {
    conditions made;
    for (std::size_t left = below(4); left != 0; --left) {
      const bool is_text = key_types[key] == type_code::tt_string;
      made.push_back({static_cast<key_operation>(below(is_text ? 6 : 5)), bound_for(key), below(2) == 0});
    }
    return made;
  }

  std::uint64_t index_over(const std::vector<std::pair<std::size_t, bool>>& keys) {
    ovcoredb::index_definition index{table, {}};
    for (const auto& [key, ascending] : keys) {
      index.columns.push_back({static_cast<std::uint32_t>(key + 2), ascending});
    }
    return database.create_index(index);
  }

  // The object numbers that a scan yields.
  std::vector<std::uint64_t> scanned(std::uint64_t index, const std::vector<std::pair<std::size_t, bool>>& keys,
                                     const std::vector<conditions>& ranges, bool ascending) {
    execution_context run{{}, {}, {u(7)}, context.handle()};
    std::vector<std::vector<key_condition>> lists;
    for (const conditions& range : ranges) {
      auto& list = lists.emplace_back();
      for (const condition& each : range) {
        run.variables.push_back(each.bound);
        const auto position = static_cast<std::int16_t>(run.variables.size() - 1);
        list.push_back({each.op, each.rejects_null,
                        operators::operand(std::make_unique<operators::value_from_context>(
                            operators::context_list::variables, position))});
      }
    }
    std::vector<key_column> columns;
    for (const auto& [key, is_ascending] : keys) columns.push_back({key_types[key], is_ascending});
    const scan tested(std::move(lists), index, columns, ascending);
    const std::unique_ptr<enumerator> source(tested.create_enumerator(run));
    std::vector<std::uint64_t> found;
    while (const std::optional<row> next = source->next(run)) {
      EXPECT_EQ(next->size(), 1U);
      EXPECT_EQ(run.row_stack.size(), 1U);
      const auto& reference = std::get<OV_OBJ_REF>(next->front());
      EXPECT_EQ(reference.second_word, 16U);
      found.push_back(reference.object_number);
    }
    EXPECT_FALSE(source->next(run)) << "the end stays the end";
    EXPECT_EQ(run.row_stack.size(), 1U);
    return found;
  }

  // What the index holds, in the order of the walk, as far as it meets all conditions.
  std::vector<std::uint64_t> filtered(const std::vector<std::pair<std::size_t, bool>>& keys,
                                      const std::vector<conditions>& ranges, bool ascending) const {
    std::vector<std::uint64_t> found;
    for (std::uint64_t number = 1; number <= objects.size(); ++number) {
      bool all = true;
      for (std::size_t n = 0; n < ranges.size(); ++n) {
        all = all && matches(key(number, keys[n].first), ranges[n], key_types[keys[n].first]);
      }
      if (all) found.push_back(number);
    }
    std::stable_sort(found.begin(), found.end(), [&](std::uint64_t left, std::uint64_t right) {
      for (const auto& [column, is_ascending] : keys) {
        const auto order = sort_order(view_of(key(left, column)), view_of(key(right, column)));
        if (order != 0) return is_ascending ? order < 0 : order > 0;
      }
      return false;
    });
    if (!ascending) std::reverse(found.begin(), found.end());
    return found;
  }

  const value& key(std::uint64_t number, std::size_t column) const { return objects[number - 1][column]; }

  static std::string words(const std::vector<conditions>& ranges) {
    std::string text;
    for (const conditions& range : ranges) {
      text += "{";
      for (const condition& each : range) {
        text += " op " + std::to_string(static_cast<int>(each.op)) + " " + spell(each.bound);
        text += each.rejects_null ? " rejects NULL" : "";
      }
      text += " }";
    }
    return text;
  }

  std::uint64_t seed = std::random_device{}();
  std::mt19937_64 random{seed};
  ovcoredb::database database;
  ovcoredb::context context{database};
  std::uint16_t table = 0;
  std::vector<row> objects;
};

TEST_F(Scan, yields_what_a_filter_yields_in_the_order_of_the_index) {
  SCOPED_TRACE("seed " + std::to_string(seed));
  for (std::size_t column = 0; column < key_count; ++column) {
    for (const bool column_ascends : {true, false}) {
      const std::vector<std::pair<std::size_t, bool>> keys = {{column, column_ascends}};
      const std::uint64_t index = index_over(keys);
      for (int round = 0; round < 150; ++round) {
        const std::vector<conditions> ranges = {conditions_for(column)};
        const bool ascending = below(2) == 0;
        ASSERT_EQ(scanned(index, keys, ranges, ascending), filtered(keys, ranges, ascending))
            << "column " << column << words(ranges) << (ascending ? " up" : " down");
      }
      ASSERT_EQ(scanned(index, keys, {}, true).size(), objects.size());
    }
  }
}

// Equality on all but the last of the columns with conditions restricts exactly.
TEST_F(Scan, is_exact_behind_equalities) {
  SCOPED_TRACE("seed " + std::to_string(seed));
  for (int round = 0; round < 60; ++round) {
    std::vector<std::pair<std::size_t, bool>> keys;
    for (std::size_t column = 0; column < key_count; ++column) keys.emplace_back(column, below(2) == 0);
    std::shuffle(keys.begin(), keys.end(), random);
    keys.resize(3);
    const std::uint64_t index = index_over(keys);
    for (int part = 0; part < 10; ++part) {
      std::vector<conditions> ranges;
      const row& like = objects[below(objects.size())];
      const std::size_t equalities = below(3);
      for (std::size_t n = 0; n < equalities; ++n) {
        ranges.push_back({{key_operation::equal, like[keys[n].first], false}});
      }
      ranges.push_back(conditions_for(keys[equalities].first));
      const bool ascending = below(2) == 0;
      ASSERT_EQ(scanned(index, keys, ranges, ascending), filtered(keys, ranges, ascending)) << words(ranges);
    }
  }
}

// Otherwise it may yield more, which a filter takes out, but never less, and nothing where one column's conditions
// cannot be met.
TEST_F(Scan, never_loses_an_object_and_is_empty_where_a_column_is) {
  SCOPED_TRACE("seed " + std::to_string(seed));
  const std::vector<std::pair<std::size_t, bool>> keys = {{1, true}, {3, false}, {0, true}};
  const std::uint64_t index = index_over(keys);
  const conditions impossible[] = {
      {{key_operation::equal, null(), true}},
      {{key_operation::equal, d(0.5), false}},
      {{key_operation::at_least, i(1), false}, {key_operation::less, i(1), false}},
      {{key_operation::greater, i(2), false}, {key_operation::at_most, i(-2), true}},
      {{key_operation::less, null(), false}},
      {{key_operation::at_most, d(std::numeric_limits<double>::quiet_NaN()), false}},
  };
  for (int round = 0; round < 400; ++round) {
    std::vector<conditions> ranges = {conditions_for(1), conditions_for(3), conditions_for(0)};
    const bool ascending = below(2) == 0;
    const std::vector<std::uint64_t> found = scanned(index, keys, ranges, ascending);
    for (const std::uint64_t number : filtered(keys, ranges, ascending)) {
      ASSERT_NE(std::find(found.begin(), found.end(), number), found.end()) << words(ranges);
    }
    ranges[0] = impossible[below(std::size(impossible))];
    ASSERT_EQ(scanned(index, keys, ranges, ascending).size(), 0U) << words(ranges);
  }
}

TEST_F(Scan, hands_its_keys_and_flags_to_the_core) {
  const std::vector<std::pair<std::size_t, bool>> keys = {{0, true}};
  const std::uint64_t index = index_over(keys);
  core_shim::watch_keys("n");
  scanned(index, keys, {}, true);
  scanned(index, keys, {}, false);
  const std::vector<std::uint8_t> lowest = {0x60, 0xC0, 0, 0, 0, 0, 0, 0};
  const std::vector<std::uint8_t> highest = {0x28, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                             0xFF, 0xC0, 0,    0,    0,    0,    0,    0};
  const auto& opened = core_shim::opened_ranges();
  ASSERT_EQ(opened.size(), 2U);
  EXPECT_EQ(opened[0].flags, 0x30U);
  EXPECT_EQ(opened[0].first, lowest);
  EXPECT_EQ(opened[0].last, highest);
  EXPECT_EQ(opened[1].flags, 0x80030U);
  EXPECT_EQ(opened[1].first, highest);
  EXPECT_EQ(opened[1].last, lowest);
}

TEST_F(Scan, opens_nothing_when_a_bound_fails_and_ignores_a_free_that_fails) {
  const std::vector<std::pair<std::size_t, bool>> keys = {{0, true}};
  const std::uint64_t index = index_over(keys);
  core_shim::reset();
  EXPECT_EQ(outcome([&] {
              return u(scanned(index, keys, {{{key_operation::equal, Binary{}, true}}}, true).size());
            }),
            "7020");
  EXPECT_EQ(core_shim::calls(), 0U);
  core_shim::fail_call("orv_context_create_iterator", 1, 4711);
  EXPECT_EQ(outcome([&] { return u(scanned(index, keys, {}, true).size()); }), "4711");
  EXPECT_EQ(core_shim::calls("orv_iterator_free"), 0U);
  core_shim::fail_call("orv_iterator_next", 3, 4712);
  EXPECT_EQ(outcome([&] { return u(scanned(index, keys, {}, true).size()); }), "4712");
  EXPECT_EQ(core_shim::calls("orv_iterator_free"), 1U);
  core_shim::fail_call("orv_iterator_free", 1, 4713);
  EXPECT_EQ(scanned(index, keys, {}, true).size(), objects.size());
}

}  // namespace
}  // namespace tests
