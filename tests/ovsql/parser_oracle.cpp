// parser_oracle [COUNT [SEED]]: holds the parser against libpg_query over random statements. What that accepts has to
// be accepted; and an expression in which all operations are in brackets, as they were understood, has to be the same
// to it as the expression without them. Fails at the first difference.
#include <pg_query.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/parser.hpp"
#include "ovsql/tree_words.hpp"

namespace {

class generator {
 public:
  explicit generator(unsigned seed) : random_(seed) {}

  // Operators without brackets for the most part, so that it depends on them what is an operand of what.
  std::string expression(unsigned depth) {
    if (depth == 0 || below(5) == 0) return operand();
    const std::string left = expression(depth - 1);
    switch (below(12)) {
      case 0:
        return "NOT " + left;
      case 1:
        return pick({"- ", "+ "}) + left;
      case 2:
        return left + pick({" IS NULL", " IS NOT NULL", " IS TRUE", " IS NOT UNKNOWN", " ISNULL", " NOTNULL"});
      case 3:
        return "+ (" + left + ")";  // a sign, since a chain in brackets is dissolved
      case 4:
        return left + "::" + pick({"int", "double precision", "text"});
      case 5:
        return left + pick({" IN (", " NOT IN ("}) + expression(depth - 1) + ", " + operand() + ")";
      case 6:
        return left + pick({" BETWEEN ", " NOT BETWEEN "}) + expression(depth - 1) + " AND " + expression(depth - 1);
      case 7:
        return left + pick({" LIKE ", " NOT LIKE "}) + expression(depth - 1) + (below(3) == 0 ? " ESCAPE '!'" : "");
      case 8:
        return left + pick({" IS DISTINCT FROM ", " IS NOT DISTINCT FROM "}) + expression(depth - 1);
      case 9:
        return left + pick({" AND ", " OR "}) + expression(depth - 1);
      default:
        return left +
               pick({" + ", " - ", " * ", " / ", " % ", " = ", " <> ", " < ", " <= ", " > ", " >= ", " || ", " ^@ "}) +
               expression(depth - 1);
    }
  }

  std::string query(unsigned depth) {
    std::string all = depth != 0 && below(4) == 0 ? "WITH w (x) AS (" + query(depth - 1) + ") " : "";
    all += term(depth);
    while (below(4) == 0) all += pick({" UNION ", " UNION ALL ", " EXCEPT ", " INTERSECT "}) + term(depth);
    if (below(3) == 0) all += " ORDER BY a" + pick({"", " ASC", " DESC", " DESC NULLS LAST", " NULLS FIRST"}) + ", 2";
    if (below(4) == 0) all += pick({" LIMIT 1", " LIMIT ALL", " FETCH FIRST 2 ROWS ONLY", " FETCH NEXT ROW ONLY"});
    if (below(4) == 0) all += pick({" OFFSET 1", " OFFSET 1 ROW"});
    return all;
  }

 private:
  unsigned below(unsigned end) { return static_cast<unsigned>(random_() % end); }
  std::string pick(std::initializer_list<const char*> from) {
    return from.begin()[below(static_cast<unsigned>(from.size()))];
  }

  std::string operand() {
    return pick({"a", "b.c", "\"d\"", "1", "2.5", "'text'", "NULL", "true", "$1", "abs(a)", "count(*)", "name", "value",
                 "count(DISTINCT a)", "CASE WHEN a THEN b ELSE c END", "CASE a WHEN b THEN c END", "CAST(a AS int)"});
  }

  std::string term(unsigned depth) {
    if (depth == 0 || below(8) == 0)
      return pick({"SELECT 1", "VALUES (1, 2), (3, 4)", "TABLE t", "SELECT DISTINCT a b, c AS d FROM t"});
    if (below(5) == 0) return "(" + query(depth - 1) + ")";
    std::string all = "SELECT " + pick({"", "ALL ", "DISTINCT "}) + item(depth) + ", " + item(depth);
    all += " FROM " + source(depth - 1) + (below(3) == 0 ? ", " + source(depth - 1) : "");
    if (below(2) == 0) all += " WHERE " + condition(depth);
    if (below(4) == 0) all += " GROUP BY a, " + expression(1) + (below(2) == 0 ? " HAVING " + condition(depth) : "");
    return all;
  }

