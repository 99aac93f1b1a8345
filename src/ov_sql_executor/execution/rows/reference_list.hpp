#ifndef OV_SQL_EXECUTOR_EXECUTION_ROWS_REFERENCE_LIST_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ROWS_REFERENCE_LIST_HPP_

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "ov_sql_executor/support/large_memory.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// References to objects. Takes four bytes for each while all are to one table and their numbers fit, so that more of
// them fit into the cache: sorted rows are read in random order.
class reference_list {
 public:
  std::size_t size() const { return is_narrow_ ? narrow_.size() : wide_.size(); }

  // Requires: position < size().
  OV_OBJ_REF operator[](std::size_t position) const {
    assert(position < size());
    return is_narrow_ ? OV_OBJ_REF{narrow_[position], second_word_} : wide_[position];
  }

  void push_back(const OV_OBJ_REF& reference) {
    if (is_narrow_ && !fits(reference)) widen();
    if (is_narrow_) {
      second_word_ = reference.second_word;
      narrow_.push_back(static_cast<std::uint32_t>(reference.object_number));
    } else {
      wide_.push_back(reference);
    }
  }

  std::size_t byte_count() const { return narrow_.capacity() * sizeof narrow_[0] + wide_.capacity() * sizeof wide_[0]; }

  // Requires: position < size().
  void prefetch(std::size_t position) const {
    assert(position < size());
    prefetch_memory(is_narrow_ ? static_cast<const void*>(&narrow_[position]) : &wide_[position]);
  }

 private:
  bool fits(const OV_OBJ_REF& reference) const {
    return reference.object_number <= std::numeric_limits<std::uint32_t>::max() &&
           (narrow_.empty() || reference.second_word == second_word_);
  }

  void widen() {
    for (const std::uint32_t number : narrow_) wide_.push_back({number, second_word_});
    narrow_ = {};
    is_narrow_ = false;
  }

  bool is_narrow_ = true;
  std::uint64_t second_word_ = 0;       // of the narrow ones
  large_vector<std::uint32_t> narrow_;  // object numbers
  large_vector<OV_OBJ_REF> wide_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ROWS_REFERENCE_LIST_HPP_
