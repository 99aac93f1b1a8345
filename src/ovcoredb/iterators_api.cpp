// The C interface: ranges over indexes.
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
constexpr unsigned steps_before_end_is_sought = 4;

std::uint32_t start(context_state& reader, iterator_state& iterator, const ordered_index& index, std::uint32_t flags,
                    const std::uint8_t* first_key, const std::uint8_t* last_key) {
  const bool descending = (flags & ORV_ITERATOR_DESCENDING) != 0;
  if (!read_key(first_key, index.parts(), reader.first)) return ORV_BAD_KEY;
  if (!read_key(last_key, index.parts(), iterator.last)) return ORV_BAD_KEY;
  reader.first.behind_equal = ((flags & ORV_ITERATOR_FIRST_INCLUSIVE) != 0) == descending;
  iterator.last.behind_equal = ((flags & ORV_ITERATOR_LAST_INCLUSIVE) != 0) != descending;
  iterator.index = &index;
  iterator.descending = descending;
  iterator.next = index.find(reader.first);
  iterator.stop = descending ? index.begin() : index.end();
  iterator.unchecked_after = steps_before_end_is_sought;
  return ORV_OK;
}

// Called with an entry that lies between start and stop: whether it belongs to the range.
bool check_end(iterator_state& iterator, const index_entry& entry) {
  if (iterator.index->before(entry, iterator.last) == iterator.descending) {
    iterator.stop = iterator.next;
    iterator.unchecked_after = 0;
    return false;
  }
  if (--iterator.unchecked_after == 0) iterator.stop = iterator.index->find(iterator.last);
  return true;
}

bool step(iterator_state& iterator, ORV_REFERENCE_VALUE& out) {
  if (iterator.next == iterator.stop) return false;
  ordered_index::position at = iterator.next;
  if (iterator.descending) --at;
  const index_entry entry = *at;
  if (iterator.unchecked_after != 0 && !check_end(iterator, entry)) return false;
  if (!iterator.descending) ++at;
  iterator.next = at;
  out = {entry.number(), 0, entry.tag()};
  return true;
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
  iterator_state* const found = find_iterator(iterator).iterator;
  if (found == nullptr) return ORV_BAD_ITERATOR;
  if (!step(*found, *reference)) *reference = {0, 0, 0};
  return ORV_OK;
}

uint32_t orv_iterator_free(uint64_t iterator) {
  const found_iterator found = find_iterator(iterator);
  if (found.iterator == nullptr) return ORV_BAD_ITERATOR;
  found.context->close_iterator(*found.iterator);
  return ORV_OK;
}
