#include "ov_sql_executor/database/db_iterator.hpp"

#include <utility>

#include "ov_sql_executor/database/status.hpp"
#include "ov_sql_executor/errors/fatal_stop.hpp"

namespace db_util {

db_iterator::db_iterator(std::uint64_t context, std::uint64_t index, const std::uint8_t* first_key,
                         const std::uint8_t* last_key) {
  check(orv_context_create_iterator(context, index, metadata_iterator_flags, first_key, last_key, &handle_));
  try {
    advance();
  } catch (...) {
    free();
    throw;
  }
}

db_iterator::~db_iterator() { free(); }

void db_iterator::advance() {
  ORV_REFERENCE_VALUE reference{};
  check(orv_iterator_next(handle_, &reference));
  current_ = OvObjRef(reference);
}

void db_iterator::free() noexcept {
  if (handle_ == 0) return;
  if (orv_iterator_free(std::exchange(handle_, 0)) != 0) {
    error_handling::stop_process(error_handling::iterator_free_failed, error_handling::iterator_free_failed_argument);
  }
}

OV_OBJ_REF find_object(std::uint64_t context, std::uint64_t index, const fixed_key& key) {
  return db_iterator(context, index, key.data(), key.data()).current().reference();
}

}  // namespace db_util
