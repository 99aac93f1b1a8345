// What this library knows of the database's encoded text. How characters become bits is the core's business.
//
//    +---------------------------+------------------------------------+
//    | header                    | payload                            |
//    | 0xxxxxxx* 1xxxxxxx        | n bytes, text from the top bit on  |
//    +---------------------------+------------------------------------+
//
// The x bits of the header, most significant group first, count the unused bits at the end of the payload, which are
// zero. The payload bits sort as the texts do. A text begins with another exactly when its payload begins with the bits
// of the other. Equal texts have equal bytes, and are compared and hashed by them.
#ifndef OV_SQL_EXECUTOR_VALUES_ENCODED_TEXT_HPP_
#define OV_SQL_EXECUTOR_VALUES_ENCODED_TEXT_HPP_

#include <compare>
#include <cstdint>
#include <span>

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

struct text_bits {
  std::uint64_t bits;                     // the length of the text
  std::span<const std::uint8_t> payload;  // as many bytes as the bits need
};

// Reads the header: finds the payload, and how many bits of it count. Gives an empty text for bytes without a
// terminated header and for a header that counts more unused bits than there are.
text_bits bit_count(text_view text);

std::strong_ordering compare_texts(text_view left, text_view right);

bool text_starts_with(text_view text, text_view prefix);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_ENCODED_TEXT_HPP_
