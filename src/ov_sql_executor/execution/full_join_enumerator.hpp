#ifndef OV_SQL_EXECUTOR_EXECUTION_FULL_JOIN_ENUMERATOR_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_FULL_JOIN_ENUMERATOR_HPP_

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "ov_sql_executor/execution/keeping/keyed_condition.hpp"
#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/execution/rows/kept_rows.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// A full join with a condition, which is tested with a left row and then a right row on the row stack. Right rows are
// moved there and back; they are copied only into results. The right rows are hashed by the key of a keyed condition
// while they are tested with the first left row; later left rows look only at those that may match.
class full_join_enumerator final : public row_source {
 public:
  // Requires one of the conditions.
  full_join_enumerator(input_rows left, input_rows right, const std::optional<operators::operand>& condition,
                       const std::optional<keyed_condition>& keyed_condition, std::uint64_t left_width,
                       std::uint64_t right_width)
      : condition_(condition),
        keyed_condition_(keyed_condition),
        left_width_(left_width),
        right_width_(right_width),
        left_(std::move(left)),
        right_(std::move(right)) {
    if (keyed_condition_) index_ = keyed_condition_->make_index();
  }

  bool push_next(execution_context& context) override;
  void restart(execution_context& context, opening how) override;

 private:
  enum class state { needs_left_row, left_row_unmatched, left_row_matched, left_exhausted };

  void forget_right_side();
  void read_right_side(execution_context& context);
  bool push_left_row(execution_context& context);
  bool push_matching_right_row(execution_context& context, std::size_t left_start);
  bool push_unmatched_right_row(execution_context& context);

  std::optional<candidate> next_candidate();
  bool holds(const candidate& right_row, execution_context& context);
  bool is_hashed() const { return keyed_condition_ && index_.size() == right_rows_.size(); }

  const std::optional<operators::operand>& condition_;  // the node's, like the next
  const std::optional<keyed_condition>& keyed_condition_;
  std::uint64_t left_width_;
  std::uint64_t right_width_;
  state state_ = state::needs_left_row;
  input_rows left_;
  input_rows right_;  // until it has been read
  row left_row_;      // the current one, while it is not on the row stack
  kept_rows right_rows_{kept_rows::access::repeated};
  std::vector<bool> right_matched_;
  std::size_t cursor_ = 0;  // the next of the right rows to look at, if not by candidates
  equality_index index_;    // of the right rows, once they have been tested
  pinned_values keys_{keyed_condition_ ? keyed_condition_->key_count() : 0};         // of the right row in hand
  candidate_rows candidates_{keyed_condition_ ? keyed_condition_->key_count() : 0};  // for the current left row
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_FULL_JOIN_ENUMERATOR_HPP_
