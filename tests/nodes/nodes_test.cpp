// The nodes that neither join nor group, over nodes and expressions that are not the library's own.
#include <algorithm>
#include <limits>
#include <random>
#include <stdexcept>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/extension.hpp"
#include "ov_sql_executor/execution/filter.hpp"
#include "ov_sql_executor/execution/generative_assignment.hpp"
#include "ov_sql_executor/execution/limit_offset.hpp"
#include "ov_sql_executor/execution/order_by.hpp"
#include "ov_sql_executor/execution/projection.hpp"
#include "ov_sql_executor/execution/uniond.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

class told final : public operators::operator_base {
 public:
  explicit told(std::function<value(const row&)> say) : say_(std::move(say)) {}
  value evaluate(execution_context& context) const override { return say_(context.row_stack); }

 private:
  std::function<value(const row&)> say_;
};
operator_ptr tell(std::function<value(const row&)> say) { return std::make_unique<told>(std::move(say)); }

TEST(Filter, passes_rows_whose_predicate_is_true) {
  const char* const verdicts = "(true i1)(false i2)(NULL i3)(true 'a-text-that-owns-its-bytes')(false i5)";
  const char* const passed = "(true i1)(true 'a-text-that-owns-its-bytes')";
  EXPECT_EQ(run(filter(given(verdicts), column(2)), vals("u8 u9")), passed) << "behind enclosing rows";
  const auto foreign = [] { return tell([](const row& stack) { return stack[0]; }); };
  const filter twice(std::make_unique<filter>(given(verdicts), foreign()), column(0));
  for (int time = 0; time < 2; ++time) EXPECT_EQ(run(twice), passed) << time;
  for (const char* verdict : {"i1", "d1", "'true'", "x'01'"}) {
    EXPECT_EQ(run(filter(given({{true}, {val(verdict)}}), column(0))), "7020") << verdict;
  }
  EXPECT_EQ(run(filter(given({{valueless()}}), column(0))), bad_variant);
}

TEST(Projection, makes_a_row_of_its_expressions) {
  const char* const all = "(i1 'first' NULL)(i2 set'/Short/' true)";
  auto sum =
      tell([](const row& stack) { return i(std::get<std::int64_t>(stack[1]) + std::get<std::int64_t>(stack[0])); });
  EXPECT_EQ(run(projection(given(all), columns({3, 1, 1, 0})), {i(7)}), "(NULL i1 i1 i7)(true i2 i2 i7)");
  EXPECT_EQ(run(projection(given(all), {})), "()()") << "rows of no values";
  // Over a projection, whose rows are made on the row stack.
  auto inner = std::make_unique<projection>(given(all), list_of(column(2), std::move(sum), column(2), column(3)));
  EXPECT_EQ(run(projection(std::move(inner), columns({2, 1, 3, 4, 0})), {i(10)}),
            "(i11 'first' 'first' NULL i10)(i12 set'/Short/' set'/Short/' true i10)");
}

TEST(GenerativeAssignment, makes_one_row_even_of_null) {
  EXPECT_EQ(run(generative_assignment(column(0)), {i(4)}), "(i4)");
  EXPECT_EQ(run(generative_assignment(constant(0)), {}, {null()}), "(NULL)");
  const generative_assignment failing(tell([](const row&) -> value { throw db_util::db_exception{4711}; }));
  execution_context context;
  const std::unique_ptr<enumerator> source(failing.create_enumerator(context));
  EXPECT_EQ(outcome([&] { source->next(context); }), "4711");
  EXPECT_FALSE(source->next(context));
}

