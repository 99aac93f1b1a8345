#ifndef OV_SQL_EXECUTOR_EXECUTION_KEY_SORT_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEY_SORT_HPP_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ov_sql_executor/values/value_view.hpp"
#include "ov_sql_executor/values/view_keeper.hpp"

namespace ov::sql_executor {

// Finds the order of rows by their keys, in sort order, the first key most significant.
//
// Most of it is sorting of numbers: the rows are sorted by the first 64 bits of one key. Where a run of rows has the
// same ones, and these are the whole key, it is sorted by the next key in the same way. What is left, short runs and
// long texts that begin alike, is sorted by comparing whole keys.
class key_sort {
 public:
  // Whether each key is ascending.
  explicit key_sort(const std::vector<bool>& ascending) : ascending_(ascending) {}

  // The next key of the row that is being added: every row has as many as there are directions.
  void add_key(const value_view& key) { keeper_.append_to(keys_, key); }

  // The numbers of this many rows, which were added in the order 0, 1, 2..., in the order of their keys; rows with
  // equal keys in no particular order. Throws what sort_order throws for two keys that it has to compare.
  std::vector<std::size_t> sorted_rows(std::size_t count);

 private:
  struct entry {
    std::uint64_t prefix;
    std::size_t row;
  };
  using iterator = std::vector<entry>::iterator;

  // Rows that are equal in every key before this one.
  struct run {
    iterator begin;
    iterator end;
    std::size_t key;
  };

  const value_view& key_of(const entry& each, std::size_t key) const {
    return keys_[each.row * ascending_.size() + key];
  }
  void put_off(const run& rows);
  void sort(const run& rows);
  iterator divide_nulls(const run& rows) const;
  void sort_values(const run& rows);
  enum class prefixes { none, beginnings, whole_keys };
  prefixes read_prefixes(const run& rows) const;
  void sort_equals(const run& rows, prefixes found);
  void sort_by_comparison(const run& rows) const;
  bool goes_before(const entry& left, const entry& right, std::size_t key) const;
  bool are_all_equal(const run& rows) const;

  const std::vector<bool>& ascending_;
  view_keeper keeper_;
  std::vector<value_view> keys_;  // row after row
  std::vector<run> unsorted_;     // what is left to do; not on the call stack, which many keys would exhaust
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEY_SORT_HPP_
