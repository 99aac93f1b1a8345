#ifndef OVSQL_SESSION_STATEMENT_HPP_
#define OVSQL_SESSION_STATEMENT_HPP_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "ov_sql_executor/values/value.hpp"
#include "ovhost/values/value_kind.hpp"
#include "ovsql/errors/error.hpp"
#include "ovsql/errors/export.hpp"

namespace ovsql {

struct statement_state;

using ov::sql_executor::value;
using ovhost::value_kind;

// A result column. type is what the statement says; null where it says nothing (SELECT NULL, SELECT ?).
struct result_column {
  std::string name;
  value_kind type = value_kind::null;
  std::string table = {};  // of a reference: the table it refers to
};

// A prepared statement. Bind its parameters, step through its rows, reset, and run it again. A statement goes before
// its database. A schema change makes it plan itself anew when it is next run.
//
// A write to the database ends the runs that are open on it: their next step throws an error of kind usage.
class OVSQL_API statement {
 public:
  explicit statement(std::unique_ptr<statement_state> state);
  ~statement();
  statement(statement&&) noexcept;
  statement& operator=(statement&&) noexcept;

  // ---- What it is

  std::string_view sql() const;      // its own text, without the semicolon
  std::size_t column_count() const;  // 0 for a statement without rows
  const result_column& column(std::size_t at) const;
  std::size_t parameter_count() const;

  // The number of a parameter by its name, without the colon. Throws error of kind name.
  std::size_t parameter(std::string_view name) const;

  // ---- Parameters, numbered from 1. They keep their values over reset. One without a value is an error of kind usage
  //      when the statement is run. Binding throws while a run is open, and for a number that there is none of.

  void bind(std::size_t number, value of);
  void bind_text(std::size_t number, std::string_view utf8);
  void bind_null(std::size_t number);
  template <class T>
  requires(std::is_arithmetic_v<T>) void bind(std::size_t number, T of) {
    if constexpr (std::is_same_v<T, bool> || std::is_floating_point_v<T>) {
      using stored = std::conditional_t<std::is_same_v<T, bool>, bool, double>;
      bind(number, value(std::in_place_type<stored>, of));
    } else if constexpr (std::is_signed_v<T>) {
      bind(number, value(std::in_place_type<std::int64_t>, of));
    } else {
      bind(number, value(std::in_place_type<std::uint64_t>, of));
    }
  }
  void bind(std::size_t number, std::string_view utf8) { bind_text(number, utf8); }
  void bind(std::size_t number, const char* utf8) { bind_text(number, utf8); }

  // ---- Rows

  // Goes to the next row; false behind the last one. The first step runs the statement: an INSERT is done by it. After
  // false or an error the next step runs it again.
  bool step();

  // Ends the run.
  void reset();

  // How many rows the last run inserted or loaded.
  std::uint64_t changes() const;

  // ---- The values of the row that step went to, by column from 0. Valid until the next step or reset.

  const value& operator[](std::size_t at) const;
  bool is_null(std::size_t at) const;

  // Convert as CAST does. Throw error of kind type or value where there is no conversion; NULL is 0, false or "".
  std::int64_t integer(std::size_t at) const;
  double real(std::size_t at) const;
  bool boolean(std::size_t at) const;

  // A text as UTF-8, everything else as words(at).
  std::string text(std::size_t at) const;

  // As a result table shows it: NULL is "NULL", true is "true", numbers read back as themselves, a Decimal with the
  // digits it needs, an object as its table's name and number.
  std::string words(std::size_t at) const;

 private:
  std::unique_ptr<statement_state> state_;
};

}  // namespace ovsql

#endif  // OVSQL_SESSION_STATEMENT_HPP_