TEST(OrderBy, sorts_by_keys_with_a_direction_each_and_null_lowest) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  rows input;
  for (int n = 0; n < 3000; ++n) input.push_back({random() % 9 == 0 ? null() : i(random() % 200), i(random() % 20)});
  const auto number = [](const value& any) { return any.index() == null().index() ? -1 : std::get<std::int64_t>(any); };
  for (const bool first : {true, false}) {
    for (const bool second : {true, false}) {
      const auto key = [&](const row& of) {
        return std::pair(number(of[0]) * (first ? 1 : -1), number(of[1]) * (second ? 1 : -1));
      };
      rows sorted = input;
      std::ranges::sort(sorted, {}, key);
      EXPECT_EQ(run(order_by(given(input), columns({0, 1}), {first, second})), spell(sorted));
      EXPECT_EQ(run(order_by(given(input), columns({2, 3}), {first, second}), vals("i9 i9")), spell(sorted));
    }
  }
  EXPECT_EQ(run(order_by(given(""), columns({0}), {true})), "");
  EXPECT_EQ(run(order_by(given("(i2)(i2)"), {}, {})), "(i2)(i2)") << "no keys";
  EXPECT_EQ(run(order_by(given("(i3)(i1 i5)(i2)"), columns({0}), {true})), "(i1 i5)(i2)(i3)")
      << "a foreign node's rows";
}

// Of a long input it drops most rows on the way, whatever lies between it and the limit; equal ones stay as they came.
TEST(OrderBy, finds_the_first_rows_for_a_limit) {
  std::mt19937 random(8);
  for (const bool first : {true, false}) {
    for (const bool is_shuffled : {true, false}) {
      rows input;
      for (int n = 20000; n > 0; --n) {
        input.push_back({n % 50 == 0 ? null() : val("'key" + std::to_string(n / 2000) + "'"), i(n), i(-n)});
      }
      if (is_shuffled) std::ranges::shuffle(input, random);
      rows sorted = input;
      std::ranges::stable_sort(sorted, {}, [&](const row& each) {
        const std::int64_t number = std::get<std::int64_t>(each[1]);
        const std::int64_t key = number % 50 == 0 ? -1 : number / 2000;
        return first ? key : -key;
      });
      for (const std::uint64_t limit : {1U, 700U, 2000U, 40000U}) {
        auto sorter = std::make_unique<order_by>(given(input), columns({0}), std::vector<bool>{first});
        auto wider = std::make_unique<extension>(std::move(sorter), columns({2}));
        auto narrower = std::make_unique<projection>(std::move(wider), columns({0, 1, 3}));
        const limit_offset node(std::move(narrower), constant(0), constant(1));
        const auto begin = sorted.begin() + 3;
        const auto end = begin + static_cast<std::ptrdiff_t>(std::min<std::uint64_t>(limit, sorted.size() - 3));
        EXPECT_EQ(run(node, {}, {limit, std::uint64_t{3}}), spell(rows(begin, end))) << limit;
      }
    }
  }
}

TEST(OrderBy, drops_references_and_finds_what_cannot_be_compared_behind_them) {
  const auto key = [](const row& stack) -> value {
    const std::uint64_t number = std::get<OV_OBJ_REF>(stack[0]).object_number;
    if (number > 20000) return std::numeric_limits<double>::quiet_NaN();
    return number % 50 == 0 ? null() : value(static_cast<double>(number * 7919 % 10007));
  };
  const auto first_rows = [&](const rows& input, bool ascending, std::uint64_t limit) {
    auto keys = list_of(tell(key), column(0));
    auto sorter = std::make_unique<order_by>(given(input), std::move(keys), std::vector<bool>{ascending, true});
    return run(limit_offset(std::move(sorter), constant(0), constant(1)), {}, {limit, std::uint64_t{0}});
  };
  for (const std::uint64_t count : {8191U, 8192U, 8193U, 20000U}) {
    rows input;
    for (std::uint64_t number = 1; number <= count; ++number) input.push_back({OV_OBJ_REF{number, 7}});
    for (const bool ascending : {true, false}) {
      rows sorted = input;
      std::ranges::sort(sorted, {}, [&](const row& each) {
        const value of = key(each);
        const double number = of.index() == null().index() ? -1 : std::get<double>(of);
        return std::pair(ascending ? number : -number, std::get<OV_OBJ_REF>(each[0]).object_number);
      });
      for (const std::uint64_t limit : {0U, 1U, 500U}) {
        const rows wanted(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(limit));
        EXPECT_EQ(first_rows(input, ascending, limit), spell(wanted)) << count << " rows";
      }
    }
    input.push_back({OV_OBJ_REF{20001, 7}});
    EXPECT_EQ(first_rows(input, false, 1), "7041");
  }
}

