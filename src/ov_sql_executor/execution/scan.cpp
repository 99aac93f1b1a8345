#include "ov_sql_executor/execution/scan.hpp"

#include <utility>

#include "ov_sql_executor/database/obj_ref.hpp"
#include "ov_sql_executor/database/status.hpp"
#include "ov_sql_executor/execution/scan_keys.hpp"
#include "ov_sql_executor/execution/stack_row.hpp"

namespace ov::sql_executor {

namespace {

std::uint64_t open_iterator(std::uint64_t index, const scan_keys& keys, const execution_context& context) {
  std::uint64_t iterator = 0;
  db_util::check(orv_context_create_iterator(context.context_handle, index, keys.flags, keys.first.data(),
                                             keys.last.data(), &iterator));
  return iterator;
}

// Owns an iterator of the core.
class scan_enumerator final : public row_source {
 public:
  scan_enumerator(std::uint64_t index, const scan_keys& keys, const execution_context& context)
      : iterator_(open_iterator(index, keys, context)) {}

  // Runs while exceptions may pass, and nothing depends on the iterator any more: the status is not looked at.
  ~scan_enumerator() override { orv_iterator_free(iterator_); }

  void reopen(std::uint64_t index, const scan_keys& keys, const execution_context& context) {
    orv_iterator_free(std::exchange(iterator_, open_iterator(index, keys, context)));
    done_ = false;
  }

  bool push_next(execution_context& context) override {
    ORV_REFERENCE_VALUE reference{};
    if (!step(reference)) return false;
    push_value(context, db_util::to_obj_ref(reference));
    return true;
  }

  bool skip_next(execution_context& /*context*/) override {
    ORV_REFERENCE_VALUE reference{};
    return step(reference);
  }

 private:
  bool step(ORV_REFERENCE_VALUE& reference) {
    if (done_) return false;
    db_util::check(orv_iterator_next(iterator_, &reference));
    done_ = reference.object_number == 0;
    return !done_;
  }

  std::uint64_t iterator_;
  bool done_ = false;
};

}  // namespace

std::unique_ptr<row_source> scan::open(execution_context& context) const {
  scan_keys keys;
  write_scan_keys(ranges_, key_columns_, ascending_, context, keys);
  return std::make_unique<scan_enumerator>(index_handle_, keys, context);
}

void scan::reopen(std::unique_ptr<row_source>& used, execution_context& context) const {
  scan_keys keys;
  write_scan_keys(ranges_, key_columns_, ascending_, context, keys);
  static_cast<scan_enumerator&>(*used).reopen(index_handle_, keys, context);
}

}  // namespace ov::sql_executor
