// Commands that change how results are shown.
#include <stdexcept>
#include <string>

#include "commands/command_functions.hpp"
#include "ovhost/values/number_text.hpp"
#include "session.hpp"

namespace shell {
namespace {

bool is_on(const std::string& word) {
  if (word == "on" || word == "yes" || word == "1" || word == "true") return true;
  if (word == "off" || word == "no" || word == "0" || word == "false") return false;
  throw std::runtime_error("\"" + word + "\" is neither on nor off");
}

std::string names_of_modes() {
  std::string names;
  for (const output_mode& each : output_modes()) names += " " + std::string(each.name);
  return names;
}

}  // namespace

void set_mode(session& on, const std::vector<std::string>& arguments) {
  if (arguments.empty()) {
    on.out() << on.settings().mode->name << '\n';
    return;
  }
  const output_mode* const mode = find_output_mode(arguments.front());
  if (mode == nullptr) {
    throw std::runtime_error("there is no mode " + arguments.front() + "; there are" + names_of_modes());
  }
  on.settings().mode = mode;
}

void set_headers(session& on, const std::vector<std::string>& arguments) {
  on.settings().output.headers = is_on(arguments.front());
}

void set_timer(session& on, const std::vector<std::string>& arguments) {
  on.settings().timer = is_on(arguments.front());
}

void set_explain(session& on, const std::vector<std::string>& arguments) {
  on.settings().explain = is_on(arguments.front());
}

void set_bail(session& on, const std::vector<std::string>& arguments) { on.settings().bail = is_on(arguments.front()); }

void set_limit(session& on, const std::vector<std::string>& arguments) {
  const auto limit = ovhost::parse_number<std::size_t>(arguments.front());
  if (!limit) throw std::runtime_error("\"" + arguments.front() + "\" is no number of rows");
  on.settings().limit = *limit;
}

}  // namespace shell
