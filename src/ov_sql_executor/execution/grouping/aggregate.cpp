#include "ov_sql_executor/execution/grouping/aggregate.hpp"

#include <algorithm>
#include <cassert>
#include <compare>
#include <concepts>
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

bool is_valueless(const value_view& view) { return std::holds_alternative<std::monostate>(view); }

// Calls add with a value unless it is NULL: with an int64, the commonest, as it is, with others as views.
// Throws: std::bad_variant_access for a valueless value.
template <class Add>
void dispatch_value(std::int64_t number, Add add) {
  add(number);
}

template <class Add>
void dispatch_value(const value_view& seen, Add add) {
  if (const auto* const number = std::get_if<std::int64_t>(&seen)) return add(*number);
  if (is_valueless(seen)) throw std::bad_variant_access();
  if (!std::holds_alternative<NullValue>(seen)) add(seen);
}

// Promotes each value with itself, so that the total of one value has the type that the total of several would have.
void add_to(kept_value& total, const value_view& seen, accumulator_memory& memory) {
  const value_view promoted = promote_pair(seen, seen).right;
  if (!is_number(promoted)) throw db_util::db_exception{db_util::type_error};
  total.assign(total.is_null() ? promoted : add_values(total.view(), promoted), memory.kept);
}

void add_to(kept_value& total, std::int64_t number, accumulator_memory& memory) {
  if (total.is_null()) return total.assign(number);
  std::int64_t* const integer = total.integer();
  if (integer == nullptr) return add_to(total, value_view(number), memory);
  *integer = checked_add(*integer, number);
}

enum class end : bool { least, greatest };

void keep_extreme(end wanted, kept_value& kept, const value_view& seen, accumulator_memory& memory) {
  if (!kept.is_null()) {
    const std::strong_ordering order = sort_order(seen, kept.view());
    if (wanted == end::greatest ? order <= 0 : order >= 0) return;
  }
  kept.assign(seen, memory.kept);
}

void keep_extreme(end wanted, kept_value& kept, std::int64_t number, accumulator_memory& memory) {
  if (kept.is_null()) return kept.assign(number);
  std::int64_t* const integer = kept.integer();
  if (integer == nullptr) return keep_extreme(wanted, kept, value_view(number), memory);
  *integer = wanted == end::greatest ? std::max(*integer, number) : std::min(*integer, number);
}

// Returns the row of memory.distinct for what is seen in a group: the group's number, unless there is only one group,
// and what is seen. Valid until: seen or memory.key changes.
std::span<const value_view> distinct_key(std::span<const value_view> seen, accumulator_memory& memory,
                                         std::uint64_t group) {
  if (memory.groups == group_count::one) return seen;
  memory.key.resize(1 + seen.size());
  memory.key.front() = group;
  std::ranges::copy(seen, memory.key.begin() + 1);
  return memory.key;
}

bool is_new(std::span<const value_view> key, accumulator_memory& memory) {
  if (!memory.distinct) memory.distinct.emplace(key.size());
  return memory.distinct->find_or_insert(key).is_new;
}

double to_number(std::int64_t number) { return static_cast<double>(number); }
double to_number(const value_view& seen) { return std::get<double>(convert_to<double>(seen)); }

Decimal to_decimal(std::int64_t number) { return decimal_of(number); }
Decimal to_decimal(const value_view& seen) { return std::get<Decimal>(convert_to<Decimal>(seen)); }

}  // namespace

namespace aggregates {

void sum::add(accumulator& kept, const auto& seen, accumulator_memory& memory) const {
  add_to(kept.total, seen, memory);
}

void maximum::add(accumulator& kept, const auto& seen, accumulator_memory& memory) const {
  keep_extreme(end::greatest, kept.extreme, seen, memory);
}

void minimum::add(accumulator& kept, const auto& seen, accumulator_memory& memory) const {
  keep_extreme(end::least, kept.extreme, seen, memory);
}

// Assigns the first value instead of adding it to zero, so that a lone -0.0 stays -0.0.
void average_as_double::add(accumulator& kept, const auto& seen, accumulator_memory& /*memory*/) const {
  const double number = to_number(seen);
  kept.total = kept.count == 0 ? number : kept.total + number;
  ++kept.count;
}

value_view average_as_double::result(const accumulator& kept) const {
  if (kept.count == 0) return NullValue{};
  return kept.total / static_cast<double>(kept.count);
}

void average_as_decimal::add(accumulator& kept, const auto& seen, accumulator_memory& /*memory*/) const {
  kept.total.raw = checked_add(kept.total.raw, to_decimal(seen).raw);
  ++kept.count;
}

value_view average_as_decimal::result(const accumulator& kept) const {
  if (kept.count == 0) return NullValue{};
  return divide(kept.total, decimal_of(kept.count));
}

}  // namespace aggregates

