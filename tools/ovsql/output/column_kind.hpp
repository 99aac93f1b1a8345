#ifndef OVSQL_OUTPUT_COLUMN_KIND_HPP_
#define OVSQL_OUTPUT_COLUMN_KIND_HPP_

#include "ovsql/session/statement.hpp"

namespace shell {

inline bool is_number(ovsql::value_kind kind) {
  using enum ovsql::value_kind;
  return kind == uint64 || kind == int64 || kind == decimal || kind == float64 || kind == float32;
}

}  // namespace shell

#endif  // OVSQL_OUTPUT_COLUMN_KIND_HPP_
