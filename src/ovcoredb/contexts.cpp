#include "ovcoredb/contexts.hpp"

#include <algorithm>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "ovcoredb/database_state.hpp"

namespace ovcoredb {

std::atomic<context_state*> context_slots[context_limit];

namespace {

std::mutex opening;  // taken to open and to close a context, never to read

context_state& free_slot(std::size_t& slot) {
  for (slot = 0; slot < context_limit; ++slot) {
    context_state* const state = context_slots[slot].load();
    if (state != nullptr && state->handle.load() != 0) continue;
    if (state != nullptr) return *state;
    context_slots[slot].store(new context_state, std::memory_order_release);  // lives as long as the process
    return *context_slots[slot].load();
  }
  throw std::runtime_error("too many contexts are open");
}

}  // namespace

iterator_state* context_state::open_iterator() {
  if (free_iterators.empty()) {
    if (iterators.size() == iterator_limit) return nullptr;
    free_iterators.reserve(iterators.size() + 1);
    iterators.emplace_back();
    free_iterators.push_back(static_cast<std::uint16_t>(iterators.size() - 1));
  }
  const std::uint16_t place = free_iterators.back();
  free_iterators.pop_back();
  const std::uint64_t slot = handle.load(std::memory_order_relaxed) % context_limit;
  iterators[place].handle = (++iterator_generation * iterator_limit + place) * context_limit + slot;
  return &iterators[place];
}

void context_state::close_iterator(iterator_state& iterator) {
  iterator.handle = 0;
  free_iterators.push_back(static_cast<std::uint16_t>(&iterator - iterators.data()));
}

void context_state::close_all_iterators() {
  if (free_iterators.size() == iterators.size()) return;
  for (iterator_state& each : iterators) {
    if (each.handle != 0) close_iterator(each);
  }
}

context_state& open_context(database_state& database) {
  const std::lock_guard lock(opening);
  database.contexts.reserve(database.contexts.size() + 1);
  std::size_t slot = 0;
  context_state& opened = free_slot(slot);
  opened.database = &database;
  opened.handle.store(++opened.generation * context_limit + slot);
  database.contexts.push_back(&opened);
  return opened;
}

void close_context(std::uint64_t handle) {
  const std::lock_guard lock(opening);
  context_state* const closed = find_context(handle);
  if (closed == nullptr) return;
  closed->handle.store(0);
  closed->close_all_iterators();
  std::erase(closed->database->contexts, closed);
  closed->database = nullptr;
}

}  // namespace ovcoredb
