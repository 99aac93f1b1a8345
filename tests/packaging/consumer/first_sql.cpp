// SQL over a database in memory: make a table, fill it, ask.
#include <exception>
#include <iostream>

#include "ovsql/session/database.hpp"

int main() try {
  ovsql::database db;
  db.execute(
      "CREATE TABLE town (name TEXT PRIMARY KEY, people INT);"
      "INSERT INTO town VALUES ('Ely', 20574), ('Wells', 12000)");
  ovsql::statement biggest = db.prepare("SELECT name, people FROM town WHERE people > ? ORDER BY people DESC");
  biggest.bind(1, 15000);
  while (biggest.step()) std::cout << biggest.text(0) << ' ' << biggest.integer(1) << '\n';
  return 0;
} catch (const std::exception& error) {  // ovsql::error says more: error.describe(sql) points at the place
  std::cerr << error.what() << '\n';
  return 1;
}
