#include "ov_sql_executor/execution/kept_value.hpp"

#include <type_traits>
#include <utility>

namespace ov::sql_executor {

value_view kept_value::view() const {
  return std::visit(
      []<class Held>(const Held& held) -> value_view {
        if constexpr (std::is_pointer_v<Held>) {
          return view_of(*held);
        } else {
          return held;
        }
      },
      held_);
}

void kept_value::become(const value_view& other, std::forward_list<value>& elsewhere) {
  visit_view(
      [&]<class View>(const View& seen) {
        if constexpr (std::is_constructible_v<decltype(held_), std::in_place_type_t<View>, const View&>) {
          held_ = seen;
        } else if (value* const* place = std::get_if<value*>(&held_)) {
          **place = to_value(other);
        } else {
          held_ = &elsewhere.emplace_front(to_value(other));
        }
      },
      other);
}

}  // namespace ov::sql_executor
