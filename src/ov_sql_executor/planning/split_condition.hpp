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
#include "ov_sql_executor/planning/foresight.hpp"
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

// A condition, translated: as it stands or, if a key may be of use, with each operand of its AND for itself.
class split_condition {
 public:
  enum class use : bool { as_a_whole, by_key };

  // Throws what translate_expression throws, in the same order, and appends the same constants. computed: see
  // foresight. The condition and the constants must outlive this.
  split_condition(const physical_queryplan::expression& condition, std::vector<ov::sql_executor::value>& constants,
                  const ov::sql_executor::visible_columns& columns, const variable_list& computed, use purpose);

  // What the condition reads.
  const read_list& reads() const { return reads_; }

  // Finds the equalities with a key: one side reads the kept row, and nothing that changes while it is kept, and the
  // other side does not read the kept row. Takes the first operand of the AND, and those of which nothing can raise and
  // that follow nothing else that can. Returns whether there is one, which take_keyed requires.
  bool find_keys(position_range kept_row, position_range changing);

  // What the keys read.
  read_list key_reads() const;

  ov::sql_executor::keyed_condition take_keyed();

  // The whole condition.
  std::unique_ptr<ov::sql_executor::operators::operator_base> take_whole();

 private:
  using operator_ptr = std::unique_ptr<ov::sql_executor::operators::operator_base>;
  using key_side = ov::sql_executor::keyed_equality::key_side;

  // An operand of the AND. What is no comparison is all in left.
  struct conjunct {
    const physical_queryplan::expression* plan;
    operator_ptr left;
    operator_ptr right;
    read_list left_reads;
    read_list right_reads;
    bool knows_operands = false;  // that they cannot raise
    bool knows_test = false;      // likewise the whole
    std::optional<key_side> key;

    bool is_equality() const { return std::holds_alternative<physical_queryplan::Equality>(*plan); }
  };

  void add(const physical_queryplan::expression& each, const ov::sql_executor::visible_columns& columns);
  read_list take_reads(const ov::sql_executor::visible_columns& columns);
  void look_ahead(const foresight& known);
  std::vector<operator_ptr> take_unkeyed();

  std::vector<ov::sql_executor::value>& constants_;
  read_list reads_;
  operator_ptr whole_;  // or else:
  std::vector<conjunct> conjuncts_;
};

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_SPLIT_CONDITION_HPP_
