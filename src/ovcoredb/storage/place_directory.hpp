// Where each object lies, found by its number. Objects are mostly loaded table by table: those that lie one behind the
// other in one table are described by the first of them in each block of numbers.
#ifndef OVCOREDB_STORAGE_PLACE_DIRECTORY_HPP_
#define OVCOREDB_STORAGE_PLACE_DIRECTORY_HPP_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
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
    const stretch at = stretch_at(position);
    return at.place.behind(position % block_size - at.start);
  }

  // Objects with consecutive numbers that lie one behind the other in one table.
  struct run {
    std::size_t first = 0;
    std::size_t count = 0;
    packed_place place{};  // of the first
  };

  // The longest run that the position belongs to.
  run run_of(std::size_t position) const {
    const std::size_t start = start_of_run(position);
    return {start, end_of_run(position, start) - start, (*this)[start]};
  }

  void push_back(packed_place place) {
    const std::size_t offset = size_ % block_size;
    const bool goes_on = size_ != 0 && place == (*this)[size_ - 1].behind(1);
    if (offset == 0) {
      blocks_.push_back({place, goes_on ? start_of_run(size_ - 1) : size_, nullptr});
    } else if (!goes_on) {
      begin_stretch(blocks_.back(), offset, place);
    } else if (auto& stretches = blocks_.back().stretches; stretches != nullptr) {
      stretches->of_offset[offset] = stretches->last();
    }
    ++size_;
  }

  void pop_back() {
    --size_;
    if (size_ % block_size == 0) {
      blocks_.pop_back();
    } else if (auto& stretches = blocks_.back().stretches; stretches != nullptr) {
      if (stretches->list.back().start == size_ % block_size) stretches->list.pop_back();
    }
  }

 private:
  static constexpr std::size_t block_size = 256;

  // The part of a run that lies in one block.
  struct stretch {
    packed_place place;  // of its first object
    std::uint8_t start;  // offset in the block
  };

  struct stretches_of_block {
    std::array<std::uint8_t, block_size> of_offset{};  // in the list
    std::vector<stretch> list;

    std::uint8_t last() const { return static_cast<std::uint8_t>(list.size() - 1); }
  };

  struct block {
    packed_place first;
    std::size_t run_start;                          // where the run began that the first object belongs to
    std::unique_ptr<stretches_of_block> stretches;  // null while there is one only
  };

  stretch stretch_at(std::size_t position) const {
    const block& in = blocks_[position / block_size];
    if (in.stretches == nullptr) return {in.first, 0};
    return in.stretches->list[in.stretches->of_offset[position % block_size]];
  }

  std::size_t start_of_run(std::size_t position) const {
    const std::size_t offset = stretch_at(position).start;
    const std::size_t in = position / block_size;
    return offset == 0 ? blocks_[in].run_start : in * block_size + offset;
  }

  // It ends in its first block, or else in the last of those whose first object belongs to it.
  std::size_t end_of_run(std::size_t position, std::size_t start) const {
    std::size_t in = position / block_size;
    std::size_t next =
        blocks_[in].stretches == nullptr ? 1 : blocks_[in].stretches->of_offset[position % block_size] + 1;
    if (is_last(in, next)) {
      const auto behind = std::partition_point(blocks_.begin() + static_cast<std::ptrdiff_t>(in + 1), blocks_.end(),
                                               [start](const block& each) { return each.run_start == start; });
      const auto last = static_cast<std::size_t>(behind - blocks_.begin()) - 1;
      if (last != in) next = 1;
      in = last;
    }
    if (is_last(in, next)) return std::min(size_, (in + 1) * block_size);
    return in * block_size + blocks_[in].stretches->list[next].start;
  }

  // Whether no stretch of a block comes behind those before `next`.
  bool is_last(std::size_t in, std::size_t next) const {
    const auto& stretches = blocks_[in].stretches;
    return stretches == nullptr || next == stretches->list.size();
  }

  static void begin_stretch(block& in, std::size_t offset, packed_place place) {
    if (in.stretches == nullptr) {
      auto stretches = std::make_unique<stretches_of_block>();
      stretches->list = {{in.first, 0}, {place, static_cast<std::uint8_t>(offset)}};
      in.stretches = std::move(stretches);
    } else {
      in.stretches->list.push_back({place, static_cast<std::uint8_t>(offset)});
    }
    in.stretches->of_offset[offset] = in.stretches->last();
  }

  std::vector<block> blocks_;
  std::size_t size_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_PLACE_DIRECTORY_HPP_
