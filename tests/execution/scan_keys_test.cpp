#include "ov_sql_executor/execution/scan_keys.hpp"

#include <gtest/gtest.h>

#include <boost/endian/conversion.hpp>
#include <limits>
#include <string>
#include <vector>

#include "core_shim/key_bytes.hpp"
#include "outcome.hpp"
#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"
#include "ov_sql_executor/values/encoded_text.hpp"
#include "ovcoredb/database.hpp"

namespace tests {
namespace {

using key_bytes = std::vector<std::uint8_t>;
using db_util::upper_limit;
using meta_data::key_column;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr auto starts_with = key_operation::starts_with;

// A condition as a case states it.
struct condition {
  key_operation op;
  value bound;
  bool rejects_null = false;
};

key_bytes component(const db_util::key_bound& bound) {
  db_util::growing_key key;
  key.append(bound);
  return {key.bytes().begin(), key.bytes().end()};
}

class ScanKeys : public testing::Test {
 protected:
  // The ends of a scan: "[5,lowest .. 7,max) down", in the order in which they are handed over.
  std::string ends(const std::vector<key_column>& columns, std::vector<std::vector<condition>> ranges,
                   bool ascending = true) {
    execution_context run{{}, {}, {}, context.handle()};
    std::vector<std::vector<key_condition>> conditions;
    for (const auto& range : ranges) {
      auto& list = conditions.emplace_back();
      for (const condition& each : range) {
        run.constants.push_back(each.bound);
        const auto position = static_cast<std::int16_t>(run.constants.size() - 1);
        list.push_back({each.op, each.rejects_null,
                        operators::operand(std::make_unique<operators::value_from_context>(
                            operators::context_list::constants, position))});
      }
    }
    try {
      return spell(make_scan_keys(conditions, columns, ascending, run), columns);
    } catch (const db_util::db_exception& error) {
      return std::to_string(error.code);
    } catch (const std::logic_error& error) {
      return error.what();
    } catch (const std::bad_variant_access&) {
      return "bad variant";
    }
  }

  std::string ends(type_code column, condition only) { return ends({{column, true}}, {{std::move(only)}}); }

  value text(const std::u16string& units) {
    return db_util::ucs2_to_turbotext(context.handle(), units, upper_limit::no);
  }

 private:
  std::string spell(const scan_keys& keys, const std::vector<key_column>& columns) {
    EXPECT_EQ(keys.flags & ~0x80030U, 0U);
    return ((keys.flags & 0x10) != 0 ? "[" : "(") + spell(keys.first, columns) + " .. " + spell(keys.last, columns) +
           ((keys.flags & 0x20) != 0 ? "]" : ")") + ((keys.flags & 0x80000) != 0 ? " down" : "");
  }

  std::string spell(const db_util::growing_key& key, const std::vector<key_column>& columns) {
    std::string shape;
    for (const key_column& column : columns) shape += is_bytes(column.type) ? 'b' : 'n';
    const key_bytes parsed = core_shim::key_bytes(key.data(), shape);
    EXPECT_EQ(parsed.size(), key.bytes().size()) << "nothing stands behind the end";
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
    if (is_bytes(type)) return spell_bytes(at, type);
    const std::uint64_t word = boost::endian::load_big_u64(at + 1);
    at += 9;
    const auto number = static_cast<std::int64_t>(word ^ std::uint64_t{1} << 63);
    switch (type) {
      case type_code::int64:
        return number == std::numeric_limits<std::int64_t>::max() ? "max" : std::to_string(number);
      case type_code::decimal:
        return unpacked(number);
      case type_code::boolean:
        return word == 1 ? "max" : std::to_string(word);
      default:
        return word == ~std::uint64_t{0} ? "max" : std::to_string(word);
    }
  }

  static std::string unpacked(std::int64_t packed) {
    const std::uint64_t size = packed < 0 ? 0 - static_cast<std::uint64_t>(packed) : static_cast<std::uint64_t>(packed);
    const std::uint64_t raw = (size >> 21) * 1'000'000 + (size >> 14 & 0x7F) * 10'000 + (size & 0x3FFF);
    if (raw == Decimal::max_raw) return "max";
    return (packed < 0 ? "-" : "") + std::to_string(raw);
  }

