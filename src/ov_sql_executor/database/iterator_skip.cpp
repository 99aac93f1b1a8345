#include "ov_sql_executor/database/iterator_skip.hpp"

#include <dlfcn.h>

#include "ov_sql_executor/database/status.hpp"
#include "ovcoredb/ovcoredb.h"

namespace db_util {

namespace {

using skip_call = decltype(&orv_iterator_skip);

// Where the program or library begins that has this function. Null: in none.
template <class Function>
const void* module_of(Function* function) {
  Dl_info found{};
  return dladdr(reinterpret_cast<const void*>(function), &found) != 0 ? found.dli_fbase : nullptr;
}

// Null where the core has no such call. That of another module than the one that steps is of another core, or knows
// nothing of what a host does at each step.
skip_call find_skip() {
  const skip_call skip = &orv_iterator_skip;
  if (skip == nullptr) return nullptr;
  const void* const module = module_of(skip);
  return module != nullptr && module == module_of(&orv_iterator_next) ? skip : nullptr;
}

std::uint64_t step_over(std::uint64_t iterator, std::uint64_t count) {
  ORV_REFERENCE_VALUE reference{};
  for (std::uint64_t skipped = 0; skipped != count; ++skipped) {
    check(orv_iterator_next(iterator, &reference));
    if (reference.object_number == 0) return skipped;
  }
  return count;
}

}  // namespace

std::uint64_t skip_objects(std::uint64_t iterator, std::uint64_t count) {
  static const skip_call skip = find_skip();
  if (skip == nullptr) return step_over(iterator, count);
  std::uint64_t skipped = 0;
  check(skip(iterator, count, &skipped));
  return skipped;
}

}  // namespace db_util
