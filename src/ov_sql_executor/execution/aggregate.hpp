// The aggregate functions: what each looks at in a row, what it keeps, and what it yields at the end.
#ifndef OV_SQL_EXECUTOR_EXECUTION_AGGREGATE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_AGGREGATE_HPP_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "ov_sql_executor/execution/row_set.hpp"
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/expressions/operand_views.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

namespace aggregates {

using operators::operand;

// Of the promoted values that are not NULL; NULL without any. Throws db_exception type_error for what is no number, and
// for a second bool, since bools do not add.
struct sum {
  struct state {
    value_view total = operator_library::NullValue{};
  };
  operand argument;
  void add_row(state& kept, execution_context& context) const;
  value result(const state& kept) const { return to_value(kept.total); }
};

// How many values are not NULL.
struct count_values {
  struct state {
    std::int64_t count = 0;
  };
  operand argument;
  void add_row(state& kept, execution_context& context) const;
  value result(const state& kept) const { return kept.count; }
};

struct count_rows {
  struct state {
    std::int64_t count = 0;
  };
  void add_row(state& kept, execution_context& /*context*/) const { ++kept.count; }
  value result(const state& kept) const { return kept.count; }
};

// A value that can be exchanged for another one: a view, and memory for what it cannot hold itself.
struct extreme_value {
  value_view view = operator_library::NullValue{};
  std::unique_ptr<value> memory;

  void become(const value_view& other);
};

// The greatest and the least value in sort order; NULL when there is none but NULL. Throw what sort_order throws.
struct maximum {
  struct state {
    extreme_value extreme;
  };
  operand argument;
  void add_row(state& kept, execution_context& context) const;
  value result(const state& kept) const { return to_value(kept.extreme.view); }
};

struct minimum {
  struct state {
    extreme_value extreme;
  };
  operand argument;
  void add_row(state& kept, execution_context& context) const;
  value result(const state& kept) const { return to_value(kept.extreme.view); }
};

// Of the values that are not NULL, converted; NULL without any.
struct average_as_double {
  struct state {
    double total = 0;
    std::int64_t count = 0;
  };
  operand argument;
  void add_row(state& kept, execution_context& context) const;
  value result(const state& kept) const;
};

// Throws db_exception out_of_range when the sum of the raw values leaves 64 bits or, at the end, the range of Decimal.
struct average_as_decimal {
  struct state {
    operator_library::Decimal total;
    std::int64_t count = 0;
  };
  operand argument;
  void add_row(state& kept, execution_context& context) const;
  value result(const state& kept) const;
};

// How many different rows the arguments make, by group-key equality; NULL counts like a value.
struct count_distinct_rows {
  struct state {
    std::unique_ptr<row_set> rows;  // made for the first row
    std::unique_ptr<operators::operand_views> views;
  };
  std::vector<operand> arguments;
  void add_row(state& kept, execution_context& context) const;
  value result(const state& kept) const;
};

struct count_distinct_values {
  struct state {
    std::unique_ptr<row_set> values;  // made for the first row
  };
  operand argument;
  void add_row(state& kept, execution_context& context) const;
  value result(const state& kept) const;
};

}  // namespace aggregates

// An aggregate of a plan, in the order in which translation numbers them.
using aggregate_entry =
    std::variant<aggregates::sum, aggregates::count_values, aggregates::count_rows, aggregates::maximum,
                 aggregates::minimum, aggregates::average_as_double, aggregates::average_as_decimal,
                 aggregates::count_distinct_rows, aggregates::count_distinct_values>;

// What each aggregate keeps of one group lies in memory of the caller's: `state` is the address of a Kind::state, where
// Kind is the entry's alternative.
std::size_t state_size(const aggregate_entry& aggregate);
bool is_state_trivial(const aggregate_entry& aggregate);  // which need not be destroyed
void construct_state(const aggregate_entry& aggregate, void* state) noexcept;
void destroy_state(const aggregate_entry& aggregate, void* state) noexcept;

// Takes in the row on top of the row stack.
void add_row(const aggregate_entry& aggregate, void* state, execution_context& context);

value finish(const aggregate_entry& aggregate, const void* state);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_AGGREGATE_HPP_
