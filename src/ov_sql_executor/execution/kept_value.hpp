#ifndef OV_SQL_EXECUTOR_EXECUTION_KEPT_VALUE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEPT_VALUE_HPP_

#include <cstdint>
#include <forward_list>
#include <variant>

#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// A value that can be exchanged for another one, NULL at first. It is small, since groups by the million keep some:
// what is no number lies elsewhere, in a list that outlives it.
class kept_value {
 public:
  bool is_null() const { return std::holds_alternative<operator_library::NullValue>(held_); }
  std::int64_t* integer() { return std::get_if<std::int64_t>(&held_); }  // null: it is none

  // Good until it becomes another value.
  value_view view() const;

  // Throws std::bad_variant_access for the view of a valueless value.
  void become(const value_view& other, std::forward_list<value>& elsewhere);
  void become(std::int64_t number) { held_ = number; }

 private:
  std::variant<operator_library::NullValue, bool, std::uint64_t, std::int64_t, operator_library::Decimal, double, float,
               value*>
      held_;
};

static_assert(sizeof(kept_value) == 2 * sizeof(std::uint64_t));

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEPT_VALUE_HPP_
