// Plans of any depth, for each kind of operation and node one inside the other, and of any width.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>

#include <algorithm>
#include <boost/mp11.hpp>
#include <concepts>
#include <functional>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "outcome.hpp"
#include "ov_sql_executor/planning/plan.hpp"
#include "ov_sql_executor/support/stack_weights.hpp"
#include "ovcoredb/database.hpp"
#include "ovhost/plans/plans.hpp"

namespace tests {
namespace {

// Counts the bytes from the start on that nobody has written to; the sanitizer takes them for somebody's locals.
__attribute__((no_sanitize("address"))) std::size_t count_untouched(const unsigned char* bytes, std::size_t size) {
  std::size_t count = 0;
  while (count < size && bytes[count] == 0) ++count;
  return count;
}

// Memory for stacks, which must not be exceeded.
class stack_memory {
 public:
  explicit stack_memory(std::size_t size) : size_(size) {
    void* const memory = mmap(nullptr, guard + size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED || mprotect(memory, guard, PROT_NONE) != 0) throw std::runtime_error("no memory");
    stack_ = static_cast<unsigned char*>(memory) + guard;
  }
  ~stack_memory() { munmap(stack_ - guard, guard + size_); }
  stack_memory(const stack_memory&) = delete;
  stack_memory& operator=(const stack_memory&) = delete;

  // Runs something on a thread whose stack is the upper end of the memory, so many bytes of it.
  void run(std::size_t size, std::function<void()> action) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack_ + size_ - size, size);
    pthread_t thread{};
    const auto start = [](void* any) -> void* { return (*static_cast<std::function<void()>*>(any))(), nullptr; };
    const int failed = pthread_create(&thread, &attributes, start, &action);
    pthread_attr_destroy(&attributes);
    if (failed != 0) throw std::runtime_error("no thread");
    pthread_join(thread, nullptr);
  }

  std::size_t used() const { return size_ - count_untouched(stack_, size_); }

 private:
  static constexpr std::size_t guard = 65536;
  std::size_t size_;
  unsigned char* stack_;
};

// Returns how much of the stack was used.
std::size_t run_on_stack(std::size_t size, std::function<void()> action) {
  stack_memory memory(size);
  memory.run(size, std::move(action));
  return memory.used();
}

using namespace physical_queryplan;             // NOLINT: the alternatives are what is tested
using namespace physical_queryplan::QueryPlan;  // NOLINT
using ovhost::plan;

// Makes parameters, so that the list of literals stays short: 0 is 1, 1 is true, 2 is false, 3 a text.
expression parameter_of(std::uint64_t number) { return literal(parameter<std::int64_t>{number}); }
expression one() { return parameter_of(0); }
computed<std::int64_t> column(std::uint32_t number) { return {{number, 0, 0, 0}}; }

template <class Operation, class... Operands>
expression make(Operands... operands) {
  Operation any;
  any.operands.reserve(sizeof...(operands));
  (any.operands.push_back(std::move(operands)), ...);
  return any;
}

using nesting = std::function<expression(expression)>;

template <class Operation>
expression unary(expression inner) {
  return make<Operation>(std::move(inner));
}
template <class Operation>
nesting left(std::uint64_t other = 0) {
  return [=](expression inner) { return make<Operation>(std::move(inner), parameter_of(other)); };
}
template <class Operation>
nesting right(std::uint64_t other = 0) {
  return [=](expression inner) { return make<Operation>(parameter_of(other), std::move(inner)); };
}
// Nests the inner one as the condition (0) or as one of the branches (1, 2).
nesting when(ovhost::value_kind kind, std::size_t place) {
  return [=](expression inner) {
    expression any = ovhost::when_as(kind, parameter_of(place == 1 ? 1 : 2), one(), one());
    std::get<Conditional>(any).operands[place] = std::move(inner);
    return any;
  };
}

expression either_and(expression inner) { return right<Or>(2)(right<And>(1)(std::move(inner))); }

