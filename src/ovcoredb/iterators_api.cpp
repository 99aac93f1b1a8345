// The C interface: ranges over indexes.
#include <algorithm>
#include <exception>

#include "ovcoredb/contexts.hpp"
#include "ovcoredb/database_state.hpp"
#include "ovcoredb/ovcoredb.h"

namespace ovcoredb {
namespace {

constexpr std::uint32_t known_flags =
    ORV_ITERATOR_FIRST_INCLUSIVE | ORV_ITERATOR_LAST_INCLUSIVE | ORV_ITERATOR_METADATA | ORV_ITERATOR_DESCENDING;

// Looking for the end of a range costs as much as for its start. A range that is left after a few steps, such as that
// of one key, does without: its entries are held against the last key one by one.
constexpr std::uint32_t largest_checked_batch = 2;

std::uint32_t start(context_state& reader, iterator_state& iterator, const ordered_index& index, std::uint32_t flags,
                    const std::uint8_t* first_key, const std::uint8_t* last_key) {
  const bool descending = (flags & ORV_ITERATOR_DESCENDING) != 0;
  const bool from_behind = ((flags & ORV_ITERATOR_FIRST_INCLUSIVE) != 0) == descending;
  const bool to_behind = ((flags & ORV_ITERATOR_LAST_INCLUSIVE) != 0) != descending;
  if (!read_key(first_key, index.parts(), from_behind, reader.first)) return ORV_BAD_KEY;
  if (!read_key(last_key, index.parts(), to_behind, iterator.last)) return ORV_BAD_KEY;
  iterator.given = iterator.taken = iterator.batch;
  iterator.batch_size = 1;
  iterator.descending = descending;
  iterator.stop_is_end = false;
  iterator.index = &index;
  iterator.next = index.find(reader.first);
  iterator.stop = descending ? index.begin() : index.end();
  return ORV_OK;
}

// Takes objects up to `stop`, or up to the first that the last key leaves out.
void fill_batch(iterator_state& iterator) {
  ordered_index::position at = iterator.next;
  std::uint32_t taken = 0;
  for (; taken < iterator.batch_size && at != iterator.stop; ++taken) {
    if (iterator.descending) --at;
    if (!iterator.stop_is_end && iterator.index->before(*at, iterator.last) == iterator.descending) {
      iterator.stop = at;
      break;
    }
    iterator.batch[taken] = at->tagged;
    if (!iterator.descending) ++at;
  }
  iterator.next = at;
  iterator.taken = iterator.batch + taken;
  iterator.given = iterator.batch;
}

// False at the end of the range.
bool next_batch(iterator_state& iterator) {
  if (iterator.batch_size > largest_checked_batch && !iterator.stop_is_end && iterator.next != iterator.stop) {
    iterator.stop = iterator.index->find(iterator.last);
    iterator.stop_is_end = true;
  }
  fill_batch(iterator);
  iterator.batch_size = std::min(iterator.batch_size * 2, iterator_state::largest_batch);
  return iterator.taken != iterator.batch;
}

// Out of line, which keeps the common step short.
[[gnu::noinline]] std::uint32_t step_to_next_batch(iterator_state& iterator, ORV_REFERENCE_VALUE& reference) {
  reference = {0, 0, 0};
  return next_batch(iterator) ? orv_iterator_next(iterator.handle, &reference) : std::uint32_t{ORV_OK};
}

}  // namespace
}  // namespace ovcoredb

using namespace ovcoredb;

uint32_t orv_context_create_iterator(uint64_t context, uint64_t index, uint32_t flags, const uint8_t* first_key,
                                     const uint8_t* last_key, uint64_t* iterator) try {
  if (first_key == nullptr || last_key == nullptr || iterator == nullptr) return ORV_BAD_ARGUMENT;
  if ((flags & ~known_flags) != 0) return ORV_BAD_ARGUMENT;
  context_state* const reader = find_context(context);
  if (reader == nullptr) return ORV_BAD_CONTEXT;
  const ordered_index* const walked = reader->database->find_index(index);
  if (walked == nullptr) return ORV_BAD_INDEX;
  iterator_state* const opened = reader->open_iterator();
  if (opened == nullptr) return ORV_TOO_MANY_ITERATORS;
  const std::uint32_t status = start(*reader, *opened, *walked, flags, first_key, last_key);
  if (status != ORV_OK) {
    reader->close_iterator(*opened);
    return status;
  }
  *iterator = opened->handle;
  return ORV_OK;
} catch (const std::exception&) {
  return ORV_OUT_OF_MEMORY;
}

uint32_t orv_iterator_next(uint64_t iterator, ORV_REFERENCE_VALUE* reference) {
  if (reference == nullptr) return ORV_BAD_ARGUMENT;
  iterator_state* const found = find_iterator(iterator);
  if (found == nullptr) return ORV_BAD_ITERATOR;
  if (found->given == found->taken) return step_to_next_batch(*found, *reference);
  const std::uint64_t tagged = *found->given++;
  *reference = {index_entry::number_of(tagged), 0, index_entry::tag_of(tagged)};
  return ORV_OK;
}

uint32_t orv_iterator_free(uint64_t iterator) {
  iterator_state* const found = find_iterator(iterator);
  if (found == nullptr) return ORV_BAD_ITERATOR;
  found->owner->close_iterator(*found);
  return ORV_OK;
}
