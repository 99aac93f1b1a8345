#ifndef OV_SQL_EXECUTOR_EXECUTION_SORTING_KEY_SORT_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_SORTING_KEY_SORT_HPP_

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "ov_sql_executor/execution/sorting/sort_column.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Sorts rows by their keys, in sort order, the first key most significant. Sorts lazily: a caller that asks for the
// first rows only does not pay for sorting the others.
//
// Sorts a run of rows
//   1. by word 0 of a key, its first 64 bits;
//   2. where those are equal, by the next word of that key, or by the next key;
//   3. where the run is short, or the keys have a long beginning in common, by comparing whole keys;
//   4. where all keys are equal, in the order of adding, so that every limit cuts off the same sequence.
class key_sort {
 public:
  using entry = sort_entry;

  // ascending: whether each key is; must outlive the sort. wanted: at most so many rows will be asked for.
  explicit key_sort(const std::vector<bool>& ascending,
                    std::uint64_t wanted = std::numeric_limits<std::uint64_t>::max());

  // Adds the next key of a row. Every row has ascending.size() keys, added in order.
  // Throws: std::bad_variant_access for the view of a valueless value.
  void add_key(const value_view& key) {
    assert(next_column_ < columns_.size());
    columns_[next_column_].add(key);
    if (++next_column_ == columns_.size()) next_column_ = 0;
  }

  // Notes the kind of a key of a row that is not added: it may make the rows unsortable.
  // Requires: number is the key's, and not the first; no row is half added.
  // Throws: std::bad_variant_access for the view of a valueless value.
  void note_skipped_key(std::size_t number, const value_view& key) {
    assert(number > 0 && number < columns_.size() && next_column_ == 0);
    columns_[number].note_skipped(key);
  }

  // Whether any two rows can be compared, including those that were dropped or not added.
  bool is_sortable() const;

  // Whether a row with this first key need not be added, since keep_first found enough rows before it. May say no of a
  // row that need not.
  bool is_after_kept(const value_view& first_key) const {
    assert(!columns_.empty());
    return columns_.front().is_after_limit(first_key);
  }

  // Ends the adding of rows, whose numbers are 0, 1, 2... in the order of adding.
  // Requires: count rows were added, with all their keys.
  // Throws: what sort_order throws for two keys that decide the order of their rows; nothing if is_sortable().
  void start(std::size_t count);

  // Drops all rows but the first so many in the order of their keys, and returns the numbers of these. They become rows
  // 0, 1, 2... and more rows can be added after them.
  // Requires: is_sortable(); wanted > 0; count rows were added, with all their keys.
  std::vector<std::size_t> keep_first(std::size_t wanted, std::size_t count);

  // Returns the next rows in the order of their keys, at least one unless there are no more. Neither allocates nor
  // throws. Valid until: the next call. Requires: start() was called.
  std::span<const entry> next_rows();

 private:
  using iterator = large_vector<entry>::iterator;

  enum class prefix_state { unread, unsorted, sorted };

  // Rows that are equal in all keys before this key, and in all words of it before this word.
  struct run {
    iterator begin;
    iterator end;
    std::size_t key;
    prefix_state prefixes = prefix_state::unread;  // of the entries: whether they hold this word, and are sorted by it
    std::size_t word = 0;
  };

  bool has_whole_rows(std::size_t count) const;
  std::uint64_t xor_mask(std::size_t key) const { return ascending_[key] ? 0 : ~std::uint64_t{0}; }
  void push_run(const run& rows);
  void sort_next_run();
  void read_prefixes(const run& rows);
  void sort_prefixes(const run& rows);
  void sort_equals(const run& rows);
  void sort_by_next_word(const run& rows);
  void sort_by_comparison(const run& rows);
  bool is_before(const entry& left, const entry& right, std::size_t key) const;
  bool are_all_equal(const run& rows) const;

  const std::vector<bool>& ascending_;
  const std::ptrdiff_t first_rows_;   // of a longer input this many are sorted before the others
  std::vector<sort_column> columns_;  // as many as there are keys, until the sort is done
  std::size_t next_column_ = 0;       // of the next key to add; 0 between rows
  large_vector<entry> rows_;
  iterator returned_;          // end of the rows that next_rows has returned
  iterator sorted_;            // end of the rows that are in their final places
  std::vector<run> unsorted_;  // a stack of the other rows, the first on top; recursion could exhaust the call stack
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_SORTING_KEY_SORT_HPP_
