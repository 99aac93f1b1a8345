// EXPLAIN: a physical plan in words.
#ifndef OVHOST_PLANS_PLAN_WORDS_HPP_
#define OVHOST_PLANS_PLAN_WORDS_HPP_

#include <string>
#include <vector>

#include "ovhost/plans/column_names.hpp"
#include "ovhost/plans/plans.hpp"
#include "ovhost/schema/catalog.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// One step of a plan: what it does, with what, the columns of its rows, and the steps that it reads from.
struct plan_step {
  std::string does;
  std::vector<std::string> details;
  std::vector<std::string> columns;
  std::vector<plan_step> inputs;
};

// Describes a plan. The metadata name tables, properties and indexes; columns names variables and computed columns.
// Requires: no input of the plan is null. Throws core_error for metadata that cannot be read, and
// std::bad_variant_access for a plan that holds a valueless variant.
OVHOST_API plan_step describe(const plan& of, const catalog& metadata, const column_names& columns = {});

// Returns the names of a result's columns: the items of the plan's root projection in words.
OVHOST_API std::vector<std::string> headings(const plan& of, const catalog& metadata, const column_names& columns = {});

}  // namespace ovhost

#endif  // OVHOST_PLANS_PLAN_WORDS_HPP_
