#include "file_run.hpp"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <utility>
#include <vector>

#include "value_text.hpp"

namespace slt {
namespace {

// Runs something and turns what it throws into a verdict.
template <class Function>
verdict judge(Function&& function) try {
  return function();
} catch (const ovsql::error& error) {
  // Types that other systems convert into each other are refused here.
  const bool is_unsupported = error.kind() == ovsql::error_kind::unsupported || error.kind() == ovsql::error_kind::type;
  return {is_unsupported ? outcome::unsupported : outcome::error, error.what()};
} catch (const std::exception& error) {
  return {outcome::error, error.what()};
}

// "3 values: 1 | 2 | NULL", the first few.
template <class Text>
std::string shown(const std::vector<Text>& values) {
  constexpr std::size_t most = 8;
  std::string text = std::to_string(values.size()) + (values.size() == 1 ? " value:" : " values:");
  for (std::size_t at = 0; at < std::min(values.size(), most); ++at) {
    text += (at == 0 ? " " : " | ") + std::string(values[at].substr(0, 40));
  }
  return values.size() > most ? text + " | ..." : text;
}

}  // namespace

verdict file_run::run(const test_record& record) {
  if (record.kind == record_kind::statement) return run_statement(record);
  return record.kind == record_kind::failing_statement ? run_failing_statement(record) : run_query(record);
}

verdict file_run::run_statement(const test_record& record) {
  verdict result = judge([&]() -> verdict {
    database_.execute(record.sql);
    return {};
  });
  const verdict* const doubt = doubts_.about(record.sql);
  if (result.is == outcome::error && doubt != nullptr) result = *doubt;
  result.is == outcome::right ? doubts_.done(record.sql) : doubts_.failed(record.sql, result);
  return result;
}

verdict file_run::run_failing_statement(const test_record& record) {
  const verdict result = judge([&]() -> verdict {
    database_.execute(record.sql);
    return {};
  });
  if (result.is != outcome::right) return {};
  if (const verdict* const doubt = doubts_.about(record.sql)) return *doubt;
  return {outcome::wrong, "an error was expected"};
}

verdict file_run::run_query(const test_record& record) {
  const verdict* const doubt = doubts_.about(record.sql);
  verdict result = judge([&] {
    const query_result rows = result_of(record, database_.prepare(record.sql));
    return doubt == nullptr ? compare(record, rows) : *doubt;
  });
  return result.is == outcome::error && doubt != nullptr ? *doubt : result;
}

query_result file_run::result_of(const test_record& record, ovsql::statement query) {
  const std::size_t columns = query.column_count();
  query_result result(columns);
  while (query.step()) {
    for (std::size_t at = 0; at < columns; ++at) {
      result.add(value_text(query, at, at < record.types.size() ? record.types[at] : 'T'));
    }
  }
  result.sort(record.sort);
  return result;
}

verdict file_run::compare(const test_record& record, const query_result& result) {
  if (result.columns() != record.types.size()) {
    return {outcome::wrong,
            std::to_string(record.types.size()) + " columns were expected, got " + std::to_string(result.columns())};
  }
  if (!result.equals(record.expected)) {
    return {outcome::wrong, "expected " + shown(record.expected) + "\n    got      " + shown(result.values())};
  }
  if (!is_result_of_label(record, result)) {
    return {outcome::wrong, "another result than label " + std::string(record.label) + " had before"};
  }
  return {};
}

bool file_run::is_result_of_label(const test_record& record, const query_result& result) {
  if (record.label.empty()) return true;
  const std::string hash = result.hashed();
  return hash_of_label_.try_emplace(std::string(record.label), hash).first->second == hash;
}

}  // namespace slt
