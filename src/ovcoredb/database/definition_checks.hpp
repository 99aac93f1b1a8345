// What the host hands in, held against the rules of database.hpp. Everything that breaks one is a
// std::invalid_argument.
#ifndef OVCOREDB_DATABASE_DEFINITION_CHECKS_HPP_
#define OVCOREDB_DATABASE_DEFINITION_CHECKS_HPP_

#include <cstdint>
#include <span>
#include <vector>

#include "ovcoredb/database.hpp"
#include "ovcoredb/index/key_part.hpp"
#include "ovcoredb/storage/object_store.hpp"

namespace ovcoredb {

const table& existing_table(const object_store& objects, std::uint16_t tag);
void check_table(const object_store& objects, const table_definition& definition);
void check_cells(const table& to, std::span<const cell> cells);

// The key of an index over `on`.
std::vector<key_part> resolve_key(const table& on, std::span<const key_column> columns);

}  // namespace ovcoredb

#endif  // OVCOREDB_DATABASE_DEFINITION_CHECKS_HPP_
