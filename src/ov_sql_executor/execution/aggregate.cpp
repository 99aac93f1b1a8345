#include "ov_sql_executor/execution/aggregate.hpp"

#include <algorithm>
#include <compare>
#include <new>
#include <span>
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

bool is_number(const value_view& view) {
  return visit_view([]<class T>(const T&) { return numeric_alternative<T>; }, view);
}

// Hands over the argument's value unless it is NULL: integers, the commonest, as they are, others as views.
template <class Take>
void take_value(const operand& argument, execution_context& context, Take take) {
  if (argument.is_int64_property()) {
    std::int64_t number = 0;
    if (argument.read_int64(context, number)) take(number);
    return;
  }
  value room;
  const value_view seen = argument.lend(context, room);
  if (const auto* const number = std::get_if<std::int64_t>(&seen)) return take(*number);
  if (!std::holds_alternative<NullValue>(seen)) take(seen);
}

// Promoted with itself, so that the total of one value has the type that the total of several would have.
void add_to(kept_value& total, const value_view& seen, state_memory& memory) {
  const value_view promoted = promote_pair(seen, seen).right;
  if (!is_number(promoted)) throw db_util::db_exception{db_util::type_error};
  total.become(total.is_null() ? promoted : add_values(total.view(), promoted), memory.values);
}

void add_to(kept_value& total, std::int64_t number, state_memory& memory) {
  if (total.is_null()) return total.become(number);
  std::int64_t* const integer = total.integer();
  if (integer == nullptr) return add_to(total, value_view(number), memory);
  *integer = checked_add(*integer, number);
}

enum class end : bool { least, greatest };

void keep_extreme(end wanted, kept_value& kept, const value_view& seen, state_memory& memory) {
  if (!kept.is_null()) {
    const std::strong_ordering order = sort_order(seen, kept.view());
    if (wanted == end::greatest ? order <= 0 : order >= 0) return;
  }
  kept.become(seen, memory.values);
}

void keep_extreme(end wanted, kept_value& kept, std::int64_t number, state_memory& memory) {
  if (kept.is_null()) return kept.become(number);
  std::int64_t* const integer = kept.integer();
  if (integer == nullptr) return keep_extreme(wanted, kept, value_view(number), memory);
  *integer = wanted == end::greatest ? std::max(*integer, number) : std::min(*integer, number);
}

// The group's number comes first in the key, and says nothing where there is no other group.
bool is_new(std::span<const value_view> key, state_memory& memory) {
  const auto row = key.subspan(memory.groups == group_count::one ? 1 : 0);
  if (!memory.distinct) memory.distinct.emplace(row.size());
  return memory.distinct->find_or_insert(row).is_new;
}

double to_number(std::int64_t number) { return static_cast<double>(number); }
double to_number(const value_view& seen) { return std::get<double>(convert_to<double>(seen)); }

Decimal to_decimal(std::int64_t number) { return decimal_of(number); }
Decimal to_decimal(const value_view& seen) { return std::get<Decimal>(convert_to<Decimal>(seen)); }

}  // namespace

namespace aggregates {

void sum::add_row(state& kept, execution_context& context, state_memory& memory, std::uint64_t /*group*/) const {
  take_value(argument, context, [&](const auto& seen) { add_to(kept.total, seen, memory); });
}

void count_values::add_row(state& kept, execution_context& context, state_memory& /*memory*/,
                           std::uint64_t /*group*/) const {
  take_value(argument, context, [&](const auto& /*seen*/) { ++kept.count; });
}

void maximum::add_row(state& kept, execution_context& context, state_memory& memory, std::uint64_t /*group*/) const {
  take_value(argument, context, [&](const auto& seen) { keep_extreme(end::greatest, kept.extreme, seen, memory); });
}

void minimum::add_row(state& kept, execution_context& context, state_memory& memory, std::uint64_t /*group*/) const {
  take_value(argument, context, [&](const auto& seen) { keep_extreme(end::least, kept.extreme, seen, memory); });
}

// The first value is taken, not added to zero: a lone -0.0 stays what it is.
void average_as_double::add_row(state& kept, execution_context& context, state_memory& /*memory*/,
                                std::uint64_t /*group*/) const {
  take_value(argument, context, [&](const auto& seen) {
    const double number = to_number(seen);
    kept.total = kept.count == 0 ? number : kept.total + number;
    ++kept.count;
  });
}

value_view average_as_double::result(const state& kept) const {
  if (kept.count == 0) return NullValue{};
  return kept.total / static_cast<double>(kept.count);
}

void average_as_decimal::add_row(state& kept, execution_context& context, state_memory& /*memory*/,
                                 std::uint64_t /*group*/) const {
  take_value(argument, context, [&](const auto& seen) {
    kept.total.raw = checked_add(kept.total.raw, to_decimal(seen).raw);
    ++kept.count;
  });
}

value_view average_as_decimal::result(const state& kept) const {
  if (kept.count == 0) return NullValue{};
  return divide(kept.total, decimal_of(kept.count));
}

void count_distinct_rows::add_row(state& kept, execution_context& context, state_memory& memory,
                                  std::uint64_t group) const {
  if (!memory.views) memory.views.emplace(arguments.size());
  if (is_new(memory.views->evaluate_behind(group, arguments, context), memory)) ++kept.count;
}

void count_distinct_values::add_row(state& kept, execution_context& context, state_memory& memory,
                                    std::uint64_t group) const {
  value room;
  const value_view key[] = {group, argument.lend(context, room)};
  if (is_new(key, memory)) ++kept.count;
}

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
        static_assert(std::is_trivially_copyable_v<state>);
        static_assert(alignof(state) == alignof(std::uint64_t));  // so that states fit side by side
        return sizeof(state);
      },
      aggregate);
}

void construct_state(const aggregate_entry& aggregate, void* state) noexcept {
  std::visit([state]<class Kind>(const Kind&) { new (state) typename Kind::state{}; }, aggregate);
}

void add_row(const aggregate_entry& aggregate, void* state, execution_context& context, state_memory& memory,
             std::uint64_t group) {
  std::visit([&]<class Kind>(const Kind& kind) { kind.add_row(state_at<Kind>(state), context, memory, group); },
             aggregate);
}

value_view finish(const aggregate_entry& aggregate, const void* state) {
  return std::visit([state]<class Kind>(const Kind& kind) { return kind.result(state_at<Kind>(state)); }, aggregate);
}

}  // namespace ov::sql_executor
