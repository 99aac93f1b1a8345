#ifndef AIRPORTS_DEMO_QUERY_HPP_
#define AIRPORTS_DEMO_QUERY_HPP_

#include <functional>
#include <string>
#include <vector>

#include "ovhost/plans/plans.hpp"
#include "ovhost/plans/statement.hpp"

// A query of the demo: what it shows, and how its plan is built.
struct demo_query {
  std::string name;
  std::string shows;
  std::function<ovhost::plan(ovhost::query&)> build;
  std::vector<ovhost::value> parameters = {};
};

// Scans of every kind, filters, projections, references and parameters.
std::vector<demo_query> reading_queries();

// Arithmetic, CASE, LIKE, concatenation, conversions, three-valued logic and type tests.
std::vector<demo_query> expression_queries();

// Joins, grouping, ordering, limits and unions.
std::vector<demo_query> relational_queries();

#endif  // AIRPORTS_DEMO_QUERY_HPP_
