#ifndef OV_SQL_EXECUTOR_DATABASE_ITERATOR_SKIP_HPP_
#define OV_SQL_EXECUTOR_DATABASE_ITERATOR_SKIP_HPP_

#include <cstdint>

namespace db_util {

// Passes over at most count objects of a core's iterator and returns how many there were; fewer only at its end. Steps
// where the core cannot skip. Throws db_exception with the core's status.
std::uint64_t skip_objects(std::uint64_t iterator, std::uint64_t count);

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_ITERATOR_SKIP_HPP_
