#ifndef OVSQL_ERRORS_ERROR_HPP_
#define OVSQL_ERRORS_ERROR_HPP_

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "ovsql/errors/export.hpp"

namespace ovsql {

enum class error_kind : std::uint8_t {
  syntax,       // the text is no statement
  unsupported,  // the text is SQL that this dialect does not have
  name,         // a table, column or function that is not there, or that is ambiguous
  type,         // operands that do not go together
  value,        // a value did not fit while the statement ran: division by zero, out of range
  constraint,   // NOT NULL, PRIMARY KEY or UNIQUE is violated
  limit,        // too deep, too long or too many
  input,        // a file that cannot be read or does not fit its table
  usage,        // a call that does not fit the statement's state, or a parameter without a value
  engine        // the core or the system reported a failure
};

// Everything that this library throws, but for std::bad_alloc. what() is one sentence without a position.
class OVSQL_API error : public std::runtime_error {
 public:
  static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

  error(error_kind kind, const std::string& message, std::size_t position = nowhere);
  error(const error&) = default;
  error& operator=(const error&) = default;
  ~error() override;

  error_kind kind() const { return kind_; }

  // Where in the statement's text, in bytes from its beginning; nowhere if no place is known.
  std::size_t position() const { return position_; }

  // The message, then, where the position is known, its line of the text and a caret below it:
  //
  //    error: there is no column "citty"; did you mean "city"?
  //    line 1, column 8: SELECT citty FROM airport
  //                             ^
  //
  // Control characters of the text are shown as spaces; a long line is cut around the caret.
  std::string describe(std::string_view sql) const;

 private:
  error_kind kind_;
  std::size_t position_;
};

}  // namespace ovsql

#endif  // OVSQL_ERRORS_ERROR_HPP_
