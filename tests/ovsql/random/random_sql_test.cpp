// Random queries here and in SQLite, with indexes and without.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <set>

#include "ovsql/session/database.hpp"
#include "random_sql.hpp"

namespace tests {
namespace {

using rows = std::vector<std::string>;

// SQLite has one kind of number beside integers: all are spelled as doubles, 0 without a sign.
std::string spell(double of) {
  std::array<char, 40> words{};
  std::snprintf(words.data(), words.size(), "%.15g", of + 0.0);
  return words.data();
}

bool is_error(const rows& of, std::string_view message) {
  return of.size() == 1 && of[0].find(message) != std::string::npos;
}

// SQLite goes on with doubles where an integer is out of range. (Whatever else differs by design is not made here:
// LATERAL, texts as numbers, truth values beside parameters, sums of different DISTINCT values.)
bool is_refused(const rows& found) {
  return is_error(found, "a number is out of range") ||
         is_error(found, "division by zero, or a number is out of range");
}

class sqlite {
 public:
  sqlite() {
    sqlite3_open(":memory:", &database_);
    sqlite3_create_function(database_, "greatest", -1, SQLITE_UTF8, nullptr, &extreme<1>, nullptr, nullptr);
    sqlite3_create_function(database_, "least", -1, SQLITE_UTF8, nullptr, &extreme<-1>, nullptr, nullptr);
  }
  ~sqlite() { sqlite3_close(database_); }
  sqlite(const sqlite&) = delete;
  sqlite& operator=(const sqlite&) = delete;

  // SQLite 3.40 has some joins wrong that it has right without its optimisations.
  void optimise(bool does) { sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, database_, does ? 0 : -1); }

  rows run(const random_sql::query& of) {
    sqlite3_stmt* raw = nullptr;
    sqlite3_prepare_v2(database_, of.sql.c_str(), -1, &raw, nullptr);
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement(raw, &sqlite3_finalize);
    for (std::size_t at = 0; at < of.parameters.size(); ++at) {
      const int number = sqlite3_bind_parameter_index(raw, (":p" + std::to_string(at + 1)).c_str());
      if (number != 0) sqlite3_bind_int64(raw, number, of.parameters[at]);
    }
    rows found;
    while (sqlite3_step(raw) == SQLITE_ROW) {
      std::string& row = found.emplace_back();
      for (int column = 0; column < sqlite3_column_count(raw); ++column) row += spell_value(raw, column) + "|";
    }
    if (sqlite3_errcode(database_) != SQLITE_DONE && sqlite3_errcode(database_) != SQLITE_OK) {
      found.assign(1, std::string("error: ") + sqlite3_errmsg(database_));
    }
    return found;
  }

 private:
  static std::string spell_value(sqlite3_stmt* of, int column) {
    const int type = sqlite3_column_type(of, column);
    if (type == SQLITE_NULL) return "NULL";
    if (type != SQLITE_TEXT) return spell(sqlite3_column_double(of, column));
    return "'" + std::string(reinterpret_cast<const char*>(sqlite3_column_text(of, column))) + "'";
  }

  // Leaves NULLs out.
  template <int direction>
  static void extreme(sqlite3_context* into, int count, sqlite3_value** of) {
    sqlite3_value* best = nullptr;
    for (int at = 0; at < count; ++at) {
      if (sqlite3_value_type(of[at]) == SQLITE_NULL) continue;
      if (best == nullptr || direction * order(of[at], best) > 0) best = of[at];
    }
    if (best != nullptr) sqlite3_result_value(into, best);
  }

  static int order(sqlite3_value* left, sqlite3_value* right) {
    if (sqlite3_value_type(left) == SQLITE_TEXT) {
      const std::string a = reinterpret_cast<const char*>(sqlite3_value_text(left));
      return a.compare(reinterpret_cast<const char*>(sqlite3_value_text(right)));
    }
    const double a = sqlite3_value_double(left);
    const double b = sqlite3_value_double(right);
    return a < b ? -1 : a > b ? 1 : 0;
  }

