#include "ov_sql_executor/execution/limit_offset.hpp"

#include <cstdint>
#include <limits>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/conversion.hpp"

namespace ov::sql_executor {

namespace {

class limit_offset_enumerator final : public row_source {
 public:
  limit_offset_enumerator(std::uint64_t limit, std::unique_ptr<row_source> child)
      : limit_(limit), child_(std::move(child)) {}

  bool push_next(execution_context& context) override {
    if (count_ >= limit_) return false;
    ++count_;
    return child_->push_next(context);
  }

 private:
  std::uint64_t limit_;
  std::unique_ptr<row_source> child_;
  std::uint64_t count_ = 0;  // rows asked of the child
};

std::uint64_t row_count(const value& any) {
  const value count = convert_to<std::uint64_t>(any);
  if (const auto* number = std::get_if<std::uint64_t>(&count)) return *number;
  throw db_util::db_exception{db_util::type_error};
}

std::uint64_t sum_or_most(std::uint64_t left, std::uint64_t right) {
  return left > std::numeric_limits<std::uint64_t>::max() - right ? std::numeric_limits<std::uint64_t>::max()
                                                                  : left + right;
}

// Whether there were as many rows.
bool skip(row_source& rows, std::uint64_t count, execution_context& context) {
  while (count > 0 && rows.skip_next(context)) --count;
  return count == 0;
}

}  // namespace

std::unique_ptr<row_source> limit_offset::open(execution_context& context) const {
  const value limit_value = limit_.evaluate(context);
  const value offset_value = offset_.evaluate(context);
  const std::uint64_t limit = row_count(limit_value);
  const std::uint64_t offset = row_count(offset_value);
  std::unique_ptr<row_source> child = child_.open_first(sum_or_most(limit, offset), context);
  const bool has_rows = skip(*child, offset, context);
  return std::make_unique<limit_offset_enumerator>(has_rows ? limit : 0, std::move(child));
}

}  // namespace ov::sql_executor
