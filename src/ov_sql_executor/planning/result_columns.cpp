#include "ov_sql_executor/planning/result_columns.hpp"

#include <cassert>
#include <concepts>
#include <map>
#include <optional>
#include <set>
#include <variant>
#include <vector>

#include "ov_sql_executor/database/metadata.hpp"
#include "ov_sql_executor/errors/raise.hpp"
#include "ov_sql_executor/errors/require_value.hpp"
#include "ov_sql_executor/planning/column_definition.hpp"

namespace physical_to_exec {

namespace {

using namespace physical_queryplan;  // the alternatives of an expression
using meta_support::TypeIdentity;

[[noreturn]] void refuse() {
  error_handling::raise_not_implemented(error_handling::no_detail, L"Unsupported return type");
}

template <class T, class... Listed>
concept one_of = (std::same_as<T, Listed> || ...);

// Operations whose result is a bool whatever their tag says, and operations whose result is what their tag says. An
// operation in neither list does not compile.
template <class Operation>
concept truth_operation = one_of<Operation, Equality, Inequality, AtMost, Less, Greater, AtLeast, And, Or, Not,
                                 NullTest, NotNullTest, PatternMatch, PrefixTest, ExclusiveOr, TypeTest>;
template <class Operation>
concept tagged_operation =
    one_of<Operation, Sum, Difference, Negation, Quotient, Product, Conditional, Concatenation, ObjectNumber, ToBool,
           ToUint64, ToInt64, ToDecimal, ToFloat, ToDouble, ToText, ToSetSpecifier, PrefixPattern>;

// Returns the column of an alternative of value. Only metadata can name the table of a reference.
template <class T>
column_type type_of_alternative() {
  if constexpr (std::same_as<T, SetSpecifier> || std::same_as<T, NullValue>) {
    refuse();
  } else if constexpr (std::same_as<T, OV_OBJ_REF>) {
    return RefInfo{};
  } else {
    return TypeIdentity<T>{};
  }
}

class type_finder {
 public:
  explicit type_finder(const QueryPlan::Projection& root) : root_(root) {}

  // Follows a computed reference to its definition, and further where that is one, too.
  column_type type_of(const expression& any) {
    const expression* definition = &any;
    std::set<identifier> visited;
    while (const auto* const reference = std::get_if<computed<OV_OBJ_REF>>(definition)) {
      if (const auto known = types_.find(reference->id); known != types_.end()) return remember(visited, known->second);
      if (!visited.insert(reference->id).second) refuse();
      definition = definition_of(*reference);
    }
    return remember(visited, std::visit([this](const auto& alternative) { return of(alternative); },
                                        error_handling::require_value(*definition)));
  }

 private:
  column_type of(const truth_operation auto& /*any*/) { return TypeIdentity<bool>{}; }

  column_type of(const tagged_operation auto& any) {
    return std::visit([]<class T>(TypeIdentity<T>) { return type_of_alternative<T>(); },
                      error_handling::require_value(any.result_type));
  }

  template <class T>
  column_type of(const property_column<T>& /*column*/) {
    return type_of_alternative<T>();
  }

  column_type of(const property_column<OV_OBJ_REF>& column) {
    const auto target = meta_data::make_table_ref(meta_data::property_type_object(column.property.object));
    return RefInfo{meta_data::object_name(target.table)};
  }

  template <class T>
  column_type of(const computed<T>& /*column*/) {
    return type_of_alternative<T>();
  }

  column_type of(const variable& column) { return RefInfo{meta_data::object_name(column.table)}; }

  column_type of(const literal& any) {
    return std::visit([this](const auto& alternative) { return of_literal(alternative); }, any);
  }

  template <class T>
  column_type of_literal(const T& /*literal_value*/) {
    return type_of_alternative<T>();
  }

  template <class T>
  column_type of_literal(const parameter<T>& /*literal_parameter*/) {
    return type_of_alternative<T>();
  }

  const expression* definition_of(const computed<OV_OBJ_REF>& column) {
    if (!definitions_) definitions_ = find_reference_definitions(*root_.child);
    const auto found = definitions_->find(column.id);
    if (found == definitions_->end()) refuse();
    return found->second;
  }

  column_type remember(const std::set<identifier>& references, column_type type) {
    for (const identifier& each : references) types_.emplace(each, type);
    return type;
  }

  const QueryPlan::Projection& root_;
  std::optional<reference_definitions> definitions_;  // found when they are needed
  std::map<identifier, column_type> types_;           // of computed references
};

}  // namespace

std::vector<column_type> result_columns(const QueryPlan::Projection& root) {
  assert(root.child != nullptr);
  type_finder types(root);
  std::vector<column_type> columns;
  columns.reserve(root.items.size());
  for (const expression& item : root.items) columns.push_back(types.type_of(item));
  return columns;
}

}  // namespace physical_to_exec
