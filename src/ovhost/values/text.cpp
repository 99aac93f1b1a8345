#include "ovhost/values/text.hpp"

#include <unicode/ustring.h>

#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <vector>

#include "ovcoredb/ovcoredb.h"

namespace ovhost {
namespace {

using context_free_conversion = std::int32_t (*)(const std::uint8_t*, std::uint32_t, char16_t*, std::uint32_t);

std::u16string decode_by(context_free_conversion convert, const db_string::tt_string& text) {
  const auto length = static_cast<std::uint32_t>(text.size());
  const std::int32_t needed = convert(text.data(), length, nullptr, 0);  // negative, or 0
  if (needed == std::numeric_limits<std::int32_t>::min()) throw std::bad_alloc();
  std::u16string units(static_cast<std::size_t>(-needed) + 1, u'\0');
  convert(text.data(), length, units.data(), static_cast<std::uint32_t>(units.size()));
  units.pop_back();
  return units;
}

}  // namespace

std::optional<std::u16string> utf8_to_utf16(std::string_view text) {
  std::u16string units(text.size(), u'\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(units.data(), static_cast<std::int32_t>(units.size()), &length, text.data(),
                static_cast<std::int32_t>(text.size()), &status);
  if (U_FAILURE(status)) return std::nullopt;
  units.resize(static_cast<std::size_t>(length));
  return units;
}

std::u16string utf16(std::string_view text) {
  if (auto units = utf8_to_utf16(text)) return *std::move(units);
  throw std::invalid_argument("text is not UTF-8");
}

std::string utf8(std::u16string_view text) {
  std::string bytes(text.size() * 3, '\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(bytes.data(), static_cast<std::int32_t>(bytes.size()), &length, text.data(),
                     static_cast<std::int32_t>(text.size()), 0xFFFD, nullptr, &status);
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

db_string::tt_string encode(std::u16string_view text) {
  if (text.find(u'\0') != std::u16string_view::npos) throw std::invalid_argument("text holds a zero unit");
  const std::u16string terminated(text);
  std::vector<std::uint8_t> bytes(orv_convert_ucs2_to_turbotext(terminated.c_str(), 0, nullptr, 0));
  orv_convert_ucs2_to_turbotext(terminated.c_str(), 0, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  return {bytes.data(), bytes.size()};
}

std::u16string decode(const db_string::tt_string& text) { return decode_by(orv_convert_turbotext_to_ucs2, text); }

std::u16string base_form(std::u16string_view text) {
  return decode_by(orv_convert_turbotext_to_base_ucs2, encode(text));
}

}  // namespace ovhost
