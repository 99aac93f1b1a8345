#ifndef OV_SQL_EXECUTOR_ERRORS_REQUIRE_VALUE_HPP_
#define OV_SQL_EXECUTOR_ERRORS_REQUIRE_VALUE_HPP_

#include <variant>

namespace error_handling {

// Returns the variant. Throws std::bad_variant_access for a valueless one, with a text of its own: that of std::visit
// differs.
template <class Variant>
const Variant& require_value(const Variant& any) {
  if (any.valueless_by_exception()) throw std::bad_variant_access();
  return any;
}

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_REQUIRE_VALUE_HPP_
