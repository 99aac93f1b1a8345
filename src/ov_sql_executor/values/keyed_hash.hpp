#ifndef OV_SQL_EXECUTOR_VALUES_KEYED_HASH_HPP_
#define OV_SQL_EXECUTOR_VALUES_KEYED_HASH_HPP_

#include <array>
#include <cstdint>
#include <span>

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Hashes rows for tables in memory. Equal keys (see group_key.hpp) hash alike. Mixes words by the folded 128-bit
// multiplication of wyhash, with random factors of the process, so that nobody can prepare keys that collide.
class keyed_hash {
 public:
  // Returns the hash of this process. Throws std::runtime_error where the system gives no random numbers.
  static const keyed_hash& of_process();

  // Throws std::bad_variant_access for the view of a valueless value.
  std::uint64_t operator()(std::span<const value_view> key) const;

 private:
  keyed_hash();

  std::uint64_t start_;
  std::array<std::uint64_t, view_count> factors_;  // one for each alternative
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_KEYED_HASH_HPP_
