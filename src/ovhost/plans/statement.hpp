#ifndef OVHOST_PLANS_STATEMENT_HPP_
#define OVHOST_PLANS_STATEMENT_HPP_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "ov_sql_executor/execution/runnable.hpp"
#include "ov_sql_executor/planning/plan.hpp"
#include "ovhost/plans/plans.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

using ov::sql_executor::row;
using ov::sql_executor::value;

// A planned query. It may be run any number of times, by several threads with a context each. Owns what it runs.
class OVHOST_API statement {
 public:
  // Plans with the metadata of the thread's metadata context. Throws what physical_to_exec::Plan throws.
  explicit statement(plan of);

  // The types of the result columns.
  const std::vector<physical_to_exec::column_type>& types() const { return types_; }

  // Runs the statement on a context of the core (session::context) and hands each row to take as it is made. parameters
  // are by number. Returns the number of rows. Throws what create_enumerator and next throw (see enumerator.hpp), and
  // what take throws; the run ends then.
  std::size_t run(std::uint64_t context, std::vector<value> parameters, const std::function<void(row&&)>& take) const;

  // Runs the statement and returns all rows.
  std::vector<row> rows(std::uint64_t context, std::vector<value> parameters = {}) const;

 private:
  ov::sql_executor::runnable runnable_;
  std::vector<physical_to_exec::column_type> types_;
};

}  // namespace ovhost

#endif  // OVHOST_PLANS_STATEMENT_HPP_
