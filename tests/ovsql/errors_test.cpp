#include <algorithm>

#include "ovsql/parsed.hpp"

namespace tests {
namespace {

using ovsql::error_kind;

struct failure {
  std::string sql;  // with a ~ before the byte where the error is
  std::string message;
};

void expect_failures(error_kind kind, const std::vector<failure>& failures) {
  for (auto [sql, message] : failures) {
    const std::size_t position = sql.find('~');
    const std::string shown = sql;
    sql.erase(position, 1);
    try {
      ovsql::syntax::memory memory;
      std::size_t next = 0;
      ovsql::syntax::parse(sql, next, memory);
      ADD_FAILURE() << "no error in " << shown;
    } catch (const ovsql::error& failed) {
      EXPECT_EQ(failed.what(), message) << shown;
      EXPECT_EQ(failed.position(), position) << shown;
      EXPECT_EQ(failed.kind(), kind) << shown;
    }
  }
}

TEST(SqlSyntaxErrors, say_what_was_expected_where) {
  const std::string value = "expected a column or an expression";
  const std::string end = "expected an operator, a clause or the end of the statement";
  expect_failures(
      error_kind::syntax,
      {{"~hello world", "expected a statement, found \"hello\""},
       {"SELECT ~FROM t", value + " after \"SELECT\", found \"FROM\""},
       {"SELECT ~", value + " after \"SELECT\", found the end of the text"},
       {"SELECT a,~;", value + " after \",\", found \";\""},
       {"SELECT ~group FROM t",
        value + " after \"SELECT\", found \"group\", a keyword; write \"group\" to use it as a name"},
       {"SELECT a FROM ~WHERE b", "expected a table or \"(\" after \"FROM\", found \"WHERE\""},
       {"SELECT a b ~c", end + " after \"b\", found \"c\""},
       {"SELECT 1 ~'a text that is longer than thirty bytes'",
        end + " after \"1\", found \"'a text that is longer than th...\""},
       {"SELECT (1 ~2)", "expected an operator or \")\" after \"1\", found \"2\""},
       {"SELECT f(1 ~2)", "expected a comma, an operator or \")\" after \"1\", found \"2\""},
       {"SELECT a IS ~5", "expected NULL, TRUE, FALSE, UNKNOWN, DISTINCT FROM or OF after \"IS\", found \"5\""},
       {"SELECT a BETWEEN 1 ~OR 2", "expected AND after \"1\", found \"OR\""},
       {"SELECT a IN (1, ~)", "expected an expression after \",\", found \")\""},
       {"SELECT CASE a ~END", "expected WHEN after \"a\", found \"END\", a keyword; write \"END\" to use it as a name"},
       {"SELECT a FROM b JOIN c ~WHERE d", "expected ON or USING after \"c\", found \"WHERE\""},
       {"SELECT a LIMIT 1~, 2", end + " after \"1\", found \",\""},
       {"SELECT a GROUP BY~; '", value + " after \"BY\", found \";\""},
       {"SELECT a < b ~< c", "comparisons do not chain: put one into brackets, or join two by AND"},
       {"SELECT a LIKE b ~NOT LIKE c", "this operator does not chain: put the one before it into brackets"},
       {"SELECT a IS DISTINCT FROM b ~IS NULL", "this operator does not chain: put the one before it into brackets"},
       {"(SELECT 1 LIMIT 2) ~LIMIT 3", "there is a second LIMIT here"},
       {"CREATE TABLE t (a~)", "expected a type after \"a\", found \")\""},
       {"CREATE TABLE t (a ~NOT NULL)", "the column has no type before its constraints"},
       {"COPY t FROM 'a' (DELIMITER ~'ab')", "a delimiter is one character of ASCII, no quote"},
       {"SELECT ~?0", "parameters have numbers from 1 to 65535"}});
}

TEST(SqlSyntaxErrors, tell_bad_literals_and_bytes) {
  expect_failures(error_kind::syntax,
                  {{"SELECT ~'abc", "the text that begins here has no closing quote"},
                   {"SELECT ~\"abc", "the name that begins here has no closing quote"},
                   {"SELECT ~$a$ $$", "the text that begins here has no closing quote"},
                   {"SELECT ~E'\\'", "the text that begins here has no closing quote"},
                   {"SELECT ~/* /* */", "the comment that begins here has no end"},
                   {"SELECT ~\"\"", "a name cannot be empty"},
                   {"SELECT 'a~\xC3(b'", "this byte is not valid UTF-8"},
                   {"SELECT a~\xED\xA0\x80", "this byte is not valid UTF-8"},
                   {std::string("SELECT 'a~\0'", 12), "a NUL byte cannot be part of a text or a name"},
                   {std::string("SELECT ~\0", 9), "a NUL byte cannot be part of a statement"},
                   {"SELECT ~`a`", "a name is quoted with double quotes"},
                   {"SELECT 12~ab", "a number ends here, and \"a\" cannot follow it"},
                   {"SELECT ~1.2.3", "the number that begins here has a second point"},
                   {"SELECT ~1e+", "the number that begins here has no digits in its exponent"},
                   {"SELECT X'~0g'", "a binary literal holds pairs of hexadecimal digits"},
                   {"SELECT X'01~2'", "a binary literal holds pairs of hexadecimal digits"},
                   {"SELECT E'a~\\u12'", "this escape stands for no character"},
                   {"SELECT E'~\\xFF'", "the escapes of this text are not UTF-8"},
                   {"SELECT ~:1", "\":\" is followed by no name of a parameter"},
                   {"SELECT ~!a", "\"!\" is no operator; NOT and <> are"},
                   {"SELECT a ~\x01", "this control character has no meaning"}});
}

TEST(SqlSyntaxErrors, tell_what_is_not_supported) {
  expect_failures(error_kind::unsupported,
                  {{"WITH ~RECURSIVE a AS (SELECT 1) SELECT 1", "WITH RECURSIVE is not supported"},
                   {"SELECT sum(a) ~OVER (ORDER BY b)", "window functions are not supported"},
                   {"SELECT a GROUP BY ~ROLLUP (a)", "GROUPING SETS, ROLLUP and CUBE are not supported"},
                   {"SELECT a ~ILIKE b", "there is no ILIKE here: LIKE does not distinguish case"},
                   {"SELECT 1 ~<< 2", "there are no operators on bits, powers or patterns"},
                   {"SELECT * FROM ~f(1)", "functions in FROM are not supported"},
                   {"CREATE TABLE t (a INT ~CHECK (a > 1))", "CHECK is not supported"},
                   {"CREATE TABLE t (a INT, ~FOREIGN KEY (a) REFERENCES b)",
                    "FOREIGN KEY is not supported: write REFERENCES behind a column"},
                   {"INSERT INTO t VALUES (~DEFAULT)", "DEFAULT is no value here: leave the column out"},
                   {"COPY t ~TO 'a'", "COPY loads tables; it writes no files"},
                   {"EXPLAIN ~DELETE FROM t", "EXPLAIN explains queries only"}});
}

}  // namespace
}  // namespace tests
