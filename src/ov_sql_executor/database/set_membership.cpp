#include "ov_sql_executor/database/set_membership.hpp"

#include <cstring>

#include "ov_sql_executor/database/core_block.hpp"
#include "ov_sql_executor/database/status.hpp"

namespace db_util {

std::optional<bool> is_in_set(std::uint64_t context, const OV_OBJ_REF& object, std::u16string_view specifier) {
  const std::uint8_t* block = nullptr;
  if (!check_has_value(orv_context_get_setspec(context, object.object_number, object.second_word, &block))) {
    return std::nullopt;
  }
  if (block_count(block) < specifier.size()) return false;
  const std::uint8_t* units = block + sizeof(std::uint32_t);
  return specifier.empty() || std::memcmp(units, specifier.data(), specifier.size() * sizeof(char16_t)) == 0;
}

}  // namespace db_util
