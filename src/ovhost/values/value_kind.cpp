#include "ovhost/values/value_kind.hpp"

namespace ovhost {

std::string_view name_of(value_kind kind) {
  switch (kind) {
    case value_kind::boolean:
      return "bool";
    case value_kind::text:
      return "text";
    case value_kind::uint64:
      return "uint64";
    case value_kind::int64:
      return "int64";
    case value_kind::decimal:
      return "decimal";
    case value_kind::float64:
      return "double";
    case value_kind::float32:
      return "float";
    case value_kind::binary:
      return "binary";
    case value_kind::reference:
      return "reference";
    case value_kind::set_specifier:
      return "set specifier";
    case value_kind::null:
      return "null";
  }
  return "unknown kind";
}

}  // namespace ovhost
