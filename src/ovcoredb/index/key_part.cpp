#include "ovcoredb/index/key_part.hpp"

#include <cassert>
#include <span>

namespace ovcoredb {
namespace {

// Unsigned words that are ordered as the numbers are, as keys carry them (ovcoredb.h).
std::uint64_t ordered_word(std::int64_t value) { return static_cast<std::uint64_t>(value) ^ std::uint64_t{1} << 63; }

std::uint64_t ordered_decimal_word(std::int64_t millionths) {
  const auto raw = static_cast<std::uint64_t>(millionths < 0 ? -millionths : millionths);
  const std::uint64_t rest = raw % 1'000'000;
  const auto packed = static_cast<std::int64_t>((raw / 1'000'000 << 7 | rest / 10'000) << 14 | rest % 10'000);
  return ordered_word(millionths < 0 ? -packed : packed);
}

std::span<const std::uint8_t> payload_bytes(std::span<const std::uint8_t> encoded_text) {
  assert(!encoded_text.empty() && (encoded_text[0] & 0x80) != 0);
  return encoded_text.subspan(1);
}

key_component read_column(const column& from, std::uint64_t row) {
  if (!from.has_value(row)) return {};
  switch (from.type()) {
    case column_type::text:
      return bytes_component(payload_bytes(from.bytes(row)));
    case column_type::binary:
      return bytes_component(from.bytes(row));
    case column_type::int64:
      return number_component(ordered_word(from.signed_value(row)));
    case column_type::decimal:
      return number_component(ordered_decimal_word(from.signed_value(row)));
    case column_type::reference:
      return number_component(from.reference(row).object_number);
    default:
      return number_component(from.unsigned_value(row));
  }
}

}  // namespace

key_component read_component(const key_part& part, std::uint64_t number, const object_place& place) {
  if (part.source == part_source::column) return read_column(place.in->columns[part.position], place.row);
  if (part.source == part_source::number) return number_component(number);
  return bytes_component(payload_bytes(place.in->encoded_set_specifier));
}

}  // namespace ovcoredb
