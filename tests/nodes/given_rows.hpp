// Every node, one more that yields given rows, and what the tests of nodes say with them.
#ifndef TESTS_NODES_GIVEN_ROWS_HPP_
#define TESTS_NODES_GIVEN_ROWS_HPP_

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "outcome.hpp"
#include "ov_sql_executor/execution/aggregator.hpp"
#include "ov_sql_executor/execution/filter.hpp"
#include "ov_sql_executor/execution/full_join.hpp"
#include "ov_sql_executor/execution/generative_assignment.hpp"
#include "ov_sql_executor/execution/left_join.hpp"
#include "ov_sql_executor/execution/limit_offset.hpp"
#include "ov_sql_executor/execution/nested_loop_inner_join.hpp"
#include "ov_sql_executor/execution/node.hpp"
#include "ov_sql_executor/execution/order_by.hpp"
#include "ov_sql_executor/execution/projection.hpp"
#include "ov_sql_executor/execution/uniond.hpp"
#include "ov_sql_executor/expressions/operator_base.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"

namespace tests {

// Records what happens to the enumerators of a node, in order: "+a-a" for a node named a.
struct journal {
  std::string events;
  int alive = 0;
};
using shared_journal = std::shared_ptr<journal>;

// Yields rows that may depend on the rows in scope. It is not one of the library's own nodes.
class given_rows final : public node {
 public:
  using source = std::function<rows(const execution_context&)>;

  given_rows(source make, shared_journal log, std::string name)
      : make_(std::move(make)), log_(std::move(log)), name_(std::move(name)) {}

  enumerator* create_enumerator(execution_context& context) const override {
    return new given_enumerator(*this, make_(context));
  }

 private:
  class given_enumerator final : public enumerator {
   public:
    given_enumerator(const given_rows& of, rows all) : of_(of), rows_(std::move(all)) {
      ++of_.log_->alive;
      of_.log_->events += "+" + of_.name_;
    }
    ~given_enumerator() override {
      --of_.log_->alive;
      of_.log_->events += "-" + of_.name_;
    }
    std::optional<row> next(execution_context& /*context*/) override {
      return cursor_ == rows_.size() ? std::nullopt : std::optional(rows_[cursor_++]);
    }

   private:
    const given_rows& of_;
    rows rows_;
    std::size_t cursor_ = 0;
  };

  source make_;
  shared_journal log_;
  std::string name_;
};

inline std::unique_ptr<node> given(given_rows::source make, shared_journal log = std::make_shared<journal>(),
                                   std::string name = "") {
  return std::make_unique<given_rows>(std::move(make), std::move(log), std::move(name));
}
template <class... Log>
std::unique_ptr<node> given(rows all, Log... log) {
  return given([all](const execution_context&) { return all; }, std::move(log)...);
}
template <class... Log>
std::unique_ptr<node> given(const char* words, Log... log) {
  return given(table(words), std::move(log)...);
}

using operator_ptr = std::unique_ptr<operators::operator_base>;

inline operator_ptr column(std::int16_t position) {
  return std::make_unique<operators::value_from_context>(operators::context_list::row_stack, position);
}
inline operator_ptr constant(std::int16_t position) {
  return std::make_unique<operators::value_from_context>(operators::context_list::constants, position);
}
inline std::vector<operator_ptr> columns(const std::vector<std::int16_t>& positions) {
  std::vector<operator_ptr> list;
  for (const std::int16_t position : positions) list.push_back(column(position));
  return list;
}
// Gives the child's rows with the values of these expressions appended.
inline std::unique_ptr<node> extended(std::unique_ptr<node> child, std::vector<operator_ptr> expressions) {
  return std::make_unique<projection>(std::move(child), std::move(expressions), projection::input_row::extended);
}
template <class Item = operator_ptr, class... Items>
std::vector<Item> list_of(Items... items) {
  std::vector<Item> made;
  (made.emplace_back(std::move(items)), ...);
  return made;
}

// Runs a node to its end with these values on the row stack and returns its rows, or the error. Expects the stack to be
// as long after every call as before, and the end to stay the end.
inline rows rows_of(const node& root, row enclosing = {}, std::vector<value> constants = {}) {
  execution_context context{std::move(constants), {}, std::move(enclosing), 0};
  const std::size_t depth = context.row_stack.size();
  std::unique_ptr<enumerator> source(root.create_enumerator(context));
  EXPECT_EQ(context.row_stack.size(), depth);
  rows all;
  while (std::optional<row> next = source->next(context)) {
    EXPECT_EQ(context.row_stack.size(), depth);
    all.push_back(std::move(*next));
  }
  EXPECT_EQ(context.row_stack.size(), depth);
  EXPECT_FALSE(source->next(context));
  return all;
}

inline std::string run(const node& root, const row& enclosing = {}, const std::vector<value>& constants = {}) {
  return outcome([&] { return rows_of(root, enclosing, constants); });
}

// Checks cases "words = result".
inline void check(std::initializer_list<std::string> cases, const std::function<std::string(const std::string&)>& run) {
  for (const std::string& each : cases) {
    const std::string words = each.substr(0, each.find("= "));
    EXPECT_EQ(words + "= " + run(words), each);
  }
}

}  // namespace tests

#endif  // TESTS_NODES_GIVEN_ROWS_HPP_
