#include "ov_sql_executor/execution/scan_keys.hpp"

#include <gtest/gtest.h>

#include <boost/endian/conversion.hpp>
#include <limits>

#include "core_shim/key_bytes.hpp"
#include "execution/stated_conditions.hpp"
#include "outcome.hpp"
#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/values/encoded_text.hpp"
#include "ovcoredb/database.hpp"

namespace tests {
namespace {

using db_util::growing_key;
using db_util::upper_limit;
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
      const std::vector<key_column> keys = columns_named(columns);
      scan_keys written;
      write_scan_keys(key_conditions(ranges, run), keys, ascending, run, written);
      return spell_keys(written, keys);
    });
  }
  std::string ends(std::string_view columns, std::string_view ranges, bool ascending = true) {
    return ends(columns, conditions_in(ranges), ascending);
  }

 private:
  std::string spell_keys(const scan_keys& keys, const std::vector<key_column>& columns) {
    EXPECT_EQ(keys.flags & ~0x80030U, 0U);
    return ((keys.flags & 0x10) != 0 ? "[" : "(") + spell_key(keys.first, columns) + " .. " +
           spell_key(keys.last, columns) + ((keys.flags & 0x20) != 0 ? "]" : ")") +
           ((keys.flags & 0x80000) != 0 ? " down" : "");
  }

  std::string spell_key(const growing_key& key, const std::vector<key_column>& columns) {
    std::string shape;
    for (const key_column& column : columns) shape += is_bytes(column.type) ? 'b' : 'n';
    EXPECT_EQ(core_shim::key_bytes(key.data(), shape).size(), key.bytes().size()) << "nothing stands behind the end";
    std::string words;
    const std::uint8_t* at = key.data();
    for (const key_column& column : columns) words += (words.empty() ? "" : ",") + spell_component(at, column.type);
    return words;
  }

  static bool is_bytes(type_code type) {
    return type == type_code::tt_string || type == type_code::binary || type == type_code::set_specifier;
  }

  std::string spell_component(const std::uint8_t*& at, type_code type) {
    if (*at == 0x60) return ++at, "lowest";
    if (is_bytes(type)) return spell_known(at, type);
    const std::uint64_t word = boost::endian::load_big_u64(at + 1);
    at += 9;
    const auto number = static_cast<std::int64_t>(word ^ std::uint64_t{1} << 63);
    if (word == (type == type_code::boolean ? 1 : ~std::uint64_t{0})) return "max";
    if (type == type_code::decimal) return unpacked(number);
    return type == type_code::int64 ? std::to_string(number) : std::to_string(word);
  }

  static std::string unpacked(std::int64_t packed) {
    const std::uint64_t size = packed < 0 ? 0 - static_cast<std::uint64_t>(packed) : static_cast<std::uint64_t>(packed);
    const std::uint64_t raw = (size >> 21) * 1'000'000 + (size >> 14 & 0x7F) * 10'000 + (size & 0x3FFF);
    return raw == Decimal::max_raw ? "max" : (packed < 0 ? "-" : "") + std::to_string(raw);
  }

  // The bytes that bounds have here are single letters and what stands above all that begins with one.
  std::string spell_known(const std::uint8_t*& at, type_code type) {
    const auto encode = type == type_code::tt_string ? static_cast<encoder*>(db_util::ucs2_to_turbotext)
                                                     : db_util::ucs2_to_setspec_turbotext;
    for (const char* name : {"a", "b", "a...", "max", "empty"}) {
      const std::string letters = std::strlen(name) == 1 ? name : name[0] == 'a' ? "a" : "";
      growing_key known;
      if (type == type_code::binary) {
        const byte_list bytes(letters.begin(), letters.end());
        known.append(db_util::key_binary{bytes, name == std::string("max")});
      } else {
        const auto limit = name[1] == '.' || name[1] == 'a' ? upper_limit::yes : upper_limit::no;
        const auto made = encode(context.handle(), {letters.begin(), letters.end()}, limit);
        known.append(db_util::key_text{bit_count({{made.data(), made.size()}}).payload});
      }
      if (!std::equal(known.bytes().begin(), known.bytes().end(), at)) continue;
      at += known.bytes().size();
      return name;
    }
    return "unknown bytes";
  }

  using encoder = db_string::tt_string(std::uint64_t, const std::u16string&, upper_limit);
  ovcoredb::database database;
  ovcoredb::context context{database};
};

constexpr const char* whole = "[lowest .. max]";
constexpr const char* none = "(lowest .. lowest)";

// What > < = >= <= yield for a bound that a column can hold ("5 at 5"), that lies between two of its numbers
// ("2.5 in 2 3"), below or above all of them, or nowhere.
std::vector<std::string> intervals(const std::vector<std::string>& place) {
  if (place[1] == "below") return {whole, none, none, whole, none};
  if (place[1] == "above") return {none, whole, none, none, whole};
  if (place[1] == "nowhere") return {none, none, none, none, none};
  const std::string above = "(" + place[2] + " .. max]";
  const std::string below = "[lowest .. " + place.back() + ")";
  if (place[1] == "in") return {above, below, none, above, below};
  return {above, below, "[" + place[2] + " .. " + place[2] + "]", "[" + place[2] + " .. max]",
          "[lowest .. " + place[2] + "]"};
}

