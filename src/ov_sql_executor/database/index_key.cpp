#include "ov_sql_executor/database/index_key.hpp"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <cassert>
#include <concepts>
#include <cstring>

#include "ov_sql_executor/errors/db_exception.hpp"

namespace db_util {

namespace {

using bytes_view = std::span<const std::uint8_t>;
using operator_library::Decimal;

constexpr std::uint8_t lowest_mark = 0x60;
constexpr std::uint8_t number_mark = 0x28;
constexpr std::uint8_t bytes_mark = 0x20;
constexpr std::uint8_t bytes_end = 0x80;
constexpr std::array<std::uint8_t, 8> key_end = {0xC0};
constexpr std::size_t chunk_size = 31;
constexpr std::size_t number_size = 1 + sizeof(std::uint64_t);
constexpr std::uint64_t sign_bit = std::uint64_t{1} << 63;

std::uint64_t number_of(bool bound) { return bound ? 1 : 0; }
std::uint64_t number_of(std::uint64_t bound) { return bound; }
std::uint64_t number_of(std::int64_t bound) { return key_number(bound); }
std::uint64_t number_of(key_object bound) { return bound.number; }

std::uint64_t number_of(Decimal bound) {
  const auto raw = static_cast<std::uint64_t>(bound.raw);
  const std::uint64_t magnitude = bound.raw < 0 ? 0 - raw : raw;
  const std::uint64_t millionths = magnitude % 1'000'000;
  const std::uint64_t packed = (magnitude / 1'000'000 << 7 | millionths / 10'000) << 14 | millionths % 10'000;
  return (bound.raw < 0 ? 0 - packed : packed) ^ sign_bit;
}

template <class T>
concept number_bound = requires(T bound) {
  { number_of(bound) } -> std::same_as<std::uint64_t>;
};

// Counts what n bytes take in chunks: up to `first` in the first one, whose length byte the caller counts, and up to 31
// in each of the others.
std::size_t chunked_size(std::size_t n, std::size_t first) {
  const std::size_t rest = n - std::min(n, first);
  return n + (rest + chunk_size - 1) / chunk_size;
}

std::uint8_t* write_bytes(std::uint8_t* out, bytes_view bytes) { return std::copy(bytes.begin(), bytes.end(), out); }

std::uint8_t* write_chunks(std::uint8_t* out, bytes_view bytes, std::size_t first) {
  const std::size_t head = std::min(bytes.size(), first);
  out = write_bytes(out, bytes.first(head));
  for (bytes_view rest = bytes.subspan(head); !rest.empty();) {
    const std::size_t count = std::min(rest.size(), chunk_size);
    *out++ = static_cast<std::uint8_t>(count);
    out = write_bytes(out, rest.first(count));
    rest = rest.subspan(count);
  }
  *out++ = bytes_end;
  return out;
}

std::size_t component_size(const key_bound& bound) {
  return std::visit(
      []<class Bound>(const Bound& held) -> std::size_t {
        if constexpr (std::same_as<Bound, lowest_marker>) {
          return 1;
        } else if constexpr (std::same_as<Bound, key_text>) {
          return 1 + chunked_size(held.payload.size(), chunk_size) + 1;
        } else if constexpr (std::same_as<Bound, key_binary>) {
          return held.highest ? 3 : 2 + chunked_size(held.bytes.size(), chunk_size - 1) + 1;
        } else {
          return number_size;
        }
      },
      bound);
}

void write(std::uint8_t* out, lowest_marker) { *out = lowest_mark; }

void write_number(std::uint8_t* out, std::uint64_t number) {
  *out = number_mark;
  boost::endian::store_big_u64(out + 1, number);
}

void write(std::uint8_t* out, const number_bound auto& bound) { write_number(out, number_of(bound)); }

void write(std::uint8_t* out, const key_text& bound) {
  *out++ = static_cast<std::uint8_t>(bytes_mark | std::min(bound.payload.size(), chunk_size));
  write_chunks(out, bound.payload, chunk_size);
}

void write(std::uint8_t* out, const key_binary& bound) {
  if (bound.highest) {
    write_bytes(out, std::array<std::uint8_t, 3>{bytes_mark | 1, 1, bytes_end});
    return;
  }
  *out++ = static_cast<std::uint8_t>(bytes_mark | (std::min(bound.bytes.size(), chunk_size - 1) + 1));
  *out++ = 0;
  write_chunks(out, bound.bytes, chunk_size - 1);
}

void write_component(std::uint8_t* out, const key_bound& bound) {
  std::visit([out](const auto& held) { write(out, held); }, bound);
}

// Counts the end mark and the padding after `size` bytes of components.
constexpr std::size_t end_size(std::size_t size) { return 8 - size % 8; }

void write_end(std::uint8_t* out, std::size_t count) {
  assert(count >= 1 && count <= key_end.size());
  if (count == 7) return static_cast<void>(std::memcpy(out, key_end.data(), 7));  // after one number
  std::memcpy(out, key_end.data(), count);
}

std::strong_ordering order(lowest_marker, lowest_marker) { return std::strong_ordering::equal; }

template <number_bound Bound>
std::strong_ordering order(const Bound& left, const Bound& right) {
  return number_of(left) <=> number_of(right);
}

std::strong_ordering order(Decimal left, Decimal right) { return left <=> right; }

std::strong_ordering order_bytes(bytes_view left, bytes_view right) {
  return std::lexicographical_compare_three_way(left.begin(), left.end(), right.begin(), right.end());
}

std::strong_ordering order(const key_text& left, const key_text& right) {
  return order_bytes(left.payload, right.payload);
}

std::strong_ordering order(const key_binary& left, const key_binary& right) {
  return left.highest || right.highest ? left.highest <=> right.highest : order_bytes(left.bytes, right.bytes);
}

}  // namespace

std::strong_ordering order_bounds(const key_bound& left, const key_bound& right) {
  assert(left.index() == right.index() || std::holds_alternative<lowest_marker>(left) ||
         std::holds_alternative<lowest_marker>(right));
  if (left.index() != right.index()) return left.index() <=> right.index();
  return std::visit([&right]<class Bound>(const Bound& held) { return order(held, *std::get_if<Bound>(&right)); },
                    left);
}

std::uint8_t* growing_key::extend_long(std::size_t before) {
  if (long_.empty()) long_.assign(short_.begin(), short_.begin() + static_cast<std::ptrdiff_t>(before));
  long_.resize(size_);
  return long_.data() + before;
}

void growing_key::append(const key_bound& bound) { write_component(extend(component_size(bound)), bound); }

number_key key_of_number(std::uint64_t number) {
  number_key key;
  write_number(key.data(), number);
  static_assert(key.size() == number_size + end_size(number_size));
  write_end(key.data() + number_size, key.size() - number_size);
  return key;
}

void growing_key::append_number(std::uint64_t number) { write_number(extend(number_size), number); }

void growing_key::terminate() {
  const std::size_t count = end_size(size_);
  write_end(extend(count), count);
}

std::uint8_t* fixed_key::reserve(std::size_t count) {
  if (count > bytes_.size() - size_) throw db_exception{key_too_long};
  std::uint8_t* const out = bytes_.data() + size_;
  size_ += count;
  return out;
}

void fixed_key::append(const key_bound& bound) { write_component(reserve(component_size(bound)), bound); }

void fixed_key::terminate() {
  const std::size_t count = end_size(size_);
  write_end(reserve(count), count);
}

}  // namespace db_util
