#ifndef OV_SQL_EXECUTOR_ERRORS_RAISE_HPP_
#define OV_SQL_EXECUTOR_ERRORS_RAISE_HPP_

#include <cstdint>
#include <string_view>

#include "ov_sql_executor/errors/ov_exception.hpp"

namespace error_handling {

// Throws OVException. message holds one UTF-16 unit per character. Throws std::range_error "bad conversion"
// instead for a message that is not valid UTF-16.
[[noreturn]] void raise_error(std::uint32_t code, const error_detail& detail, std::wstring_view message);

// raise_error with the code not_implemented.
[[noreturn]] void raise_not_implemented(const error_detail& detail, std::wstring_view message);

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_RAISE_HPP_
