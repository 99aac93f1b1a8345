// The C interface: text.
#include <algorithm>
#include <cstdint>
#include <exception>
#include <limits>
#include <string>

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

std::int32_t decode_into(const std::uint8_t* text, std::uint32_t length, text_form form, ORV_UCS2* units,
                         std::uint32_t capacity) noexcept try {
  thread_local std::u16string decoded;
  decoded.clear();
  if (text == nullptr || !decode_text({text, length}, decoded)) decoded.clear();
  if (form == text_form::base) fold_case(decoded);
  if (decoded.size() > std::numeric_limits<std::int32_t>::max()) return 0;
  const auto count = static_cast<std::int32_t>(decoded.size());
  if (units == nullptr || capacity <= decoded.size()) return -count;
  std::copy_n(decoded.c_str(), decoded.size() + 1, units);
  return count;
} catch (const std::exception&) {
  return INT32_MIN;
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
  return decode_into(text, length, text_form::plain, units, capacity);
}

int32_t orv_convert_turbotext_to_base_ucs2(const uint8_t* text, uint32_t length, ORV_UCS2* units, uint32_t capacity) {
  return decode_into(text, length, text_form::base, units, capacity);
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
