#include "queries/random_query.hpp"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "ovhost/expressions.hpp"

namespace tests {

namespace {

using ovhost::expression;
using columns = std::vector<query_column>;

columns concatenated(const columns& left, const columns& right) {
  columns all = left;
  all.insert(all.end(), right.begin(), right.end());
  return all;
}

std::string listed(const columns& of) {
  std::string text;
  for (const query_column& each : of) text += (text.empty() ? "" : ", ") + each.name;
  return text;
}

// Distinct counts are unsigned; a column of a union has one type.
expression as_int64(const expression& number) { return ovhost::to(ovhost::value_kind::int64, number); }

std::string from(const query_pair& of) { return "(" + of.sql + ")"; }

}  // namespace

query_pair random_query::make(int steps) {
  query_pair made = relation(steps, {});
  std::vector<expression> items;
  for (const query_column& each : made.columns) items.push_back(each.read);
  made.plan = ovhost::project(std::move(items), std::move(made.plan));
  made.sql = "SELECT " + listed(made.columns) + " FROM " + from(made);
  return made;
}

// The outer columns are in scope for the whole relation, in SQL as a correlated subquery would have them. Since SQLite
// has no lateral joins, relations with outer columns are only conditions on scans: see joined().
query_pair random_query::relation(int steps, const columns& outer) {
  if (steps <= 0) return scanned(outer);
  switch (below(9)) {
    case 0:
    case 1:
      return filtered(relation(steps - 1, outer), outer);
    case 2:
      return extended(relation(steps - 1, outer), outer);
    case 3:
      return grouped(relation(steps - 1, outer));
    case 4:
      return limited(relation(steps - 1, outer));
    case 5:
      return full_joined(steps, outer);
    case 6:
      return united(relation(steps - 1, outer), outer);
    default:
      return joined(steps, outer);
  }
}

query_pair random_query::scanned(const columns& /*outer*/) {
  const std::string table = below(2) == 0 ? "r" : "s";
  const ovhost::table_variable variable = query_.over(table, fresh("v"));
  columns made;
  std::string list;
  for (const char* property : {"id", "a", "b", "t"}) {
    made.push_back({variable[property], fresh("c"), property == std::string("t")});
    list += (list.empty() ? "" : ", ") + (property + (" AS " + made.back().name));
  }
  const std::string select = "SELECT " + list + " FROM " + table;
  const auto walk = below(2) == 0 ? ovhost::walk::ascending : ovhost::walk::descending;
  const std::int64_t bound = below(12) - 3;
  const auto number = ovhost::lit(bound);
  const std::string digits = std::to_string(bound);
  switch (below(6)) {
    case 0:
      return {ovhost::scan(variable, "by_a", {ovhost::key::equal(number)}, walk), select + " WHERE a = " + digits,
              made};
    case 1:
      return {ovhost::scan(variable, "by_id", {ovhost::key::below(number)}, walk), select + " WHERE id < " + digits,
              made};
    case 2:
      return {ovhost::scan(variable, "by_a", {ovhost::key::null()}, walk), select + " WHERE a IS NULL", made};
    case 3:
      return {ovhost::scan(variable, "by_b_t",
                           {ovhost::key::equal(number), ovhost::key::begins_with(ovhost::text(u"x"))}, walk),
              select + " WHERE b = " + digits + " AND substr(t, 1, 1) = 'x'", made};
    case 4: {
      const double between = static_cast<double>(bound) + 0.5;
      return {ovhost::scan(variable, "by_b_t", {ovhost::key::at_least(ovhost::lit(between))}, walk),
              select + " WHERE b >= " + std::to_string(between), made};
    }
    default:
      return {ovhost::scan(variable, "by_id", {}, walk), select, made};
  }
}

query_pair random_query::filtered(query_pair of, const columns& outer) {
  const both_ways test = condition(concatenated(outer, of.columns));
  return {ovhost::filter(test.plan, std::move(of.plan)), "SELECT * FROM " + from(of) + " WHERE " + test.sql,
          std::move(of.columns)};
}

query_pair random_query::extended(query_pair of, const columns& outer) {
  const both_ways value = number(concatenated(outer, of.columns));
  const ovhost::computation added = query_.define(fresh("x"), value.plan);
  const std::string name = fresh("c");
  of.columns.push_back({added, name, false});
  return {ovhost::extend({added}, std::move(of.plan)), "SELECT *, " + value.sql + " AS " + name + " FROM " + from(of),
          std::move(of.columns)};
}

query_pair random_query::grouped(query_pair of) {
  std::vector<ovhost::assignment> keys;
  std::vector<ovhost::aggregate> aggregates;
  columns made;
  std::string key_list;
  std::string list;
  const auto add = [&](expression read, const std::string& sql, bool is_text) {
    made.push_back({std::move(read), fresh("c"), is_text});
    list += (list.empty() ? "" : ", ") + sql + " AS " + made.back().name;
  };
  const auto aggregate = [&](const ovhost::aggregation_column& column, const std::string& sql) {
    aggregates.push_back(column);
    add(column, sql, false);
  };
  const both_ways argument = number(of.columns, 1);
  aggregate(query_.count_rows(fresh("x")), "count(*)");
  aggregate(query_.count(fresh("x"), argument.plan), "count(" + argument.sql + ")");
  aggregate(query_.sum(fresh("x"), argument.plan), "sum(" + argument.sql + ")");
  aggregate(query_.minimum(fresh("x"), argument.plan), "min(" + argument.sql + ")");
  aggregate(query_.maximum(fresh("x"), argument.plan), "max(" + argument.sql + ")");
  // NULL counts as one more distinct value.
  const std::string distinct =
      "count(DISTINCT " + argument.sql + ") + coalesce(max((" + argument.sql + ") IS NULL), 0)";
  const auto distinct_column = query_.count_distinct(fresh("x"), argument.plan);
  aggregates.push_back(distinct_column);
  const int key_count = below(3);
  for (int k = 0; k < key_count; ++k) {
    const query_column& of_key = of.columns[static_cast<std::size_t>(below(static_cast<int>(of.columns.size())))];
    const ovhost::computation key = query_.define(fresh("x"), of_key.read);
    keys.push_back(key);
    add(key, of_key.name, of_key.is_text);
    key_list += (key_list.empty() ? " GROUP BY " : ", ") + of_key.name;
  }
  add(distinct_column, distinct, false);
  return {ovhost::group(std::move(aggregates), std::move(keys), std::move(of.plan)),
          "SELECT " + list + " FROM " + from(of) + key_list, std::move(made)};
}

// Ordered by every column, so that it does not matter which of equal rows are left out.
query_pair random_query::limited(query_pair of) {
  std::vector<ovhost::order_key> keys;
  std::string list;
  for (const query_column& each : of.columns) {
    const bool ascending = below(2) == 0;
    keys.push_back(ascending ? ovhost::ascending(each.read) : ovhost::descending(each.read));
    list += (list.empty() ? "" : ", ") + each.name + (ascending ? "" : " DESC");
  }
  const int limit = below(20);
  const int offset = below(5);
  auto ordered = ovhost::order(std::move(keys), std::move(of.plan));
  return {ovhost::limit(ovhost::lit(limit), offset == 0 ? std::nullopt : std::optional(ovhost::lit(offset)),
                        std::move(ordered)),
          "SELECT * FROM " + from(of) + " ORDER BY " + list + " LIMIT " + std::to_string(limit) + " OFFSET " +
              std::to_string(offset),
          std::move(of.columns)};
}

// The inner side is a scan, a filter that sees both sides, or a lookup by a column of the outer side.
query_pair random_query::joined(int steps, const columns& outer) {
  query_pair left = relation(steps - 1, outer);
  query_pair right = relation((steps - 1) / 2, {});
  const columns both = concatenated(left.columns, right.columns);
  const both_ways test = condition(both);
  auto inner = ovhost::filter(test.plan, std::move(right.plan));
  const bool keeps_left = below(2) == 0;
  auto join = keeps_left ? ovhost::left_join(std::move(left.plan), std::move(inner))
                         : ovhost::join(std::move(left.plan), std::move(inner));
  return {std::move(join),
          "SELECT * FROM " + from(left) + (keeps_left ? " LEFT JOIN " : " JOIN ") + from(right) + " ON " + test.sql,
          both};
}

query_pair random_query::full_joined(int steps, const columns& outer) {
  query_pair left = relation((steps - 1) / 2, outer);
  query_pair right = relation((steps - 1) / 2, {});
  const columns both = concatenated(left.columns, right.columns);
  const both_ways test = comparison(both);
  return {ovhost::full_join(test.plan, std::move(left.plan), std::move(right.plan)),
          "SELECT * FROM " + from(left) + " FULL JOIN " + from(right) + " ON " + test.sql, both};
}

// Both sides must name their columns alike, so the right side is grouped and filtered under the left one's names.
query_pair random_query::united(query_pair of, const columns& outer) {
  std::vector<ovhost::assignment> left;
  std::vector<ovhost::assignment> right;
  std::vector<expression> names;
  columns made;
  std::string left_list;
  std::string right_list;
  query_pair other = scanned(outer);
  const query_column* from_other = pick(other.columns, false);
  const query_column* from_left = pick(of.columns, false);
  if (from_left == nullptr) return of;
  const ovhost::computation named = query_.define(fresh("x"), as_int64(from_left->read));
  left.push_back(named);
  ovhost::assignment renamed = named;
  renamed.expression = as_int64(from_other->read);
  right.push_back(renamed);
  names.push_back(named);
  made.push_back({named, fresh("c"), false});
  return {ovhost::unite(ovhost::project({named}, ovhost::extend(std::move(left), std::move(of.plan))),
                        ovhost::project({named}, ovhost::extend(std::move(right), std::move(other.plan)))),
          // The limit, which is none, keeps SQLite from merging the union into a query around it: with a FULL JOIN
          // inside, that makes it refuse some valid statements.
          "SELECT * FROM (SELECT " + from_left->name + " AS " + made[0].name + " FROM " + from(of) +
              " UNION ALL SELECT " + from_other->name + " FROM " + from(other) + ") LIMIT -1",
          made};
}

const query_column* random_query::pick(const columns& of, bool is_text) {
  std::vector<const query_column*> fitting;
  for (const query_column& each : of) {
    if (each.is_text == is_text) fitting.push_back(&each);
  }
  return fitting.empty() ? nullptr : fitting[static_cast<std::size_t>(below(static_cast<int>(fitting.size())))];
}

random_query::both_ways random_query::condition(const columns& of, int depth) {
  if (depth == 0 || below(2) == 0) return comparison(of);
  const both_ways left = condition(of, depth - 1);
  switch (below(4)) {
    case 0:
      return {ovhost::negated(left.plan), "NOT (" + left.sql + ")"};
    case 1: {
      const both_ways right = condition(of, depth - 1);
      return {ovhost::either(left.plan, right.plan), "((" + left.sql + ") OR (" + right.sql + "))"};
    }
    case 2: {
      const both_ways tested = number(of, 1);
      return {ovhost::is_null(tested.plan), "(" + tested.sql + ") IS NULL"};
    }
    default: {
      const both_ways right = condition(of, depth - 1);
      return {ovhost::both(left.plan, right.plan), "((" + left.sql + ") AND (" + right.sql + "))"};
    }
  }
}

random_query::both_ways random_query::comparison(const columns& of) {
  const bool texts = below(4) == 0;
  const both_ways left = texts ? text(of) : number(of);
  const both_ways right = texts ? text(of) : number(of);
  const auto spelled = [&](const char* sign) { return "(" + left.sql + ") " + sign + " (" + right.sql + ")"; };
  switch (below(6)) {
    case 0:
      return {ovhost::lt(left.plan, right.plan), spelled("<")};
    case 1:
      return {ovhost::ge(left.plan, right.plan), spelled(">=")};
    case 2:
      return {ovhost::ne(left.plan, right.plan), spelled("<>")};
    default:
      return {ovhost::eq(left.plan, right.plan), spelled("=")};
  }
}

// Small numbers: nothing overflows, and division is left out, which differs.
random_query::both_ways random_query::number(const columns& of, int depth) {
  const query_column* column = pick(of, false);
  if (column == nullptr || below(5) == 0) {
    const std::int64_t drawn = below(9) - 2;
    return {ovhost::lit(drawn), std::to_string(drawn)};
  }
  if (depth == 0 || below(3) != 0) return {column->read, column->name};
  const both_ways left = number(of, depth - 1);
  switch (below(3)) {
    case 0: {
      const both_ways test = comparison({*column});
      return {ovhost::when_as(ovhost::value_kind::int64, test.plan, left.plan, ovhost::null()),
              "CASE WHEN " + test.sql + " THEN " + left.sql + " END"};
    }
    case 1:
      return {ovhost::sub(left.plan, column->read), "(" + left.sql + " - " + column->name + ")"};
    default:
      return {ovhost::add(left.plan, column->read), "(" + left.sql + " + " + column->name + ")"};
  }
}

random_query::both_ways random_query::text(const columns& of) {
  const query_column* column = pick(of, true);
  if (column != nullptr && below(3) != 0) return {column->read, column->name};
  const char* const words[] = {"", "x", "xy", "y"};
  const char* word = words[below(4)];
  return {ovhost::text(std::string_view(word)), "'" + std::string(word) + "'"};
}

}  // namespace tests