  sqlite3* database_ = nullptr;
};

std::string spell_value(const ovsql::statement& of, std::size_t column) {
  if (of.is_null(column)) return "NULL";
  const bool is_text = std::holds_alternative<db_string::tt_string>(of[column]);
  return is_text ? "'" + of.text(column) + "'" : spell(of.real(column));
}

rows run(ovsql::database& db, const random_sql::query& of) {
  try {
    ovsql::statement statement = db.prepare(of.sql);
    for (std::size_t at = 1; at <= of.parameters.size(); ++at) {
      const std::string name = "p" + std::to_string(at);
      if (of.sql.find(":" + name) != std::string::npos)
        statement.bind(statement.parameter(name), of.parameters[at - 1]);
    }
    rows found;
    while (statement.step()) {
      std::string& row = found.emplace_back();
      for (std::size_t column = 0; column < statement.column_count(); ++column)
        row += spell_value(statement, column) + "|";
    }
    return found;
  } catch (const ovsql::error& raised) {
    return {std::string("error: ") + raised.what()};
  }
}

// A table as SQLite is to have it. It keeps what it takes for a NUMERIC that is whole as an integer, and would divide
// it as one; where a key is unique, it forgets the OFFSET of a DISTINCT.
std::string for_sqlite(std::string sql) {
  for (const auto& [ours, theirs] : {std::pair("d DECIMAL", "d REAL"), std::pair("INT PRIMARY KEY", "INT")}) {
    const std::size_t at = sql.find(ours);
    if (at != std::string::npos) sql.replace(at, std::string_view(ours).size(), theirs);
  }
  return sql;
}

unsigned from_environment(const char* name, unsigned otherwise) {
  const char* const asked = std::getenv(name);
  return asked == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(asked, nullptr, 10));
}

struct tally {
  unsigned queries = 0;
  unsigned refusals = 0;
  unsigned peer_faults = 0;
};

std::string shown(const rows& of) {
  std::string made = std::to_string(of.size()) + " rows:";
  for (std::size_t at = 0; at < of.size() && at < 12; ++at) made += "\n    " + of[at];
  return made;
}

// Tables of one seed, and queries on them.
void compare(unsigned seed, tally& count) {
  std::mt19937 random(seed);
  random_sql making(random);
  ovsql::database plain({true});
  ovsql::database indexed({true});
  sqlite peer;
  std::string script;
  for (const std::string& each : making.definitions()) {
    script += each + ";\n";
    peer.run({for_sqlite(each)});
    plain.execute(each);
    indexed.execute(each);
  }
  for (const std::string& each : making.indexes()) {
    script += each + ";\n";
    indexed.execute(each);
  }
  for (int number = 0; number < 40; ++number) {
    const random_sql::query of = making.make();
    ++count.queries;
    const auto sorted = [&of](rows found) {
      if (!of.is_ordered) std::sort(found.begin(), found.end());
      return found;
    };
    const rows scanned = sorted(run(plain, of));
    const rows looked_up = sorted(run(indexed, of));
    rows theirs = sorted(peer.run(of));
    if (is_refused(scanned) || is_refused(looked_up)) {
      ++count.refusals;
      continue;
    }
    if (scanned == theirs && looked_up == theirs) continue;
    peer.optimise(false);
    theirs = sorted(peer.run(of));
    peer.optimise(true);
    if (scanned == theirs && looked_up == theirs) {
      ++count.peer_faults;
      continue;
    }
    std::string values;
    for (const std::int64_t each : of.parameters) values += " " + std::to_string(each);
    ADD_FAILURE() << "seed " << seed << ", query " << number << "\n"
                  << script << of.sql << ";" << values << "\n  SQLite: " << shown(theirs)
                  << "\n  here, without indexes: " << shown(scanned)
                  << "\n  here, with indexes: " << (looked_up == scanned ? "the same" : shown(looked_up));
  }
}

// The environment may say how many sets of tables, and where to begin.
TEST(RandomSql, agrees_with_sqlite_through_indexes_and_without) {
  const unsigned first = from_environment("OV_SQL_SEED", 1);
  const unsigned count = from_environment("OV_SQL_SEEDS", 100);
  tally done;
  for (unsigned seed = first; seed < first + count && !HasFailure(); ++seed) compare(seed, done);
  std::printf("%u queries, %u refused, %u wrong in SQLite\n", done.queries, done.refusals, done.peer_faults);
  EXPECT_LT(done.refusals + done.peer_faults, done.queries / 100 + 2);
}

}  // namespace
}  // namespace tests
