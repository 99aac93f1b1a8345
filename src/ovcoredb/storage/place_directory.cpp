#include "ovcoredb/storage/place_directory.hpp"

#include <algorithm>
#include <utility>

namespace ovcoredb {

place_run place_directory::run_of(std::size_t position) const {
  const std::size_t start = start_of_run(position);
  return {start, end_of_run(position, start) - start, (*this)[start]};
}

void place_directory::push_back(packed_place place) {
  const std::size_t offset = size_ % block_size;
  const bool continues_run = size_ != 0 && place == (*this)[size_ - 1].plus(1);
  if (offset == 0) {
    blocks_.push_back({place, continues_run ? start_of_run(size_ - 1) : size_, nullptr});
  } else if (!continues_run) {
    begin_stretch(blocks_.back(), offset, place);
  } else if (auto& list = blocks_.back().list; list != nullptr) {
    list->of_offset[offset] = list->last();
  }
  ++size_;
}

void place_directory::pop_back() {
  assert(size_ != 0);
  --size_;
  if (size_ % block_size == 0) {
    blocks_.pop_back();
  } else if (auto& list = blocks_.back().list; list != nullptr) {
    if (list->stretches.back().start == size_ % block_size) list->stretches.pop_back();
  }
}

std::size_t place_directory::start_of_run(std::size_t position) const {
  const std::size_t offset = stretch_at(position).start;
  const std::size_t block_number = position / block_size;
  return offset == 0 ? blocks_[block_number].run_start : block_number * block_size + offset;
}

// The run ends in the block of the position, or else in the last block whose first position belongs to it.
std::size_t place_directory::end_of_run(std::size_t position, std::size_t start) const {
  std::size_t number = position / block_size;
  const auto& list = blocks_[number].list;
  std::size_t next = list == nullptr ? 1 : list->of_offset[position % block_size] + std::size_t{1};
  if (next == stretch_count(blocks_[number])) {
    const std::size_t last = last_block_of_run(number, start);
    if (last != number) next = 1;
    number = last;
  }
  const block& in = blocks_[number];
  if (next == stretch_count(in)) return std::min(size_, (number + 1) * block_size);
  return number * block_size + in.list->stretches[next].start;
}

std::size_t place_directory::last_block_of_run(std::size_t block_number, std::size_t start) const {
  const auto end = std::partition_point(blocks_.begin() + static_cast<std::ptrdiff_t>(block_number + 1), blocks_.end(),
                                        [start](const block& each) { return each.run_start == start; });
  return static_cast<std::size_t>(end - blocks_.begin()) - 1;
}

void place_directory::begin_stretch(block& in, std::size_t offset, packed_place place) {
  if (in.list == nullptr) {
    auto list = std::make_unique<stretch_list>();
    list->stretches = {{in.first, 0}, {place, static_cast<std::uint8_t>(offset)}};
    in.list = std::move(list);
  } else {
    in.list->stretches.push_back({place, static_cast<std::uint8_t>(offset)});
  }
  in.list->of_offset[offset] = in.list->last();
}

}  // namespace ovcoredb
