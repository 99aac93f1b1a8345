// A search in an ordered array that guesses where to look from the words of both ends, and then looks ever further away
// from the guess. Where words stand at even distances, as keys without gaps do, it looks at one or two cache lines.
#ifndef OVCOREDB_INDEX_INTERPOLATION_SEARCH_HPP_
#define OVCOREDB_INDEX_INTERPOLATION_SEARCH_HPP_

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace ovcoredb {

struct word_range {
  std::uint64_t first;
  std::uint64_t end;
};

// Good enough for guesses, and faster than the conversion of all 64 bits.
inline double as_double(std::uint64_t word) {
  constexpr std::uint64_t greatest = std::numeric_limits<std::int64_t>::max();
  return static_cast<double>(static_cast<std::int64_t>(std::min(word, greatest)));
}

// How many of `count` words lie before `word` if they stand at even distances in the range, the first at its start. At
// most `count`.
inline std::size_t interpolate(std::size_t count, word_range range, std::uint64_t word) {
  if (word <= range.first) return 0;
  if (word >= range.end) return count;
  const auto density = static_cast<double>(count) / as_double(range.end - range.first);
  return std::min(count, static_cast<std::size_t>(as_double(word - range.first) * density));
}

// A binary search whose steps are selections, not jumps.
template <class Before>
std::size_t binary_partition_point(std::size_t low, std::size_t high, const Before& before) {
  for (std::size_t count = high - low; count != 0;) {
    const std::size_t half = count / 2;
    const bool is_before = before(low + half);
    low = is_before ? low + half + 1 : low;
    count = is_before ? count - half - 1 : half;
  }
  return low;
}

// How many of `count` positions `before` is true for. Requires: it is true for those from 0 on and false for the
// others. Doubles its steps away from the guess until it has passed the answer, and halves what lies between the last
// two.
template <class Before>
std::size_t partition_point_near(std::size_t count, std::size_t guess, const Before& before) {
  assert(guess <= count);
  std::size_t low = 0;
  std::size_t high = count;
  if (guess < high && before(guess)) {
    low = guess + 1;
    for (std::size_t step = 1; step <= high - low; step *= 2) {
      if (!before(low + step - 1)) {
        high = low + step - 1;
        break;
      }
      low += step;
    }
  } else {
    high = guess;
    for (std::size_t step = 1; step <= high; step *= 2) {
      if (before(high - step)) {
        low = high - step + 1;
        break;
      }
      high -= step;
    }
  }
  return binary_partition_point(low, high, before);
}

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_INTERPOLATION_SEARCH_HPP_
