#ifndef OVSQL_SQL_NAMES_HPP_
#define OVSQL_SQL_NAMES_HPP_

#include <string>
#include <string_view>

namespace shell {

// A name as a statement has it, in quotes where it needs them.
std::string sql_name(std::string_view name);

// Compares names as SQL does, without regard to the case of ASCII letters.
bool is_same_name(std::string_view left, std::string_view right);

}  // namespace shell

#endif  // OVSQL_SQL_NAMES_HPP_
