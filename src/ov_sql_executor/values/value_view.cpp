#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

namespace {

using operator_library::Binary;
using operator_library::SetSpecifier;

// Calls make with the alternative of value and the arguments that build it from the view.
template <class Make>
decltype(auto) build(const value_view& view, Make make) {
  return visit_view(
      [&]<class View>(const View& seen) -> decltype(auto) {
        if constexpr (std::is_same_v<View, std::monostate>) {
          throw std::bad_variant_access();
          return make(std::in_place_type<bool>, false);
        } else if constexpr (std::is_same_v<View, text_view>) {
          return make(std::in_place_type<db_string::tt_string>, seen.bytes.data(), seen.bytes.size());
        } else if constexpr (std::is_same_v<View, binary_view>) {
          return make(std::in_place_type<Binary>, Binary{{seen.bytes.begin(), seen.bytes.end()}});
        } else if constexpr (std::is_same_v<View, std::u16string_view>) {
          return make(std::in_place_type<SetSpecifier>, SetSpecifier{std::u16string(seen)});
        } else {
          return make(std::in_place_type<View>, seen);
        }
      },
      view);
}

}  // namespace

value to_value(const value_view& view) {
  return build(view, []<class Type, class... Arguments>(Type type, Arguments&&... arguments) {
    return value(type, std::forward<Arguments>(arguments)...);
  });
}

void append_value(std::vector<value>& list, const value_view& view) {
  build(view, [&]<class Type, class... Arguments>(Type type, Arguments&&... arguments) {
    list.emplace_back(type, std::forward<Arguments>(arguments)...);
  });
}

}  // namespace ov::sql_executor
