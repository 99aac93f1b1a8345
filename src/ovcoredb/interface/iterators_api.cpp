// The C interface: ranges over indexes.
#include <exception>

#include "ovcoredb/interface/context_state.hpp"
#include "ovcoredb/interface/iterator_state.hpp"
#include "ovcoredb/ovcoredb.h"

namespace ovcoredb {
namespace {

constexpr std::uint32_t known_flags =
    ORV_ITERATOR_FIRST_INCLUSIVE | ORV_ITERATOR_LAST_INCLUSIVE | ORV_ITERATOR_METADATA | ORV_ITERATOR_DESCENDING;

key_range range_of(const std::uint8_t* first_key, const std::uint8_t* last_key, std::uint32_t flags) {
  return {first_key, last_key, (flags & ORV_ITERATOR_FIRST_INCLUSIVE) != 0, (flags & ORV_ITERATOR_LAST_INCLUSIVE) != 0,
          (flags & ORV_ITERATOR_DESCENDING) != 0};
}

// The cursor keeps a key, which takes memory.
std::uint32_t try_to_open(range_cursor& cursor, const ordered_index& index, const key_range& range,
                          range_end& scratch) try {
  return cursor.open(index, range, scratch) ? ORV_OK : ORV_BAD_KEY;
} catch (const std::exception&) {
  return ORV_OUT_OF_MEMORY;
}

std::uint32_t hand_out(iterator_state& iterator, std::uint64_t number, ORV_REFERENCE_VALUE& reference) {
  iterator.cursor.advance();
  reference = {number, 0, iterator.run.place.tag()};
  return ORV_OK;
}

std::uint32_t step(iterator_state& iterator, ORV_REFERENCE_VALUE& reference);

// These two are out of line, which keeps the common step short.
[[gnu::noinline]] std::uint32_t step_to_other_run(iterator_state& iterator, ORV_REFERENCE_VALUE& reference) {
  const std::uint64_t number = iterator.cursor.number();
  iterator.run = iterator.owner->database->objects.run_of(number);
  return hand_out(iterator, number, reference);
}

[[gnu::noinline]] std::uint32_t step_to_next_batch(iterator_state& iterator, ORV_REFERENCE_VALUE& reference) {
  reference = {0, 0, 0};
  return iterator.cursor.find_batch() ? step(iterator, reference) : std::uint32_t{ORV_OK};
}

std::uint32_t step(iterator_state& iterator, ORV_REFERENCE_VALUE& reference) {
  if (!iterator.cursor.has_entry()) return step_to_next_batch(iterator, reference);
  const std::uint64_t number = iterator.cursor.number();
  if (!iterator.run.contains(number)) return step_to_other_run(iterator, reference);
  return hand_out(iterator, number, reference);
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
  iterator_state* const opened = reader->iterators.open(*walked);
  if (opened == nullptr) return ORV_TOO_MANY_ITERATORS;
  const std::uint32_t status =
      try_to_open(opened->cursor, *walked, range_of(first_key, last_key, flags), reader->scratch_end);
  if (status != ORV_OK) {
    reader->iterators.close(*opened);
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
  return step(*found, *reference);
}

uint32_t orv_iterator_skip(uint64_t iterator, uint64_t count, uint64_t* skipped) {
  if (skipped == nullptr) return ORV_BAD_ARGUMENT;
  iterator_state* const found = find_iterator(iterator);
  if (found == nullptr) return ORV_BAD_ITERATOR;
  *skipped = found->cursor.skip(count);
  return ORV_OK;
}

uint32_t orv_iterator_free(uint64_t iterator) {
  iterator_state* const found = find_iterator(iterator);
  if (found == nullptr) return ORV_BAD_ITERATOR;
  found->owner->iterators.close(*found);
  return ORV_OK;
}
