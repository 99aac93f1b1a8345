// The C interface: text.
#include <algorithm>
#include <cstdint>
#include <exception>
#include <iterator>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "ovcoredb/interface/context_state.hpp"
#include "ovcoredb/interface/lent_blocks.hpp"
#include "ovcoredb/ovcoredb.h"
#include "ovcoredb/text/case_folding.hpp"
#include "ovcoredb/text/text_decoding.hpp"
#include "ovcoredb/text/text_encoding.hpp"

namespace ovcoredb {
namespace {

std::uint32_t decode(std::uint64_t context, const std::uint8_t* text, std::uint32_t length, text_form form,
                     const std::uint8_t** result, std::uint32_t reserved) {
  if (result == nullptr || reserved != 0 || (text == nullptr && length != 0)) return ORV_BAD_ARGUMENT;
  context_state* const lender = find_context(context);
  if (lender == nullptr) return ORV_BAD_CONTEXT;
  return lend_decoded(*lender, {text, length}, form, result);
}

// The text up to the zero unit. std::ranges::find takes half as many steps for a unit as std::char_traits.
std::u16string_view terminated(const ORV_UCS2* units) {
  return {units, std::ranges::find(units, std::unreachable_sentinel, u'\0')};
}

std::uint32_t encode(std::uint64_t context, const ORV_UCS2* units, std::uint8_t upper_limit,
                     const std::uint8_t** result) {
  if (units == nullptr || result == nullptr || upper_limit > 1) return ORV_BAD_ARGUMENT;
  context_state* const lender = find_context(context);
  if (lender == nullptr) return ORV_BAD_CONTEXT;
  return lend_encoded(*lender, terminated(units), text_end{upper_limit}, result);
}

// Ends a conversion of so many units and returns its answer, which is negative without room for them and a zero unit.
std::int32_t finish(std::size_t count, std::span<char16_t> units) {
  if (count > std::numeric_limits<std::int32_t>::max()) return INT32_MIN;
  const auto answer = static_cast<std::int32_t>(count);
  if (units.size() <= count) return -answer;
  units[count] = u'\0';
  return answer;
}

// Bytes that are not an encoded text count as the empty text.
std::int32_t decode_into(std::span<const std::uint8_t> encoded, text_form form, std::span<char16_t> units) noexcept
    try {
  const std::size_t count = decode_text_within(encoded, form, units);
  if (count != not_decoded) return finish(count, units);
  std::u16string folded;
  if (form == text_form::plain || !decode_text(encoded, folded)) return finish(0, units);
  fold_case(folded);
  if (folded.size() < units.size()) std::ranges::copy(folded, units.begin());
  return finish(folded.size(), units);
} catch (const std::exception&) {
  return INT32_MIN;
}

std::span<char16_t> room_of(ORV_UCS2* units, std::uint32_t capacity) {
  return {units, units == nullptr ? 0 : capacity};
}

std::span<const std::uint8_t> bytes_of(const std::uint8_t* text, std::uint32_t length) {
  return {text, text == nullptr ? 0 : length};
}

}  // namespace
}  // namespace ovcoredb

using namespace ovcoredb;

uint32_t orv_context_convert_turbotext_to_ucs2(uint64_t context, const uint8_t* text, uint32_t length,
                                               const uint8_t** result, uint32_t reserved) {
  return decode(context, text, length, text_form::plain, result, reserved);
}

uint32_t orv_context_convert_turbotext_to_base_ucs2(uint64_t context, const uint8_t* text, uint32_t length,
                                                    const uint8_t** result, uint32_t reserved) {
  return decode(context, text, length, text_form::base, result, reserved);
}

int32_t orv_convert_turbotext_to_ucs2(const uint8_t* text, uint32_t length, ORV_UCS2* units, uint32_t capacity) {
  return decode_into(bytes_of(text, length), text_form::plain, room_of(units, capacity));
}

int32_t orv_convert_turbotext_to_base_ucs2(const uint8_t* text, uint32_t length, ORV_UCS2* units, uint32_t capacity) {
  return decode_into(bytes_of(text, length), text_form::base, room_of(units, capacity));
}

uint32_t orv_context_convert_ucs2_to_turbotext(uint64_t context, const ORV_UCS2* units, uint8_t upper_limit,
                                               const uint8_t** result) {
  return encode(context, units, upper_limit, result);
}

// A set specifier's key is the code of its text.
uint32_t orv_context_convert_ucs2_to_setspectt(uint64_t context, const ORV_UCS2* units, uint8_t upper_limit,
                                               const uint8_t** result) {
  return encode(context, units, upper_limit, result);
}

uint32_t orv_convert_ucs2_to_turbotext(const ORV_UCS2* units, uint8_t upper_limit, uint8_t* buffer, uint32_t capacity) {
  if (units == nullptr || upper_limit > 1) return 0;
  const std::u16string_view text = terminated(units);
  const std::size_t size = encoded_size(text, text_end{upper_limit});
  if (size > std::numeric_limits<std::uint32_t>::max()) return 0;
  if (buffer != nullptr && capacity >= size) encode_text(text, text_end{upper_limit}, buffer);
  return static_cast<std::uint32_t>(size);
}
