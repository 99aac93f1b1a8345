#include "ovcoredb/index/range_cursor.hpp"

#include <algorithm>

namespace ovcoredb {
namespace {

// Finding the end of a range costs as much as finding its start. A range of one key has few entries: comparing them
// with the last key one by one is cheaper. So many are compared before the end is searched for.
constexpr int few_entries = 3;

}  // namespace

bool range_cursor::open(const ordered_index& index, const key_range& range, range_end& scratch) {
  const bool starts_after_equal = range.includes_first == range.descending;
  const bool ends_after_equal = range.includes_last != range.descending;
  range_end& first = scratch;
  if (!index.read_end(range.first_key, starts_after_equal, first)) return false;
  if (!index.read_end(range.last_key, ends_after_equal, last_)) return false;
  step_ = range.descending ? ~std::uint32_t{0} : 1;
  index_ = &index;
  const entry_position start = in_block_of_next(index.find(first));
  stop_ = range.descending ? index.entries().begin() : index.entries().end();
  knows_end_ = false;
  begin_batch(start);
  return true;
}

std::uint64_t range_cursor::skip(std::uint64_t count) {
  std::uint64_t left = count;
  do {
    const std::uint32_t in_batch = (limit_ - at_) * step_;
    const auto taken = static_cast<std::uint32_t>(std::min<std::uint64_t>(left, in_batch));
    at_ += taken * step_;
    left -= taken;
  } while (left != 0 && find_batch());
  return count - left;
}

bool range_cursor::find_batch_from(entry_position at) {
  if (!knows_end_) {
    stop_ = in_block_of_next(index_->find(last_));
    knows_end_ = true;
  }
  begin_batch(at);
  return has_entry();
}

// The batch is empty at the end of the range.
void range_cursor::begin_batch(entry_position at) {
  in_ = at.in;
  entries_ = at.in == nullptr ? nullptr : at.in->entries;
  at_ = entry_at(at.offset);
  limit_ = at == stop_ ? at_ : batch_limit();
}

std::uint32_t range_cursor::batch_limit() {
  const std::uint32_t block_end = entry_at(descending() ? 0 : in_->count);
  if (!knows_end_) return check_few(block_end);
  return stop_.in == in_ ? entry_at(stop_.offset) : block_end;
}

// Compares the next few entries with the end of the range, and remembers the end if it is among them. Returns the limit
// of those that belong to the range.
std::uint32_t range_cursor::check_few(std::uint32_t block_end) {
  std::uint32_t limit = at_;
  for (int checks = few_entries; checks != 0 && limit != block_end; --checks, limit += step_) {
    if (index_->before(entries_[limit], last_) == descending()) {
      stop_ = position_of(limit);
      knows_end_ = true;
      break;
    }
  }
  return limit;
}

}  // namespace ovcoredb