  std::string item(unsigned depth) {
    return below(6) == 0 ? pick({"*", "t.*"})
                         : condition(depth) + pick({"", " AS x", " x", " AS \"select\"", " AS order"});
  }

  std::string condition(unsigned depth) {
    if (depth == 0 || below(3) != 0) return "(" + expression(2) + ")";
    const std::string inner = "(" + query(depth - 1) + ")";
    switch (below(5)) {
      case 0:
        return "EXISTS " + inner;
      case 1:
        return "a " + pick({"IN ", "NOT IN "}) + inner;
      case 2:
        return "a " + pick({"= ANY ", "< ALL ", "<> SOME "}) + inner;
      case 3:
        return "(" + inner + " + 1)";
      default:
        return "(" + inner + ")";
    }
  }

  std::string source(unsigned depth) {
    if (depth == 0 || below(3) == 0) return "t" + pick({"", " u", " AS u", " AS u (x, y)"});
    const std::string left = source(depth - 1);
    switch (below(6)) {
      case 0:
        return "(" + query(depth - 1) + ") q";
      case 1:
        return "LATERAL (" + query(depth - 1) + ") AS q (x)";
      case 2:
        return left + pick({" CROSS JOIN ", " NATURAL JOIN ", " NATURAL LEFT JOIN "}) + "s";
      case 3:
        return left + pick({" JOIN ", " FULL JOIN "}) + "s USING (a, b)";
      case 4:
        return left + " JOIN s CROSS JOIN r JOIN p ON true ON " + condition(0);
      default:
        return left + pick({" INNER JOIN ", " LEFT OUTER JOIN ", " RIGHT JOIN "}) + "(r CROSS JOIN s) ON " +
               condition(0);
    }
  }

  std::mt19937 random_;
};

// What identifies a statement without its literals and places; nothing for what is not accepted.
std::optional<std::string> fingerprint(const std::string& sql) {
  const PgQueryFingerprintResult result = pg_query_fingerprint(sql.c_str());
  std::optional<std::string> found;
  if (result.error == nullptr) found = result.fingerprint_str;
  pg_query_free_fingerprint_result(result);
  return found;
}

void fail(const std::string& sql, const std::string& why) {
  std::printf("%s\n%s\n", sql.c_str(), why.c_str());
  std::exit(1);
}

std::string understood(const std::string& sql) {
  try {
    ovsql::syntax::memory memory;
    std::size_t next = 0;
    return tests::words_of(*ovsql::syntax::parse(sql, next, memory));
  } catch (const ovsql::error& failed) {
    fail(sql, failed.describe(sql));
    return {};
  }
}

}  // namespace

int main(int count, char** words) {
  const unsigned rounds = count > 1 ? static_cast<unsigned>(std::strtoul(words[1], nullptr, 10)) : 10000;
  const unsigned seed = count > 2 ? static_cast<unsigned>(std::strtoul(words[2], nullptr, 10)) : std::random_device{}();
  std::printf("seed %u\n", seed);
  generator any(seed);
  unsigned expressions = 0;
  unsigned queries = 0;
  for (unsigned round = 0; round < rounds; ++round) {
    const std::string expression = "SELECT " + any.expression(4);
    if (const std::optional<std::string> meaning = fingerprint(expression)) {
      const std::string in_brackets = understood(expression);
      if (fingerprint(in_brackets) != meaning) fail(expression, "is not " + in_brackets);
      ++expressions;
    }
    const std::string query = any.query(3);
    if (!fingerprint(query)) continue;
    understood(query);
    ++queries;
  }
  std::printf("expressions: %u the same, queries: %u accepted, of %u each\n", expressions, queries, rounds);
}
