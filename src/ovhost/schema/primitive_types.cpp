#include "ovhost/schema/primitive_types.hpp"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "ovdbmetalayer/layout.hpp"

namespace ovhost {

namespace number = metalayer::layout::primitive_type;
using ovcoredb::column_type;

const std::array<primitive_type, 8> primitive_types = {{
    {"bool", value_kind::boolean, number::boolean, column_type::boolean},
    {"text", value_kind::text, number::text, column_type::text},
    {"uint64", value_kind::uint64, number::uint64, column_type::uint64},
    {"int64", value_kind::int64, number::int64, column_type::int64},
    {"decimal", value_kind::decimal, number::decimal, column_type::decimal},
    {"double", value_kind::float64, number::float64, column_type::float64},
    {"float", value_kind::float32, number::float32, column_type::float32},
    {"binary", value_kind::binary, number::binary, column_type::binary},
}};

value_kind kind_of_primitive(std::uint64_t wanted) {
  if (wanted == number::reference) return value_kind::reference;
  const auto found = std::find_if(primitive_types.begin(), primitive_types.end(),
                                  [&](const primitive_type& each) { return each.number == wanted; });
  if (found == primitive_types.end()) {
    throw std::runtime_error("the metadata name an unknown primitive type, " + std::to_string(wanted));
  }
  return found->kind;
}

column_type column_type_of(value_kind kind) {
  if (kind == value_kind::reference) return column_type::reference;
  const auto found = std::find_if(primitive_types.begin(), primitive_types.end(),
                                  [&](const primitive_type& each) { return each.kind == kind; });
  if (found == primitive_types.end()) {
    throw std::invalid_argument("no column holds a " + std::string(name_of(kind)));
  }
  return found->column;
}

}  // namespace ovhost
