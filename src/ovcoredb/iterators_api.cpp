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
  iterator.run = {};
  iterator.next = index.find(reader.first);
  iterator.stop = descending ? index.begin() : index.end();
  return ORV_OK;
}

// The entries that the next batch will read, from this one on.
void prefetch(const index_entry& from, bool descending) {
  constexpr int entries_of_a_line = 5;
  const int step = descending ? -entries_of_a_line : entries_of_a_line;
  const auto* const bytes = reinterpret_cast<const char*>(&from);
  for (int line = 0; line < 4; ++line) __builtin_prefetch(bytes + line * step * int{sizeof from});
}

std::uint16_t tag_of(iterator_state& iterator, std::uint64_t number) {
  place_directory::run& run = iterator.run;
  if (number - run.first >= run.count) run = iterator.owner->database->objects.run_of(number);
  return run.place.tag();
}

// Takes objects up to `stop`, or, if checked, up to the first that the last key leaves out.
template <bool descending, bool checked>
void fill_batch(iterator_state& iterator) {
  ordered_index::position at = iterator.next;
  const ordered_index::position stop = iterator.stop;
  std::uint64_t* taken = iterator.batch;
  const std::uint64_t* const limit = taken + iterator.batch_size;
  for (; taken != limit && at != stop; ++taken) {
    if (descending) --at;
    if (checked && iterator.index->before(*at, iterator.last) == descending) {
      iterator.stop = at;
      break;
    }
    *taken = at->number() << 16 | tag_of(iterator, at->number());
    if (!descending) ++at;
  }
  iterator.next = at;
  iterator.taken = taken;
  iterator.given = iterator.batch;
  if (at != iterator.stop) prefetch(*at, descending);
}

// False at the end of the range.
bool next_batch(iterator_state& iterator) {
  if (iterator.batch_size > largest_checked_batch && !iterator.stop_is_end && iterator.next != iterator.stop) {
    iterator.stop = iterator.index->find(iterator.last);
    iterator.stop_is_end = true;
  }
  if (iterator.stop_is_end) {
    iterator.descending ? fill_batch<true, false>(iterator) : fill_batch<false, false>(iterator);
  } else {
    iterator.descending ? fill_batch<true, true>(iterator) : fill_batch<false, true>(iterator);
  }
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
  const std::uint64_t number_and_tag = *found->given++;
  *reference = {number_and_tag >> 16, 0, static_cast<std::uint16_t>(number_and_tag)};
  return ORV_OK;
}

uint32_t orv_iterator_free(uint64_t iterator) {
  iterator_state* const found = find_iterator(iterator);
  if (found == nullptr) return ORV_BAD_ITERATOR;
  found->owner->close_iterator(*found);
  return ORV_OK;
}
