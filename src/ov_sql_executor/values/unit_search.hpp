#ifndef OV_SQL_EXECUTOR_VALUES_UNIT_SEARCH_HPP_
#define OV_SQL_EXECUTOR_VALUES_UNIT_SEARCH_HPP_

#include <cstddef>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>

#include <bit>
#endif

namespace ov::sql_executor {

// Tells whether two texts of this many units are equal. Compares few units without a call.
inline bool are_equal(const char16_t* left, const char16_t* right, std::size_t count) {
  constexpr std::size_t few = 8;
  for (std::size_t i = 0; i < count && i < few; ++i) {
    if (left[i] != right[i]) return false;
  }
  return count <= few || std::memcmp(left + few, right + few, (count - few) * sizeof(char16_t)) == 0;
}

#ifdef __SSE2__

// Finds which of the next eight units equal this one: two bits for each.
inline unsigned equal_among_eight(const char16_t* units, __m128i unit) {
  const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(eight, unit)));
}

// Finds the first place, from start on, of a unit that is followed by another; npos if there is none. Does what
// text.find of the two does, but looks at eight units at a time.
inline std::size_t find_units(std::u16string_view text, char16_t first, char16_t second, std::size_t start) {
  const __m128i firsts = _mm_set1_epi16(static_cast<short>(first));
  const __m128i seconds = _mm_set1_epi16(static_cast<short>(second));
  for (; start + 9 <= text.size(); start += 8) {
    const char16_t* const units = text.data() + start;
    const unsigned found = equal_among_eight(units, firsts) & equal_among_eight(units + 1, seconds);
    if (found != 0) return start + static_cast<std::size_t>(std::countr_zero(found)) / 2;
  }
  const char16_t both[] = {first, second};
  return text.find({both, 2}, start);
}

// Finds the first place of one unit, eight at a time.
inline std::size_t find_unit(std::u16string_view text, char16_t unit, std::size_t start) {
  const __m128i wanted = _mm_set1_epi16(static_cast<short>(unit));
  for (; start + 8 <= text.size(); start += 8) {
    const unsigned found = equal_among_eight(text.data() + start, wanted);
    if (found != 0) return start + static_cast<std::size_t>(std::countr_zero(found)) / 2;
  }
  return text.find(unit, start);
}

#else

inline std::size_t find_units(std::u16string_view text, char16_t first, char16_t second, std::size_t start) {
  const char16_t both[] = {first, second};
  return text.find({both, 2}, start);
}

inline std::size_t find_unit(std::u16string_view text, char16_t unit, std::size_t start) {
  return text.find(unit, start);
}

#endif

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_UNIT_SEARCH_HPP_
