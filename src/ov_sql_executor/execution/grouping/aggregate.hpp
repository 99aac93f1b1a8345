// The aggregate functions: what each looks at in a row, what it keeps, and what it yields at the end.
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

// How many groups there will be: the one that there is without group keys, or any number.
enum class group_count : bool { one, any };

// What the states of an aggregate share and point to. It goes when all of them go, so that they are plain memory.
struct accumulator_memory {
  group_count groups = group_count::any;
  kept_memory kept;                       // what kept values do not hold themselves
  std::optional<distinct_rows> distinct;  // the arguments, behind the number of their group; made for the first of them
  std::vector<value_view> key;            // one of the distinct rows, while it is looked for
  std::optional<operators::operand_views> views;
};

namespace aggregates {

using operators::operand;

// Those whose one argument counts unless it is NULL take its values by `add`: integers as they are, others as views.

// Of the promoted values that are not NULL; NULL without any. Throws db_exception type_error for what is no number, and
// for a second bool, since bools do not add.
struct sum {
  struct accumulator {
    kept_value total;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const { return kept.total.view(); }
};

// How many values are not NULL.
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

// The greatest and the least value in sort order; NULL when there is none but NULL. Throw what sort_order throws.
struct maximum {
  struct accumulator {
    kept_value extreme;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const { return kept.extreme.view(); }
};

struct minimum {
  struct accumulator {
    kept_value extreme;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const { return kept.extreme.view(); }
};

// Of the values that are not NULL, converted; NULL without any.
struct average_as_double {
  struct accumulator {
    double total = 0;
    std::int64_t count = 0;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const;
};

// Throws db_exception out_of_range when the sum of the raw values leaves 64 bits or, at the end, the range of Decimal.
struct average_as_decimal {
  struct accumulator {
    operator_library::Decimal total;
    std::int64_t count = 0;
  };
  operand argument;
  void add(accumulator& kept, const auto& seen, accumulator_memory& memory) const;
  value_view result(const accumulator& kept) const;
};

// How many different rows the arguments make, by group-key equality; NULL counts like a value.
struct count_distinct_rows {
  struct accumulator {
    std::uint64_t count = 0;
  };
  std::vector<operand> arguments;
  value_view result(const accumulator& kept) const { return kept.count; }
};

struct count_distinct_values {
  struct accumulator {
    std::uint64_t count = 0;
  };
  operand argument;
  value_view result(const accumulator& kept) const { return kept.count; }
};

}  // namespace aggregates

// An aggregate of a plan.
using aggregate_entry =
    std::variant<aggregates::sum, aggregates::count_values, aggregates::count_rows, aggregates::maximum,
                 aggregates::minimum, aggregates::average_as_double, aggregates::average_as_decimal,
                 aggregates::count_distinct_rows, aggregates::count_distinct_values>;

// What each aggregate keeps of one group lies in memory of the caller's, in plain bytes: `state` is the address of a
// Kind::accumulator, where Kind is the entry's alternative.
std::size_t accumulator_size(const aggregate_entry& aggregate);
void construct_accumulator(const aggregate_entry& aggregate, void* state) noexcept;

// Takes the row on top of the row stack into the group of this number, which is the state's.
void add_row(const aggregate_entry& aggregate, void* state, execution_context& context, accumulator_memory& memory,
             std::uint64_t group);

// The same for a row that is gone, by the values that its arguments had.
std::span<const operators::operand> arguments_of(const aggregate_entry& aggregate);
void take_values(const aggregate_entry& aggregate, void* state, std::span<const value_view> seen,
                 accumulator_memory& memory, std::uint64_t group);

// When taking values looks at more memory than the state: never, where the first of them is a text or the like, always.
// And the prefetching of that memory, which throws nothing but std::bad_alloc.
enum class further_look { at_none, at_texts, at_all };
further_look looks_further(const aggregate_entry& aggregate);
void prefetch_further(const aggregate_entry& aggregate, const void* state, std::span<const value_view> seen,
                      accumulator_memory& memory, std::uint64_t group);

// Good as long as the state and its memory are not touched.
value_view finish(const aggregate_entry& aggregate, const void* state);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_AGGREGATE_HPP_
