#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/checks.hpp"
#include "ovsql/session/database.hpp"

namespace fuzz {
namespace {

using ovsql::error, ovsql::error_kind;

void require(bool holds, const std::string& promise) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", promise.c_str());
  std::abort();
}

constexpr const char* tables = R"(
CREATE TABLE t (k INT PRIMARY KEY, a INT NOT NULL DEFAULT 7, b INT, s TEXT, d DECIMAL);
CREATE TABLE u (k INT, x INT, s TEXT, f DOUBLE PRECISION, of REFERENCES t, big BOOLEAN);
CREATE TABLE v (y BINARY) INHERITS (u);
CREATE INDEX tab ON t (a, b DESC); CREATE INDEX ts ON t (s); CREATE INDEX ux ON u (x); CREATE INDEX uo ON u (of);
INSERT INTO t VALUES (1, 5, NULL, 'ash', 1.25), (2, -1, 3, 'Birch', NULL);
INSERT INTO u SELECT k, a, s, 0.5e0, t, b IS NULL FROM t;
INSERT INTO v (k, s, y) VALUES (3, 'elm', x'00ff');
CREATE VIEW w1 AS SELECT a + b AS c, s, max(d) AS m FROM t GROUP BY a + b, s;
CREATE VIEW w2 (p, q) AS SELECT of.s, count(*) FROM u WHERE x > 0 GROUP BY of.s
)";

// Neither reads files nor joins so much that it takes long.
bool is_tried(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char of) { return std::tolower(of); });
  std::size_t joined = 0;
  for (std::size_t at = 0; at < lower.size(); ++at) joined += lower[at] == ',' || lower.compare(at, 4, "join") == 0;
  return joined <= 20 && lower.find("copy") == std::string::npos;
}

void check_error(const error& raised, std::string_view text) {
  require(raised.kind() != error_kind::engine, std::string("no statement makes the engine fail: ") + raised.what());
  require(raised.position() == error::nowhere || raised.position() <= text.size(), "an error lies within the text");
  require(!raised.describe(text).empty(), "an error can be shown");
}

// The first rows, or the error that ends them.
std::vector<std::string> first_rows(ovsql::statement& of, std::string_view text) {
  std::vector<std::string> rows;
  try {
    while (rows.size() < 50 && of.step()) {
      std::string& row = rows.emplace_back();
      for (std::size_t at = 0; at < of.column_count(); ++at) row += of.words(at) + "|";
    }
  } catch (const error& raised) {
    check_error(raised, text);
    rows.emplace_back(raised.what());
  }
  of.reset();
  return rows;
}

// Runs the statement that begins at a byte; false behind the last one.
bool check_statement(ovsql::database& db, std::string_view text, std::size_t& next) {
  try {
    std::optional<ovsql::statement> made = db.prepare_next(text, next);
    if (!made) return false;
    for (std::size_t at = 1; at <= made->parameter_count(); ++at) made->bind(at, static_cast<std::int64_t>(at));
    const std::vector<std::string> rows = first_rows(*made, text);
    require(made->column_count() == 0 || rows == first_rows(*made, text), "a query has the same rows again");
  } catch (const error& raised) {
    check_error(raised, text);
  }
  return true;
}

}  // namespace

void check_sql(std::span<const std::uint8_t> input) {
  const std::string_view text(reinterpret_cast<const char*>(input.data()), input.size());
  if (!is_tried(text)) return;
  ovsql::database db;
  db.execute(tables);
  std::size_t next = 0;
  for (std::size_t before = 0; check_statement(db, text, next); before = next) {
    require(next > before && next <= text.size(), "what follows is behind the statement");
  }
  next = 0;
  require(check_statement(db, "SELECT count(*) FROM t, u, v", next), "the database still answers");
}

}  // namespace fuzz
