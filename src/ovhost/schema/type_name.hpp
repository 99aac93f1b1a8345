#ifndef OVHOST_SCHEMA_TYPE_NAME_HPP_
#define OVHOST_SCHEMA_TYPE_NAME_HPP_

#include <cstdint>
#include <string_view>

namespace ovhost {

// Returns what a type is looked up by among the set specifiers: the first word of its name's raw view, in base form.
std::uint64_t type_name_word(std::u16string_view name);

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_TYPE_NAME_HPP_
