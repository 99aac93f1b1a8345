#include "ov_sql_executor/execution/order_by.hpp"

#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "ov_sql_executor/execution/rows/kept_rows.hpp"
#include "ov_sql_executor/execution/rows/row_stack.hpp"
#include "ov_sql_executor/execution/sorting/key_sort.hpp"
#include "ov_sql_executor/expressions/operand_list.hpp"

namespace ov::sql_executor {

namespace {

// So many rows are kept until all but the wanted ones are dropped: the more at a time, the less often the wanted ones
// are sorted again, but all of them should stay near the processor.
std::uint64_t room_for(std::uint64_t wanted) {
  constexpr std::uint64_t least = 1 << 13;
  constexpr std::uint64_t times = 8;
  return wanted > all_rows / times ? all_rows : std::max(least, times * wanted);
}

class order_by_enumerator final : public row_source {
 public:
  order_by_enumerator(const input& child, const std::vector<operators::operand>& keys,
                      const std::vector<bool>& ascending, std::uint64_t most_rows, execution_context& context)
      : child_(child), keys_(keys), ascending_(ascending) {
    start(context, {most_rows});
  }

  void restart(execution_context& context, opening how) override { start(context, how); }

  bool push_next(execution_context& context) override {
    constexpr std::size_t ahead = 16;
    if (cursor_ == sorted_.size() && !sort_more()) return false;
    if (sorted_.size() - cursor_ > ahead) {
      rows_.prefetch(sorted_[cursor_ + ahead].row);
      rows_.prefetch_texts(sorted_[cursor_ + ahead / 2].row);
    }
    rows_.give(sorted_[cursor_++].row, context);
    return true;
  }

 private:
  // Reads and sorts the whole input. Where only the first rows are wanted, others are dropped on the way. If a key
  // turns up then that cannot be sorted, the rows that are gone might have met it: the input is read again and all of
  // it kept, so that the error is the one that sorting all rows meets, or none.
  void start(execution_context& context, opening how) {
    const std::uint64_t wanted = std::max(how.most_rows, std::uint64_t{1});
    child_.start(context, how.for_all_rows());
    read(wanted, wanted, context);
    if (has_dropped_ && !sort_->is_sortable()) {
      child_.start(context, {all_rows, context.row_stack.size()});
      read(wanted, all_rows, context);
    }
    child_.close();
    sort_->start(rows_.size());
    sorted_ = {};
    cursor_ = 0;
  }

  // Rows are dropped so that about as many stay as are to be kept.
  void read(std::uint64_t wanted, std::uint64_t to_keep, execution_context& context) {
    rows_ = kept_rows(kept_rows::access::once);
    sort_.emplace(ascending_, wanted);
    has_dropped_ = false;
    const std::uint64_t most_kept = room_for(to_keep);
    const std::size_t size = context.row_stack.size();
    value scratch;
    while (child_.push_next(context)) {
      if (add_keys(context, scratch)) {
        rows_.take(context, size);
        if (rows_.size() == most_kept && sort_->is_sortable()) drop_all_but(wanted, context);
      } else {
        cut_row_stack(context, size);
      }
    }
  }

  // The keys of the row on top of the row stack; false: the first one says that the row is not wanted. The others are
  // evaluated and looked at all the same, since a failure counts.
  bool add_keys(execution_context& context, value& scratch) {
    bool is_wanted = true;
    for (const operators::operand& key : keys_) {
      const value_view held = key.lend(context, scratch);
      if (&key == keys_.data()) is_wanted = !sort_->is_after_kept(held);
      if (is_wanted) {
        sort_->add_key(held);
      } else if (&key != keys_.data()) {
        sort_->note_skipped_key(static_cast<std::size_t>(&key - keys_.data()), held);
      }
    }
    return is_wanted;
  }

  // Of the rows so far.
  void drop_all_but(std::uint64_t count, execution_context& context) {
    const std::size_t size = context.row_stack.size();
    kept_rows first(kept_rows::access::once);
    for (const std::size_t row : sort_->keep_first(count, rows_.size())) {
      rows_.give(row, context);
      first.take(context, size);
    }
    rows_ = std::move(first);
    has_dropped_ = true;
  }

  bool sort_more() {
    sorted_ = sort_->next_rows();
    cursor_ = 0;
    return !sorted_.empty();
  }

  input_rows child_;                             // open while it is read
  const std::vector<operators::operand>& keys_;  // the node's, like the directions
  const std::vector<bool>& ascending_;
  kept_rows rows_{kept_rows::access::once};
  std::optional<key_sort> sort_;
  bool has_dropped_ = false;
  std::span<const key_sort::entry> sorted_;  // rows in order, some of which have gone
  std::size_t cursor_ = 0;
};

}  // namespace

order_by::order_by(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> keys,
                   std::vector<bool> directions)
    : child_(std::move(child)), keys_(operators::to_operands(std::move(keys))), directions_(std::move(directions)) {}

std::unique_ptr<row_source> order_by::open(execution_context& context, std::uint64_t most_rows) const {
  return std::make_unique<order_by_enumerator>(child_, keys_, directions_, most_rows, context);
}

node_description order_by::describe() const {
  std::string details;
  for (const bool ascending : directions_) {
    details += std::string(details.empty() ? "" : ", ") + (ascending ? "ascending" : "descending");
  }
  return {"order_by", std::move(details), {&child_}};
}

}  // namespace ov::sql_executor
