#ifndef OV_SQL_EXECUTOR_EXECUTION_GROUPING_KEPT_VALUE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_GROUPING_KEPT_VALUE_HPP_

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <memory_resource>
#include <variant>

#include "ov_sql_executor/support/large_memory.hpp"
#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Owns what kept values point to. Must outlive them.
struct kept_memory {
  std::forward_list<value> values;  // binaries and the like
  std::pmr::monotonic_buffer_resource texts{large_memory()};
};

// A value that can be assigned, NULL at first. Holds small values itself, and points to others in a kept_memory. It is
// small and trivially copyable, since there are some in each of millions of groups.
class kept_value {
 public:
  bool is_null() const { return std::holds_alternative<operator_library::NullValue>(held_); }
  std::int64_t* integer() { return std::get_if<std::int64_t>(&held_); }  // null for another alternative

  // Valid until: another value is assigned.
  value_view view() const;

  // Prefetches the text, if the value is one.
  void prefetch() const;

  // Requires: memory is the same in all calls. Throws: std::bad_variant_access for the view of a valueless value.
  void assign(const value_view& other, kept_memory& memory);
  void assign(std::int64_t number) { held_ = number; }

 private:
  struct text_buffer {  // its bytes lie after it
    std::size_t capacity;
    std::size_t size;
  };

  void assign_text(const text_view& text, kept_memory& memory);

  std::variant<operator_library::NullValue, bool, std::uint64_t, std::int64_t, operator_library::Decimal, double, float,
               text_buffer*, value*>
      held_;
};

static_assert(sizeof(kept_value) == 2 * sizeof(std::uint64_t));

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_KEPT_VALUE_HPP_