TEST_F(ScanKeys, every_bound_on_every_column_type) {
  const std::pair<const char*, const char*> cases[] = {
      {"uint64",
       "u5 at 5, dec5000000 at 5, true at 1, d2.5 in 2 3, dec2000001 in 2 3, i-1 below, d-0.5 below, d-0 at 0, "
       "f18446744073709551616 above, u18446744073709551615 at max, dnan nowhere"},
      {"int64",
       "i-3 at -3, d-2.5 in -3 -2, dec-2500000 in -3 -2, dec-1 in -1 0, u9223372036854775808 above, "
       "d9223372036854775808 above, i-9223372036854775808 at -9223372036854775808, d-inf below, fnan nowhere"},
      {"decimal",
       "dec-1500000 at -1500000, i7 at 7000000, f0.5 at 500000, d-0.0000015 in -2 -1, "
       "d0.1 in 100000 100001, u4398046511104 above, dec9223372036854775807 above, "
       "d-4398046511104 below, dnan nowhere"},
      {"bool", "false at 0, f0.5 in 0 max, dec500000 in 0 max, i2 above, dec-1 below"},
      {"text", "'a' at a, bytes'' at empty"},
      {"set", "set'b' at b"},
      {"binary", "x'61' at a"},
      {"ref", "ref9 at 9"}};
  for (const auto& [column, places] : cases) {
    for (const std::string& each : split(places, ',')) {
      const std::vector<std::string> place = split(each);
      for (int op = 0; op < 5; ++op) {
        const std::string interval = intervals(place)[static_cast<std::size_t>(op)];
        const std::string without_null = interval.starts_with("[l") ? "(" + interval.substr(1) : interval;
        const condition stated{key_operation{op}, val(place[0]), false};
        EXPECT_EQ(ends(column, {{stated}}), interval) << column << each << ", op " << op;
        EXPECT_EQ(ends(column, {{{stated.op, stated.bound, true}}}), without_null) << column << each << ", op " << op;
      }
    }
  }
}

// The lowest key, unless it is rejected; nothing widens an interval that a NULL has emptied.
TEST_F(ScanKeys, bounds_of_null) {
  EXPECT_EQ(ends("text", "> NULL"), "(lowest .. max]");
  EXPECT_EQ(ends("bool", "= NULL"), "[lowest .. lowest]");
  EXPECT_EQ(ends("binary", ">= NULL !"), none);
  EXPECT_EQ(ends("int64", "= NULL !, <= i9, = NULL"), none);
  EXPECT_EQ(ends("int64", "= NULL !, < 'a'"), "7020");
}

TEST_F(ScanKeys, starts_with_is_for_texts_and_set_specifiers) {
  const char* const unreachable = "Supposedly unreachable";
  const char* const cases[][3] = {
      {"text", "^ 'a'", "[a .. a...)"},   {"text", "^ ''", "[empty .. max)"}, {"text", "^ bytes''", "[empty .. max)"},
      {"set", "^ set'a'", "[a .. a...)"}, {"binary", "^ x'61'", "7020"},      {"ref", "^ ref1", "7020"},
      {"uint64", "^ i1", unreachable},    {"int64", "^ dnan", unreachable},   {"decimal", "^ i1", unreachable},
      {"bool", "^ i1", unreachable},      {"bool", "^ 'a'", "7020"}};
  for (const auto& [column, range, result] : cases) EXPECT_EQ(ends(column, range), result) << column << " " << range;
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
      {"uint64", "", "[lowest .. max]", "[max .. lowest] down"},
      {"-uint64", "", "[max .. lowest]", "[lowest .. max] down"},
      {"uint64 -uint64 text", "", "[lowest,max,lowest .. max,lowest,max]",
       "[max,lowest,max .. lowest,max,lowest] down"},
      {"-uint64", "> i5, <= i9", "[9 .. 5)", "(5 .. 9] down"},
      {"uint64 uint64", "= i5", "[5,lowest .. 5,max]", "[5,max .. 5,lowest] down"},
      {"uint64 -uint64", "= i5", "[5,max .. 5,lowest]", "[5,lowest .. 5,max] down"},
      // An exclusive end leaves out every key that begins with it.
      {"uint64 uint64", "> i5", "(5,max .. max,max]", "[max,max .. 5,max) down"},
      {"uint64 -uint64", "> i5, < i9", "(5,lowest .. 9,max)", "(9,max .. 5,lowest) down"},
      {"-uint64 uint64", "> i5", "[max,lowest .. 5,lowest)", "(5,lowest .. max,lowest] down"},
      // A list without conditions stands for every value; the ends are those of the last list.
      {"uint64 uint64", " | = i5", "[lowest,5 .. max,5]", "[max,5 .. lowest,5] down"},
      {"uint64 uint64", "= i5 | > i3", "(5,3 .. 5,max]", "[5,max .. 5,3) down"},
      {"uint64 uint64", "> i5 | >= i3", "[5,3 .. max,max]", "[max,max .. 5,3] down"},
      // Behind a column that lets nothing pass the ends stay apart.
      {"uint64 uint64", "= NULL ! | = i5", "(lowest,max .. lowest,lowest)", "(lowest,lowest .. lowest,max) down"},
      {"uint64 -uint64", ">= i5, < i5 | = i3", "(5,lowest .. 5,max)", "(5,max .. 5,lowest) down"},
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
