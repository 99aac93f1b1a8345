#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <tuple>

#include "core_shim/core_shim.hpp"
#include "fuzz/any_plan.hpp"
#include "fuzz/checks.hpp"
#include "keeping_policies.hpp"
#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ov_sql_executor/planning/plan.hpp"
#include "spelling.hpp"

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

// Calls take with each row.
template <class Take>
void run(const test_run& of, std::vector<value> parameters, Take take) {
  execution_context context{of.planned.constants, std::move(parameters), {}, world::only().context()};
  const std::unique_ptr<enumerator> rows(of.planned.root->create_enumerator(context));
  require(context.row_stack.empty(), "opening leaves the row stack as it was");
  for (std::size_t taken = 0; taken < of.most_rows; ++taken) {
    const std::optional<row> next = rows->next(context);
    require(context.row_stack.empty(), "a row leaves the row stack as it was");
    if (!next) return require(!rows->next(context), "the end is the end");
    take(*next);
    require(next->size() == of.types.size(), "a row is as wide as the list of column types");
    if (of.mixes_types) continue;  // OR of a bool and a number, which a host states to be a bool, may be the number
    for (std::size_t i = 0; i < of.types.size(); ++i) require(is_of((*next)[i], of.types[i]), "a value is of its type");
  }
}

// Says how an action ends; empty: without an error. Only what the interface names may come out.
template <class Action>
std::string ending_of(Action action) {
  try {
    action();
    return "";
  } catch (const db_util::db_exception& error) {
    return std::to_string(error.code);
  } catch (const error_handling::OVException& error) {
    return error.what();
  } catch (const std::logic_error& error) {
    return error.what();
  } catch (const std::range_error& error) {
    return error.what();
  } catch (const std::bad_cast& error) {
    return error.what();
  } catch (const std::bad_variant_access& error) {
    return error.what();
  }
}

struct drawn_plan {
  drawn_plan(choices& from, bool mixes_types, std::size_t most_rows) : maker(from, mixes_types) {
    tested.mixes_types = mixes_types;
    tested.most_rows = most_rows;
    relation of = maker.any_relation(from.below(7));
    made = ovhost::project(shown(of.columns), std::move(of.made));
    maker.print(made);
  }

  // Says how planning ends.
  std::string plan() {
    return ending_of([&] { std::tie(tested.planned, tested.types) = physical_to_exec::Plan(std::move(made)); });
  }

  test_run tested;
  plan_maker maker;
  ovhost::plan made;
};

// Whether inner sides are kept, and from when on, changes neither rows nor errors.
void compare_keeping(choices start, bool mixes_types, std::size_t most_rows) {
  struct planned {
    planned(choices from, bool mixes, std::size_t most) : drawn(from, mixes, most), error(drawn.plan()) {}
    drawn_plan drawn;
    std::string error;
  };
  const auto outcome = [](const planned& of) {
    if (!of.error.empty()) return of.error;
    std::string found;
    const auto add = [&found](const row& each) { found += tests::spell(each) + '\n'; };
    const std::string error = ending_of([&] { run(of.drawn.tested, of.drawn.maker.parameters(), add); });
    return found + error;
  };
  tests::compare_policies([&] { return planned(start, mixes_types, most_rows); }, outcome,
                          [](std::size_t policy, const std::string& found) {
                            std::fprintf(stderr, "with policy %zu:\n%s\n", policy, found.c_str());
                            require(false, "keeping inner sides changes nothing");
                          });
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
  const bool mixes_types = from.below(2) == 0;
  const std::size_t most_rows = from.one_in(4) ? from.below(4) : 2000;
  const choices start = from;
  drawn_plan drawn(from, mixes_types, most_rows);
  if (fails && !fails_late) let_core_fail(from);
  if (drawn.plan().empty()) {
    if (fails && fails_late) let_core_fail(from);
    for (int again = 0; again < 2; ++again) {
      ending_of([&] { run(drawn.tested, drawn.maker.parameters(), [](const row&) {}); });
      require(core_shim::open_iterators() == 0, "every iterator is freed");
      core_shim::reset();
    }
  }
  core_shim::reset();
  compare_keeping(start, mixes_types, most_rows);
  require(core_shim::open_iterators() == 0, "planning frees its iterators");
  require(core_shim::wrong_frees() == 0, "no iterator is freed twice");
}

}  // namespace fuzz
