#ifndef OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_SCAN_KEYS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_SCAN_KEYS_HPP_

#include <cstdint>
#include <vector>

#include "ov_sql_executor/database/index_key.hpp"
#include "ov_sql_executor/database/metadata.hpp"
#include "ov_sql_executor/execution/key_ranges/key_condition.hpp"

namespace ov::sql_executor {

// The two ends of a scan, in the core's form.
struct scan_keys {
  db_util::growing_key first;
  db_util::growing_key last;
  std::uint32_t flags = 0;  // ORV_ITERATOR_...
};

// Evaluates the conditions, column by column in key order, and writes the keys and flags. If the conditions of any
// column exclude all values, both keys are equal and exclusive.
// Requires: keys is empty.
// Throws: std::logic_error for a float or double key column, before any bound of that column is evaluated;
// std::out_of_range for more lists of conditions than key columns; what apply_condition throws.
void write_scan_keys(const std::vector<std::vector<key_condition>>& ranges,
                     const std::vector<meta_data::key_column>& key_columns, bool ascending, execution_context& context,
                     scan_keys& keys);

// Whether a scan is a lookup: of an index of one key column whose values stand one to one for key numbers, by one
// equality.
bool is_lookup(const std::vector<std::vector<key_condition>>& ranges,
               const std::vector<meta_data::key_column>& key_columns);

// Writes the keys of a lookup whose bound has been evaluated, and has no exact key. Throws and requires: as
// write_scan_keys.
void write_lookup_keys(const key_condition& condition, const value_view& bound, const meta_data::key_column& column,
                       bool ascending, execution_context& context, scan_keys& keys);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_SCAN_KEYS_HPP_
