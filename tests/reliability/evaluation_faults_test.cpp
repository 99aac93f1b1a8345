// Trees of nodes and operators over rows that are given, with every evaluation of an operand failing in turn: what it
// throws leaves unchanged, every enumerator goes, and the tree runs again as if nothing had happened.
#include <iostream>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/keeping/kept_side.hpp"
#include "ov_sql_executor/execution/keeping/lookup_filter.hpp"
#include "ov_sql_executor/expressions/arithmetic.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/logical.hpp"

namespace tests {
namespace {

// Not an exception of the library nor of the standard: nothing in between may take it for its own.
struct evaluation_failure {};

// Counts down to the evaluation that fails; at 0 none does.
std::uint64_t evaluations_left = 0;

struct failing_operand final : operators::operator_base {
  explicit failing_operand(operator_ptr operand) : of(std::move(operand)) {}
  value evaluate(execution_context& context) const override {
    if (evaluations_left != 0 && --evaluations_left == 0) throw evaluation_failure();
    return of->evaluate(context);
  }
  operator_ptr of;
};

operator_ptr at(std::int16_t position) { return std::make_unique<failing_operand>(column(position)); }
operator_ptr at_constant(std::int16_t position) { return std::make_unique<failing_operand>(constant(position)); }
template <class Operator, class... Operands>
operator_ptr make(Operands... operands) {
  return std::make_unique<failing_operand>(std::make_unique<Operator>(std::move(operands)...));
}
template <class Node, class... Arguments>
std::unique_ptr<node> tree(Arguments... arguments) {
  return std::make_unique<Node>(std::move(arguments)...);
}
class EvaluationFaults : public testing::Test {
 protected:
  // Forty rows (number, text, number): duplicates, NULLs, texts that own memory.
  std::unique_ptr<node> input(int step = 1) {
    rows all;
    for (std::int64_t n = 0; n < 40; n += step) {
      const std::string name = n % 7 == 0 ? "NULL" : "'a-text-that-owns-its-bytes-" + std::to_string(n % 5) + "'";
      all.push_back({i(n * 17 % 11), val(name), n % 6 == 0 ? null() : i(n)});
    }
    return given(std::move(all), log);
  }

  std::vector<aggregate_entry> every_aggregate() {
    namespace kinds = aggregates;
    const auto operand = [](std::int16_t position) { return operators::operand(at(position)); };
    kinds::count_distinct_rows distinct{list_of<operators::operand>(at(1), at(0))};
    return list_of<aggregate_entry>(kinds::sum{operand(0)}, kinds::count_values{operand(2)}, kinds::maximum{operand(1)},
                                    kinds::minimum{operand(1)}, kinds::average_as_double{operand(0)},
                                    kinds::average_as_decimal{operand(2)}, kinds::count_distinct_values{operand(1)},
                                    std::move(distinct));
  }

  struct tree_to_fail {
    const char* name;
    std::unique_ptr<node> root;
    std::uint64_t first_point;
    std::uint64_t step;
  };

