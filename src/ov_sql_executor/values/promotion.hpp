#ifndef OV_SQL_EXECUTOR_VALUES_PROMOTION_HPP_
#define OV_SQL_EXECUTOR_VALUES_PROMOTION_HPP_

#include <concepts>
#include <cstdint>
#include <type_traits>

#include "ov_sql_executor/values/numeric_type.hpp"

namespace ov::sql_executor {

// The place of a numeric type in the order of promotion.
template <numeric_alternative T>
inline constexpr int promotion_rank = std::same_as<T, bool>                        ? 0
                                      : std::same_as<T, std::uint64_t>             ? 1
                                      : std::same_as<T, std::int64_t>              ? 2
                                      : std::same_as<T, operator_library::Decimal> ? 3
                                      : std::same_as<T, float>                     ? 4
                                                                                   : 5;

// The type to which arithmetic brings two numbers: the later one in the order of promotion. Two unsigned numbers become
// signed.
template <numeric_alternative Left, numeric_alternative Right>
using common_number =
    std::conditional_t<std::same_as<Left, std::uint64_t> && std::same_as<Right, std::uint64_t>, std::int64_t,
                       std::conditional_t<(promotion_rank<Left> < promotion_rank<Right>), Right, Left>>;

// The types that arithmetic works on. Other numbers take part by promotion only.
template <class T>
concept arithmetic_alternative =
    std::same_as<T, std::int64_t> || std::same_as<T, operator_library::Decimal> || floating_alternative<T>;

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_PROMOTION_HPP_
