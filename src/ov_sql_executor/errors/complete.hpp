#ifndef OV_SQL_EXECUTOR_ERRORS_COMPLETE_HPP_
#define OV_SQL_EXECUTOR_ERRORS_COMPLETE_HPP_

#include <variant>

namespace error_handling {

// The same variant, which holds something. Throws std::bad_variant_access with its own text for a valueless one; the
// standard library's visit throws the same exception with another text.
template <class Variant>
const Variant& complete(const Variant& any) {
  if (any.valueless_by_exception()) throw std::bad_variant_access();
  return any;
}

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_COMPLETE_HPP_
