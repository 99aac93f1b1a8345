#include "ovsql/parsed.hpp"

namespace tests {
namespace {

void expect_expressions(std::initializer_list<reading> readings) {
  for (const auto& [sql, words] : readings) {
    EXPECT_EQ(parsed(std::string("SELECT ") + sql), std::string("select ") + words) << sql;
  }
}

TEST(SqlExpressions, bind_as_in_postgresql) {
  expect_expressions({
      {"a OR b AND NOT c = d", "(a or (b and (not (c = d))))"},
      {"NOT a IS NULL", "(not (a is null))"},
      {"a = b IS NULL", "((a = b) is null)"},
      {"a IS NULL = b", "((a is null) = b)"},
      {"a IS DISTINCT FROM b < c", "(a is distinct from (b < c))"},
      {"a < b BETWEEN c AND d", "(a < (b between c and d))"},
      {"a BETWEEN b AND c AND d", "((a between b and c) and d)"},
      {"a BETWEEN b = c AND d || e = f", "((a between (b = c) and (d || e)) = f)"},
      {"a LIKE b || c ESCAPE d || e = f", "((a like (b || c) escape (d || e)) = f)"},
      {"a IN (b) IN (c)", "((a in (b)) in (c))"},
      {"a || b + c", "(a || (b + c))"},
      {"a || b ^@ c || d || e", "(((a || b) ^@ c) || d || e)"},
      {"a + b - c * d / e % f", "((a + b) - (((c * d) / e) % f))"},
      {"- a * - - b", "((-a) * (-(-b)))"},
      {"-a::int + b", "((-cast(a as int)) + b)"},
      {"a = NOT b = c", "(a = (not (b = c)))"},
      {"a * NOT b + c", "(a * (not (b + c)))"},
      {"a <> b, a != b, a<-1, a<=b, a>=b, a>b", "(a <> b), (a <> b), (a < (-1)), (a <= b), (a >= b), (a > b)"},
      {"a ISNULL, a NOTNULL, a NOT NULL", "(a is null), (a is not null), (a is not null)"},
  });
}

TEST(SqlExpressions, dissolve_chains_within_chains) {
  expect_expressions({
      {"a OR (b OR (c OR d) OR e) OR f AND (g AND h)", "(a or b or c or d or e or (f and g and h))"},
      {"((a AND b) AND c) AND d", "(a and b and c and d)"},
      {"(a AND b) OR (c AND d AND e)", "((a and b) or (c and d and e))"},
      {"(a || b) || (c || d) = e", "((a || b || c || d) = e)"},
      {"NOT (a AND b) AND c", "((not (a and b)) and c)"},
      {"(a OR b) + (c OR d)", "((a or b) + (c or d))"},
      {"f((a OR b), c OR d)", "f((a or b), (c or d))"},
  });
}

TEST(SqlExpressions, are_made_of_every_operand) {
  expect_expressions({
      {"12, 1.5, .5, 5., 2e-3, 1.E+5", "12, 1.5, .5, 5., 2e-3, 1.E+5"},
      {"'it''s', '', $$it's$$, $a$x$$y$a$", "'it's', '', 'it's', 'x$$y'"},
      {R"(E'a\tb''\'\\\x41\101\u00e9\U0001F600\q')", "'a\tb''\\AA\u00E9\U0001F600q'"},
      {"X'4A4b', x''", "x'JK', x''"},
      {"NULL, TRUE, false", "null, true, false"},
      {"?, ?5, $2, ?, :name, a::b", "$1, $5, $2, $6, :name, cast(a as b)"},
      {R"("a""b"."SELECT", f . origin.city, f.select)", "a\"b.SELECT, f.origin.city, f.select"},
      {"*, f.*, f.origin.*", "*, f.*, f.origin.*"},
      {"ABS(-1), Count ( * ), count(ALL a), count(DISTINCT a), now()",
       "abs((-1)), count(*), count(a), count(distinct a), now()"},
      {"left(a, 1), sum(a) FILTER (WHERE b) filter", "left(a, 1), sum(a) filter b as filter"},
      {"CASE WHEN a THEN b WHEN c THEN d END", "case when a then b when c then d end"},
      {"CASE a WHEN 1 THEN b ELSE c END", "case a when 1 then b else c end"},
      {"CAST(a AS DOUBLE  PRECISION), CAST(a AS Decimal (10, 2))", "cast(a as double precision), cast(a as decimal)"},
      {"a::double precision b, a::varchar(3) c, a::int::text d",
       "cast(a as double precision) as b, cast(a as varchar) as c, cast(cast(a as int) as text) as d"},
      {"a IS NOT NULL, a IS TRUE, a IS NOT FALSE, a IS UNKNOWN",
       "(a is not null), (a is true), (a is not false), (a is unknown)"},
      {"a IS NOT DISTINCT FROM b, a IS NOT OF (city, air.port)",
       "(a is not distinct from b), (a is not of (city, air.port))"},
      {"a NOT IN (1, 2), a IN (), a NOT LIKE b, a NOT BETWEEN NULL AND NULL",
       "(a not in (1, 2)), (a in ()), (a not like b), (a not between null and null)"},
      {"year, key, first, type, value, values, between, exists, \u00E9t\u00E9",
       "year, key, first, type, value, values, between, exists, \u00E9t\u00E9"},
      {"/* a /* nested */ comment */ 1 -- and another\n + 2", "(1 + 2)"},
  });
}

TEST(SqlExpressions, hold_queries) {
  expect_expressions({
      {"(SELECT 1) + ((SELECT 2))", "({select 1} + {select 2})"},
      {"((SELECT 1) UNION (SELECT 2) LIMIT 1)", "{{select 1} union {select 2} limit 1}"},
      {"((SELECT 1) + 2), ((VALUES (1)))", "({select 1} + 2), {values (1)}"},
      {"a IN (SELECT 1), a NOT IN ((SELECT 1)), a IN ((SELECT 1), 2)",
       "(a in {select 1}), (a not in {select 1}), (a in ({select 1}, 2))"},
      {"a IN ((SELECT 1) EXCEPT (SELECT 2)), a IN t, a IN (TABLE t)",
       "(a in {{select 1} except {select 2}}), (a in {select * from t}), (a in {select * from t})"},
      {"a = ANY (SELECT 1), a < SOME (SELECT 1), a >= ALL ((SELECT 1)) = b",
       "(a = any {select 1}), (a < any {select 1}), ((a >= all {select 1}) = b)"},
      {"NOT EXISTS (SELECT 1)", "(not exists {select 1})"},
  });
}

}  // namespace
}  // namespace tests
