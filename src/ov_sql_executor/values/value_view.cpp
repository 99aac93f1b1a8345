#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

value to_value(const value_view& view) {
  return visit_view(
      [](const auto& seen) {
        return build_from_view(seen, []<class Type, class... Arguments>(Type type, Arguments&&... arguments) {
          return value(type, std::forward<Arguments>(arguments)...);
        });
      },
      view);
}

void append_value(std::vector<value>& list, const value_view& view) {
  visit_view([&list](const auto& seen) { append_from_view(list, seen); }, view);
}

void grow_list(std::vector<value>& list) { list.reserve(2 * list.size() + 1); }

}  // namespace ov::sql_executor
