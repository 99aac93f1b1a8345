#include "options.hpp"

#include <stdexcept>
#include <string_view>

#include "ovhost/values/number_text.hpp"

namespace {

std::size_t parse_count(std::string_view text) {
  if (const auto count = ovhost::parse_number<std::size_t>(text)) return *count;
  throw std::invalid_argument("\"" + std::string(text) + "\" is no number of rows");
}

// Options with a value.
void set(options& result, std::string_view option, const std::string& value) {
  if (option == "--query") {
    result.queries.push_back(value);
  } else if (option == "--rows") {
    result.rows = parse_count(value);
  } else if (option == "--dot") {
    result.dot = value;
  } else if (option == "--data") {
    result.data = value;
  } else {
    throw std::invalid_argument("unknown option " + std::string(option));
  }
}

}  // namespace

options parse_options(int count, const char* const* arguments) {
  options result;
  for (int at = 1; at < count; ++at) {
    const std::string_view option = arguments[at];
    if (option == "--help") {
      result.help = true;
    } else if (option == "--list") {
      result.list = true;
    } else if (at + 1 < count) {
      set(result, option, arguments[++at]);
    } else {
      throw std::invalid_argument("unknown option " + std::string(option) + ", or its value is missing");
    }
  }
  return result;
}
