#include "ovhost/plans/query.hpp"

#include <optional>
#include <stdexcept>
#include <utility>

namespace ovhost {

using namespace physical_queryplan;

// Everything made from one query shares this.
struct query_state {
  catalog names;
  column_names columns;

  // Returns a new identifier with this name.
  identifier add(std::string name) {
    const identifier id = {0, 0, 0, static_cast<std::uint32_t>(columns.size() + 1)};
    columns.emplace(id, std::move(name));
    return id;
  }
};

namespace {

computed_column computed_of(value_kind kind, const identifier& id) {
  return with_type_of(kind, [&id]<class T>() { return computed_column(computed<T>{id}); });
}

expression read_of(const computed_column& column) {
  return std::visit([](const auto& held) { return expression(held); }, column);
}

expression read_property(const property_info& property, const variable& of) {
  return with_type_of(property.kind, [&]<class T>() {
    if constexpr (std::is_same_v<T, NullValue>) {
      throw std::logic_error("a property has no type");
      return expression();
    } else {
      return expression(property_column<T>{{property.object}, of});
    }
  });
}

// Only Average reads this type, which selects its result.
void set_average_type(QueryPlan::aggregation& aggregate, value_kind kind) {
  if (kind == value_kind::float64) aggregate.result_type = meta_support::TypeIdentity<double>();
  if (kind == value_kind::float32) aggregate.result_type = meta_support::TypeIdentity<float>();
  if (kind == value_kind::decimal) aggregate.result_type = meta_support::TypeIdentity<Decimal>();
}

bool is_float(value_kind kind) { return kind == value_kind::float64 || kind == value_kind::float32; }

template <class Aggregate>
aggregation_column make(query_state& state, std::string name, value_kind result, std::vector<expression> arguments) {
  Aggregate made;
  if (!arguments.empty()) set_average_type(made, kind_of(arguments.front()));
  made.arguments = std::move(arguments);
  made.column = computed_of(result, state.add(std::move(name)));
  return aggregation_column(std::move(made));
}

}  // namespace

table_variable::table_variable(std::shared_ptr<query_state> state, const table_info& table, const std::string& name)
    : state_(std::move(state)),
      table_(table),
      name_(name),
      variable_(table.object, state_->names.members(table), state_->add(name)) {}

expression table_variable::operator[](std::string_view property) const {
  return read_property(state_->names.property(table_, property), variable_);
}

table_variable table_variable::follow(std::string_view name) const {
  const property_info property = state_->names.property(table_, name);
  if (property.kind != value_kind::reference) {
    throw std::invalid_argument("property \"" + property.name + "\" of table \"" + table_.name + "\" is no reference");
  }
  table_variable target(state_, state_->names.table(property.target), name_ + "." + property.name);
  target.variable_.parent =
      std::make_unique<variable_origin>(variable_origin{variable_, {property_ref{property.object}}});
  target.reference_ = std::make_shared<const expression>(read_property(property, variable_));
  return target;
}

const catalog& table_variable::names() const { return state_->names; }

const expression& table_variable::reference() const {
  if (reference_ == nullptr) throw std::logic_error("the variable \"" + name_ + "\" follows no reference");
  return *reference_;
}

computation::computation(identifier id, expression value)
    : column_(computed_of(kind_of(value), id)), value_(std::move(value)) {}

computation::operator expression() const { return read_of(column_); }

computation::operator QueryPlan::assignment() const { return with(value_); }

QueryPlan::assignment computation::with(expression other) const {
  return {std::move(other), std::visit([](const auto& held) { return column_ref(held); }, column_)};
}

aggregation_column::aggregation_column(QueryPlan::aggregate computed) : aggregate_(std::move(computed)) {}

aggregation_column::operator expression() const {
  return std::visit([](const QueryPlan::aggregation& held) { return read_of(held.column); }, aggregate_);
}

aggregation_column::operator QueryPlan::aggregate() const { return aggregate_; }

query::query(const catalog& names) : state_(std::make_shared<query_state>(query_state{names, {}})) {}

const catalog& query::names() const { return state_->names; }
const column_names& query::columns() const { return state_->columns; }

table_variable query::over(std::string_view table, const std::string& name) {
  return {state_, state_->names.table(table), name};
}

computation query::define(std::string name, expression value) {
  return {state_->add(std::move(name)), std::move(value)};
}

// The type of a sum is that of the value added to itself.
aggregation_column query::sum(std::string name, expression of) {
  const value_kind kind = kind_of(of);
  return make<QueryPlan::SumOf>(*state_, std::move(name), kind == value_kind::uint64 ? value_kind::int64 : kind,
                                {std::move(of)});
}
aggregation_column query::count(std::string name, expression of) {
  return make<QueryPlan::CountOf>(*state_, std::move(name), value_kind::int64, {std::move(of)});
}
aggregation_column query::count_rows(std::string name) {
  return make<QueryPlan::CountRows>(*state_, std::move(name), value_kind::int64, {});
}
aggregation_column query::maximum(std::string name, expression of) {
  const value_kind kind = kind_of(of);
  return make<QueryPlan::Maximum>(*state_, std::move(name), kind, {std::move(of)});
}
aggregation_column query::minimum(std::string name, expression of) {
  const value_kind kind = kind_of(of);
  return make<QueryPlan::Minimum>(*state_, std::move(name), kind, {std::move(of)});
}
aggregation_column query::average(std::string name, expression of) {
  const value_kind kind = is_float(kind_of(of)) ? value_kind::float64 : value_kind::decimal;
  return make<QueryPlan::Average>(*state_, std::move(name), kind, {std::move(of)});
}
aggregation_column query::count_distinct(std::string name, expression of) {
  return make<QueryPlan::CountDistinct>(*state_, std::move(name), value_kind::uint64, {std::move(of)});
}
aggregation_column query::count_distinct_rows(std::string name, std::vector<expression> of) {
  return make<QueryPlan::CountDistinctRows>(*state_, std::move(name), value_kind::uint64, std::move(of));
}

}  // namespace ovhost