using kind = ovhost::value_kind;
const std::pair<const char*, nesting> operations[] = {{"=, left", left<Equality>()},
                                                      {"LIKE, right", right<PatternMatch>(3)},
                                                      {"||, right", right<Concatenation>(3)},
                                                      {"OR, AND", either_and},
                                                      {"*, right", right<Product>()},
                                                      {"IF, second", when(kind::int64, 2)},
                                                      {"+, left", left<Sum>()},
                                                      {"to set", unary<ToSetSpecifier>},
                                                      {"IF, test", when(kind::boolean, 0)},
                                                      {"to text", unary<ToText>},
                                                      {"number of", unary<ObjectNumber>},
                                                      {"IF, first", when(kind::text, 1)},
                                                      {"IS NULL", unary<NullTest>},
                                                      {"prefix of", unary<PrefixPattern>},
                                                      {"NOT", unary<Not>},
                                                      {"to int64", unary<ToInt64>},
                                                      {"type test", right<TypeTest>(1)},
                                                      {"-", unary<Negation>},
                                                      {"<, right", right<Less>()},
                                                      {"LIKE, left", left<PatternMatch>(3)},
                                                      {"||, left", left<Concatenation>(3)},
                                                      {"XOR", right<ExclusiveOr>(2)},
                                                      {"prefix test", right<PrefixTest>(3)},
                                                      {"-, left", left<Difference>()},
                                                      {"<>, left", left<Inequality>()},
                                                      {"<=", left<AtMost>()},
                                                      {">", left<Greater>()},
                                                      {">=", left<AtLeast>()},
                                                      {"IS NOT NULL", unary<NotNullTest>},
                                                      {"/, left", left<Quotient>()},
                                                      {"to bool", unary<ToBool>},
                                                      {"to uint64", unary<ToUint64>},
                                                      {"to decimal", unary<ToDecimal>},
                                                      {"to float", unary<ToFloat>},
                                                      {"to double", unary<ToDouble>}};

expression nest(const nesting& outer, int depth, expression any = one()) {
  for (int i = 0; i < depth; ++i) any = outer(std::move(any));
  return any;
}

plan generate(std::uint32_t number) { return ovhost::generate({one(), column(number)}); }
plan extend(std::uint32_t number, expression any, plan child) {
  std::vector<assignment> assignments(1);  // a list of initial values would be copied, level by level
  assignments[0] = {std::move(any), column(number)};
  return ovhost::extend(std::move(assignments), std::move(child));
}
// Gives one row with columns 1 and 2.
plan two_columns() { return extend(2, one(), generate(1)); }

// The outer node, and its level: some nodes must differ from the one inside.
using plan_nesting = std::function<plan(plan, std::uint32_t)>;
using binary_node = std::function<plan(plan, plan)>;

plan_nesting left(const binary_node& join) {
  return [=](plan inner, std::uint32_t level) { return join(std::move(inner), generate(10 + level)); };
}
plan_nesting right(const binary_node& join) {
  return [=](plan inner, std::uint32_t level) { return join(generate(10 + level), std::move(inner)); };
}

plan order_by_one(plan inner, std::uint32_t) { return ovhost::order({ovhost::ascending(column(1))}, std::move(inner)); }
plan turn(plan inner, std::uint32_t level) {
  return ovhost::project({column(1 + level % 2), column(2 - level % 2)}, std::move(inner));
}
plan add_column(plan inner, std::uint32_t level) { return extend(10 + level, one(), std::move(inner)); }
plan group_by_both(plan inner, std::uint32_t) {
  return ovhost::group({}, {{column(1), column(1)}, {column(2), column(2)}}, std::move(inner));
}
plan aggregate_both(plan inner, std::uint32_t) {
  const aggregation first{{}, {column(1)}, column(1)};
  const aggregation second{{}, {column(2)}, column(2)};
  return ovhost::group({Maximum{first}, Minimum{second}}, {}, std::move(inner));
}
plan pair(plan left, plan right) { return ovhost::full_join(std::nullopt, std::move(left), std::move(right)); }
plan match(plan left, plan right) { return ovhost::full_join(parameter_of(1), std::move(left), std::move(right)); }

