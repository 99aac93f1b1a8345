#include "ov_sql_executor/execution/key_ranges/key_interval.hpp"

#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/encoded_text.hpp"
#include "ov_sql_executor/values/number_bracket.hpp"

namespace ov::sql_executor {

namespace {

using db_string::tt_string;
using db_util::key_binary;
using db_util::key_bound;
using db_util::key_object;
using db_util::key_text;
using db_util::lowest_marker;
using db_util::upper_limit;
using operator_library::Decimal;
using operator_library::NullValue;

[[noreturn]] void raise_type_error() { throw db_util::db_exception{db_util::type_error}; }

key_bound text_bound(text_view text) { return key_text{bit_count(text).payload}; }

key_bound text_bound(tt_string text, bound_storage& kept) {
  const text_view view{{text.data(), text.size()}};
  kept.emplace_back(std::move(text));
  return text_bound(view);
}

// NULL sorts below every value.
void apply_null(key_interval& interval, key_operation op) {
  switch (op) {
    case key_operation::greater:
      return interval.raise_low(lowest_marker{}, false);
    case key_operation::less:
      return interval.lower_high(lowest_marker{}, false);
    case key_operation::equal:
      interval.raise_low(lowest_marker{}, true);
      return interval.lower_high(lowest_marker{}, true);
    case key_operation::at_least:
      return interval.raise_low(lowest_marker{}, true);
    case key_operation::at_most:
      return interval.lower_high(lowest_marker{}, true);
    case key_operation::starts_with:
      return interval.make_empty();
  }
}

// Applies a bound that lies on a number of the column's type T, between two of them, or outside of all.
template <class T>
void apply_number(key_interval& interval, key_operation op, const number_bracket<T>& bound) {
  using place = typename number_bracket<T>::place;
  const bool inside = bound.where == place::inside;
  if (op == key_operation::starts_with) throw std::logic_error("Supposedly unreachable");
  if (bound.where == place::unknown) return interval.make_empty();
  switch (op) {
    case key_operation::greater:
      if (bound.where == place::above) return interval.make_empty();
      return inside ? interval.raise_low(bound.floor, false) : void();
    case key_operation::less:
      if (bound.where == place::below) return interval.make_empty();
      return inside ? interval.lower_high(bound.ceiling, false) : void();
    case key_operation::equal:
      if (!inside || !bound.is_exact()) return interval.make_empty();
      interval.raise_low(bound.ceiling, true);
      return interval.lower_high(bound.ceiling, true);
    case key_operation::at_least:
      if (bound.where == place::above) return interval.make_empty();
      return inside ? interval.raise_low(bound.floor, bound.is_exact()) : void();
    case key_operation::at_most:
      if (bound.where == place::below) return interval.make_empty();
      return inside ? interval.lower_high(bound.ceiling, bound.is_exact()) : void();
    case key_operation::starts_with:
      break;
  }
}

template <class T>
void apply_to_number_column(key_interval& interval, key_operation op, const value_view& bound) {
  visit_view(
      [&]<class Bound>(const Bound& number) {
        if constexpr (numeric_alternative<Bound>) {
          apply_number(interval, op, bracket_number<T>(number));
        } else {
          raise_type_error();
        }
      },
      bound);
}

// Applies a bound that is a value of the column's type. Throws: db_exception type_error for starts_with.
void apply_exact(key_interval& interval, key_operation op, const key_bound& bound) {
  switch (op) {
    case key_operation::greater:
      return interval.raise_low(bound, false);
    case key_operation::less:
      return interval.lower_high(bound, false);
    case key_operation::equal:
      interval.raise_low(bound, true);
      return interval.lower_high(bound, true);
    case key_operation::at_least:
      return interval.raise_low(bound, true);
    case key_operation::at_most:
      return interval.lower_high(bound, true);
    case key_operation::starts_with:
      raise_type_error();
  }
}

template <class Bound>
const Bound& bound_of(const value_view& bound) {
  const Bound* held = std::get_if<Bound>(&bound);
  if (held == nullptr) raise_type_error();
  return *held;
}

void apply_to_text_column(key_interval& interval, key_operation op, text_view bound, execution_context& context,
                          bound_storage& kept) {
  if (op != key_operation::starts_with) return apply_exact(interval, op, text_bound(bound));
  interval.raise_low(text_bound(bound), true);
  const std::u16string units = db_util::turbotext_to_ucs2(context.context_handle, bound);
  interval.lower_high(text_bound(db_util::ucs2_to_turbotext(context.context_handle, units, upper_limit::yes), kept),
                      false);
}

void apply_to_set_specifier_column(key_interval& interval, key_operation op, std::u16string_view bound,
                                   execution_context& context, bound_storage& kept) {
  const std::u16string units(bound);
  const auto converted = [&](upper_limit limit) {
    return text_bound(db_util::ucs2_to_setspec_turbotext(context.context_handle, units, limit), kept);
  };
  const key_bound low = converted(upper_limit::no);
  if (op != key_operation::starts_with) return apply_exact(interval, op, low);
  interval.raise_low(low, true);
  interval.lower_high(converted(upper_limit::yes), false);
}

void apply_bound(key_interval& interval, type_code column, key_operation op, const value_view& bound,
                 execution_context& context, bound_storage& kept) {
  switch (column) {
    case type_code::uint64:
      return apply_to_number_column<std::uint64_t>(interval, op, bound);
    case type_code::int64:
      return apply_to_number_column<std::int64_t>(interval, op, bound);
    case type_code::decimal:
      return apply_to_number_column<Decimal>(interval, op, bound);
    case type_code::boolean:
      return apply_to_number_column<bool>(interval, op, bound);
    case type_code::tt_string:
      return apply_to_text_column(interval, op, bound_of<text_view>(bound), context, kept);
    case type_code::set_specifier:
      return apply_to_set_specifier_column(interval, op, bound_of<std::u16string_view>(bound), context, kept);
    case type_code::binary:
      return apply_exact(interval, op, key_binary{bound_of<binary_view>(bound).bytes});
    case type_code::obj_ref:
      return apply_exact(interval, op, key_object{bound_of<OV_OBJ_REF>(bound).object_number});
    case type_code::float32:
    case type_code::float64:
      break;  // refused when the interval was made
  }
}

}  // namespace

db_util::key_bound type_maximum(type_code column, execution_context& context, bound_storage& kept) {
  switch (column) {
    case type_code::uint64:
      return std::numeric_limits<std::uint64_t>::max();
    case type_code::int64:
      return std::numeric_limits<std::int64_t>::max();
    case type_code::decimal:
      return Decimal{Decimal::max_raw};
    case type_code::tt_string:
      return text_bound(db_util::ucs2_to_turbotext(context.context_handle, u"", upper_limit::yes), kept);
    case type_code::binary:
      return key_binary{{}, true};
    case type_code::obj_ref:
      return key_object{std::numeric_limits<std::uint64_t>::max()};
    case type_code::set_specifier:
      return text_bound(db_util::ucs2_to_setspec_turbotext(context.context_handle, u"", upper_limit::yes), kept);
    case type_code::boolean:
      return true;
    case type_code::float32:
      throw std::logic_error("Index key of float type is not supported");
    case type_code::float64:
      throw std::logic_error("Index key of double type is not supported");
  }
  raise_type_error();
}

key_interval::key_interval(type_code column, execution_context& context, bound_storage& kept)
    : high_(type_maximum(column, context, kept)) {}

void key_interval::raise_low(const key_bound& bound, bool inclusive) {
  const std::strong_ordering order = db_util::order_bounds(bound, low_);
  if (order < 0) return;
  low_inclusive_ = inclusive && (order > 0 || low_inclusive_);
  low_ = bound;
}

void key_interval::lower_high(const key_bound& bound, bool inclusive) {
  const std::strong_ordering order = db_util::order_bounds(bound, high_);
  if (order > 0) return;
  high_inclusive_ = inclusive && (order < 0 || high_inclusive_);
  high_ = bound;
}

void key_interval::make_empty() {
  low_ = lowest_marker{};
  high_ = lowest_marker{};
  low_inclusive_ = false;
  high_inclusive_ = false;
}

bool key_interval::is_empty() const {
  const std::strong_ordering order = db_util::order_bounds(low_, high_);
  return order > 0 || (order == 0 && !(low_inclusive_ && high_inclusive_));
}

void apply_condition(key_interval& interval, type_code column, const key_condition& condition,
                     execution_context& context, bound_storage& kept) {
  value scratch;
  const value_view bound = condition.bound.pin(context, scratch);
  // The view points to what the value owns, which moving it leaves in place.
  if (std::holds_alternative<tt_string>(scratch) || std::holds_alternative<operator_library::Binary>(scratch)) {
    kept.push_back(std::move(scratch));
  }
  apply_evaluated(interval, column, condition, bound, context, kept);
}

void apply_evaluated(key_interval& interval, type_code column, const key_condition& condition, const value_view& bound,
                     execution_context& context, bound_storage& kept) {
  if (std::holds_alternative<std::monostate>(bound)) throw std::bad_variant_access();
  const bool is_null = std::holds_alternative<NullValue>(bound);
  if (condition.rejects_null) {
    if (is_null) return interval.make_empty();
    interval.raise_low(lowest_marker{}, false);
  }
  if (is_null) return apply_null(interval, condition.op);
  apply_bound(interval, column, condition.op, bound, context, kept);
}

bool has_exact_keys(type_code column) {
  return column == type_code::int64 || column == type_code::uint64 || column == type_code::obj_ref;
}

std::optional<std::uint64_t> exact_key(type_code column, const value_view& bound) {
  if (const auto* number = std::get_if<std::int64_t>(&bound); number != nullptr && column == type_code::int64) {
    return db_util::key_number(*number);
  }
  if (const auto* number = std::get_if<std::uint64_t>(&bound); number != nullptr && column == type_code::uint64) {
    return *number;
  }
  if (const auto* object = std::get_if<OV_OBJ_REF>(&bound); object != nullptr && column == type_code::obj_ref) {
    return object->object_number;
  }
  return std::nullopt;
}

}  // namespace ov::sql_executor
