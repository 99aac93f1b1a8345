// Every plan of the catalogue with every allocation and every call of the core failing in turn: the error is the
// documented one, nothing leaks, every iterator is freed once, and the statement runs again as if nothing had happened.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <utility>

#include "core_shim/core_shim.hpp"
#include "keeping_policies.hpp"
#include "nodes/given_rows.hpp"
#include "outcome.hpp"
#include "ov_sql_executor/execution/enumerator.hpp"
#include "ov_sql_executor/planning/plan.hpp"
#include "ov_sql_executor/support/stack_weights.hpp"
#include "reliability/failing_allocations.hpp"
#include "reliability/plan_catalogue.hpp"

namespace tests {
namespace {

using core_shim::place, core_shim::repeat;

// Without optimisation or with the address sanitizer, which learn nothing from a failure with another status and take
// every third point unless the environment wants them all.
constexpr bool is_slow =
    ov::sql_executor::stack_weights::guards_frames || !ov::sql_executor::stack_weights::is_optimised;
const std::uint64_t stride = is_slow && std::getenv("OV_EVERY_FAULT") == nullptr ? 3 : 1;

// Runs a statement to its end and destroys what the run needed. Of allocations only the library's own can fail.
rows run(const runnable& planned, std::uint64_t context_handle, const std::vector<value>& parameters) {
  failing_allocations::paused = true;
  execution_context context{planned.constants, parameters, {}, context_handle};
  rows all;
  failing_allocations::paused = false;
  const std::unique_ptr<enumerator> source(planned.root->create_enumerator(context));
  while (std::optional<row> next = source->next(context)) {
    failing_allocations::paused = true;
    EXPECT_TRUE(context.row_stack.empty());
    all.push_back(*std::move(next));
    failing_allocations::paused = false;
  }
  return all;
}

// Says how something is made to fail, and how the statement should end.
struct fault {
  std::function<void(std::uint64_t k)> begin;
  std::function<std::uint64_t()> end;  // how often it failed
  std::string outcome;                 // empty: any error, or other rows
  bool in_new_context = false;
};

// Lets nothing fail any more at its end, be it by an exception.
struct ending {
  const fault& with;
  std::uint64_t& failures;
  ~ending() { failures = with.end(); }
};

fault allocation(repeat how, place in, const std::string& outcome) {
  return {[=](std::uint64_t k) { failing_allocations::fail(k, how, in); }, failing_allocations::stop, outcome,
          in == place::core};
}

fault core_call(std::uint32_t status, repeat how) {
  return {[=](std::uint64_t k) { core_shim::fail_call(k, status, how); }, core_shim::failures,
          status == ORV_NO_VALUE ? "" : std::to_string(status)};
}

class FaultLoops : public testing::Test {
 protected:
  ~FaultLoops() override {
    while (!sessions.empty()) sessions.pop_back();
    EXPECT_EQ(core_shim::open_iterators(), 0U);
    EXPECT_EQ(core_shim::wrong_frees(), 0U);
  }

  std::uint64_t context() const { return sessions.empty() ? catalogue.context() : sessions.back()->context(); }

  std::string undisturbed(const catalogued_plan& each) {
    return outcome(
        [&] { return run(std::get<0>(physical_to_exec::Plan(each.make())), context(), catalogue.parameters); });
  }

  // Fails at the k-th point; false when there was no such point and the statement ran untouched.
  bool check_point(const catalogued_plan& each, const std::string& expected, const fault& with, std::uint64_t k) {
    std::optional<runnable> planned;
    ovhost::plan fresh = each.make();
    core_shim::reset();
    with.begin(k);
    std::uint64_t failures = 0;
    const std::string found = outcome([&] {
      const ending stop{with, failures};
      planned = std::get<0>(physical_to_exec::Plan(std::move(fresh)));
      return run(*planned, context(), catalogue.parameters);
    });
    core_shim::reset();
    EXPECT_EQ(core_shim::open_iterators(), 0U);
    const std::string& wanted = failures == 0 ? expected : with.outcome;
    EXPECT_TRUE(found == wanted || wanted.empty()) << found << " instead of " << wanted;
    if (!planned) return failures != 0;
    EXPECT_EQ(outcome([&] { return run(*planned, context(), catalogue.parameters); }), expected) << "a second run";
    failing_allocations::fail(1, repeat::from_then_on, place::elsewhere);
    planned.reset();
    EXPECT_EQ(failing_allocations::stop(), 0U) << "destruction allocates";
    return failures != 0;
  }

  // Checks every point of every plan whose name begins so. Returns how many there are.
  std::uint64_t check_all(const fault& with, const std::string& beginning = "") {
    std::uint64_t points = 0;
    for (const catalogued_plan& each : catalogue.plans) {
      if (!each.name.starts_with(beginning)) continue;
      const std::string expected = undisturbed(each);
      bool is_reached = true;
      for (std::uint64_t k = 1; is_reached; k += stride) {
        if (with.in_new_context) sessions.push_back(std::make_unique<ovhost::session>(catalogue.database));
        const std::int64_t alive = failing_allocations::alive;
        is_reached = check_point(each, expected, with, k);
        EXPECT_EQ(failing_allocations::alive, alive) << "a leak";
        if (is_reached) ++points;
        if (!HasFailure()) continue;
        ADD_FAILURE() << "failure " << k << " of plan \"" << each.name << '"';
        return points;
      }
    }
    return points;
  }

