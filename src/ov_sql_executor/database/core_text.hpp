// Conversions between the core's encoded text and UTF-16. Those with a context throw db_util::db_exception with the
// core's status; of those without, the ones from encoded text throw it where the core has no memory (ORV_OUT_OF_MEMORY)
// and take bytes that are not an encoded text for the empty one. A text handed to the core ends at its first zero unit.
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

// Appends the text's units to others. Texts as they are in columns need no heap.
using unit_buffer = boost::container::small_vector<char16_t, 256>;
void append_ucs2(text_view text, unit_buffer& units);

// The base form, in which texts that differ only in case are equal.
std::u16string turbotext_to_base_ucs2(std::uint64_t context, text_view text);
std::u16string turbotext_to_base_ucs2(text_view text);

// The same where the core keeps it: good until the next core call on the context. The text is not one that the core
// lends, which might lie where the answer goes.
std::u16string_view lend_base_ucs2(std::uint64_t context, text_view text);

// What an encoded text stands for: the text itself, or a mark above every text that begins with it.
enum class upper_limit : std::uint8_t { no = 0, yes = 1 };

db_string::tt_string ucs2_to_turbotext(std::uint64_t context, const std::u16string& units, upper_limit limit);
db_string::tt_string ucs2_to_turbotext(const std::u16string& units, upper_limit limit);
db_string::tt_string ucs2_to_setspec_turbotext(std::uint64_t context, const std::u16string& units, upper_limit limit);

// A zero unit is put behind the others for it.
db_string::tt_string ucs2_to_turbotext(std::uint64_t context, unit_buffer& units, upper_limit limit);

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_CORE_TEXT_HPP_