// Rows of references are kept in less room while all are of one table and have small numbers.
TEST(OrderBy, gives_references_back_whole) {
  constexpr std::uint64_t large = std::uint64_t{1} << 40;
  const rows lists[] = {{{OV_OBJ_REF{3, 7}}, {OV_OBJ_REF{1, 7}}, {OV_OBJ_REF{2, 7}}},
                        {{OV_OBJ_REF{3, 7}}, {OV_OBJ_REF{large, 7}}, {OV_OBJ_REF{2, large}}},
                        {{OV_OBJ_REF{3, 7}}, {OV_OBJ_REF{1, 8}}, {OV_OBJ_REF{2, 7}}},
                        {{OV_OBJ_REF{3, 7}, OV_OBJ_REF{1, 8}}, {OV_OBJ_REF{2, 7}, i(1)}, {OV_OBJ_REF{1, 7}, null()}}};
  for (const rows& list : lists) {
    rows sorted = list;
    const auto number = [](const row& each) { return std::get<OV_OBJ_REF>(each[0]).object_number; };
    std::ranges::sort(sorted, {}, number);
    const rows found = rows_of(order_by(given(list), columns({0}), {true}));
    EXPECT_EQ(spell(found), spell(sorted));
    for (std::size_t at = 0; at < sorted.size(); ++at) {
      EXPECT_EQ(std::get<OV_OBJ_REF>(found.at(at)[0]).second_word, std::get<OV_OBJ_REF>(sorted[at][0]).second_word);
    }
  }
}

TEST(OrderBy, refuses_what_cannot_be_ordered_when_it_is_opened) {
  const auto log = std::make_shared<journal>();
  check({"(i2)(NULL)(u1) = incompatible types", "(d1)(dnan) = 7041", "(f1)(fnan) = 7041", "(dnan) = ok"},
        [&](const std::string& input) {
          const order_by sorter(given(table(input), log), columns({0}), {true});
          execution_context context;
          return outcome([&] { delete sorter.create_enumerator(context); });
        });
  EXPECT_EQ(log->alive, 0);
}

TEST(LimitOffset, cuts_the_rows) {
  const limit_offset node(given("(i1)(i2)(i3)(i4)(i5)"), constant(0), constant(1));
  check({"u2 u3 = (i4)(i5)", "u2 u0 = (i1)(i2)", "u0 u1 = ", "u18446744073709551615 u4 = (i5)",
         "u18446744073709551615 u18446744073709551615 = ", "i1 dec2700000 = (i3)", "d2.9 true = (i2)(i3)"},
        [&](const std::string& limit_and_offset) { return run(node, {}, vals(limit_and_offset)); });
}

TEST(LimitOffset, looks_at_its_counts_and_skips_when_it_is_opened) {
  const auto log = std::make_shared<journal>();
  const limit_offset node(given("(i1)(i2)(i3)", log), constant(0), constant(1));
  check({"NULL u1 = 7020", "u1 NULL = 7020", "i-1 NULL = 7041", "'' u1 = 1027", "ref0 u1 = 7020"},
        [&](const std::string& limit_and_offset) { return run(node, {}, vals(limit_and_offset)); });
  EXPECT_EQ(log->events, "") << "refused before the child is opened";
  execution_context context{vals("u1 u1"), {}, {}, 0};
  std::unique_ptr<enumerator> rows_left(node.create_enumerator(context));
  EXPECT_EQ(log->alive, 1);
  EXPECT_EQ(spell(*rows_left->next(context)), "i2");
  EXPECT_FALSE(rows_left->next(context));
  EXPECT_EQ(log->alive, 1) << "the child goes with the enumerator";
  rows_left.reset();
  EXPECT_EQ(log->alive, 0);
}

TEST(Union, yields_all_rows_of_the_left_then_of_the_right) {
  const auto log = std::make_shared<journal>();
  EXPECT_EQ(run(uniond(given("(i1)(i2)", log, "l"), given("(i1)", log, "r"))), "(i1)(i2)(i1)");
  EXPECT_EQ(log->events, "+l+r-l-r");
}

}  // namespace
}  // namespace tests
