#ifndef OV_SQL_EXECUTOR_VALUES_PACKED_VIEWS_HPP_
#define OV_SQL_EXECUTOR_VALUES_PACKED_VIEWS_HPP_

#include <cstddef>
#include <cstdint>
#include <memory_resource>

#include "ov_sql_executor/values/large_memory.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// A list of values in nine bytes for each, where a view takes 24. What does not fit into a word, as a text, is copied
// behind what was copied before, into memory that is freed all at once.
// Unlike packed_values it owns nothing that is moved in or out: its values are only looked at.
class packed_views {
 public:
  // Throws std::bad_variant_access for the view of a valueless value.
  void push_back(const value_view& view);

  // Good as long as the list lives.
  value_view operator[](std::size_t position) const;

  // Prefetches a value; and, some time later, what was copied for it.
  void prefetch(std::size_t position) const;
  void prefetch_further(std::size_t position) const;

  // Group-key equality: see group_key.hpp.
  bool equals(std::size_t position, const value_view& other) const;

 private:
  template <class View>
  const void* copy(const View& view);

  large_vector<std::uint64_t> words_;
  large_vector<std::uint8_t> kinds_;  // the alternatives
  std::pmr::monotonic_buffer_resource memory_{large_memory()};
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_PACKED_VIEWS_HPP_
