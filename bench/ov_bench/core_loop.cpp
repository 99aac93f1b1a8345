#include "core_loop.hpp"

#include "ovhost/schema/catalog.hpp"

namespace bench {

core_loop::core_loop(const sample& data) : context_(data.context()), rows_(data.rows()) {
  const ovhost::catalog names;
  for (const char* table : {"item", "owner", "pair", "document", "country", "state", "town", "trip"}) {
    const ovhost::table_info info = names.table(table);
    for (const auto& property : names.properties(info)) columns_[info.name + "." + property.name] = property.column;
    for (const auto& index : names.indexes(info)) indexes_[info.name + "." + index.name] = index.handle;
  }
}

core_loop::key_bytes core_loop::key(std::int64_t value) {
  key_bytes bytes = {0x28};
  const std::uint64_t shifted = static_cast<std::uint64_t>(value) ^ (std::uint64_t{1} << 63);
  for (std::size_t i = 0; i < 8; ++i) bytes[8 - i] = static_cast<std::uint8_t>(shifted >> (8 * i));
  bytes[9] = 0xC0;
  return bytes;
}

}  // namespace bench
