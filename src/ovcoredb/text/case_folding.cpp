#include "ovcoredb/text/case_folding.hpp"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <limits>
#include <new>
#include <utility>

namespace ovcoredb {

void fold_case(std::u16string& units) {
  if (units.size() > std::numeric_limits<std::int32_t>::max() / 3) throw std::bad_alloc();
  std::u16string folded(units.size() * 3, u'\0');  // no unit folds to more than three
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = u_strFoldCase(folded.data(), static_cast<std::int32_t>(folded.size()), units.data(),
                                            static_cast<std::int32_t>(units.size()), U_FOLD_CASE_DEFAULT, &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  folded.resize(static_cast<std::size_t>(length));
  units = std::move(folded);
}

}  // namespace ovcoredb
