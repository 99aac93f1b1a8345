#ifndef OVHOST_PLANS_COLUMN_NAMES_HPP_
#define OVHOST_PLANS_COLUMN_NAMES_HPP_

#include <map>
#include <string>

#include "ov_sql_executor/expressions/column_ref.hpp"

namespace ovhost {

// The names of the variables and computed columns of a query; a plan has only their identifiers.
using column_names = std::map<physical_queryplan::identifier, std::string>;

}  // namespace ovhost

#endif  // OVHOST_PLANS_COLUMN_NAMES_HPP_
