// The places of all objects, by position (the object's number - 1). Objects are mostly loaded table by table, so the
// directory keeps runs instead of single places: positions that follow each other and lie in following rows of one
// table. Positions are divided into blocks of 256. A block knows the stretches in it; a stretch is the part of a run
// that lies in one block.
//
//    position    0              256            512
//    block       |--------------|--------------|-----
//    run         [  table 1  ............. ][ table 2 .......
//    stretch     [     A        ][    B    ][C ][ D
#ifndef OVCOREDB_STORAGE_PLACE_DIRECTORY_HPP_
#define OVCOREDB_STORAGE_PLACE_DIRECTORY_HPP_

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "ovcoredb/storage/packed_place.hpp"

namespace ovcoredb {

// Consecutive positions, or object numbers, in following rows of one table.
struct place_run {
  std::size_t first = 0;
  std::size_t count = 0;
  packed_place place{};  // of the first

  bool contains(std::size_t position) const { return position - first < count; }
};

class place_directory {
 public:
  std::size_t size() const { return size_; }

  packed_place operator[](std::size_t position) const {
    assert(position < size_);
    const stretch in = stretch_at(position);
    return in.place.plus(position % block_size - in.start);
  }

  // The longest run that holds the position.
  place_run run_of(std::size_t position) const;

  // When it throws, the directory is as it was.
  void push_back(packed_place place);

  // Requires: it is not empty.
  void pop_back();

 private:
  static constexpr std::size_t block_size = 256;

  struct stretch {
    packed_place place;  // of its first position
    std::uint8_t start;  // offset in the block
  };

  struct stretch_list {
    std::array<std::uint8_t, block_size> of_offset{};  // number of the stretch at each offset of the block
    std::vector<stretch> stretches;

    std::uint8_t last() const { return static_cast<std::uint8_t>(stretches.size() - 1); }
  };

  struct block {
    packed_place first;
    std::size_t run_start;               // first position of the run that the block's first position belongs to
    std::unique_ptr<stretch_list> list;  // null while the block has one stretch
  };

  stretch stretch_at(std::size_t position) const {
    const block& in = blocks_[position / block_size];
    if (in.list == nullptr) return {in.first, 0};
    return in.list->stretches[in.list->of_offset[position % block_size]];
  }

  std::size_t start_of_run(std::size_t position) const;
  std::size_t end_of_run(std::size_t position, std::size_t start) const;
  std::size_t last_block_of_run(std::size_t block_number, std::size_t start) const;
  static std::size_t stretch_count(const block& of) { return of.list == nullptr ? 1 : of.list->stretches.size(); }
  static void begin_stretch(block& in, std::size_t offset, packed_place place);

  std::vector<block> blocks_;
  std::size_t size_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_PLACE_DIRECTORY_HPP_
