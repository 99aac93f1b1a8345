#ifndef OV_SQL_EXECUTOR_VALUES_NUMERIC_TYPE_HPP_
#define OV_SQL_EXECUTOR_VALUES_NUMERIC_TYPE_HPP_

#include <concepts>
#include <cstdint>

#include "ov_sql_executor/values/decimal.hpp"

namespace ov::sql_executor {

// The alternatives that denote a number; false is 0 and true is 1. Names exact types, so that nothing converts on the
// way.
template <class T>
concept integer_alternative = std::same_as<T, bool> || std::same_as<T, std::uint64_t> || std::same_as<T, std::int64_t>;

template <class T>
concept floating_alternative = std::same_as<T, double> || std::same_as<T, float>;

template <class T>
concept numeric_alternative =
    integer_alternative<T> || floating_alternative<T> || std::same_as<T, operator_library::Decimal>;

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_NUMERIC_TYPE_HPP_