  // The bytes that bounds have here are single letters and what stands above all that begins with one.
  std::string spell_bytes(const std::uint8_t*& at, type_code type) {
    const bool is_text = type == type_code::tt_string;
    const auto encoded = [&](const std::u16string& units, upper_limit limit) {
      const std::uint64_t handle = context.handle();
      const auto made = is_text ? db_util::ucs2_to_turbotext(handle, units, limit)
                                : db_util::ucs2_to_setspec_turbotext(handle, units, limit);
      return component(db_util::key_text{bit_count({{made.data(), made.size()}}).payload});
    };
    std::vector<std::pair<std::string, key_bytes>> known;
    if (type == type_code::binary) {
      const std::uint8_t letters[] = {'a', 'b'};
      known = {{"a", component(db_util::key_binary{std::span(letters, 1)})},
               {"b", component(db_util::key_binary{std::span(letters + 1, 1)})},
               {"max", component(db_util::key_binary{{}, true})}};
    } else {
      known = {{"a", encoded(u"a", upper_limit::no)},
               {"b", encoded(u"b", upper_limit::no)},
               {"a...", encoded(u"a", upper_limit::yes)},
               {"max", encoded(u"", upper_limit::yes)},
               {"empty", encoded(u"", upper_limit::no)}};
    }
    for (const auto& [name, bytes] : known) {
      if (!std::equal(bytes.begin(), bytes.end(), at)) continue;
      at += bytes.size();
      return name;
    }
    return "unknown bytes";
  }

