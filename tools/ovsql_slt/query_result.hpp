#ifndef OVSQL_SLT_QUERY_RESULT_HPP_
#define OVSQL_SLT_QUERY_RESULT_HPP_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "test_record.hpp"

namespace slt {

// Returns the MD5 of a text in lower-case hexadecimal digits.
std::string md5(std::string_view text);

// The values of a query's rows as a test file has them, one after the other.
class query_result {
 public:
  explicit query_result(std::size_t columns) : columns_(columns) {}

  void add(std::string value) { values_.push_back(std::move(value)); }
  void sort(sort_mode mode);

  std::size_t columns() const { return columns_; }
  const std::vector<std::string>& values() const { return values_; }

  // "30 values hashing to 3c13dee48d9356ae19af2515e05e6b54"
  std::string hashed() const;

  // Compares with what a file expects: values, or one line with their number and hash.
  bool equals(const std::vector<std::string_view>& expected) const;

 private:
  void sort_rows();

  std::size_t columns_;
  std::vector<std::string> values_;
};

}  // namespace slt

#endif  // OVSQL_SLT_QUERY_RESULT_HPP_
