#ifndef OV_SQL_EXECUTOR_DATABASE_CORE_BLOCK_HPP_
#define OV_SQL_EXECUTOR_DATABASE_CORE_BLOCK_HPP_

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

#include "ov_sql_executor/values/tt_string.hpp"

namespace db_util {

static_assert(std::endian::native == std::endian::little, "counts and units of the core's blocks are little-endian");

// These copy a counted block of the core: a 32-bit count, then that many bytes or UTF-16 units. The core keeps the
// block and may change it at its next call. It need not be aligned.

inline std::uint32_t block_count(const std::uint8_t* block) {
  std::uint32_t count = 0;
  std::memcpy(&count, block, sizeof count);
  return count;
}

inline std::u16string units_of_block(const std::uint8_t* block) {
  std::u16string units(block_count(block), u'\0');
  std::memcpy(units.data(), block + sizeof(std::uint32_t), units.size() * sizeof(char16_t));
  return units;
}

inline db_string::tt_string text_of_block(const std::uint8_t* block) {
  return {block + sizeof(std::uint32_t), block_count(block)};
}

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_CORE_BLOCK_HPP_
