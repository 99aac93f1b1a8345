#ifndef OV_SQL_EXECUTOR_PLANNING_SPLIT_CONDITION_HPP_
#define OV_SQL_EXECUTOR_PLANNING_SPLIT_CONDITION_HPP_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "ov_sql_executor/execution/keeping/keyed_condition.hpp"
#include "ov_sql_executor/expressions/expression.hpp"
#include "ov_sql_executor/expressions/scope.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace physical_to_exec {

// Positions of the row stack.
using read_list = std::vector<std::int16_t>;

// A range of positions of the row stack.
struct position_range {
  std::size_t begin;
  std::size_t end;

  bool contains_any(const read_list& reads) const;
};

// A condition, translated: as it stands or, if it begins with an equality and a key may be of use, split after that.
class split_condition {
 public:
  enum class use : bool { as_a_whole, by_key };

  // Throws what translate_expression throws, in the same order, and appends the same constants.
  split_condition(const physical_queryplan::expression& condition, std::vector<ov::sql_executor::value>& constants,
                  const ov::sql_executor::visible_columns& columns, use purpose);

  // What the condition reads.
  const read_list& reads() const { return reads_; }

  // What the key reads, where take_keyed finds one.
  const read_list& key_reads() const { return key_is_left_ ? left_reads_ : right_reads_; }

  // Whether one side of the equality reads the kept row, and nothing that changes while it is kept, and the other side
  // does not read the kept row. take_keyed requires that.
  bool find_key(position_range kept_row, position_range changing);
  ov::sql_executor::keyed_condition take_keyed();

  // The whole condition.
  std::unique_ptr<ov::sql_executor::operators::operator_base> take_whole();

 private:
  using operator_ptr = std::unique_ptr<ov::sql_executor::operators::operator_base>;

  read_list reads_;
  operator_ptr whole_;  // where there is no equality
  operator_ptr left_;
  operator_ptr right_;
  read_list left_reads_;
  read_list right_reads_;
  bool key_is_left_ = false;
  std::vector<operator_ptr> rest_;
};

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_SPLIT_CONDITION_HPP_
