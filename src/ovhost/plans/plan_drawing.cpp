#include "ovhost/plans/plan_drawing.hpp"

#include <cstddef>
#include <string_view>

#include "ovhost/plans/join_words.hpp"

namespace ovhost {
namespace {

void add_tree(std::string& to, const plan_step& step, std::size_t depth) {
  to += std::string(2 * depth, ' ') + step.does;
  if (!step.details.empty()) to += ": " + join_words(step.details, "; ");
  to += '\n';
  for (const plan_step& input : step.inputs) add_tree(to, input, depth + 1);
}

std::string dot_string(std::string_view text) {
  std::string result = "\"";
  for (const char each : text) {
    if (each == '"' || each == '\\') result += '\\';
    result += each;
  }
  return result + "\"";
}

// Makes a label of several lines; \l ends a line that stands to the left.
std::string dot_label(const std::vector<std::string>& lines) {
  std::string result = "\"";
  for (const std::string& line : lines) {
    const std::string quoted = dot_string(line);
    result += quoted.substr(1, quoted.size() - 2) + "\\l";
  }
  return result + "\"";
}

// Numbers steps in the order in which they are drawn. Returns the number of this one.
std::size_t add_dot(std::string& to, const plan_step& step, std::size_t& next) {
  const std::size_t number = next++;
  std::vector<std::string> lines = {step.does};
  lines.insert(lines.end(), step.details.begin(), step.details.end());
  to += "  step" + std::to_string(number) + " [label=" + dot_label(lines) + "];\n";
  for (const plan_step& input : step.inputs) {
    const std::size_t from = add_dot(to, input, next);
    to += "  step" + std::to_string(from) + " -> step" + std::to_string(number) +
          " [label=" + dot_string(join_words(input.columns, ", ")) + "];\n";
  }
  return number;
}

}  // namespace

std::string as_tree(const plan_step& root) {
  std::string result;
  add_tree(result, root, 0);
  return result;
}

std::string as_dot(const plan_step& root) {
  std::string result =
      "digraph plan {\n  rankdir=BT;\n  node [shape=box, fontname=\"sans-serif\"];\n"
      "  edge [fontname=\"sans-serif\"];\n";
  std::size_t next = 0;
  add_dot(result, root, next);
  return result + "}\n";
}

}  // namespace ovhost
