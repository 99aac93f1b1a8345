#include "ov_sql_executor/execution/limit_offset.hpp"

#include <algorithm>
#include <cstdint>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/conversion.hpp"

namespace ov::sql_executor {

namespace {

std::uint64_t sum_or_most(std::uint64_t left, std::uint64_t right) {
  return left > all_rows - right ? all_rows : left + right;
}

class limit_offset_enumerator final : public row_source {
 public:
  limit_offset_enumerator(const limit_offset& of, const input& child, execution_context& context)
      : limit_offset_(of), child_(child) {
    start(context, 0);
  }

  bool push_next(execution_context& context) override {
    if (count_ >= limit_) return false;
    ++count_;
    return child_.push_next(context);
  }

  std::uint64_t skip(execution_context& context, std::uint64_t count) override {
    const std::uint64_t wanted = std::min(count, limit_ - count_);
    count_ += wanted;
    return child_.skip(context, wanted);
  }

  void restart(execution_context& context, opening how) override { start(context, how.changed_from); }

 private:
  void start(execution_context& context, std::size_t changed_from) {
    const auto [limit, offset] = limit_offset_.count_rows(context);
    child_.start(context, {sum_or_most(limit, offset), changed_from});
    limit_ = child_.skip(context, offset) == offset ? limit : 0;
    count_ = 0;
  }

  const limit_offset& limit_offset_;  // the node
  std::uint64_t limit_ = 0;
  input_rows child_;
  std::uint64_t count_ = 0;  // rows asked of the child, at most limit_
};

std::uint64_t row_count(const value& any) {
  const value count = convert_to<std::uint64_t>(any);
  if (const auto* number = std::get_if<std::uint64_t>(&count)) return *number;
  throw db_util::db_exception{db_util::type_error};
}

}  // namespace

limit_offset::counts limit_offset::count_rows(execution_context& context) const {
  const value limit = limit_.evaluate(context);
  const value offset = offset_.evaluate(context);
  const std::uint64_t limit_count = row_count(limit);
  return {limit_count, row_count(offset)};
}

std::unique_ptr<row_source> limit_offset::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  return std::make_unique<limit_offset_enumerator>(*this, child_, context);
}

}  // namespace ov::sql_executor
