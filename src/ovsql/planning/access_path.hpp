#ifndef OVSQL_PLANNING_ACCESS_PATH_HPP_
#define OVSQL_PLANNING_ACCESS_PATH_HPP_

#include <cstddef>
#include <vector>

#include "ovhost/plans/plans.hpp"
#include "ovsql/binding/logical.hpp"
#include "ovsql/binding/naming.hpp"

namespace ovsql {

// A condition of a WHERE or ON, and the items that it reads.
struct condition {
  expression test;
  item_set reads;
  bool is_used = false;
};

// A comparison of a table's column with what is known before the table is read.
struct column_bound {
  enum class kind : std::uint8_t { equal, less, at_most, greater, at_least, prefix, null };
  std::size_t column;
  kind comparison;
  const expression* value;  // null for kind::null
  std::size_t condition;    // its position among those given
};

// A way to read a table: an index and how conditions bound its key.
struct access_path {
  const index* through = nullptr;
  std::vector<std::vector<column_bound>> bounds;  // for each leading column of the key
  double rows = 0;                                // an estimate
  bool is_unique = false;                         // gives at most one row
};

// Finds what conditions say of a table's columns. known: the items that can be read before the table is.
std::vector<column_bound> find_bounds(const item& of, const std::vector<const condition*>& conditions,
                                      const item_set& known);

// Chooses the index: equalities with its leading columns and a range of the next one. Among equals, the index with
// fewer columns. Without any bound the whole table. Throws error of kind engine for a table without an index.
access_path choose_path(const table& of, const std::vector<column_bound>& bounds, double row_count);

// The ranges of a Scan through the index.
std::vector<ovhost::scan_range> ranges_of(const access_path& path);

// The column of a variable that an expression reads; nothing for any other expression.
std::optional<std::size_t> column_of(const expression& of, const item& table);

}  // namespace ovsql

#endif  // OVSQL_PLANNING_ACCESS_PATH_HPP_
