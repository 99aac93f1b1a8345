#include "ov_sql_executor/database/core_text.hpp"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include "ov_sql_executor/database/core_block.hpp"
#include "ov_sql_executor/database/status.hpp"
#include "ovcoredb/ovcoredb.h"

namespace db_util {

namespace {

using to_units_call = decltype(orv_context_convert_turbotext_to_ucs2);
using to_units_free_call = decltype(orv_convert_turbotext_to_ucs2);
using to_text_call = decltype(orv_context_convert_ucs2_to_turbotext);

std::u16string to_units(to_units_call* convert, std::uint64_t context, text_view text) {
  const std::uint8_t* block = nullptr;
  check(convert(context, text.bytes.data(), static_cast<std::uint32_t>(text.bytes.size()), &block, 0));
  return units_of_block(block);
}

// Measures with the first call and converts with the second. The core writes a zero unit after the text. Units that it
// does not write are zero.
void append_units(to_units_free_call* convert, text_view text, unit_buffer& units) {
  const auto length = static_cast<std::uint32_t>(text.bytes.size());
  const auto count_of = [](std::int32_t result) {
    if (result == std::numeric_limits<std::int32_t>::min()) check(ORV_OUT_OF_MEMORY);
    return static_cast<std::uint32_t>(std::abs(result));
  };
  const std::uint32_t count = count_of(convert(text.bytes.data(), length, nullptr, 0));
  const std::size_t before = units.size();
  units.resize(before + count + 1, boost::container::default_init);
  std::memset(units.data() + before, 0, (count + std::size_t{1}) * sizeof(char16_t));
  count_of(convert(text.bytes.data(), length, units.data() + before, count + 1));
  units.pop_back();
}

std::u16string to_units(to_units_free_call* convert, text_view text) {
  unit_buffer units;
  append_units(convert, text, units);
  return {units.begin(), units.end()};
}

db_string::tt_string to_text(to_text_call* convert, std::uint64_t context, const char16_t* units, upper_limit limit) {
  const std::uint8_t* block = nullptr;
  check(convert(context, units, static_cast<std::uint8_t>(limit), &block));
  return text_of_block(block);
}

}  // namespace

std::u16string turbotext_to_ucs2(std::uint64_t context, text_view text) {
  return to_units(orv_context_convert_turbotext_to_ucs2, context, text);
}

std::u16string turbotext_to_ucs2(text_view text) { return to_units(orv_convert_turbotext_to_ucs2, text); }

void append_ucs2(text_view text, unit_buffer& units) { append_units(orv_convert_turbotext_to_ucs2, text, units); }

std::u16string turbotext_to_base_ucs2(std::uint64_t context, text_view text) {
  return to_units(orv_context_convert_turbotext_to_base_ucs2, context, text);
}

std::u16string turbotext_to_base_ucs2(text_view text) { return to_units(orv_convert_turbotext_to_base_ucs2, text); }

std::u16string_view lend_base_ucs2(std::uint64_t context, text_view text) {
  const std::uint8_t* block = nullptr;
  check(orv_context_convert_turbotext_to_base_ucs2(context, text.bytes.data(),
                                                   static_cast<std::uint32_t>(text.bytes.size()), &block, 0));
  return {reinterpret_cast<const char16_t*>(block + sizeof(std::uint32_t)), block_count(block)};
}

db_string::tt_string ucs2_to_turbotext(std::uint64_t context, const std::u16string& units, upper_limit limit) {
  return to_text(orv_context_convert_ucs2_to_turbotext, context, units.c_str(), limit);
}

db_string::tt_string ucs2_to_turbotext(std::uint64_t context, unit_buffer& units, upper_limit limit) {
  units.push_back(u'\0');
  return to_text(orv_context_convert_ucs2_to_turbotext, context, units.data(), limit);
}

db_string::tt_string ucs2_to_turbotext(const std::u16string& units, upper_limit limit) {
  const auto flag = static_cast<std::uint8_t>(limit);
  std::vector<std::uint8_t> bytes(orv_convert_ucs2_to_turbotext(units.c_str(), flag, nullptr, 0));
  orv_convert_ucs2_to_turbotext(units.c_str(), flag, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  return {bytes.data(), bytes.size()};
}

db_string::tt_string ucs2_to_setspec_turbotext(std::uint64_t context, const std::u16string& units, upper_limit limit) {
  return to_text(orv_context_convert_ucs2_to_setspectt, context, units.c_str(), limit);
}

}  // namespace db_util
