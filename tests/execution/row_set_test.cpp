#include "ov_sql_executor/execution/row_set.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <random>
#include <vector>

#include "ov_sql_executor/values/group_key.hpp"

namespace {

using namespace ov::sql_executor;

// Values that are equal to others of theirs and values that look as if they were.
value_view any_key(std::mt19937& random, int different) {
  const int number = static_cast<int>(random() >> 1) % different;
  static const std::array<std::uint8_t, 3> bytes = {0x80, 1, 2};
  const value_view keys[] = {std::int64_t{number},
                             std::uint64_t(number),
                             static_cast<double>(number),
                             number % 2 == 0 ? -0.0 : 0.0,
                             std::numeric_limits<double>::quiet_NaN(),
                             static_cast<float>(number),
                             operator_library::NullValue(),
                             OV_OBJ_REF{std::uint64_t(number), random()},
                             text_view{bytes},
                             binary_view{bytes}};
  return keys[random() % std::size(keys)];
}

// With and without an index, whose beginning lies among them.
TEST(RowSet, FindsEveryRowAgainAndNoOther) {
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    const std::size_t width = random() % 3;
    const int different = round % 2 == 0 ? 2 : 1000;
    row_set rows(width);
    std::vector<std::vector<value_view>> model;
    for (std::size_t count = random() % 200; count != 0; --count) {
      std::vector<value_view> key;
      while (key.size() < width) key.push_back(any_key(random, different));
      std::size_t at = 0;
      while (at < model.size() && !std::equal(key.begin(), key.end(), model[at].begin(), key_equal)) ++at;
      const row_set::place found = rows.find_or_insert(key);
      ASSERT_EQ(found.index, at) << "round " << round;
      ASSERT_EQ(found.is_new, at == model.size());
      if (found.is_new) model.push_back(key);
    }
    ASSERT_EQ(rows.size(), model.size());
  }
}

}  // namespace