  ovcoredb::database database;
  ovcoredb::context context{database};
};

constexpr const char* all = "[lowest .. max]";
constexpr const char* none = "(lowest .. lowest)";

TEST_F(ScanKeys, every_bound_on_every_column_type) {
  using enum type_code;
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  const struct {
    type_code column;
    value bound;
    const char* greater;
    const char* less;
    const char* equal;
    const char* at_least;
    const char* at_most;
  } cases[] = {
      {uint64, u(5), "(5 .. max]", "[lowest .. 5)", "[5 .. 5]", "[5 .. max]", "[lowest .. 5]"},
      {uint64, dec(5'000'000), "(5 .. max]", "[lowest .. 5)", "[5 .. 5]", "[5 .. max]", "[lowest .. 5]"},
      {uint64, true, "(1 .. max]", "[lowest .. 1)", "[1 .. 1]", "[1 .. max]", "[lowest .. 1]"},
      {uint64, d(2.5), "(2 .. max]", "[lowest .. 3)", none, "(2 .. max]", "[lowest .. 3)"},
      {uint64, dec(2'000'001), "(2 .. max]", "[lowest .. 3)", none, "(2 .. max]", "[lowest .. 3)"},
      {uint64, i(-1), all, none, none, all, none},
      {uint64, d(-0.5), all, none, none, all, none},
      {uint64, d(-0.0), "(0 .. max]", "[lowest .. 0)", "[0 .. 0]", "[0 .. max]", "[lowest .. 0]"},
      {uint64, f(0x1p64F), none, all, none, none, all},
      {uint64, u(~std::uint64_t{0}), "(max .. max]", "[lowest .. max)", "[max .. max]", "[max .. max]", all},
      {uint64, d(nan), none, none, none, none, none},
      {int64, i(-3), "(-3 .. max]", "[lowest .. -3)", "[-3 .. -3]", "[-3 .. max]", "[lowest .. -3]"},
      {int64, d(-2.5), "(-3 .. max]", "[lowest .. -2)", none, "(-3 .. max]", "[lowest .. -2)"},
      {int64, dec(-2'500'000), "(-3 .. max]", "[lowest .. -2)", none, "(-3 .. max]", "[lowest .. -2)"},
      {int64, dec(-1), "(-1 .. max]", "[lowest .. 0)", none, "(-1 .. max]", "[lowest .. 0)"},
      {int64, u(std::uint64_t{1} << 63), none, all, none, none, all},
      {int64, d(0x1p63), none, all, none, none, all},
      {int64, i(least), "(-9223372036854775808 .. max]", "[lowest .. -9223372036854775808)",
       "[-9223372036854775808 .. -9223372036854775808]", "[-9223372036854775808 .. max]",
       "[lowest .. -9223372036854775808]"},
      {int64, d(-std::numeric_limits<double>::infinity()), all, none, none, all, none},
      {int64, f(std::numeric_limits<float>::quiet_NaN()), none, none, none, none, none},
      {decimal, dec(-1'500'000), "(-1500000 .. max]", "[lowest .. -1500000)", "[-1500000 .. -1500000]",
       "[-1500000 .. max]", "[lowest .. -1500000]"},
      {decimal, i(7), "(7000000 .. max]", "[lowest .. 7000000)", "[7000000 .. 7000000]", "[7000000 .. max]",
       "[lowest .. 7000000]"},
      {decimal, f(0.5F), "(500000 .. max]", "[lowest .. 500000)", "[500000 .. 500000]", "[500000 .. max]",
       "[lowest .. 500000]"},
      {decimal, d(-0.0000015), "(-2 .. max]", "[lowest .. -1)", none, "(-2 .. max]", "[lowest .. -1)"},
      {decimal, d(0.1), "(100000 .. max]", "[lowest .. 100001)", none, "(100000 .. max]", "[lowest .. 100001)"},
      {decimal, u(4'398'046'511'104), none, all, none, none, all},
      {decimal, dec(std::numeric_limits<std::int64_t>::max()), none, all, none, none, all},
      {decimal, d(-4'398'046'511'104.0), all, none, none, all, none},
      {decimal, d(nan), none, none, none, none, none},
      {boolean, false, "(0 .. max]", "[lowest .. 0)", "[0 .. 0]", "[0 .. max]", "[lowest .. 0]"},
      {boolean, f(0.5F), "(0 .. max]", "[lowest .. max)", none, "(0 .. max]", "[lowest .. max)"},
      {boolean, dec(500'000), "(0 .. max]", "[lowest .. max)", none, "(0 .. max]", "[lowest .. max)"},
      {boolean, i(2), none, all, none, none, all},
      {boolean, dec(-1), all, none, none, all, none},
      {tt_string, text(u"a"), "(a .. max]", "[lowest .. a)", "[a .. a]", "[a .. max]", "[lowest .. a]"},
      {tt_string, db_string::tt_string(), "(empty .. max]", "[lowest .. empty)", "[empty .. empty]", "[empty .. max]",
       "[lowest .. empty]"},
      {set_specifier, SetSpecifier{u"b"}, "(b .. max]", "[lowest .. b)", "[b .. b]", "[b .. max]", "[lowest .. b]"},
      {binary, Binary{{'a'}}, "(a .. max]", "[lowest .. a)", "[a .. a]", "[a .. max]", "[lowest .. a]"},
      {obj_ref, OV_OBJ_REF{9, 16}, "(9 .. max]", "[lowest .. 9)", "[9 .. 9]", "[9 .. max]", "[lowest .. 9]"},
  };
  for (const auto& each : cases) {
    using enum key_operation;
    const std::pair<key_operation, std::string> expected[] = {{greater, each.greater},
                                                              {less, each.less},
                                                              {equal, each.equal},
                                                              {at_least, each.at_least},
                                                              {at_most, each.at_most}};
    for (const auto& [op, interval] : expected) {
      const std::string label = tests::spell(each.bound) + " op " + std::to_string(static_cast<int>(op));
      EXPECT_EQ(ends(each.column, {op, each.bound, false}), interval) << label;
      const std::string without_null = interval[0] == '[' && interval[1] == 'l' ? "(" + interval.substr(1) : interval;
      EXPECT_EQ(ends(each.column, {op, each.bound, true}), without_null) << label << " rejects NULL";
    }
  }
}

TEST_F(ScanKeys, null_is_the_lowest_key_unless_it_is_rejected) {
  const char* const expected[] = {
      "(lowest .. max]", "[lowest .. lowest)", "[lowest .. lowest]", all, "[lowest .. lowest]", none};
  for (const type_code column : {type_code::uint64, type_code::boolean, type_code::tt_string, type_code::binary}) {
    for (int op = 0; op <= 5; ++op) {
      EXPECT_EQ(ends(column, {key_operation{op}, null(), false}), expected[op]) << op;
      EXPECT_EQ(ends(column, {key_operation{op}, null(), true}), none) << op;
    }
  }
}

TEST_F(ScanKeys, starts_with_is_for_texts_and_set_specifiers) {
  using enum type_code;
  EXPECT_EQ(ends(tt_string, {starts_with, text(u"a")}), "[a .. a...)");
  EXPECT_EQ(ends(tt_string, {starts_with, text(u"")}), "[empty .. max)");
  EXPECT_EQ(ends(tt_string, {starts_with, db_string::tt_string()}), "[empty .. max)");
  EXPECT_EQ(ends(set_specifier, {starts_with, SetSpecifier{u"a"}}), "[a .. a...)");
  EXPECT_EQ(ends(binary, {starts_with, Binary{{'a'}}}), "7020");
  EXPECT_EQ(ends(obj_ref, {starts_with, OV_OBJ_REF{1, 1}}), "7020");
  for (const type_code column : {uint64, int64, decimal, boolean}) {
    EXPECT_EQ(ends(column, {starts_with, i(1)}), "Supposedly unreachable");
    EXPECT_EQ(ends(column, {starts_with, d(nan)}), "Supposedly unreachable");
    EXPECT_EQ(ends(column, {starts_with, text(u"a")}), "7020") << "the alternative is looked at first";
  }
}

TEST_F(ScanKeys, bounds_of_other_alternatives_are_refused) {
  using enum type_code;
  const value samples[] = {true, text(u"a"), i(1), Binary{{'a'}}, OV_OBJ_REF{1, 1}, SetSpecifier{u"a"}};
  const std::pair<type_code, std::size_t> own[] = {{tt_string, 1}, {binary, 3}, {obj_ref, 4}, {set_specifier, 5}};
  for (int op = 0; op < 5; ++op) {
    for (const type_code column : {uint64, int64, decimal, boolean}) {
      for (const std::size_t other : {1, 3, 4, 5}) EXPECT_EQ(ends(column, {key_operation{op}, samples[other]}), "7020");
    }
    for (const auto& [column, accepted] : own) {
      for (std::size_t n = 0; n < std::size(samples); ++n) {
        EXPECT_EQ(ends(column, {key_operation{op}, samples[n], true}) == "7020", n != accepted);
      }
      EXPECT_EQ(ends(column, {key_operation{op}, valueless(), true}), "bad variant");
    }
  }
}

TEST_F(ScanKeys, of_several_bounds_the_tighter_one_and_the_exclusive_one_win) {
  using enum key_operation;
  const struct {
    std::vector<condition> conditions;
    const char* expected;
  } cases[] = {
      {{{at_least, i(5)}, {greater, i(5)}}, "(5 .. max]"},
      {{{greater, i(5)}, {at_least, i(5)}}, "(5 .. max]"},
      {{{less, i(5)}, {at_most, i(5)}, {less, i(6)}}, "[lowest .. 5)"},
      {{{greater, i(3)}, {at_least, i(4)}, {at_most, i(9)}, {less, i(12)}}, "[4 .. 9]"},
      {{{equal, i(5)}, {greater, d(4.5)}}, "[5 .. 5]"},
      {{{greater, i(7)}, {less, i(3)}}, "(7 .. 3)"},
      {{{equal, i(7)}, {equal, i(3)}}, "[7 .. 3]"},
      {{{at_least, i(5)}, {less, i(5)}}, "[5 .. 5)"},
      // Nothing widens an interval that a NULL or a NaN has emptied.
      {{{equal, null(), true}, {at_most, i(9)}, {equal, null()}}, none},
      {{{less, d(nan)}, {greater, i(3)}}, "(3 .. lowest)"},
      {{{equal, null(), true}, {less, text(u"a")}}, "7020"},
  };
  for (const auto& each : cases) EXPECT_EQ(ends({{type_code::int64, true}}, {each.conditions}), each.expected);
}

TEST_F(ScanKeys, columns_without_conditions_follow_the_ends) {
  using enum key_operation;
  using enum type_code;
  const key_column up{uint64, true};
  const key_column down{uint64, false};
  const key_column text_up{tt_string, true};
  const struct {
    std::vector<key_column> columns;
    std::vector<std::vector<condition>> ranges;
    const char* ascending;
    const char* descending;
  } cases[] = {
      {{up}, {}, "[lowest .. max]", "[max .. lowest] down"},
      {{down}, {}, "[max .. lowest]", "[lowest .. max] down"},
      {{up, down, text_up}, {}, "[lowest,max,lowest .. max,lowest,max]", "[max,lowest,max .. lowest,max,lowest] down"},
      {{down}, {{{greater, i(5)}, {at_most, i(9)}}}, "[9 .. 5)", "(5 .. 9] down"},
      {{up, up}, {{{equal, i(5)}}}, "[5,lowest .. 5,max]", "[5,max .. 5,lowest] down"},
      {{up, down}, {{{equal, i(5)}}}, "[5,max .. 5,lowest]", "[5,lowest .. 5,max] down"},
      // An exclusive end leaves out every key that begins with it.
      {{up, up}, {{{greater, i(5)}}}, "(5,max .. max,max]", "[max,max .. 5,max) down"},
      {{up, down}, {{{greater, i(5)}, {less, i(9)}}}, "(5,lowest .. 9,max)", "(9,max .. 5,lowest) down"},
      {{down, up}, {{{greater, i(5)}}}, "[max,lowest .. 5,lowest)", "(5,lowest .. max,lowest] down"},
      // A list without conditions stands for every value; the ends are those of the last list.
      {{up, up}, {{}, {{equal, i(5)}}}, "[lowest,5 .. max,5]", "[max,5 .. lowest,5] down"},
      {{up, up}, {{{equal, i(5)}}, {{greater, i(3)}}}, "(5,3 .. 5,max]", "[5,max .. 5,3) down"},
      {{up, up}, {{{greater, i(5)}}, {{at_least, i(3)}}}, "[5,3 .. max,max]", "[max,max .. 5,3] down"},
      // Behind a column that lets nothing pass the ends stay apart.
      {{up, up},
       {{{equal, null(), true}}, {{equal, i(5)}}},
       "(lowest,max .. lowest,lowest)",
       "(lowest,lowest .. lowest,max) down"},
      {{up, down},
       {{{at_least, i(5)}, {less, i(5)}}, {{equal, i(3)}}},
       "(5,lowest .. 5,max)",
       "(5,max .. 5,lowest) down"},
      {{up, up, up},
       {{{equal, d(nan)}}, {}, {}},
       "(lowest,max,max .. lowest,lowest,lowest)",
       "(lowest,lowest,lowest .. lowest,max,max) down"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(ends(each.columns, each.ranges), each.ascending);
    EXPECT_EQ(ends(each.columns, each.ranges, false), each.descending);
  }
}

TEST_F(ScanKeys, floating_key_columns_are_refused_before_a_bound_is_looked_at) {
  const key_column number{type_code::uint64, true};
  for (const auto& [type, message] : {std::pair(type_code::float32, "Index key of float type is not supported"),
                                      std::pair(type_code::float64, "Index key of double type is not supported")}) {
    const key_column floating{type, true};
    EXPECT_EQ(ends({floating}, {{{key_operation::equal, valueless()}}}), message);
    EXPECT_EQ(ends({number, floating}, {}), message) << "behind the columns with conditions, too";
    EXPECT_EQ(ends({number, floating}, {{{key_operation::equal, text(u"a")}}}), "7020");
  }
  EXPECT_EQ(ends({number}, {{}, {}}), "invalid vector<T> subscript") << "more lists than columns";
}

}  // namespace
}  // namespace tests
