#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "ovhost/catalog.hpp"
#include "ovhost/csv_loader.hpp"
#include "ovhost/csv_reader.hpp"
#include "staff_database.hpp"

namespace ovhost {
namespace {

using testing::HasSubstr;

TEST(CsvLoader, RefusesAFileThatDoesNotFitAndLoadsNothingOfIt) {
  const struct {
    std::string text;
    std::string message;
  } cases[] = {
      {"", "staff.csv:1: the file is empty"},
      {"name,shoe\n", "staff.csv:1: column shoe: table \"Staff.Employee\" has no such property"},
      {"name,born,name\n", "staff.csv:1: column name: the property has two columns"},
      {"name,born\nAda\n", "staff.csv:2: 1 fields where the headings are 2"},
      {"name,born\nAda,1\nBen,18x\n", "staff.csv:3: column born: \"18x\" is not a value of type int64"},
      {"name,born\nAda,1\nBen,9223372036854775808\n", "staff.csv:3: column born: \"9223372036854775808\" is not"},
      {"name,salary\nAda,0.0000001\n", "staff.csv:2: column salary: \"0.0000001\" is not a value of type decimal"},
      {"name,salary\nAda,4398046511104\n", "staff.csv:2: column salary"},
      {"name,active\nAda,yes\n", "staff.csv:2: column active: \"yes\" is not a value of type bool (true or false)"},
      {"name,badge\nAda,0g\n", "staff.csv:2: column badge: \"0g\" is not a value of type binary"},
      {"name,badge\nAda,012\n", "staff.csv:2: column badge"},
      {"name,height\nAda,tall\n", "staff.csv:2: column height: \"tall\" is not a value of type double"},
      {"born,name\n1,\"A\n\xFF\"\n", "staff.csv:2: column name: the text is not UTF-8"},
      {"name,boss\nAda,\nBen,Adam\n", "staff.csv:3: column boss: there is no Staff.Employee with the name \"Adam\""},
      {"name\nAda\nBen\nAda\n", "staff.csv:4: the row has the key of another object in the unique index \"by_name\""},
      {"name\nB\"n\n", "staff.csv:2: "},
      {"name\n\"B\"n\n", "staff.csv:2: "},
      {"name\nAda\n\"Ben\n", "staff.csv:3: a quoted field does not end"},
  };
  staff_database staff;
  const std::uint64_t before = staff.database.object_count();
  for (const auto& each : cases) {
    EXPECT_THAT(message_of<csv_error>([&] { staff.load_employees(each.text); }), HasSubstr(each.message));
    EXPECT_EQ(staff.database.object_count(), before) << each.message;
  }
  EXPECT_EQ(staff.load_employees(five_employees), 5U);
}

TEST(CsvLoader, RefusesOptionsThatDoNotFitTheTable) {
  staff_database staff;
  const auto load = [&](const csv_column& column) {
    std::istringstream input("name,boss\nAda,\n");
    load_csv(staff.database, "Staff.Employee", input, "staff.csv", {{column}});
  };
  EXPECT_THAT(message_of<unknown_name>([&] { load({.property = "shoe"}); }), HasSubstr("shoe"));
  EXPECT_THAT(message_of<unknown_name>([&] { load({.property = "boss", .key = "shoe"}); }), HasSubstr("shoe"));
  EXPECT_THAT(message_of<std::invalid_argument>([&] { load({.property = "name"}); }),
              HasSubstr("\"boss\" is a reference"));
  EXPECT_THAT(message_of<std::invalid_argument>([&] { load({.property = "boss", .key = "born"}); }),
              HasSubstr("no unique index on \"born\""));
  EXPECT_THAT(message_of<csv_error>([&] { load_csv_file(staff.database, "Staff.Person", "no/such/file.csv"); }),
              HasSubstr("no/such/file.csv"));
}

// Fields in brackets, ~ for nothing, each row after the number of its line: "1[a][~] 2[b]".
std::string read_all(const std::string& text) {
  std::istringstream input(text);
  csv_reader reader(input);
  std::string result;
  while (const auto row = reader.next()) {
    result += (result.empty() ? "" : " ") + std::to_string(row->line);
    for (const csv_field& field : row->fields) result += "[" + field.value_or("~") + "]";
  }
  return result;
}

TEST(CsvReader, SplitsRowsAndFields) {
  const struct {
    const char* why;
    std::string text;
    std::string rows;
  } cases[] = {
      {"nothing", "", ""},
      {"last line without an end", "a,b\nc,d", "1[a][b] 2[c][d]"},
      {"CRLF", "a,b\r\nc,d\r\n", "1[a][b] 2[c][d]"},
      {"empty is nothing, quoted empty is a text", "a,,\"\",\n", "1[a][~][][~]"},
      {"quotes hold separators and doubled quotes", "\"a,b\",\"c\"\"d\"\n", "1[a,b][c\"d]"},
      {"quotes hold line ends", "\"a\r\nb\",c\nd,e\n", "1[a\r\nb][c] 3[d][e]"},
      {"blanks belong to the field", " a , b\n", "1[ a ][ b]"},
      {"empty lines are skipped and counted", "\n\na\n\r\nb\n", "3[a] 5[b]"},
      {"byte order mark", "\xEF\xBB\xBFname\nAda\n", "1[name] 2[Ada]"},
      {"bytes beyond ASCII pass", "Zürich,東京\n", "1[Zürich][東京]"},
  };
  for (const auto& each : cases) EXPECT_EQ(read_all(each.text), each.rows) << each.why;
}

}  // namespace
}  // namespace ovhost
