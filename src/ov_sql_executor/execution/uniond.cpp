#include "ov_sql_executor/execution/uniond.hpp"

#include <type_traits>

namespace ov::sql_executor {

namespace {

class uniond_enumerator final : public row_source {
 public:
  uniond_enumerator(std::unique_ptr<row_source> left, std::unique_ptr<row_source> right)
      : left_(std::move(left)), right_(std::move(right)) {}

  bool push_next(execution_context& context) override {
    return next_of_either([&](row_source& side) { return side.push_next(context); });
  }

  // Asked from outside, a row goes out as its side makes it.
  std::optional<row> next(execution_context& context) override {
    return next_of_either([&](row_source& side) { return side.next(context); });
  }

 private:
  template <class Ask>
  std::invoke_result_t<Ask, row_source&> next_of_either(Ask ask) {
    auto found = ask(left_ ? *left_ : *right_);
    if (!found && left_) {
      left_.reset();
      found = ask(*right_);
    }
    return found;
  }

  std::unique_ptr<row_source> left_;  // until it is exhausted
  std::unique_ptr<row_source> right_;
};

}  // namespace

std::unique_ptr<row_source> uniond::open(execution_context& context) const {
  std::unique_ptr<row_source> left = left_.open(context);
  std::unique_ptr<row_source> right = right_.open(context);
  return std::make_unique<uniond_enumerator>(std::move(left), std::move(right));
}

}  // namespace ov::sql_executor
