#include "ov_sql_executor/execution/uniond.hpp"

#include <type_traits>

namespace ov::sql_executor {

namespace {

class uniond_enumerator final : public row_source {
 public:
  uniond_enumerator(input_rows left, input_rows right) : left_(std::move(left)), right_(std::move(right)) {}

  bool push_next(execution_context& context) override {
    return next_of_either([&](input_rows& side) { return side.push_next(context); });
  }

  std::uint64_t skip(execution_context& context, std::uint64_t count) override {
    std::uint64_t skipped = 0;
    if (on_left_) {
      skipped = left_.skip(context, count);
      if (skipped == count) return count;
      leave_left();
    }
    return skipped + right_.skip(context, count - skipped);
  }

  void restart(execution_context& context, opening how) override {
    left_.start(context, how.for_all_rows());
    right_.start(context, how.for_all_rows());
    on_left_ = true;
  }

  // Asked from outside, a row goes out as its side makes it.
  std::optional<row> next(execution_context& context) override {
    return next_of_either([&](input_rows& side) { return side.next(context); });
  }

 private:
  template <class Ask>
  std::invoke_result_t<Ask, input_rows&> next_of_either(Ask ask) {
    auto found = ask(on_left_ ? left_ : right_);
    if (!found && on_left_) {
      leave_left();
      found = ask(right_);
    }
    return found;
  }

  void leave_left() {
    on_left_ = false;
    left_.close();
  }

  bool on_left_ = true;
  input_rows left_;  // until it is exhausted
  input_rows right_;
};

}  // namespace

std::unique_ptr<row_source> uniond::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  input_rows left = left_.open(context);
  input_rows right = right_.open(context);
  return std::make_unique<uniond_enumerator>(std::move(left), std::move(right));
}

}  // namespace ov::sql_executor
