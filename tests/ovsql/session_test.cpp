// Databases and statements as a program uses them.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "ovcoredb/database.hpp"
#include "ovhost/schema/schema.hpp"
#include "ovsql/session/database.hpp"

namespace ovsql {
namespace {

std::string rows_of(statement& of) {
  std::string all;
  while (of.step()) {
    all += all.empty() ? "" : "; ";
    for (std::size_t at = 0; at < of.column_count(); ++at) all += (at == 0 ? "" : " ") + of.words(at);
  }
  return all;
}

constexpr const char* words[] = {"syntax",     "unsupported", "name",  "type",  "value",
                                 "constraint", "limit",       "input", "usage", "engine"};

// What a call returns, or the error that it throws.
template <class Call>
std::string told(const Call& call) {
  try {
    if constexpr (std::is_void_v<decltype(call())>) {
      call();
      return "done";
    } else {
      return call();
    }
  } catch (const error& raised) {
    return std::string(words[static_cast<std::size_t>(raised.kind())]) + ": " + raised.what();
  }
}

class Session : public testing::Test {
 protected:
  Session() {
    db.execute(
        "CREATE TABLE city (name TEXT PRIMARY KEY, people INT NOT NULL DEFAULT 7, big BOOLEAN);"
        "CREATE TABLE road (number INT UNIQUE, start REFERENCES city, width DECIMAL, weight UINT64);"
        "INSERT INTO city VALUES ('Ely', 20, FALSE), ('Rye', 5, NULL), ('Ayr', 46, TRUE)");
  }

  std::string ask(const std::string& sql) { return ask(db, sql); }
  static std::string ask(database& db, const std::string& sql) {
    return told([&] {
      statement asked = db.prepare(sql);
      return rows_of(asked);
    });
  }

