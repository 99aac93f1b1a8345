#include "ov_sql_executor/execution/aggregate.hpp"

#include <concepts>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/arithmetic.hpp"
#include "ov_sql_executor/values/checked_arithmetic.hpp"
#include "ov_sql_executor/values/conversion.hpp"
#include "ov_sql_executor/values/decimal_arithmetic.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"
#include "ov_sql_executor/values/sort_order.hpp"

namespace ov::sql_executor {

namespace {

using operator_library::NullValue;

bool is_null(const value_view& view) { return std::holds_alternative<NullValue>(view); }
bool is_null(const value& held) { return std::holds_alternative<NullValue>(held); }

bool is_number(const value_view& view) {
  return std::visit([]<class T>(const T&) { return numeric_alternative<T>; }, view);
}

// Looks at the distinct keys of an aggregate, which most groups have none of before their first row.
row_set& made(std::unique_ptr<row_set>& rows, std::size_t width) {
  if (!rows) rows = std::make_unique<row_set>(width);
  return *rows;
}

std::uint64_t size_of(const std::unique_ptr<row_set>& rows) { return rows ? rows->size() : 0; }

}  // namespace

namespace aggregates {

void sum::add_row(state& kept, execution_context& context) const {
  value room;
  const value_view seen = argument.lend(context, room);
  if (is_null(seen)) return;
  // Promoted with itself, so that the total of one value has the type that the total of several would have.
  const value_view promoted = promote_pair(seen, seen).right;
  if (!is_number(promoted)) throw db_util::db_exception{db_util::type_error};
  kept.total = to_value(is_null(kept.total) ? promoted : add_values(view_of(kept.total), promoted));
}

void count_values::add_row(state& kept, execution_context& context) const {
  value room;
  if (!is_null(argument.lend(context, room))) ++kept.count;
}

// NULL is below every value, so that it never replaces one.
void maximum::add_row(state& kept, execution_context& context) const {
  value room;
  const value_view seen = argument.lend(context, room);
  if (sort_order(seen, view_of(kept.extreme)) > 0) kept.extreme = to_value(seen);
}

void minimum::add_row(state& kept, execution_context& context) const {
  value room;
  const value_view seen = argument.lend(context, room);
  if (is_null(seen)) return;
  if (is_null(kept.extreme) || sort_order(seen, view_of(kept.extreme)) < 0) kept.extreme = to_value(seen);
}

void average_as_double::add_row(state& kept, execution_context& context) const {
  value room;
  const value_view converted = convert_to<double>(argument.lend(context, room));
  if (is_null(converted)) return;
  const double number = std::get<double>(converted);
  // The first value is taken, not added to zero: a lone -0.0 stays what it is.
  kept.total = kept.count == 0 ? number : kept.total + number;
  ++kept.count;
}

value average_as_double::result(const state& kept) const {
  if (kept.count == 0) return NullValue{};
  return kept.total / static_cast<double>(kept.count);
}

void average_as_decimal::add_row(state& kept, execution_context& context) const {
  value room;
  const value_view converted = convert_to<operator_library::Decimal>(argument.lend(context, room));
  if (is_null(converted)) return;
  kept.total.raw = checked_add(kept.total.raw, std::get<operator_library::Decimal>(converted).raw);
  ++kept.count;
}

value average_as_decimal::result(const state& kept) const {
  if (kept.count == 0) return NullValue{};
  return divide(kept.total, decimal_of(kept.count));
}

void count_distinct_rows::add_row(state& kept, execution_context& context) const {
  if (!kept.views) kept.views = std::make_unique<operators::operand_views>(arguments.size());
  made(kept.rows, arguments.size()).find_or_insert(kept.views->evaluate(arguments, context));
}

value count_distinct_rows::result(const state& kept) const { return size_of(kept.rows); }

void count_distinct_values::add_row(state& kept, execution_context& context) const {
  value room;
  const value_view seen = argument.lend(context, room);
  made(kept.values, 1).find_or_insert({&seen, 1});
}

value count_distinct_values::result(const state& kept) const { return size_of(kept.values); }

}  // namespace aggregates

accumulator new_accumulator(const aggregate_entry& aggregate) {
  return std::visit([]<class Kind>(const Kind&) -> accumulator { return typename Kind::state{}; }, aggregate);
}

void add_row(const aggregate_entry& aggregate, accumulator& kept, execution_context& context) {
  std::visit([&]<class Kind>(const Kind& kind) { kind.add_row(*std::get_if<typename Kind::state>(&kept), context); },
             aggregate);
}

value finish(const aggregate_entry& aggregate, const accumulator& kept) {
  return std::visit(
      [&]<class Kind>(const Kind& kind) -> value { return kind.result(*std::get_if<typename Kind::state>(&kept)); },
      aggregate);
}

}  // namespace ov::sql_executor
