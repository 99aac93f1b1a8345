#include "ovdbmetalayer/metalayer.hpp"

#include "ovdbmetalayer/layout.hpp"

namespace metalayer {
namespace {

__extension__ using uint128 = unsigned __int128;

constexpr uint128 digest_start = uint128{0x6C62272E07BB0142} << 64 | 0x62B821756295C58D;
constexpr uint128 digest_prime = uint128{1} << 88 | 0x13B;

uint128 add_unit(uint128 digest, char16_t unit) {
  digest = (digest ^ (unit & 0xFF)) * digest_prime;
  return (digest ^ (unit >> 8)) * digest_prime;
}

}  // namespace

std::uint64_t& TlsMetalayerContext::Current() {
  thread_local std::uint64_t current = 0;
  return current;
}

std::uint64_t Table::index_id_TableName() { return layout::index_handle::table_name; }
std::uint64_t Member::index_id_MemberPK() { return layout::index_handle::member_pk; }
std::uint64_t Index::index_id_IndexPK() { return layout::index_handle::index_pk; }
std::uint64_t IndexedColumn::index_id_IndexedColumnPK() { return layout::index_handle::indexed_column_pk; }
std::uint64_t SetSpecifier::index_id_Type() { return layout::index_handle::set_specifier_type; }

// Tables and types have the number in the same column.
std::uint32_t PrimTypeByTypeRef(const OV_OBJ_REF& type, std::uint32_t& prim_type) {
  static_assert(layout::type_column::primitive_type == layout::table_column::primitive_type);
  std::uint64_t number = 0;
  if (type.object_number != 0) {
    const std::uint32_t status = orv_context_get_ulong(TlsMetalayerContext::Current(), type.object_number,
                                                       type.second_word, layout::type_column::primitive_type, &number);
    if (status != ORV_OK && status != ORV_NO_VALUE) return status;
  }
  prim_type = static_cast<std::uint32_t>(number);
  return ORV_OK;
}

RawView DottedName2RawView(const DottedName& name) {
  uint128 digest = digest_start;
  for (const std::u16string& part : name) {
    for (const char16_t unit : part) digest = add_unit(digest, unit);
    digest = add_unit(digest, u'.');
  }
  return {{static_cast<std::uint64_t>(digest >> 64), static_cast<std::uint64_t>(digest)}};
}

}  // namespace metalayer

uint32_t orv_meta_get_bool(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                           uint64_t* out) {
  return orv_context_get_ulong(context, object_number, second_word, column, out);
}
