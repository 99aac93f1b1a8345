// Decides how a query gets its rows: through which indexes, in which order tables are joined, where conditions are
// tested. docs/sql.md says how.
#ifndef OVSQL_PLANNING_PLANNER_HPP_
#define OVSQL_PLANNING_PLANNER_HPP_

#include <functional>
#include <optional>
#include <vector>

#include "ovhost/plans/plans.hpp"
#include "ovsql/binding/logical.hpp"
#include "ovsql/binding/naming.hpp"
#include "ovsql/planning/access_path.hpp"

namespace ovsql {

using ovhost::plan;

// A tree of unions that is no deeper than needed.
plan unite_all(std::vector<plan>& parts);

class planner {
 public:
  // row_count: about how many rows a table has.
  planner(naming& names, std::function<double(const table&)> row_count)
      : names_(names), row_count_(std::move(row_count)) {}

  // The plan of a query, whose rows have its outputs' columns. A query without outputs gives rows of its mark.
  plan make(query of) const;

  // A new column for a value.
  assignment name_value(const expression& of) const;

 private:
  friend class arrangement;

  plan make_body(select_body of, std::vector<order_key>& order, bool is_plain) const;
  std::optional<plan> find_extreme(const select_body& of) const;
  plan make_body(values_body&& of) const;
  plan make_body(union_body of) const;

  naming& names_;
  std::function<double(const table&)> row_count_;
};

}  // namespace ovsql

#endif  // OVSQL_PLANNING_PLANNER_HPP_
