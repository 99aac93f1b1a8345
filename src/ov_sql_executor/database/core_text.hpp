// Converts between the core's encoded text and UTF-16. A text handed to the core ends at its first zero unit.
//
// Calls with a context throw db_util::db_exception with the core's status. Calls without one that decode throw it where
// the core has no memory (ORV_OUT_OF_MEMORY), and take bytes that are not an encoded text for the empty one.
#ifndef OV_SQL_EXECUTOR_DATABASE_CORE_TEXT_HPP_
#define OV_SQL_EXECUTOR_DATABASE_CORE_TEXT_HPP_

#include <boost/container/small_vector.hpp>
#include <cstdint>
#include <string>

#include "ov_sql_executor/values/tt_string.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace db_util {

using ov::sql_executor::text_view;

std::u16string turbotext_to_ucs2(std::uint64_t context, text_view text);
std::u16string turbotext_to_ucs2(text_view text);

// Appends the units of a text to others. Texts of usual length need no heap.
using unit_buffer = boost::container::small_vector<char16_t, 256>;
void append_ucs2(text_view text, unit_buffer& units);

// Convert to the base form, in which texts that differ only in case are equal.
std::u16string turbotext_to_base_ucs2(std::uint64_t context, text_view text);
std::u16string turbotext_to_base_ucs2(text_view text);

// Shows the base form in the core's memory. Valid until: the next core call on the context. Requires: the core does not
// lend the text itself, since the answer might overwrite it.
std::u16string_view lend_base_ucs2(std::uint64_t context, text_view text);

// What an encoded text stands for: the text itself, or a mark above every text that begins with it.
enum class upper_limit : std::uint8_t { no = 0, yes = 1 };

db_string::tt_string ucs2_to_turbotext(std::uint64_t context, const std::u16string& units, upper_limit limit);
db_string::tt_string ucs2_to_turbotext(const std::u16string& units, upper_limit limit);
db_string::tt_string ucs2_to_setspec_turbotext(std::uint64_t context, const std::u16string& units, upper_limit limit);

// Appends a zero unit to units, which the core needs.
db_string::tt_string ucs2_to_turbotext(std::uint64_t context, unit_buffer& units, upper_limit limit);

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_CORE_TEXT_HPP_
