#ifndef OVSQL_SLT_TEST_RECORD_HPP_
#define OVSQL_SLT_TEST_RECORD_HPP_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace slt {

enum class record_kind : std::uint8_t { statement, failing_statement, query, halt };
enum class sort_mode : std::uint8_t { none, rows, values };

// One record of a test file. Its texts lie in the file's.
struct test_record {
  record_kind kind = record_kind::halt;
  std::size_t line = 0;  // where it begins, from 1
  bool skipped = false;  // a condition does not hold
  std::string_view sql = {};

  // Of a query:
  std::string_view types = {};  // a letter for each column
  sort_mode sort = sort_mode::none;
  std::string_view label = {};  // queries with one label have the same result
  std::vector<std::string_view> expected = {};
};

}  // namespace slt

#endif  // OVSQL_SLT_TEST_RECORD_HPP_
