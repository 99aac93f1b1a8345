#include "ovhost/value_words.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "ovhost/decimal_text.hpp"
#include "ovhost/table_printer.hpp"
#include "ovhost/text.hpp"

namespace ovhost {
namespace {

using namespace operator_library;
using ov::sql_executor::value;

TEST(ValueWords, ShowEveryKindOfValue) {
  // As cell and as literal, which is the cell unless it is given.
  const struct {
    value shown;
    std::string cell;
    std::string literal{};
  } cases[] = {{true, "true"},
               {encode(u"Zürich"), "Zürich", "'Zürich'"},
               {encode(u"it's"), "it's", "'it''s'"},
               {encode(u""), "''"},
               {encode(u"NULL"), "'NULL'"},
               {encode(u" x"), "' x'"},
               {encode(u"a\nb\x01"), "a\\nb\\x01", "'a\\nb\\x01'"},
               {~std::uint64_t{0}, "18446744073709551615"},
               {std::int64_t{INT64_MIN}, "-9223372036854775808"},
               {Decimal{-1'500'000}, "-1.5"},
               {Decimal{1}, "0.000001"},
               {Decimal{Decimal::max_raw}, "4398046511103.999999"},
               {Decimal{INT64_MIN}, "-9223372036854.775808"},
               {0.1, "0.1"},
               {1e300, "1e+300"},
               {0.1F, "0.1"},
               {Binary{{0x00, 0xAB}}, "0x00ab"},
               {OV_OBJ_REF{7, 0}, "city #7"},
               {SetSpecifier{u"/a/"}, "/a/"},
               {NullValue{}, "NULL"}};
  for (const auto& [shown, cell, literal] : cases) {
    EXPECT_EQ(cell_words(shown, "city"), cell);
    EXPECT_EQ(literal_words(shown, "city"), literal.empty() ? cell : literal);
  }
}

TEST(DecimalText, ReadsBackWhatItWrites) {
  for (const std::int64_t raw : {0L, 1L, -1L, 10L, 999'999L, 1'000'000L, -12'500'000L, Decimal::max_raw}) {
    const auto read = parse_decimal(to_text(Decimal{raw}));
    ASSERT_TRUE(read) << raw;
    EXPECT_EQ(read->raw, raw);
  }
  for (const char* each : {"", "-", ".5", "5.", "1e3", "+1", " 1", "1.2.3", "1.0000000", "4398046511104", "--1"}) {
    EXPECT_FALSE(parse_decimal(each)) << each;
  }
}

TEST(TablePrinter, AlignsByCharactersAndCountsWhatItDoesNotShow) {
  using meta_support::TypeIdentity;
  table_printer table(
      {"city", "count", "at"},
      {TypeIdentity<db_string::tt_string>(), TypeIdentity<std::int64_t>(), physical_to_exec::RefInfo{L"place"}}, 2);
  for (const std::int64_t number : {5, 1234, 6}) {
    table.add({encode(number == 5 ? u"Zürich" : u""), number, OV_OBJ_REF{9, 0}});
  }
  std::ostringstream out;
  table.print(out);
  EXPECT_EQ(out.str(),
            "city    count  at\n"
            "------  -----  --------\n"
            "Zürich      5  place #9\n"
            "''       1234  place #9\n"
            "3 rows, 1 of them not shown\n");
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
