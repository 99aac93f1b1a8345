// Compares scans of an index, on the embedded core, with a filter over all objects.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <regex>

#include "core_shim/core_shim.hpp"
#include "outcome.hpp"
#include "ov_sql_executor/database/column_read.hpp"
#include "ov_sql_executor/execution/key_ranges/key_condition.hpp"
#include "ov_sql_executor/execution/key_ranges/scan_keys.hpp"
#include "ov_sql_executor/execution/scan.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"
#include "ov_sql_executor/values/comparison.hpp"
#include "ov_sql_executor/values/encoded_text.hpp"
#include "ov_sql_executor/values/sort_order.hpp"
#include "ovcoredb/database.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

struct condition {
  key_operation op;
  value bound;
  bool rejects_null = false;
};
using conditions = std::vector<condition>;

// Reads conditions on key columns: "> i5, <= d9.5 | ^ 'ab' !" are two on the first column and one on the second. The
// signs are > < = >= <= and ^ for "starts with"; an exclamation mark rejects NULL.
std::vector<conditions> conditions_in(std::string_view words) {
  const std::vector<std::string> signs = split("> < = >= <= ^");
  std::vector<conditions> lists;
  for (const std::string& list : split(words, '|')) {
    conditions& made = lists.emplace_back();
    for (const std::string& each : split(list, ',')) {
      const std::vector<std::string> parts = split(each);
      if (parts.empty()) continue;
      const auto op = std::find(signs.begin(), signs.end(), parts[0]) - signs.begin();
      made.push_back({key_operation{static_cast<std::int32_t>(op)},
                      parts[1] == "valueless" ? valueless() : val(parts[1]), parts.size() == 3});
    }
  }
  return lists;
}

// Makes the conditions that a scan takes; the bounds become constants of the run.
std::vector<std::vector<key_condition>> key_conditions(const std::vector<conditions>& lists, execution_context& run) {
  std::vector<std::vector<key_condition>> made(lists.size());
  for (std::size_t n = 0; n < lists.size(); ++n) {
    for (const condition& each : lists[n]) {
      const auto position = static_cast<std::int16_t>(run.constants.size());
      run.constants.push_back(each.bound);
      made[n].push_back({each.op, each.rejects_null,
                         operators::operand(std::make_unique<operators::value_from_context>(
                             operators::context_list::constants, position))});
    }
  }
  return made;
}

bool is_null(const value& any) { return std::holds_alternative<NullValue>(any); }

// NULL is below every value of a column and equal to itself, unless the condition rejects it; only a number below all
// that the column can hold is lower. A NaN matches nothing.
std::partial_ordering order_of(const value& key, const value& bound, const value& least) {
  if (is_null(bound)) return is_null(key) ? std::partial_ordering::equivalent : std::partial_ordering::greater;
  if (!is_null(key)) return *compare_values(view_of(key), view_of(bound));
  if (is_null(least)) return std::partial_ordering::less;
  const std::partial_ordering from_least = *compare_values(view_of(least), view_of(bound));
  return from_least == 0 ? std::partial_ordering::less : from_least;
}

bool matches(const value& key, const condition& each, const value& least) {
  const bool a_null = is_null(key) || is_null(each.bound);
  if (each.rejects_null && a_null) return false;
  if (each.op == key_operation::starts_with) {
    const auto* specifier = std::get_if<SetSpecifier>(&key);
    if (a_null) return false;
    if (specifier != nullptr) return specifier->units.starts_with(std::get<SetSpecifier>(each.bound).units);
    return text_starts_with(std::get<text_view>(view_of(key)), std::get<text_view>(view_of(each.bound)));
  }
  const std::partial_ordering order = order_of(key, each.bound, least);
  const bool by_operation[] = {order > 0, order < 0, order == 0, order >= 0, order <= 0};
  return by_operation[static_cast<int>(each.op)];
}

// The key types by column, from the object's number and its set specifier on, and the least number that each holds, if
// any.
constexpr type_code key_types[] = {type_code::uint64, type_code::set_specifier, type_code::uint64,
                                   type_code::int64,  type_code::decimal,       type_code::tt_string,
                                   type_code::binary, type_code::obj_ref,       type_code::boolean};
