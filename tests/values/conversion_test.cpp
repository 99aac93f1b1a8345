#include "ov_sql_executor/values/conversion.hpp"

#include <gtest/gtest.h>

#include "outcome.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

using conversion = value (*)(const value&);
const std::pair<const char*, conversion> conversions[] = {
    {"bool", convert_to<bool>},       {"text", convert_to<db_string::tt_string>},
    {"u", convert_to<std::uint64_t>}, {"i", convert_to<std::int64_t>},
    {"dec", convert_to<Decimal>},     {"d", convert_to<double>},
    {"f", convert_to<float>},         {"x", convert_to<Binary>},
    {"ref", convert_to<OV_OBJ_REF>}};

// Every pair of alternatives: what each source becomes in the order of the targets above.
TEST(Conversion, every_pair_of_alternatives) {
  for (const char* each :
       {"true true 7020 u1 i1 dec1000000 d1 f1 7020 7020", "'a' 1027 'a' 1027 1027 1027 1027 1027 7020 7020",
        "u2 true 7020 u2 i2 dec2000000 d2 f2 7020 7020", "i2 true 7020 u2 i2 dec2000000 d2 f2 7020 7020",
        "dec2700000 true 7020 u2 i2 dec2700000 d2.7 f2.7 7020 7020", "d2.5 true 7020 u2 i2 1027 d2.5 1027 7020 7020",
        "f2.5 true 7020 u2 i2 1027 d2.5 f2.5 7020 7020", "x'0102' 7020 7020 7020 7020 7020 7020 7020 x'0102' 7020",
        "ref7 7020 7020 7020 7020 7020 7020 7020 7020 ref7", "set'ab' 7020 7020 7020 7020 7020 7020 7020 7020 7020",
        "NULL NULL NULL NULL NULL NULL NULL NULL NULL NULL"}) {
    std::string found = split(each)[0];
    const value source = val(found);
    for (const auto& [name, convert] : conversions)
      found += " " + outcome([&to = convert, &source] { return to(source); });
    EXPECT_EQ(found, each);
  }
  for (const auto& [name, convert] : conversions) {
    EXPECT_EQ(outcome([&to = convert] { return to(valueless()); }), bad_variant) << name;
  }
}

TEST(Conversion, edges) {
  const char* const cases[] = {
      "d-0 bool false",
      "dnan bool true",
      "f0 bool false",
      "dec1 bool true",
      "u0 bool false",

      "u9223372036854775807 i i9223372036854775807",
      "u9223372036854775808 i 7041",
      "d9223372036854774784 i i9223372036854774784",
      "d9223372036854775808 i 7041",
      "d-9223372036854775808 i i-9223372036854775808",
      "d-9223372036854777856 i 7041",
      "d-2.9 i i-2",
      "f3.9 i i3",
      "dinf i 7041",
      "f-inf i 7041",
      "dnan i 7041",
      "dec-2700000 i i-2",

      "i-1 u 7041",
      "d-0 u u0",
      "d-0.5 u 7041",
      "f-1e-40 u 7041",
      "d18446744073709549568 u u18446744073709549568",
      "d18446744073709551616 u 7041",
      "dnan u 7041",
      "dec-1 u 7041",
      "dec900000 u u0",
      "dec0 u u0",
      "false u u0",
      "false dec dec0",

      "i4398046511103 dec dec4398046511103000000",
      "i4398046511104 dec 7041",
      "i-4398046511103 dec dec-4398046511103000000",
      "i-4398046511104 dec 7041",
      "u4398046511103 dec dec4398046511103000000",
      "u4398046511104 dec 7041",
      "u18446744073709551615 dec 7041",

      "u18446744073709551615 d d18446744073709551616",
      "i9007199254740993 d d9007199254740992",
      "i16777217 f f16777216",
      "i16777219 f f16777220",
      "f0.1 d d0.10000000149011612",
      "dec-500000 d d-0.5",
      "u9223372586610589697 f f9.223373e+18",  // just above half way
      "dec60329669 f f60.329666",              // the raw value and the quotient are both rounded to float
  };
  for (const char* each : cases) {
    const std::vector<std::string> words = split(each);
    const auto* const found = std::find_if(std::begin(conversions), std::end(conversions),
                                           [&](const auto& known) { return known.first == words[1]; });
    EXPECT_EQ(outcome([&] { return found->second(val(words[0])); }), words[2]) << each;
  }
}

}  // namespace
}  // namespace tests
