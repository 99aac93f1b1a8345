// The C interface: text.
#include <algorithm>
#include <boost/container/small_vector.hpp>
#include <cstdint>
#include <exception>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "ovcoredb/contexts.hpp"
#include "ovcoredb/lent_blocks.hpp"
#include "ovcoredb/ovcoredb.h"
#include "ovcoredb/text_code.hpp"

namespace ovcoredb {
namespace {

std::uint32_t decode(std::uint64_t context, const std::uint8_t* text, std::uint32_t length, text_form form,
                     const std::uint8_t** result, std::uint32_t reserved) {
  if (result == nullptr || reserved != 0 || (text == nullptr && length != 0)) return ORV_BAD_ARGUMENT;
  context_state* const lender = find_context(context);
  if (lender == nullptr) return ORV_BAD_CONTEXT;
  return lend_decoded(*lender, {text, length}, form, result);
}

std::uint32_t encode(std::uint64_t context, const ORV_UCS2* units, std::uint8_t upper_limit,
                     const std::uint8_t** result) {
  if (units == nullptr || result == nullptr || upper_limit > 1) return ORV_BAD_ARGUMENT;
  context_state* const lender = find_context(context);
  if (lender == nullptr) return ORV_BAD_CONTEXT;
  return lend_encoded(*lender, units, text_end{upper_limit}, result);
}

std::int32_t copy_out(std::u16string_view decoded, ORV_UCS2* units, std::uint32_t capacity) {
  if (decoded.size() > std::numeric_limits<std::int32_t>::max()) return 0;
  const auto count = static_cast<std::int32_t>(decoded.size());
  if (units == nullptr || capacity <= decoded.size()) return -count;
  std::copy(decoded.begin(), decoded.end(), units);
  units[count] = u'\0';
  return count;
}

// What is not an encoded text counts as the empty one.
std::int32_t decode_into(std::span<const std::uint8_t> encoded, text_form form, ORV_UCS2* units,
                         std::uint32_t capacity) noexcept try {
  boost::container::small_vector<char16_t, 256> room(decoding_room(encoded), boost::container::default_init);
  const char16_t* const end =
      form == text_form::base ? decode_folded_ascii(encoded, room.data()) : decode_text(encoded, room.data());
  if (end != nullptr) return copy_out({room.data(), end}, units, capacity);
  std::u16string folded;
  if (form == text_form::plain || !decode_text(encoded, folded)) return copy_out({}, units, capacity);
  fold_case(folded);
  return copy_out(folded, units, capacity);
} catch (const std::exception&) {
  return INT32_MIN;
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
  return decode_into(bytes_of(text, length), text_form::plain, units, capacity);
}

int32_t orv_convert_turbotext_to_base_ucs2(const uint8_t* text, uint32_t length, ORV_UCS2* units, uint32_t capacity) {
  return decode_into(bytes_of(text, length), text_form::base, units, capacity);
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
  const std::size_t size = encoded_size(units, text_end{upper_limit});
  if (size > std::numeric_limits<std::uint32_t>::max()) return 0;
  if (buffer != nullptr && capacity >= size) encode_text(units, text_end{upper_limit}, buffer);
  return static_cast<std::uint32_t>(size);
}
