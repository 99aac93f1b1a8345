// What a host defines and loads from files, and what is refused.
#include "ovhost/staff.hpp"
#include "ovhost/csv/csv_reader.hpp"

namespace ovhost {
namespace {

// Ada has no boss; Dan's salary is NULL.
constexpr const char* five_employees =
    "name,born,salary,boss,active,badge,height\n"
    "Ada,1815,100.5,nobody,true,00ff,1.65\n"
    "Ben,1950,80,Ada,true,,\n"
    "Cyd,1960,80,Ada,false,,1.7\n"
    "Dan,,,Ben,,,\n"
    "\"Eve, \"\"E\"\"\",1970,12.000001,Dan,true,,\n";
const csv_options by_names = {{{.property = "boss", .null_words = {"nobody", "-"}, .key = "name"}}};

TEST_F(Staff, RefusesAFileThatDoesNotFitAndLoadsNothingOfIt) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "1: the file is empty"},
      {"name,shoe\n", "1: column shoe: table \"Staff.Employee\" has no such property"},
      {"name,born,name\n", "1: column name: the property has two columns"},
      {"name,born\nAda\n", "2: 1 fields where the headings are 2"},
      {"name,born\nAda,1\nBen,18x\n", "3: column born: \"18x\" is not a value of type int64"},
      {"name,born\nAda,1\nBen,9223372036854775808\n", "3: column born: \"9223372036854775808\" is not"},
      {"name,salary\nAda,0.0000001\n", "2: column salary: \"0.0000001\" is not a value of type decimal"},
      {"name,salary\nAda,4398046511104\n", "2: column salary"},
      {"name,active\nAda,yes\n", "2: column active: \"yes\" is not a value of type bool (true or false)"},
      {"name,badge\nAda,0g\n", "2: column badge: \"0g\" is not a value of type binary"},
      {"name,badge\nAda,012\n", "2: column badge"},
      {"name,height\nAda,tall\n", "2: column height: \"tall\" is not a value of type double"},
      {"born,name\n1,\"A\n\xFF\"\n", "2: column name: the text is not UTF-8"},
      {"name,boss\nAda,\nBen,Adam\n", "3: column boss: there is no Staff.Employee with the name \"Adam\""},
      {"name\nAda\nBen\nAda\n", "4: the row has the key of another object in the unique index \"by_name\""},
      {"name\nB\"n\n", "2: "},
      {"name\n\"B\"n\n", "2: "},
      {"name\nAda\n\"Ben\n", "3: a quoted field does not end"}};
  for (const auto& each : cases) {
    expect_refused<csv_error>("staff.csv:" + each.second, [&] { load("Staff.Employee", each.first, by_names); });
  }
  EXPECT_EQ(load("Staff.Employee", five_employees, by_names), 5U);
}

// With a list of the columns, headings are skipped or left out.
TEST_F(Staff, TakesTheColumnsFromAList) {
  const auto listed = [](bool headings, std::vector<std::string> order) {
    return csv_options{.columns = {}, .separator = ';', .headings = headings, .order = std::move(order)};
  };
  EXPECT_EQ(load("Staff.Employee", "x;y\n7;Ada\n", listed(true, {"born", "name"})), 1U);
  EXPECT_EQ(load("Staff.Employee", "Ben; 8 \nCyd;9\n", listed(false, {"name", "born"})), 2U);
  EXPECT_EQ(load("Staff.Employee", "", listed(false, {"name"})), 0U);
  EXPECT_EQ(load("Staff.Employee", "Dan; True\nEve;FALSE\n", listed(false, {"name", "active"})), 2U);
  EXPECT_EQ(rows_of_plan(project({e["name"], e["born"], e["active"]}, scan(e, "by_name"))),
            "('Ada' i7 NULL)('Ben' i8 NULL)('Cyd' i9 NULL)('Dan' NULL true)('Eve' NULL false)");
  expect_refused<csv_error>("staff.csv:2: 1 fields where the columns are 2", [&] {
    load("Staff.Employee", "F;1\nG\n", listed(false, {"name", "born"}));
  });
  expect_refused<csv_error>("staff.csv:1: 3 fields where the columns are 2", [&] {
    load("Staff.Employee", "a;b;c\n", listed(true, {"name", "born"}));
  });
  expect_refused<csv_error>("column name: the property has two columns", [&] {
    load("Staff.Employee", "", listed(false, {"name", "name"}));
  });
  expect_refused<unknown_name>("shoe", [&] { load("Staff.Employee", "", listed(false, {"shoe"})); });
  expect_refused<std::invalid_argument>("list of its columns", [&] { load("Staff.Employee", "", listed(false, {})); });
}

