// Counted blocks that a context lends until its next call.
#ifndef OVCOREDB_INTERFACE_LENT_BLOCKS_HPP_
#define OVCOREDB_INTERFACE_LENT_BLOCKS_HPP_

#include <cstdint>
#include <span>
#include <string_view>

#include "ovcoredb/interface/context_state.hpp"
#include "ovcoredb/text/text_decoding.hpp"
#include "ovcoredb/text/text_encoding.hpp"

namespace ovcoredb {

// Each lends what its name says and returns a status of the C interface, ORV_OUT_OF_MEMORY included.
std::uint32_t lend_units(context_state& lender, std::u16string_view units, const std::uint8_t** out) noexcept;
std::uint32_t lend_decoded(context_state& lender, std::span<const std::uint8_t> encoded, text_form form,
                           const std::uint8_t** out) noexcept;
std::uint32_t lend_encoded(context_state& lender, std::u16string_view units, text_end end,
                           const std::uint8_t** out) noexcept;

}  // namespace ovcoredb

#endif  // OVCOREDB_INTERFACE_LENT_BLOCKS_HPP_
