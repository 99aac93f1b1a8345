// SQL over a database in memory:
//
//   ovsql::database db;
//   db.execute("CREATE TABLE town (name TEXT PRIMARY KEY, people INT); INSERT INTO town VALUES ('Ely', 20574)");
//   ovsql::statement biggest = db.prepare("SELECT name, people FROM town WHERE people > ? ORDER BY people DESC");
//   biggest.bind(1, 10000);
//   while (biggest.step()) std::cout << biggest.text(0) << ' ' << biggest.integer(1) << '\n';
//
// docs/sql.md describes the dialect. A database and its statements serve one thread at a time.
#ifndef OVSQL_SESSION_DATABASE_HPP_
#define OVSQL_SESSION_DATABASE_HPP_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ovsql/errors/error.hpp"
#include "ovsql/errors/export.hpp"
#include "ovsql/session/statement.hpp"

namespace ovcoredb {
class database;
}
namespace ovhost {
class schema;
}

namespace ovsql {

struct database_state;

// How a database differs from the dialect.
struct options {
  // What x / 0 and x % 0 yield: an error, or NULL, as some other databases have it.
  bool null_on_division_by_zero = false;
};

class OVSQL_API database {
 public:
  // Makes an empty database in memory.
  explicit database(const options& how = {});

  // Works on a host's database, which outlives this object, as the schema does that its metadata were written with.
  // What the host defines later is seen after refresh().
  database(ovcoredb::database& core, ovhost::schema& schema, const options& how = {});

  ~database();
  database(database&&) noexcept;
  database& operator=(database&&) noexcept;

  // Prepares one statement; a semicolon and comments may follow it. Throws error: of kind usage where the text holds no
  // statement, or a second one.
  statement prepare(std::string_view sql);

  // Prepares the statement that begins at a byte of a script and moves the byte behind it; nothing where only spaces
  // and comments follow. Where it throws a syntax error, the byte is behind the statement all the same.
  std::optional<statement> prepare_next(std::string_view script, std::size_t& next);

  // Runs all statements of a script and drops their rows. Returns how many rows the last one inserted or loaded. Where
  // a statement fails, those before it remain done; the error's position is in the script.
  std::uint64_t execute(std::string_view script);

  // Reads the catalog again, after the host has defined tables or indexes beside this object.
  void refresh();

  // The names of tables and views, for tools.
  std::vector<std::string> tables() const;
  std::vector<std::string> views() const;

  // The statements that make a table and its indexes, or a view, as if it were to be made again. Throws error of kind
  // name.
  std::vector<std::string> schema(std::string_view name) const;

 private:
  std::unique_ptr<database_state> state_;
};

}  // namespace ovsql

#endif  // OVSQL_SESSION_DATABASE_HPP_
