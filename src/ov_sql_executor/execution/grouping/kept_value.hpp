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

// Where kept values put what they do not hold themselves; it must outlive them. Texts, the commonest, lie one behind
// the other, each with room for others of about its length.
struct kept_memory {
  std::forward_list<value> values;
  std::pmr::monotonic_buffer_resource texts{large_memory()};
};

// A value that can be exchanged for another one, NULL at first. It is small, since groups by the million keep some.
class kept_value {
 public:
  bool is_null() const { return std::holds_alternative<operator_library::NullValue>(held_); }
  std::int64_t* integer() { return std::get_if<std::int64_t>(&held_); }  // null: it is none

  // Good until it becomes another value.
  value_view view() const;

  // Prefetches the text, if it is one.
  void prefetch() const;

  // Throws std::bad_variant_access for the view of a valueless value.
  void become(const value_view& other, kept_memory& elsewhere);
  void become(std::int64_t number) { held_ = number; }

 private:
  struct text_room {  // its bytes lie behind it
    std::size_t capacity;
    std::size_t size;
  };

  void become_text(const text_view& text, kept_memory& elsewhere);

  std::variant<operator_library::NullValue, bool, std::uint64_t, std::int64_t, operator_library::Decimal, double, float,
               text_room*, value*>
      held_;
};

static_assert(sizeof(kept_value) == 2 * sizeof(std::uint64_t));

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_KEPT_VALUE_HPP_
