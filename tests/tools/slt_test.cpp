// How test files are read, and values written and compared.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

#include "ovhost/values/text.hpp"
#include "ovsql_slt/doubts.hpp"
#include "ovsql_slt/query_result.hpp"
#include "ovsql_slt/statement_target.hpp"
#include "ovsql_slt/test_reader.hpp"
#include "ovsql_slt/value_text.hpp"

namespace slt {
namespace {

// Spells records, each after the number of its line: 1 ok{sql} 4 error{sql} 7 IT rows x{sql}[1][a] 9 halt.
std::string spell(const test_record& of) {
  static const char* const modes[] = {"none", "rows", "values"};
  std::string words = std::to_string(of.line) + (of.skipped ? " skipped" : "");
  if (of.kind == record_kind::halt) return words + " halt";
  if (of.kind == record_kind::statement) words += " ok";
  if (of.kind == record_kind::failing_statement) words += " error";
  if (of.kind == record_kind::query) {
    words += " " + std::string(of.types) + " " + modes[static_cast<int>(of.sort)] + " " + std::string(of.label);
  }
  words += "{" + std::string(of.sql) + "}";
  for (const auto each : of.expected) words += "[" + std::string(each) + "]";
  return words;
}

std::string records_of(const std::string& text) {
  test_reader reader(text, "us");
  std::string all;
  while (const auto record = reader.next()) all += (all.empty() ? "" : " ") + spell(*record);
  return all;
}

TEST(TestReader, CutsAFileIntoRecords) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"# only\n\n# comments\n", ""},
      {"statement ok\nSELECT 1\n\nstatement error\nSELECT\n", "1 ok{SELECT 1} 4 error{SELECT}"},
      {"statement ok\r\nSELECT 1,\r\n2\r\n\r\nhalt\r\n", "1 ok{SELECT 1,\r\n2} 5 halt"},
      {"statement ok\nSELECT '\n# no comment'\n", "1 ok{SELECT '\n# no comment'}"},
      {"hash-threshold 8\n\nquery IT rowsort x\nSELECT 1, 'a'\n----\n1\na b\n\nhalt\n",
       "3 IT rows x{SELECT 1, 'a'}[1][a b] 9 halt"},
      {"query I valuesort\nSELECT 1\n----\n", "1 I values {SELECT 1}"},
      {"query I\nSELECT 1\n\n\n\nquery R nosort\nSELECT 2\n----\n2.000",
       "1 I none {SELECT 1} 6 R none {SELECT 2}[2.000]"},
      {"skipif us\nhalt\n\nonlyif them # why\nhalt\n", "2 skipped halt 5 skipped halt"},
      {"skipif them\nonlyif us\n# between\nhalt\n", "4 halt"}};
  for (const auto& [text, records] : cases) EXPECT_EQ(records_of(text), records) << text;
}

TEST(TestReader, RefusesWhatIsNoTestFile) {
  const std::pair<const char*, std::size_t> cases[] = {{"\n\nSELECT 1\n", 3},
                                                       {"statement maybe\nSELECT 1\n", 1},
                                                       {"query X nosort\nSELECT 1\n", 1},
                                                       {"query I anysort\nSELECT 1\n", 1}};
  for (const auto& [text, line] : cases) {
    try {
      records_of(text);
      ADD_FAILURE() << text;
    } catch (const format_error& error) {
      EXPECT_EQ(error.line, line) << error.what();
    }
  }
}

ovsql::value text(const char* of) { return ovhost::encode(ovhost::utf16(of)); }

TEST(ValueText, WritesEachTypeAsEachLetter) {
  const double hundred = 100;
  const struct {
    ovsql::value of;
    const char *as_integer, *as_real, *as_text;
  } cases[] = {{std::int64_t{-7}, "-7", "-7.000", "-7"},
               {true, "1", "1.000", "1"},
               {-2.75, "-2", "-2.750", "-2.75"},
               {hundred, "100", "100.000", "100.0"},
               {0.1, "0", "0.100", "0.1"},
               {1e20, "9223372036854775807", "100000000000000000000.000", "1e+20"},
               {-9223372036854775808.0, "-9223372036854775808", "-9223372036854776000.000", "-9.22337203685478e+18"},
               {1234567890123.4567, "1234567890123", "1234567890123.457", "1234567890123.46"},
               {operator_library::Decimal{-2500000}, "-2", "-2.500", "-2.5"},
               {operator_library::Decimal{3000000}, "3", "3.000", "3.0"},
               {text("12abc"), "12", "12.000", "12abc"},
               {text("3.75"), "3", "3.750", "3.75"},
               {text(""), "0", "0.000", "(empty)"},
               {text("a\tb\u00e9"), "0", "0.000", "a@b@@"},
               {operator_library::NullValue{}, "NULL", "NULL", "NULL"}};
  for (const auto& each : cases) {
    EXPECT_EQ(value_text(each.of, 'I'), each.as_integer);
    EXPECT_EQ(value_text(each.of, 'R'), each.as_real);
    EXPECT_EQ(value_text(each.of, 'T'), each.as_text);
  }
}

