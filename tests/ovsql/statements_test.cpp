#include "ovsql/parsed.hpp"

namespace tests {
namespace {

using testing::ElementsAre, testing::IsEmpty;

void expect_statements(std::initializer_list<reading> readings) {
  for (const auto& [sql, words] : readings) EXPECT_EQ(parsed(sql), words) << sql;
}

TEST(SqlQueries, have_every_clause) {
  expect_statements({
      {"SELECT ALL a b, c AS \"D\", d AS order FROM t WHERE e GROUP BY f, g HAVING h ORDER BY 1 LIMIT 2 OFFSET 3",
       "select a as b, c as D, d as order from t where e group by f, g having h order by 1 limit 2 offset 3"},
      {"SELECT DISTINCT a ORDER BY a ASC, b DESC NULLS FIRST, c NULLS LAST OFFSET 1 ROW LIMIT ALL",
       "select distinct a order by a, b desc nulls first, c nulls last offset 1"},
      {"VALUES (1, 2), (3, 4) FETCH FIRST 3 ROWS ONLY", "values (1, 2), (3, 4) limit 3"},
      {"TABLE t FETCH NEXT ROW ONLY", "select * from t limit 1"},
      {"SELECT 1 UNION SELECT 2 INTERSECT ALL SELECT 3 EXCEPT (SELECT 4 UNION DISTINCT SELECT 5) ORDER BY 1",
       "{{select 1} union {{select 2} intersect all {select 3}}} except {{select 4} union {select 5}} order by 1"},
      {"((SELECT a FROM t ORDER BY a)) LIMIT 1", "select a from t order by a limit 1"},
      {"WITH a(x, y) AS (SELECT 1, 2), b AS MATERIALIZED (TABLE a) SELECT * FROM b",
       "with a(x, y) as {select 1, 2}, b as {select * from a} select * from b"},
  });
}

TEST(SqlQueries, have_sources_of_every_kind) {
  const auto expect_sources = [](std::initializer_list<reading> readings) {
    for (const auto& [from, words] : readings) {
      EXPECT_EQ(parsed(std::string("SELECT * FROM ") + from), std::string("select * from ") + words);
    }
  };
  expect_sources({
      {"a, b AS c, d e (x, y), air.\"Port\" p", "a, b as c, d as e(x, y), air.Port as p"},
      {"a CROSS JOIN b JOIN c ON d INNER JOIN e USING (f, g)", "[[[a cross b] inner c on d] inner e using (f, g)]"},
      {"a LEFT JOIN b ON c RIGHT OUTER JOIN d ON e FULL JOIN f ON g", "[[[a left b on c] right d on e] full f on g]"},
      {"a NATURAL JOIN b NATURAL LEFT JOIN c", "[[a natural inner b] natural left c]"},
      {"a JOIN b JOIN c ON d ON e", "[a inner [b inner c on d] on e]"},
      {"a LEFT JOIN (b CROSS JOIN ((c))) ON d", "[a left [b cross c] on d]"},
      {"(SELECT 1), (VALUES (1)) AS v (x), LATERAL (SELECT 2) l",
       "{select 1}, {values (1)} as v(x), lateral {select 2} as l"},
      {"((SELECT 1) UNION (SELECT 2)) u, (((SELECT 1))) v", "{{select 1} union {select 2}} as u, {select 1} as v"},
      {"((SELECT 1) a CROSS JOIN b)", "[{select 1} as a cross b]"},
  });
}

TEST(SqlDefinitions, have_every_part) {
  expect_statements({
      {"CREATE TABLE t (a INT PRIMARY KEY, b VARCHAR(8) NOT NULL DEFAULT 1 + 2 NOT NULL UNIQUE, c NULL REFERENCES d)",
       "create table t (a int primary key, b varchar not null unique default (1 + 2), c references d)"},
      {"CREATE TABLE IF NOT EXISTS t (a UNSIGNED  Big Int, b timestamp (3) WITH TIME ZONE, PRIMARY KEY (a, b), c "
       "CONSTRAINT x REFERENCES d (e) NOT NULL, CONSTRAINT y UNIQUE (c)) INHERITS (base)",
       "create table if not exists t (a unsigned big int, b timestamp with time zone, c not null references d; primary "
       "key (a, b); unique (c)) inherits base"},
      {"CREATE TEMP TABLE t AS SELECT 1", "create table t as {select 1}"},
      {"CREATE TABLE t () INHERITS (base)", "create table t () inherits base"},
      {"CREATE INDEX IF NOT EXISTS i ON t (a ASC, b DESC)", "create index if not exists i on t (a, b desc)"},
      {"CREATE UNIQUE INDEX i ON t (a)", "create unique index i on t (a)"},
      {"CREATE OR REPLACE TEMPORARY VIEW v (a, b) AS SELECT 1, 2", "create or replace view v(a, b) as {select 1, 2}"},
      {"DROP TABLE IF EXISTS a, b", "drop table if exists a, b"},
      {"DROP INDEX i RESTRICT", "drop index i"},
      {"DROP VIEW v", "drop view v"},
  });
}

TEST(SqlChanges, have_every_part) {
  expect_statements({
      {"INSERT INTO t VALUES (1, NULL), (2, 'a')", "insert into t {values (1, null), (2, 'a')}"},
      {"INSERT INTO t (a, \"b\") SELECT 1, 2", "insert into t(a, b) {select 1, 2}"},
      {"INSERT INTO t (SELECT 1)", "insert into t {select 1}"},
      {"INSERT INTO t ((SELECT 1) UNION SELECT 2)", "insert into t {{select 1} union {select 2}}"},
      {"INSERT INTO t (values) VALUES (1)", "insert into t(values) {values (1)}"},
      {"INSERT INTO t (VALUES (1))", "insert into t {values (1)}"},
      {"INSERT INTO t DEFAULT VALUES", "insert into t default values"},
      {"COPY t FROM 'a.csv'", "copy t from 'a.csv' delimiter ','"},
      {"COPY t (a, b) FROM 'a' WITH (FORMAT csv, HEADER, DELIMITER E'\\t', NULL '')",
       "copy t(a, b) from 'a' header delimiter '\t' null ''"},
      {"COPY t FROM 'a' (HEADER off, DELIMITER ';')", "copy t from 'a' delimiter ';'"},
      {"COPY t FROM 'a' CSV HEADER DELIMITER AS '|' NULL AS '-'", "copy t from 'a' header delimiter '|' null '-'"},
      {"EXPLAIN (SELECT 1)", "explain text {select 1}"},
      {"EXPLAIN (FORMAT json) VALUES (1)", "explain json {values (1)}"},
  });
}

TEST(SqlStatements, that_are_not_done_are_named_and_skipped) {
  expect_statements({
      {"update t set a = ';' where \"b;\" = $$;$$ /* ; */ -- ;", "unsupported UPDATE"},
      {"BEGIN", "unsupported BEGIN"},
      {"CREATE TRIGGER x AFTER", "unsupported CREATE TRIGGER"},
      {"DROP SEQUENCE x", "unsupported DROP SEQUENCE"},
      {"INSERT OR REPLACE INTO t VALUES (1)", "unsupported INSERT OR REPLACE"},
      {"REPLACE INTO t ~ !", "unsupported REPLACE"},
  });
}

TEST(SqlScripts, are_read_on_behind_an_error) {
  EXPECT_THAT(parsed_script("\xEF\xBB\xBF;; SELECT 1; UPDATE t SET a = 'x;y'; /* ; */ TABLE t;"),
              ElementsAre("select 1", "unsupported UPDATE", "select * from t"));
  EXPECT_THAT(parsed_script("SELECT FROM ';' \"a;\" -- ;\n $$;$$; SELECT 1; ` E'\\';'; SELECT 2; 'a"),
              ElementsAre(testing::StartsWith("error"), "select 1", testing::StartsWith("error"), "select 2",
                          testing::StartsWith("error")));
  EXPECT_THAT(parsed_script(";; ` a; SELECT 1"), ElementsAre(testing::StartsWith("error"), "select 1"));
  EXPECT_THAT(parsed_script(" -- nothing\n ; /* at all */ ;"), IsEmpty());
}

}  // namespace
}  // namespace tests
