#ifndef OV_SQL_EXECUTOR_ERRORS_SUBSCRIPT_HPP_
#define OV_SQL_EXECUTOR_ERRORS_SUBSCRIPT_HPP_

#include <cstddef>
#include <stdexcept>

namespace error_handling {

[[noreturn]] inline void raise_invalid_subscript() { throw std::out_of_range("invalid vector<T> subscript"); }

// Element index of a vector. Throws std::out_of_range "invalid vector<T> subscript" where there is none.
template <class Vector>
decltype(auto) element_at(Vector& elements, std::size_t index) {
  if (index >= elements.size()) raise_invalid_subscript();
  return elements[index];
}

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_SUBSCRIPT_HPP_
