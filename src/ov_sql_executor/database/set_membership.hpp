#ifndef OV_SQL_EXECUTOR_DATABASE_SET_MEMBERSHIP_HPP_
#define OV_SQL_EXECUTOR_DATABASE_SET_MEMBERSHIP_HPP_

#include <cstdint>
#include <optional>
#include <string_view>

#include "ovcoredb/ovcoredb.h"

namespace db_util {

// Tells whether an object is in the set that a specifier names: whether its own type's specifier begins with that one.
// Gives nothing where the core knows no specifier for the object. Throws db_exception with the core's status.
std::optional<bool> is_in_set(std::uint64_t context, const OV_OBJ_REF& object, std::u16string_view specifier);

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_SET_MEMBERSHIP_HPP_
