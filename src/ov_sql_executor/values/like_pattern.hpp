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

// Whether the whole text matches, in time that grows with the length of the text times that of the pattern at most.
// Throws OVException bad_escape, whatever the text, when an escape is followed by anything else than a special unit.
bool matches_like(std::u16string_view text, std::u16string_view pattern);

// What every text that matches begins with: the units before the first wildcard, without their escapes. Empty for a
// pattern without wildcards. Escapes pair from the left and are not checked.
std::u16string like_prefix(std::u16string_view pattern);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_LIKE_PATTERN_HPP_
