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

// Owns the texts and binaries that bounds point into. They stay in place when the vector grows: moving a value does not
// move what it owns on the heap.
using bound_storage = std::vector<value>;

// The interval of one key column's values that a scan visits. low is the lower value whether the column is ascending or
// descending.
class key_interval {
 public:
  // Contains everything from NULL to the type's maximum. Throws: std::logic_error for a float or double column.
  key_interval(type_code column, execution_context& context, bound_storage& kept);

  // Tighten the interval; a looser bound changes nothing. Of two equal bounds the exclusive one wins.
  void raise_low(const db_util::key_bound& bound, bool inclusive);
  void lower_high(const db_util::key_bound& bound, bool inclusive);

  // Excludes all values. The interval stays empty, since it can only be tightened.
  void make_empty();

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

// Returns the greatest bound of a column of this type. Throws: std::logic_error for float and double, which cannot be
// keys.
db_util::key_bound type_maximum(type_code column, execution_context& context, bound_storage& kept);

// Evaluates the condition's bound and tightens the interval of a column by it.
// Throws: db_exception type_error for a bound of a type that the column does not compare with; std::logic_error for
// starts_with on a column of numbers; std::bad_variant_access for a valueless bound; what the bound's evaluation
// throws.
void apply_condition(key_interval& interval, type_code column, const key_condition& condition,
                     execution_context& context, bound_storage& kept);

// Tightens the interval of a column by a condition whose bound has been evaluated already. Throws: as apply_condition.
// Requires: what the bound shows outlives the interval.
void apply_evaluated(key_interval& interval, type_code column, const key_condition& condition, const value_view& bound,
                     execution_context& context, bound_storage& kept);

// Whether the values of one alternative stand one to one for the key numbers of columns of this type.
bool has_exact_keys(type_code column);

// Returns the key number of a bound of that alternative. Returns nothing for other bounds and columns.
std::optional<std::uint64_t> exact_key(type_code column, const value_view& bound);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_KEY_INTERVAL_HPP_