namespace {

template <class Kind>
concept adds_values = requires(const Kind& kind, typename Kind::accumulator& kept, std::int64_t seen,
                               accumulator_memory& memory) {
  kind.add(kept, seen, memory);
};

template <class Kind>
concept counts_distinct =
    std::same_as<Kind, aggregates::count_distinct_rows> || std::same_as<Kind, aggregates::count_distinct_values>;

template <class Kind>
concept keeps_extreme = std::same_as<Kind, aggregates::maximum> || std::same_as<Kind, aggregates::minimum>;

template <class Kind, class Memory>
auto& accumulator_at(Memory* memory) {
  using accumulator = typename Kind::accumulator;
  using seen_accumulator = std::conditional_t<std::is_const_v<Memory>, const accumulator, accumulator>;
  return *std::launder(static_cast<seen_accumulator*>(memory));
}

}  // namespace

std::size_t accumulator_size(const aggregate_entry& aggregate) {
  return std::visit(
      []<class Kind>(const Kind&) {
        using accumulator = typename Kind::accumulator;
        static_assert(std::is_trivially_copyable_v<accumulator>);
        static_assert(alignof(accumulator) == alignof(std::uint64_t));  // states lie side by side without padding
        return sizeof(accumulator);
      },
      aggregate);
}

void construct_accumulator(const aggregate_entry& aggregate, void* state) noexcept {
  std::visit([state]<class Kind>(const Kind&) { new (state) typename Kind::accumulator{}; }, aggregate);
}

void add_row(const aggregate_entry& aggregate, void* state, execution_context& context, accumulator_memory& memory,
             std::uint64_t group) {
  std::visit(
      [&]<class Kind>(const Kind& kind) {
        auto& kept = accumulator_at<Kind>(state);
        if constexpr (adds_values<Kind>) {
          kind.argument.visit(context, [&](const auto& any) {
            dispatch_value(any, [&](const auto& seen) { kind.add(kept, seen, memory); });
          });
        } else if constexpr (std::same_as<Kind, aggregates::count_distinct_values>) {
          value scratch;
          // Constructs the view in place: copying one that was just made would stall on its stores.
          const value_view key[] = {group, kind.argument.lend(context, scratch)};
          if (is_new(std::span(key).subspan(memory.groups == group_count::one ? 1 : 0), memory)) ++kept.count;
        } else if constexpr (std::same_as<Kind, aggregates::count_distinct_rows>) {
          if (!memory.views) memory.views.emplace(kind.arguments.size());
          const auto seen = memory.views->evaluate(kind.arguments, context);
          if (is_new(distinct_key(seen, memory, group), memory)) ++kept.count;
        } else {
          ++kept.count;
        }
      },
      aggregate);
}

std::span<const operand> arguments_of(const aggregate_entry& aggregate) {
  return std::visit(
      []<class Kind>(const Kind& kind) -> std::span<const operand> {
        if constexpr (requires { kind.argument; }) {
          return {&kind.argument, 1};
        } else if constexpr (requires { kind.arguments; }) {
          return kind.arguments;
        } else {
          return {};
        }
      },
      aggregate);
}

void add_evaluated(const aggregate_entry& aggregate, void* state, std::span<const value_view> seen,
                   accumulator_memory& memory, std::uint64_t group) {
  assert(seen.size() == arguments_of(aggregate).size());
  std::visit(
      [&]<class Kind>(const Kind& kind) {
        auto& kept = accumulator_at<Kind>(state);
        if constexpr (adds_values<Kind>) {
          dispatch_value(seen.front(), [&](const auto& each) { kind.add(kept, each, memory); });
        } else if constexpr (counts_distinct<Kind>) {
          if (is_new(distinct_key(seen, memory, group), memory)) ++kept.count;
        } else {
          ++kept.count;
        }
      },
      aggregate);
}

extra_reads extra_reads_of(const aggregate_entry& aggregate) {
  return std::visit(
      []<class Kind>(const Kind&) {
        if (counts_distinct<Kind>) return extra_reads::always;
        return keeps_extreme<Kind> ? extra_reads::for_texts : extra_reads::never;
      },
      aggregate);
}

void prefetch_referenced(const aggregate_entry& aggregate, const void* state, std::span<const value_view> seen,
                         accumulator_memory& memory, std::uint64_t group) {
  assert(seen.size() == arguments_of(aggregate).size());
  std::visit(
      [&]<class Kind>(const Kind&) {
        if constexpr (counts_distinct<Kind>) {
          // add_evaluated will throw for a valueless value.
          if (!memory.distinct || std::ranges::any_of(seen, is_valueless)) return;
          memory.distinct->prefetch_slot(memory.distinct->hash_of(distinct_key(seen, memory, group)));
        } else if constexpr (keeps_extreme<Kind>) {
          accumulator_at<Kind>(state).extreme.prefetch();
        }
      },
      aggregate);
}

value_view finish(const aggregate_entry& aggregate, const void* state) {
  return std::visit([state]<class Kind>(const Kind& kind) { return kind.result(accumulator_at<Kind>(state)); },
                    aggregate);
}

}  // namespace ov::sql_executor
