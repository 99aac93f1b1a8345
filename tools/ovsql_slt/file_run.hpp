#ifndef OVSQL_SLT_FILE_RUN_HPP_
#define OVSQL_SLT_FILE_RUN_HPP_

#include <string>
#include <string_view>
#include <unordered_map>

#include "doubts.hpp"
#include "ovsql/session/database.hpp"
#include "query_result.hpp"
#include "test_record.hpp"
#include "verdict.hpp"

namespace slt {

// Runs the records of one file, one after the other, on a database of its own.
class file_run {
 public:
  // Runs a record that is neither skipped nor a halt.
  verdict run(const test_record& record);

 private:
  verdict run_statement(const test_record& record);
  verdict run_failing_statement(const test_record& record);
  verdict run_query(const test_record& record);
  query_result result_of(const test_record& record, ovsql::statement query);
  verdict compare(const test_record& record, const query_result& result);
  bool is_result_of_label(const test_record& record, const query_result& result);

  ovsql::database database_{ovsql::options{.null_on_division_by_zero = true}};
  doubts doubts_;
  std::unordered_map<std::string, std::string> hash_of_label_;
};

}  // namespace slt

#endif  // OVSQL_SLT_FILE_RUN_HPP_
