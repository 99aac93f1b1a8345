#ifndef AIRPORTS_OPTIONS_HPP_
#define AIRPORTS_OPTIONS_HPP_

#include <cstddef>
#include <string>
#include <vector>

struct options {
  bool help = false;
  bool list = false;
  std::vector<std::string> queries = {};  // empty: all
  std::string dot = {};                   // a query whose plan is wanted as a graph
  std::string data = AIRPORTS_DATA;       // the folder with the files
  std::size_t rows = 10;                  // to print of each result
};

inline constexpr const char* usage =
    "usage: airports [--list] [--query NAME]... [--rows COUNT] [--dot NAME] [--data FOLDER]\n"
    "  --list         print the names of the queries\n"
    "  --query NAME   run this query only\n"
    "  --rows COUNT   print at most so many rows of each result (10)\n"
    "  --dot NAME     print the plan of a query as a Graphviz graph\n"
    "  --data FOLDER  load the files airports.csv and flights.csv of this folder\n";

// Throws std::invalid_argument for what it does not know.
options parse_options(int count, const char* const* arguments);

#endif  // AIRPORTS_OPTIONS_HPP_
