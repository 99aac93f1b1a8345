// What the dot commands do. Each throws std::runtime_error with what the user should know.
#ifndef OVSQL_COMMANDS_COMMAND_FUNCTIONS_HPP_
#define OVSQL_COMMANDS_COMMAND_FUNCTIONS_HPP_

#include <string>
#include <vector>

namespace shell {

class session;

using command_function = void(session& on, const std::vector<std::string>& arguments);

command_function show_help, print_text, quit, read_script, set_output;
command_function set_mode, set_headers, set_timer, set_explain, set_limit, set_bail;
command_function show_tables, show_schema, import_file;

}  // namespace shell

#endif  // OVSQL_COMMANDS_COMMAND_FUNCTIONS_HPP_
