// Where decoding puts units: one at a time, or the first of sixteen that lie in a vector as bytes.
#ifndef OVCOREDB_TEXT_DECODED_UNITS_HPP_
#define OVCOREDB_TEXT_DECODED_UNITS_HPP_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace ovcoredb {

using two_words [[gnu::vector_size(16)]] = std::uint64_t;
using sixteen_bytes [[gnu::vector_size(16)]] = std::uint8_t;
using eight_units [[gnu::vector_size(16)]] = std::uint8_t;  // of 16 bits

// Not by std::memcpy, which may take a vector apart to copy it.
inline void store(eight_units units, char16_t* out) {
  using unaligned [[gnu::vector_size(16), gnu::aligned(1), gnu::may_alias]] = std::uint8_t;
  *reinterpret_cast<unaligned*>(out) = units;
}

inline eight_units first_eight(sixteen_bytes units) {
  return __builtin_shufflevector(units, sixteen_bytes{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}
inline eight_units last_eight(sixteen_bytes units) {
  return __builtin_shufflevector(units, sixteen_bytes{}, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
}

// Writes units where there is room for more than are left, so that sixteen can always be written.
class roomy_output {
 public:
  explicit roomy_output(char16_t* out) : first_(out), out_(out) {}

  std::size_t count() const { return static_cast<std::size_t>(out_ - first_); }
  void put(char16_t unit) { *out_++ = unit; }
  void put(sixteen_bytes units, std::size_t count) {
    store(first_eight(units), out_);
    store(last_eight(units), out_ + 8);
    out_ += count;
  }

 private:
  char16_t* first_;
  char16_t* out_;
};

// Counts units.
class counting_output {
 public:
  std::size_t count() const { return count_; }
  void put(char16_t /*unit*/) { ++count_; }
  void put(sixteen_bytes /*units*/, std::size_t count) { count_ += count; }

 private:
  std::size_t count_ = 0;
};

// Writes units while there is room, no others, and counts all of them.
class bounded_output {
 public:
  explicit bounded_output(std::span<char16_t> out) : out_(out) {}

  std::size_t count() const { return count_; }
  void put(char16_t unit) {
    if (count_ < out_.size()) out_[count_] = unit;
    ++count_;
  }
  void put(sixteen_bytes units, std::size_t count) {
    if (count_ < out_.size()) write(units, std::min(count, out_.size() - count_), out_.data() + count_);
    count_ += count;
  }

 private:
  // In two steps that may meet, but for less than four.
  static void write(sixteen_bytes units, std::size_t count, char16_t* out) {
    const auto words = reinterpret_cast<two_words>(units);
    if (count >= 8) {
      const std::size_t skipped = (count - 8) * 8;
      const std::uint64_t last = skipped == 64 ? words[1] : words[0] >> skipped | words[1] << 1 << (63 - skipped);
      write_eight(words[0], out);
      write_eight(last, out + count - 8);
    } else if (count >= 4) {
      write_four(words[0], out);
      write_four(words[0] >> (count - 4) * 8, out + count - 4);
    } else {
      for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<char16_t>(words[0] >> i * 8 & 0xFF);
    }
  }
  static void write_eight(std::uint64_t units, char16_t* out) {
    store(first_eight(reinterpret_cast<sixteen_bytes>(two_words{units, 0})), out);
  }
  static void write_four(std::uint64_t units, char16_t* out) {
    const eight_units wide = first_eight(reinterpret_cast<sixteen_bytes>(two_words{units, 0}));
    std::memcpy(out, &wide, sizeof wide / 2);
  }

  std::span<char16_t> out_;
  std::size_t count_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_DECODED_UNITS_HPP_
