#include "ovsql/binding/types.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace ovsql {
namespace {

using enum value_kind;

constexpr std::array<std::pair<std::string_view, value_kind>, 41> type_names = {{
    {"integer", int64},
    {"int", int64},
    {"bigint", int64},
    {"smallint", int64},
    {"tinyint", int64},
    {"mediumint", int64},
    {"int2", int64},
    {"int4", int64},
    {"int8", int64},
    {"int64", int64},
    {"signed", int64},
    {"signed integer", int64},
    {"unsigned", uint64},
    {"unsigned bigint", uint64},
    {"bigint unsigned", uint64},
    {"ubigint", uint64},
    {"uint8", uint64},
    {"uint64", uint64},
    {"unsigned integer", uint64},
    {"decimal", decimal},
    {"numeric", decimal},
    {"dec", decimal},
    {"double", float64},
    {"double precision", float64},
    {"float8", float64},
    {"float", float64},
    {"real", float64},
    {"float4", float32},
    {"text", text},
    {"varchar", text},
    {"char", text},
    {"character", text},
    {"character varying", text},
    {"bpchar", text},
    {"string", text},
    {"bool", boolean},
    {"boolean", boolean},
    {"blob", binary},
    {"bytea", binary},
    {"binary", binary},
    {"varbinary", binary},
}};

}  // namespace

family family_of(value_kind kind) {
  switch (kind) {
    case boolean:
    case uint64:
    case int64:
    case decimal:
    case float64:
    case float32:
      return family::number;
    case text:
      return family::text;
    case binary:
      return family::binary;
    case reference:
      return family::reference;
    case set_specifier:
      return family::type;
    case null:
      break;
  }
  return family::unknown;
}

std::optional<value_kind> kind_named(std::string_view words) {
  const auto* const found =
      std::find_if(type_names.begin(), type_names.end(), [&](const auto& each) { return each.first == words; });
  if (found == type_names.end()) return std::nullopt;
  return found->second;
}

std::string_view sql_name(value_kind kind) {
  switch (kind) {
    case int64:
      return "integer";
    case uint64:
      return "unsigned bigint";
    case float64:
      return "double";
    case float32:
      return "float4";
    case set_specifier:
      return "type";
    case null:
      return "NULL";
    default:
      return ovhost::name_of(kind);
  }
}

}  // namespace ovsql
