// Commands about tables and views.
#include <algorithm>
#include <stdexcept>
#include <string>

#include "commands/command_functions.hpp"
#include "session.hpp"
#include "sql_names.hpp"

namespace shell {
namespace {

bool holds(const std::string& name, const std::vector<std::string>& part) {
  return part.empty() || name.find(part.front()) != std::string::npos;
}

std::vector<std::string> tables_and_views(session& on) {
  std::vector<std::string> names = on.database().tables();
  const std::vector<std::string> views = on.database().views();
  names.insert(names.end(), views.begin(), views.end());
  std::sort(names.begin(), names.end());
  return names;
}

// Returns how many there were.
std::size_t show_all(session& on, const std::vector<std::string>& names, const std::vector<std::string>& wanted) {
  std::size_t shown = 0;
  for (const std::string& each : names) {
    if (!wanted.empty() && !is_same_name(each, wanted.front())) continue;
    for (const std::string& statement : on.database().schema(each)) on.out() << statement << '\n';
    ++shown;
  }
  return shown;
}

}  // namespace

void show_tables(session& on, const std::vector<std::string>& arguments) {
  for (const std::string& each : tables_and_views(on)) {
    if (holds(each, arguments)) on.out() << each << '\n';
  }
}

void show_schema(session& on, const std::vector<std::string>& arguments) {
  const std::size_t tables = show_all(on, on.database().tables(), arguments);
  const std::size_t views = show_all(on, on.database().views(), arguments);
  if (!arguments.empty() && tables + views == 0) throw std::runtime_error("there is no table " + arguments.front());
}

}  // namespace shell
