#ifndef OVHOST_PLANS_PLAN_DRAWING_HPP_
#define OVHOST_PLANS_PLAN_DRAWING_HPP_

#include <string>

#include "ovhost/plans/plan_words.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// Draws one line for each step, its inputs below it and indented.
OVHOST_API std::string as_tree(const plan_step& root);

// Draws the plan as a Graphviz graph, with an edge for each stream of rows, labelled with its columns.
OVHOST_API std::string as_dot(const plan_step& root);

}  // namespace ovhost

#endif  // OVHOST_PLANS_PLAN_DRAWING_HPP_