TEST_F(Staff, RefusesOptionsThatDoNotFitTheTable) {
  const auto loading = [this](const csv_column& column) {
    return [this, column] { load("Staff.Employee", "name,boss\nAda,\n", {{column}}); };
  };
  expect_refused<unknown_name>("shoe", loading({.property = "shoe"}));
  expect_refused<unknown_name>("shoe", loading({.property = "boss", .key = "shoe"}));
  expect_refused<std::invalid_argument>("\"boss\" is a reference", loading({.property = "name"}));
  expect_refused<std::invalid_argument>("no unique index on \"born\"", loading({.property = "boss", .key = "born"}));
  expect_refused<csv_error>("no/such/file.csv", [&] { load_csv_file(database, "Staff.Person", "no/such/file.csv"); });
  expect_refused<csv_error>(".:0: the file cannot be read", [&] { load_csv_file(database, "Staff.Person", "."); });
}

// Spells fields in brackets, ~ for nothing, each row after the number of its line: "1[a][~] 2[b]".
TEST(CsvReader, SplitsRowsAndFields) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"a,b\nc,d", "1[a][b] 2[c][d]"},
      {"a,b\r\nc,d\r\n", "1[a][b] 2[c][d]"},
      {"a,,\"\",\n", "1[a][~][][~]"},  // empty is nothing, quoted empty is a text
      {"\"a,b\",\"c\"\"d\"\n", "1[a,b][c\"d]"},
      {"\"a\r\nb\",c\nd,e\n", "1[a\r\nb][c] 3[d][e]"},
      {" a , b\n", "1[ a ][ b]"},
      {"\n\na\n\r\nb\n", "3[a] 5[b]"},
      {"\xEF\xBB\xBFname\nAda\n", "1[name] 2[Ada]"},  // after a byte order mark
      {"Zürich,東京\n", "1[Zürich][東京]"}};
  for (const auto& [text, rows] : cases) {
    std::istringstream input(text);
    csv_reader reader(input);
    std::string result;
    while (const auto row = reader.next()) {
      result += (result.empty() ? "" : " ") + std::to_string(row->line);
      for (const csv_field& field : row->fields) result += "[" + field.value_or("~") + "]";
    }
    EXPECT_EQ(result, rows) << text;
  }
}

TEST_F(Staff, RefusesTablesThatCannotBe) {
  const value_kind text = value_kind::text;
  const std::pair<table_definition, const char*> cases[] = {
      {{"Staff.Person", {}}, "\"Staff.Person\" is defined already"},
      {{"staff.PERSON", {}}, "names that differ in case only"},
      {{"", {}}, "empty name"},
      {{"a/b", {}}, "slash"},
      {{"a..b", {}}, "empty part"},
      {{".a", {}}, "empty part"},
      {{std::string("a\0b", 3), {}}, "zero character"},
      {{"\xFF", {}}, "not UTF-8"},
      {{"T", {{"", text}}}, "empty name"},
      {{"T", {{"a", text}, {"a", text}}}, "two members called \"a\""},
      {{"T", {{"object_number", text}}}, "two members called \"object_number\""},
      {{"T", {{"name", text}}, "Staff.Employee"}, "two members called \"name\""},
      {{"T", {{"a", refers_to{"Nowhere"}}}}, "member \"a\" of table \"T\" refers to the unknown table \"Nowhere\""},
      {{"T", {{"a", value_kind::set_specifier}}}, "cannot hold a set specifier"},
      {{"T", {{"a", value_kind::reference}}}, "does not say to which table"},
      {{"T", {}, "Nowhere"}, "derives from \"Nowhere\""},
      {{"T", {}, "T"}, "derives from \"T\""}};
  for (const auto& each : cases) {
    expect_refused<std::runtime_error>(each.second, [&] { definitions.define_table(each.first); });
  }
  expect_refused<std::runtime_error>("defined already", [&] { definitions.define_tables({{"New", {}}, {"NEW", {}}}); });
  EXPECT_FALSE(catalog().find_table("New"));
}

