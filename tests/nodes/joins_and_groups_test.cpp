// The nodes that join and group, over nodes and expressions that are not the library's own.

#include <algorithm>
#include <limits>
#include <map>
#include <random>
#include <stdexcept>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/values/group_key.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

// One row, (n, 1) to (n, k), for each of the k that the outer row's value at a position of the row stack says.
given_rows::source as_many_as(std::size_t position) {
  return [position](const execution_context& context) {
    rows all;
    const auto* count = std::get_if<std::int64_t>(&context.row_stack.at(position));
    for (std::int64_t n = 1; count != nullptr && n <= *count; ++n) all.push_back({i(n)});
    return all;
  };
}

TEST(NestedLoopJoins, make_a_new_inner_enumerator_before_the_old_one_goes) {
  const auto log = std::make_shared<journal>();
  run(nested_loop_inner_join(given("(i1)(i0)(i1)", log, "o"), given(as_many_as(0), log, "i")));
  EXPECT_EQ(std::exchange(log->events, ""), "+o+i+i-i+i-i-i-o");
  // An unmatched left row is emitted when its right side is gone.
  run(left_join(given("(i1)(i0)(i1)", log, "l"), given(as_many_as(0), log, "r"), 1));
  EXPECT_EQ(std::exchange(log->events, ""), "+l+r+r-r-r+r-r-l");
  run(nested_loop_inner_join(given("", log, "o"), given(as_many_as(0), log, "i")));
  run(left_join(given("", log, "l"), given(as_many_as(0), log, "r"), 1));
  EXPECT_EQ(log->events, "+o-o+l-l") << "no inner side without an outer row";
}

std::optional<operator_ptr> same_number() { return std::make_unique<operators::equal>(column(0), column(1)); }

TEST(FullJoin, keeps_the_rows_of_both_sides) {
  const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
      {"(i1)(i2)", "(i2)(i3)", "(i1 NULL)(i2 i2)(NULL i3)", "(i1 i2)(i1 i3)(i2 i2)(i2 i3)"},
      {"(NULL)", "(NULL)", "(NULL NULL)(NULL NULL)", "(NULL NULL)"},
      {"", "(i2)(i3)", "(NULL i2)(NULL i3)", "(NULL i2)(NULL i3)"},
      {"(i1)(i2)", "", "(i1 NULL)(i2 NULL)", "(i1 NULL)(i2 NULL)"}};
  for (const auto& [left, right, with_condition, without] : cases) {
    EXPECT_EQ(run(full_join(given(left), given(right), 1, 1, same_number())), with_condition);
    EXPECT_EQ(run(full_join(given(left), given(right), 1, 1, std::nullopt)), without);
  }
}

TEST(FullJoin, reads_its_sides_again_and_each_at_its_own_depth) {
  const auto depth = [](const execution_context& context) { return rows(2, row{u(context.row_stack.size())}); };
  EXPECT_EQ(run(full_join(given(depth), given(depth), 1, 1, std::nullopt), {i(5)}), "(u1 u1)(u1 u1)(u1 u1)(u1 u1)");
  // It goes on when the right side is empty when it is read again.
  int opened = 0;
  auto right = given([&opened](const execution_context&) { return ++opened == 2 ? rows{} : rows{{i(opened)}}; });
  EXPECT_EQ(run(full_join(given("(i1)(i2)(i3)"), std::move(right), 1, 1, std::nullopt)), "(i1 i1)(i3 i3)");
}

TEST(FullJoin, takes_only_truth_values_and_opens_left_first) {
  EXPECT_EQ(run(full_join(given("(i1)"), given("(i1)"), 1, 1, column(0))), "7020");
  const auto log = std::make_shared<journal>();
  run(full_join(given("(i1)", log, "l"), given("(i1)", log, "r"), 1, 1, same_number()));
  EXPECT_EQ(log->events, "+l+r-r-l") << "a side goes when it is read";
}

namespace kinds = ov::sql_executor::aggregates;

// Checks one aggregate over one column of values.
template <class Kind>
void check_over(std::initializer_list<std::string> cases) {
  check(cases, [](const std::string& words) {
    rows input;
    for (const value& any : vals(words)) input.push_back({any});
    const std::string result =
        run(aggregator(given(input), {}, list_of<aggregate_entry>(Kind{operators::operand(column(0))})));
    return result[0] == '(' ? result.substr(1, result.size() - 2) : result;
  });
}

