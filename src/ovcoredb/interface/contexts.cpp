#include "ovcoredb/interface/contexts.hpp"

#include <algorithm>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "ovcoredb/database/database_state.hpp"

namespace ovcoredb {

std::atomic<context_state*> context_slots[context_limit];
std::atomic<iterator_state*> iterator_slots[iterator_limit];

namespace {

std::atomic<std::size_t> used_iterator_slots = 1;
std::mutex opening;  // taken to open and to close a context, never to read

context_state& free_slot(std::size_t& slot) {
  for (slot = 1; slot < context_limit; ++slot) {
    context_state* const state = context_slots[slot].load();
    if (state != nullptr && state->handle.load() != 0) continue;
    if (state != nullptr) return *state;
    context_slots[slot].store(new context_state, std::memory_order_release);  // lives as long as the process
    return *context_slots[slot].load();
  }
  throw std::runtime_error("too many contexts are open");
}

}  // namespace

bool context_state::add_iterator() {
  if (iterators.size() == iterators_of_a_context_limit) return false;
  auto added = std::make_unique<iterator_state>();
  if (iterators.size() == iterators.capacity()) iterators.reserve(2 * iterators.size() + 8);
  free_iterators.reserve(iterators.capacity());
  added->owner = this;
  added->slot = used_iterator_slots.fetch_add(1);
  if (added->slot >= iterator_limit) {
    used_iterator_slots.fetch_sub(1);
    return false;
  }
  iterator_slots[added->slot].store(added.get(), std::memory_order_release);
  free_iterators.push_back(added.get());
  iterators.push_back(std::move(added));
  return true;
}

iterator_state* context_state::open_iterator() {
  if (free_iterators.empty() && !add_iterator()) return nullptr;
  iterator_state* const opened = free_iterators.back();
  free_iterators.pop_back();
  has_read = true;
  opened->handle.store(++opened->generation * iterator_limit + opened->slot, std::memory_order_relaxed);
  return opened;
}

void context_state::close_iterator(iterator_state& iterator) {
  iterator.handle.store(0, std::memory_order_relaxed);
  free_iterators.push_back(&iterator);
}

void context_state::before_write() {
  if (!has_read) return;  // a load writes object after object
  has_read = false;
  runs.fill({});
  for (const auto& each : iterators) {
    each->run = {};
    if (each->handle.load(std::memory_order_relaxed) != 0) close_iterator(*each);
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
  closed->before_write();
  std::erase(closed->database->contexts, closed);
  closed->database = nullptr;
}

}  // namespace ovcoredb
