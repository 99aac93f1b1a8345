#include "ov_sql_executor/execution/keeping/keyed_condition.hpp"

#include <algorithm>
#include <cassert>
#include <utility>
#include <variant>

#include "ov_sql_executor/expressions/operand_list.hpp"
#include "ov_sql_executor/values/comparison.hpp"

namespace ov::sql_executor {

using operators::truth;

keyed_condition::keyed_condition(std::vector<keyed_equality> keys,
                                 std::vector<std::unique_ptr<operators::operator_base>> rest, bool rest_may_raise)
    : keys_(std::move(keys)), rest_(operators::to_operands(std::move(rest))), rest_may_raise_(rest_may_raise) {
  assert(!keys_.empty());
}

// The right operand is evaluated first, as by every comparison.
truth keyed_equality::test_and_show(execution_context& context, operators::scratch_space& scratch,
                                    value_view& key_view) const {
  operators::scratch_space probe_scratch;
  const bool key_first = side == key_side::right;
  if (key_first) key_view = key().pin(context, scratch);
  const value_view probe_view = probe().pin(context, probe_scratch);
  if (!key_first) key_view = key().pin(context, scratch);
  const auto order = key_first ? compare_values(probe_view, key_view) : compare_values(key_view, probe_view);
  return order ? operators::to_truth(*order == 0) : truth::unknown;
}

bool keyed_condition::holds(execution_context& context) const { return others_hold(0, truth::yes, context); }

bool keyed_condition::holds(execution_context& context, equality_index& index, pinned_values& keys) const {
  const truth first = keys_[0].test_and_show(context, keys.scratch[0], keys.views[0]);
  for (std::size_t i = 1; i < keys_.size(); ++i) keys.views[i] = keys_[i].key().pin(context, keys.scratch[i]);
  index.add(keys.all());
  return others_hold(1, first, context);
}

bool keyed_condition::others_hold(std::size_t first, truth before, execution_context& context) const {
  if (before == truth::no) return false;
  bool are_equal = before == truth::yes;
  for (std::size_t i = first; i < keys_.size(); ++i) {
    const truth one = keys_[i].test->test(context);
    if (one == truth::no) return false;
    are_equal = are_equal && one == truth::yes;
  }
  return rest_holds(context) && are_equal;
}

bool keyed_condition::rest_holds(execution_context& context) const {
  bool is_known = true;
  for (const operators::operand& each : rest_) {
    const truth one = each.test(context);
    if (one == truth::no) return false;
    is_known = is_known && one == truth::yes;
  }
  return is_known;
}

void keyed_condition::evaluate_probes(pinned_values& probes, execution_context& context) const {
  for (std::size_t i = 0; i < keys_.size(); ++i) probes.views[i] = keys_[i].probe().pin(context, probes.scratch[i]);
}

void candidate_rows::reset() {
  is_every_row_ = false;
  next_match_ = equality_index::none;
  next_null_ = 0;
  next_row_ = 0;
  wants_nulls_ = false;
}

void candidate_rows::start(const keyed_condition& condition, const equality_index& index, execution_context& context) {
  reset();
  if (index.size() == 0) return;
  condition.evaluate_probes(probes_, context);
  look_up(index, condition.rest_may_raise());
}

void candidate_rows::look_up(const equality_index& index, bool rest_may_raise) {
  const bool has_null = std::ranges::any_of(
      probes_.all(), [](const value_view& each) { return std::holds_alternative<operator_library::NullValue>(each); });
  if (!index.compare_with(probes_.all()) || (has_null && rest_may_raise)) {
    is_every_row_ = true;
  } else if (!has_null) {
    next_match_ = index.find_first(probes_.all());
    wants_nulls_ = rest_may_raise;
  }
}

std::optional<candidate> candidate_rows::next(const equality_index& index) {
  if (is_every_row_) return next_row_ < index.size() ? std::optional(candidate{next_row_++, false}) : std::nullopt;
  const std::vector<std::uint32_t>& nulls = index.nulls();
  const std::uint32_t null = wants_nulls_ && next_null_ < nulls.size() ? nulls[next_null_] : equality_index::none;
  if (next_match_ < null) return candidate{std::exchange(next_match_, index.next_of(next_match_)), true};
  if (null == equality_index::none) return std::nullopt;
  ++next_null_;
  return candidate{null, false};
}

}  // namespace ov::sql_executor
