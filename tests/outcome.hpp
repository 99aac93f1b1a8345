#ifndef TESTS_OUTCOME_HPP_
#define TESTS_OUTCOME_HPP_

#include <exception>
#include <string>
#include <type_traits>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "spelling.hpp"

namespace tests {

// Spells what an action returns ("ok" for nothing) or the error that it throws: the number of an error of the system,
// and the text of every error that has one.
template <class Action>
std::string outcome(Action action) {
  try {
    if constexpr (std::is_void_v<decltype(action())>) {
      return action(), "ok";
    } else {
      return spell(action());
    }
  } catch (const db_util::db_exception& error) {
    return std::to_string(error.code);
  } catch (const error_handling::OVException& error) {
    return std::to_string(error.code) + " " + error.what();
  } catch (const std::exception& error) {
    return error.what();
  }
}

inline const char* const bad_variant = "bad variant access";
inline const char* const bad_subscript = "invalid vector<T> subscript";

}  // namespace tests

#endif  // TESTS_OUTCOME_HPP_
