#ifndef AIRPORTS_RUN_QUERY_HPP_
#define AIRPORTS_RUN_QUERY_HPP_

#include <cstddef>
#include <cstdint>
#include <ostream>

#include "demo_query.hpp"

// Prints the query's name, its plan in words, its first rows and the time that planning and running took. Runs on a
// context that is the thread's metadata context too.
void run_query(const demo_query& demo, std::uint64_t context, std::size_t most_rows, std::ostream& out);

// Prints the query's plan as a Graphviz graph.
void draw_query(const demo_query& demo, std::ostream& out);

#endif  // AIRPORTS_RUN_QUERY_HPP_
