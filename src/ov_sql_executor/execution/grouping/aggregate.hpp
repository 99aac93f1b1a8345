// The aggregate functions: their arguments, their running state for one group, and their result.
#ifndef OV_SQL_EXECUTOR_EXECUTION_GROUPING_AGGREGATE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_GROUPING_AGGREGATE_HPP_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

#include "ov_sql_executor/execution/grouping/distinct_rows.hpp"
#include "ov_sql_executor/execution/grouping/kept_value.hpp"
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/expressions/operand_views.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// How many groups there are: one if there are no group keys.
enum class group_count : bool { one, any };

// Owns what the states of one aggregate point to, for all groups. States are plain bytes and need no destructor.
struct accumulator_memory {
  group_count groups = group_count::any;
  kept_memory kept;                       // of the kept_values
  std::optional<distinct_rows> distinct;  // rows of the group's number, unless there is one group, and the arguments
  std::vector<value_view> key;            // scratch: the row to find in distinct
  std::optional<operators::operand_views> views;  // scratch: the arguments
};

namespace aggregates {

using operators::operand;

// Each has an `accumulator`, the state of one group, and a `result`. Aggregates that ignore NULL have an `add`, which
// is called with every other value of the argument: an int64 as it is, anything else as a view.

// Adds the promoted values. The result is NULL if there is none.
// Throws: db_exception type_error for a value that is no number, and for a second bool, since bools do not add.
struct sum {
  struct accumulator {
    kept_value total;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const { return kept.total.view(); }
};

// Counts the values that are not NULL.
struct count_values {
  struct accumulator {
    std::int64_t count = 0;
  };
  operand argument;
  void add(accumulator& kept, const auto& /*seen*/, accumulator_memory& /*memory*/) const { ++kept.count; }
  value_view result(const accumulator& kept) const { return kept.count; }
};

struct count_rows {
  struct accumulator {
    std::int64_t count = 0;
  };
  value_view result(const accumulator& kept) const { return kept.count; }
};

// Finds the greatest value in sort order. The result is NULL if there is none. Throws: what sort_order throws.
struct maximum {
  struct accumulator {
    kept_value extreme;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const { return kept.extreme.view(); }
};

// Finds the least value in sort order. The result is NULL if there is none. Throws: what sort_order throws.
struct minimum {
  struct accumulator {
    kept_value extreme;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const { return kept.extreme.view(); }
};

// Averages the values, converted to double. The result is NULL if there is none.
struct average_as_double {
  struct accumulator {
    double total = 0;
    std::int64_t count = 0;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const;
};

// Averages the values, converted to Decimal. The result is NULL if there is none.
// Throws: db_exception out_of_range when the sum of the raw values leaves 64 bits or, at the end, the range of Decimal.
struct average_as_decimal {
  struct accumulator {
    operator_library::Decimal total;
    std::int64_t count = 0;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const;
};

// Counts the distinct rows of the arguments, by group-key equality. NULL counts as a value.
struct count_distinct_rows {
  struct accumulator {
    std::uint64_t count = 0;
  };
  std::vector<operand> arguments;
  value_view result(const accumulator& kept) const { return kept.count; }
};

// count_distinct_rows of one argument.
struct count_distinct_values {
  struct accumulator {
    std::uint64_t count = 0;
  };
  operand argument;
  value_view result(const accumulator& kept) const { return kept.count; }
};

}  // namespace aggregates

// One aggregate of a plan.
using aggregate_entry =
    std::variant<aggregates::sum, aggregates::count_values, aggregates::count_rows, aggregates::maximum,
                 aggregates::minimum, aggregates::average_as_double, aggregates::average_as_decimal,
                 aggregates::count_distinct_rows, aggregates::count_distinct_values>;

// Below, `state` is the address of a Kind::accumulator, where Kind is the entry's alternative. The caller owns its
// memory. A new state may be copied as bytes, and no state needs to be destroyed.
std::size_t accumulator_size(const aggregate_entry& aggregate);
void construct_accumulator(const aggregate_entry& aggregate, void* state) noexcept;

// Evaluates the arguments for the row on top of the row stack and adds their values to a group's state.
void add_row(const aggregate_entry& aggregate, void* state, execution_context& context, accumulator_memory& memory,
             std::uint64_t group);

std::span<const operators::operand> arguments_of(const aggregate_entry& aggregate);

// Adds the values that the arguments had in a row to a group's state. The row need not be there any more.
// Requires: seen.size() == arguments_of(aggregate).size().
void add_evaluated(const aggregate_entry& aggregate, void* state, std::span<const value_view> seen,
                   accumulator_memory& memory, std::uint64_t group);

// When add_evaluated reads memory outside the state. for_texts: when the first argument's view borrows.
enum class extra_reads { never, for_texts, always };
extra_reads extra_reads_of(const aggregate_entry& aggregate);

// Prefetches what add_evaluated will read outside the state. Throws: std::bad_alloc.
// Requires: seen.size() == arguments_of(aggregate).size().
void prefetch_referenced(const aggregate_entry& aggregate, const void* state, std::span<const value_view> seen,
                         accumulator_memory& memory, std::uint64_t group);

// Returns the result of a group. Valid until: the state or its accumulator_memory changes.
value_view finish(const aggregate_entry& aggregate, const void* state);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_AGGREGATE_HPP_
