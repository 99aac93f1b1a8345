#ifndef OV_SQL_EXECUTOR_EXECUTION_GROUP_ACCUMULATORS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_GROUP_ACCUMULATORS_HPP_

#include <cstddef>
#include <vector>

#include "ov_sql_executor/execution/aggregate.hpp"

namespace ov::sql_executor {

// The accumulators of each group, side by side. They lie in blocks that never move, each for as many groups as all
// before it, and a few more.
class group_accumulators {
 public:
  // The list of aggregates must outlive it.
  explicit group_accumulators(const std::vector<aggregate_entry>& aggregates) : aggregates_(aggregates) {}

  // The next group, with fresh accumulators.
  void add_group();

  // The first accumulator of a group, by number.
  accumulator* of(std::size_t group);

 private:
  struct place {
    std::size_t block;
    std::size_t group;  // within the block
  };
  static place find(std::size_t group);

  const std::vector<aggregate_entry>& aggregates_;
  std::size_t count_ = 0;
  std::vector<std::vector<accumulator>> blocks_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUP_ACCUMULATORS_HPP_
