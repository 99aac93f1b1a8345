#ifndef OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_SCAN_KEYS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_SCAN_KEYS_HPP_

#include <cstdint>
#include <vector>

#include "ov_sql_executor/database/index_key.hpp"
#include "ov_sql_executor/database/metadata.hpp"
#include "ov_sql_executor/execution/key_ranges/key_condition.hpp"

namespace ov::sql_executor {

// The two ends of a scan, as the core takes them.
struct scan_keys {
  db_util::growing_key first;
  db_util::growing_key last;
  std::uint32_t flags = 0;
};

// Evaluates the conditions, column by column in key order, and writes the keys into an empty scan_keys. If any column
// lets nothing pass, both keys are equal and exclusive, whatever the other columns say. Throws
// std::logic_error for a float or double key column, before any bound of that column is evaluated, and
// std::out_of_range when there are more lists of conditions than key columns.
void write_scan_keys(const std::vector<std::vector<key_condition>>& ranges,
                     const std::vector<meta_data::key_column>& key_columns, bool ascending, execution_context& context,
                     scan_keys& keys);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_SCAN_KEYS_HPP_
