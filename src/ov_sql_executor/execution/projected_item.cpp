#include "ov_sql_executor/execution/projected_item.hpp"

#include <algorithm>
#include <optional>

namespace ov::sql_executor {

// From the last item to the first, since what counts is what comes later.
std::vector<projected_item> projected_item::make(std::vector<std::unique_ptr<operators::operator_base>> expressions) {
  std::vector<projected_item> items;
  items.reserve(expressions.size());
  for (auto& expression : expressions) items.emplace_back(std::move(expression));
  std::vector<bool> looked_at;  // by position
  for (auto item = items.rbegin(); item != items.rend(); ++item) {
    const std::optional<std::size_t> position = item->expression_.row_position();
    if (!position) break;  // it may look anywhere
    if (*position >= looked_at.size()) looked_at.resize(*position + 1);
    item->position_ = *position;
    item->is_last_look_ = item->expression_.is_row_value() && !looked_at[*position];
    looked_at[*position] = true;
  }
  return items;
}

}  // namespace ov::sql_executor
