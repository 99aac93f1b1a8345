#include "ov_sql_executor/execution/aggregate.hpp"

#include <compare>
#include <concepts>
#include <memory>
#include <new>
#include <type_traits>

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
using operators::operand;

bool is_null(const value_view& view) { return std::holds_alternative<NullValue>(view); }

bool is_number(const value_view& view) {
  return std::visit([]<class T>(const T&) { return numeric_alternative<T>; }, view);
}

template <class View>
constexpr bool is_borrowing =
    std::same_as<View, text_view> || std::same_as<View, binary_view> || std::same_as<View, std::u16string_view>;

// Integer columns, the commonest arguments, and integers take the short way; the rest of the way is the same.
value_view look_at(const operand& argument, execution_context& context, value& room) {
  if (!argument.is_int64_property()) return argument.lend(context, room);
  std::int64_t number = 0;
  if (argument.read_int64(context, number)) return number;
  return NullValue{};
}

std::strong_ordering order_of(const value_view& left, const value_view& right) {
  const auto* const a = std::get_if<std::int64_t>(&left);
  const auto* const b = std::get_if<std::int64_t>(&right);
  return a != nullptr && b != nullptr ? *a <=> *b : sort_order(left, right);
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
  const value_view seen = look_at(argument, context, room);
  if (is_null(seen)) return;
  auto* const total = std::get_if<std::int64_t>(&kept.total);
  const auto* const number = std::get_if<std::int64_t>(&seen);
  if (total != nullptr && number != nullptr) {
    *total = checked_add(*total, *number);
    return;
  }
  // Promoted with itself, so that the total of one value has the type that the total of several would have.
  const value_view promoted = promote_pair(seen, seen).right;
  if (!is_number(promoted)) throw db_util::db_exception{db_util::type_error};
  kept.total = is_null(kept.total) ? promoted : add_values(kept.total, promoted);
}

void count_values::add_row(state& kept, execution_context& context) const {
  value room;
  if (!is_null(look_at(argument, context, room))) ++kept.count;
}

void extreme_value::become(const value_view& other) {
  const bool is_borrowed = std::visit([]<class View>(const View&) { return is_borrowing<View>; }, other);
  if (!is_borrowed) {
    view = other;
    return;
  }
  if (!memory) memory = std::make_unique<value>();
  *memory = to_value(other);
  view = view_of(*memory);
}

// NULL is below every value, so that it never replaces one.
void maximum::add_row(state& kept, execution_context& context) const {
  value room;
  const value_view seen = look_at(argument, context, room);
  if (order_of(seen, kept.extreme.view) > 0) kept.extreme.become(seen);
}

void minimum::add_row(state& kept, execution_context& context) const {
  value room;
  const value_view seen = look_at(argument, context, room);
  if (is_null(seen)) return;
  if (is_null(kept.extreme.view) || order_of(seen, kept.extreme.view) < 0) kept.extreme.become(seen);
}

void average_as_double::add_row(state& kept, execution_context& context) const {
  value room;
  const value_view converted = convert_to<double>(look_at(argument, context, room));
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
  const value_view converted = convert_to<operator_library::Decimal>(look_at(argument, context, room));
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

namespace {

template <class Kind, class Memory>
auto& state_at(Memory* memory) {
  using state = typename Kind::state;
  using seen_state = std::conditional_t<std::is_const_v<Memory>, const state, state>;
  return *std::launder(static_cast<seen_state*>(memory));
}

}  // namespace

std::size_t state_size(const aggregate_entry& aggregate) {
  return std::visit(
      []<class Kind>(const Kind&) {
        using state = typename Kind::state;
        static_assert(alignof(state) == alignof(std::uint64_t));  // so that states fit side by side
        return sizeof(state);
      },
      aggregate);
}

bool is_state_trivial(const aggregate_entry& aggregate) {
  return std::visit([]<class Kind>(const Kind&) { return std::is_trivially_destructible_v<typename Kind::state>; },
                    aggregate);
}

void construct_state(const aggregate_entry& aggregate, void* state) noexcept {
  std::visit([state]<class Kind>(const Kind&) { new (state) typename Kind::state{}; }, aggregate);
}

void destroy_state(const aggregate_entry& aggregate, void* state) noexcept {
  std::visit([state]<class Kind>(const Kind&) { std::destroy_at(&state_at<Kind>(state)); }, aggregate);
}

void add_row(const aggregate_entry& aggregate, void* state, execution_context& context) {
  std::visit([&]<class Kind>(const Kind& kind) { kind.add_row(state_at<Kind>(state), context); }, aggregate);
}

value finish(const aggregate_entry& aggregate, const void* state) {
  return std::visit([state]<class Kind>(const Kind& kind) -> value { return kind.result(state_at<Kind>(state)); },
                    aggregate);
}

}  // namespace ov::sql_executor
