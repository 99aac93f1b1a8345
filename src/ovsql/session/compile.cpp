#include <tuple>
#include <utility>

#include "ov_sql_executor/planning/plan.hpp"
#include "ovhost/plans/expressions.hpp"
#include "ovhost/plans/plans.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/planning/planner.hpp"
#include "ovsql/session/run_errors.hpp"
#include "ovsql/session/statement_state.hpp"

namespace ovsql {
namespace {

plan plan_query(database_state& db, const syntax::query& of, const source_text& from, compiled& into) {
  binder binding(db.catalog, from.text, db.how.null_on_division_by_zero, from.numbered, into.names);
  query bound = binding.bind_query(of, nullptr);
  for (const output& each : bound.outputs) {
    into.columns.push_back(
        {std::string(each.name), each.kind, each.target != nullptr ? each.target->name() : std::string()});
  }
  const planner planning(into.names, [&db](const table& of_table) { return db.row_count(of_table); });
  return planning.make(std::move(bound));
}

}  // namespace

double database_state::row_count(const table& of) {
  if (catalog.knows_row_count(of)) return catalog.row_count(of);
  const index* const whole = of.whole();
  if (whole == nullptr) return 0;
  using namespace physical_queryplan;
  QueryPlan::CountRows count;
  count.column = computed<std::int64_t>{{0, 0, 0, 2}};
  const variable object(of.info.object, of.members, {0, 0, 0, 1});
  plan rows = ovhost::group({count}, {}, QueryPlan::Scan{object, whole->object, {}, true});
  auto [counting, types] =
      physical_to_exec::Plan(ovhost::project({computed<std::int64_t>{{0, 0, 0, 2}}}, std::move(rows)));
  run counted(counting, {}, context->handle());
  counted.rows.next();
  const auto found = static_cast<double>(std::get<std::int64_t>(counted.rows.row()[0]));
  catalog.set_row_count(of, found);
  return found;
}

void compile_query(database_state& db, const syntax::query& of, const source_text& from, compiled& into) {
  with_errors({}, [&] {
    plan made = plan_query(db, of, from, into);
    std::vector<physical_to_exec::column_type> types;
    std::tie(into.plan.emplace(), types) = physical_to_exec::Plan(std::move(made));
  });
}

std::unique_ptr<compiled> compile(database_state& db, const syntax::statement& tree, std::string_view text,
                                  std::vector<value_kind> kinds) {
  auto made = std::make_unique<compiled>();
  made->names.set_parameter_kinds(std::move(kinds));
  const source_text from = {text, tree.question_marks};
  if (const auto* const query = std::get_if<const syntax::query*>(&tree.is)) {
    compile_query(db, **query, from, *made);
  } else if (const auto* const insert = std::get_if<syntax::insert>(&tree.is)) {
    compile_insert(db, *insert, from, *made);
  } else if (const auto* const explain = std::get_if<syntax::explain>(&tree.is)) {
    with_errors({}, [&] {
      const plan shown = plan_query(db, *explain->of, from, *made);
      made->words = ovsql::explain(db, shown, made->names, explain->format);
    });
    made->columns = {{"plan", value_kind::text}};
    made->is_explanation = true;
  } else if (const auto* const other = std::get_if<syntax::unsupported>(&tree.is)) {
    throw error(error_kind::unsupported, std::string(other->word) + " is not supported", tree.at.begin);
  }
  return made;
}

}  // namespace ovsql
