#ifndef OV_SQL_EXECUTOR_EXECUTION_SCAN_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_SCAN_HPP_

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "ov_sql_executor/database/metadata.hpp"
#include "ov_sql_executor/execution/key_ranges/key_condition.hpp"
#include "ov_sql_executor/execution/key_ranges/key_interval.hpp"
#include "ov_sql_executor/execution/key_ranges/scan_keys.hpp"
#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// Walks an interval of an index and yields the objects found, one reference per row. The bounds are evaluated when the
// enumerator is created, against the rows in scope: on the inner side of a join a scan is an index lookup.
//
// An exclusive end on a leading key column that is not the last one is as good as inclusive where a later column has
// conditions, too: the flags that the core takes are those of the last column with conditions. A filter must stay
// above. An interval that is empty on any column makes the whole scan empty.
class scan final : public source_node {
 public:
  // ranges: the conditions on each leading key column, in key order; key_columns: every key column of the index.
  scan(std::vector<std::vector<key_condition>> ranges, std::uint64_t index_handle,
       std::vector<meta_data::key_column> key_columns, bool ascending)
      : ranges_(std::move(ranges)),
        index_handle_(index_handle),
        key_columns_(std::move(key_columns)),
        ascending_(ascending),
        lookup_(is_lookup(ranges_, key_columns_) ? &ranges_.front().front() : nullptr) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return 1; }
  bool keeps_rows() const override { return false; }
  node_description describe() const override;

  // A new iterator of the core over the interval, owned by the caller.
  std::uint64_t open_iterator(execution_context& context) const;

  // The condition of a lookup, else null (see is_lookup).
  const key_condition* lookup() const { return lookup_; }

  // For a lookup: the key number of an evaluated bound, if it has one; a new iterator, as open_iterator makes it.
  std::optional<std::uint64_t> find_key(const value_view& bound) const {
    return exact_key(key_columns_.front().type, bound);
  }
  std::uint64_t open_lookup(execution_context& context, std::uint64_t key) const;
  std::uint64_t open_lookup(execution_context& context, const value_view& bound) const;

 private:
  std::uint64_t open_between(execution_context& context, std::uint32_t flags, const std::uint8_t* first,
                             const std::uint8_t* last) const;

  std::vector<std::vector<key_condition>> ranges_;
  std::uint64_t index_handle_;
  std::vector<meta_data::key_column> key_columns_;
  bool ascending_;
  const key_condition* lookup_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_SCAN_HPP_
