#include "ovsql/planning/value_list.hpp"

#include <algorithm>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/naming.hpp"
#include "ovsql/planning/access_path.hpp"

namespace ovsql {
namespace {

using namespace physical_queryplan;

// A whole number or a text that is written out: equal ones of one type are the same.
bool is_plain(const expression& of) {
  const auto* const written = std::get_if<literal>(&of);
  return written != nullptr &&
         (std::holds_alternative<std::int64_t>(*written) || std::holds_alternative<db_string::tt_string>(*written));
}

bool is_null(const expression& of) {
  const auto* const written = std::get_if<literal>(&of);
  return written != nullptr && std::holds_alternative<NullValue>(*written);
}

// Adds one equality. False where it is none, of another column, or of a literal of another type.
bool add(const expression& of, const item& table, std::optional<value_list>& into) {
  if (!std::holds_alternative<Equality>(of)) return false;
  const std::vector<expression>& operands = find_operation(of)->operands;
  const auto column = column_of(operands[0], table);
  if (!column || (into && into->column != *column)) return false;
  if (!into) into = value_list{*column, {}};
  if (is_null(operands[1])) return true;
  if (!is_plain(operands[1])) return false;
  if (!into->values.empty() && ovhost::kind_of(into->values.front()) != ovhost::kind_of(operands[1])) return false;
  into->values.push_back(operands[1]);
  return true;
}

}  // namespace

std::optional<value_list> find_value_list(const expression& of, const item& table) {
  if (!std::holds_alternative<Or>(of)) return std::nullopt;
  std::optional<value_list> found;
  std::vector<const expression*> pending = {&of};
  while (!pending.empty()) {
    const expression& next = *pending.back();
    pending.pop_back();
    if (std::holds_alternative<Or>(next)) {
      for (const expression& each : find_operation(next)->operands) pending.push_back(&each);
    } else if (!add(next, table, found)) {
      return std::nullopt;
    }
  }
  if (found->values.empty()) return std::nullopt;
  std::sort(found->values.begin(), found->values.end(),
            [](const expression& left, const expression& right) { return structural_order(left, right) < 0; });
  found->values.erase(std::unique(found->values.begin(), found->values.end(), same_expression), found->values.end());
  return found;
}

}  // namespace ovsql
