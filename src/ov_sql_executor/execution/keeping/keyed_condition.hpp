#ifndef OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEYED_CONDITION_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEYED_CONDITION_HPP_

#include <boost/container/small_vector.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "ov_sql_executor/execution/keeping/equality_index.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// An equality of a key, which reads the kept row and nothing that changes while it is kept, and a probe, which does not
// read the kept row.
struct keyed_equality {
  enum class key_side : bool { left, right };

  std::unique_ptr<operators::equal> test;
  key_side side;

  const operators::operand& key() const { return side == key_side::left ? test->left() : test->right(); }
  const operators::operand& probe() const { return side == key_side::left ? test->right() : test->left(); }

  // Tests, and shows the key. Valid until the scratch changes.
  operators::truth test_and_show(execution_context& context, operators::scratch_space& scratch, value_view& key) const;
};

// The values of several operands, in the caller's memory.
struct pinned_values {
  explicit pinned_values(std::size_t count) : scratch(count), views(count) {}

  std::span<value_view> all() { return {views.data(), views.size()}; }

  boost::container::small_vector<operators::scratch_space, 1> scratch;
  boost::container::small_vector<value_view, 2> views;
};

// An AND of equalities with keys and of the rest. Where a kept row's keys differ from the probes, it need not be looked
// at: the AND is false, and nothing is raised before it is known to be.
//
//    equality        what of it may raise
//    the first       its operands, if it is the first of the whole AND; and its comparison
//    any other       its comparison
//
// The comparison raises where key and probe do not compare. Then all rows are looked at, in order. Where a key is NULL
// the AND is not true, but goes on: its rest may raise, unless planning knows better.
class keyed_condition {
 public:
  // Requires at least one key. rest: in order.
  keyed_condition(std::vector<keyed_equality> keys, std::vector<std::unique_ptr<operators::operator_base>> rest,
                  bool rest_may_raise);

  // Whether the condition holds for the rows on the row stack.
  bool holds(execution_context& context) const;

  // Likewise where all keys are known to equal the probes.
  bool rest_holds(execution_context& context) const;

  std::size_t key_count() const { return keys_.size(); }
  equality_index make_index() const { return equality_index(key_count()); }

  // Like holds, and adds the keys, which are those of the index's next row. Requires room for as many values.
  bool holds(execution_context& context, equality_index& index, pinned_values& keys) const;

  // Requires room for as many values as there are keys.
  void evaluate_probes(pinned_values& probes, execution_context& context) const;

  // Whether something may be raised for a row that does not pass because a key or a probe is NULL.
  bool rest_may_raise() const { return rest_may_raise_; }

 private:
  // From one of the keys on, knowing what the ones before gave.
  bool others_hold(std::size_t first, operators::truth before, execution_context& context) const;

  std::vector<keyed_equality> keys_;
  std::vector<operators::operand> rest_;
  bool rest_may_raise_;
};

// A row that may meet a condition, and whether its keys are known to equal the probes.
struct candidate {
  std::uint32_t row_number;
  bool has_equal_keys;
};

// The rows of an index that may meet a condition, in order.
class candidate_rows {
 public:
  explicit candidate_rows(std::size_t key_count) : probes_(key_count) {}

  // Evaluates the probes, unless there is no row.
  void start(const keyed_condition& condition, const equality_index& index, execution_context& context);

  // Nothing at the end, and before the start.
  std::optional<candidate> next(const equality_index& index);

  void reset();

 private:
  void look_up(const equality_index& index, bool rest_may_raise);

  bool is_every_row_ = false;
  std::uint32_t next_match_ = equality_index::none;
  std::size_t next_null_ = 0;  // in the index's list
  std::uint32_t next_row_ = 0;
  bool wants_nulls_ = false;
  pinned_values probes_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEYED_CONDITION_HPP_
