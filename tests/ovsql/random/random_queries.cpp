#include "random_sql.hpp"

namespace tests {

std::vector<std::string> random_sql::definitions() {
  const columns t = {
      {"k", kind::integer}, {"a", kind::integer}, {"b", kind::integer}, {"s", kind::text}, {"d", kind::decimal}};
  const columns u = {{"k", kind::integer}, {"x", kind::integer}, {"s", kind::text}, {"f", kind::floating}};
  const columns v = {{"p", kind::integer}, {"q", kind::integer}};
  relations_ = {{"t", t}, {"u", u}, {"v", v}};
  std::vector<std::string> made = {"CREATE TABLE t (k INT PRIMARY KEY, a INT, b INT, s TEXT, d DECIMAL)",
                                   "CREATE TABLE u (k INT, x INT, s TEXT, f DOUBLE PRECISION)",
                                   "CREATE TABLE v (p INT, q INT)"};
  for (const relation& each : relations_) {
    const int rows = pick(std::vector{0, 1, 3, 5, 9, 12});
    for (int row = 0; row < rows; ++row) {
      std::string values;
      for (const column& of : each.columns) {
        const bool is_key = of.sql == "k" && (each.name == "t" || chance(70));
        values += (values.empty() ? "" : ", ") + (is_key ? std::to_string(row) : literal(of.kind));
      }
      made.push_back("INSERT INTO " + each.name + " VALUES (" + values + ")");
    }
  }
  most_tables_ = 1;
  for (const std::string view : {"w1", "w2"}) {
    const select of = any_select(nullptr, 1, some_kinds(2));
    made.push_back("CREATE VIEW " + view + " AS " + of.sql);
    relations_.push_back({view, of.columns});
  }
  most_tables_ = 3;
  return made;
}

std::vector<std::string> random_sql::indexes() {
  std::vector<std::string> made;
  for (const char* each : {"ta ON t (a)", "tab ON t (a, b DESC)", "tb ON t (b DESC, s)", "ts ON t (s)", "td ON t (d)",
                           "uxk ON u (x, k)", "us ON u (s DESC)", "uk ON u (k)", "vpq ON v (p, q)", "vq ON v (q)"}) {
    if (chance(45)) made.push_back(std::string("CREATE INDEX ") + each);
  }
  return made;
}

random_sql::query random_sql::make() {
  parameters_.clear();
  const std::size_t known = relations_.size();
  std::string with;
  while (chance(12)) {
    const select common = any_select(nullptr, 1, some_kinds(2));
    const std::string name = fresh("w");
    with += (with.empty() ? "WITH " : ", ") + name + " AS (" + common.sql + ")";
    relations_.push_back({name, common.columns});
  }
  takes_parameters_ = chance(25);
  const select made = any_select(nullptr, 1 + below(3), some_kinds());
  takes_parameters_ = false;
  relations_.resize(known);
  const bool is_ordered = chance(40);
  const std::string sql = (with.empty() ? "" : with + " ") + made.sql;
  return {is_ordered ? sql + order(made, chance(50)) : sql, is_ordered, parameters_};
}

random_sql::columns random_sql::named(const std::string& alias, const columns& of) {
  columns made;
  for (const column& each : of) made.push_back({alias + "." + each.sql, each.kind});
  return made;
}

std::vector<random_sql::kind> random_sql::some_kinds(int least) {
  std::vector<kind> made;
  for (int count = least + below(3); count > 0; --count) made.push_back(any_kind());
  return made;
}

// ---- FROM

std::pair<std::string, random_sql::columns> random_sql::source(int depth) {
  const std::string alias = fresh("z");
  if (chance(4)) {
    std::string rows;
    for (int count = 1 + below(3); count > 0; --count) {
      rows += (rows.empty() ? "(" : ", (") + std::to_string(below(5)) + ", " + literal(kind::text) + ")";
    }
    return {"(VALUES " + rows + ") AS " + alias, named(alias, {{"column1", kind::integer}, {"column2", kind::text}})};
  }
  if (depth > 0 && chance(14)) {
    const select inner = any_select(nullptr, depth - 1, some_kinds());
    return {"(" + inner.sql + (chance(20) ? order(inner, true) : "") + ") AS " + alias, named(alias, inner.columns)};
  }
  const relation& of = pick(relations_);
  return {of.name + " AS " + alias, named(alias, of.columns)};
}

// Of right and full joins only those of two tables by an equality: SQLite has others wrong.
std::string random_sql::join(columns& all, const columns& added, const std::string& what, bool is_only) {
  const auto has_one_k = [](const columns& of) {
    int count = 0;
    for (const column& each : of) count += each.sql.ends_with(".k") ? 1 : 0;
    return count == 1;
  };
  const std::string side = is_only ? word({"", "", "LEFT ", "LEFT ", "RIGHT ", "FULL "}) : word({"", "LEFT "});
  const bool shares_k = is_only && has_one_k(all) && has_one_k(added);
  const scope left{all};
  all.insert(all.end(), added.begin(), added.end());
  if (chance(10)) return " CROSS JOIN " + what;
  if (shares_k && chance(35)) {
    all.push_back({"k", kind::integer});
    return " " + side + "JOIN " + what + " USING (k)";
  }
  const bool is_turned = side == "RIGHT " || side == "FULL ";
  if (!is_turned) return " " + side + "JOIN " + what + " ON " + condition({all}, 2);
  const kind of = any_kind();
  return " " + side + "JOIN " + what + " ON " + leaf(of, left) + " = " + leaf(of, {added});
}

std::pair<std::string, random_sql::scope> random_sql::from(const scope* outer, int depth) {
  const int count = chance(60) ? 1 : 1 + below(most_tables_);
  auto [sql, all] = source(depth);
  for (int at = 1; at < count; ++at) {
    const auto [what, added] = source(depth);
    if (chance(25) && sql.find(" JOIN ") == std::string::npos) {
      sql += ", " + what;
      all.insert(all.end(), added.begin(), added.end());
    } else {
      sql += join(all, added, what, count == 2);
    }
  }
  return {sql, {all, outer}};
}

std::string random_sql::where(const scope& in, int depth) { return chance(70) ? " WHERE " + condition(in, depth) : ""; }

// ---- SELECT

random_sql::select random_sql::any_select(const scope* outer, int depth, const std::vector<kind>& wanted) {
  if (depth > 0 && chance(10)) return united(outer, depth, wanted);
  return chance(depth > 0 ? 30 : 8) ? grouped(outer, depth, wanted) : plain(outer, depth, wanted);
}

random_sql::select random_sql::plain(const scope* outer, int depth, const std::vector<kind>& wanted) {
  const auto [tables, inside] = from(outer, depth);
  select made;
  for (const kind of : wanted) {
    const std::string name = fresh("c");
    made.sql += (made.columns.empty() ? "" : ", ") + expression(of, inside, depth) + " AS " + name;
    made.columns.push_back({name, of});
  }
  const bool is_distinct = chance(15);
  if (!is_distinct && chance(40)) made.order_key = "coalesce(" + expression(any_kind(), inside, 1) + ", NULL)";
  made.sql = (is_distinct ? "SELECT DISTINCT " : "SELECT ") + made.sql + " FROM " + tables + where(inside, depth);
  return made;
}

// Groups by expressions, by positions and names of results, or not at all.
random_sql::select random_sql::grouped(const scope* outer, int depth, const std::vector<kind>& wanted) {
  const auto [tables, inside] = from(outer, depth - 1);
  const scope rows{inside.columns};
  scope groups{{}, outer, &rows};
  const distinct before = std::exchange(distinct_, distinct::none);
  const bool has_keys = chance(75);
  select made;
  std::string keys;
  for (const kind of : wanted) {
    const std::string name = fresh("c");
    std::string value = has_keys && (keys.empty() || chance(30)) ? expression(of, rows, 1) : "";
    // Only names of tables have a z.
    const bool is_key = value.find('z') != std::string::npos && value.find("SELECT") == std::string::npos;
    if (is_key) {
      const std::string position = std::to_string(made.columns.size() + 1);
      keys += (keys.empty() ? " GROUP BY " : ", ") + (chance(20) ? name : chance(20) ? position : value);
      groups.columns.push_back({value, of});
    } else {
      value = expression(of, groups, depth);
    }
    made.sql += (made.columns.empty() ? "" : ", ") + value + " AS " + name;
    made.columns.push_back({name, of});
  }
  made.sql = (chance(10) ? "SELECT DISTINCT " : "SELECT ") + made.sql + " FROM " + tables + where(inside, depth) + keys;
  if (!keys.empty() && chance(35)) made.sql += " HAVING " + condition(groups, depth);
  distinct_ = before;
  return made;
}

random_sql::select random_sql::united(const scope* outer, int depth, const std::vector<kind>& wanted) {
  const auto side = [&] {
    select of = any_select(outer, depth - 1, wanted);
    if (of.is_compound) of.sql = "SELECT * FROM (" + of.sql + ") AS " + fresh("z");
    return of;
  };
  select made = side();
  made.sql += word({" UNION ", " UNION ALL ", " EXCEPT ", " INTERSECT "}) + side().sql;
  made.is_compound = true;
  made.order_key.clear();
  return made;
}

// Orders by all columns, so that rows which are alike in the order are alike.
std::string random_sql::order(const select& of, bool is_limited) {
  std::string made = of.order_key;
  for (std::size_t at = 1; at <= of.columns.size(); ++at) {
    made +=
        (made.empty() ? "" : ", ") + std::to_string(at) + word({"", "", " DESC", " NULLS LAST", " DESC NULLS FIRST"});
  }
  const std::string limit = " LIMIT " + std::to_string(below(7)) + word({"", " OFFSET 1", " OFFSET 3"});
  return " ORDER BY " + made + (is_limited ? limit : "");
}

}  // namespace tests