TEST(Aggregates, of_one_column) {
  // Unsigned numbers add as int64.
  check_over<kinds::sum>({"= NULL", "NULL NULL = NULL", "i1 NULL i3 = i4", "u1 u3 = i4", "u5 = i5",
                          "i1 dec500000 d0.25 = d1.75", "true = true", "true i2 = i3", "i9223372036854775807 i1 = 7041",
                          "u18446744073709551615 = 7041", "true true = 7020", "'z' = 7020", "x'01' = 7020",
                          "ref1 = 7020", "set'a' = 7020"});
  check_over<kinds::count_values>({"i1 NULL i3 = i2", "= i0"});
  auto counted = list_of<aggregate_entry>(kinds::count_values{operators::operand(column(0))});
  EXPECT_EQ(run(aggregator(given(rows{{valueless()}}), {}, std::move(counted))), bad_variant) << "no value, not NULL";
  check_over<kinds::maximum>({"i2 NULL i5 = i5", "= NULL", "'y' 'ya-text-that-needs-more-room' 'z' = 'z'",
                              "d1 dnan = 7041", "i1 d1 = incompatible types", "i1 u1 = incompatible types"});
  check_over<kinds::minimum>({"NULL i4 i2 = i2", "'z' 'y-longer' 'y' = 'y'", "NULL = NULL", "dnan = dnan"});
  check_over<kinds::average_as_double>({"i1 NULL u2 = d1.5", "= NULL", "'z' = 1027"});
  // A half rounds away from zero; a sum beyond the Decimal range cannot be divided, one beyond 64 bits not be made.
  check_over<kinds::average_as_decimal>({"i1 u2 = dec1500000", "NULL = NULL", "dec1 dec2 = dec2", "d1.5 = 1027",
                                         "dec9223372036854775807 dec9223372036854775807 = 7041",
                                         "dec4398046511103999999 dec4398046511103999999 = 7041"});
  check_over<kinds::count_distinct_values>(
      {"i1 NULL i1 NULL = u2", "d0 d-0 dnan dnan = u3", "i5 u5 = u2", "ref1 ref1 = u1", "= u0"});
}

TEST(Aggregator, groups_in_first_seen_order_with_aggregates_before_keys) {
  const char* const input = "(i5 i1 i1)(NULL i1 i1)(i5 i1 i2)(u5 NULL NULL)(NULL i1 i1)(i5 i1 i1)";
  const auto counts = [] {
    kinds::count_distinct_rows distinct;
    for (operator_ptr& each : columns({1, 2})) distinct.arguments.emplace_back(std::move(each));
    return list_of<aggregate_entry>(kinds::count_rows{}, std::move(distinct));
  };
  EXPECT_EQ(run(aggregator(given(input), columns({0}), counts())), "(i3 u2 i5)(i2 u1 NULL)(i1 u1 u5)");
  EXPECT_EQ(run(aggregator(given(input), {}, counts())), "(i6 u3)");
  EXPECT_EQ(run(aggregator(given(""), columns({0}), counts())), "");
  EXPECT_EQ(run(aggregator(given(""), {}, counts())), "(i0 u0)");
  EXPECT_EQ(run(aggregator(given(input), columns({1, 0}), {})), "(i1 i5)(i1 NULL)(NULL u5)");
}

// Makes values that equal others, and values that look as if they did.
value any_key(std::mt19937& random, std::int64_t different) {
  const std::int64_t number = static_cast<std::int64_t>(random() >> 1) % different;
  const row list = vals("d-0 d0 dnan NULL bytes'800102' x'800102'");
  const value numbers[] = {i(number), u(number), static_cast<double>(number), static_cast<float>(number),
                           OV_OBJ_REF{static_cast<std::uint64_t>(number), random()}};
  const std::size_t kind = random() % (list.size() + std::size(numbers));
  return kind < list.size() ? list[kind] : numbers[kind - list.size()];
}

// A few groups are looked through, and many are found by their hashes.
TEST(Aggregator, finds_its_groups_again_and_no_other) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    const std::int64_t different = round % 2 == 0 ? 2 : 1000;
    const std::vector<std::int16_t> keys =
        round % 3 == 0 ? std::vector<std::int16_t>{0} : std::vector<std::int16_t>{0, 1};
    rows input;
    rows groups;  // each after the number of its rows
    for (std::size_t left = round == 1 ? 3000 : random() % 200; left != 0; --left) {
      row& key = input.emplace_back();
      for (std::size_t n = 0; n < keys.size(); ++n) key.push_back(any_key(random, different));
      const auto is_same = [&key](const row& group) {
        return std::equal(key.begin(), key.end(), group.begin() + 1,
                          [](const value& own, const value& other) { return key_equal(view_of(own), view_of(other)); });
      };
      auto found = std::find_if(groups.begin(), groups.end(), is_same);
      if (found == groups.end()) {
        found = groups.insert(found, {i(0)});
        found->insert(found->end(), key.begin(), key.end());
      }
      ++std::get<std::int64_t>(found->front());
    }
    const aggregator root(given(input), columns(keys), list_of<aggregate_entry>(kinds::count_rows{}));
    ASSERT_EQ(run(root), spell(groups)) << "round " << round;
  }
}

// Lends a text of the row as the core does: until it lends another one to anybody.
struct lent_column final : operators::lending_operator {
  explicit lent_column(std::int16_t position) : at(position) {}
  value_view lend(execution_context& context, value& /*room*/) const override {
    static std::vector<std::uint8_t> buffer;
    const value_view seen = view_of(context.row_stack.at(static_cast<std::size_t>(at)));
    const auto* const text = std::get_if<text_view>(&seen);
    if (text == nullptr) return seen;
    std::fill(buffer.begin(), buffer.end(), std::uint8_t{0xFF});
    buffer.assign(text->bytes.begin(), text->bytes.end());
    return text_view{{buffer.data(), buffer.size()}};
  }
  std::int16_t at;
};

