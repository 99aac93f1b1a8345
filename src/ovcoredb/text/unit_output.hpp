// Outputs of the decoder. Each takes single units, and vectors of which the first `count` bytes are units.
#ifndef OVCOREDB_TEXT_UNIT_OUTPUT_HPP_
#define OVCOREDB_TEXT_UNIT_OUTPUT_HPP_

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "ovcoredb/text/unit_vectors.hpp"

namespace ovcoredb {

// Writes units without looking at the room. Requires: room for sixteen units more than were put.
class unbounded_output {
 public:
  explicit unbounded_output(char16_t* out) : first_(out), out_(out) {}

  std::size_t count() const { return static_cast<std::size_t>(out_ - first_); }
  void put(char16_t unit) { *out_++ = unit; }
  void put(sixteen_bytes units, std::size_t count) {
    assert(count <= 16);
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

// Writes units while there is room, and counts all of them. Leaves the rest of the room as it was.
class bounded_output {
 public:
  explicit bounded_output(std::span<char16_t> out) : out_(out) {}

  std::size_t count() const { return count_; }
  void put(char16_t unit) {
    if (count_ < out_.size()) out_[count_] = unit;
    ++count_;
  }
  void put(sixteen_bytes units, std::size_t count) {
    assert(count <= 16);
    if (count_ < out_.size()) write(units, std::min(count, out_.size() - count_), out_.data() + count_);
    count_ += count;
  }

 private:
  // Writes the first part and the last part, which may overlap; fewer than four units are written one by one.
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

#endif  // OVCOREDB_TEXT_UNIT_OUTPUT_HPP_
