// How tests of values and operators write down a result, so that a case is one line.
#ifndef TESTS_OUTCOME_HPP_
#define TESTS_OUTCOME_HPP_

#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <variant>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace tests {

using namespace ov::sql_executor;
using operator_library::Binary;
using operator_library::Decimal;
using operator_library::NullValue;
using operator_library::SetSpecifier;

// value converts from anything; these say which alternative is meant.
inline value null() { return NullValue{}; }
inline value i(std::int64_t number) { return number; }
inline value u(std::uint64_t number) { return number; }
inline value dec(std::int64_t raw) { return Decimal{raw}; }
inline value d(double number) { return number; }
inline value f(float number) { return number; }

inline value valueless() {
  struct thrower {
    operator Binary() const { throw 0; }  // NOLINT: the conversion has to be found
  };
  value any = true;
  try {
    any.emplace<Binary>(thrower{});
  } catch (int) {
  }
  return any;
}

template <class Floating>
std::string digits(Floating number) {
  if (std::isnan(number)) return std::signbit(number) ? "-nan" : "nan";
  char buffer[64];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

// One value: i5, u5, dec2500000 (raw), d2.5, f2.5, true, NULL, and the bytes or units of the others in hexadecimal.
inline std::string spell(const value& any) {
  const auto hex = [](const char* kind, const auto& elements) {
    std::string text = kind;
    char buffer[16];
    for (const auto element : elements) {
      *std::to_chars(buffer, buffer + sizeof buffer, static_cast<unsigned>(element), 16).ptr = '\0';
      text.append(" ").append(buffer);
    }
    return text;
  };
  return std::visit(
      [&hex]<class T>(const T& held) -> std::string {
        if constexpr (std::same_as<T, NullValue>) {
          return "NULL";
        } else if constexpr (std::same_as<T, bool>) {
          return held ? "true" : "false";
        } else if constexpr (std::same_as<T, std::int64_t>) {
          return "i" + std::to_string(held);
        } else if constexpr (std::same_as<T, std::uint64_t>) {
          return "u" + std::to_string(held);
        } else if constexpr (std::same_as<T, Decimal>) {
          return "dec" + std::to_string(held.raw);
        } else if constexpr (std::same_as<T, double>) {
          return "d" + digits(held);
        } else if constexpr (std::same_as<T, float>) {
          return "f" + digits(held);
        } else if constexpr (std::same_as<T, OV_OBJ_REF>) {
          return "ref" + std::to_string(held.object_number);
        } else if constexpr (std::same_as<T, db_string::tt_string>) {
          return hex("text", std::basic_string<std::uint8_t>(held.data(), held.size()));
        } else if constexpr (std::same_as<T, Binary>) {
          return hex("bin", held.bytes);
        } else {
          return hex("set", held.units);
        }
      },
      any);
}

inline std::string spell(const value_view& view) { return spell(to_value(view)); }

// What an action returns, or the error that it throws: the number of the system's own ones.
template <class Action>
std::string outcome(Action action) {
  try {
    return spell(action());
  } catch (const db_util::db_exception& error) {
    return std::to_string(error.code);
  } catch (const error_handling::OVException& error) {
    return std::to_string(error.code);
  } catch (const std::bad_variant_access& error) {
    return error.what() == std::string("bad variant access") ? "bad variant" : error.what();
  } catch (const std::out_of_range& error) {
    return error.what();
  }
}

}  // namespace tests

#endif  // TESTS_OUTCOME_HPP_