// Rows of many groups are looked at before they are taken; those of each group on its own are few and taken at once.
TEST(Aggregator, takes_rows_of_many_groups_as_those_of_each_alone) {
  std::mt19937 random(4);
  const auto any_text = [&] { return text(std::u16string(random() % 90, static_cast<char16_t>(u'a' + random() % 3))); };
  const auto key_of = [](std::size_t group) {
    const std::string number = std::to_string(group);
    if (group % 3 == 0) return val("i" + number);
    if (group % 3 == 1) return val("x'" + std::string(number.size() % 2, '0') + number + "'");
    return val("'a-key-that-owns-its-bytes-" + number + "'");
  };
  std::vector<rows> of_group(3000);
  std::vector<std::size_t> seen;  // the groups, in this order
  rows input;
  for (int n = 0; n < 15'000; ++n) {
    const std::size_t group = random() % of_group.size();
    if (of_group[group].empty()) seen.push_back(group);
    const value number = random() % 4 == 0 ? null() : i(static_cast<std::int64_t>(random() % 5) - 2);
    const value other = random() % 2 == 0 ? any_text() : val(random() % 2 == 0 ? "set'ab'" : "x'AB'");
    input.push_back({key_of(group), number, any_text(), other});
    of_group[group].push_back(input.back());
  }
  const auto grouped = [](const rows& all) {
    const auto lent = [](std::int16_t position) { return std::make_unique<lent_column>(position); };
    const auto operand = [](operator_ptr of) { return operators::operand(std::move(of)); };
    kinds::count_distinct_rows distinct{list_of<operators::operand>(column(3), lent(2))};
    auto aggregates = list_of<aggregate_entry>(
        kinds::count_rows{}, kinds::sum{operand(column(1))}, kinds::count_values{operand(lent(1))},
        kinds::maximum{operand(lent(2))}, kinds::minimum{operand(column(2))}, std::move(distinct),
        kinds::average_as_double{operand(column(1))}, kinds::count_distinct_values{operand(column(3))},
        kinds::average_as_decimal{operand(lent(1))}, kinds::count_rows{});
    return rows_of(aggregator(given(all), list_of<operator_ptr>(lent(0), column(0)), std::move(aggregates)));
  };
  EXPECT_EQ(rows_of(aggregator(given(input), columns({0}), {})).size(), seen.size());
  const rows found = grouped(input);
  ASSERT_EQ(found.size(), seen.size());
  for (std::size_t n = 0; n < seen.size(); ++n) ASSERT_EQ(spell(found[n]), spell(grouped(of_group[seen[n]]).at(0)));
}

// Throws for NULL.
struct picky_column final : operators::operator_base {
  explicit picky_column(std::int16_t position) : of(column(position)) {}
  value evaluate(execution_context& context) const override {
    value found = of->evaluate(context);
    if (std::holds_alternative<operator_library::NullValue>(found)) throw std::runtime_error("picky");
    return found;
  }
  operator_ptr of;
};

// What fails first is what is thrown: a row before, an aggregate before, also when rows have been looked at ahead.
TEST(Aggregator, fails_among_many_groups_as_among_few) {
  std::mt19937 random(5);
  const auto failure = [](const rows& all) {
    auto aggregates = list_of<aggregate_entry>(kinds::sum{operators::operand(column(1))},
                                               kinds::maximum{operators::operand(std::make_unique<picky_column>(2))},
                                               kinds::count_distinct_values{operators::operand(column(0))},
                                               kinds::average_as_double{operators::operand(column(1))});
    auto child = std::make_unique<filter>(given(all), std::make_unique<picky_column>(3));
    const std::string result = run(aggregator(std::move(child), columns({0}), std::move(aggregates)));
    return result[0] == '(' ? "none" : result;
  };
  rows before;
  for (std::int64_t group = 0; group < 1500; ++group) before.push_back({i(group), i(0), i(0), true});
  std::map<std::string, int> counts;
  for (int round = 0; round < 200; ++round) {
    rows few;
    for (int left = 40; left != 0; --left) {
      row& added = few.emplace_back(vals("i7 i1 i1 true"));
      const auto kind = random() % 200;
      if (kind == 0) added[1] = i(std::numeric_limits<std::int64_t>::max());
      if (kind == 1) added[1] = val("'no number'");
      if (kind == 2 || kind == 3) added[2] = kind == 2 ? null() : u(1);
      if (kind == 4) added[3] = null();
      if (kind == 5) added = {i(7), i(std::numeric_limits<std::int64_t>::max()), null(), true};
    }
    rows many = before;
    many.insert(many.end(), few.begin(), few.end());
    const std::string expected = failure(few);
    ASSERT_EQ(failure(many), expected) << "round " << round;
    ++counts[expected];
  }
  EXPECT_EQ(counts.size(), 5U) << "none, overflow, no number, incompatible types, picky";
}

}  // namespace
}  // namespace tests