  database db;
};

// ---- Parameters

TEST_F(Session, binds_parameters_by_number_and_name) {
  statement named =
      db.prepare("SELECT name FROM city WHERE people > :least AND name <> :but AND :least < 50 ORDER BY 1");
  EXPECT_EQ(named.parameter_count(), 2U);
  named.bind(named.parameter("least"), 4);
  named.bind(named.parameter("but"), "Rye");
  EXPECT_EQ(rows_of(named), "Ayr; Ely");
  named.bind(1, 30U);
  EXPECT_EQ(rows_of(named), "Ayr");
  named.bind_null(2);
  EXPECT_EQ(rows_of(named), "");

  statement numbered = db.prepare("SELECT ?2, ?1, ?, $2");
  numbered.bind(1, 1.5);
  numbered.bind(2, true);
  numbered.bind(3, "é");
  EXPECT_EQ(rows_of(numbered), "true 1.5 é true");

  statement written = db.prepare("INSERT INTO city VALUES (?, ?, ?)");
  for (int number = 0; number < 3; ++number) {
    written.bind(1, "town " + std::to_string(number));
    written.bind(2, number);
    written.bind(3, false);
    EXPECT_FALSE(written.step());
    EXPECT_EQ(written.changes(), 1U);
  }
  EXPECT_EQ(ask("SELECT count(*) FROM city"), "6");
}

// They are of the type of what is bound.
TEST_F(Session, never_loses_a_parameter) {
  constexpr const char* refused = "type: ";
  struct {
    const char* sql;
    const char* of_number;  // of 2.5
    const char* of_text;    // of x
  } const cases[] = {{"SELECT ?1", "2.5", "x"},
                     {"SELECT coalesce(?1, 7e0)", "2.5", refused},
                     {"SELECT coalesce(?1, ?1)", "2.5", "x"},
                     {"SELECT nullif(?1, 'y')", refused, "x"},
                     {"SELECT CASE WHEN TRUE THEN ?1 END", "2.5", "x"},
                     {"SELECT greatest(?1, ?1)", "2.5", "x"},
                     {"SELECT abs(-?1)", "2.5", refused},
                     {"SELECT sum(?1), avg(?1) FROM city", "7.5 2.5", refused},
                     {"SELECT ?1 UNION SELECT ?1", "2.5", "x"},
                     {"SELECT ?1 || ?1", refused, "xx"}};
  for (const auto& each : cases) {
    statement asked = db.prepare(each.sql);
    const auto with = [&](auto bound) {
      asked.bind(1, bound);
      const std::string found = told([&] { return rows_of(asked); });
      return found.starts_with(refused) ? std::string(refused) : found;
    };
    EXPECT_EQ(with(2.5), each.of_number) << each.sql;
    EXPECT_EQ(with("x"), each.of_text) << each.sql;
  }
}

TEST_F(Session, refuses_wrong_use) {
  statement asked = db.prepare("SELECT name FROM city WHERE people > ?");
  EXPECT_EQ(told([&] { asked.step(); }), "usage: parameter 1 has no value");
  EXPECT_EQ(told([&] { asked.bind(0, 1); }), "usage: there is no parameter 0");
  EXPECT_EQ(told([&] { asked.bind(2, 1); }), "usage: there is no parameter 2");
  EXPECT_EQ(told([&] { asked.bind(1, "\xff"); }), "value: a text is UTF-8 without zero characters");
  EXPECT_EQ(told([&] { asked.parameter("x"); }), "name: there is no parameter :x");
  EXPECT_EQ(told([&] { asked.column(1); }), "usage: there is no column 1");
  asked.bind(1, 10);
  EXPECT_EQ(told([&] { return asked.text(0); }), "usage: there is no row: step() has not gone to one");
  ASSERT_TRUE(asked.step());
  EXPECT_EQ(told([&] { asked.bind(1, 2); }), "usage: the statement is running: reset it before binding");
  EXPECT_EQ(told([&] { return asked.text(1); }), "usage: there is no column 1");
  asked.reset();
  EXPECT_EQ(told([&] { return asked.text(0); }), "usage: there is no row: step() has not gone to one");
  EXPECT_EQ(rows_of(asked), "Ely; Ayr");
  EXPECT_EQ(rows_of(asked), "Ely; Ayr");

  for (const char* each : {"", " ;;", "-- nothing"}) EXPECT_EQ(ask(each), "usage: the text holds no statement") << each;
  EXPECT_EQ(ask("SELECT 1; SELECT 2"), "usage: the text holds more than one statement");
  EXPECT_EQ(ask("SELECT 1; /* done */ ;"), "1");
}

TEST_F(Session, can_be_stepped_again_after_an_error) {
  statement divided = db.prepare("SELECT 100 / (people - ?) FROM city");
  divided.bind(1, 5);
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(told([&] { return rows_of(divided); }), "value: division by zero, or a number is out of range");
  }
  divided.bind(1, 0);
  EXPECT_EQ(rows_of(divided), "5; 20; 2");
}

// ---- Columns and values

TEST_F(Session, names_and_types_columns) {
  struct {
    const char* sql;
    const char* columns;
  } const cases[] = {
      {"SELECT name, people + 1 AS more, max(big), 1.5, 1e0, NULL, ?, start, start.people, c FROM city c, road GROUP "
       "BY 1, 2, "
       "start, start.people, c",
       "name text, more int64, max boolean, ?column? decimal, ?column? float64, ?column? null, ?column? null, "
       "start reference city, people int64, c reference city"},
      {"SELECT avg(people), sum(people), count(*), CASE WHEN big THEN 'x' END FROM city GROUP BY big",
       "avg float64, sum int64, count int64, case text"},
      {"VALUES (1, NULL), (1.5, x'00')", "column1 decimal, column2 binary"},
      {"SELECT name, 1 FROM city UNION SELECT NULL, 1e0", "name text, ?column? float64"},
      {"SELECT * FROM city", "name text, people int64, big boolean"},
      {"EXPLAIN SELECT 1", "plan text"},
      {"INSERT INTO city (name) VALUES ('x')", ""}};
  constexpr const char* kinds[] = {"boolean", "text",   "uint64",    "int64", "decimal", "float64",
                                   "float32", "binary", "reference", "set",   "null"};
  for (const auto& each : cases) {
    const statement asked = db.prepare(each.sql);
    std::string found;
    for (std::size_t at = 0; at < asked.column_count(); ++at) {
      const result_column& column = asked.column(at);
      found += (at == 0 ? "" : ", ") + column.name + " " + kinds[static_cast<std::size_t>(column.type)] +
               (column.table.empty() ? "" : " " + column.table);
    }
    EXPECT_EQ(found, each.columns) << each.sql;
  }
}

TEST_F(Session, converts_values) {
  struct {
    const char* sql;
    const char* words;
    const char* integer;
    const char* real;
    const char* text;
  } const cases[] = {
      {"42", "42", "42", "42.0", "42"},
      {"-1.75", "-1.75", "-1", "-1.8", "-1.75"},
      {"TRUE", "true", "1", "1.0", "true"},
      {"NULL", "NULL", "0", "0.0", ""},
      {"'x'", "x", "type: x is no number", "type: x is no number", "x"},
      {"18446744073709551615", "18446744073709551615", "value: 18446744073709551615 is out of the range of integers",
       "18446744073709551616.0", "18446744073709551615"},
      {"1e19", "1e+19", "value: 1e+19 is out of the range of integers", "10000000000000000000.0", "1e+19"},
      {"x'0aff'", "0x0aff", "type: 0x0aff is no number", "type: 0x0aff is no number", "0x0aff"},
      {"0.1 + 0.2", "0.3", "0", "0.3", "0.3"}};
  for (const auto& each : cases) {
    statement asked = db.prepare(std::string("SELECT ") + each.sql);
    ASSERT_TRUE(asked.step());
    const auto real = [&] {
      std::array<char, 64> made{};
      std::snprintf(made.data(), made.size(), "%.1f", asked.real(0));
      return std::string(made.data());
    };
    EXPECT_EQ(asked.words(0), each.words);
    EXPECT_EQ(told([&] { return std::to_string(asked.integer(0)); }), each.integer) << each.sql;
    EXPECT_EQ(told(real), each.real) << each.sql;
    EXPECT_EQ(asked.text(0), each.text) << each.sql;
  }
}

// ---- Changes beside a statement

TEST_F(Session, plans_anew_after_a_change) {
  statement plain = db.prepare("SELECT name FROM city WHERE people = ?");
  statement explained = db.prepare("EXPLAIN SELECT name FROM city WHERE people = 20");
  statement inserted = db.prepare("INSERT INTO city (name, people) VALUES ('Eye', 20)");
  db.execute("CREATE VIEW seen AS SELECT name FROM city; CREATE INDEX by_people ON city (people)");
  statement viewed = db.prepare("SELECT count(*) FROM seen");
  EXPECT_FALSE(inserted.step());
  plain.bind(1, 20);
  EXPECT_EQ(rows_of(plain), "Ely; Eye");
  EXPECT_NE(rows_of(explained).find("by_people"), std::string::npos);
  EXPECT_EQ(rows_of(viewed), "4");
  db.execute("CREATE OR REPLACE VIEW seen AS SELECT * FROM city WHERE people > 20");
  EXPECT_EQ(rows_of(viewed), "1");
  db.execute("DROP VIEW seen");
  EXPECT_EQ(told([&] { return rows_of(viewed); }), "name: there is no table \"seen\"");
}

TEST_F(Session, ends_open_runs_when_it_is_written_to) {
  statement walked = db.prepare("SELECT name FROM city");
  ASSERT_TRUE(walked.step());
  db.execute("INSERT INTO city (name) VALUES ('Wem')");
  EXPECT_EQ(told([&] { walked.step(); }), "usage: the database was written to while the statement ran");
  EXPECT_EQ(rows_of(walked), "Ely; Rye; Ayr; Wem");
  EXPECT_EQ(ask("INSERT INTO city (name) SELECT name || '2' FROM city"), "");
  EXPECT_EQ(ask("SELECT count(*) FROM city"), "8");
}

// ---- Statements that fail change nothing

TEST_F(Session, inserts_all_rows_or_none) {
  struct {
    const char* sql;
    const char* message;
  } const cases[] = {
      {"city VALUES ('A', 1, FALSE), ('Ely', 1, NULL)",
       "constraint: table \"city\" has a row with the same name already (object number "},
      {"city (name) VALUES ('B'), ('B')", "constraint: table \"city\" has a row with the same name already"},
      {"city (name) VALUES ('B'), (NULL)", "constraint: column \"name\" of table \"city\" is NOT NULL"},
      {"city VALUES ('A', NULL, FALSE)", "constraint: column \"people\" of table \"city\" is NOT NULL"},
      {"city VALUES ('A', 1, 2)", "value: column \"big\" of table \"city\" is bool and cannot hold 2"},
      {"city VALUES ('A', 1, TRUE), ('B', 'x', TRUE)", "type: column \"people\" of table \"city\" is integer"},
      {"city SELECT name || 'x', 1 / (people - 46), TRUE FROM city", "value: division by zero"},
      {"city VALUES ('A')", "type: a row has 1 of the 3 values that it needs"},
      {"city (name) VALUES ('D'), ('E', 4)", "type: the rows of VALUES have different lengths: 1 and 2"},
      {"city (name, NAME) VALUES ('A', 'B')", "name: column \"NAME\" is named twice"},
      {"town VALUES (1)", "name: there is no table \"town\""},
      {"road (weight) VALUES (-1)", "value: column \"weight\" of table \"road\" is unsigned bigint and cannot hold -1"},
      {"road (number) VALUES (9223372036854775808)",
       "value: column \"number\" of table \"road\" is integer and cannot"},
      {"road (number) VALUES (1.5)", "value: column \"number\" of table \"road\" is integer and cannot hold 1.5"},
      {"road (width) VALUES (99999999999999)", "value: column \"width\" of table \"road\" is decimal and cannot hold"},
      {"road (number, start) SELECT 1, c FROM city c", "constraint: table \"road\" has a row with the same number"},
      {"road (start) VALUES (3)", "type: column \"start\" of table \"road\" is reference, and the value 3 is integer"}};
  for (const auto& each : cases) {
    EXPECT_EQ(ask(std::string("INSERT INTO ") + each.sql).find(each.message), 0U) << each.sql;
    EXPECT_EQ(ask("SELECT (SELECT count(*) FROM city), (SELECT count(*) FROM road)"), "3 0") << each.sql;
  }
  db.execute("INSERT INTO road (number, start, width) SELECT 1, c, 2.5 FROM city c WHERE name = 'Ayr'");
  EXPECT_EQ(ask("SELECT start.name, width, weight FROM road"), "Ayr 2.5 NULL");
  EXPECT_EQ(
      ask("INSERT INTO road (start) SELECT r FROM road r").find("value: column \"start\" of table \"road\" refers"),
      0U);
  db.execute("INSERT INTO city (name) VALUES ('Wem')");
  EXPECT_EQ(ask("SELECT people, big FROM city WHERE name = 'Wem'"), "7 NULL");
}

TEST_F(Session, defines_all_or_nothing) {
  struct {
    const char* sql;
    const char* message;
  } const cases[] = {
      {"TABLE a (x INT, X TEXT)", "name: two columns are called \"X\""},
      {"TABLE a (x INTT)", "name: there is no type \"intt\""},
      {"TABLE a (x REFERENCES town)", "name: there is no table \"town\""},
      {"TABLE a (x INT PRIMARY KEY, y INT PRIMARY KEY)", "name: a table has one PRIMARY KEY"},
      {"TABLE a (x DOUBLE PRECISION UNIQUE)", "unsupported: a floating number cannot be a key: column \"x\""},
      {"TABLE a (x INT DEFAULT (1 + 2))", "unsupported: a default value is written out"},
      {"TABLE a (x INT DEFAULT 'x')", "type: column \"x\" of table \"a\" is integer, and the value x is text"},
      {"TABLE a (x INT, UNIQUE (y))", "name: "},
      {"TABLE a (x INT) INHERITS (town)", "name: there is no table \"town\""},
      {"TABLE a AS SELECT 1 AS x, 2 AS x", "name: two columns are called \"x\""},
      {"TABLE a AS SELECT 1 / (people - 5) AS x FROM city", "value: division by zero"},
      {"TABLE a AS SELECT ? AS x", "unsupported: CREATE TABLE AS takes no parameters"},
      {"VIEW a AS SELECT nam FROM city", "name: there is no column \"nam\"; did you mean \"name\"?"},
      {"VIEW a (b, c) AS SELECT name FROM city", "name: the view's columns are 1, not 2"},
      {"VIEW a AS SELECT ? AS x", "unsupported: a view takes no parameters"},
      {"OR REPLACE VIEW city AS SELECT 1 AS a", "name: there is a table \"city\" already"},
      {"INDEX a ON city (nam)", "name: table \"city\" has no column \"nam\"; did you mean \"name\"?"}};
  for (const auto& each : cases) {
    EXPECT_EQ(ask(std::string("CREATE ") + each.sql).find(each.message), 0U) << ask(std::string("CREATE ") + each.sql);
    EXPECT_EQ(db.tables(), (std::vector<std::string>{"city", "road"})) << each.sql;
    EXPECT_TRUE(db.views().empty()) << each.sql;
  }
  EXPECT_EQ(ask("CREATE TABLE a (x INT)"), "");
  EXPECT_EQ(ask("INSERT INTO a VALUES (1)"), "");
  db.execute("CREATE VIEW v AS SELECT 1 AS x");
  EXPECT_EQ(ask("DROP VIEW v, w"), "name: there is no view \"w\"");
  EXPECT_EQ(ask("SELECT * FROM v"), "1");
  EXPECT_EQ(ask("CREATE OR REPLACE VIEW v AS SELECT x FROM v").find("name: there is no table \"v\""), 0U);
  EXPECT_EQ(ask("SELECT * FROM v"), "1");
}

TEST_F(Session, copies_files_whole_or_not_at_all) {
  const std::string path = testing::TempDir() + "session_test.csv";
  struct {
    const char* table;
    const char* file;
    const char* message;  // "" where it is loaded
  } const cases[] = {
      {"city", "name,people,big\nWem,3,true\nEye,,\n", "constraint: column \"people\" of table \"city\" is NOT"},
      {"city", "name,people\nWem,3\nEly,4\n", "input: "},
      {"city", "name,people\nWem,3\nEye,x\n", "input: "},
      {"city", "name,peeple\nWem,3\n", "input: "},
      {"town", "name\nWem\n", "name: there is no table \"town\""},
      {"road", "number,start\n1,Ely\n2,Nowhere\n", "input: "},
      {"road", "number,start,weight\n1,Ely,18446744073709551615\n2,,\n", ""}};
  for (const auto& each : cases) {
    std::ofstream(path, std::ios::binary) << each.file;
    const std::string found = ask(std::string("COPY ") + each.table + " FROM '" + path + "' (HEADER)");
    EXPECT_EQ(found.substr(0, std::string(each.message).size()), each.message) << each.file;
    EXPECT_EQ(found.empty(), *each.message == '\0') << each.file << found;
    const std::string roads = found.empty() ? "2" : "0";
    EXPECT_EQ(ask("SELECT (SELECT count(*) FROM city), (SELECT count(*) FROM road)"), "3 " + roads) << each.file;
  }
  std::filesystem::remove(path);
  EXPECT_EQ(ask("SELECT start.name, weight FROM road ORDER BY number"), "Ely 18446744073709551615; NULL NULL");
  EXPECT_EQ(ask("COPY city FROM '" + path + "'").find("input: "), 0U);
}

// ---- Places of errors

TEST_F(Session, says_where_a_statement_is_wrong) {
  db.execute("CREATE VIEW divided AS SELECT people / (people - 5) AS x FROM city");
  for (std::string sql : {"SELECT ~citty FROM city",
                          "SELECT c.~x FROM city c",
                          "SELECT ~d.x FROM city c",
                          "SELECT 1 FROM ~town",
                          "WITH a AS (SELECT ~nosuch FROM city) SELECT 1",
                          "SELECT ~name FROM city a, city b",
                          "SELECT ~name + 1 FROM city",
                          "SELECT 1 FROM city WHERE ~name",
                          "SELECT 1 FROM city WHERE people ~= 'x'",
                          "SELECT ~nosuch(1)",
                          "SELECT max(~max(people)) FROM city",
                          "SELECT ~name FROM city GROUP BY people",
                          "SELECT 1 ~UNION SELECT 1, 2",
                          "SELECT CASE WHEN TRUE THEN 1 ELSE ~'x' END",
                          "SELECT ~(SELECT 1, 2)",
                          "SELECT 1 ORDER BY ~3",
                          "SELECT 1 LIMIT ~-1",
                          "SELECT start.~nam FROM road",
                          "SELECT people ~/ (people - 5) FROM city",
                          "SELECT CAST(1 AS ~XYZ)",
                          "SELECT ~1e400",
                          "SELECT x FROM city, ~divided",
                          "SELECT 1 FROM city c JOIN road USING (~name)",
                          "INSERT INTO city (~nam) VALUES (1)",
                          "CREATE TABLE a (x INT DEFAULT ~'x')",
                          "~DELETE FROM city"}) {
    const std::size_t position = sql.find('~');
    sql.erase(position, 1);
    // In a script, too.
    const std::string before = "SELECT 1; ";
    try {
      db.execute(before + sql + "; SELECT 2");
      ADD_FAILURE() << sql;
    } catch (const error& raised) {
      EXPECT_EQ(raised.position(), before.size() + position) << sql << ": " << raised.what();
    }
  }
}

// ---- Several databases

TEST(Databases, work_on_what_a_host_defines) {
  ovcoredb::database core;
  ovhost::schema schema(core);
  schema.define_table({"item", {{"id", value_kind::int64}, {"of", ovhost::refers_to{"item"}}}});
  schema.define_index({"item", "objects", {{"object_number"}}});
  database one(core, schema);
  database other(core, schema);
  one.execute("INSERT INTO item VALUES (1, NULL); INSERT INTO item SELECT 2, i FROM item i");
  statement asked = other.prepare("SELECT id, of.id FROM item ORDER BY 1");
  EXPECT_EQ(rows_of(asked), "1 NULL; 2 1");
  schema.define_table({"late", {{"id", value_kind::int64}}});
  schema.define_index({"late", "objects", {{"object_number"}}});
  EXPECT_EQ(told([&] { other.prepare("SELECT * FROM late"); }), "name: there is no table \"late\"");
  other.refresh();
  EXPECT_EQ(other.tables(), (std::vector<std::string>{"item", "late"}));
  EXPECT_EQ(rows_of(asked), "1 NULL; 2 1");
}

TEST_F(Session, shares_its_thread_with_others) {
  database other;
  other.execute("CREATE TABLE city (people INT); INSERT INTO city VALUES (1), (2), (3)");
  statement here = db.prepare("SELECT name FROM city ORDER BY 1");
  statement there = other.prepare("SELECT people FROM city");
  std::string all;
  while (here.step() && there.step()) all += here.text(0) + there.text(0);
  EXPECT_EQ(all, "Ayr1Ely2Rye3");
  database moved = std::move(other);
  EXPECT_EQ(rows_of(there), "");
  EXPECT_EQ(rows_of(there), "1; 2; 3");
}

}  // namespace
}  // namespace ovsql
