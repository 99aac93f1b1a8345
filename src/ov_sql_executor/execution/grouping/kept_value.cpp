#include "ov_sql_executor/execution/grouping/kept_value.hpp"

#include <algorithm>
#include <bit>
#include <concepts>
#include <new>
#include <type_traits>
#include <utility>

namespace ov::sql_executor {

namespace {

constexpr std::size_t smallest_capacity = 16;

// The bytes behind a room.
auto* bytes_of(auto* room) { return reinterpret_cast<std::uint8_t*>(room + 1); }

}  // namespace

value_view kept_value::view() const {
  return std::visit(
      []<class Held>(const Held& held) -> value_view {
        if constexpr (std::same_as<Held, text_room*>) {
          return text_view{{bytes_of(held), held->size}};
        } else if constexpr (std::same_as<Held, value*>) {
          return view_of(*held);
        } else {
          return held;
        }
      },
      held_);
}

void kept_value::prefetch() const {
  if (text_room* const* room = std::get_if<text_room*>(&held_)) prefetch_memory(*room);
}

void kept_value::become(const value_view& other, kept_memory& elsewhere) {
  visit_view(
      [&]<class View>(const View& seen) {
        if constexpr (std::is_constructible_v<decltype(held_), std::in_place_type_t<View>, const View&>) {
          held_ = seen;
        } else if constexpr (std::same_as<View, text_view>) {
          become_text(seen, elsewhere);
        } else if (value* const* place = std::get_if<value*>(&held_)) {
          **place = to_value(other);
        } else {
          held_ = &elsewhere.values.emplace_front(to_value(other));
        }
      },
      other);
}

// Rooms at least double, so that those that were given up take little more than the last one.
void kept_value::become_text(const text_view& text, kept_memory& elsewhere) {
  const std::size_t size = text.bytes.size();
  text_room* const* held = std::get_if<text_room*>(&held_);
  text_room* room = held != nullptr ? *held : nullptr;
  if (room == nullptr || room->capacity < size) {
    const std::size_t capacity = std::max(smallest_capacity, std::bit_ceil(size));
    room = new (elsewhere.texts.allocate(sizeof(text_room) + capacity, alignof(text_room))) text_room{capacity, 0};
    held_ = room;
  }
  std::ranges::copy(text.bytes, bytes_of(room));
  room->size = size;
}

}  // namespace ov::sql_executor
