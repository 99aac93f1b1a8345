#include "ov_sql_executor/execution/keeping/kept_side.hpp"

#include "ov_sql_executor/execution/keeping/kept_input.hpp"

namespace ov::sql_executor {

namespace {

class kept_side_enumerator final : public row_source {
 public:
  kept_side_enumerator(const input& child, std::optional<std::size_t> last_read, execution_context& context)
      : rows_(child, last_read) {
    rows_.start(context, {});
  }

  bool push_next(execution_context& context) override {
    if (cursor_ < rows_.size()) {
      rows_.push(cursor_++, context);
      return true;
    }
    const bool found = rows_.pull(context);
    cursor_ = rows_.size();
    return found;
  }

  void restart(execution_context& context, opening how) override {
    rows_.start(context, how);
    cursor_ = 0;
  }

 private:
  kept_input rows_;
  std::size_t cursor_ = 0;  // the next of the kept rows
};

}  // namespace

std::unique_ptr<row_source> kept_side::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  return std::make_unique<kept_side_enumerator>(child_, last_read_, context);
}

}  // namespace ov::sql_executor
