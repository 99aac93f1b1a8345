#include "ov_sql_executor/execution/key_sort.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

#include "ov_sql_executor/errors/db_exception.hpp"

namespace {

using namespace ov::sql_executor;
using operator_library::NullValue;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Units of which many have up to some hundred in common, and which are each other's beginnings, some of them followed
// by zeros.
template <class Unit>
const std::vector<Unit>& long_units(int number, Unit first) {
  static std::deque<std::vector<Unit>> all;
  std::vector<Unit>& units = all.emplace_back(1, first);
  units.insert(units.end(), static_cast<std::size_t>(number % 5 * 30), Unit{'x'});
  for (int rest = number / 5; rest > 3; rest /= 3) units.push_back(static_cast<Unit>('0' + rest % 3));
  units.insert(units.end(), static_cast<std::size_t>(number % 4), Unit{0});
  return units;
}

// One of so many keys of an alternative, or NULL for the first of them.
constexpr unsigned alternatives = 8;
value_view key_of(int alternative, int number) {
  if (number == 0) return NullValue();
  if (alternative == 0) return std::int64_t{number} * (number % 2 == 0 ? 1 : -1);
  if (alternative == 1) return static_cast<double>(number) / -4;
  if (alternative == 2) return static_cast<float>(number) / 4;
  if (alternative == 3) return operator_library::Decimal{number % 7 - 3};
  if (alternative == 4) return number % 2 == 0;
  if (alternative == 5) return binary_view{long_units<std::uint8_t>(number, 'b')};
  if (alternative == 6) return text_view{long_units<std::uint8_t>(number, 0x80)};
  const std::vector<char16_t>& units = long_units<char16_t>(number, u's');
  return std::u16string_view(units.data(), units.size());
}

std::vector<std::size_t> sorted(key_sort& sort, std::size_t count) {
  std::vector<std::size_t> rows;
  sort.start(count);
  for (auto next = sort.next_rows(); !next.empty(); next = sort.next_rows()) {
    for (const key_sort::entry& each : next) rows.push_back(each.row);
  }
  return rows;
}

// Long inputs are sorted in parts: few values and many, kinds of keys, directions and patterns of the input.
TEST(KeySort, EveryRowComesOnceAndInOrderAndEqualOnesAsTheyCame) {
  std::mt19937 random(20);
  const std::size_t counts[] = {0, 1, 11, 200, 3999, 5000, 9000};
  const int numbers_of_keys[] = {1, 2, 40, 1 << 20};
  for (int round = 0; round < 150; ++round) {
    const std::size_t count = counts[random() % std::size(counts)];
    const std::size_t width = 1 + random() % 3;
    const bool is_rising = random() % 3 == 0;
    std::vector<bool> ascending;
    std::vector<int> kinds;
    std::vector<int> different;
    for (std::size_t i = 0; i < width; ++i) {
      ascending.push_back(random() % 2 == 0);
      kinds.push_back(static_cast<int>(random() % alternatives));
      different.push_back(numbers_of_keys[random() % std::size(numbers_of_keys)]);
    }
    std::vector<value_view> keys;
    key_sort sort(ascending);
    for (std::size_t row = 0; row < count; ++row) {
      for (std::size_t i = 0; i < width; ++i) {
        const auto number = static_cast<int>(is_rising ? row : random() >> 1);
        keys.push_back(key_of(kinds[i], number % different[i]));
        sort.add_key(keys.back());
      }
    }
    const auto goes_before = [&](std::size_t left, std::size_t right) {
      for (std::size_t i = 0; i < width; ++i) {
        const auto order = sort_order(keys[left * width + i], keys[right * width + i]);
        if (order != 0) return ascending[i] ? order < 0 : order > 0;
      }
      return false;
    };
    std::vector<std::size_t> expected(count);
    std::iota(expected.begin(), expected.end(), 0);
    std::stable_sort(expected.begin(), expected.end(), goes_before);
    ASSERT_EQ(sorted(sort, count), expected) << "round " << round;
  }
}

// The second key decides between rows whose first keys are equal, and only there may it not be comparable.
TEST(KeySort, KeysThatCannotBeComparedFailBeforeTheFirstRow) {
  const std::vector<bool> ascending = {true, false};
  const struct {
    std::size_t equal_first_keys;
    value_view second_key;
  } cases[] = {{1, nan}, {2, nan}, {1, true}, {2, true}};
  for (const auto& each : cases) {
    for (const std::size_t count : {3U, 6000U}) {
      key_sort sort(ascending);
      for (std::size_t row = 0; row < count; ++row) {
        sort.add_key(std::uint64_t{row / each.equal_first_keys});
        sort.add_key(row == 1 ? each.second_key : value_view(1.5));
      }
      if (each.equal_first_keys == 1) {
        EXPECT_EQ(sorted(sort, count).size(), count);
      } else if (std::holds_alternative<bool>(each.second_key)) {
        EXPECT_THROW(sort.start(count), std::logic_error);
      } else {
        EXPECT_THROW(sort.start(count), db_util::db_exception);
      }
    }
  }
}

// Keys that were kept as numbers are whole again when one comes that cannot be compared with them, if it need not be.
TEST(KeySort, KeysOfAllKindsSortBesideOneOfAnother) {
  const std::vector<bool> ascending = {true, false};
  const std::pair<value_view, value_view> low_and_high[] = {
      {false, true},
      {std::uint64_t{3}, ~std::uint64_t{0}},
      {std::int64_t{-3}, std::int64_t{5}},
      {operator_library::Decimal{-3}, operator_library::Decimal{5}},
      {-3.5, 5.0},
      {-3.5F, 5.0F},
      {OV_OBJ_REF{3, 9}, OV_OBJ_REF{5, 1}},
      {NullValue(), std::int64_t{-5}},
  };
  for (const auto& [low, high] : low_and_high) {
    key_sort sort(ascending);
    for (std::uint64_t row = 0; row < 101; ++row) {
      sort.add_key(row / 2);
      sort.add_key(row == 100 ? value_view(u"another") : row % 2 == 0 ? low : high);
    }
    const std::vector<std::size_t> rows = sorted(sort, 101);
    for (std::size_t at = 0; at < 100; ++at) ASSERT_EQ(rows[at], at ^ 1) << low.index();
  }
}

}  // namespace
