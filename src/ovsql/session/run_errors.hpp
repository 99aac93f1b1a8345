#ifndef OVSQL_SESSION_RUN_ERRORS_HPP_
#define OVSQL_SESSION_RUN_ERRORS_HPP_

#include <cstddef>
#include <exception>
#include <vector>

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql {

// Turns what the executor, the core or the host library threw into an error of this library. divisions: where the
// statement divides. std::bad_alloc and errors of this library are thrown again as they are.
[[noreturn]] void raise_as_error(const std::exception_ptr& thrown, const std::vector<syntax::place>& divisions);

// Calls a function and turns what it throws into errors of this library.
template <class Function>
auto with_errors(const std::vector<syntax::place>& divisions, Function&& function) {
  try {
    return function();
  } catch (...) {
    raise_as_error(std::current_exception(), divisions);
  }
}

}  // namespace ovsql

#endif  // OVSQL_SESSION_RUN_ERRORS_HPP_
