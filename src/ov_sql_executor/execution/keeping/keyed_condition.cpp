#include "ov_sql_executor/execution/keeping/keyed_condition.hpp"

#include <utility>
#include <variant>

#include "ov_sql_executor/expressions/operand_list.hpp"
#include "ov_sql_executor/values/comparison.hpp"

namespace ov::sql_executor {

using operators::to_truth;
using operators::truth;

keyed_condition::keyed_condition(std::unique_ptr<operators::operator_base> key,
                                 std::unique_ptr<operators::operator_base> probe, key_side side, operators_list rest)
    : key_(std::move(key)), probe_(std::move(probe)), side_(side), rest_(operators::to_operands(std::move(rest))) {}

bool keyed_condition::holds(execution_context& context) const { return rest_holds(context, compare(context, nullptr)); }

bool keyed_condition::holds(execution_context& context, equality_index& index) const {
  return rest_holds(context, compare(context, &index));
}

bool keyed_condition::holds(execution_context& context, candidate::equality known) const {
  if (known == candidate::equality::unknown) return holds(context);
  return rest_holds(context, known == candidate::equality::holds ? truth::yes : truth::unknown);
}

// The right operand is evaluated first, as by every comparison.
truth keyed_condition::compare(execution_context& context, equality_index* index) const {
  const bool key_first = side_ == key_side::right;
  operators::scratch_space right_scratch;
  const value_view right = (key_first ? key_ : probe_).pin(context, right_scratch);
  value left_scratch;
  const value_view left = (key_first ? probe_ : key_).lend(context, left_scratch);
  if (index != nullptr) index->add(key_first ? right : left);
  const auto order = compare_values(left, right);
  return order ? to_truth(*order == 0) : truth::unknown;
}

bool keyed_condition::rest_holds(execution_context& context, truth equality) const {
  if (equality == truth::no) return false;
  bool is_known = equality == truth::yes;
  for (const operators::operand& each : rest_) {
    const truth one = each.test(context);
    if (one == truth::no) return false;
    is_known = is_known && one == truth::yes;
  }
  return is_known;
}

void candidate_rows::start(const keyed_condition& condition, const equality_index& index, execution_context& context) {
  mode_ = mode::matches;
  next_match_ = equality_index::none;
  next_null_ = 0;
  next_row_ = 0;
  wants_nulls_ = condition.has_rest();
  if (index.size() == 0) return;
  const value_view probe = condition.evaluate_probe(context, scratch_);
  const bool is_null = std::holds_alternative<operator_library::NullValue>(probe);
  if (!index.compares_with(probe) || (is_null && condition.has_rest())) {
    mode_ = mode::every_row;
  } else if (is_null) {
    wants_nulls_ = false;
  } else {
    next_match_ = index.find_first(probe);
  }
}

std::optional<candidate> candidate_rows::next(const equality_index& index) {
  if (mode_ == mode::every_row) {
    if (next_row_ == index.size()) return std::nullopt;
    return candidate{next_row_++, candidate::equality::unknown};
  }
  const std::vector<std::uint32_t>& nulls = index.nulls();
  const std::uint32_t null = wants_nulls_ && next_null_ < nulls.size() ? nulls[next_null_] : equality_index::none;
  if (next_match_ < null) {
    return candidate{std::exchange(next_match_, index.next_of(next_match_)), candidate::equality::holds};
  }
  if (null == equality_index::none) return std::nullopt;
  ++next_null_;
  return candidate{null, candidate::equality::is_null};
}

}  // namespace ov::sql_executor
