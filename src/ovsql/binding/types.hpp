#ifndef OVSQL_BINDING_TYPES_HPP_
#define OVSQL_BINDING_TYPES_HPP_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ovhost/values/value_kind.hpp"

namespace ovsql {

using ovhost::value_kind;

// Values of one family are compared with each other; any goes with any other. unknown: NULL and untyped parameters.
enum class family : std::uint8_t { number, text, binary, reference, type, unknown };

family family_of(value_kind kind);

inline bool is_integer(value_kind kind) { return kind == value_kind::int64 || kind == value_kind::uint64; }
inline bool is_floating(value_kind kind) { return kind == value_kind::float64 || kind == value_kind::float32; }

// What holds values of a kind; those of an unknown one are NULL or texts: the executor makes anything else of them
// NULL.
inline value_kind stored_kind(value_kind kind) { return kind == value_kind::null ? value_kind::text : kind; }

// The type of a column or a CAST, by its words in lower case ("double precision"); nothing for words that name none.
std::optional<value_kind> kind_named(std::string_view words);

// A type as messages name it: "integer", "text", "reference".
std::string_view sql_name(value_kind kind);

}  // namespace ovsql

#endif  // OVSQL_BINDING_TYPES_HPP_
