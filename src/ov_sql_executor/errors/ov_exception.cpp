#include "ov_sql_executor/errors/ov_exception.hpp"

#include "ov_sql_executor/errors/raise.hpp"
#include "ov_sql_executor/errors/utf8.hpp"

namespace error_handling {

OVException::OVException(std::uint32_t error_code, std::wstring_view error_message,
                         const error_detail& error_detail_bits)
    : code(error_code), message(error_message), detail(error_detail_bits), utf8_message(ucs2_to_utf8(error_message)) {}

void raise_error(std::uint32_t code, const error_detail& detail, std::wstring_view message) {
  throw OVException(code, message, detail);
}

void raise_not_implemented(const error_detail& detail, std::wstring_view message) {
  raise_error(not_implemented, detail, message);
}

}  // namespace error_handling
