// The names of one query: variables over tables and computed columns. The expressions of its plan are built from them.
//
//   query q;
//   const table_variable flight = q.over("flight", "f");
//   const table_variable from = flight.follow("origin");
//   project({flight["count"], from["city"]}, reach(from, scan(flight, "by_origin")))
#ifndef OVHOST_PLANS_QUERY_HPP_
#define OVHOST_PLANS_QUERY_HPP_

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ov_sql_executor/planning/query_plan.hpp"
#include "ovhost/plans/column_names.hpp"
#include "ovhost/plans/expressions.hpp"
#include "ovhost/schema/catalog.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

struct query_state;

// A variable that stands for one object of a table in each row.
class OVHOST_API table_variable {
 public:
  // Reads a property of the object, which may be inherited. Throws unknown_name.
  expression operator[](std::string_view property) const;

  // Reads the object itself.
  operator expression() const { return variable_; }  // NOLINT(google-explicit-constructor): reads like a[...]

  // Makes a variable for the object that a reference property refers to; reach() or bind() gives it its value. Throws
  // unknown_name, and std::invalid_argument where the property is no reference.
  table_variable follow(std::string_view property) const;

  const physical_queryplan::variable& variable() const { return variable_; }
  const table_info& table() const { return table_; }
  const catalog& names() const;

  // Returns the reference that this variable follows. Throws std::logic_error for a variable that follows none.
  const expression& reference() const;

 private:
  friend class query;
  table_variable(std::shared_ptr<query_state> state, const table_info& table, const std::string& name);

  std::shared_ptr<query_state> state_;
  table_info table_;
  std::string name_;
  physical_queryplan::variable variable_;
  std::shared_ptr<const expression> reference_;
};

// A named value: an assignment where it is computed, an expression above that.
class OVHOST_API computation {
 public:
  computation(physical_queryplan::identifier id, expression value);

  operator expression() const;                                 // NOLINT(google-explicit-constructor)
  operator physical_queryplan::QueryPlan::assignment() const;  // NOLINT(google-explicit-constructor)

  // Gives this column another value, for the other input of a union.
  physical_queryplan::QueryPlan::assignment with(expression other) const;

 private:
  physical_queryplan::computed_column column_;
  expression value_;
};

// A named result of an aggregate: an aggregate where it is computed, an expression above that.
class OVHOST_API aggregation_column {
 public:
  explicit aggregation_column(physical_queryplan::QueryPlan::aggregate aggregate);

  operator expression() const;                                // NOLINT(google-explicit-constructor)
  operator physical_queryplan::QueryPlan::aggregate() const;  // NOLINT(google-explicit-constructor)

 private:
  physical_queryplan::QueryPlan::aggregate aggregate_;
};

// Makes variables and computed columns. They share the query's names and may outlive it. Requires: the catalog's
// context outlives them all.
class OVHOST_API query {
 public:
  explicit query(const catalog& names = catalog());

  // Makes a variable over a table. Throws unknown_name.
  table_variable over(std::string_view table, const std::string& name);

  // Names a value.
  computation define(std::string name, expression value);

  aggregation_column sum(std::string name, expression of);
  aggregation_column count(std::string name, expression of);  // values that are not NULL
  aggregation_column count_rows(std::string name);
  aggregation_column maximum(std::string name, expression of);
  aggregation_column minimum(std::string name, expression of);
  aggregation_column average(std::string name, expression of);  // double for float and double, else decimal
  aggregation_column count_distinct(std::string name, expression of);
  aggregation_column count_distinct_rows(std::string name, std::vector<expression> of);

  const catalog& names() const;
  const column_names& columns() const;

 private:
  std::shared_ptr<query_state> state_;
};

}  // namespace ovhost

#endif  // OVHOST_PLANS_QUERY_HPP_
