#include "ov_sql_executor/execution/describe.hpp"

#include <vector>

#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

std::string describe(const node& root) {
  struct open_node {
    const node* described;
    std::size_t depth;
  };
  std::string words;
  std::vector<open_node> open = {{&root, 0}};  // the next one last
  while (!open.empty()) {
    const open_node next = open.back();
    open.pop_back();
    const auto* const own = dynamic_cast<const source_node*>(next.described);
    const node_description said =
        own != nullptr ? own->describe() : node_description{"a node of the host's own", {}, {}};
    words += std::string(2 * next.depth, ' ') + said.name + (said.details.empty() ? "" : ", " + said.details) + '\n';
    for (auto each = said.inputs.rbegin(); each != said.inputs.rend(); ++each) {
      open.push_back({&(*each)->child(), next.depth + 1});
    }
  }
  return words;
}

}  // namespace ov::sql_executor
