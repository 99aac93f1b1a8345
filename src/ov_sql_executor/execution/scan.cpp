#include "ov_sql_executor/execution/scan.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include "ov_sql_executor/database/iterator_skip.hpp"
#include "ov_sql_executor/database/obj_ref.hpp"
#include "ov_sql_executor/database/status.hpp"
#include "ov_sql_executor/execution/key_ranges/scan_keys.hpp"
#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

namespace {

// Owns an iterator of the core.
class scan_enumerator final : public row_source {
 public:
  scan_enumerator(const scan& of, execution_context& context) : scan_(of), iterator_(of.open_iterator(context)) {}

  // Runs while exceptions may pass, and nothing depends on the iterator any more: the status is not looked at.
  ~scan_enumerator() override { orv_iterator_free(iterator_); }

  void restart(execution_context& context, opening /*how*/) override {
    orv_iterator_free(std::exchange(iterator_, scan_.open_iterator(context)));
    done_ = false;
  }

  bool push_next(execution_context& context) override {
    if (done_) return false;
    ORV_REFERENCE_VALUE reference{};
    db_util::check(orv_iterator_next(iterator_, &reference));
    done_ = reference.object_number == 0;
    if (done_) return false;
    push_value(context, db_util::to_obj_ref(reference));
    return true;
  }

  std::uint64_t skip(execution_context& /*context*/, std::uint64_t count) override {
    if (done_ || count == 0) return 0;
    const std::uint64_t skipped = db_util::skip_objects(iterator_, count);
    done_ = skipped < count;
    return skipped;
  }

 private:
  const scan& scan_;  // the node
  std::uint64_t iterator_;
  bool done_ = false;
};

}  // namespace

std::unique_ptr<row_source> scan::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  return std::make_unique<scan_enumerator>(*this, context);
}

std::uint64_t scan::open_iterator(execution_context& context) const {
  scan_keys keys;
  write_scan_keys(ranges_, key_columns_, ascending_, context, keys);
  std::uint64_t iterator = 0;
  db_util::check(orv_context_create_iterator(context.context_handle, index_handle_, keys.flags, keys.first.data(),
                                             keys.last.data(), &iterator));
  return iterator;
}

node_description scan::describe() const {
  const auto restricted =
      std::count_if(ranges_.begin(), ranges_.end(), [](const auto& conditions) { return !conditions.empty(); });
  std::string details = "index " + std::to_string(index_handle_);
  if (restricted != 0) {
    details +=
        ", " + std::to_string(restricted) + " of " + std::to_string(key_columns_.size()) + " key columns restricted";
  }
  if (!ascending_) details += ", descending";
  return {"scan", std::move(details), {}};
}

}  // namespace ov::sql_executor
