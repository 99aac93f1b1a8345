#include "ovhost/value_kind.hpp"

#include <array>

namespace ovhost {

std::string_view name_of(value_kind kind) {
  constexpr std::array<std::string_view, value_kind_count> names = {
      "bool", "text", "uint64", "int64", "decimal", "double", "float", "binary", "reference", "set specifier", "null"};
  return names[static_cast<std::size_t>(kind)];
}

}  // namespace ovhost
