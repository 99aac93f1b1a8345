// The bytes of index keys, as the core reads them. A key is one component per key column, in key order:
//
//    lowest marker       60
//    bool, uint64,       28 | 8 bytes big-endian
//    object number
//    int64               28 | 8 bytes big-endian of v + 2^63
//    Decimal             28 | 8 bytes big-endian of x + 2^63, where x has the sign of the raw value and the magnitude
//                             ((q << 7 | h) << 14) | l,  |raw| = q * 1,000,000 + h * 10,000 + l
//    text, specifier     20|min(n,31) | first bytes |  { count up to 31 | bytes }...  | 80
//    binary              20|(min(n,30)+1) | 00 | first bytes |  { count up to 31 | bytes }...  | 80
//    highest binary      21 01 80
//
// and ends with C0 and zero bytes up to a multiple of 8.
#ifndef OV_SQL_EXECUTOR_DATABASE_INDEX_KEY_HPP_
#define OV_SQL_EXECUTOR_DATABASE_INDEX_KEY_HPP_

#include <array>
#include <compare>
#include <cstdint>
#include <span>
#include <variant>
#include <vector>

#include "ov_sql_executor/values/decimal.hpp"

namespace db_util {

// Is below every value. NULL has this key, too.
struct lowest_marker {};

// The payload bytes of an encoded text or set specifier; not owned.
struct key_text {
  std::span<const std::uint8_t> payload;
};

// The bytes of a binary, not owned, or a mark above every binary.
struct key_binary {
  std::span<const std::uint8_t> bytes;
  bool highest = false;
};

struct key_object {
  std::uint64_t number;
};

// The value of one key component.
using key_bound = std::variant<lowest_marker, bool, std::uint64_t, std::int64_t, operator_library::Decimal, key_text,
                               key_binary, key_object>;

// Returns the number that stands for an int64 in a key.
constexpr std::uint64_t key_number(std::int64_t value) {
  return static_cast<std::uint64_t>(value) ^ std::uint64_t{1} << 63;
}

// Orders two bounds. Requires: both are of one alternative, or one is the lowest marker, which is below every value.
std::strong_ordering order_bounds(const key_bound& left, const key_bound& right);

// A key of one number, terminated.
using number_key = std::array<std::uint8_t, 16>;
number_key key_of_number(std::uint64_t number);

// A key of any length. Nearly all are short and need no heap.
class growing_key {
 public:
  void append(const key_bound& bound);
  void append_number(std::uint64_t number);  // as it stands in a component: see key_number
  void terminate();
  const std::uint8_t* data() const { return long_.empty() ? short_.data() : long_.data(); }
  std::span<const std::uint8_t> bytes() const { return {data(), size_}; }

 private:
  std::uint8_t* extend(std::size_t count) {
    const std::size_t before = size_;
    size_ += count;
    return size_ <= short_.size() ? short_.data() + before : extend_long(before);
  }
  std::uint8_t* extend_long(std::size_t before);

  std::array<std::uint8_t, 64> short_;
  std::vector<std::uint8_t> long_;  // the whole key, once it is too long for short_
  std::size_t size_ = 0;
};

// A key in a buffer of fixed size. Throws db_exception key_too_long for a component that does not fit.
class fixed_key {
 public:
  void append(const key_bound& bound);
  void terminate();
  const std::uint8_t* data() const { return bytes_.data(); }

 private:
  std::uint8_t* reserve(std::size_t count);

  std::array<std::uint8_t, 1024> bytes_;
  std::size_t size_ = 0;
};

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_INDEX_KEY_HPP_
