#include "ovhost/plans/statement.hpp"

#include <memory>
#include <optional>
#include <tuple>
#include <utility>

namespace ovhost {

statement::statement(plan of) { std::tie(runnable_, types_) = physical_to_exec::Plan(std::move(of)); }

std::size_t statement::run(std::uint64_t context, std::vector<value> parameters,
                           const std::function<void(row&&)>& take) const {
  ov::sql_executor::execution_context state{runnable_.constants, std::move(parameters), {}, context};
  const std::unique_ptr<ov::sql_executor::enumerator> rows(runnable_.root->create_enumerator(state));
  std::size_t count = 0;
  while (std::optional<row> next = rows->next(state)) {
    take(std::move(*next));
    ++count;
  }
  return count;
}

std::vector<row> statement::rows(std::uint64_t context, std::vector<value> parameters) const {
  std::vector<row> result;
  run(context, std::move(parameters), [&result](row&& next) { result.push_back(std::move(next)); });
  return result;
}

}  // namespace ovhost
