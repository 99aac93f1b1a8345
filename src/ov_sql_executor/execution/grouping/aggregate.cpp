#include "ov_sql_executor/execution/grouping/aggregate.hpp"

#include <algorithm>
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

// Hands over a value unless it is NULL: integers, the commonest, as they are, others as views. Throws
// std::bad_variant_access for a valueless one, which is neither.
template <class Take>
void take_value(std::int64_t number, Take take) {
  take(number);
}

template <class Take>
void take_value(const value_view& seen, Take take) {
  if (const auto* const number = std::get_if<std::int64_t>(&seen)) return take(*number);
  if (is_valueless(seen)) throw std::bad_variant_access();
  if (!std::holds_alternative<NullValue>(seen)) take(seen);
}

// Promoted with itself, so that the total of one value has the type that the total of several would have.
void add_to(kept_value& total, const value_view& seen, accumulator_memory& memory) {
  const value_view promoted = promote_pair(seen, seen).right;
  if (!is_number(promoted)) throw db_util::db_exception{db_util::type_error};
  total.become(total.is_null() ? promoted : add_values(total.view(), promoted), memory.kept);
}

void add_to(kept_value& total, std::int64_t number, accumulator_memory& memory) {
  if (total.is_null()) return total.become(number);
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
  kept.become(seen, memory.kept);
}

void keep_extreme(end wanted, kept_value& kept, std::int64_t number, accumulator_memory& memory) {
  if (kept.is_null()) return kept.become(number);
  std::int64_t* const integer = kept.integer();
  if (integer == nullptr) return keep_extreme(wanted, kept, value_view(number), memory);
  *integer = wanted == end::greatest ? std::max(*integer, number) : std::min(*integer, number);
}

// The row of the set of distinct rows that stands for what is seen in a group. Its number comes first, and says nothing
// where there is no other group.
std::span<const value_view> distinct_row(std::span<const value_view> seen, accumulator_memory& memory,
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

// The first value is taken, not added to zero: a lone -0.0 stays what it is.
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
        static_assert(alignof(accumulator) == alignof(std::uint64_t));  // so that states fit side by side
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
            take_value(any, [&](const auto& seen) { kind.add(kept, seen, memory); });
          });
        } else if constexpr (std::same_as<Kind, aggregates::count_distinct_values>) {
          value scratch;
          // Made in its place: copying a view that was just made would wait until all parts of it are written.
          const value_view key[] = {group, kind.argument.lend(context, scratch)};
          if (is_new(std::span(key).subspan(memory.groups == group_count::one ? 1 : 0), memory)) ++kept.count;
        } else if constexpr (std::same_as<Kind, aggregates::count_distinct_rows>) {
          if (!memory.views) memory.views.emplace(kind.arguments.size());
          const auto seen = memory.views->evaluate(kind.arguments, context);
          if (is_new(distinct_row(seen, memory, group), memory)) ++kept.count;
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

void take_values(const aggregate_entry& aggregate, void* state, std::span<const value_view> seen,
                 accumulator_memory& memory, std::uint64_t group) {
  std::visit(
      [&]<class Kind>(const Kind& kind) {
        auto& kept = accumulator_at<Kind>(state);
        if constexpr (adds_values<Kind>) {
          take_value(seen.front(), [&](const auto& taken) { kind.add(kept, taken, memory); });
        } else if constexpr (counts_distinct<Kind>) {
          if (is_new(distinct_row(seen, memory, group), memory)) ++kept.count;
        } else {
          ++kept.count;
        }
      },
      aggregate);
}

further_look looks_further(const aggregate_entry& aggregate) {
  return std::visit(
      []<class Kind>(const Kind&) {
        if (counts_distinct<Kind>) return further_look::at_all;
        return keeps_extreme<Kind> ? further_look::at_texts : further_look::at_none;
      },
      aggregate);
}

void prefetch_further(const aggregate_entry& aggregate, const void* state, std::span<const value_view> seen,
                      accumulator_memory& memory, std::uint64_t group) {
  std::visit(
      [&]<class Kind>(const Kind&) {
        if constexpr (counts_distinct<Kind>) {
          // A valueless value is refused when its turn comes.
          if (!memory.distinct || std::ranges::any_of(seen, is_valueless)) return;
          memory.distinct->prefetch_place(memory.distinct->hash_of(distinct_row(seen, memory, group)));
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
