#include "random_sql.hpp"

namespace tests {

random_sql::kind random_sql::any_kind() {
  return pick(
      std::vector{kind::integer, kind::integer, kind::integer, kind::text, kind::text, kind::decimal, kind::floating});
}

std::string random_sql::literal(kind of) {
  if (chance(7)) return "NULL";
  const std::string whole = std::to_string(below(11) - 2);
  if (of == kind::text) return word({"'ash'", "'Birch'", "'cedar'", "''", "'elm'", "'ashen'"});
  if (of == kind::decimal) return whole + word({".25", ".5", ".75"});
  if (of == kind::floating) return whole + word({".5e0", "e0"});
  // A parameter takes the type of what it goes with; here it is to be an integer.
  return takes_parameters_ && chance(10) ? "(0 + " + parameter() + ")" : whole;
}

std::string random_sql::parameter() {
  parameters_.push_back(below(11) - 2);
  return ":p" + std::to_string(parameters_.size());
}

std::string random_sql::leaf(kind of, const scope& in) {
  if (in.rows != nullptr && chance(60)) return aggregate(of, in, 1);
  std::vector<std::string> found;
  for (const column& each : in.columns) {
    if (each.kind == of) found.push_back(each.sql);
  }
  // Behind GROUP BY a subquery sees no more than columns that are keys.
  for (const scope* outer = in.outer; outer != nullptr && chance(35); outer = outer->outer) {
    for (const column& each : outer->columns) {
      const bool is_qualified = each.sql.starts_with('z') && each.sql.find(' ') == std::string::npos;
      if (each.kind == of && is_qualified) found.push_back(each.sql);
    }
  }
  return found.empty() || chance(20) ? literal(of) : pick(found);
}

std::string random_sql::expression(kind of, const scope& in, int depth) {
  if (in.rows != nullptr && depth > 0 && chance(35)) return aggregate(of, in, depth);
  if (depth <= 0 || chance(30)) return leaf(of, in);
  return chance(50) && of != kind::text ? number(of, in, depth - 1) : any_kind(of, in, depth - 1);
}

// Of decimals only what is exact in doubles as well.
std::string random_sql::number(kind of, const scope& in, int depth) {
  const std::string left = expression(of, in, depth);
  switch (of == kind::decimal ? below(5) : below(9)) {
    case 0:
    case 1:
      return "(" + left + " + " + expression(of, in, depth) + ")";
    case 2:
      return "(" + left + " - " + expression(of, in, depth) + ")";
    case 3:
      return "(- " + left + ")";
    case 4:
      return "abs(" + left + ")";
    case 5:
      return "(" + left + " * " + leaf(of, in) + ")";
    case 6:
      if (of == kind::floating) return "CAST(" + expression(kind::integer, in, depth) + " AS DOUBLE PRECISION)";
      return "(" + left + " % " + (chance(50) ? word({"2", "3", "5"}) : expression(of, in, depth)) + ")";
    case 7:
      if (of == kind::floating) return "(" + left + " / " + word({"2e0", "-4e0"}) + ")";
      return "(" + left + " / " + (chance(50) ? word({"2", "3", "-4"}) : expression(of, in, depth)) + ")";
    default:
      if (of == kind::floating) return "(+ " + left + ")";
      return "(" + condition(in, depth) + ")";
  }
}

std::string random_sql::any_kind(kind of, const scope& in, int depth) {
  const std::string first = expression(of, in, depth);
  switch (below(9)) {
    case 0:
    case 1: {
      std::string made = "CASE WHEN " + condition(in, depth) + " THEN " + first;
      if (chance(30)) made += " WHEN " + condition(in, depth) + " THEN " + expression(of, in, depth);
      return made + (chance(70) ? " ELSE " + expression(of, in, depth) : "") + " END";
    }
    case 2: {
      const kind compared = any_kind();
      return "CASE " + expression(compared, in, depth) + " WHEN " + expression(compared, in, depth) + " THEN " + first +
             " WHEN " + leaf(compared, in) + " THEN " + leaf(of, in) + " END";
    }
    case 3:
      return "coalesce(" + first + ", " + list(of, in, 1 + below(3), depth - 1) + ")";
    case 4:
      return "nullif(" + first + ", " + expression(of, in, depth) + ")";
    case 5:
      return word({"greatest(", "least("}) + first + ", " + list(of, in, 1 + below(2), depth - 1) + ")";
    case 6:
      if (of == kind::text) return "(" + first + " || " + expression(of, in, depth) + ")";
      return first;
    default:
      return scalar_query(of, in, depth - 1);
  }
}

std::string random_sql::list(kind of, const scope& in, int count, int depth) {
  std::string made = expression(of, in, depth);
  while (--count > 0) made += ", " + (chance(60) ? literal(of) : expression(of, in, depth));
  return made;
}

std::string random_sql::aggregate(kind of, const scope& in, int depth) {
  scope rows = *in.rows;
  rows.outer = nullptr;
  // An aggregate belongs to the rows whose columns it reads.
  const auto argument = [&](kind wanted) {
    columns fitting;
    for (const column& each : rows.columns) {
      if (each.kind == wanted) fitting.push_back(each);
    }
    if (fitting.empty()) return std::string();
    return chance(30) ? "coalesce(" + pick(fitting).sql + ", " + expression(wanted, rows, depth - 1) + ")"
                      : pick(fitting).sql;
  };
  const std::string filter = chance(12) ? " FILTER (WHERE " + condition(rows, 1) + ")" : "";
  if (of == kind::integer && chance(40)) {
    const std::string counted = argument(any_kind());
    if (counted.empty() || chance(35)) return "count(*)" + filter;
    if (!chance(30) || distinct_ == distinct::sum) return "count(" + counted + ")" + filter;
    distinct_ = distinct::counts;
    return "count(DISTINCT " + counted + ")" + filter;
  }
  if (of == kind::floating && chance(30)) {
    const std::string averaged = argument(kind::integer);
    if (!averaged.empty()) return "avg(" + averaged + ")" + filter;
  }
  const std::string of_what = argument(of);
  if (of_what.empty()) return literal(of);
  if (of == kind::text || chance(50)) return word({"min(", "max(", "max(DISTINCT "}) + of_what + ")" + filter;
  if (chance(12) && distinct_ == distinct::none && filter.empty()) {
    distinct_ = distinct::sum;
    return "sum(DISTINCT " + of_what + ")";
  }
  return "sum(" + of_what + ")" + filter;
}

std::string random_sql::scalar_query(kind of, const scope& in, int depth) {
  if (chance(60)) {
    auto [tables, inside] = from(&in, depth - 1);
    scope groups{{}, &in, &inside};
    const distinct before = std::exchange(distinct_, distinct::none);
    const std::string value = aggregate(of, groups, depth);
    distinct_ = before;
    return "(SELECT " + value + " FROM " + tables + where(inside, depth) + ")";
  }
  const select one = any_select(&in, depth - 1, {of});
  return "(" + one.sql + " ORDER BY 1" + word({"", " DESC"}) + " LIMIT 1" + (chance(20) ? " OFFSET 1" : "") + ")";
}

std::string random_sql::comparison(kind of, const scope& in, int depth) {
  const bool with_parameter = of == kind::integer && takes_parameters_ && chance(40);
  return expression(of, in, depth) + " " + word({"=", "=", "=", "<", ">", "<=", ">=", "<>"}) + " " +
         (with_parameter ? parameter() : expression(of, in, depth));
}

std::string random_sql::condition(const scope& in, int depth) {
  const kind of = any_kind();
  const int inner = depth - 1;
  if (depth <= 0) return comparison(of, in, 0);
  const std::string negated = word({"", "NOT "});
  switch (below(17)) {
    case 0:
    case 1:
      return "(" + condition(in, inner) + " AND " + condition(in, inner) + ")";
    case 2:
      return "(" + condition(in, inner) + " OR " + condition(in, inner) +
             (chance(20) ? " OR " + condition(in, inner) : "") + ")";
    case 3:
      return "(NOT " + condition(in, inner) + ")";
    case 4:
      return expression(of, in, inner) + " IS " + negated + "NULL";
    case 5:
      return expression(of, in, inner) + " " + negated + "BETWEEN " + leaf(of, in) + " AND " + leaf(of, in);
    case 6:
    case 7:
      return expression(of, in, inner) + " " + negated + "IN (" + list(of, in, 1 + below(12), 0) + ")";
    case 8:
      return expression(of, in, inner) + " IS " + negated + "DISTINCT FROM " + expression(of, in, inner);
    case 9:
      return expression(kind::text, in, inner) + " " + negated + "LIKE " +
             word({"'%a%'", "'as_'", "'B%'", "'%h'", "''", "'ELM'", "'_%'", "NULL"});
    case 10:
      return "(" + expression(kind::integer, in, inner) + ")";
    case 11:
    case 12:
    case 13:
      return subquery_test(in, inner);
    default:
      return comparison(of, in, inner < 1 ? inner : 1);
  }
}

std::string random_sql::subquery_test(const scope& in, int depth) {
  const kind of = any_kind();
  const std::string negated = word({"", "NOT "});
  const bool limited = chance(15);
  const select inner = any_select(&in, depth - 1, {of});
  const std::string sql = inner.sql + (limited ? " ORDER BY 1 LIMIT " + std::to_string(below(3)) : "");
  if (chance(45)) return negated + "EXISTS (" + sql + ")";
  return expression(of, in, 1) + " " + negated + "IN (" + sql + ")";
}

}  // namespace tests
