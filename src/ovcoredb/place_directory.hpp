// Where each object lies, found by its number. Objects are mostly loaded table by table: a block of numbers whose
// objects lie one behind the other in one table is described by its first.
#ifndef OVCOREDB_PLACE_DIRECTORY_HPP_
#define OVCOREDB_PLACE_DIRECTORY_HPP_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace ovcoredb {

class packed_place {
 public:
  packed_place() = default;
  packed_place(std::uint64_t row, std::uint16_t tag) : word_(row << 16 | tag) {}

  std::uint64_t row() const { return word_ >> 16; }
  std::uint16_t tag() const { return static_cast<std::uint16_t>(word_); }
  packed_place behind(std::uint64_t rows) const { return {row() + rows, tag()}; }
  bool operator==(const packed_place&) const = default;

 private:
  std::uint64_t word_ = 0;
};

class place_directory {
 public:
  std::size_t size() const { return size_; }

  packed_place operator[](std::size_t position) const {
    const block& in = blocks_[position / block_size];
    return in.each == nullptr ? in.first.behind(position % block_size) : in.each[position % block_size];
  }

  // Objects with consecutive numbers that lie one behind the other in one table.
  struct run {
    std::size_t first = 0;
    std::size_t count = 0;
    packed_place place{};  // of the first
  };

  // A run that the position belongs to, found at once: not always the longest.
  run quick_run_of(std::size_t position) const {
    const block& in = blocks_[position / block_size];
    if (in.each != nullptr) return {position, 1, in.each[position % block_size]};
    return run_in(position, in);
  }

  // The same, longer in blocks that list each of their objects: worth the search where the run is kept.
  run run_of(std::size_t position) const {
    const block& in = blocks_[position / block_size];
    return in.each != nullptr ? listed_run_of(position, in) : run_in(position, in);
  }

  void push_back(packed_place place) {
    if (size_ % block_size == 0) {
      blocks_.push_back({place, run_start(place), nullptr});
    } else if (block& last = blocks_.back(); last.each != nullptr) {
      last.each[size_ % block_size] = place;
    } else if (place != last.first.behind(size_ % block_size)) {
      list_each(last, place);
    }
    ++size_;
  }

  void pop_back() {
    if (--size_ % block_size == 0) blocks_.pop_back();
  }

 private:
  static constexpr std::size_t block_size = 256;
  struct block;

  // In a block whose objects follow from its first: the longer the further back it is.
  run run_in(std::size_t position, const block& in) const {
    const std::size_t start = in.run_start;
    return {start, std::min(size_, (position / block_size + 1) * block_size) - start, (*this)[start]};
  }

  // The whole run as far as it lies in the block.
  run listed_run_of(std::size_t position, const block& in) const {
    const packed_place* const each = in.each.get();
    const std::size_t block_start = position - position % block_size;
    const std::size_t listed = std::min(size_ - block_start, block_size);
    std::size_t start = position % block_size;
    std::size_t end = start + 1;
    while (start > 0 && each[start] == each[start - 1].behind(1)) --start;
    while (end < listed && each[end] == each[end - 1].behind(1)) ++end;
    return {block_start + start, end - start, each[start]};
  }

  struct block {
    packed_place first;
    std::size_t run_start;                 // where the run began that this block's first object goes on
    std::unique_ptr<packed_place[]> each;  // null while they follow from the first
  };

  // Of a block that begins with `place`.
  std::size_t run_start(packed_place place) const {
    if (blocks_.empty() || blocks_.back().each != nullptr) return size_;
    return place == blocks_.back().first.behind(block_size) ? blocks_.back().run_start : size_;
  }

  void list_each(block& of, packed_place next) {
    auto each = std::make_unique<packed_place[]>(block_size);
    for (std::size_t i = 0; i < size_ % block_size; ++i) each[i] = of.first.behind(i);
    each[size_ % block_size] = next;
    of.each = std::move(each);
  }

  std::vector<block> blocks_;
  std::size_t size_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_PLACE_DIRECTORY_HPP_
