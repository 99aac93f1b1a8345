// Full Unicode case folding.
#ifndef OVCOREDB_TEXT_CASE_FOLDING_HPP_
#define OVCOREDB_TEXT_CASE_FOLDING_HPP_

#include <string>

namespace ovcoredb {

// Replaces `units` by its base form, in which texts that differ only in case are equal. Throws: std::bad_alloc.
void fold_case(std::u16string& units);

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_CASE_FOLDING_HPP_
