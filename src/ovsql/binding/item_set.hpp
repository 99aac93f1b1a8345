#ifndef OVSQL_BINDING_ITEM_SET_HPP_
#define OVSQL_BINDING_ITEM_SET_HPP_

#include <bitset>
#include <cstddef>

namespace ovsql {

// The items of one SELECT: its tables, subqueries, and what is computed once for several uses.
inline constexpr std::size_t most_items = 512;
using item_set = std::bitset<most_items>;

inline bool contains(const item_set& all, const item_set& part) { return (part & ~all).none(); }

}  // namespace ovsql

#endif  // OVSQL_BINDING_ITEM_SET_HPP_
