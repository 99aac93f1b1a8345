// Shows a value where it lies: in a list of the execution context, in a buffer that the core lends, or in registers.
#ifndef OV_SQL_EXECUTOR_VALUES_VALUE_VIEW_HPP_
#define OV_SQL_EXECUTOR_VALUES_VALUE_VIEW_HPP_

#include <boost/mp11/algorithm.hpp>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// The bytes of an encoded text; not owned.
struct text_view {
  std::span<const std::uint8_t> bytes;
};

// The bytes of a Binary; not owned.
struct binary_view {
  std::span<const std::uint8_t> bytes;
};

// One alternative for the valueless state, then those of value in the same order: the index of a view is the index of
// the value plus one. Texts, binaries and set specifiers are borrowed; everything else is held.
using value_view =
    std::variant<std::monostate, bool, text_view, std::uint64_t, std::int64_t, operator_library::Decimal, double, float,
                 binary_view, OV_OBJ_REF, std::u16string_view, operator_library::NullValue>;

static_assert(std::is_trivially_copyable_v<value_view>);

inline constexpr std::size_t view_count = std::variant_size_v<value_view>;

// Calls visitor as std::visit does, but through a switch, which lets the compiler see what happens to each alternative.
// std::visit calls through a table where there are more than eleven.
template <class Visitor>
decltype(auto) visit_view(Visitor&& visitor, const value_view& view) {
  return boost::mp11::mp_with_index<view_count>(
      view.index(), [&](auto index) -> decltype(auto) { return visitor(*std::get_if<index()>(&view)); });
}

// Tells whether what a view shows lies outside of the view.
inline bool borrows(const value_view& view) {
  return std::holds_alternative<text_view>(view) || std::holds_alternative<binary_view>(view) ||
         std::holds_alternative<std::u16string_view>(view);
}

// The alternative of value_view that shows an alternative of value.
template <class T>
using view_alternative = std::conditional_t<
    std::is_same_v<T, db_string::tt_string>, text_view,
    std::conditional_t<std::is_same_v<T, operator_library::Binary>, binary_view,
                       std::conditional_t<std::is_same_v<T, operator_library::SetSpecifier>, std::u16string_view, T>>>;

// Returns the view of a value. Valid until: the value changes or moves.
inline value_view view_of(const value& source) {
  if (source.valueless_by_exception()) return {};
  return std::visit(
      []<class T>(const T& held) -> value_view {
        if constexpr (std::is_same_v<T, db_string::tt_string>) {
          return text_view{{held.data(), held.size()}};
        } else if constexpr (std::is_same_v<T, operator_library::Binary>) {
          return binary_view{held.bytes};
        } else if constexpr (std::is_same_v<T, operator_library::SetSpecifier>) {
          return std::u16string_view(held.units);
        } else {
          return held;
        }
      },
      source);
}

// Calls make with the alternative of value that a view's alternative shows, and with the arguments that build it.
template <class View, class Make>
decltype(auto) build_from_view(const View& seen, Make make) {
  if constexpr (std::is_same_v<View, std::monostate>) {
    throw std::bad_variant_access();
    return make(std::in_place_type<bool>, false);
  } else if constexpr (std::is_same_v<View, text_view>) {
    return make(std::in_place_type<db_string::tt_string>, seen.bytes.data(), seen.bytes.size());
  } else if constexpr (std::is_same_v<View, binary_view>) {
    return make(std::in_place_type<operator_library::Binary>,
                operator_library::Binary{{seen.bytes.begin(), seen.bytes.end()}});
  } else if constexpr (std::is_same_v<View, std::u16string_view>) {
    return make(std::in_place_type<operator_library::SetSpecifier>,
                operator_library::SetSpecifier{std::u16string(seen)});
  } else {
    return make(std::in_place_type<View>, seen);
  }
}

[[gnu::noinline]] void grow_list(std::vector<value>& list);

// Appends a value to a list that hardly ever grows. Grows out of line.
template <class Alternative>
void append_in_place(std::vector<value>& list, Alternative&& alternative) {
  if (list.size() == list.capacity()) grow_list(list);
  if (list.size() == list.capacity()) __builtin_unreachable();
  list.emplace_back(std::forward<Alternative>(alternative));
}

// Copies what a view shows. Throws std::bad_variant_access for the view of a valueless value.
value to_value(const value_view& view);

// Copies what a view shows to the end of a list, where it is built in place. Throws as to_value does.
void append_value(std::vector<value>& list, const value_view& view);

// Copies what one alternative of a view shows to the end of a list.
template <class View>
void append_from_view(std::vector<value>& list, const View& seen) {
  build_from_view(seen, [&list]<class Type, class... Arguments>(Type type, Arguments&&... arguments) {
    list.emplace_back(type, std::forward<Arguments>(arguments)...);
  });
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_VALUE_VIEW_HPP_
