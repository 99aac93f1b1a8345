// Holds small values in words of 64 bits, so that many of them lie side by side.
#ifndef OV_SQL_EXECUTOR_VALUES_VALUE_WORD_HPP_
#define OV_SQL_EXECUTOR_VALUES_VALUE_WORD_HPP_

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace ov::sql_executor {

// Numbers, bools and NULL, as values and views have them; pointers, too.
template <class T>
concept fits_word = std::is_trivially_copyable_v<T> && sizeof(T) <= sizeof(std::uint64_t);

template <fits_word T>
std::uint64_t to_word(const T& held) {
  std::uint64_t word = 0;
  if constexpr (!std::is_empty_v<T>) std::memcpy(&word, &held, sizeof(T));
  return word;
}

template <fits_word T>
T from_word(std::uint64_t word) {
  T held{};
  if constexpr (!std::is_empty_v<T>) std::memcpy(static_cast<void*>(&held), &word, sizeof(T));
  return held;
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_VALUE_WORD_HPP_
