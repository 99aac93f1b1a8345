#ifndef OV_SQL_EXECUTOR_ERRORS_UTF8_HPP_
#define OV_SQL_EXECUTOR_ERRORS_UTF8_HPP_

#include <string>
#include <string_view>

// Converts UTF-16, one unit per character of the view, to UTF-8. A surrogate pair becomes one four-byte sequence.
// Throws std::range_error "bad conversion" for a surrogate without its other half and for a character beyond 16 bits.
std::string ucs2_to_utf8(std::wstring_view text);

#endif  // OV_SQL_EXECUTOR_ERRORS_UTF8_HPP_
