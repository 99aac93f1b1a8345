#ifndef OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEEPING_POLICY_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEEPING_POLICY_HPP_

#include <cstddef>
#include <cstdint>

namespace ov::sql_executor {

// When the rows of inner sides are kept, and how many. No result depends on it: tests change it to compare. Nobody
// changes it while anything is planned or runs.
struct keeping_policy {
  enum class from : std::uint8_t {
    never,  // plans get none of the nodes that keep rows, and no hashed conditions
    first_start,
    second_start
  };

  from keeps_from = from::second_start;
  std::size_t most_bytes = std::size_t{256} << 20;  // of one side
};

inline constinit keeping_policy current_keeping_policy;

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEEPING_POLICY_HPP_
