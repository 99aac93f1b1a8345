// LIKE patterns over UTF-16 units:
//
//    %     any run of units, also none
//    _     one character: one unit, or two where the first is a high surrogate
//    \     takes the unit after it, which is %, _ or \, literally
//
// Every other unit stands for itself.
#ifndef OV_SQL_EXECUTOR_VALUES_LIKE_PATTERN_HPP_
#define OV_SQL_EXECUTOR_VALUES_LIKE_PATTERN_HPP_

#include <string>
#include <string_view>

namespace ov::sql_executor {

// Tells whether the whole text matches, in time that grows at most with the product of both lengths. Throws OVException
// bad_escape, whatever the text, where anything but a special unit follows an escape.
bool matches_like(std::u16string_view text, std::u16string_view pattern);

// Returns what every matching text begins with: the units before the first wildcard, without their escapes. Gives the
// empty text for a pattern without wildcards. Pairs escapes from the left and does not check them.
std::u16string like_prefix(std::u16string_view pattern);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_LIKE_PATTERN_HPP_
