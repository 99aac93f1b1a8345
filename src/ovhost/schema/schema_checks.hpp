#ifndef OVHOST_SCHEMA_SCHEMA_CHECKS_HPP_
#define OVHOST_SCHEMA_SCHEMA_CHECKS_HPP_

#include <vector>

#include "ovhost/schema/catalog.hpp"
#include "ovhost/schema/schema.hpp"

namespace ovhost {

// Throw schema_error or unknown_name for a definition that is not possible.
void check_tables(const catalog& existing, const std::vector<table_definition>& definitions);
void check_index(const catalog& existing, const index_definition& definition);

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_SCHEMA_CHECKS_HPP_