  std::vector<tree_to_fail> trees() {
    using namespace operators;
    const auto small = [] { return make<less_than>(at(0), make<addition>(at(2), at(0))); };
    const auto matching = [] {
      return make<logical_and>(make<equal>(at(0), at(3)), make<logical_not>(make<less_than>(at(5), at(2))));
    };
    const auto chosen = [&](int step) { return tree<filter>(input(step), small()); };
    const auto partners = [&] { return tree<filter>(input(5), matching()); };
    constexpr std::uint64_t width = 3;
    std::vector<tree_to_fail> made;
    const auto add = [&](const char* name, std::unique_ptr<node> root, std::uint64_t first_point = 1,
                         std::uint64_t step = 1) {
      made.push_back({name, std::move(root), first_point, step});
    };
    add("filter", chosen(1));
    add("projection", tree<projection>(input(), list_of(at(1), small(), at(0))));
    add("extension", tree<projection>(input(), list_of(at(1), small()), projection::input_row::extended));
    add("order", tree<order_by>(input(), list_of(at(1), small(), at(2)), std::vector<bool>{true, false, true}));
    add("groups", tree<aggregator>(input(), list_of(at(1), at(0)), every_aggregate()));
    // So many that rows are looked at ahead, which begins after some thousand of them.
    rows many;
    for (std::int64_t n = 0; n < 1050; ++n) {
      const std::int64_t group = n % 3 == 0 || n < 1030 ? n : n % 7;
      many.push_back({i(group), val("'a-text-that-owns-its-bytes-" + std::to_string(group) + "'"), i(n)});
    }
    constexpr std::uint64_t evaluations_of_a_row = 11;
    add("many groups", tree<aggregator>(given(std::move(many), log), list_of(at(1), at(0)), every_aggregate()),
        evaluations_of_a_row * 1024, 7);
    add("inner join", tree<nested_loop_inner_join>(input(5), partners()));
    add("left join", tree<left_join>(input(5), partners(), width));
    add("full join", tree<full_join>(input(5), input(4), width, width, std::optional(matching())));
    const auto hashed = [] {
      auto key = std::make_unique<equal>(at(0), at(3));
      auto keys = list_of<keyed_equality>(keyed_equality{std::move(key), keyed_equality::key_side::right});
      return keyed_condition(std::move(keys), list_of(make<logical_not>(make<less_than>(at(5), at(2)))), true);
    };
    const auto looked_up = [&] { return tree<lookup_filter>(input(4), hashed(), std::nullopt); };
    add("kept inner side",
        tree<nested_loop_inner_join>(input(5), tree<filter>(tree<kept_side>(chosen(9), std::nullopt), matching())));
    add("hashed inner side", tree<left_join>(input(5), looked_up(), width));
    add("first of a hashed inner side",
        tree<left_join>(input(3), tree<limit_offset>(looked_up(), at_constant(1), at_constant(1)), width));
    add("hashed full join", tree<full_join>(input(5), input(4), width, width, hashed()));
    add("limit", tree<limit_offset>(chosen(1), at_constant(0), at_constant(1)));
    add("union", tree<uniond>(chosen(1), tree<projection>(input(), list_of(at(2), at(1), at(0)))));
    add("one row", tree<generative_assignment>(at_constant(1)));
    auto sorted = tree<order_by>(tree<filter>(input(3), matching()), list_of(at(4)), std::vector<bool>{false});
    auto counted =
        tree<aggregator>(tree<left_join>(input(5), std::move(sorted), width), list_of(at(1)), every_aggregate());
    add("groups of sorted inner sides", tree<order_by>(std::move(counted), list_of(at(8)), std::vector<bool>{true}));
    return made;
  }

  const std::shared_ptr<journal> log = std::make_shared<journal>();
};

TEST_F(EvaluationFaults, leave_unchanged_and_the_tree_runs_again) {
  const std::vector<value> constants = vals("u5 u2");
  std::uint64_t points = 0;
  for (const auto& [name, root, first_point, step] : trees()) {
    const rows expected = rows_of(*root, {}, constants);
    ASSERT_FALSE(expected.empty()) << name;
    bool failed = true;
    for (std::uint64_t k = first_point; failed; k += step) {
      SCOPED_TRACE(name + (", evaluation " + std::to_string(k)));
      evaluations_left = k;
      failed = false;
      try {
        ASSERT_EQ(spell(rows_of(*root, {}, constants)), spell(expected));
      } catch (const evaluation_failure&) {
        failed = true;
        ++points;
      }
      evaluations_left = 0;
      ASSERT_EQ(log->alive, 0);
      ASSERT_EQ(spell(rows_of(*root, {}, constants)), spell(expected)) << "run again";
    }
  }
  std::cout << "evaluation failure points: " << points << '\n';
  EXPECT_GE(points, 1000U);
}

}  // namespace
}  // namespace tests
