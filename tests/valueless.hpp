#ifndef TESTS_VALUELESS_HPP_
#define TESTS_VALUELESS_HPP_

#include <gtest/gtest.h>

#include "ov_sql_executor/values/value.hpp"

namespace tests {

// Makes a variant valueless, by an assignment of an alternative that fails. The alternative is one that does not copy
// trivially; of others the library makes a copy first.
template <class Alternative, class Variant>
void make_valueless(Variant& variant) {
  struct failure {
    operator Alternative() const { throw 0; }
  };
  try {
    variant.template emplace<Alternative>(failure());
  } catch (int) {
  }
  ASSERT_TRUE(variant.valueless_by_exception());
}

inline ov::sql_executor::value valueless() {
  ov::sql_executor::value any = true;
  make_valueless<operator_library::Binary>(any);
  return any;
}

}  // namespace tests

#endif  // TESTS_VALUELESS_HPP_
