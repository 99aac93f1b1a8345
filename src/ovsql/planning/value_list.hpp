#ifndef OVSQL_PLANNING_VALUE_LIST_HPP_
#define OVSQL_PLANNING_VALUE_LIST_HPP_

#include <cstddef>
#include <optional>
#include <vector>

#include "ovsql/binding/logical.hpp"

namespace ovsql {

// What an OR of equalities of one column with literals says: column IN (1, 2, 3).
struct value_list {
  std::size_t column;
  std::vector<expression> values;  // of one type, each once, none NULL
};

// Reads a condition on a table's column. Nothing for any other condition, and for literals of different types, which
// could be equal.
std::optional<value_list> find_value_list(const expression& of, const item& table);

}  // namespace ovsql

#endif  // OVSQL_PLANNING_VALUE_LIST_HPP_
