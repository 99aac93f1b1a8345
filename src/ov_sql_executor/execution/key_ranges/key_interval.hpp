#ifndef OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_KEY_INTERVAL_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_KEY_INTERVAL_HPP_

#include <cstdint>
#include <optional>
#include <vector>

#include "ov_sql_executor/database/index_key.hpp"
#include "ov_sql_executor/execution/key_ranges/key_condition.hpp"
#include "ov_sql_executor/values/type_code.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// The texts and binaries that bounds point into. What a value owns on the heap stays in place when the value moves.
using bound_storage = std::vector<value>;

// The values of one key column that a scan visits, by value (not by the column's direction).
class key_interval {
 public:
  // Everything from NULL to the type's maximum. Throws std::logic_error for a float or double column.
  key_interval(type_code column, execution_context& context, bound_storage& kept);

  // Both only ever tighten the interval. Of two equal bounds the exclusive one wins.
  void raise_low(const db_util::key_bound& bound, bool inclusive);
  void lower_high(const db_util::key_bound& bound, bool inclusive);

  // Lets nothing pass, for good: what tightens the interval later only moves the ends past each other.
  void make_empty();

  // Whether the ends have crossed, or met without both belonging to the interval.
  bool is_empty() const;

  const db_util::key_bound& low() const { return low_; }
  const db_util::key_bound& high() const { return high_; }
  bool low_inclusive() const { return low_inclusive_; }
  bool high_inclusive() const { return high_inclusive_; }

 private:
  db_util::key_bound low_;
  db_util::key_bound high_;
  bool low_inclusive_ = true;
  bool high_inclusive_ = true;
};

// The greatest bound of a column of this type. Throws std::logic_error for float and double, which cannot be keys.
db_util::key_bound type_maximum(type_code column, execution_context& context, bound_storage& kept);

// Evaluates the condition's bound and tightens the interval of a column by it. Throws db_exception type_error for a
// bound of a type that the column does not compare with, std::logic_error for a prefix of a column of numbers, and what
// the bound's evaluation throws.
void apply_condition(key_interval& interval, type_code column, const key_condition& condition,
                     execution_context& context, bound_storage& kept);

// The same for a bound that has been evaluated; what it shows stays where it is.
void apply_evaluated(key_interval& interval, type_code column, const key_condition& condition, const value_view& bound,
                     execution_context& context, bound_storage& kept);

// Whether columns of this type are keyed by numbers that the values of one alternative have, all of them; and that
// number of a value of this alternative, nothing for others.
bool has_exact_keys(type_code column);
std::optional<std::uint64_t> exact_key(type_code column, const value_view& bound);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_KEY_INTERVAL_HPP_
