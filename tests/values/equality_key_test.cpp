#include "ov_sql_executor/values/equality_key.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "outcome.hpp"
#include "ov_sql_executor/values/comparison.hpp"
#include "ov_sql_executor/values/equality_set.hpp"
#include "ov_sql_executor/values/group_key.hpp"
#include "ov_sql_executor/values/keyed_hash.hpp"
#include "ov_sql_executor/values/value_family.hpp"
#include "valueless.hpp"
#include "values/edge_numbers.hpp"

namespace tests {
namespace {

// What the comparison operators say: nothing where they refuse.
std::optional<bool> compared_equal(const value_view& left, const value_view& right) {
  try {
    const auto order = compare_values(left, right);
    return order && *order == 0;
  } catch (const db_util::db_exception&) {
    return std::nullopt;
  }
}

// Around the numbers of millionths that are floating-point numbers: multiples of a 64th, up to the largest Decimal.
void add_sixty_fourths(row& list, std::mt19937_64& random) {
  constexpr std::int64_t raw_of_one = 15'625;
  constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / raw_of_one;
  const auto add = [&list](std::int64_t count) {
    const double number = static_cast<double>(count) / 64;
    const std::int64_t raw = count * raw_of_one;
    list.insert(list.end(), {number, -number, std::nextafter(number, 0.0), static_cast<float>(number), Decimal{raw},
                             Decimal{-raw}, Decimal{raw - 1}});
  };
  for (const std::int64_t each : {most, most - 1, std::int64_t{1}, std::int64_t{63}}) add(each);
  for (int count = 0; count < 15; ++count) add(static_cast<std::int64_t>(random() >> (8 + random() % 50)) % most);
  for (const std::int64_t beyond : {most + 1, most + 2}) {
    list.insert(list.end(), {static_cast<double>(beyond) / 64, -static_cast<double>(beyond) / 64});
  }
  list.insert(list.end(), {static_cast<double>(raw_of_one) / 128, 0.1, Decimal{100'000}, Decimal{7'812}});
}

TEST(EqualityKey, equal_keys_are_equal_values) {
  const std::uint64_t seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  row values = boundary_values();
  add_random_values(values, random);
  add_sixty_fourths(values, random);
  for (const value& each : vals("'' bytes'80' bytes'0080' 'a' 'b' x'' x'61' x'6100' ref0 ref1 ref2 set'' set'a'")) {
    values.push_back(each);
  }
  values.push_back(OV_OBJ_REF{1, 7});
  const keyed_hash& hash = keyed_hash::of_process();
  std::vector<value_view> keys;
  std::vector<std::uint64_t> hashes;
  for (const value& each : values) {
    keys.push_back(equality_key(view_of(each)));
    hashes.push_back(hash({&keys.back(), 1}));
  }
  std::size_t equal_pairs = 0;
  for (std::size_t left = 0; left < values.size(); ++left) {
    for (std::size_t right = 0; right < values.size(); ++right) {
      const auto pair = [&] { return spell(values[left]) + " " + spell(values[right]); };
      const value_view a = view_of(values[left]);
      const value_view b = view_of(values[right]);
      const std::optional<bool> expected = compared_equal(a, b);
      ASSERT_EQ(expected.has_value(), family_of(a) == family_of(b)) << pair();
      ASSERT_EQ(key_equal(keys[left], keys[right]), expected == true) << pair();
      ASSERT_EQ(equality_equal(a, b), expected == true) << pair();
      if (expected == true) {
        ASSERT_EQ(hashes[left], hashes[right]) << pair();
        equal_pairs += left == right ? 0 : 1;
      }
    }
  }
  EXPECT_GT(equal_pairs, 500U);
}

TEST(EqualityKey, of_what_has_no_equal) {
  const value nothing = valueless();
  EXPECT_FALSE(equality_equal(view_of(null()), view_of(null())));
  EXPECT_FALSE(equality_equal(view_of(i(0)), view_of(null())));
  EXPECT_FALSE(equality_equal(view_of(nothing), view_of(i(0))));
  EXPECT_THROW(equality_equal(view_of(nothing), view_of(nothing)), std::bad_variant_access);
  EXPECT_EQ(family_of(view_of(nothing)), value_family::none);
}

std::vector<value_view> views_of(const row& values) {
  std::vector<value_view> views;
  for (const value& each : values) views.push_back(view_of(each));
  return views;
}

TEST(EqualitySet, contains_what_is_equal_to_a_member) {
  const row members = vals("i1 true d1.5 dec2500000 u18446744073709551615 'a' bytes'80' ref7 x'01' dinf dnan");
  const equality_set set(views_of(members));
  for (const value& each : vals("u1 dec1500000 d2.5 f1 u18446744073709551615 'a' '' ref7 x'01' finf")) {
    EXPECT_TRUE(set.contains(view_of(each))) << spell(each);
  }
  for (const value& each : vals("i0 i-1 d1.25 'b' x'' ref1 set'a' dnan fnan d-inf NULL d1.8446744073709552e19")) {
    EXPECT_FALSE(set.contains(view_of(each))) << spell(each);
  }
  EXPECT_FALSE(equality_set({}).contains(view_of(i(0))));
  EXPECT_THROW(set.contains({}), std::bad_variant_access);
}

// Neither members without an equal nor equal ones, nor close ones, make it slow: in one chain these would take hours.
TEST(EqualitySet, of_many) {
  constexpr std::int64_t count = 200'000;
  std::vector<value_view> members(count, value_view(std::numeric_limits<double>::quiet_NaN()));
  members.resize(2 * count, value_view(false));
  for (std::int64_t each = 1; each < count; ++each) members.emplace_back(each << 32);
  const equality_set set(members);
  for (std::int64_t each = 0; each < count; ++each) {
    ASSERT_TRUE(set.contains(each << 32)) << each;
    ASSERT_EQ(set.contains(each), each == 0) << each;
  }
}

}  // namespace
}  // namespace tests
