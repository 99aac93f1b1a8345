#include "ov_sql_executor/execution/key_ranges/scan_keys.hpp"

#include <cassert>
#include <utility>

#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/execution/key_ranges/key_interval.hpp"

namespace ov::sql_executor {

namespace {

using db_util::key_bound;
using db_util::lowest_marker;
using meta_data::key_column;

// Writes both keys, column by column.
class key_ends {
 public:
  key_ends(execution_context& context, scan_keys& keys) : context_(context), keys_(keys) {
    assert(keys.first.bytes().empty() && keys.last.bytes().empty() && keys.flags == 0);
  }

  void append_restricted(const key_column& column, const std::vector<key_condition>& conditions) {
    const bool is_lookup = !empty_ && conditions.size() == 1 && conditions[0].op == key_operation::equal;
    if (is_lookup && has_exact_keys(column.type)) {
      append_equal(column, conditions[0]);
    } else {
      append_conditions(column, conditions);
    }
  }

  [[gnu::noinline]] void append_evaluated(const key_column& column, const key_condition& condition,
                                          const value_view& bound) {
    key_interval interval(column.type, context_, kept_);
    apply_evaluated(interval, column.type, condition, bound, context_, kept_);
    append(column, interval);
  }

  // Extends an inclusive end to include all values of the column, an exclusive one to exclude them all.
  void append_unrestricted(const key_column& column) {
    const key_bound maximum = type_maximum(column.type, context_, kept_);
    keys_.first.append(first_inclusive_ == column.ascending ? key_bound(lowest_marker{}) : maximum);
    keys_.last.append(last_inclusive_ == column.ascending ? maximum : key_bound(lowest_marker{}));
  }

  void finish(bool ascending) {
    keys_.first.terminate();
    keys_.last.terminate();
    if (empty_) make_empty();
    if (!ascending) {
      std::swap(keys_.first, keys_.last);
      std::swap(first_inclusive_, last_inclusive_);
      keys_.flags |= ORV_ITERATOR_DESCENDING;
    }
    if (first_inclusive_) keys_.flags |= ORV_ITERATOR_FIRST_INCLUSIVE;
    if (last_inclusive_) keys_.flags |= ORV_ITERATOR_LAST_INCLUSIVE;
  }

 private:
  // A short cut for lookups, which run once for every outer row of a join: needs no interval if the bound is a key
  // already. The functions that need one are out of line, to keep this one small.
  void append_equal(const key_column& column, const key_condition& condition) {
    value scratch;
    const value_view bound = condition.bound.pin(context_, scratch);
    const auto key = exact_key(column.type, bound);
    if (!key) return append_evaluated(column, condition, bound);
    keys_.first.append_number(*key);
    keys_.last.append_number(*key);
    first_inclusive_ = true;
    last_inclusive_ = true;
  }

  [[gnu::noinline]] void append_conditions(const key_column& column, const std::vector<key_condition>& conditions) {
    key_interval interval(column.type, context_, kept_);
    for (const key_condition& condition : conditions) {
      apply_condition(interval, column.type, condition, context_, kept_);
    }
    append(column, interval);
  }

  void append(const key_column& column, const key_interval& interval) {
    empty_ = empty_ || interval.is_empty();
    const bool forward = column.ascending;
    keys_.first.append(forward ? interval.low() : interval.high());
    keys_.last.append(forward ? interval.high() : interval.low());
    first_inclusive_ = forward ? interval.low_inclusive() : interval.high_inclusive();
    last_inclusive_ = forward ? interval.high_inclusive() : interval.low_inclusive();
  }

  // Excludes all keys. An empty interval of one column is not enough: the columns before it may set the keys apart.
  [[gnu::noinline]] void make_empty() {
    keys_.last = keys_.first;
    first_inclusive_ = false;
    last_inclusive_ = false;
  }

  execution_context& context_;
  scan_keys& keys_;
  bound_storage kept_;
  bool first_inclusive_ = true;
  bool last_inclusive_ = true;
  bool empty_ = false;  // the conditions of some column exclude all values
};

}  // namespace

void write_scan_keys(const std::vector<std::vector<key_condition>>& ranges, const std::vector<key_column>& key_columns,
                     bool ascending, execution_context& context, scan_keys& keys) {
  key_ends ends(context, keys);
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    ends.append_restricted(error_handling::element_at(key_columns, i), ranges[i]);
  }
  for (std::size_t i = ranges.size(); i < key_columns.size(); ++i) ends.append_unrestricted(key_columns[i]);
  ends.finish(ascending);
}

bool is_lookup(const std::vector<std::vector<key_condition>>& ranges, const std::vector<key_column>& key_columns) {
  return ranges.size() == 1 && key_columns.size() == 1 && ranges[0].size() == 1 &&
         ranges[0][0].op == key_operation::equal && has_exact_keys(key_columns[0].type);
}

void write_lookup_keys(const key_condition& condition, const value_view& bound, const key_column& column,
                       bool ascending, execution_context& context, scan_keys& keys) {
  key_ends ends(context, keys);
  ends.append_evaluated(column, condition, bound);
  ends.finish(ascending);
}

}  // namespace ov::sql_executor
