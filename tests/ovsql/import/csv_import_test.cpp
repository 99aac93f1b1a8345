// CSV files become tables, or nothing at all.
#include "ovsql/import/csv_import.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "ovsql/session/database.hpp"

namespace ovsql {
namespace {

class CsvImport : public testing::Test {
 protected:
  CsvImport() {
    std::string name = testing::TempDir() + "csv_import_XXXXXX";
    folder_ = mkdtemp(name.data());
  }
  ~CsvImport() override { std::filesystem::remove_all(folder_); }

  std::string write(const std::string& name, const std::string& text) const {
    const std::string path = folder_ + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  // "name TYPE, ...: number of rows"
  static std::string spell(const csv_import& made) {
    std::string words;
    for (const imported_column& each : made.columns) words += (words.empty() ? "" : ", ") + each.name + " " + each.type;
    return made.table + "(" + words + "): " + std::to_string(made.rows);
  }

  std::string import(const std::string& path, const csv_import_options& options = {}) {
    return spell(import_csv(db, path, options));
  }

  // Spells the rows of a query: a|b / c|d
  std::string rows_of(const std::string& sql) {
    statement query = db.prepare(sql);
    std::string all;
    while (query.step()) {
      all += all.empty() ? "" : " / ";
      for (std::size_t at = 0; at < query.column_count(); ++at) all += (at == 0 ? "" : "|") + query.words(at);
    }
    return all;
  }

  void expect_refused(error_kind kind, const std::string& end_of_message, const std::string& path,
                      const csv_import_options& options = {}) {
    const auto before = db.tables();
    try {
      import_csv(db, path, options);
      ADD_FAILURE() << path << " was loaded";
    } catch (const error& refused) {
      EXPECT_EQ(refused.kind(), kind) << refused.what();
      EXPECT_TRUE(std::string(refused.what()).ends_with(end_of_message)) << refused.what();
      EXPECT_EQ(refused.position(), error::nowhere);
    }
    EXPECT_EQ(db.tables(), before) << "something was left";
  }

  database db;
  std::string folder_;
};

TEST_F(CsvImport, MakesATableOfAFile) {
  const std::string path = write("2 towns.csv",
                                 "\xEF\xBB\xBFName;Zip;People;Share;Order;Since;\r\n"
                                 "\"Ely; \"\"Cambs\"\"\";00501;20574;0.25;true;1109-01-01;1e3\r\n"
                                 "Rye;10001;;-1.5;FALSE;;\r\n");
  EXPECT_EQ(import(path),
            "_2_towns(Name TEXT, Zip TEXT, People INTEGER, Share DECIMAL, Order_ BOOL, Since TEXT, column7 DOUBLE): 2");
  EXPECT_EQ(rows_of("SELECT * FROM _2_towns ORDER BY name"),
            "Ely; \"Cambs\"|00501|20574|0.25|true|1109-01-01|1000 / Rye|10001|NULL|-1.5|false|NULL|NULL");
}

TEST_F(CsvImport, DoesAsItsOptionsSay) {
  const std::string path = write("a.csv", "x:1\nNA:2\n");
  EXPECT_EQ(import(path, {.table = "t", .delimiter = ':', .header = false, .null_text = "NA"}),
            "t(column1 TEXT, column2 INTEGER): 2");
  EXPECT_EQ(rows_of("SELECT * FROM t ORDER BY column2"), "x|1 / NULL|2");
  const std::string zips = write("zips.csv", "Zip Code\n501\n");
  EXPECT_EQ(import(zips, {.types = {{"Zip Code", "TEXT"}}}), "zips(Zip_Code TEXT): 1");
  EXPECT_EQ(import(zips, {.table = "by_name", .types = {{"zip_code", "DOUBLE"}}}), "by_name(Zip_Code DOUBLE): 1");
}

TEST_F(CsvImport, LoadsNothingOfAFileThatIsWrong) {
  expect_refused(error_kind::input, "short.csv:3: 1 fields where the first row has 2",
                 write("short.csv", "a,b\n1,2\n3\n"));
  expect_refused(error_kind::input, "bytes.csv:3: column a: the text is not UTF-8", write("bytes.csv", "a\nx\n\xFF\n"));
  expect_refused(error_kind::input, "empty.csv:1: the file is empty", write("empty.csv", ""));
  expect_refused(error_kind::input, "the file cannot be opened", folder_ + "/none.csv");
  expect_refused(error_kind::input, "is a folder", folder_);
  expect_refused(error_kind::input, "is no plain file", "/dev/null");
  const std::string texts = write("texts.csv", "a\n1\nx\n");
  expect_refused(error_kind::input, "texts.csv:3: column a: \"x\" is not a value of type int64", texts,
                 {.types = {{"a", "INT"}}});
  expect_refused(error_kind::name, "has no column \"b\"", texts, {.types = {{"b", "INT"}}});
  expect_refused(error_kind::type, "there is no type \"NUMBERS\"", texts, {.types = {{"a", "NUMBERS"}}});
  import(texts);
  expect_refused(error_kind::name, "", texts);
}

}  // namespace
}  // namespace ovsql
