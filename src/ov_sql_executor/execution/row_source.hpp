// How the nodes of this library hand rows to each other: on the row stack, without making a row of each.
#ifndef OV_SQL_EXECUTOR_EXECUTION_ROW_SOURCE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ROW_SOURCE_HPP_

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ov_sql_executor/execution/enumerator.hpp"
#include "ov_sql_executor/execution/node.hpp"
#include "ov_sql_executor/support/destroyed_in_turn.hpp"

namespace ov::sql_executor {

// As a number of rows: no limit is known.
inline constexpr std::uint64_t all_rows = std::numeric_limits<std::uint64_t>::max();

// How a source is opened or started over.
struct opening {
  std::uint64_t most_rows = all_rows;  // no more rows will be asked for, which may save keeping the others
  std::size_t changed_from = 0;        // what lies below this position of the row stack is as it was before

  opening for_all_rows() const { return {all_rows, changed_from}; }
};

// An enumerator that can leave its next row on the row stack, where whoever asked looks at it, keeps it or cuts it off.
class row_source : public enumerator {
 public:
  // Appends the values of the next row to the row stack and returns true. Returns false at the end and on every later
  // call, with the stack as it was.
  virtual bool push_next(execution_context& context) = 0;

  // Whether it is known that no row follows. Where it is not, push_next finds out.
  bool is_at_end() const { return is_at_end_; }

  // Passes over the next rows, at most count, and returns how many there were; fewer only at the end. What evaluating
  // them throws is thrown here, too.
  virtual std::uint64_t skip(execution_context& context, std::uint64_t count);

  // Starts over, for the rows that are in scope now. What it opens anew in the core, or of a host's node, is there
  // before the old one goes. After an exception the source can only be destroyed.
  virtual void restart(execution_context& context, opening how) = 0;

  // Moves the next row off the stack.
  std::optional<row> next(execution_context& context) override;

 protected:
  bool is_at_end_ = false;  // set by sources that know it
};

class input;

// What a node is: its class, what distinguishes it from others of its class, and its inputs, which are its own.
struct node_description {
  std::string name;
  std::string details;
  std::vector<const input*> inputs;
};

// A node of this library.
class source_node : public destroyed_in_turn<node> {
 public:
  // A new run of the node. most_rows: no more rows will be asked for, which may save keeping the others.
  virtual std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const = 0;

  // How many values each row has; nothing where a node of the host's own decides it.
  virtual std::optional<std::size_t> row_width() const = 0;

  virtual node_description describe() const = 0;

  // Whether sources of this node, or below it, keep rows from one start to the next.
  virtual bool keeps_rows() const = 0;

  enumerator* create_enumerator(execution_context& context) const final { return open(context, all_rows).release(); }
};

// A new run of any node, on the row stack even if the node is not of this library.
std::unique_ptr<row_source> open_rows(const node& of, execution_context& context);

class input_rows;

// The width of two rows side by side; nothing where one is unknown.
inline std::optional<std::size_t> add_widths(std::optional<std::size_t> left, std::optional<std::size_t> right) {
  return left && right ? std::optional(*left + *right) : std::nullopt;
}

// A node's child: owned, and opened as a row source even if it is not one of this library's.
class input {
 public:
  explicit input(std::unique_ptr<node> child) : child_(std::move(child)) {
    if (const source_node* const own = child_.own()) {
      row_width_ = own->row_width();
      keeps_rows_ = own->keeps_rows();
    }
  }

  input_rows open(execution_context& context, std::uint64_t most_rows = all_rows) const;

  // See source_node.
  std::optional<std::size_t> row_width() const { return row_width_; }

  bool keeps_rows() const { return keeps_rows_; }

  const node& child() const { return *child_; }

 private:
  friend class input_rows;
  std::unique_ptr<row_source> open_source(execution_context& context, std::uint64_t most_rows) const;

  owned_part<node, source_node> child_;
  std::optional<std::size_t> row_width_;  // asked for once: trees are deep
  bool keeps_rows_ = false;
};

// The rows of an input, as far as its node's enumerator wants them.
class input_rows {
 public:
  // Not open yet. The input must outlive it.
  explicit input_rows(const input& of) : input_(&of) {}

  bool is_open() const { return is_open_; }

  // Opens the input, or restarts it where it has been opened before.
  void start(execution_context& context, opening how = {}) {
    is_open_ = true;
    if (source_ != nullptr) return source_->restart(context, how);
    source_ = input_->open_source(context, how.most_rows);
  }

  // Frees what is open, unless rows are kept there for the next start.
  void close() {
    is_open_ = false;
    if (!input_->keeps_rows()) source_.reset();
  }

  // See row_source. Require is_open(). Debug builds check that the row stack grows by a whole row or not at all.
  bool push_next(execution_context& context) {
    assert(is_open());
    [[maybe_unused]] const std::size_t before = context.row_stack.size();
    const bool found = source_->push_next(context);
    assert(has_grown_by(context.row_stack.size() - before, found));
    return found;
  }
  bool is_at_end() const {
    assert(is_open());
    return source_->is_at_end();
  }
  std::uint64_t skip(execution_context& context, std::uint64_t count) {
    assert(is_open());
    return source_->skip(context, count);
  }
  std::optional<row> next(execution_context& context) {
    assert(is_open());
    return source_->next(context);
  }

 private:
  bool has_grown_by(std::size_t count, bool found) const;

  const input* input_;
  std::unique_ptr<row_source> source_;
  bool is_open_ = false;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ROW_SOURCE_HPP_