  plan_catalogue catalogue;
  std::vector<std::unique_ptr<ovhost::session>> sessions;
};

TEST_F(FaultLoops, the_catalogue_itself_runs) {
  EXPECT_GE(catalogue.plans.size(), 40U);
  for (const catalogued_plan& each : catalogue.plans) {
    const std::string found = undisturbed(each);
    EXPECT_TRUE(each.error.empty() ? found[0] == '(' : found == each.error) << each.name << ": " << found;
  }
}

TEST_F(FaultLoops, the_catalogue_runs_alike_whatever_is_kept) {
  for (const catalogued_plan& each : catalogue.plans) {
    const auto plan = [&] {
      std::optional<runnable> planned;
      outcome([&] { planned = std::get<0>(physical_to_exec::Plan(each.make())); });
      return planned;
    };
    const auto rows_and_error = [&](const std::optional<runnable>& planned) {
      std::string found;
      if (!planned) return found;
      const std::string end = outcome([&] {
        execution_context running{planned->constants, catalogue.parameters, {}, context()};
        const std::unique_ptr<enumerator> source(planned->root->create_enumerator(running));
        while (const std::optional<row> next = source->next(running)) found += spell(*next);
      });
      found += end;
      return found;
    };
    compare_policies(plan, rows_and_error, [&](std::size_t policy, const std::string& found) {
      ADD_FAILURE() << each.name << " with policy " << policy << ": " << found;
    });
  }
}

TEST_F(FaultLoops, a_failing_allocation_leaves_as_bad_alloc) {
  const std::uint64_t points = check_all(allocation(repeat::once, place::elsewhere, "std::bad_alloc"));
  EXPECT_EQ(check_all(allocation(repeat::from_then_on, place::elsewhere, "std::bad_alloc")), points);
  std::cout << "allocation failure points: " << points << '\n';
  EXPECT_GE(points * stride, 5000U);
}

// The plans of the catalogue keep rows from the second start on, which is often the last one.
TEST_F(FaultLoops, kept_sides_fail_alike_from_the_first_start_on) {
  const policy_scope scope(keeps_from_the_first_start);
  const char* const kept = "kept";
  const std::uint64_t allocations = check_all(allocation(repeat::once, place::elsewhere, "std::bad_alloc"), kept);
  EXPECT_EQ(check_all(allocation(repeat::from_then_on, place::elsewhere, "std::bad_alloc"), kept), allocations);
  const std::uint64_t calls = check_all(core_call(1, repeat::once), kept);
  std::cout << "failure points over kept sides: " << allocations << " allocations, " << calls << " core calls\n";
  EXPECT_GE(allocations * stride, 500U);
  EXPECT_GE(calls * stride, 500U);
}

// Uses contexts that have not been used, where the core still has to grow.
TEST_F(FaultLoops, a_failing_allocation_in_the_core_leaves_as_its_status) {
  const std::string status = std::to_string(ORV_OUT_OF_MEMORY);
  const std::uint64_t points = check_all(allocation(repeat::once, place::core, status));
  check_all(allocation(repeat::from_then_on, place::core, status));
  std::cout << "allocation failure points in the core: " << points << '\n';
  EXPECT_GE(points * stride, 100U);
}

TEST_F(FaultLoops, a_failing_core_call_leaves_as_its_status) {
  const std::uint64_t points = check_all(core_call(1, repeat::once));
  using enum repeat;
  constexpr std::uint32_t full = ORV_OUT_OF_MEMORY;
  constexpr std::uint32_t most = 0xFFFFFFFF;
  const std::pair<std::uint32_t, repeat> others[] = {
      {most, from_then_on}, {most, once}, {1, from_then_on}, {full, once}, {full, from_then_on}};
  for (const auto& [status, how] : std::span(others).first(is_slow ? 1 : std::size(others))) {
    EXPECT_EQ(check_all(core_call(status, how)), points) << status;
  }
  std::cout << "core call failure points: " << points << '\n';
  EXPECT_GE(points * stride, 5000U);
}

// Some calls have this status for a column without a value, and for others it is a failure.
TEST_F(FaultLoops, no_value_from_any_core_call_does_no_harm) {
  check_all(core_call(ORV_NO_VALUE, repeat::once));
  if (!is_slow) check_all(core_call(ORV_NO_VALUE, repeat::from_then_on));
}

// With more groups than the catalogue has rows, some rows wait for others. Most of the allocations are those of the
// rows.
TEST(ManyGroups, survive_allocations_that_fail) {
  namespace kinds = aggregates;
  const auto log = std::make_shared<journal>();
  rows input;
  for (std::int64_t n = 0; n < 1200; ++n) {
    const std::string group = std::to_string(n % 1100);
    input.push_back({i(n % 1100), val("'a-text-that-owns-its-bytes-" + group + "'"), n % 6 == 0 ? null() : i(n)});
  }
  const aggregator root(given(input, log), columns({1, 0}),
                        list_of<aggregate_entry>(kinds::maximum{operators::operand(column(1))},
                                                 kinds::count_distinct_values{operators::operand(column(2))}));
  const std::string expected = spell(rows_of(root));
  for (const repeat how : {repeat::once, repeat::from_then_on}) {
    std::uint64_t failures = 1;
    for (std::uint64_t k = 1; failures != 0; k += 29) {
      const std::int64_t alive = failing_allocations::alive;
      bool failed = false;
      failing_allocations::fail(k, how, place::elsewhere);
      try {
        rows_of(root);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      failures = failing_allocations::stop();
      log->events.clear();
      ASSERT_EQ(failed, failures != 0) << k;
      ASSERT_EQ(failing_allocations::alive, alive) << "a leak at allocation " << k;
    }
    EXPECT_EQ(spell(rows_of(root)), expected) << "run again";
  }
}

}  // namespace
}  // namespace tests