query_result result_of(std::size_t columns, sort_mode mode, const std::vector<std::string>& values) {
  query_result result(columns);
  for (const std::string& each : values) result.add(each);
  result.sort(mode);
  return result;
}

TEST(QueryResult, SortsAndHashes) {
  const std::vector<std::string> values = {"2", "b", "10", "c", "2", "a"};
  using list = std::vector<std::string>;
  EXPECT_EQ(result_of(2, sort_mode::none, values).values(), values);
  EXPECT_EQ(result_of(2, sort_mode::rows, values).values(), (list{"10", "c", "2", "a", "2", "b"}));
  EXPECT_EQ(result_of(2, sort_mode::values, values).values(), (list{"10", "2", "2", "a", "b", "c"}));
  EXPECT_EQ(result_of(1, sort_mode::rows, values).values(), (list{"10", "2", "2", "a", "b", "c"}));
  // printf '1\n2\n' | md5sum
  EXPECT_EQ(result_of(1, sort_mode::none, {"1", "2"}).hashed(), "2 values hashing to 6ddb4095eb719e2a9f0a3f95677d24e0");
}

TEST(QueryResult, ComparesWithValuesOrTheirHash) {
  const query_result result = result_of(1, sort_mode::none, {"1", "2 "});
  EXPECT_TRUE(result.equals({"1", "2"})) << "test files have no blanks at line ends";
  EXPECT_FALSE(result.equals({"1", "3"}));
  EXPECT_FALSE(result.equals({"1"}));
  EXPECT_FALSE(result.equals({"1", "2", "3"}));
  EXPECT_TRUE(result.equals({result.hashed()}));
  EXPECT_FALSE(result.equals({"2 values hashing to 6ddb4095eb719e2a9f0a3f95677d24e0"}));
}

TEST(StatementTarget, IsToldFromTheWords) {
  const struct {
    const char *sql, *action, *name;
  } cases[] = {{"UPDATE T1 SET x=1", "UPDATE", "t1"},
               {"update or replace t1 set x=1", "UPDATE", "t1"},
               {"DELETE FROM t1", "DELETE", "t1"},
               {"INSERT INTO \"t1\" VALUES ('t2')", "INSERT", "t1"},
               {"/* why */ -- so\nREPLACE INTO t1 VALUES (1)", "REPLACE", "t1"},
               {"CREATE TABLE IF NOT EXISTS t1 (x INT)", "CREATE TABLE", "t1"},
               {"CREATE TEMP VIEW v AS SELECT 1", "CREATE VIEW", "v"},
               {"CREATE UNIQUE INDEX i ON t1 (x)", "CREATE INDEX", "i"},
               {"DROP VIEW IF EXISTS v", "DROP VIEW", "v"},
               {"CREATE TRIGGER g UPDATE ON t1 BEGIN SELECT 1; END", "CREATE TRIGGER", "*"},
               {"ROLLBACK", "ROLLBACK", "*"},
               {"SELECT 1", "", ""},
               {"BEGIN", "", ""},
               {"DROP", "DROP", "*"},
               {"", "", ""}};
  for (const auto& each : cases) {
    EXPECT_EQ(target_of(each.sql).action, each.action) << each.sql;
    EXPECT_EQ(target_of(each.sql).name, each.name) << each.sql;
  }
}

TEST(Doubts, FollowWhatAFailedStatementShouldHaveChanged) {
  const verdict unsupported{outcome::unsupported, "UPDATE is not supported"};
  doubts of;
  EXPECT_EQ(of.about("SELECT * FROM t1"), nullptr);
  of.failed("UPDATE t1 SET x = 1", unsupported);
  ASSERT_NE(of.about("SELECT * FROM T1"), nullptr);
  EXPECT_EQ(of.about("SELECT * FROM T1")->reason, "after UPDATE");
  EXPECT_EQ(of.about("SELECT 't1' FROM t2"), nullptr);
  of.done("CREATE VIEW v AS SELECT * FROM t1");
  of.done("INSERT INTO t2 SELECT * FROM v");
  EXPECT_NE(of.about("SELECT * FROM t2"), nullptr) << "by way of the view";
  of.done("DROP TABLE t1");
  EXPECT_EQ(of.about("SELECT * FROM t1"), nullptr);
  of.failed("ROLLBACK", unsupported);
  EXPECT_NE(of.about("SELECT 1"), nullptr);
}

}  // namespace
}  // namespace slt
