#ifndef OV_SQL_EXECUTOR_EXECUTION_ENUMERATOR_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ENUMERATOR_HPP_

#include <optional>

#include "ov_sql_executor/errors/export.hpp"
#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// One run of a node: hands out its rows one at a time. Owns the enumerators below it and what they opened in the core;
// refers into its node, which must outlive it. Destructors do not throw.
class OV_SQL_EXECUTOR_API enumerator {
 public:
  // The next row, owned by the caller, or nothing at the end and on every later call. The context is that of the whole
  // run; its row stack is as long afterwards as before. After an exception the enumerator and the context are
  // discarded.
  //
  // Throws, as does opening one (node::create_enumerator)
  //   db_util::db_exception        a status of the core, whatever it is, or one of the codes of db_exception.hpp; among
  //                                them 7041 for a NaN in ORDER BY, Maximum or Minimum
  //   error_handling::OVException  7042 for a LIKE pattern with an escape before nothing special; 7022 where the
  //                                plan is too deep for this thread's stack
  //   std::logic_error             "incompatible types": values of two types in ORDER BY, Maximum or Minimum; an index
  //                                key of float or double; a prefix of a key column of numbers
  //   std::out_of_range            a parameter that was not supplied; ranges for more columns than the index has
  //   std::bad_variant_access      a valueless value; a property of something that is no reference
  //   std::length_error            more than 2^32 groups, or distinct rows
  //   std::bad_alloc, and std::runtime_error where the system has no random numbers to hash by
  // share/doc/ov_sql_executor/operations.md says which operation raises what.
  virtual std::optional<row> next(execution_context& context) = 0;

  virtual ~enumerator() = default;

  enumerator(const enumerator&) = delete;
  enumerator& operator=(const enumerator&) = delete;

 protected:
  enumerator() = default;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ENUMERATOR_HPP_
