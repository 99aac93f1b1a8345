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
  // Of each target: sources and what becomes of them.
  const std::pair<const char*, const char*> cases[] = {
      {"bool", "d-0=false dnan=true f0=false dec1=true u0=false"},
      {"i",
       "u9223372036854775807=i9223372036854775807 u9223372036854775808=7041 "
       "d9223372036854774784=i9223372036854774784 d9223372036854775808=7041 "
       "d-9223372036854775808=i-9223372036854775808 d-9223372036854777856=7041 d-2.9=i-2 f3.9=i3 dinf=7041 "
       "f-inf=7041 dnan=7041 dec-2700000=i-2"},
      {"u",
       "i-1=7041 d-0=u0 d-0.5=7041 f-1e-40=7041 d18446744073709549568=u18446744073709549568 "
       "d18446744073709551616=7041 dnan=7041 dec-1=7041 dec900000=u0 dec0=u0 false=u0"},
      {"dec",
       "false=dec0 i4398046511103=dec4398046511103000000 i4398046511104=7041 "
       "i-4398046511103=dec-4398046511103000000 i-4398046511104=7041 u4398046511103=dec4398046511103000000 "
       "u4398046511104=7041 u18446744073709551615=7041"},
      {"d",
       "u18446744073709551615=d18446744073709551616 i9007199254740993=d9007199254740992 "
       "f0.1=d0.10000000149011612 dec-500000=d-0.5"},
      // The third is just above half way; of the fourth the raw value and the quotient are both rounded.
      {"f", "i16777217=f16777216 i16777219=f16777220 u9223372586610589697=f9.223373e+18 dec60329669=f60.329666"},
  };
  for (const auto& [target, sources] : cases) {
    const auto* const found =
        std::find_if(std::begin(conversions), std::end(conversions),
                     [&to = target](const auto& known) { return std::string(known.first) == to; });
    for (const std::string& each : split(sources)) {
      const std::vector<std::string> words = split(each, '=');
      EXPECT_EQ(outcome([&] { return found->second(val(words[0])); }), words[1]) << each << " as " << target;
    }
  }
}

}  // namespace
}  // namespace tests
