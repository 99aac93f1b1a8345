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

std::vector<std::size_t> parameters_of(const list_members& members) {
  std::vector<std::size_t> positions;
  for (const auto& each : members) {
    if (!each->reads_constants()) positions.push_back(each->position());
  }
  return positions;
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

// tested = parameter, for a value of the family; nothing where that would be an error.
std::optional<truth> compare_alike(const value_view& tested, value_family family, const value& parameter) {
  const auto* const number = std::get_if<std::int64_t>(&tested);
  const auto* const other = std::get_if<std::int64_t>(&parameter);
  if (number != nullptr && other != nullptr) return to_truth(*number == *other);
  const value_view view = view_of(parameter);
  if (family_of(view) == value_family::null) return truth::unknown;
  if (family_of(view) != family) return std::nullopt;
  return to_truth(compare_values(tested, view) == std::partial_ordering::equivalent);
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
  const std::optional<truth> among_parameters = find_parameter(tested, family, context.variables);
  if (!among_parameters || among_parameters == truth::yes) return among_parameters;
  if (literals_.values.contains(tested)) return truth::yes;
  return literals_.has_null ? truth::unknown : among_parameters;
}

std::optional<truth> in_list::find_parameter(const value_view& tested, value_family family,
                                             const std::vector<value>& variables) const {
  truth found = truth::no;
  for (const std::size_t position : parameters_) {
    if (position >= variables.size()) return std::nullopt;
    const std::optional<truth> one = compare_alike(tested, family, variables[position]);
    if (!one || *one == truth::yes) return one;
    if (*one == truth::unknown) found = truth::unknown;
  }
  return found;
}

truth in_list::compare_in_order(const value_view& tested, const execution_context& context) const {
  truth found = truth::no;
  for (const auto& each : members_) {
    const auto order = compare_values(tested, view_of(each->at(context)));
    if (!order) found = truth::unknown;
    if (order && *order == 0) return truth::yes;
  }
  return found;
}

}  // namespace ov::sql_executor::operators
