#include "ovcoredb/interface/lent_blocks.hpp"

#include <cstring>
#include <exception>
#include <limits>

#include "ovcoredb/ovcoredb.h"
#include "ovcoredb/text/case_folding.hpp"

namespace ovcoredb {
namespace {

// Makes room for so many bytes after the count.
std::uint8_t* room_for(context_state& lender, std::size_t bytes) {
  if (lender.lent.size() < sizeof(std::uint32_t) + bytes) lender.lent.resize(sizeof(std::uint32_t) + bytes);
  return lender.lent.data() + sizeof(std::uint32_t);
}

void lend(context_state& lender, std::size_t count, const std::uint8_t** out) {
  const auto written = static_cast<std::uint32_t>(count);
  std::memcpy(lender.lent.data(), &written, sizeof written);
  *out = lender.lent.data();
}

bool countable(std::size_t count) { return count <= std::numeric_limits<std::uint32_t>::max(); }

// Lends the base form of any text, ASCII or not. Out of line, which keeps that of ASCII short.
[[gnu::noinline]] std::uint32_t lend_folded(context_state& lender, std::span<const std::uint8_t> encoded,
                                            const std::uint8_t** out) {
  if (!decode_text(encoded, lender.scratch_units)) return ORV_BAD_TEXT;
  fold_case(lender.scratch_units);
  return lend_units(lender, lender.scratch_units, out);
}

}  // namespace

std::uint32_t lend_units(context_state& lender, std::u16string_view units, const std::uint8_t** out) noexcept try {
  if (!countable(units.size())) return ORV_BAD_ARGUMENT;
  std::uint8_t* const to = room_for(lender, units.size() * sizeof(char16_t));
  if (!units.empty()) std::memcpy(to, units.data(), units.size() * sizeof(char16_t));
  lend(lender, units.size(), out);
  return ORV_OK;
} catch (const std::exception&) {
  return ORV_OUT_OF_MEMORY;
}

std::uint32_t lend_decoded(context_state& lender, std::span<const std::uint8_t> encoded, text_form form,
                           const std::uint8_t** out) noexcept try {
  auto* const units = reinterpret_cast<char16_t*>(room_for(lender, decoding_room(encoded) * sizeof(char16_t)));
  const std::size_t count = decode_text(encoded, form, units);
  if (count == not_decoded) {
    return form == text_form::base ? lend_folded(lender, encoded, out) : std::uint32_t{ORV_BAD_TEXT};
  }
  if (!countable(count)) return ORV_BAD_ARGUMENT;
  lend(lender, count, out);
  return ORV_OK;
} catch (const std::exception&) {
  return ORV_OUT_OF_MEMORY;
}

std::uint32_t lend_encoded(context_state& lender, std::u16string_view units, text_end end,
                           const std::uint8_t** out) noexcept try {
  const std::size_t room = max_encoded_size(units, end);
  if (!countable(room)) return ORV_BAD_ARGUMENT;
  const std::size_t size = encode_text(units, end, room_for(lender, room));
  lend(lender, size, out);
  return ORV_OK;
} catch (const std::exception&) {
  return ORV_OUT_OF_MEMORY;
}

}  // namespace ovcoredb
