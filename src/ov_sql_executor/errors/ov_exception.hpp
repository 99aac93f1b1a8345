#ifndef OV_SQL_EXECUTOR_ERRORS_OV_EXCEPTION_HPP_
#define OV_SQL_EXECUTOR_ERRORS_OV_EXCEPTION_HPP_

#include <array>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "ov_sql_executor/errors/export.hpp"

namespace error_handling {

// 128 bits that travel with an error. All of them are set in every error of this library.
using error_detail = std::array<std::uint32_t, 4>;
inline constexpr error_detail no_detail = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};

// Codes of OVException.
inline constexpr std::uint32_t internal_error = 7007;   // a projection item that is no column, a column not in scope
inline constexpr std::uint32_t not_implemented = 7022;  // what plan.hpp refuses; a stack that is too small
inline constexpr std::uint32_t bad_escape = 7042;       // a LIKE pattern with an escape before nothing special

// An error in the plan or in the statement's text: a number and a message. Thrown by value, mostly by Plan. A running
// statement throws it only for a LIKE pattern (7042) and for a stack that is too small (7022).
class OV_SQL_EXECUTOR_API OVException : public std::exception {
 public:
  // error_message holds one UTF-16 unit per character. Throws std::range_error "bad conversion" for a message
  // that is not valid UTF-16.
  OVException(std::uint32_t error_code, std::wstring_view error_message, const error_detail& error_detail_bits);

  // The message in UTF-8.
  const char* what() const noexcept override { return utf8_message.c_str(); }

  std::uint32_t code;
  std::wstring message;  // one UTF-16 unit per character
  error_detail detail;
  std::string utf8_message;
};

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_OV_EXCEPTION_HPP_
