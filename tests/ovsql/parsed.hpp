// Parses for tests.
#ifndef TESTS_OVSQL_PARSED_HPP_
#define TESTS_OVSQL_PARSED_HPP_

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/parser.hpp"
#include "ovsql/tree_words.hpp"

namespace tests {

// The words of every statement of a script; errors are written as "error: message".
inline std::vector<std::string> parsed_script(std::string_view script) {
  std::vector<std::string> all;
  ovsql::syntax::memory memory;
  for (std::size_t next = 0;;) {
    try {
      const ovsql::syntax::statement* const made = ovsql::syntax::parse(script, next, memory);
      if (made == nullptr) return all;
      all.push_back(words_of(*made));
    } catch (const ovsql::error& failed) {
      all.push_back(std::string("error: ") + failed.what());
    }
  }
}

inline std::string parsed(std::string_view sql) {
  const std::vector<std::string> all = parsed_script(sql);
  return all.size() == 1 ? all[0] : std::to_string(all.size()) + " statements";
}

struct reading {
  const char* sql;
  const char* words;
};

}  // namespace tests

#endif  // TESTS_OVSQL_PARSED_HPP_
