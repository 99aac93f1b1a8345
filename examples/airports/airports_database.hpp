#ifndef AIRPORTS_AIRPORTS_DATABASE_HPP_
#define AIRPORTS_AIRPORTS_DATABASE_HPP_

#include <string>

#include "ovcoredb/database.hpp"

// Defines the demo's tables and indexes and loads both files of the folder:
//
//   place    name, city, state, country
//   airport  a place with iata, latitude, longitude
//            by_iata (unique), by_name, by_state_city
//   flight   origin and destination (airports), count
//            by_route (origin, destination; unique), by_destination, by_count (descending)
//
// Throws what the schema and the loader throw.
void load_airports(ovcoredb::database& database, const std::string& folder);

#endif  // AIRPORTS_AIRPORTS_DATABASE_HPP_
