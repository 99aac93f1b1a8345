#include "ov_sql_executor/expressions/scope.hpp"

#include <algorithm>
#include <boost/container_hash/hash.hpp>
#include <concepts>
#include <variant>

#include "ov_sql_executor/errors/raise.hpp"
#include "ov_sql_executor/errors/require_value.hpp"
#include "ov_sql_executor/expressions/constants.hpp"

namespace ov::sql_executor {

using namespace physical_queryplan;  // the alternatives of a column

namespace {

void combine(std::size_t& seed, const variable& any) {
  boost::hash_combine(seed, any.table.object_number);
  boost::hash_range(seed, any.id.begin(), any.id.end());
}

template <class T>
void combine(std::size_t& seed, const property_column<T>& any) {
  boost::hash_combine(seed, any.property.object.object_number);
  combine(seed, any.variable);
}

template <class T>
void combine(std::size_t& seed, const computed<T>& any) {
  boost::hash_range(seed, any.id.begin(), any.id.end());
}

}  // namespace

std::size_t visible_columns::hash::operator()(const column_ref* column) const {
  std::size_t seed = column->index();
  std::visit([&seed](const auto& any) { combine(seed, any); }, *column);
  return seed;
}

std::optional<std::int16_t> visible_columns::find_in_scope(const column_ref& column) const {
  if (index_.empty() && compared_ > 64 + 4 * size()) make_index();
  const std::size_t position = find_position(column);
  if (position == size()) return std::nullopt;
  reads_.push_back(to_position(position));
  return reads_.back();
}

// Returns the number of all columns where there is no such column.
std::size_t visible_columns::find_position(const column_ref& column) const {
  if (!index_.empty()) {
    const auto found = index_.find(&column);
    return found != index_.end() ? found->second : size();
  }
  const auto outer = std::find(outer_.begin(), outer_.end(), column);
  auto position = static_cast<std::size_t>(outer - outer_.begin());
  if (outer == outer_.end()) position += std::find(input_.begin(), input_.end(), column) - input_.begin();
  compared_ += position;
  return position;
}

// Lets the first of equal columns count. Builds the index aside, so that an exception leaves none that is half made.
void visible_columns::make_index() const {
  decltype(index_) index;
  index.reserve(size());
  std::size_t position = 0;
  for (const column_ref& column : outer_) index.emplace(&column, position++);
  for (const column_ref& column : input_) index.emplace(&column, position++);
  index_ = std::move(index);
}

scope join_scopes(const scope& outer, const scope& inner) {
  scope joined;
  joined.reserve(outer.size() + inner.size());
  joined.insert(joined.end(), outer.begin(), outer.end());
  joined.insert(joined.end(), inner.begin(), inner.end());
  return joined;
}

column_ref to_column_ref(const expression& item) {
  return std::visit(
      []<class Alternative>(const Alternative& alternative) -> column_ref {
        // Columns are the alternatives that column_ref has, too.
        if constexpr (std::constructible_from<column_ref, std::in_place_type_t<Alternative>, const Alternative&>) {
          return alternative;
        } else {
          error_handling::raise_error(error_handling::internal_error, error_handling::no_detail,
                                      L"Internal error: expression is not a variable");
        }
      },
      error_handling::require_value(item));
}

expression to_expression(const column_ref& column) {
  return std::visit([](const auto& alternative) -> expression { return alternative; }, column);
}

}  // namespace ov::sql_executor
