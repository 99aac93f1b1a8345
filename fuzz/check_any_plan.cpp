#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <tuple>

#include "core_shim/core_shim.hpp"
#include "fuzz/any_plan.hpp"
#include "fuzz/checks.hpp"
#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ov_sql_executor/planning/plan.hpp"

namespace fuzz {

namespace {

using ov::sql_executor::enumerator;
using ov::sql_executor::execution_context;
using ov::sql_executor::row;
using ov::sql_executor::runnable;
using ov::sql_executor::value;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

using column_types = std::vector<physical_to_exec::column_type>;

// Alternatives 0 to 8 of both are the same types; a reference column is the last one of the types.
bool is_of(const value& held, const physical_to_exec::column_type& type) {
  const bool is_reference = std::holds_alternative<physical_to_exec::RefInfo>(type);
  return std::holds_alternative<operator_library::NullValue>(held) ||
         (is_reference ? std::holds_alternative<OV_OBJ_REF>(held) : held.index() == type.index());
}

struct test_run {
  runnable planned;
  column_types types;
  bool mixes_types = false;
  std::size_t most_rows = 0;
};

void run(const test_run& of, std::vector<value> parameters) {
  execution_context context{of.planned.constants, std::move(parameters), {}, world::only().context()};
  const std::unique_ptr<enumerator> rows(of.planned.root->create_enumerator(context));
  require(context.row_stack.empty(), "opening leaves the row stack as it was");
  for (std::size_t taken = 0; taken < of.most_rows; ++taken) {
    const std::optional<row> next = rows->next(context);
    require(context.row_stack.empty(), "a row leaves the row stack as it was");
    if (!next) return require(!rows->next(context), "the end is the end");
    require(next->size() == of.types.size(), "a row is as wide as the list of column types");
    if (of.mixes_types) continue;  // OR of a bool and a number, which a host states to be a bool, may be the number
    for (std::size_t i = 0; i < of.types.size(); ++i) require(is_of((*next)[i], of.types[i]), "a value is of its type");
  }
}

// Only what the interface names may come out.
template <class Action>
bool succeeds(Action action) {
  try {
    action();
    return true;
  } catch (const db_util::db_exception&) {
  } catch (const error_handling::OVException&) {
  } catch (const std::logic_error&) {
  } catch (const std::range_error&) {
  } catch (const std::bad_cast&) {
  } catch (const std::bad_variant_access&) {
  }
  return false;
}

void let_core_fail(choices& from) {
  static constexpr std::uint32_t statuses[] = {4272, 4111, 7020, 4105, 1};
  const bool once = from.below(2) == 0;
  core_shim::fail_call(1 + from.below(60), from.of(statuses),
                       once ? core_shim::repeat::once : core_shim::repeat::from_then_on);
}

}  // namespace

void check_any_plan(std::span<const std::uint8_t> input) {
  choices from(input);
  core_shim::reset();
  world::only().refill(from);
  const bool fails = from.one_in(4);
  const bool fails_late = from.below(2) == 0;
  test_run tested;
  tested.mixes_types = from.below(2) == 0;
  tested.most_rows = from.one_in(4) ? from.below(4) : 2000;
  plan_maker maker(from, tested.mixes_types);
  relation made = maker.any_relation(from.below(7));
  ovhost::plan plan = ovhost::project(shown(made.columns), std::move(made.made));
  maker.print(plan);
  if (fails && !fails_late) let_core_fail(from);
  if (succeeds([&] { std::tie(tested.planned, tested.types) = physical_to_exec::Plan(std::move(plan)); })) {
    if (fails && fails_late) let_core_fail(from);
    for (int again = 0; again < 2; ++again) {
      succeeds([&] { run(tested, maker.parameters()); });
      require(core_shim::open_iterators() == 0, "every iterator is freed");
      core_shim::reset();
    }
  }
  core_shim::reset();
  require(core_shim::open_iterators() == 0, "planning frees its iterators");
  require(core_shim::wrong_frees() == 0, "no iterator is freed twice");
}

}  // namespace fuzz
