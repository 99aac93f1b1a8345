#include "ov_sql_executor/expressions/in_list.hpp"

#include <utility>

#include "ov_sql_executor/values/comparison.hpp"

namespace ov::sql_executor::operators {

namespace {

std::vector<value_view> views_of_literals(const list_members& members, std::span<const value> constants) {
  std::vector<value_view> views;
  for (const auto& each : members) {
    if (each->reads_constants()) views.push_back(view_of(constants[each->position()]));
  }
  return views;
}

std::vector<const value_from_context*> parameters_of(const list_members& members) {
  std::vector<const value_from_context*> parameters;
  for (const auto& each : members) {
    if (!each->reads_constants()) parameters.push_back(each.get());
  }
  return parameters;
}

bool erase_nulls(std::vector<value_view>& views) {
  return std::erase_if(views, [](const value_view& each) { return family_of(each) == value_family::null; }) != 0;
}

value_family common_family(std::span<const value_view> views) {
  value_family common = value_family::null;
  for (const value_view& each : views) {
    const value_family own = family_of(each);
    if (common != value_family::null && common != own) return value_family::none;
    common = own;
  }
  return common;
}

truth negate(truth any) { return any == truth::unknown ? any : to_truth(any == truth::no); }

}  // namespace

in_list::literal_set::literal_set(std::vector<value_view> views)
    : has_null(erase_nulls(views)), family(common_family(views)), values(views) {}

in_list::in_list(kind which, std::unique_ptr<operator_base> tested, list_members members,
                 std::span<const value> constants)
    : kind_(which),
      tested_(std::move(tested)),
      members_(std::move(members)),
      parameters_(parameters_of(members_)),
      literals_(views_of_literals(members_, constants)) {}

truth in_list::test(execution_context& context) const {
  members_.front()->at(context);  // raises before the operand does
  const truth found = tested_.visit(context, [&](const value_view& tested) {
    const std::optional<truth> quick = look_up(tested, context);
    return quick ? *quick : compare_in_order(tested, context);
  });
  return kind_ == kind::in ? found : negate(found);
}

std::optional<truth> in_list::look_up(const value_view& tested, const execution_context& context) const {
  const value_family family = family_of(tested);
  if (family == value_family::null && parameters_.empty()) return truth::unknown;
  if (family == value_family::null || !literals_.compare_with(family)) return std::nullopt;
  truth otherwise = literals_.has_null ? truth::unknown : truth::no;
  for (const value_from_context* each : parameters_) {
    const value* const parameter = each->find(context);
    const value_view view = parameter != nullptr ? view_of(*parameter) : value_view();
    if (family_of(view) == value_family::null) {
      otherwise = truth::unknown;
    } else if (family_of(view) != family) {
      return std::nullopt;
    } else if (compare_values(tested, view) == std::partial_ordering::equivalent) {
      return truth::yes;
    }
  }
  return literals_.values.contains(tested) ? truth::yes : otherwise;
}

truth in_list::compare_in_order(const value_view& tested, const execution_context& context) const {
  truth otherwise = truth::no;
  for (const auto& each : members_) {
    const auto order = compare_values(tested, view_of(each->at(context)));
    if (!order) otherwise = truth::unknown;
    if (order && *order == 0) return truth::yes;
  }
  return otherwise;
}

}  // namespace ov::sql_executor::operators
