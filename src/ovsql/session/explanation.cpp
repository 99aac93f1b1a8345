#include <sstream>

#include "ovhost/plans/plan_drawing.hpp"
#include "ovhost/plans/plan_words.hpp"
#include "ovsql/session/statement_state.hpp"

namespace ovsql {
namespace {

std::string json_text(std::string_view of) {
  std::string made = "\"";
  for (const char each : of) {
    if (each == '"' || each == '\\') made += '\\';
    if (static_cast<unsigned char>(each) < 0x20) {
      constexpr std::string_view digits = "0123456789abcdef";
      made += std::string("\\u00") + digits[static_cast<unsigned char>(each) >> 4U] + digits[each & 15];
    } else {
      made += each;
    }
  }
  return made + "\"";
}

std::string json_list(const std::vector<std::string>& of) {
  std::string made = "[";
  for (const std::string& each : of) made += (made.size() > 1 ? ", " : "") + json_text(each);
  return made + "]";
}

std::string as_json(const ovhost::plan_step& of, const std::string& indent) {
  std::string made = indent + "{\"does\": " + json_text(of.does) + ", \"details\": " + json_list(of.details) +
                     ", \"columns\": " + json_list(of.columns) + ", \"inputs\": [";
  for (const ovhost::plan_step& each : of.inputs) {
    made += (&each == &of.inputs.front() ? "\n" : ",\n") + as_json(each, indent + "  ");
  }
  return made + "]}";
}

}  // namespace

std::vector<std::string> explain(database_state& db, const physical_queryplan::QueryPlan::PredicateVariant& of,
                                 const naming& names, syntax::explain_format format) {
  const ovhost::plan_step root = ovhost::describe(of, ovhost::catalog(db.context->handle()), names.column_names());
  std::string text;
  switch (format) {
    case syntax::explain_format::text:
      text = ovhost::as_tree(root);
      break;
    case syntax::explain_format::dot:
      text = ovhost::as_dot(root);
      break;
    case syntax::explain_format::json:
      text = as_json(root, "");
      break;
  }
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace ovsql
