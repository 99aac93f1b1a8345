#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <limits>
#include <new>

#include "ovcoredb/text_code.hpp"

namespace ovcoredb {

bool fold_ascii_case(std::span<char16_t> units) {
  unsigned all = 0;
  for (const char16_t unit : units) all |= unit;
  if (all >= 0x80) return false;
  for (char16_t& unit : units) unit = static_cast<char16_t>(unit + (unit >= u'A' && unit <= u'Z' ? 0x20 : 0));
  return true;
}

void fold_case(std::u16string& units) {
  if (fold_ascii_case(units)) return;
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
