#ifndef OV_SQL_EXECUTOR_VALUES_EQUALITY_SET_HPP_
#define OV_SQL_EXECUTOR_VALUES_EQUALITY_SET_HPP_

#include <compare>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ov_sql_executor/values/comparison.hpp"
#include "ov_sql_executor/values/equality_key.hpp"
#include "ov_sql_executor/values/keyed_hash.hpp"
#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// A set of values by the equality of the comparison operators: see equality_key.hpp. It never changes once it is built,
// and can be asked from several threads.
class equality_set {
 public:
  // Copies the members. A NaN, which nothing is equal to, is left out. Requires that no member is NULL. Throws
  // std::bad_variant_access for the view of a valueless value.
  explicit equality_set(std::span<const value_view> members);

  // Whether a value is equal to one of the members; false for NULL. Throws std::bad_variant_access for the view of a
  // valueless value.
  bool contains(const value_view& any) const {
    const value_view key = equality_key(any);
    return slots_[find(key, hash_of(key))].number != nobody;
  }

 private:
  static constexpr std::uint32_t nobody = 0;
  struct slot {
    std::uint32_t hash = 0;
    std::uint32_t number = nobody;  // of the key, from 1 on
  };

  std::uint32_t hash_of(const value_view& key) const { return static_cast<std::uint32_t>(hash_({&key, 1})); }

  static bool are_equal(const value_view& left, const value_view& right) {
    return left.index() == right.index() && compare_values(left, right) == std::partial_ordering::equivalent;
  }

  bool holds(const slot& at, const value_view& key, std::uint32_t hash) const {
    return at.hash == hash && are_equal(view_of(keys_[at.number - 1]), key);
  }

  // The position of a key, or a free one.
  std::size_t find(const value_view& key, std::uint32_t hash) const {
    std::size_t at = hash & (slots_.size() - 1);
    while (slots_[at].number != nobody && !holds(slots_[at], key, hash)) at = (at + 1) & (slots_.size() - 1);
    return at;
  }

  void insert(const value_view& key);

  const keyed_hash& hash_ = keyed_hash::of_process();
  std::vector<value> keys_;
  std::vector<slot> slots_;  // a power of two of them, at most a quarter in use
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_EQUALITY_SET_HPP_
