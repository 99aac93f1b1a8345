#include "run_query.hpp"

#include <chrono>
#include <iomanip>
#include <utility>

#include "ovhost/plans/plan_drawing.hpp"
#include "ovhost/plans/table_printer.hpp"

namespace {

using clock_type = std::chrono::steady_clock;

double milliseconds_since(clock_type::time_point start) {
  return std::chrono::duration<double, std::milli>(clock_type::now() - start).count();
}

}  // namespace

void run_query(const demo_query& demo, std::uint64_t context, std::size_t most_rows, std::ostream& out) {
  ovhost::query names;
  ovhost::plan plan = demo.build(names);
  const ovhost::plan_step steps = describe(plan, names.names(), names.columns());
  out << "== " << demo.name << ": " << demo.shows << '\n' << as_tree(steps) << '\n';

  const auto planning = clock_type::now();
  const ovhost::statement statement(std::move(plan));
  const double planned = milliseconds_since(planning);

  ovhost::table_printer table(steps.columns, statement.types(), most_rows);
  const auto running = clock_type::now();
  statement.run(context, demo.parameters, [&table](ovhost::row&& row) { table.add(row); });
  const double ran = milliseconds_since(running);

  table.print(out);
  out << std::fixed << std::setprecision(3) << "planned in " << planned << " ms, ran in " << ran << " ms\n\n";
}

void draw_query(const demo_query& demo, std::ostream& out) {
  ovhost::query names;
  const ovhost::plan plan = demo.build(names);
  out << as_dot(describe(plan, names.names(), names.columns()));
}
