#ifndef OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEYED_CONDITION_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEYED_CONDITION_HPP_

#include <memory>
#include <optional>
#include <vector>

#include "ov_sql_executor/execution/keeping/equality_index.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// A row that may meet a condition, and what is known of the condition's equality for it.
struct candidate {
  enum class equality { holds, is_null, unknown };

  std::uint32_t row_number;
  equality known;
};

// A condition that is an equality, or an AND that begins with one: of a key, which reads the kept row and nothing that
// changes while it is kept, and a probe, which does not read the kept row.
//
// Rows whose keys differ from the probe need not be looked at: AND ends at the equality, and nothing is raised. Where
// the key is NULL, AND goes on and may raise. Where key and probe do not compare, the equality raises.
class keyed_condition {
 public:
  // What follows the equality in the AND, in order.
  using operators_list = std::vector<std::unique_ptr<operators::operator_base>>;
  enum class key_side : bool { left, right };

  keyed_condition(std::unique_ptr<operators::operator_base> key, std::unique_ptr<operators::operator_base> probe,
                  key_side side, operators_list rest);

  // Whether the condition holds for the rows on the row stack. Evaluates what evaluating the AND does, in its order.
  bool holds(execution_context& context) const;

  // Like holds, and adds the key, which is that of the index's next row.
  bool holds(execution_context& context, equality_index& index) const;

  // Like holds, with what is known of the equality.
  bool holds(execution_context& context, candidate::equality known) const;

  // Valid until the scratch changes.
  value_view evaluate_probe(execution_context& context, operators::scratch_space& scratch) const {
    return probe_.pin(context, scratch);
  }

  bool has_rest() const { return !rest_.empty(); }

 private:
  operators::truth compare(execution_context& context, equality_index* index) const;
  bool rest_holds(execution_context& context, operators::truth equality) const;

  operators::operand key_;
  operators::operand probe_;
  key_side side_;
  std::vector<operators::operand> rest_;
};

// The rows of an index that may meet a condition, in order.
class candidate_rows {
 public:
  // Evaluates the probe, unless there is no row. The condition and the index must outlive this.
  void start(const keyed_condition& condition, const equality_index& index, execution_context& context);

  std::optional<candidate> next(const equality_index& index);

 private:
  enum class mode { matches, every_row };

  mode mode_ = mode::matches;
  std::uint32_t next_match_ = equality_index::none;
  std::size_t next_null_ = 0;  // in the index's list
  std::uint32_t next_row_ = 0;
  bool wants_nulls_ = false;
  operators::scratch_space scratch_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEYED_CONDITION_HPP_
