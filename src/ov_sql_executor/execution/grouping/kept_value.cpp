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

// Returns the bytes after a text_buffer.
auto* bytes_of(auto* buffer) { return reinterpret_cast<std::uint8_t*>(buffer + 1); }

}  // namespace

value_view kept_value::view() const {
  return std::visit(
      []<class Held>(const Held& held) -> value_view {
        if constexpr (std::same_as<Held, text_buffer*>) {
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
  if (text_buffer* const* buffer = std::get_if<text_buffer*>(&held_)) prefetch_memory(*buffer);
}

void kept_value::assign(const value_view& other, kept_memory& memory) {
  visit_view(
      [&]<class View>(const View& seen) {
        if constexpr (std::is_constructible_v<decltype(held_), std::in_place_type_t<View>, const View&>) {
          held_ = seen;
        } else if constexpr (std::same_as<View, text_view>) {
          assign_text(seen, memory);
        } else if (value* const* place = std::get_if<value*>(&held_)) {
          **place = to_value(other);
        } else {
          held_ = &memory.values.emplace_front(to_value(other));
        }
      },
      other);
}

// Doubles the capacity at least, so that all outgrown buffers together are no larger than the last one.
void kept_value::assign_text(const text_view& text, kept_memory& memory) {
  const std::size_t size = text.bytes.size();
  text_buffer* const* held = std::get_if<text_buffer*>(&held_);
  text_buffer* buffer = held != nullptr ? *held : nullptr;
  if (buffer == nullptr || buffer->capacity < size) {
    const std::size_t capacity = std::max(smallest_capacity, std::bit_ceil(size));
    buffer = new (memory.texts.allocate(sizeof(text_buffer) + capacity, alignof(text_buffer))) text_buffer{capacity, 0};
    held_ = buffer;
  }
  std::ranges::copy(text.bytes, bytes_of(buffer));
  buffer->size = size;
}

}  // namespace ov::sql_executor
