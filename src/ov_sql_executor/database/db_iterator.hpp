#ifndef OV_SQL_EXECUTOR_DATABASE_DB_ITERATOR_HPP_
#define OV_SQL_EXECUTOR_DATABASE_DB_ITERATOR_HPP_

#include <cstdint>

#include "ov_sql_executor/database/index_key.hpp"
#include "ov_sql_executor/database/obj_ref.hpp"

namespace db_util {

// The flags of every iterator over metadata: both ends belong to the range.
inline constexpr std::uint32_t metadata_iterator_flags =
    ORV_ITERATOR_FIRST_INCLUSIVE | ORV_ITERATOR_LAST_INCLUSIVE | ORV_ITERATOR_METADATA;

// Iterates over a range of a metadata index. Owns the core's iterator. Ends the process with a structured exception
// where the core fails to free it.
class db_iterator {
 public:
  // Opens the range from first_key to last_key and steps to its first object. Requires: the keys live as long as the
  // iterator. Throws db_exception; what was opened is freed.
  db_iterator(std::uint64_t context, std::uint64_t index, const std::uint8_t* first_key, const std::uint8_t* last_key);
  virtual ~db_iterator();
  db_iterator(const db_iterator&) = delete;
  db_iterator& operator=(const db_iterator&) = delete;

  // The current object. Not valid after the last one.
  const OvObjRef& current() const { return current_; }

  // Steps to the next object.
  void advance();

 private:
  void free() noexcept;

  std::uint64_t handle_ = 0;
  OvObjRef current_;
};

// Holds the keys of an iterator. A base class, so that they are made first.
struct key_range {
  fixed_key first;
  fixed_key last;
};

// Iterates over a range whose keys it holds. Calls fill with an empty key_range. Requires: fill writes and terminates
// both keys.
class db_iter_with_keys : private key_range, public db_iterator {
 public:
  template <class Fill>
  db_iter_with_keys(std::uint64_t context, std::uint64_t index, Fill fill)
      : key_range(filled(fill)), db_iterator(context, index, first.data(), last.data()) {}

 private:
  template <class Fill>
  static key_range filled(Fill fill) {
    key_range keys;
    fill(keys);
    return keys;
  }
};

// Finds the first object with this key; the zero reference if there is none.
OV_OBJ_REF find_object(std::uint64_t context, std::uint64_t index, const fixed_key& key);

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_DB_ITERATOR_HPP_
