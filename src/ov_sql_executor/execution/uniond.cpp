#include "ov_sql_executor/execution/uniond.hpp"

namespace ov::sql_executor {

namespace {

class uniond_enumerator final : public row_source {
 public:
  uniond_enumerator(std::unique_ptr<row_source> left, std::unique_ptr<row_source> right)
      : left_(std::move(left)), right_(std::move(right)) {}

  bool push_next(execution_context& context) override {
    if (left_) {
      if (left_->push_next(context)) return true;
      left_.reset();
    }
    return right_->push_next(context);
  }

 private:
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
