#ifndef OV_SQL_EXECUTOR_EXECUTION_SORTING_SORT_COLUMN_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_SORTING_SORT_COLUMN_HPP_

#include <cassert>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <span>
#include <variant>
#include <vector>

#include "ov_sql_executor/execution/sorting/view_arena.hpp"
#include "ov_sql_executor/support/large_memory.hpp"
#include "ov_sql_executor/values/sort_order.hpp"
#include "ov_sql_executor/values/sort_prefix.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// A row that is being sorted.
struct sort_entry {
  std::uint64_t prefix;  // a word of one of its keys, xor a mask
  std::size_t row;       // its number, from 0 in the order of adding
};

// One sort key of all rows.
//
//    keys so far, apart from NULL                  kept                 bytes a row
//    all numbers of one alternative, or all        prefixes_, nulls_    8
//    references
//    any others                                    views_, arena_       24, and what the views show
//
// A prefix is a key's word 0, its first 64 bits: see sort_prefix.hpp. Longer keys have words 1, 2... Masks are 0 for
// ascending keys and all ones for descending ones, so that both sort by ascending words.
//
// Requires, of every row number below: row_number < size().
class sort_column {
 public:
  // Adds the key of the next row. Throws: std::bad_variant_access for the view of a valueless value.
  void add(const value_view& key) {
    const auto* const number = std::get_if<std::int64_t>(&key);
    if (number != nullptr && kinds_ == kind_of_alternative<std::int64_t>) {  // the commonest keys take the short way
      push_prefix(sort_prefix(*number));
    } else {
      add_any(key);
    }
  }

  // Notes the kind of a key that is not added. Throws: std::bad_variant_access for the view of a valueless value.
  void note_skipped(const value_view& key) {
    if (std::holds_alternative<std::int64_t>(key) && kinds_ == kind_of_alternative<std::int64_t>) return;
    if (std::holds_alternative<std::monostate>(key)) throw std::bad_variant_access();
    skipped_kinds_ |= sort_kind(key);
  }

  std::size_t size() const { return has_views_ ? views_.size() : prefixes_.size(); }

  // Whether sort_order can compare any two keys, including those that were dropped or skipped.
  bool is_sortable() const { return ov::sql_executor::is_sortable(kinds_ | skipped_kinds_); }

  bool has_nulls() const { return (kinds_ & kind_of_alternative<operator_library::NullValue>) != 0; }
  bool is_null(std::size_t row_number) const;

  // Writes a word of each row's key, xor mask, into the entry's prefix.
  // Requires: is_sortable(); no NULL among the keys; word == 0 where has_exact_prefixes().
  void read_prefixes(std::span<sort_entry> rows, std::uint64_t mask, std::size_t word = 0) const;

  // Whether equal prefixes mean equal keys. Otherwise keys may have words after the prefix.
  bool has_exact_prefixes() const { return !has_views_; }

  // Whether the row's key has no word after this one. Of keys that are equal up to a word, those that end with it sort
  // below the others. Requires: !has_exact_prefixes().
  bool ends_with_word(std::size_t row_number, std::size_t word) const;

  // Compares two rows' keys by sort_order. Throws: what that throws.
  std::strong_ordering order(std::size_t left, std::size_t right) const;

  // Makes the key of a row the last one that is wanted.
  void set_limit(std::size_t row_number, std::uint64_t mask);

  // Whether a key sorts after the limit. May say no of a key that does: it compares prefixes only.
  bool is_after_limit(const value_view& key) const {
    const auto* const number = std::get_if<std::int64_t>(&key);
    if (number == nullptr || limit_kind_ != kind_of_alternative<std::int64_t>) return is_any_after_limit(key);
    return (sort_prefix(*number) ^ limit_mask_) > limit_;
  }

  // Drops all keys but those of these rows, which become rows 0, 1, 2...
  void keep(const std::vector<std::size_t>& row_numbers);

 private:
  // Growing is rare. Out of line it does not slow down the rest.
  void push_prefix(std::uint64_t prefix) {
    if (prefixes_.size() == prefixes_.capacity()) grow_prefixes();
    if (prefixes_.size() == prefixes_.capacity()) __builtin_unreachable();
    prefixes_.push_back(prefix);
  }
  [[gnu::noinline]] void grow_prefixes() { prefixes_.reserve(2 * prefixes_.size() + 1); }

  bool is_any_after_limit(const value_view& key) const;
  void add_any(const value_view& key);
  void add_prefix(const value_view& key);
  void make_views();

  sort_kinds kinds_ = 0;          // of the keys that were added
  sort_kinds skipped_kinds_ = 0;  // of those that were not
  bool has_views_ = false;
  large_vector<value_view> views_;  // of all keys, or of none
  view_arena arena_;
  large_vector<std::uint64_t> prefixes_;  // of all keys while has_views_ is false; 0 for NULL
  std::vector<bool> nulls_;               // which prefixes are NULLs; empty while there is no NULL
  std::uint64_t limit_ = 0;               // a prefix, xor limit_mask_
  std::uint64_t limit_mask_ = 0;
  sort_kinds limit_kind_ = 0;  // keys of this kind can be compared with the limit; 0: there is no limit
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_SORTING_SORT_COLUMN_HPP_
