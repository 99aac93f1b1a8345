// The value that every expression yields and every row holds.
#ifndef OV_SQL_EXECUTOR_VALUES_VALUE_HPP_
#define OV_SQL_EXECUTOR_VALUES_VALUE_HPP_

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "ov_sql_executor/values/decimal.hpp"
#include "ov_sql_executor/values/tt_string.hpp"
#include "ovcoredb/ovcoredb.h"

namespace operator_library {

// An owned byte sequence.
struct Binary {
  std::vector<std::uint8_t> bytes;
};

// The set of objects of a type, named by UTF-16 units; a derived type's specifier begins with its base's.
struct SetSpecifier {
  std::u16string units;
};

// The SQL NULL. There is no other mark for a missing value.
struct NullValue {};

}  // namespace operator_library

namespace ov::sql_executor {

// The order of the alternatives is part of the interface. An assignment that throws leaves a value valueless; every
// dispatch over it throws std::bad_variant_access.
using value =
    std::variant<bool, db_string::tt_string, std::uint64_t, std::int64_t, operator_library::Decimal, double, float,
                 operator_library::Binary, OV_OBJ_REF, operator_library::SetSpecifier, operator_library::NullValue>;

// Rows are made, moved and destroyed by the million.
static_assert(sizeof(value) <= 40);

// The values of one tuple, in column order. The node that produces it fixes its width.
using row = std::vector<value>;

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_VALUE_HPP_
