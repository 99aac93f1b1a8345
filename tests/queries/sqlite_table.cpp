#include "queries/sqlite_table.hpp"

#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdio>
#include <variant>

#include "ovhost/text.hpp"

namespace tests {

namespace {

std::string show_double(double number) {
  char digits[40];
  std::snprintf(digits, sizeof digits, "%.17g", number);
  return digits;
}

std::string show_value(const ov::sql_executor::value& any) {
  return std::visit(
      []<class T>(const T& held) -> std::string {
        if constexpr (std::same_as<T, operator_library::NullValue>) {
          return "NULL";
        } else if constexpr (std::same_as<T, bool> || std::same_as<T, std::uint64_t> || std::same_as<T, std::int64_t>) {
          return std::to_string(held);
        } else if constexpr (std::same_as<T, double>) {
          return show_double(held);
        } else if constexpr (std::same_as<T, db_string::tt_string>) {
          return "'" + ovhost::utf8(ovhost::decode(held)) + "'";
        } else {
          return "unexpected type";
        }
      },
      any);
}

std::string show_column(sqlite3_stmt* statement, int column) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
      return "NULL";
    case SQLITE_INTEGER:
      return std::to_string(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
      return show_double(sqlite3_column_double(statement, column));
    default:
      return "'" + std::string(reinterpret_cast<const char*>(sqlite3_column_text(statement, column))) + "'";
  }
}

sqlite3* open_in_memory() {
  sqlite3* handle = nullptr;
  EXPECT_EQ(sqlite3_open(":memory:", &handle), SQLITE_OK);
  return handle;
}

}  // namespace

std::string show_row(const ov::sql_executor::row& values) {
  std::string text;
  for (const auto& any : values) text += show_value(any) + "|";
  return text;
}

sqlite_database::sqlite_database() : handle_(open_in_memory(), &sqlite3_close) {}

result sqlite_database::query(const std::string& sql) {
  sqlite3_stmt* raw = nullptr;
  const int status = sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &raw, nullptr);
  EXPECT_EQ(status, SQLITE_OK) << sqlite3_errmsg(handle_.get()) << " in " << sql;
  const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement(raw, &sqlite3_finalize);
  result rows;
  while (status == SQLITE_OK && sqlite3_step(raw) == SQLITE_ROW) {
    std::string& text = rows.emplace_back();
    for (int column = 0; column < sqlite3_column_count(raw); ++column) text += show_column(raw, column) + "|";
  }
  return rows;
}

}  // namespace tests