TEST_F(Staff, RefusesIndexesThatCannotBe) {
  const std::pair<index_definition, const char*> cases[] = {
      {{"Nowhere", "i", {{"name"}}}, "no table \"Nowhere\"; there are: Staff.Employee, Staff.Person"},
      {{"Staff.Person", "i", {{"salary"}}}, "called \"salary\"; there are: name, born"},
      {{"Staff.Person", "i", {}}, "no columns"},
      {{"Staff.Person", "", {{"name"}}}, "empty name"},
      {{"Staff.Person", "everybody", {{"name"}}}, "defined already"},
      {{"Staff.Person", "i", {{"name"}, {"name", false}}}, "names \"name\" twice"},
      {{"Staff.Employee", "i", {{"height"}}}, "cannot be part of a key"}};
  for (const auto& each : cases) {
    expect_refused<std::runtime_error>(each.second, [&] { definitions.define_index(each.first); });
  }
  // The objects that collide exist before the index does.
  load("Staff.Person", "name\nAda\nAda\n");
  expect_refused<ovcoredb::unique_violation>("", [&] {
    definitions.define_index({"Staff.Person", "by_name", {{"name"}}, true});
  });
  const catalog names;
  EXPECT_FALSE(names.find_index(names.table("Staff.Person"), "by_name"));
}

TEST_F(Staff, IsReadAsTheFileSays) {
  load("Staff.Employee", five_employees, by_names);
  const table_variable boss = e.follow("boss");
  const table_variable their_boss = boss.follow("boss");
  EXPECT_EQ(rows_of_plan(
                project({e["name"], e["born"], e["salary"], e["active"], e["badge"], e["height"]}, scan(e, "by_name"))),
            "('Ada' i1815 dec100500000 true x'00ff' d1.65)('Ben' i1950 dec80000000 true NULL NULL)"
            "('Cyd' i1960 dec80000000 false NULL d1.7)('Dan' NULL NULL NULL NULL NULL)"
            "('Eve,<20>\"E\"' i1970 dec12000001 true NULL NULL)");
  EXPECT_EQ(rows_of_plan(project({e["name"], boss["name"], their_boss["name"]},
                                 reach(their_boss, reach(boss, scan(e, "by_name"))))),
            "('Ada' NULL NULL)('Ben' 'Ada' NULL)('Cyd' 'Ada' NULL)('Dan' 'Ben' 'Ada')('Eve,<20>\"E\"' 'Dan' 'Ben')");
}

// Employees are people, and an index over people holds them. Names of types are found in any case.
TEST_F(Staff, ScansDerivedObjectsThroughTheirBase) {
  load("Staff.Employee", "name\nAda\nBen\n", by_names);
  load("Staff.Person", "name\nZoe\n");
  const table_variable p = q.over("Staff.Person", "p");
  const auto people = [&p](plan from) { return project({p["name"]}, std::move(from)); };
  const auto others = [&](const char* type) { return filter(negated(is_a(p, type)), scan(p, "everybody")); };
  EXPECT_EQ(rows_of_plan(people(scan(p, "everybody"))), "('Ada')('Ben')('Zoe')");
  EXPECT_EQ(rows_of_plan(people(others("staff.EMPLOYEE"))), "('Zoe')");
  EXPECT_EQ(rows_of_plan(people(others("Staff.person"))), "");
}

}  // namespace
}  // namespace ovhost
