#include "ov_sql_executor/execution/sorting/key_sort.hpp"

#include <algorithm>
#include <boost/sort/pdqsort/pdqsort.hpp>
#include <utility>

namespace ov::sql_executor {

namespace {

// Below this, comparing whole keys costs less than preparing prefixes.
constexpr std::ptrdiff_t short_run = 12;

// So many rows at most of a longer input are sorted first, since often nobody asks for more. Finding them costs little
// more than one pass over the prefixes.
constexpr std::ptrdiff_t most_first_rows = 1000;
constexpr std::ptrdiff_t much_longer = 4;  // times as long as these

// So many rows are handed out at a time, if so many are wanted.
constexpr std::ptrdiff_t most_at_once = 250;

// Texts that have more than this in common are compared.
constexpr std::size_t most_words = 8;

bool has_less_prefix(const key_sort::entry& left, const key_sort::entry& right) { return left.prefix < right.prefix; }
bool came_before(const key_sort::entry& left, const key_sort::entry& right) { return left.row < right.row; }
bool has_same_prefix(const key_sort::entry& left, const key_sort::entry& right) { return left.prefix == right.prefix; }

}  // namespace

key_sort::key_sort(const std::vector<bool>& ascending, std::uint64_t wanted)
    : ascending_(ascending),
      first_rows_(static_cast<std::ptrdiff_t>(std::min<std::uint64_t>(wanted, most_first_rows))),
      columns_(ascending.size()) {}

void key_sort::start(std::size_t count) {
  rows_.resize(count);
  for (std::size_t i = 0; i < count; ++i) rows_[i].row = i;
  given_ = sorted_ = rows_.begin();
  unsorted_.clear();
  const run all{rows_.begin(), rows_.end(), 0};
  if (is_sortable()) {
    unsorted_.reserve(
        std::min(count, 4 * most_words * ascending_.size() + 1));  // four for each word, none of them empty
    put_off(all);
  } else {
    sort_by_comparison(all);
  }
}

std::vector<std::size_t> key_sort::keep_first(std::size_t wanted, std::size_t count) {
  start(count);
  std::vector<std::size_t> kept;
  for (iterator each = rows_.begin(); kept.size() < wanted && each != rows_.end(); ++each) {
    while (each == sorted_) sort_further();
    kept.push_back(each->row);
  }
  for (sort_column& column : columns_) column.keep(kept);
  if (!columns_.empty() && kept.size() == wanted) columns_.front().set_limit(wanted - 1, turned(0));
  return kept;
}

std::span<const key_sort::entry> key_sort::next_rows() {
  const std::ptrdiff_t at_once = std::clamp(first_rows_, std::ptrdiff_t{1}, most_at_once);
  while (sorted_ - given_ < at_once && !unsorted_.empty()) sort_further();
  if (unsorted_.empty()) columns_.clear();  // the keys have done their work
  return {std::exchange(given_, sorted_), sorted_};
}

bool key_sort::is_sortable() const {
  return std::all_of(columns_.begin(), columns_.end(), [](const sort_column& each) { return each.is_sortable(); });
}

void key_sort::put_off(const run& rows) {
  if (rows.begin != rows.end) unsorted_.push_back(rows);
}

// Sorts the beginning of what is left, or divides it into runs that come nearer to being sorted.
void key_sort::sort_further() {
  const run next = unsorted_.back();
  unsorted_.pop_back();
  if (next.key == ascending_.size()) {
    boost::sort::pdqsort_branchless(next.begin, next.end, came_before);
    sorted_ = next.end;
  } else if (next.end - next.begin < short_run || next.word == most_words) {
    sort_by_comparison(next);
  } else if (next.done == step::unread) {
    read(next);
  } else if (next.done == step::unsorted) {
    sort_prefixes(next);
  } else {
    sort_equals(next);
  }
}

// NULL is the lowest key, which a prefix cannot say.
void key_sort::read(const run& rows) {
  const sort_column& column = columns_[rows.key];
  const bool nulls_first = ascending_[rows.key];
  iterator middle = nulls_first ? rows.begin : rows.end;
  if (column.has_nulls()) {
    middle = std::partition(rows.begin, rows.end,
                            [&](const entry& each) { return column.is_null(each.row) == nulls_first; });
  }
  const run nulls{nulls_first ? rows.begin : middle, nulls_first ? middle : rows.end, rows.key + 1};
  const run values{nulls_first ? middle : rows.begin, nulls_first ? rows.end : middle, rows.key, step::unsorted};
  column.read_prefixes({values.begin, values.end}, turned(rows.key));
  put_off(nulls_first ? values : nulls);
  put_off(nulls_first ? nulls : values);
}

void key_sort::sort_prefixes(const run& rows) {
  const std::ptrdiff_t before = rows.begin - rows_.begin();
  iterator middle = rows.end;
  if (before < first_rows_ && rows.end - rows.begin > much_longer * first_rows_) {
    middle = rows_.begin() + first_rows_;
    std::partial_sort(rows.begin, middle, rows.end, has_less_prefix);
    const entry& last = *(middle - 1);
    middle = std::partition(middle, rows.end, [last](const entry& each) { return has_same_prefix(each, last); });
  } else {
    boost::sort::pdqsort_branchless(rows.begin, rows.end, has_less_prefix);
  }
  put_off({middle, rows.end, rows.key, step::unsorted, rows.word});
  put_off({rows.begin, middle, rows.key, step::sorted, rows.word});
}

// Passes the rows whose prefixes differ, up to the first that have the same one.
void key_sort::sort_equals(const run& rows) {
  sorted_ = std::adjacent_find(rows.begin, rows.end, has_same_prefix);
  if (sorted_ == rows.end) return;
  const run equals{
      sorted_, std::find_if(sorted_, rows.end, [this](const entry& each) { return !has_same_prefix(each, *sorted_); }),
      rows.key, step::sorted, rows.word};
  put_off({equals.end, rows.end, rows.key, step::sorted, rows.word});
  if (columns_[rows.key].is_told_by_prefixes() || are_all_equal(equals)) {
    put_off({equals.begin, equals.end, rows.key + 1});
  } else if (equals.end - equals.begin < short_run) {
    sort_by_comparison(equals);
  } else {
    sort_by_next_word(equals);
  }
}

// Rows whose keys end with the word that is equal are few, and below the others.
void key_sort::sort_by_next_word(const run& rows) {
  const sort_column& column = columns_[rows.key];
  const bool ends_first = ascending_[rows.key];
  const iterator middle = std::partition(rows.begin, rows.end, [&](const entry& each) {
    return column.ends_with_word(each.row, rows.word) == ends_first;
  });
  const run ends{ends_first ? rows.begin : middle, ends_first ? middle : rows.end, rows.key, step::unread, most_words};
  const run others{ends_first ? middle : rows.begin, ends_first ? rows.end : middle, rows.key, step::unsorted,
                   rows.word + 1};
  if (others.word != most_words) {
    column.read_prefixes({others.begin, others.end}, turned(rows.key), others.word);
  }
  put_off(ends_first ? others : ends);
  put_off(ends_first ? ends : others);
}

bool key_sort::are_all_equal(const run& rows) const {
  return std::all_of(rows.begin + 1, rows.end, [this, &rows](const entry& each) {
    return columns_[rows.key].order(rows.begin->row, each.row) == 0;
  });
}

void key_sort::sort_by_comparison(const run& rows) {
  boost::sort::pdqsort(rows.begin, rows.end, [this, &rows](const entry& left, const entry& right) {
    return goes_before(left, right, rows.key);
  });
  sorted_ = rows.end;
}

bool key_sort::goes_before(const entry& left, const entry& right, std::size_t key) const {
  if (left.row == right.row) return false;  // sorting asks so, too, and a NaN cannot answer
  for (; key < ascending_.size(); ++key) {
    const std::strong_ordering order = columns_[key].order(left.row, right.row);
    if (order != 0) return ascending_[key] ? order < 0 : order > 0;
  }
  return came_before(left, right);
}

}  // namespace ov::sql_executor
