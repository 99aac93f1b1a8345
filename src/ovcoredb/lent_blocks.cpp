#include "ovcoredb/lent_blocks.hpp"

#include <cstring>
#include <exception>
#include <limits>

#include "ovcoredb/ovcoredb.h"

namespace ovcoredb {
namespace {

// Room for `count` units of `size` bytes behind the count.
std::uint8_t* start_block(context_state& lender, std::size_t count, std::size_t size) {
  lender.block.resize(sizeof(std::uint32_t) + count * size);
  const auto written = static_cast<std::uint32_t>(count);
  std::memcpy(lender.block.data(), &written, sizeof written);
  return lender.block.data() + sizeof written;
}

bool countable(std::size_t count) { return count <= std::numeric_limits<std::uint32_t>::max(); }

}  // namespace

std::uint32_t lend_units(context_state& lender, std::u16string_view units, const std::uint8_t** out) noexcept try {
  if (!countable(units.size())) return ORV_BAD_ARGUMENT;
  std::uint8_t* const to = start_block(lender, units.size(), sizeof(char16_t));
  if (!units.empty()) std::memcpy(to, units.data(), units.size() * sizeof(char16_t));
  *out = lender.block.data();
  return ORV_OK;
} catch (const std::exception&) {
  return ORV_OUT_OF_MEMORY;
}

std::uint32_t lend_decoded(context_state& lender, std::span<const std::uint8_t> encoded, text_form form,
                           const std::uint8_t** out) noexcept try {
  if (!decode_text(encoded, lender.units)) return ORV_BAD_TEXT;
  if (form == text_form::base) fold_case(lender.units);
  return lend_units(lender, lender.units, out);
} catch (const std::exception&) {
  return ORV_OUT_OF_MEMORY;
}

std::uint32_t lend_encoded(context_state& lender, std::u16string_view units, text_end end,
                           const std::uint8_t** out) noexcept try {
  const std::size_t size = encoded_size(units, end);
  if (!countable(size)) return ORV_BAD_ARGUMENT;
  encode_text(units, end, start_block(lender, size, 1));
  *out = lender.block.data();
  return ORV_OK;
} catch (const std::exception&) {
  return ORV_OUT_OF_MEMORY;
}

}  // namespace ovcoredb
