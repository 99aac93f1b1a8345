// Loads airports and the flights between them and runs named queries: see the functions that build their plans.
#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "airports_database.hpp"
#include "demo_query.hpp"
#include "options.hpp"
#include "ov_sql_executor/errors/db_exception.hpp"
#include "ovhost/schema/session.hpp"
#include "run_query.hpp"

namespace {

const demo_query& find(const std::vector<demo_query>& all, const std::string& name) {
  const auto found = std::find_if(all.begin(), all.end(), [&](const demo_query& each) { return each.name == name; });
  if (found == all.end()) throw std::invalid_argument("there is no query \"" + name + "\"; see --list");
  return *found;
}

std::vector<demo_query> chosen(const std::vector<demo_query>& all, const std::vector<std::string>& names) {
  if (names.empty()) return all;
  std::vector<demo_query> result;
  for (const std::string& name : names) result.push_back(find(all, name));
  return result;
}

std::vector<demo_query> all_queries() {
  std::vector<demo_query> all;
  for (const auto& some : {reading_queries(), expression_queries(), relational_queries()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

void run(const options& wanted) {
  const std::vector<demo_query> all = all_queries();
  if (wanted.list) {
    for (const demo_query& each : all) std::cout << each.name << ": " << each.shows << '\n';
    return;
  }
  const std::vector<demo_query> queries = chosen(all, wanted.queries);
  ovcoredb::database database;
  load_airports(database, wanted.data);
  const ovhost::session session(database);
  if (!wanted.dot.empty()) return draw_query(find(all, wanted.dot), std::cout);
  for (const demo_query& each : queries) run_query(each, session.context(), wanted.rows, std::cout);
}

}  // namespace

int main(int count, char** arguments) {
  try {
    const options wanted = parse_options(count, arguments);
    if (wanted.help) {
      std::cout << usage;
    } else {
      run(wanted);
    }
    return 0;
  } catch (const std::invalid_argument& error) {
    std::cerr << "airports: " << error.what() << '\n' << usage;
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "airports: " << error.what() << '\n';
    return 1;
  } catch (const db_util::db_exception& error) {
    std::cerr << "airports: error " << error.code << '\n';
    return 1;
  }
}
