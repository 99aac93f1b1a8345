#ifndef OV_SQL_EXECUTOR_EXECUTION_SORTING_KEY_SORT_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_SORTING_KEY_SORT_HPP_

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "ov_sql_executor/execution/sorting/sort_column.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Finds the order of rows by their keys, in sort order, the first key most significant, as far as it is asked for:
// whoever wants the first rows of many does not pay for sorting the others.
//
// Most of it is sorting of numbers: the rows are sorted by the first 64 bits of one key. Where a run of rows has the
// same ones, it is sorted by the next 64 bits of a longer key, or by the next key, in the same way. What is left, short
// runs and long texts that have much in common, is sorted by comparing whole keys. Rows that are equal in all keys are
// put back into the order in which they came, so that a limit cuts a slice out of the same rows whatever it is.
class key_sort {
 public:
  using entry = sort_entry;

  // Whether each key is ascending, a list that must stay, and how many rows will be asked for at most.
  explicit key_sort(const std::vector<bool>& ascending,
                    std::uint64_t wanted = std::numeric_limits<std::uint64_t>::max());

  // The next key of the row that is being added: every row has as many as there are directions.
  void add_key(const value_view& key) {
    columns_[next_column_].add(key);
    if (++next_column_ == columns_.size()) next_column_ = 0;
  }

  // A key, but the first one, of a row that is not added. Its kind is noted, which may be one that cannot be sorted.
  void pass_key(std::size_t number, const value_view& key) { columns_[number].pass(key); }

  // Whether any two rows can be compared, those that were dropped or not added among them.
  bool is_sortable() const;

  // Whether a row with this first key need not be added: keep_first has found enough rows that come before it.
  bool is_behind_kept(const value_view& first_key) const { return columns_.front().is_behind_limit(first_key); }

  // To be called after the last key, with the number of rows, which were added in the order 0, 1, 2...
  // Throws what sort_order throws for two keys that decide the order of their rows; nothing where all are sortable.
  void start(std::size_t count);

  // Drops all rows but the first so many of those added so far, and returns the numbers that these had. They have new
  // ones now, in this order. Requires is_sortable().
  std::vector<std::size_t> keep_first(std::size_t wanted, std::size_t count);

  // The next rows in the order of their keys, at least one unless there are no more; rows with equal keys come in the
  // order in which they were added. The span is good until this is called again. Asks for no memory and throws nothing.
  std::span<const entry> next_rows();

 private:
  using iterator = large_vector<entry>::iterator;

  enum class step { unread, unsorted, sorted };  // what has been done with the prefixes

  // Rows that are equal in every key before this one, and in so many words of this one.
  struct run {
    iterator begin;
    iterator end;
    std::size_t key;
    step done = step::unread;
    std::size_t word = 0;
  };

  std::uint64_t turned(std::size_t key) const { return ascending_[key] ? 0 : ~std::uint64_t{0}; }
  void put_off(const run& rows);
  void sort_further();
  void read(const run& rows);
  void sort_prefixes(const run& rows);
  void sort_equals(const run& rows);
  void sort_by_next_word(const run& rows);
  void sort_by_comparison(const run& rows);
  bool goes_before(const entry& left, const entry& right, std::size_t key) const;
  bool are_all_equal(const run& rows) const;

  const std::vector<bool>& ascending_;
  const std::ptrdiff_t first_rows_;   // so many rows of a longer input are sorted first
  std::vector<sort_column> columns_;  // as many as there are keys, until the sort is done
  std::size_t next_column_ = 0;
  large_vector<entry> rows_;
  iterator given_;             // the rows before this have been handed out
  iterator sorted_;            // the rows before this have found their places
  std::vector<run> unsorted_;  // the others, the first run last; not on the call stack, which many keys would exhaust
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_SORTING_KEY_SORT_HPP_
