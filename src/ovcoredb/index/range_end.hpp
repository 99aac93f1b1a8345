// One end of an index range.
#ifndef OVCOREDB_INDEX_RANGE_END_HPP_
#define OVCOREDB_INDEX_RANGE_END_HPP_

#include <cstdint>
#include <vector>

#include "ovcoredb/index/index_entry.hpp"
#include "ovcoredb/index/key_component.hpp"
#include "ovcoredb/storage/own_lines.hpp"

namespace ovcoredb {

// Lies before or after the entries whose keys begin with its components.
struct range_end {
  std::vector<key_component, own_lines_allocator<key_component>> components;  // at most as many as the key has parts
  std::vector<std::uint8_t, own_lines_allocator<std::uint8_t>> bytes;         // what the components' spans refer to
  bool after_equal = false;

  // Those of an entry that would lie at the end, as far as the first component tells.
  std::uint64_t word = 0;
  std::uint32_t tail = 0;

  void set_first(const key_component& first, bool ascending, bool after) {
    const leading_order leading = leading_order_of(first, ascending);
    after_equal = after;
    word = leading.word;
    tail = entry_tail(leading.high, after ? index_number_mask : 0);
  }

  // Without components, an end lies before or after all entries.
  void set_without_components(bool after) {
    after_equal = after;
    word = after ? ~std::uint64_t{0} : 0;
    tail = static_cast<std::uint32_t>(word);
  }
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_RANGE_END_HPP_
