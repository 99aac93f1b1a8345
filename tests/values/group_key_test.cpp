#include "ov_sql_executor/values/group_key.hpp"

#include <gtest/gtest.h>

#include <boost/container_hash/hash.hpp>
#include <limits>

#include "outcome.hpp"

namespace tests {
namespace {

constexpr std::uint64_t seed = 0x0123456789ABCDEF;

std::uint64_t hash_of(const value& any) { return key_hash(seed, view_of(any)); }
bool equal(const value& left, const value& right) { return key_equal(view_of(left), view_of(right)); }

// What a hash that is known from elsewhere becomes on top of the seed.
std::uint64_t combined(std::size_t hash) {
  std::size_t sum = seed;
  boost::hash_combine(sum, hash);
  return sum;
}

template <class Byte>
std::size_t range_hash(std::initializer_list<Byte> bytes) {
  return boost::hash_range(bytes.begin(), bytes.end());
}

TEST(GroupKey, hashes_are_the_stated_ones) {
  const std::uint8_t text[] = {0x84, 0x12, 0xFE, 0x30};
  const struct {
    value key;
    std::size_t hash;
  } cases[] = {
      {false, 0},
      {true, 1},
      {u(~std::uint64_t{0}), ~std::size_t{0}},
      {i(-2), ~std::size_t{0} - 1},
      {d(1.5), 0x3FF8000000000000},
      {d(-0.0), 0},
      {f(-1.5F), 0xBFC00000},
      {f(-0.0F), 0},
      // FNV-1a over eight bytes, the least significant first.
      {dec(1'500'000), 0x09239192F9EBDE32},
      {dec(-1), 0x8CF51A8BFCA3883D},
      {OV_OBJ_REF{42, 7}, 0xFF3ADD6B3789DAEF},
      {SetSpecifier{u"/\u00C4"}, 0x6CE9699E8575F30E},
      {SetSpecifier{}, 0xCBF29CE484222325},
      // Byte by byte, those of a text with their sign.
      {db_string::tt_string(text, sizeof text), range_hash<signed char>({0x12, -2, 0x30})},
      {db_string::tt_string(), 0},
      {Binary{{0x12, 0xFE}}, range_hash<unsigned char>({0x12, 0xFE})},
  };
  for (const auto& each : cases) EXPECT_EQ(hash_of(each.key), combined(each.hash)) << spell(each.key);
  EXPECT_EQ(hash_of(null()), hash_of(null()));
  EXPECT_THROW(hash_of(valueless()), std::bad_variant_access);
}

TEST(GroupKey, equality_is_that_of_groups) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    value left;
    value right;
    bool are_equal;
  } cases[] = {
      {null(), null(), true},
      {d(nan), d(nan), false},
      {f(static_cast<float>(nan)), f(static_cast<float>(nan)), false},
      {d(0.0), d(-0.0), true},
      {f(0.0F), f(-0.0F), true},
      {OV_OBJ_REF{1, 2}, OV_OBJ_REF{1, 3}, true},
      {OV_OBJ_REF{1, 2}, OV_OBJ_REF{2, 2}, false},
      {db_string::tt_string(), db_string::tt_string("\x80", 1), true},
      {db_string::tt_string("\x80\xFE", 2), db_string::tt_string("\x81\xFE", 2), false},
      {Binary{{1}}, Binary{{1, 0}}, false},
      {SetSpecifier{u"a"}, SetSpecifier{u"a"}, true},
      {u(1), i(1), false},
      {true, u(1), false},
      {dec(1), dec(1), true},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(equal(each.left, each.right), each.are_equal) << spell(each.left) << " and " << spell(each.right);
    if (each.are_equal) {
      EXPECT_EQ(hash_of(each.left), hash_of(each.right)) << spell(each.left);
    }
  }
  EXPECT_THROW(equal(valueless(), valueless()), std::bad_variant_access);
}

}  // namespace
}  // namespace tests
