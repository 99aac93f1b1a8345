#include "ov_sql_executor/planning/aggregate_translation.hpp"

#include <variant>

#include "ov_sql_executor/errors/require_value.hpp"
#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/expressions/expression_translation.hpp"
#include "ov_sql_executor/expressions/operand_list.hpp"

namespace physical_to_exec {

namespace {

using namespace physical_queryplan::QueryPlan;  // the kinds are named one by one below
using error_handling::require_value;
using ov::sql_executor::aggregate_entry;
using ov::sql_executor::value;
using ov::sql_executor::visible_columns;
using ov::sql_executor::operators::operand;
using physical_queryplan::column_ref;
namespace aggregates = ov::sql_executor::aggregates;

class aggregate_translator {
 public:
  aggregate_translator(std::vector<value>& constants, const visible_columns& inner)
      : constants_(constants), inner_(inner) {}

  aggregate_entry operator()(const SumOf& kind) const { return aggregates::sum{argument(kind)}; }
  aggregate_entry operator()(const CountOf& kind) const { return aggregates::count_values{argument(kind)}; }
  aggregate_entry operator()(const CountRows& /*kind*/) const { return aggregates::count_rows{}; }
  aggregate_entry operator()(const Maximum& kind) const { return aggregates::maximum{argument(kind)}; }
  aggregate_entry operator()(const Minimum& kind) const { return aggregates::minimum{argument(kind)}; }
  aggregate_entry operator()(const CountDistinct& kind) const {
    return aggregates::count_distinct_values{argument(kind)};
  }
  aggregate_entry operator()(const CountDistinctRows& kind) const {
    auto arguments = ov::sql_executor::translate_expressions(kind.arguments, constants_, inner_);
    return aggregates::count_distinct_rows{ov::sql_executor::operators::to_operands(std::move(arguments))};
  }

  // The first two result types are exact, the last two floating.
  aggregate_entry operator()(const Average& kind) const {
    if (require_value(kind.result_type).index() < 2) return aggregates::average_as_decimal{argument(kind)};
    return aggregates::average_as_double{argument(kind)};
  }

 private:
  operand argument(const aggregation& kind) const {
    const auto& expression = error_handling::element_at(kind.arguments, 0);
    return operand(ov::sql_executor::translate_expression(expression, constants_, inner_));
  }

  std::vector<value>& constants_;
  const visible_columns& inner_;
};

}  // namespace

aggregate_entry translate_aggregate(const aggregate& any, std::vector<value>& constants, const visible_columns& inner) {
  return std::visit(aggregate_translator(constants, inner), require_value(any));
}

const aggregation& common_fields(const aggregate& any) {
  return std::visit([](const auto& held) -> const aggregation& { return held; }, require_value(any));
}

column_ref result_column(const aggregate& any) {
  return std::visit([](const auto& held) -> column_ref { return held; }, require_value(common_fields(any).column));
}

}  // namespace physical_to_exec
