#ifndef OVSQL_BINDING_STACK_ROOM_HPP_
#define OVSQL_BINDING_STACK_ROOM_HPP_

#include <cstddef>

#include "ov_sql_executor/support/stack_weights.hpp"
#include "ov_sql_executor/support/thread_stack.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {

// Throws error of kind limit unless the thread's stack has room for one more level of binding or planning.
inline void require_room(std::size_t position = error::nowhere) {
  constexpr std::size_t level = 8 * ov::sql_executor::stack_weights::node;
  if (!ov::sql_executor::has_stack(level)) {
    throw error(error_kind::limit, "this is nested too deeply for the stack", position);
  }
}

}  // namespace ovsql

#endif  // OVSQL_BINDING_STACK_ROOM_HPP_
