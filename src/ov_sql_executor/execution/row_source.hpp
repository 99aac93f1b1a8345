// How the nodes of this library hand rows to each other: on the row stack, without making a row of each.
#ifndef OV_SQL_EXECUTOR_EXECUTION_ROW_SOURCE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ROW_SOURCE_HPP_

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "ov_sql_executor/errors/destroyed_in_turn.hpp"
#include "ov_sql_executor/execution/enumerator.hpp"
#include "ov_sql_executor/execution/node.hpp"

namespace ov::sql_executor {

// An enumerator that can leave its next row on the row stack, where whoever asked looks at it, keeps it or cuts it off.
class row_source : public enumerator {
 public:
  // Appends the values of the next row to the row stack and returns true; returns false at the end and on every later
  // call, with the stack as it was.
  virtual bool push_next(execution_context& context) = 0;

  // Passes over the next row as push_next would, with the stack as it was, and returns whether there was one.
  virtual bool skip_next(execution_context& context);

  // The same row, moved off the stack.
  std::optional<row> next(execution_context& context) override;
};

// A node of this library.
class source_node : public error_handling::destroyed_in_turn<node> {
 public:
  virtual std::unique_ptr<row_source> open(execution_context& context) const = 0;

  // The same for somebody who asks for no more than so many rows, which may save keeping the others.
  virtual std::unique_ptr<row_source> open_first(std::uint64_t /*count*/, execution_context& context) const {
    return open(context);
  }

  // Opens in place of a source that this node opened before and that nobody needs any more. The new one is there before
  // anything of the old one goes, which stays if opening throws; its memory may serve again.
  virtual void reopen(std::unique_ptr<row_source>& used, execution_context& context) const { used = open(context); }

  enumerator* create_enumerator(execution_context& context) const final { return open(context).release(); }
};

// A node's child: owned, and opened as a row source even if it is not one of this library's.
class input {
 public:
  explicit input(std::unique_ptr<node> child) : child_(std::move(child)) {}

  std::unique_ptr<row_source> open(execution_context& context) const;

  // See source_node.
  std::unique_ptr<row_source> open_first(std::uint64_t count, execution_context& context) const;
  void reopen(std::unique_ptr<row_source>& used, execution_context& context) const;

 private:
  error_handling::owned_part<node, source_node> child_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ROW_SOURCE_HPP_
