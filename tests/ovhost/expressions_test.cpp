#include "ovhost/expressions.hpp"

#include <gtest/gtest.h>

#include "ovhost/text.hpp"

namespace ovhost {
namespace {

using kind = value_kind;

TEST(Expressions, HaveTheAlternativeAndTheTypeOfTheirName) {
  const expression number = lit(1);
  const expression word = text(u"a");
  const expression truth = lit(true);
  const expression object = lit(OV_OBJ_REF{1, 2});
  const struct {
    expression made;
    std::size_t alternative;
    value_kind of;
  } cases[] = {
      {eq(number, number), 0, kind::boolean},
      {ne(number, number), 1, kind::boolean},
      {le(number, number), 2, kind::boolean},
      {lt(number, number), 3, kind::boolean},
      {gt(number, number), 4, kind::boolean},
      {ge(number, number), 5, kind::boolean},
      {both(truth, truth), 6, kind::boolean},
      {either(truth, truth), 7, kind::boolean},
      {negated(truth), 8, kind::boolean},
      {is_null(word), 9, kind::boolean},
      {is_not_null(word), 10, kind::boolean},
      {add(number, number), 11, kind::int64},
      {sub(number, decimal("1.5")), 12, kind::decimal},
      {neg(lit(1U)), 13, kind::int64},
      {div(lit(1.0F), lit(1.0)), 14, kind::float64},
      {mul(lit(1U), lit(1U)), 15, kind::int64},
      {like(word, word), 16, kind::boolean},
      {starts_with(word, word), 17, kind::boolean},
      {when(truth, null(), number), 18, kind::int64},
      {exclusive(truth, truth), 19, kind::boolean},
      {concat({word, word, word}), 20, kind::text},
      {is_a(object, "Staff.Person"), 21, kind::boolean},
      {oid(object), 22, kind::uint64},
      {to(kind::boolean, number), 23, kind::boolean},
      {to(kind::uint64, number), 24, kind::uint64},
      {to(kind::int64, number), 25, kind::int64},
      {to(kind::decimal, number), 26, kind::decimal},
      {to(kind::float32, number), 27, kind::float32},
      {to(kind::float64, number), 28, kind::float64},
      {to(kind::text, word), 29, kind::text},
      {to(kind::set_specifier, word), 30, kind::set_specifier},
      {like_prefix(word), 31, kind::text},
      {object, 54, kind::reference},
      {parameter(3, kind::binary), 54, kind::binary},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(each.made.index(), each.alternative);
    EXPECT_EQ(kind_of(each.made), each.of) << "alternative " << each.alternative;
  }
  EXPECT_THROW(to(kind::reference, number), std::invalid_argument);
  EXPECT_THROW(decimal("1.0000001"), std::invalid_argument);
}

TEST(Text, SurvivesTheWayToTheEncodedFormAndBack) {
  for (const std::u16string each : {u"", u"Zürich", u"東京 \U0001F600", u"a\xD800z"}) {
    EXPECT_EQ(decode(encode(each)), each);
  }
  EXPECT_EQ(utf8(u"a\xD800z"), "a\uFFFDz");
  EXPECT_EQ(base_form(u"ÄStraße"), u"ästrasse");
  EXPECT_THROW(encode(std::u16string_view(u"a\0b", 3)), std::invalid_argument);
  EXPECT_THROW(utf16("\xC3"), std::invalid_argument);
}

}  // namespace
}  // namespace ovhost
