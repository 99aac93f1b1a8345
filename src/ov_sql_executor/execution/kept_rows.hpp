#ifndef OV_SQL_EXECUTOR_EXECUTION_KEPT_ROWS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEPT_ROWS_HPP_

#include <boost/container/deque.hpp>
#include <cstddef>

#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// Rows put aside by the million, one behind the other in large blocks that never move: no allocation for each.
class kept_rows {
 public:
  struct place {
    std::size_t first;  // position of its first value among all
    std::size_t width;
  };

  // Moves the values from position start on off the row stack.
  place take(execution_context& context, std::size_t start);

  // Appends the values of a row to the row stack; they are gone from here.
  void give(const place& from, execution_context& context);

  // Says that a row will be given soon.
  void expect(const place& from) const;

 private:
  using blocks = boost::container::deque_options_t<boost::container::block_size<1024U>>;
  boost::container::deque<value, void, blocks> values_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEPT_ROWS_HPP_
