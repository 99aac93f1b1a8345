#ifndef OV_SQL_EXECUTOR_VALUES_UNIT_SEARCH_HPP_
#define OV_SQL_EXECUTOR_VALUES_UNIT_SEARCH_HPP_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace ov::sql_executor {

// Where a unit first stands in a text from start on; npos if nowhere. The same as text.find, which looks at one unit at
// a time where this looks at four.
inline std::size_t find_unit(std::u16string_view text, char16_t unit, std::size_t start) {
  constexpr std::uint64_t ones = 0x0001000100010001;
  constexpr std::uint64_t tops = 0x8000800080008000;
  const std::uint64_t wanted = ones * unit;
  for (; start + 4 <= text.size(); start += 4) {
    std::uint64_t four;
    std::memcpy(&four, text.data() + start, sizeof four);
    const std::uint64_t difference = four ^ wanted;
    if (((difference - ones) & ~difference & tops) != 0) break;  // one of them is zero
  }
  return text.find(unit, start);
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_UNIT_SEARCH_HPP_
