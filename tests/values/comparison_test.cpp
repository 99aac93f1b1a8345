#include "ov_sql_executor/values/comparison.hpp"

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "outcome.hpp"
#include "ov_sql_executor/errors/db_exception.hpp"

namespace tests {
namespace {

// What comparing a pair gives: one of < = > U (unordered), 0 for NULL, E for a type error, V for misuse.
char compared(const value& left, const value& right) {
  try {
    const auto order = compare_values(view_of(left), view_of(right));
    if (!order) return '0';
    return *order < 0 ? '<' : *order > 0 ? '>' : *order == 0 ? '=' : 'U';
  } catch (const db_util::db_exception& error) {
    return error.code == db_util::type_error ? 'E' : '?';
  } catch (const std::bad_variant_access&) {
    return 'V';
  }
}

TEST(Comparison, accepts_numbers_with_numbers_and_all_else_with_its_own_kind) {
  const value ones[] = {true,
                        db_string::tt_string("\x80", 1),
                        u(1),
                        i(1),
                        dec(1'000'000),
                        d(1),
                        f(1),
                        Binary{{1}},
                        OV_OBJ_REF{1, 1},
                        SetSpecifier{u"1"},
                        null(),
                        valueless()};
  // Left alternatives below each other: bool, text, uint64, int64, Decimal, double, float, Binary, reference, set
  // specifier, NULL, valueless; right ones in the same order.
  constexpr const char* expected[] = {"=E=====EEE0V", "E=EEEEEEEE0V", "=E=====EEE0V", "=E=====EEE0V",
                                      "=E=====EEE0V", "=E=====EEE0V", "=E=====EEE0V", "EEEEEEE=EE0V",
                                      "EEEEEEEE=E0V", "EEEEEEEEE=0V", "00000000000V", "VVVVVVVVVVVV"};
  for (std::size_t left = 0; left < std::size(ones); ++left) {
    std::string found;
    for (const value& right : ones) found += compared(ones[left], right);
    EXPECT_EQ(found, expected[left]) << "row " << left;
  }
}

TEST(Comparison, orders_bytes_units_and_object_numbers) {
  const struct {
    value less;
    value greater;
  } cases[] = {
      {Binary{{}}, Binary{{0}}},
      {Binary{{1}}, Binary{{1, 0}}},
      {Binary{{1, 0x7F, 9}}, Binary{{1, 0x80}}},
      {SetSpecifier{u""}, SetSpecifier{u"/"}},
      {SetSpecifier{u"/a"}, SetSpecifier{u"/a/"}},
      {SetSpecifier{u"\x7FFF"}, SetSpecifier{u"\x8000"}},
      {OV_OBJ_REF{1, 9}, OV_OBJ_REF{2, 1}},
      {OV_OBJ_REF{1, 0}, OV_OBJ_REF{~std::uint64_t{0}, 0}},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(compared(each.less, each.greater), '<');
    EXPECT_EQ(compared(each.greater, each.less), '>');
    EXPECT_EQ(compared(each.less, each.less), '=');
  }
  EXPECT_EQ(compared(OV_OBJ_REF{7, 1}, OV_OBJ_REF{7, 2}), '=') << "the second word is no part of an identity";
}

}  // namespace
}  // namespace tests