constexpr std::size_t key_count = std::size(key_types);
const row least_keys = vals("false NULL false i-9223372036854775808 dec-4398046511103999999 NULL NULL NULL false");

// Objects of few different values, many of them NULL.
class Scan : public testing::Test {
 protected:
  using key_list = std::vector<std::pair<std::size_t, bool>>;  // ascending, or not
  using numbers = std::vector<std::uint64_t>;

  Scan() {
    using enum ovcoredb::column_type;
    database.create_table(
        {u"/T/", {uint64, int64, decimal, ovcoredb::column_type::text, binary, reference, boolean}, 0, table});
    database.create_table({u"/T/D/", {int64}, table, derived});
    database.create_table({u"/U/", {}, 0, other});
    refill();
    core_shim::reset();
  }
  ~Scan() override {
    EXPECT_EQ(core_shim::open_iterators(), 0U);
    EXPECT_EQ(core_shim::wrong_frees(), 0U);
  }

  std::size_t below(std::size_t bound) { return random() % bound; }
  std::int64_t small() { return static_cast<std::int64_t>(below(9)) - 4; }
  std::int64_t millionths() { return small() / 4 * 250'000 + small() / 2; }  // neighbours

  // Makes texts long enough to need several chunks now and then.
  std::u16string letters() {
    std::u16string units(below(6) == 0 ? 32 + below(4) * 15 : 0, u'a');
    for (std::size_t left = below(4); left != 0; --left) units += u"aB\u00E9\u4E2D\xD800"[below(5)];
    return units;
  }
  byte_list bytes() {
    byte_list made(below(3) * below(20));
    for (std::uint8_t& byte : made) byte = below(8) == 0 ? 0xFF : 0x00;
    return made;
  }

  // Leaves some of the objects and adds others: of the table, of one that derives from it, and of one that has nothing
  // to do with it, in runs.
  void refill() {
    objects.resize(below(objects.size() + 1));
    database.remove_after(objects.size());
    add_object(table);
    for (const std::size_t count = below(3) == 0 ? 700 : 150; objects.size() < count;) {
      const std::uint16_t run_of[] = {table, derived, other};
      const std::uint16_t tag = run_of[below(3)];
      for (std::size_t left = 1 + (below(4) == 0 ? below(100) : below(3)); left != 0; --left) add_object(tag);
    }
  }

  void add_object(std::uint16_t tag) {
    if (tag == other) {
      database.insert(tag, {});
      return objects.push_back({});
    }
    const std::u16string units = letters();
    const byte_list image = bytes();
    row keys = {u(objects.size() + 1),
                SetSpecifier{tag == table ? u"/T/" : u"/T/D/"},
                or_one_of("u18446744073709551615", u(below(9))),
                or_one_of("i-9223372036854775808 i9223372036854775807", i(small())),
                or_one_of("dec-4398046511103999999 dec4398046511103999999", Decimal{millionths()}),
                text(units),
                Binary{image},
                OV_OBJ_REF{below(9), below(3)},
                below(2) == 0};
    std::vector<ovcoredb::cell> cells = {std::get<std::uint64_t>(keys[2]),
                                         std::get<std::int64_t>(keys[3]),
                                         ovcoredb::decimal{std::get<Decimal>(keys[4]).raw},
                                         std::u16string_view(units),
                                         std::span<const std::uint8_t>(image),
                                         std::get<OV_OBJ_REF>(keys[7]),
                                         std::get<bool>(keys[8])};
    for (std::size_t key = 2; key < key_count; ++key) {
      if (below(5) != 0) continue;
      keys[key] = null();
      cells[key - 2] = {};
    }
    if (tag == derived) cells.emplace_back();
    ASSERT_EQ(database.insert(tag, cells).object_number, objects.size() + 1);
    objects.push_back(std::move(keys));
  }

  value or_one_of(const char* rare, value usual) {
    const row all = vals(rare);
    return below(6) == 0 ? all[below(all.size())] : usual;
  }

  // Makes a number that may lie between two values of the column, at its limits or beyond them.
  value number() {
    const auto halves = static_cast<double>(2 * millionths() + small() / 4);  // of millionths
    const value kinds[] = {u(below(9)),
                           i(small()),
                           Decimal{small() * 125'000},
                           static_cast<double>(small()) / 2,
                           halves / 2'000'000,
                           static_cast<float>(small()) / 4};
    return or_one_of(
        "u18446744073709551615 i-9223372036854775808 u9223372036854775808 d9223372036854775808 d-inf f1e30 "
        "d18446744073709551616 fnan dnan d-0 dec-1 dec1000001 d0.1 d-0.0000015 u4398046511104 true "
        "d-4398046511104 dec-4398046511103999999 dec4398046511103999999 dec9223372036854775807",
        kinds[below(std::size(kinds))]);
  }

  value bound_for(std::size_t key) {
    if (below(8) == 0) return null();
    if (key_types[key] == type_code::tt_string) return text(letters());
    if (key_types[key] == type_code::binary) return Binary{bytes()};
    if (key_types[key] == type_code::set_specifier) return or_one_of("set'/T/' set'/T/D/'", SetSpecifier{letters()});
    return key_types[key] == type_code::obj_ref ? OV_OBJ_REF{below(9), 99} : number();
  }

  conditions conditions_for(std::size_t key) {
    conditions made;
    const bool is_text = key_types[key] == type_code::tt_string || key_types[key] == type_code::set_specifier;
    for (std::size_t left = below(4); left != 0; --left) {
      made.push_back({static_cast<key_operation>(below(is_text ? 6 : 5)), bound_for(key), below(2) == 0});
    }
    return made;
  }

  std::uint64_t index_over(const key_list& keys) {
    ovcoredb::index_definition index{table, {}};
    for (const auto& [key, ascending] : keys) {
      index.columns.push_back({static_cast<std::uint32_t>(key), ascending});
    }
    return database.create_index(index);
  }

  // Returns the object numbers that a scan yields.
  numbers scanned(std::uint64_t index, const key_list& keys, const std::vector<conditions>& ranges, bool ascending) {
    execution_context run{{}, {}, {u(7)}, context.handle()};
    std::vector<meta_data::key_column> columns;
    for (const auto& [key, is_ascending] : keys) columns.push_back({key_types[key], is_ascending});
    const scan tested(key_conditions(ranges, run), index, columns, ascending);
    const std::unique_ptr<enumerator> source(tested.create_enumerator(run));
    numbers found;
    while (const std::optional<row> next = source->next(run)) {
      EXPECT_EQ(next->size(), 1U);
      EXPECT_EQ(run.row_stack.size(), 1U);
      const auto& reference = std::get<OV_OBJ_REF>(next->front());
      found.push_back(reference.object_number);
      EXPECT_EQ(spell(objects[found.back() - 1][1]), reference.second_word == table ? "set'/T/'" : "set'/T/D/'");
    }
    EXPECT_FALSE(source->next(run)) << "the end stays the end";
    EXPECT_EQ(run.row_stack.size(), 1U);
    return found;
  }

  // Returns what the index holds and meets all conditions, in the order of the walk.
  numbers filtered(const key_list& keys, const std::vector<conditions>& ranges, bool ascending) const {
    numbers found;
    for (std::uint64_t number = 1; number <= objects.size(); ++number) {
      bool all = !objects[number - 1].empty();
      for (std::size_t n = 0; n < ranges.size(); ++n) {
        const std::size_t column = keys[n].first;
        all = all && std::all_of(ranges[n].begin(), ranges[n].end(), [&](const condition& each) {
                return matches(objects[number - 1][column], each, least_keys[column]);
              });
      }
      if (all) found.push_back(number);
    }
    std::stable_sort(found.begin(), found.end(), [&](std::uint64_t left, std::uint64_t right) {
      for (const auto& [column, is_ascending] : keys) {
        const auto order = sort_order(view_of(objects[left - 1][column]), view_of(objects[right - 1][column]));
        if (order != 0) return is_ascending ? order < 0 : order > 0;
      }
      return false;
    });
    if (!ascending) std::reverse(found.begin(), found.end());
    return found;
  }

  std::uint64_t seed = std::random_device{}();
  testing::ScopedTrace trace{__FILE__, __LINE__, "seed " + std::to_string(seed)};
  std::mt19937_64 random{seed};
  ovcoredb::database database;
  ovcoredb::context context{database};
  static constexpr std::uint16_t table = 16;
  static constexpr std::uint16_t derived = 17;
  static constexpr std::uint16_t other = 18;
  rows objects;  // those of the other table are empty
};

// Equality on all but the last of the columns with conditions restricts exactly. Indexes are as good that were made
// before their objects.
TEST_F(Scan, yields_what_a_filter_yields_in_the_order_of_the_index) {
  std::vector<std::pair<std::uint64_t, key_list>> indexes;
  for (int round = 0; round < 250; ++round) {
    if (round % 10 == 9) refill();
    if (round == 0 || below(3) == 0) {
      key_list keys;
      for (std::size_t column = 0; column < key_count; ++column) keys.emplace_back(column, below(2) == 0);
      std::shuffle(keys.begin(), keys.end(), random);
      keys.resize(1 + below(3));
      indexes.emplace_back(index_over(keys), keys);
    }
    const auto& [index, keys] = indexes[below(indexes.size())];
    for (int part = 0; part < 12; ++part) {
      std::vector<conditions> ranges;
      std::size_t number = 1 + below(objects.size());
      while (objects[number - 1].empty()) number = 1 + below(objects.size());
      const row& like = objects[number - 1];
      const std::size_t equalities = below(keys.size());
      for (std::size_t n = 0; n < equalities; ++n) ranges.push_back({{key_operation::equal, like[keys[n].first]}});
      if (part != 0) ranges.push_back(conditions_for(keys[equalities].first));
      const bool ascending = below(2) == 0;
      ASSERT_EQ(scanned(index, keys, ranges, ascending), filtered(keys, ranges, ascending));
      // Getters remember where objects lie that were asked for one after the other.
      const auto column = static_cast<std::uint32_t>(1 + below(key_count - 1));
      for (const std::size_t last = std::min(number + 3, objects.size()); number <= last; ++number) {
        const row& object = objects[number - 1];
        if (object.empty()) continue;
        value room;
        const OV_OBJ_REF reference{number, table};
        row made;
        db_util::append_column(key_types[column], context.handle(), reference, column, made);
        made.push_back(to_value(db_util::read_column(key_types[column], context.handle(), reference, column, room)));
        ASSERT_EQ(spell(made), spell({object[column], object[column]}));
      }
    }
  }
}

// Without equality a scan may yield more, which a filter takes out. It never yields less, and yields nothing where the
// conditions of one column cannot be met, whatever the others say.
TEST_F(Scan, never_loses_an_object_and_is_empty_where_a_column_is) {
  const key_list keys = {{3, true}, {2, true}, {5, false}};
  const std::uint64_t index = index_over(keys);
  const auto impossible = conditions_in("= NULL ! | = d0.5 | >= i1, < i1 | > i2, <= i-2 ! | < NULL | <= dnan");
  for (int round = 0; round < 400; ++round) {
    std::vector<conditions> ranges = {conditions_for(3), conditions_for(2), conditions_for(5)};
    const bool ascending = below(2) == 0;
    const numbers found = scanned(index, keys, ranges, ascending);
    for (const std::uint64_t number : filtered(keys, ranges, ascending)) {
      ASSERT_NE(std::find(found.begin(), found.end(), number), found.end());
    }
    const std::size_t at = below(2);
    if (const row& like = objects[below(objects.size())]; !like.empty()) ranges[1] = {{key_operation::equal, like[2]}};
    if (below(3) == 0) ranges[0].clear();
    ranges[at] = impossible[below(impossible.size())];
    ranges.resize(at + 1 + below(3 - at));
    ASSERT_EQ(scanned(index, keys, ranges, ascending).size(), 0U);
  }
}

TEST_F(Scan, opens_nothing_when_a_bound_fails_and_ignores_a_free_that_fails) {
  const std::uint64_t index = index_over({{2, true}});
  EXPECT_EQ(outcome([&] { scanned(index, {{2, true}}, conditions_in("= x'' !"), true); }), "7020");
  EXPECT_TRUE(core_shim::opening_flags().empty());
  core_shim::fail_call("orv_iterator_free", 1, 4713);
  EXPECT_EQ(scanned(index, {{2, true}}, {}, true), filtered({{2, true}}, {}, true));
}

bool has_exact_type(std::size_t key, const value& bound) {
  if (key == 3) return std::holds_alternative<std::int64_t>(bound);
  return key == 7 ? std::holds_alternative<OV_OBJ_REF>(bound) : std::holds_alternative<std::uint64_t>(bound);
}

// A key that comes again at once is answered from memory, if it found little and all of that had been asked for.
TEST_F(Scan, restarted_as_a_lookup_finds_what_a_filter_finds) {
  for (int round = 0; round < 30; ++round) {
    const std::size_t key = std::vector<std::size_t>{0, 2, 3, 7}[below(4)];
    const bool ascending = below(2) == 0;
    const std::uint64_t index = index_over({{key, true}});
    execution_context run{{}, {null()}, {}, context.handle()};
    std::vector<std::vector<key_condition>> equality(1);
    equality[0].push_back({key_operation::equal, true,
                           operators::operand(std::make_unique<operators::value_from_context>(
                               operators::context_list::variables, std::int16_t{0}))});
    const scan tested(std::move(equality), index, {{key_types[key], true}}, ascending);
    const auto source = tested.open(run, all_rows);
    bool knows_all = false;
    for (int start = 0; start < 40; ++start) {
      const bool same = below(2) == 0;
      if (!same) run.variables[0] = key == 0 ? u(below(objects.size() + 2)) : bound_for(key);
      const numbers wanted = filtered({{key, true}}, {{{key_operation::equal, run.variables[0], true}}}, ascending);
      core_shim::reset();
      source->restart(run, {});
      const bool is_exact = !is_null(run.variables[0]) && has_exact_type(key, run.variables[0]);
      const bool repeats = same && knows_all && is_exact && wanted.size() <= 4;
      EXPECT_TRUE(!repeats || core_shim::opening_flags().empty());

      std::size_t at = below(3) == 0 ? below(4) : 0;
      const bool skips = at != 0;
      at = source->skip(run, at);
      const std::size_t end = below(4) == 0 ? below(3) : wanted.size() + 1;
      while (at < end && source->push_next(run)) {
        ASSERT_LT(at, wanted.size());
        EXPECT_EQ(std::get<OV_OBJ_REF>(run.row_stack.back()).object_number, wanted[at++]);
        run.row_stack.pop_back();
        EXPECT_TRUE(!source->is_at_end() || at == wanted.size());
      }
      EXPECT_TRUE(end <= wanted.size() || at == wanted.size());
      knows_all = end > wanted.size() && (!skips || (same && knows_all));
    }
  }
}

using meta_data::key_column;
using column_list = std::vector<key_column>;
using enum type_code;
constexpr key_column up{uint64, true};
constexpr key_column down{uint64, false};
constexpr key_column set{set_specifier, true};

class ScanKeys : public testing::Test {
 protected:
  // Says the ends of a scan, "[5,lowest .. 7,max) down", in the order in which they are handed over.
  std::string ends(const column_list& columns, const std::vector<conditions>& ranges, bool ascending = true) {
    return outcome([&] {
      execution_context run{{}, {}, {}, context.handle()};
      scan_keys keys;
      write_scan_keys(key_conditions(ranges, run), columns, ascending, run, keys);
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
  std::string ends(const column_list& columns, std::string_view ranges, bool ascending = true) {
    return ends(columns, conditions_in(ranges), ascending);
  }

  ovcoredb::database database;
  ovcoredb::context context{database};
};

TEST_F(ScanKeys, bounds_of_other_alternatives_are_refused) {
  const row bounds = vals("true 'a' i1 x'61' ref1 set'a'");
  // The last operation, starts_with, is for texts and set specifiers; numbers are none of its business.
  const std::tuple<type_code, const char*, const char*> accepted[] = {
      {uint64, "02", "02"},  {int64, "02", "02"}, {decimal, "02", "02"}, {boolean, "02", "02"},
      {tt_string, "1", "1"}, {binary, "3", ""},   {obj_ref, "4", ""},    {set_specifier, "5", "5"}};
  for (const auto& [type, own, beginning] : accepted) {
    for (int op = 0; op <= 5; ++op) {
      std::string found;
      for (std::size_t n = 0; n < bounds.size(); ++n) {
        if (ends({{type, true}}, {{{key_operation{op}, bounds[n], true}}}) != "7020") found += std::to_string(n);
      }
      EXPECT_EQ(found, op == 5 ? beginning : own) << static_cast<int>(type);
    }
    const bool is_number = own[1] != '\0';
    EXPECT_EQ(ends({{type, true}}, "= valueless !"), bad_variant);
    EXPECT_EQ(ends({{type, true}}, "^ dnan"), is_number ? "Supposedly unreachable" : "7020");
    EXPECT_EQ(ends({{type, true}}, "^ i1"), is_number ? "Supposedly unreachable" : "7020");
  }
  EXPECT_EQ(ends({{int64, true}}, "= NULL !, < 'a'"), "7020");
}

TEST_F(ScanKeys, columns_without_conditions_follow_the_ends) {
  const std::tuple<column_list, const char*, const char*, const char*> cases[] = {
      {{up, down}, "", "[lowest,max .. max,lowest]", "[max,lowest .. lowest,max] down"},
      {{set}, "^ set'a'", "[218480c000000000 .. 2485fffffe80c000)", "(2485fffffe80c000 .. 218480c000000000] down"},
      {{down}, "> i5, <= i9", "[9 .. 5)", "(5 .. 9] down"},
      {{up, down}, "= i5", "[5,max .. 5,lowest]", "[5,lowest .. 5,max] down"},
      // An exclusive end leaves out every key that begins with it.
      {{up, up}, "> i5", "(5,max .. max,max]", "[max,max .. 5,max) down"},
      // A list without conditions stands for every value; the ends are those of the last list.
      {{up, up}, " | = i5", "[lowest,5 .. max,5]", "[max,5 .. lowest,5] down"},
      {{up, up}, "= i5 | > i3", "(5,3 .. 5,max]", "[5,max .. 5,3) down"},
      {{up, up}, "> i5 | = u3", "[5,3 .. max,3]", "[max,3 .. 5,3] down"},
      {{up, up}, "> i5 | >= i3", "[5,3 .. max,max]", "[max,max .. 5,3] down"},
      {{up, up}, "< i5 | = u3", "[lowest,3 .. 5,3]", "[5,3 .. lowest,3] down"},
      // A column that lets nothing pass empties the whole scan, whatever the others say.
      {{up, down}, ">= i5, < i5 | = u3", "(5,3 .. 5,3)", "(5,3 .. 5,3) down"},
      {{up, up}, " | = NULL !", "(lowest,lowest .. lowest,lowest)", "(lowest,lowest .. lowest,lowest) down"},
      {{up, up}, ">= i5 | = NULL !", "(5,lowest .. 5,lowest)", "(5,lowest .. 5,lowest) down"},
      {{up, up}, "= i5 | >= i7, < i7", "(5,7 .. 5,7)", "(5,7 .. 5,7) down"},
      {{up}, "> dnan, >= i3", "(3 .. 3)", "(3 .. 3) down"},
      {{up}, "> i5, = NULL !", "(lowest .. lowest)", "(lowest .. lowest) down"},
      {{up, up}, "= dnan | ", "(lowest,lowest .. lowest,lowest)", "(lowest,lowest .. lowest,lowest) down"},
      {{up, up}, "= dnan | = 'a'", "7020", "7020"},
  };
  for (const auto& [columns, ranges, ascending, descending] : cases) {
    EXPECT_EQ(ends(columns, ranges), ascending);
    EXPECT_EQ(ends(columns, ranges, false), descending);
  }
}

TEST_F(ScanKeys, floating_key_columns_are_refused_before_a_bound_is_looked_at) {
  for (const auto& [type, name] : {std::pair(float32, "float"), std::pair(float64, "double")}) {
    const std::string message = std::string("Index key of ") + name + " type is not supported";
    EXPECT_EQ(ends({{type, true}}, "= valueless"), message);
    EXPECT_EQ(ends({up, {type, true}}, ""), message) << "behind the columns with conditions, too";
    EXPECT_EQ(ends({up, {type, true}}, "= 'a'"), "7020");
  }
  EXPECT_EQ(ends({up}, " | "), bad_subscript) << "more lists than columns";
}

}  // namespace
}  // namespace tests