const std::pair<const char*, plan_nesting> nodes[] = {
    {"filter", [](plan inner, std::uint32_t) { return ovhost::filter(parameter_of(1), std::move(inner)); }},
    {"projection", turn},
    {"extension", add_column},
    {"groups", group_by_both},
    {"aggregates", aggregate_both},
    {"order", order_by_one},
    {"limit", [](plan inner, std::uint32_t) { return ovhost::limit(one(), {}, std::move(inner)); }},
    {"union, left", [](plan inner, std::uint32_t) { return ovhost::unite(std::move(inner), two_columns()); }},
    {"union, right", [](plan inner, std::uint32_t) { return ovhost::unite(two_columns(), std::move(inner)); }},
    {"join, left", left(ovhost::join)},
    {"join, right", right(ovhost::join)},
    {"left join, left", left(ovhost::left_join)},
    {"left join, right", right(ovhost::left_join)},
    {"full join, left", left(pair)},
    {"full join, right", right(pair)},
    {"full join on condition", right(match)}};

// Inputs of nodes that have none.
constexpr std::size_t leaves = 2;

plan nest(const plan_nesting& outer, int depth, plan any = two_columns()) {
  for (int i = 0; i < depth; ++i) any = outer(std::move(any), static_cast<std::uint32_t>(i));
  return any;
}

plan select(plan any) { return ovhost::project({column(1)}, std::move(any)); }
plan select(expression any) { return ovhost::project({column(3)}, extend(3, std::move(any), generate(1))); }

using ov::sql_executor::runnable;
namespace weights = ov::sql_executor::stack_weights;

const char* const too_deep = "7022 Not implemented error";
constexpr std::size_t small = 256 << 10;
constexpr std::size_t ample = 8 << 20;

runnable planned(plan any) { return std::get<0>(physical_to_exec::Plan(std::move(any))); }

rows run(const runnable& statement) {
  static const ovcoredb::database core;
  static const ovcoredb::context texts(core);
  execution_context context{statement.constants, {i(1), true, false, text(u"")}, {}, texts.handle()};
  const std::unique_ptr<enumerator> open(statement.root->create_enumerator(context));
  rows all;
  while (std::optional<row> next = open->next(context)) all.push_back(std::move(*next));
  return all;
}

std::string rows_of(plan any) {
  return outcome([&] { return run(planned(std::move(any))); });
}

std::string rows_on_small_stack(plan any) {
  std::string rows;
  run_on_stack(small, [&] { rows = rows_of(std::move(any)); });
  return rows;
}

// Every operation and node as deep as is asked for, and what a level of it may use of the stack.
struct nested {
  const char* name;
  std::size_t weight;
  std::function<plan(int)> to;
};
std::vector<nested> all_nested() {
  std::vector<nested> all;
  for (const auto& [name, outer] : operations) {
    const std::size_t levels = name == std::string("OR, AND") ? 2 : 1;
    all.push_back({name, weights::operation * levels, [&o = outer](int depth) { return select(nest(o, depth)); }});
  }
  for (const auto& [name, outer] : nodes) {
    all.push_back({name, weights::node, [&o = outer](int depth) { return select(nest(o, depth)); }});
  }
  return all;
}

// Builds with sanitizers or without optimisation take their time; the first of each kind is as deep with them.
constexpr bool is_slow = weights::guards_frames || !weights::is_optimised;
constexpr int part = is_slow ? 20 : 1;

// What is not in the lists would be neither measured nor refused here.
TEST(DeepPlans, are_made_of_every_operation_and_node) {
  std::set<std::size_t> found;
  for (const auto& [name, outer] : operations) {
    for (expression any = outer(one()); const operation* inner = find_operation(any);) {
      found.insert(any.index());
      any = expression(inner->operands.back());
    }
  }
  boost::mp11::mp_for_each<boost::mp11::mp_iota<boost::mp11::mp_size<expression_variant>>>([&](auto alternative) {
    using held = std::variant_alternative_t<alternative, expression_variant>;
    EXPECT_EQ(found.count(alternative) == 1, (std::derived_from<held, operation>)) << "alternative " << alternative;
  });
  std::set<std::size_t> kinds;
  for (const auto& [name, outer] : nodes) kinds.insert(outer(two_columns(), 0).index());
  EXPECT_EQ(kinds.size() + leaves, std::variant_size_v<predicate_variant>);
}

