#ifndef OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEPT_INPUT_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEPT_INPUT_HPP_

#include <cstddef>
#include <optional>

#include "ov_sql_executor/execution/keeping/equality_index.hpp"
#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/execution/rows/kept_rows.hpp"

namespace ov::sql_executor {

// The rows of an input that yields the same ones each time it is started, as long as what it reads of the row stack has
// not changed. They are kept from the second start on, one by one as they are asked for, and handed out again:
//
//    start       1st          2nd           3rd and later
//    rows        pulled       pulled, kept  copied as far as they were kept; then pulled, kept
//
// An error of the input is met at the row at which it would be met without keeping, since the input is pulled no
// earlier and goes on where it stopped. Beyond a limit in bytes nothing is kept any more.
class kept_input {
 public:
  // last_read: the highest position of the row stack below its own rows that the input reads; nothing if it reads none.
  kept_input(const input& of, std::optional<std::size_t> last_read) : last_read_(last_read), rows_(of) {}

  // Returns whether the rows that were kept are still good; otherwise there are none.
  bool start(execution_context& context, opening how);

  // How many rows are kept.
  std::size_t size() const { return kept_.size(); }

  // Appends a kept row to the row stack.
  void push(std::size_t row_number, execution_context& context) const { kept_.push_copy(row_number, context); }

  // Appends the next row after those that are kept, and keeps it, if rows are kept; false at the end. index: of the
  // kept rows, if the caller has one; its memory counts, too.
  bool pull(execution_context& context, const equality_index* index = nullptr);

  bool is_keeping() const { return phase_ == phase::keeping; }

 private:
  enum class phase { new_rows, keeping, given_up };

  phase phase_after_start(bool is_same) const;
  bool is_full(const equality_index* index) const;

  std::optional<std::size_t> last_read_;
  phase phase_ = phase::given_up;
  bool has_started_ = false;
  input_rows rows_;  // open until it is exhausted
  kept_rows kept_{kept_rows::access::once};
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEPT_INPUT_HPP_
