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

  // A run that the position belongs to. Found at once where objects lie among those of other tables, and then not the
  // longest.
  run quick_run_of(std::size_t position) const {
    const block& in = blocks_[position / block_size];
    return in.each != nullptr ? run{position, 1, in.each[position % block_size]} : run_of(position);
  }

  // The longest, but that it does not lie in two neighbouring blocks that list each of their objects.
  run run_of(std::size_t position) const {
    const std::size_t start = start_of_run(position);
    return {start, end_of_run(position, start) - start, (*this)[start]};
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

  bool follows(std::size_t position) const { return (*this)[position] == (*this)[position - 1].behind(1); }

  std::size_t start_of_run(std::size_t position) const {
    const block& in = blocks_[position / block_size];
    if (in.each == nullptr) return in.run_start;
    while (position % block_size != 0 && follows(position)) --position;
    if (position % block_size != 0 || position == 0 || !follows(position)) return position;
    const block& before = blocks_[position / block_size - 1];
    return before.each == nullptr ? before.run_start : position;
  }

  std::size_t end_of_run(std::size_t position, std::size_t start) const {
    const std::size_t first_behind = position / block_size + 1;
    if (blocks_[first_behind - 1].each != nullptr) {
      const std::size_t end = end_in_block(position);
      if (end % block_size != 0 || end == size_) return end;
    }
    // The blocks whose objects follow from their first and from each other's, and what goes on behind them.
    const auto behind =
        std::partition_point(blocks_.begin() + static_cast<std::ptrdiff_t>(first_behind), blocks_.end(),
                             [start](const block& each) { return each.each == nullptr && each.run_start == start; });
    const std::size_t end = static_cast<std::size_t>(behind - blocks_.begin()) * block_size;
    if (end >= size_) return size_;
    const bool ends_here = blocks_[end / block_size - 1].each != nullptr || !follows(end);
    return ends_here ? end : end_in_block(end);
  }

  // Where the run ends, or else the block.
  std::size_t end_in_block(std::size_t position) const {
    const std::size_t end = std::min(size_, (position / block_size + 1) * block_size);
    while (++position < end && follows(position)) {
    }
    return position;
  }

  struct block {
    packed_place first;
    std::size_t run_start;                 // where the run began that this block's first object goes on
    std::unique_ptr<packed_place[]> each;  // null while they follow from the first
  };

  // Of a block to be added that begins with `place`.
  std::size_t run_start(packed_place place) const {
    if (size_ == 0 || place != (*this)[size_ - 1].behind(1)) return size_;
    return start_of_run(size_ - 1);
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