TEST(DeepPlans, endless_ones_are_refused_and_destroyed) {
  const std::vector<nested> all = all_nested();
  constexpr std::size_t first_node = std::size(operations);
  const auto expect_refused = [&](std::size_t number, int depth) {
    EXPECT_EQ(rows_of(all[number].to(depth)), too_deep) << all[number].name;
    EXPECT_EQ(rows_on_small_stack(all[number].to(depth)), too_deep) << all[number].name;
  };
  expect_refused(0, 1'000'000);
  for (const std::size_t each : {2, 3, 5, 6}) expect_refused(each, 1'000'000 / part);
  expect_refused(first_node, 100'000);
  for (std::size_t each = first_node + 1; each < all.size(); ++each) expect_refused(each, 100'000 / part);
}

TEST(DeepPlans, no_level_uses_more_of_the_stack_than_it_is_said_to) {
  for (const nested& each : all_nested()) {
    const auto used = [&](int depth) {
      plan any = each.to(depth);
      return run_on_stack(ample, [&] { rows_of(std::move(any)); });
    };
    const std::size_t few = used(100);
    EXPECT_LE(used(200), few + 100 * each.weight + 99) << each.name;
  }
}

TEST(DeepPlans, what_is_not_refused_runs_to_the_end_of_the_stack) {
  for (const nested& each : all_nested()) {
    int good = 1;
    for (int step = 256; step > 0; step /= 2) {
      if (rows_on_small_stack(each.to(good + step)) != too_deep) good += step;
    }
    EXPECT_GE(good, 20) << each.name;
  }
}

TEST(DeepPlans, a_plan_made_on_a_large_stack_is_not_run_on_a_small_one) {
  for (const bool is_wide : {false, true}) {
    auto statement = std::make_unique<runnable>(
        planned(is_wide ? select(nest(nodes[0].second, 1000)) : select(nest(left<Sum>(), 1500))));
    EXPECT_EQ(run(*statement).size(), 1U);
    execution_context context{statement->constants, {i(1), true}, {}, 0};
    std::unique_ptr<enumerator> open(statement->root->create_enumerator(context));
    run_on_stack(small, [&] {
      EXPECT_EQ(outcome([&] { return run(*statement); }), too_deep);
      EXPECT_EQ(outcome([&] { open->next(context); }), too_deep);
    });
    EXPECT_TRUE(open->next(context));
    // A later thread's stack may lie where that of the thread that opened it was.
    stack_memory memory(ample);
    memory.run(ample, [&] { open.reset(statement->root->create_enumerator(context)); });
    memory.run(small, [&] { EXPECT_EQ(outcome([&] { open->next(context); }), too_deep); });
    open.reset();
    run_on_stack(small, [&] { statement.reset(); });
  }
}

TEST(DeepPlans, chains_as_they_are_written_work) {
  const std::tuple<nesting, std::uint64_t, const char*> cases[] = {
      {left<Or>(2), 1, "(true)"},        {right<Or>(2), 1, "(true)"},        {right<Or>(2), 2, "(false)"},
      {left<And>(1), 1, "(true)"},       {left<And>(1), 2, "(false)"},       {right<And>(1), 2, "(false)"},
      {left<Sum>(), 0, "(i2001)"},       {right<Sum>(), 0, "(i2001)"},       {right<Difference>(), 0, "(i1)"},
      {when(kind::int64, 2), 0, "(i1)"}, {left<Concatenation>(3), 3, "('')"}};
  for (const auto& [outer, last, result] : cases) {
    const bool is_flat = last == 1 || last == 2;
    const int depth = is_flat ? 20'000 : 2000;
    const auto chain = [&outer = outer, last = last, depth] { return select(nest(outer, depth, parameter_of(last))); };
    EXPECT_EQ(is_flat ? rows_on_small_stack(chain()) : rows_of(chain()), result);
  }
  // Each level looks at its own columns only; all of them in every level would take hours.
  EXPECT_EQ(rows_of(select(nest(add_column, 1500))), "(i1)");
}

TEST(DeepPlans, origins_and_bounds_go_on_for_ever) {
  variable any({7, 0}, nullptr, {1, 2, 3, 4});
  for (int i = 0; i < 1'000'000; ++i) {
    variable outer({7, 0}, nullptr, {1, 2, 3, 4});
    outer.parent = std::make_unique<variable_origin>(variable_origin{std::move(any), {}});
    any = std::move(outer);
  }
  const variable copy = any;
  EXPECT_TRUE(copy == any);
  EXPECT_EQ(structural_order(copy, any), std::strong_ordering::equal);
  (*any.parent)->path.push_back({});
  EXPECT_FALSE(copy == any);
  EXPECT_NE(structural_order(copy, any), std::strong_ordering::equal);

  // A null pointer is no origin.
  variable rootless({7, 0}, nullptr, {1, 2, 3, 4}, std::unique_ptr<variable_origin>());
  const variable plain({7, 0}, nullptr, {1, 2, 3, 4});
  const variable copied = rootless;
  EXPECT_TRUE(rootless == plain && copied == plain && !(rootless == copy));
  EXPECT_EQ(structural_order(rootless, plain), std::strong_ordering::equal);
  EXPECT_NE(structural_order(copy, rootless), std::strong_ordering::equal);
  EXPECT_EQ(rows_of(ovhost::project({rootless}, generate(1))), "7007 Internal error: column is not in scope");

  std::set<bound> bounds;
  for (const std::uint64_t last : {0, 1, 0}) bounds.insert({nest(left<Sum>(), 1'000'000, parameter_of(last)), true});
  EXPECT_EQ(bounds.size(), 2U);
}

TEST(WidePlans, a_hundred_thousand_of_anything) {
  constexpr std::uint32_t count = 100'000;
  EXPECT_EQ(run(planned(ovhost::project({count, column(1)}, generate(1)))).at(0).size(), count);
  Concatenation texts;
  texts.operands.assign(count, parameter_of(3));
  EXPECT_EQ(rows_of(select(std::move(texts))), "('')");
  // Keys by the thousand, all of them looked up again; and a row that has more columns than can be read.
  const auto grouped = [](std::uint32_t items) {
    std::vector<assignment> keys;
    std::vector<expression> read;
    for (std::uint32_t n = 0; n < count; ++n) keys.push_back({one(), column(10 + n)});
    for (std::uint32_t n = 0; n < items; ++n) read.push_back(column(10 + n));
    return ovhost::project(std::move(read), ovhost::group({}, std::move(keys), generate(1)));
  };
  EXPECT_EQ(run(planned(grouped(32768))).at(0).size(), 32768U);
  EXPECT_EQ(rows_of(grouped(32769)), "bad numeric conversion: positive overflow");
}

// Each column is defined by the one before, a million steps if every one were followed to its end.
TEST(WidePlans, references_defined_by_references) {
  constexpr std::uint32_t count = 30'000;
  const auto reference = [](std::uint32_t number) { return computed<OV_OBJ_REF>{{number, 0, 0, 0}}; };
  std::vector<assignment> first = {{literal(parameter<OV_OBJ_REF>{0}), reference(0)}};
  std::vector<assignment> second;
  std::vector<expression> items;
  for (std::uint32_t n = 1; n <= count; ++n) {
    first.push_back({one(), reference(n)});
    second.push_back({reference(n - 1), reference(n)});
    items.push_back(reference(count + 1 - n));
  }
  plan any = ovhost::extend(std::move(second), ovhost::extend(std::move(first), generate(1)));
  const auto types = std::get<1>(physical_to_exec::Plan(ovhost::project(std::move(items), std::move(any))));
  EXPECT_EQ(std::ranges::count_if(types, [](const auto& type) { return type.index() == 9; }), count);
}

}  // namespace
}  // namespace tests
