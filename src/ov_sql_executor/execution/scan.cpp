#include "ov_sql_executor/execution/scan.hpp"

#include <algorithm>
#include <array>
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
    is_at_end_ = false;
  }

  bool push_next(execution_context& context) override {
    if (is_at_end_) return false;
    ORV_REFERENCE_VALUE reference{};
    db_util::check(orv_iterator_next(iterator_, &reference));
    is_at_end_ = reference.object_number == 0;
    if (is_at_end_) return false;
    push_value(context, db_util::to_obj_ref(reference));
    return true;
  }

  std::uint64_t skip(execution_context& /*context*/, std::uint64_t count) override {
    if (is_at_end_ || count == 0) return 0;
    const std::uint64_t skipped = db_util::skip_objects(iterator_, count);
    is_at_end_ = skipped < count;
    return skipped;
  }

 private:
  const scan& scan_;  // the node
  std::uint64_t iterator_;
};

// Looks objects up by a key. On the inner side of a join the same key often comes again at once: what it found is
// remembered if it is little, and then the core is not asked again.
class lookup_enumerator final : public row_source {
 public:
  lookup_enumerator(const scan& of, execution_context& context) : scan_(of) { look_up(context); }
  ~lookup_enumerator() override { orv_iterator_free(iterator_); }

  void restart(execution_context& context, opening /*how*/) override { look_up(context); }

  bool push_next(execution_context& context) override {
    if (is_at_end_) return false;
    if (!repeats_) return push_found(context);
    push_value(context, OV_OBJ_REF(found_[next_++]));
    is_at_end_ = next_ == count_;
    return true;
  }

  // Passes over what has not been remembered yet, too, which is forgotten then.
  std::uint64_t skip(execution_context& /*context*/, std::uint64_t count) override {
    if (is_at_end_ || count == 0) return 0;
    if (repeats_) return skip_remembered(count);
    key_.reset();
    const std::uint64_t skipped = db_util::skip_objects(iterator_, count);
    is_at_end_ = skipped < count;
    return skipped;
  }

 private:
  static constexpr std::size_t most_remembered = 4;

  void look_up(execution_context& context) {
    value scratch;
    const value_view bound = scan_.lookup()->bound.pin(context, scratch);
    const std::optional<std::uint64_t> key = scan_.find_key(bound);
    repeats_ = key && key == key_ && knows_all_;
    if (repeats_) {
      next_ = 0;
      is_at_end_ = count_ == 0;
      return;
    }
    replace_iterator(key ? scan_.open_lookup(context, *key) : scan_.open_lookup(context, bound));
    key_ = key;
    count_ = 0;
    knows_all_ = false;
    is_at_end_ = false;
  }

  // The old iterator goes when the new one is there.
  void replace_iterator(std::uint64_t opened) {
    const std::uint64_t old = std::exchange(iterator_, opened);
    if (old != 0) orv_iterator_free(old);
  }

  bool push_found(execution_context& context) {
    ORV_REFERENCE_VALUE reference{};
    db_util::check(orv_iterator_next(iterator_, &reference));
    if (reference.object_number == 0) {
      is_at_end_ = true;
      knows_all_ = count_ <= most_remembered;
      return false;
    }
    const OV_OBJ_REF object = db_util::to_obj_ref(reference);
    if (count_ < most_remembered) found_[count_] = object;
    if (count_ <= most_remembered) ++count_;
    push_value(context, object);
    return true;
  }

  std::uint64_t skip_remembered(std::uint64_t count) {
    const std::uint64_t skipped = std::min<std::uint64_t>(count, count_ - next_);
    next_ += static_cast<std::size_t>(skipped);
    is_at_end_ = next_ == count_;
    return skipped;
  }

  const scan& scan_;            // the node
  std::uint64_t iterator_ = 0;  // 0: none
  bool repeats_ = false;        // what was found before is handed out again
  bool knows_all_ = false;      // all that the key finds is remembered
  std::optional<std::uint64_t> key_;
  std::size_t count_ = 0;  // of what was found; one more than fits: too many
  std::size_t next_ = 0;
  std::array<OV_OBJ_REF, most_remembered> found_;
};

}  // namespace

std::unique_ptr<row_source> scan::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  if (lookup_ != nullptr) return std::make_unique<lookup_enumerator>(*this, context);
  return std::make_unique<scan_enumerator>(*this, context);
}

std::uint64_t scan::open_iterator(execution_context& context) const {
  scan_keys keys;
  write_scan_keys(ranges_, key_columns_, ascending_, context, keys);
  return open_between(context, keys.flags, keys.first.data(), keys.last.data());
}

std::uint64_t scan::open_lookup(execution_context& context, std::uint64_t key) const {
  const db_util::number_key bytes = db_util::key_of_number(key);
  constexpr std::uint32_t inclusive = ORV_ITERATOR_FIRST_INCLUSIVE | ORV_ITERATOR_LAST_INCLUSIVE;
  const std::uint32_t flags = ascending_ ? inclusive : inclusive | ORV_ITERATOR_DESCENDING;
  return open_between(context, flags, bytes.data(), bytes.data());
}

std::uint64_t scan::open_lookup(execution_context& context, const value_view& bound) const {
  scan_keys keys;
  write_lookup_keys(*lookup_, bound, key_columns_.front(), ascending_, context, keys);
  return open_between(context, keys.flags, keys.first.data(), keys.last.data());
}

std::uint64_t scan::open_between(execution_context& context, std::uint32_t flags, const std::uint8_t* first,
                                 const std::uint8_t* last) const {
  std::uint64_t iterator = 0;
  db_util::check(orv_context_create_iterator(context.context_handle, index_handle_, flags, first, last, &iterator));
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
