// A node that yields given rows, and what the tests of nodes say with it.
#ifndef TESTS_NODES_GIVEN_ROWS_HPP_
#define TESTS_NODES_GIVEN_ROWS_HPP_

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/execution/node.hpp"
#include "ov_sql_executor/expressions/operator_base.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace tests {

using namespace ov::sql_executor;
using operator_library::Decimal;
using operator_library::NullValue;
using rows = std::vector<row>;

inline value null() { return NullValue{}; }
inline value i(std::int64_t number) { return number; }
inline value u(std::uint64_t number) { return number; }

inline std::string show(const value& any) {
  std::ostringstream out;
  std::visit(
      [&out]<class T>(const T& held) {
        if constexpr (std::same_as<T, NullValue>) {
          out << "NULL";
        } else if constexpr (std::same_as<T, bool>) {
          out << (held ? "true" : "false");
        } else if constexpr (std::same_as<T, std::uint64_t>) {
          out << held << 'u';
        } else if constexpr (std::same_as<T, Decimal>) {
          out << held.raw << 'd';
        } else if constexpr (std::same_as<T, double> || std::same_as<T, float>) {
          out << held << 'f';
        } else if constexpr (std::same_as<T, std::int64_t>) {
          out << held;
        } else if constexpr (std::same_as<T, db_string::tt_string>) {
          out << '\'' << std::string(held.data(), held.data() + held.size()) << '\'';
        } else {
          out << '?';
        }
      },
      any);
  return out.str();
}

inline std::string show(const rows& all) {
  std::string text;
  for (const row& each : all) {
    text += '(';
    for (const value& any : each) text += (text.back() == '(' ? "" : " ") + show(any);
    text += ')';
  }
  return text;
}

// What happened to the enumerators of a node, in order.
struct journal {
  std::vector<std::string> events;
  int alive = 0;
};

// Yields rows that may depend on the rows in scope. It is not one of the library's own nodes.
class given_rows final : public node {
 public:
  using source = std::function<rows(const execution_context&)>;

  explicit given_rows(rows all, std::shared_ptr<journal> log = std::make_shared<journal>(), std::string name = "")
      : given_rows(source([all](const execution_context&) { return all; }), std::move(log), std::move(name)) {}
  explicit given_rows(source make, std::shared_ptr<journal> log = std::make_shared<journal>(), std::string name = "")
      : make_(std::move(make)), log_(std::move(log)), name_(std::move(name)) {}

  enumerator* create_enumerator(execution_context& context) const override {
    return new given_enumerator(make_(context), log_, name_);
  }

 private:
  class given_enumerator final : public enumerator {
   public:
    given_enumerator(rows all, std::shared_ptr<journal> log, std::string name)
        : rows_(std::move(all)), log_(std::move(log)), name_(std::move(name)) {
      ++log_->alive;
      log_->events.push_back("+" + name_);
    }
    ~given_enumerator() override {
      --log_->alive;
      log_->events.push_back("-" + name_);
    }
    std::optional<row> next(execution_context& /*context*/) override {
      if (cursor_ == rows_.size()) return std::nullopt;
      return rows_[cursor_++];
    }

   private:
    rows rows_;
    std::size_t cursor_ = 0;
    std::shared_ptr<journal> log_;
    std::string name_;
  };

  source make_;
  std::shared_ptr<journal> log_;
  std::string name_;
};

template <class... Arguments>
std::unique_ptr<node> given(Arguments&&... arguments) {
  return std::make_unique<given_rows>(std::forward<Arguments>(arguments)...);
}

inline std::unique_ptr<operators::operator_base> column(std::int16_t position) {
  return std::make_unique<operators::value_from_context>(operators::context_list::row_stack, position);
}

inline std::unique_ptr<operators::operator_base> constant(std::int16_t position) {
  return std::make_unique<operators::value_from_context>(operators::context_list::constants, position);
}

inline std::vector<std::unique_ptr<operators::operator_base>> columns(const std::vector<std::int16_t>& positions) {
  std::vector<std::unique_ptr<operators::operator_base>> list;
  for (const std::int16_t position : positions) list.push_back(column(position));
  return list;
}

// Runs a node to its end with these values on the row stack. The stack is as long after every call as before, and the
// end stays the end.
inline rows run(const node& root, row enclosing = {}, std::vector<value> constants = {}) {
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

// The code of the db_exception that an action throws; 0 without one.
template <class Action>
std::uint32_t db_error(Action action) {
  try {
    action();
  } catch (const db_util::db_exception& error) {
    return error.code;
  }
  return 0;
}

}  // namespace tests

#endif  // TESTS_NODES_GIVEN_ROWS_HPP_
