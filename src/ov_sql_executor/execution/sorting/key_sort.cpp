#include "ov_sql_executor/execution/sorting/key_sort.hpp"

#include <algorithm>
#include <boost/sort/pdqsort/pdqsort.hpp>
#include <cassert>
#include <utility>

namespace ov::sql_executor {

namespace {

// Shorter runs are sorted by comparing whole keys, which costs less than reading prefixes.
constexpr std::ptrdiff_t short_run = 12;

// Of an input that is so many times as long, the first rows are sorted before the others: often nobody asks for more.
// Finding them costs little more than one pass over the prefixes.
constexpr std::ptrdiff_t max_first_rows = 1000;
constexpr std::ptrdiff_t min_length_ratio = 4;

// How many rows next_rows sorts at a time, unless fewer are wanted.
constexpr std::ptrdiff_t max_batch = 250;

// Keys that are equal in so many words are sorted by comparing them whole.
constexpr std::size_t max_words = 8;

bool has_less_prefix(const key_sort::entry& left, const key_sort::entry& right) { return left.prefix < right.prefix; }
bool was_added_before(const key_sort::entry& left, const key_sort::entry& right) { return left.row < right.row; }
bool has_same_prefix(const key_sort::entry& left, const key_sort::entry& right) { return left.prefix == right.prefix; }

}  // namespace

key_sort::key_sort(const std::vector<bool>& ascending, std::uint64_t wanted)
    : ascending_(ascending),
      first_rows_(static_cast<std::ptrdiff_t>(std::min<std::uint64_t>(wanted, max_first_rows))),
      columns_(ascending.size()) {}

void key_sort::start(std::size_t count) {
  assert(has_whole_rows(count));
  rows_.resize(count);
  for (std::size_t i = 0; i < count; ++i) rows_[i].row = i;
  returned_ = sorted_ = rows_.begin();
  unsorted_.clear();
  const run all{rows_.begin(), rows_.end(), 0};
  if (is_sortable()) {
    // So that next_rows does not allocate: at most four runs wait for each word, and none is empty.
    unsorted_.reserve(std::min(count, 4 * max_words * ascending_.size() + 1));
    push_run(all);
  } else {
    sort_by_comparison(all);
  }
}

std::vector<std::size_t> key_sort::keep_first(std::size_t wanted, std::size_t count) {
  assert(is_sortable() && wanted > 0);
  start(count);
  std::vector<std::size_t> kept;
  for (iterator each = rows_.begin(); kept.size() < wanted && each != rows_.end(); ++each) {
    while (each == sorted_) sort_next_run();
    kept.push_back(each->row);
  }
  for (sort_column& column : columns_) column.keep(kept);
  if (!columns_.empty() && kept.size() == wanted) columns_.front().set_limit(wanted - 1, xor_mask(0));
  return kept;
}

std::span<const key_sort::entry> key_sort::next_rows() {
  const std::ptrdiff_t batch = std::clamp(first_rows_, std::ptrdiff_t{1}, max_batch);
  while (sorted_ - returned_ < batch && !unsorted_.empty()) sort_next_run();
  if (unsorted_.empty()) columns_.clear();  // not needed any more
  return {std::exchange(returned_, sorted_), sorted_};
}

bool key_sort::is_sortable() const {
  return std::all_of(columns_.begin(), columns_.end(), [](const sort_column& each) { return each.is_sortable(); });
}

bool key_sort::has_whole_rows(std::size_t count) const {
  return next_column_ == 0 &&
         std::ranges::all_of(columns_, [count](const sort_column& each) { return each.size() == count; });
}

void key_sort::push_run(const run& rows) {
  if (rows.begin != rows.end) unsorted_.push_back(rows);
}

// Sorts the first of the unsorted runs, or does one step towards it and pushes the runs that it has become.
void key_sort::sort_next_run() {
  const run next = unsorted_.back();
  unsorted_.pop_back();
  if (next.key == ascending_.size()) {
    boost::sort::pdqsort_branchless(next.begin, next.end, was_added_before);
    sorted_ = next.end;
  } else if (next.end - next.begin < short_run || next.word == max_words) {
    sort_by_comparison(next);
  } else if (next.prefixes == prefix_state::unread) {
    read_prefixes(next);
  } else if (next.prefixes == prefix_state::unsorted) {
    sort_prefixes(next);
  } else {
    sort_equals(next);
  }
}

// Separates the NULLs first: they sort below all values, which no prefix can express.
void key_sort::read_prefixes(const run& rows) {
  const sort_column& column = columns_[rows.key];
  const bool nulls_first = ascending_[rows.key];
  iterator middle = nulls_first ? rows.begin : rows.end;
  if (column.has_nulls()) {
    middle = std::partition(rows.begin, rows.end,
                            [&](const entry& each) { return column.is_null(each.row) == nulls_first; });
  }
  const run nulls{nulls_first ? rows.begin : middle, nulls_first ? middle : rows.end, rows.key + 1};
  const run values{nulls_first ? middle : rows.begin, nulls_first ? rows.end : middle, rows.key,
                   prefix_state::unsorted};
  column.read_prefixes({values.begin, values.end}, xor_mask(rows.key));
  push_run(nulls_first ? values : nulls);
  push_run(nulls_first ? nulls : values);
}

void key_sort::sort_prefixes(const run& rows) {
  const std::ptrdiff_t before = rows.begin - rows_.begin();
  iterator middle = rows.end;
  if (before < first_rows_ && rows.end - rows.begin > min_length_ratio * first_rows_) {
    middle = rows_.begin() + first_rows_;
    std::partial_sort(rows.begin, middle, rows.end, has_less_prefix);
    const entry& last = *(middle - 1);
    middle = std::partition(middle, rows.end, [last](const entry& each) { return has_same_prefix(each, last); });
  } else {
    boost::sort::pdqsort_branchless(rows.begin, rows.end, has_less_prefix);
  }
  push_run({middle, rows.end, rows.key, prefix_state::unsorted, rows.word});
  push_run({rows.begin, middle, rows.key, prefix_state::sorted, rows.word});
}

// Moves sorted_ over rows with prefixes of their own, up to the first rows with equal ones, and pushes these.
void key_sort::sort_equals(const run& rows) {
  sorted_ = std::adjacent_find(rows.begin, rows.end, has_same_prefix);
  if (sorted_ == rows.end) return;
  const run equals{
      sorted_, std::find_if(sorted_, rows.end, [this](const entry& each) { return !has_same_prefix(each, *sorted_); }),
      rows.key, prefix_state::sorted, rows.word};
  push_run({equals.end, rows.end, rows.key, prefix_state::sorted, rows.word});
  if (columns_[rows.key].has_exact_prefixes() || are_all_equal(equals)) {
    push_run({equals.begin, equals.end, rows.key + 1});
  } else if (equals.end - equals.begin < short_run) {
    sort_by_comparison(equals);
  } else {
    sort_by_next_word(equals);
  }
}

// Separates the rows whose keys end with the word that is equal: they sort below the others. They are few, and are
// sorted by comparison.
void key_sort::sort_by_next_word(const run& rows) {
  const sort_column& column = columns_[rows.key];
  const bool ends_first = ascending_[rows.key];
  const iterator middle = std::partition(rows.begin, rows.end, [&](const entry& each) {
    return column.ends_with_word(each.row, rows.word) == ends_first;
  });
  const run ends{ends_first ? rows.begin : middle, ends_first ? middle : rows.end, rows.key, prefix_state::unread,
                 max_words};
  const run others{ends_first ? middle : rows.begin, ends_first ? rows.end : middle, rows.key, prefix_state::unsorted,
                   rows.word + 1};
  if (others.word != max_words) {
    column.read_prefixes({others.begin, others.end}, xor_mask(rows.key), others.word);
  }
  push_run(ends_first ? others : ends);
  push_run(ends_first ? ends : others);
}

bool key_sort::are_all_equal(const run& rows) const {
  return std::all_of(rows.begin + 1, rows.end, [this, &rows](const entry& each) {
    return columns_[rows.key].order(rows.begin->row, each.row) == 0;
  });
}

void key_sort::sort_by_comparison(const run& rows) {
  boost::sort::pdqsort(rows.begin, rows.end, [this, &rows](const entry& left, const entry& right) {
    return is_before(left, right, rows.key);
  });
  sorted_ = rows.end;
}

bool key_sort::is_before(const entry& left, const entry& right, std::size_t key) const {
  if (left.row == right.row) return false;  // pdqsort asks this, too, and sort_order would throw for a NaN
  for (; key < ascending_.size(); ++key) {
    const std::strong_ordering order = columns_[key].order(left.row, right.row);
    if (order != 0) return ascending_[key] ? order < 0 : order > 0;
  }
  return was_added_before(left, right);
}

}  // namespace ov::sql_executor
