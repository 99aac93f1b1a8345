// The equality of the comparison operators, for tables in memory.
//
//    value                                      its key
//    a whole number from -2^63 to 2^63 - 1      int64
//    a whole number from 2^63 to 2^64 - 1       uint64
//    any other whole number of millionths,      Decimal
//    as far as a Decimal's raw value goes
//    any other number, infinities and NaN       double
//    anything else                              itself
//
// So the key of true, uint64 1, Decimal 1.000000 and float 1.0 is int64 1, that of double 0.5 is Decimal 0.500000, and
// that of double 0.1, which is a little more than a tenth, is itself.
#ifndef OV_SQL_EXECUTOR_VALUES_EQUALITY_KEY_HPP_
#define OV_SQL_EXECUTOR_VALUES_EQUALITY_KEY_HPP_

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Two values have equal keys (key_equal of group_key.hpp) exactly when compare_values (comparison.hpp) takes them and
// finds them equal. Only two NULLs have equal keys although nothing is said to be equal to NULL. A NaN's key is not
// equal to itself. Where equality_key is used, keyed_hash hashes the keys: equal values hash alike.
//
// Valid as long as what the view shows. Throws nothing; the view of a valueless value is its own key.
value_view equality_key(const value_view& any);

// Whether two values compare as equal: false for NULL, for a NaN, and for values that do not compare. Throws
// std::bad_variant_access if both are views of valueless values.
bool equality_equal(const value_view& left, const value_view& right);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_EQUALITY_KEY_HPP_
