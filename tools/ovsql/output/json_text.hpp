#ifndef OVSQL_OUTPUT_JSON_TEXT_HPP_
#define OVSQL_OUTPUT_JSON_TEXT_HPP_

#include <string>
#include <string_view>

#include "ovsql/session/statement.hpp"

namespace shell {

// A text in JSON's quotes.
std::string json_string(std::string_view utf8);

// A row as an object: {"name": "Ely", "people": 20574}. NULL and doubles that JSON has no number for are null.
std::string json_object(const ovsql::statement& row);

}  // namespace shell

#endif  // OVSQL_OUTPUT_JSON_TEXT_HPP_
