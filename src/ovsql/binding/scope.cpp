#include "ovsql/binding/scope.hpp"

#include "ovsql/catalog/names.hpp"

namespace ovsql {
namespace {

expression read_property(const ovhost::property_info& property, const physical_queryplan::variable& of) {
  return ovhost::with_type_of(property.kind, [&]<class T>() -> expression {
    if constexpr (std::is_same_v<T, operator_library::NullValue>) {
      throw std::logic_error("a column has no type");
    } else {
      return physical_queryplan::property_column<T>{{property.object}, of};
    }
  });
}

}  // namespace

std::string_view relation::column_name(std::size_t at) const {
  if (at < renamed.size()) return renamed[at].text;
  return table != nullptr ? std::string_view(table->columns[at].property.name) : outputs[at].name;
}

std::optional<std::size_t> relation::find(std::string_view name) const {
  for (std::size_t at = 0; at < width(); ++at) {
    if (same_name(column_name(at), name)) return at;
  }
  return std::nullopt;
}

bool relation::has_two(std::string_view name) const {
  std::size_t count = 0;
  for (std::size_t at = 0; at < width(); ++at) count += same_name(column_name(at), name) ? 1 : 0;
  return count > 1;
}

bound relation::read(std::size_t at, syntax::place where) const {
  if (table == nullptr) return {outputs[at].column, outputs[at].kind, where, outputs[at].target};
  const table_column& column = table->columns[at];
  return {read_property(column.property, variable), column.property.kind, where, column.target};
}

}  // namespace ovsql
