#include "ovcoredb/interface/iterator_pool.hpp"

#include <algorithm>
#include <cassert>
#include <utility>

namespace ovcoredb {

std::atomic<iterator_state*> iterator_slots[iterator_limit];

namespace {

constexpr std::size_t iterators_of_a_context_limit = 65536;

// So many closed ones are kept for different indexes: joins of several tables open their inner sides in turns.
constexpr std::size_t usual_indexes = 8;

std::atomic<std::size_t> used_slots = 1;

}  // namespace

iterator_state* iterator_pool::open(const ordered_index& index) {
  if (closed_.empty() || !closed_.back()->cursor.walks(index)) put_best_last(index);
  if (closed_.empty()) return nullptr;
  iterator_state* const opened = closed_.back();
  closed_.pop_back();
  is_used_ = true;
  opened->handle.store(++opened->generation * iterator_limit + opened->slot, std::memory_order_relaxed);
  return opened;
}

void iterator_pool::put_best_last(const ordered_index& index) {
  const auto first = closed_.end() - static_cast<std::ptrdiff_t>(std::min(closed_.size(), usual_indexes));
  const auto best = std::find_if(first, closed_.end(), [&](const auto* each) { return each->cursor.walks(index); });
  if (best != closed_.end()) {
    std::swap(*best, closed_.back());
  } else if (closed_.size() < usual_indexes) {
    add();
  }
}

void iterator_pool::close(iterator_state& iterator) {
  assert(iterator.handle.load(std::memory_order_relaxed) != 0);
  iterator.handle.store(0, std::memory_order_relaxed);
  closed_.push_back(&iterator);
}

void iterator_pool::reset() {
  if (!is_used_) return;  // a load resets for object after object
  is_used_ = false;
  for (const auto& each : all_) {
    each->run = {};
    if (each->handle.load(std::memory_order_relaxed) != 0) close(*each);
  }
}

bool iterator_pool::add() {
  if (all_.size() == iterators_of_a_context_limit) return false;
  auto added = std::make_unique<iterator_state>();
  if (all_.size() == all_.capacity()) all_.reserve(2 * all_.size() + 8);
  closed_.reserve(all_.capacity());
  added->owner = &owner_;
  added->slot = used_slots.fetch_add(1);
  if (added->slot >= iterator_limit) {
    used_slots.fetch_sub(1);
    return false;
  }
  iterator_slots[added->slot].store(added.get(), std::memory_order_release);
  closed_.push_back(added.get());
  all_.push_back(std::move(added));
  return true;
}

}  // namespace ovcoredb
