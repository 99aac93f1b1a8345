#include "ov_sql_executor/execution/scan_keys.hpp"

#include <utility>

#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/execution/key_interval.hpp"

namespace ov::sql_executor {

namespace {

using db_util::growing_key;
using db_util::key_bound;
using db_util::lowest_marker;
using meta_data::key_column;

// One end of the walk, in index order.
struct key_end {
  growing_key key;
  bool inclusive = true;
};

class key_ends {
 public:
  explicit key_ends(execution_context& context) : context_(context) {}

  void append_restricted(const key_column& column, const std::vector<key_condition>& conditions) {
    key_interval interval(column.type, context_, kept_);
    for (const key_condition& condition : conditions) {
      apply_condition(interval, column.type, condition, context_, kept_);
    }
    if (empty_) return append_crossed(column);
    empty_ = interval.is_empty();
    const bool forward = column.ascending;
    first_.key.append(forward ? interval.low() : interval.high());
    last_.key.append(forward ? interval.high() : interval.low());
    first_.inclusive = forward ? interval.low_inclusive() : interval.high_inclusive();
    last_.inclusive = forward ? interval.high_inclusive() : interval.low_inclusive();
  }

  // An inclusive end takes in every value of the column, an exclusive one leaves them all out.
  void append_unrestricted(const key_column& column) {
    const key_bound maximum = type_maximum(column.type, context_, kept_);
    first_.key.append(first_.inclusive == column.ascending ? key_bound(lowest_marker{}) : maximum);
    last_.key.append(last_.inclusive == column.ascending ? maximum : key_bound(lowest_marker{}));
  }

  scan_keys finish(bool ascending) {
    first_.key.terminate();
    last_.key.terminate();
    if (!ascending) std::swap(first_, last_);
    std::uint32_t flags = 0;
    if (!ascending) flags |= ORV_ITERATOR_DESCENDING;
    if (first_.inclusive) flags |= ORV_ITERATOR_FIRST_INCLUSIVE;
    if (last_.inclusive) flags |= ORV_ITERATOR_LAST_INCLUSIVE;
    return {std::move(first_.key), std::move(last_.key), flags};
  }

 private:
  // Behind a column that lets nothing pass the conditions must not bring the ends together again.
  void append_crossed(const key_column& column) {
    first_.inclusive = false;
    last_.inclusive = false;
    append_unrestricted(column);
  }

  execution_context& context_;
  kept_values kept_;
  key_end first_;
  key_end last_;
  bool empty_ = false;  // some column with conditions lets nothing pass
};

}  // namespace

scan_keys make_scan_keys(const std::vector<std::vector<key_condition>>& ranges,
                         const std::vector<key_column>& key_columns, bool ascending, execution_context& context) {
  key_ends ends(context);
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    ends.append_restricted(error_handling::element_at(key_columns, i), ranges[i]);
  }
  for (std::size_t i = ranges.size(); i < key_columns.size(); ++i) ends.append_unrestricted(key_columns[i]);
  return ends.finish(ascending);
}

}  // namespace ov::sql_executor
