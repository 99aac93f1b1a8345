#ifndef OV_SQL_EXECUTOR_EXECUTION_SORTING_VIEW_ARENA_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_SORTING_VIEW_ARENA_HPP_

#include <memory_resource>

#include "ov_sql_executor/support/large_memory.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Makes views that stay good as long as it lives: the texts, binaries and set specifiers that they show are copied one
// behind the other into memory that is freed all at once. Keeping a view so costs less than making a value.
class view_arena {
 public:
  // Appends a view of what this one shows. Throws std::bad_variant_access for the view of a valueless value.
  void append_to(large_vector<value_view>& list, const value_view& view);

  // Frees what the views show; none of them may be looked at any more.
  void release() { memory_.release(); }

 private:
  template <class Unit>
  const Unit* copy(const Unit* units, std::size_t count);

  std::pmr::monotonic_buffer_resource memory_{large_memory()};
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_SORTING_VIEW_ARENA_HPP_
