#include "ovcoredb/interface/context_state.hpp"

#include <algorithm>
#include <mutex>
#include <stdexcept>

namespace ovcoredb {

std::atomic<context_state*> context_slots[context_limit];

namespace {

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

context_state& open_context(database_state& database) {
  const std::lock_guard lock(opening);
  database.listeners.reserve(database.listeners.size() + 1);
  std::size_t slot = 0;
  context_state& opened = free_slot(slot);
  opened.database = &database;
  opened.handle.store(++opened.generation * context_limit + slot);
  database.listeners.push_back(&opened);
  return opened;
}

void close_context(std::uint64_t handle) {
  const std::lock_guard lock(opening);
  context_state* const closed = find_context(handle);
  if (closed == nullptr) return;
  closed->handle.store(0);
  closed->before_write();
  std::erase(closed->database->listeners, closed);
  closed->database = nullptr;
}

context::context(const database& database) : handle_(open_context(*database.state_).handle) {}
context::~context() { close_context(handle_); }

}  // namespace ovcoredb
