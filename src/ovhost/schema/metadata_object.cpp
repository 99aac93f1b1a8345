#include "ovhost/schema/metadata_object.hpp"

#include <cstring>

#include "ov_sql_executor/database/obj_ref.hpp"
#include "ovhost/schema/require_ok.hpp"

namespace ovhost {
namespace {

std::u16string units_of_block(const std::uint8_t* block) {
  std::uint32_t count = 0;
  std::memcpy(&count, block, sizeof count);
  std::u16string units(count, u'\0');
  std::memcpy(units.data(), block + sizeof count, count * sizeof(char16_t));
  return units;
}

// Returns what a getter reads; the initial value of the result where the column has none.
template <class Getter, class Result>
bool read(Getter getter, std::uint64_t context, OV_OBJ_REF object, std::uint32_t column, Result& result) {
  const std::uint32_t status = getter(context, object.object_number, object.second_word, column, &result);
  if (status == ORV_NO_VALUE) return false;
  require_ok(status, "reading metadata");
  return true;
}

}  // namespace

std::u16string metadata_object::text(std::uint32_t column) const {
  const std::uint8_t* block = nullptr;
  if (!read(orv_context_get_string, context_, object_, column, block)) return {};
  return units_of_block(block);
}

std::uint64_t metadata_object::number(std::uint32_t column) const {
  std::uint64_t result = 0;
  read(orv_context_get_ulong, context_, object_, column, result);
  return result;
}

std::int64_t metadata_object::integer(std::uint32_t column) const {
  std::int64_t result = 0;
  read(orv_context_get_long, context_, object_, column, result);
  return result;
}

bool metadata_object::flag(std::uint32_t column) const {
  std::uint64_t result = 0;
  read(orv_meta_get_bool, context_, object_, column, result);
  return result != 0;
}

OV_OBJ_REF metadata_object::reference(std::uint32_t column) const {
  ORV_REFERENCE_VALUE result{};
  read(orv_context_get_reference, context_, object_, column, result);
  return db_util::to_obj_ref(result);
}

}  // namespace ovhost
