#ifndef OV_SQL_EXECUTOR_EXECUTION_NESTED_LOOP_ENUMERATOR_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_NESTED_LOOP_ENUMERATOR_HPP_

#include <cstdint>
#include <memory>
#include <optional>

#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// Runs the inner side once for every outer row, with the outer row on the row stack below the inner one:
//
//    before   ... enclosing rows ... |
//    while    ... enclosing rows ... | outer row |             the inner side is opened and pulled
//    result   ... enclosing rows ... | outer row | inner row
//
// The outer row is copied once for each result and moved otherwise; not so for the last one, where the inner side knows
// that it is the last. A new inner enumerator is made before the one for
// the previous outer row goes.
class nested_loop_enumerator : public row_source {
 public:
  // null_width: how many NULLs extend an outer row without inner rows; nothing where such a row is left out.
  nested_loop_enumerator(input_rows outer, const input& inner_side, std::optional<std::uint64_t> null_width)
      : null_width_(null_width), outer_(std::move(outer)), inner_(inner_side) {}

  bool push_next(execution_context& context) override;
  void restart(execution_context& context, opening how) override;

 private:
  enum class state { needs_outer_row, outer_row_unmatched, outer_row_matched, exhausted };

  bool push_outer_row(execution_context& context);
  bool push_inner_row(execution_context& context, std::size_t outer_start);

  std::optional<std::uint64_t> null_width_;
  state state_ = state::needs_outer_row;
  input_rows outer_;
  input_rows inner_;              // opened for the first outer row
  std::size_t changed_from_ = 0;  // what has changed on the row stack since the inner side was started
  row outer_row_;                 // the current one, while it is not on the row stack
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_NESTED_LOOP_ENUMERATOR_HPP_
