// The C interface: ranges over indexes.
#include <exception>

#include "ovcoredb/database/database_state.hpp"
#include "ovcoredb/interface/contexts.hpp"
#include "ovcoredb/ovcoredb.h"

namespace ovcoredb {
namespace {

constexpr std::uint32_t known_flags =
    ORV_ITERATOR_FIRST_INCLUSIVE | ORV_ITERATOR_LAST_INCLUSIVE | ORV_ITERATOR_METADATA | ORV_ITERATOR_DESCENDING;

using position = ordered_index::entries::position;

// Looking for the end of a range costs as much as for its start. A range of no more entries than this, such as that of
// one key, does without: they are held against the last key one by one.
constexpr int few_entries = 3;

// The same place, said so that the entry to be handed out next is in the position's block, if there is one.
position normal(const ordered_index& index, position at, bool descending) {
  if (at.in == nullptr) return at;
  if (descending && at.offset == 0) {
    const auto* const previous = index.previous(*at.in);
    return previous == nullptr ? at : position{previous, previous->count};
  }
  if (!descending && at.offset == at.in->count) {
    const auto* const next = index.next(*at.in);
    return next == nullptr ? at : position{next, 0};
  }
  return at;
}

// A position and the entry that is handed out next from there, for each other.
std::uint32_t entry_at(const iterator_state& iterator, std::uint32_t offset) {
  return iterator.descending() ? offset - 1 : offset;
}
position position_of(const iterator_state& iterator, std::uint32_t entry) {
  return {iterator.in, iterator.descending() ? entry + 1 : entry};
}

position where_it_stands(const iterator_state& iterator) {
  return normal(*iterator.index, position_of(iterator, iterator.at), iterator.descending());
}

// Makes entries of one block, from a position on, ready to be handed out; none if it is the end of the range.
void look_from(iterator_state& iterator, position at) {
  iterator.in = at.in;
  iterator.entries = at.in == nullptr ? nullptr : at.in->entries;
  iterator.at = iterator.limit = entry_at(iterator, at.offset);
  if (at == iterator.stop) return;
  const bool descending = iterator.descending();
  const std::uint32_t block_end = entry_at(iterator, descending ? 0 : at.in->count);
  if (iterator.knows_end) {
    iterator.limit = iterator.stop.in == at.in ? entry_at(iterator, iterator.stop.offset) : block_end;
    return;
  }
  std::uint32_t limit = iterator.at;
  for (int checks = few_entries; checks != 0 && limit != block_end; --checks, limit += iterator.step) {
    if (iterator.index->before(iterator.entries[limit], iterator.last) == descending) {
      iterator.stop = position_of(iterator, limit);
      iterator.knows_end = true;
      break;
    }
  }
  iterator.limit = limit;
}

std::uint32_t start(context_state& reader, iterator_state& iterator, const ordered_index& index, std::uint32_t flags,
                    const std::uint8_t* first_key, const std::uint8_t* last_key) {
  const bool descending = (flags & ORV_ITERATOR_DESCENDING) != 0;
  const bool from_behind = ((flags & ORV_ITERATOR_FIRST_INCLUSIVE) != 0) == descending;
  const bool to_behind = ((flags & ORV_ITERATOR_LAST_INCLUSIVE) != 0) != descending;
  if (!index.read_end(first_key, from_behind, reader.first)) return ORV_BAD_KEY;
  if (!index.read_end(last_key, to_behind, iterator.last)) return ORV_BAD_KEY;
  iterator.step = descending ? ~std::uint32_t{0} : 1;
  iterator.index = &index;
  iterator.stop = descending ? index.begin() : index.end();
  iterator.knows_end = false;
  look_from(iterator, normal(index, index.find(reader.first), descending));
  return ORV_OK;
}

// Keys are kept, which takes memory.
std::uint32_t try_to_start(context_state& reader, iterator_state& iterator, const ordered_index& index,
                           std::uint32_t flags, const std::uint8_t* first_key, const std::uint8_t* last_key) try {
  return start(reader, iterator, index, flags, first_key, last_key);
} catch (const std::exception&) {
  return ORV_OUT_OF_MEMORY;
}

std::uint32_t hand_out(iterator_state& iterator, std::uint64_t number, ORV_REFERENCE_VALUE& reference) {
  iterator.at += iterator.step;
  reference = {number, 0, iterator.run.place.tag()};
  return ORV_OK;
}

std::uint32_t step(iterator_state& iterator, ORV_REFERENCE_VALUE& reference);

// These are out of line, which keeps the common step short, and the end of a range that is known.
[[gnu::noinline]] std::uint32_t step_to_other_run(iterator_state& iterator, ORV_REFERENCE_VALUE& reference) {
  const std::uint64_t number = iterator.entries[iterator.at].number();
  iterator.run = iterator.owner->database->objects.run_of(number);
  return hand_out(iterator, number, reference);
}

[[gnu::noinline]] std::uint32_t step_to_block(iterator_state& iterator, position at, ORV_REFERENCE_VALUE& reference) {
  if (!iterator.knows_end) {
    iterator.stop = normal(*iterator.index, iterator.index->find(iterator.last), iterator.descending());
    iterator.knows_end = true;
  }
  look_from(iterator, at);
  return iterator.at == iterator.limit ? std::uint32_t{ORV_OK} : step(iterator, reference);
}

[[gnu::noinline]] std::uint32_t step_further(iterator_state& iterator, ORV_REFERENCE_VALUE& reference) {
  reference = {0, 0, 0};
  const position at = where_it_stands(iterator);
  return at == iterator.stop ? std::uint32_t{ORV_OK} : step_to_block(iterator, at, reference);
}

std::uint32_t step(iterator_state& iterator, ORV_REFERENCE_VALUE& reference) {
  if (iterator.at == iterator.limit) return step_further(iterator, reference);
  const std::uint64_t number = iterator.entries[iterator.at].number();
  if (number - iterator.run.first >= iterator.run.count) return step_to_other_run(iterator, reference);
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
  iterator_state* const opened = reader->open_iterator();
  if (opened == nullptr) return ORV_TOO_MANY_ITERATORS;
  const std::uint32_t status = try_to_start(*reader, *opened, *walked, flags, first_key, last_key);
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
  return step(*found, *reference);
}

uint32_t orv_iterator_free(uint64_t iterator) {
  iterator_state* const found = find_iterator(iterator);
  if (found == nullptr) return ORV_BAD_ITERATOR;
  found->owner->close_iterator(*found);
  return ORV_OK;
}
