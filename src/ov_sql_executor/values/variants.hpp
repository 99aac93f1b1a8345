// Makes variants from variants, so that only value.hpp lists the eleven types of values.
#ifndef OV_SQL_EXECUTOR_VALUES_VARIANTS_HPP_
#define OV_SQL_EXECUTOR_VALUES_VARIANTS_HPP_

#include <variant>

#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

namespace variants {

template <template <class> class Of, class Variant>
struct wrap;
template <template <class> class Of, class... Types>
struct wrap<Of, std::variant<Types...>> {
  using type = std::variant<Of<Types>...>;
};

template <class... Variants>
struct join;
template <class... Types>
struct join<std::variant<Types...>> {
  using type = std::variant<Types...>;
};
template <class... First, class... Second, class... Rest>
struct join<std::variant<First...>, std::variant<Second...>, Rest...>
    : join<std::variant<First..., Second...>, Rest...> {};

}  // namespace variants

// std::variant<Of<bool>, Of<tt_string>, ...>: has an alternative for each alternative of value, in the same order.
template <template <class> class Of>
using one_of_each_type = typename variants::wrap<Of, value>::type;

// Has the alternatives of the first variant, then those of the second, and so on.
template <class... Variants>
using joined_variant = typename variants::join<Variants...>::type;

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_VARIANTS_HPP_
