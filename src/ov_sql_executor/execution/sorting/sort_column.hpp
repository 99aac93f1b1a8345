#ifndef OV_SQL_EXECUTOR_EXECUTION_SORTING_SORT_COLUMN_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_SORTING_SORT_COLUMN_HPP_

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
  std::uint64_t prefix;  // of one of its keys, or later bits of it
  std::size_t row;
};

// One of the keys by which rows are sorted, for all rows. While the keys are numbers of one alternative only their
// prefixes are kept, a third of the memory; other keys are kept as views.
class sort_column {
 public:
  // Adds the key of the next row. Throws std::bad_variant_access for the view of a valueless value.
  void add(const value_view& key) {
    const auto* const number = std::get_if<std::int64_t>(&key);
    if (number != nullptr && kinds_ == kind_of_alternative<std::int64_t>) {  // the commonest keys take the short way
      push_prefix(sort_prefix(*number));
    } else {
      add_any(key);
    }
  }

  // Notes the kind of a key that is not added. Throws std::bad_variant_access for the view of a valueless value.
  void pass(const value_view& key) {
    if (std::holds_alternative<std::int64_t>(key) && kinds_ == kind_of_alternative<std::int64_t>) return;
    if (std::holds_alternative<std::monostate>(key)) throw std::bad_variant_access();
    passed_kinds_ |= sort_kind(key);
  }

  // Whether sort_order has an answer for any two of the keys, those that were forgotten or passed among them.
  bool is_sortable() const { return ov::sql_executor::is_sortable(kinds_ | passed_kinds_); }

  bool has_nulls() const { return (kinds_ & kind_of_alternative<operator_library::NullValue>) != 0; }
  bool is_null(std::size_t row_number) const;

  // Writes the prefixes of the rows' keys, which must be sortable and not NULL, turned by exclusive or. Of keys that
  // have more than a prefix: those 64 bits of each that so many words come before.
  void read_prefixes(std::span<sort_entry> rows, std::uint64_t turned, std::size_t word = 0) const;

  // Whether equal prefixes mean equal keys. Otherwise keys go on behind their prefixes, each up to some word; of keys
  // that are equal up to a word, those that end with it are below the others.
  bool is_told_by_prefixes() const { return !has_views_; }
  bool ends_with_word(std::size_t row_number, std::size_t word) const;

  // The sort order of two rows' keys; throws what it throws.
  std::strong_ordering order(std::size_t left, std::size_t right) const;

  // Makes the key of a row, with its prefix turned by exclusive or, the last that is wanted.
  void set_limit(std::size_t row_number, std::uint64_t turned);

  // Whether a key is certainly behind that one; prefixes do not tell it of every key that is.
  bool is_behind_limit(const value_view& key) const {
    const auto* const number = std::get_if<std::int64_t>(&key);
    if (number == nullptr || limit_kind_ != kind_of_alternative<std::int64_t>) return is_any_behind_limit(key);
    return (sort_prefix(*number) ^ limit_turned_) > limit_;
  }

  // Forgets all keys but those of these rows, which become the rows 0, 1, 2...
  void keep(const std::vector<std::size_t>& row_numbers);

 private:
  // Growing is rare, and kept out of the way.
  void push_prefix(std::uint64_t prefix) {
    if (prefixes_.size() == prefixes_.capacity()) make_room_for_prefix();
    if (prefixes_.size() == prefixes_.capacity()) __builtin_unreachable();
    prefixes_.push_back(prefix);
  }
  [[gnu::noinline]] void make_room_for_prefix() { prefixes_.reserve(2 * prefixes_.size() + 1); }

  bool is_any_behind_limit(const value_view& key) const;
  void add_any(const value_view& key);
  void add_prefix(const value_view& key);
  void make_views();

  sort_kinds kinds_ = 0;         // of the keys that were added
  sort_kinds passed_kinds_ = 0;  // of the others
  bool has_views_ = false;
  large_vector<value_view> views_;  // of all keys, or of none
  view_arena arena_;
  large_vector<std::uint64_t> prefixes_;  // of all keys while there are no views
  std::vector<bool> nulls_;               // among these; empty while there are none
  std::uint64_t limit_ = 0;               // a prefix, turned
  std::uint64_t limit_turned_ = 0;
  sort_kinds limit_kind_ = 0;  // of the keys that can be held against it; 0: none
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_SORTING_SORT_COLUMN_HPP_
