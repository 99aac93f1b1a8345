#include "ov_sql_executor/execution/scan_keys.hpp"

#include <gtest/gtest.h>

#include <regex>

#include "execution/stated_conditions.hpp"
#include "outcome.hpp"
#include "ovcoredb/database.hpp"

namespace tests {
namespace {

using meta_data::key_column;

// "uint64 -text": the second one is descending.
std::vector<key_column> columns_named(std::string_view words) {
  const std::vector<std::string> names = split("uint64 int64 decimal bool text set binary ref float double");
  using enum type_code;
  const type_code types[] = {uint64,        int64,  decimal, boolean, tt_string,
                             set_specifier, binary, obj_ref, float32, float64};
  std::vector<key_column> columns;
  for (const std::string& word : split(words)) {
    const auto named = std::find(names.begin(), names.end(), word.substr(word[0] == '-' ? 1 : 0));
    columns.push_back({types[named - names.begin()], word[0] != '-'});
  }
  return columns;
}

class ScanKeys : public testing::Test {
 protected:
  // The ends of a scan: "[5,lowest .. 7,max) down", in the order in which they are handed over.
  std::string ends(std::string_view columns, const std::vector<conditions>& ranges, bool ascending = true) {
    return outcome([&] {
      execution_context run{{}, {}, {}, context.handle()};
      scan_keys keys;
      write_scan_keys(key_conditions(ranges, run), columns_named(columns), ascending, run, keys);
      EXPECT_EQ(keys.flags & ~0x80030U, 0U);
      return ((keys.flags & 0x10) != 0 ? "[" : "(") + spell_key(keys.first) + " .. " + spell_key(keys.last) +
             ((keys.flags & 0x20) != 0 ? "]" : ")") + ((keys.flags & 0x80000) != 0 ? " down" : "");
    });
  }
  static std::string spell_key(const db_util::growing_key& key) {
    std::string words = spell_bytes("", key.bytes().data(), key.bytes().size());
    for (const auto& [bytes, meaning] :
         {std::pair("28f{16}", "max,"), {"280{15}(.)", "$1,"}, {"60", "lowest,"}, {",c0+'", ""}, {"'", ""}}) {
      words = std::regex_replace(words, std::regex(bytes), meaning);
    }
    return words;
  }
  std::string ends(std::string_view columns, std::string_view ranges, bool ascending = true) {
    return ends(columns, conditions_in(ranges), ascending);
  }

  ovcoredb::database database;
  ovcoredb::context context{database};
};

TEST_F(ScanKeys, starts_with_is_for_texts_and_set_specifiers) {
  for (const char* refused : {"binary ^ x'61'", "ref ^ ref1", "bool ^ 'a'", "int64 = NULL !, < 'a'"}) {
    const std::string words = refused;
    EXPECT_EQ(ends(words.substr(0, words.find(' ')), words.substr(words.find(' '))), "7020") << words;
  }
  for (const char* column : {"uint64", "int64", "decimal", "bool"}) {
    EXPECT_EQ(ends(column, "^ i1"), "Supposedly unreachable");
    EXPECT_EQ(ends(column, "^ dnan"), "Supposedly unreachable");
  }
}

TEST_F(ScanKeys, bounds_of_other_alternatives_are_refused) {
  const row bounds = vals("true 'a' i1 x'61' ref1 set'a'");
  const std::pair<const char*, std::vector<std::size_t>> accepted[] = {
      {"uint64", {0, 2}}, {"int64", {0, 2}}, {"decimal", {0, 2}}, {"bool", {0, 2}},
      {"text", {1}},      {"binary", {3}},   {"ref", {4}},        {"set", {5}}};
  for (const auto& [column, own] : accepted) {
    for (int op = 0; op < 5; ++op) {
      for (std::size_t n = 0; n < bounds.size(); ++n) {
        const bool refused = std::find(own.begin(), own.end(), n) == own.end();
        EXPECT_EQ(ends(column, {{{key_operation{op}, bounds[n], true}}}) == "7020", refused)
            << column << ", bound " << n;
      }
    }
  }
  for (const char* column : {"text", "binary", "ref", "set"}) EXPECT_EQ(ends(column, "= valueless !"), bad_variant);
}

TEST_F(ScanKeys, columns_without_conditions_follow_the_ends) {
  const struct {
    const char* columns;
    const char* ranges;
    const char* ascending;
    const char* descending;
  } cases[] = {
      {"uint64 -uint64", "", "[lowest,max .. max,lowest]", "[max,lowest .. lowest,max] down"},
      {"set", "^ set'a'", "[218480c000000000 .. 2485fffffe80c000)", "(2485fffffe80c000 .. 218480c000000000] down"},
      {"-uint64", "> i5, <= i9", "[9 .. 5)", "(5 .. 9] down"},
      {"uint64 -uint64", "= i5", "[5,max .. 5,lowest]", "[5,lowest .. 5,max] down"},
      // An exclusive end leaves out every key that begins with it.
      {"uint64 uint64", "> i5", "(5,max .. max,max]", "[max,max .. 5,max) down"},
      // A list without conditions stands for every value; the ends are those of the last list.
      {"uint64 uint64", " | = i5", "[lowest,5 .. max,5]", "[max,5 .. lowest,5] down"},
      {"uint64 uint64", "= i5 | > i3", "(5,3 .. 5,max]", "[5,max .. 5,3) down"},
      {"uint64 uint64", "> i5 | = u3", "[5,3 .. max,3]", "[max,3 .. 5,3] down"},
      {"uint64 uint64", "> i5 | >= i3", "[5,3 .. max,max]", "[max,max .. 5,3] down"},
      // Behind a column that lets nothing pass the ends stay apart.
      {"uint64 -uint64", ">= i5, < i5 | = i3", "(5,lowest .. 5,max)", "(5,max .. 5,lowest) down"},
      {"uint64", "> i5, = NULL !", "(lowest .. lowest)", "(lowest .. lowest) down"},
      {"uint64 uint64 uint64", "= dnan | | ", "(lowest,max,max .. lowest,lowest,lowest)",
       "(lowest,lowest,lowest .. lowest,max,max) down"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(ends(each.columns, each.ranges), each.ascending);
    EXPECT_EQ(ends(each.columns, each.ranges, false), each.descending);
  }
}

TEST_F(ScanKeys, floating_key_columns_are_refused_before_a_bound_is_looked_at) {
  for (const std::string type : {"float", "double"}) {
    const std::string message = "Index key of " + type + " type is not supported";
    EXPECT_EQ(ends(type, "= valueless"), message);
    EXPECT_EQ(ends("uint64 " + type, ""), message) << "behind the columns with conditions, too";
    EXPECT_EQ(ends("uint64 " + type, "= 'a'"), "7020");
  }
  EXPECT_EQ(ends("uint64", " | "), bad_subscript) << "more lists than columns";
}

}  // namespace
}  // namespace tests
