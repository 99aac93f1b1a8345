#include "ov_sql_executor/execution/sorting/view_arena.hpp"

#include <cstring>
#include <type_traits>

namespace ov::sql_executor {

template <class Unit>
const Unit* view_arena::copy(const Unit* units, std::size_t count) {
  if (count == 0) return nullptr;
  void* const room = memory_.allocate(count * sizeof(Unit), alignof(Unit));
  std::memcpy(room, units, count * sizeof(Unit));
  return static_cast<const Unit*>(room);
}

// Copies the alternative, not the whole variant: a wide load soon after the variant's narrow stores would stall until
// they have retired.
void view_arena::append_to(large_vector<value_view>& list, const value_view& view) {
  visit_view(
      [&]<class View>(const View& seen) {
        if constexpr (std::is_same_v<View, std::monostate>) {
          throw std::bad_variant_access();
        } else if constexpr (std::is_same_v<View, text_view> || std::is_same_v<View, binary_view>) {
          list.emplace_back(View{{copy(seen.bytes.data(), seen.bytes.size()), seen.bytes.size()}});
        } else if constexpr (std::is_same_v<View, std::u16string_view>) {
          list.emplace_back(View(copy(seen.data(), seen.size()), seen.size()));
        } else {
          list.emplace_back(seen);
        }
      },
      view);
}

}  // namespace ov::sql_executor
