#include "ov_sql_executor/values/comparison.hpp"

#include <gtest/gtest.h>

#include <boost/container_hash/hash.hpp>
#include <boost/multiprecision/cpp_int.hpp>
#include <limits>
#include <optional>
#include <random>

#include "outcome.hpp"
#include "ov_sql_executor/values/group_key.hpp"
#include "ov_sql_executor/values/number_bracket.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"
#include "ov_sql_executor/values/packed_values.hpp"
#include "ov_sql_executor/values/sort_order.hpp"
#include "valueless.hpp"
#include "values/edge_numbers.hpp"

namespace tests {
namespace {

std::string sign_of(std::partial_ordering order) {
  return order < 0 ? "<" : order > 0 ? ">" : order == 0 ? "=" : "unordered";
}

// Spells < = > or unordered, NULL, or the error.
std::string compared(const value& left, const value& right) {
  return outcome([&] {
    const auto order = compare_values(view_of(left), view_of(right));
    return order ? sign_of(*order) : "NULL";
  });
}

TEST(Comparison, accepts_numbers_with_numbers_and_all_else_with_its_own_kind) {
  row ones = vals("true 'a' u1 i1 dec1000000 d1 f1 x'01' ref1 set'1' NULL");
  ones.push_back(valueless());
  // Left and right in that order: E for a type error, 0 for NULL, V for misuse.
  constexpr const char* expected[] = {"=E=====EEE0V", "E=EEEEEEEE0V", "=E=====EEE0V", "=E=====EEE0V",
                                      "=E=====EEE0V", "=E=====EEE0V", "=E=====EEE0V", "EEEEEEE=EE0V",
                                      "EEEEEEEE=E0V", "EEEEEEEEE=0V", "00000000000V", "VVVVVVVVVVVV"};
  for (std::size_t left = 0; left < ones.size(); ++left) {
    std::string found;
    for (const value& right : ones) {
      const std::string result = compared(ones[left], right);
      found += result == "7020" ? 'E' : result == "NULL" ? '0' : result == bad_variant ? 'V' : result[0];
    }
    EXPECT_EQ(found, expected[left]) << "row " << left;
  }
}

TEST(Comparison, orders_bytes_units_and_object_numbers) {
  rows pairs = table(
      "(x'' x'00')(x'01' x'0100')(x'017f09' x'0180')(set'' set'/')(set'/a' set'/a/')(ref1 ref2)"
      "(ref1 ref18446744073709551615)");
  pairs.push_back({SetSpecifier{u"\x7FFF"}, SetSpecifier{u"\x8000"}});
  for (const row& each : pairs) {
    EXPECT_EQ(compared(each[0], each[1]), "<") << spell(each);
    EXPECT_EQ(compared(each[1], each[0]), ">") << spell(each);
    EXPECT_EQ(compared(each[0], each[0]), "=") << spell(each);
  }
  EXPECT_EQ(compared(OV_OBJ_REF{1, 9}, OV_OBJ_REF{2, 1}), "<");
  EXPECT_EQ(compared(OV_OBJ_REF{7, 1}, OV_OBJ_REF{7, 2}), "=") << "the second word is no part of an identity";
}

using rational = boost::multiprecision::cpp_rational;

// Returns the mathematical number that a value denotes, one beyond all others for an infinite one, and none for a NaN.
std::optional<rational> exact(const value& any) {
  return std::visit(
      []<class T>(const T& held) -> std::optional<rational> {
        if constexpr (floating_alternative<T>) {
          if (std::isnan(held)) return std::nullopt;
          if (std::isinf(held)) return rational(std::numeric_limits<double>::max()) * (held < 0 ? -2 : 2);
          return rational(held);
        } else if constexpr (std::same_as<T, Decimal>) {
          return rational(held.raw, Decimal::scale);
        } else if constexpr (integer_alternative<T>) {
          return rational(static_cast<boost::multiprecision::cpp_int>(held));
        } else {
          throw std::logic_error("not a number");
        }
      },
      any);
}

TEST(NumericComparison, is_exact_at_the_boundaries_of_all_six_types_and_between) {
  const std::uint64_t seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  row values = boundary_values();
  add_random_values(values, random);
  std::vector<std::optional<rational>> numbers;
  for (const value& each : values) numbers.push_back(exact(each));
  for (std::size_t left = 0; left < values.size(); ++left) {
    for (std::size_t right = 0; right < values.size(); ++right) {
      const bool is_ordered = numbers[left] && numbers[right];
      const auto expected = is_ordered ? sign_of(numbers[left]->compare(*numbers[right]) <=> 0) : "unordered";
      ASSERT_EQ(compared(values[left], values[right]), expected) << spell(values[left]) << " " << spell(values[right]);
    }
  }
}

constexpr std::uint64_t hash_seed = 0x0123456789ABCDEF;

std::uint64_t hash_of(const value& any) { return key_hash(hash_seed, view_of(any)); }

// Puts a hash that is known from elsewhere on top of the seed.
std::uint64_t combined(std::size_t hash) {
  std::size_t sum = hash_seed;
  boost::hash_combine(sum, hash);
  return sum;
}

// Products with a million round up and down.
TEST(NumericComparison, finds_the_millionths_below_a_number) {
  for (std::int64_t count = -300'000; count < 300'000; ++count) {
    const double number = static_cast<double>(count) / 1e6 + static_cast<double>(count % 3 * 7);
    const std::int64_t floor = floor_in_millionths(number);
    ASSERT_TRUE(compare_with_millionths(number, floor) >= 0) << count;
    ASSERT_TRUE(compare_with_millionths(number, floor + 1) < 0) << count;
  }
}

TEST(NumericComparison, brackets_a_decimal_between_neighbouring_integers) {
  for (const std::int64_t raw : {0, 1, 999'999, 1'000'000, 1'000'001}) {
    for (const Decimal number : {Decimal{raw}, Decimal{-raw}}) {
      const auto bracket = bracket_number<std::int64_t>(number);
      EXPECT_TRUE(compare_numbers(bracket.floor, number) <= 0 && compare_numbers(bracket.ceiling, number) >= 0) << raw;
      EXPECT_EQ(bracket.ceiling - bracket.floor, raw % 1'000'000 == 0 ? 0 : 1) << raw;
    }
  }
}

TEST(GroupKey, hashes_are_the_stated_ones) {
  const char* const cases[] = {"false 0", "true 1", "u18446744073709551615 ffffffffffffffff", "i-2 fffffffffffffffe",
                               "d1.5 3ff8000000000000", "d-0 0", "f-1.5 bfc00000", "f-0 0", "bytes'' 0",
                               // FNV-1a over eight bytes, the least significant first.
                               "dec1500000 09239192f9ebde32", "dec-1 8cf51a8bfca3883d", "ref42 ff3add6b3789daef",
                               "set'' cbf29ce484222325"};
  for (const char* each : cases) {
    const std::vector<std::string> words = split(each);
    EXPECT_EQ(hash_of(val(words[0])), combined(std::stoull(words[1], nullptr, 16))) << each;
  }
  // Byte by byte, those of a text with their sign.
  const signed char text_bytes[] = {0x12, -2, 0x30};
  const unsigned char bytes[] = {0x12, 0xFE};
  EXPECT_EQ(hash_of(val("bytes'8412fe30'")), combined(boost::hash_range(text_bytes, text_bytes + 3)));
  EXPECT_EQ(hash_of(val("x'12fe'")), combined(boost::hash_range(bytes, bytes + 2)));
  EXPECT_EQ(hash_of(SetSpecifier{u"/\u00C4"}), combined(0x6CE9699E8575F30E));
  EXPECT_EQ(hash_of(null()), hash_of(null()));
  EXPECT_THROW(hash_of(valueless()), std::bad_variant_access);
}

// Tells whether two values are equal keys, as they are and as a list of many keeps the first: beside a reference to
// another table, and with texts in either place.
bool are_equal_keys(const value& kept, const value& seen) {
  const bool equal = kept.index() == seen.index() && key_equal(view_of(kept), view_of(seen));
  for (const auto how : {packed_values::texts::packed, packed_values::texts::out_of_line}) {
    packed_values list(how);
    list.push_back(value_view(OV_OBJ_REF{9, 9}));
    list.push_back(view_of(kept));
    value moved = kept;
    list.push_back(moved);
    for (const std::size_t position : {1, 2}) {
      EXPECT_EQ(spell({to_value(list[position])}), spell({kept}));
      EXPECT_EQ(list.equals(position, view_of(seen)), equal) << spell({kept, seen});
      std::vector<value> given;
      list.give(position, given);
      EXPECT_EQ(spell(given), spell({kept}));
      list.take_back(position, given[0]);
      EXPECT_EQ(spell({to_value(list[position])}), spell({kept}));
    }
  }
  return equal;
}

TEST(GroupKey, equality_is_that_of_groups) {
  for (const row& each : table("(NULL NULL)(d0 d-0)(f0 f-0)(ref1 ref1)(bytes'' bytes'80')(set'a' set'a')(dec1 dec1)")) {
    EXPECT_TRUE(are_equal_keys(each[0], each[1])) << spell(each);
    EXPECT_EQ(hash_of(each[0]), hash_of(each[1])) << spell(each);
  }
  for (const row& each :
       table("(dnan dnan)(fnan fnan)(ref1 ref2)(bytes'80fe' bytes'81fe')(x'01' x'0100')(u1 i1)(i1 u1)(true u1)")) {
    EXPECT_FALSE(are_equal_keys(each[0], each[1])) << spell(each);
  }
  const value same = OV_OBJ_REF{1, 2};
  const value other_tag = OV_OBJ_REF{1, 3};
  EXPECT_TRUE(are_equal_keys(same, other_tag));
  EXPECT_EQ(hash_of(same), hash_of(other_tag));
  const value nothing = valueless();
  EXPECT_THROW(key_equal(view_of(nothing), view_of(nothing)), std::bad_variant_access);
}

TEST(SortOrder, has_no_answer_for_a_valueless_value) {
  const value nothing = valueless();
  for (const value& other : vals("i1 NULL")) {
    EXPECT_THROW(sort_order(view_of(nothing), view_of(other)), std::bad_variant_access);
    EXPECT_THROW(sort_order(view_of(other), view_of(nothing)), std::bad_variant_access);
  }
}

}  // namespace
}  // namespace tests
