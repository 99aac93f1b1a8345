#ifndef OV_SQL_EXECUTOR_EXECUTION_PACKED_VALUES_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_PACKED_VALUES_HPP_

#include <boost/container/deque.hpp>
#include <cstddef>
#include <cstdint>

#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/large_memory.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// Values put aside by the million, nine bytes for each number, bool, NULL and reference to an object of one table,
// which a value takes forty for: what takes less memory comes from nearer to the processor.
// They come from the row stack and go back there, where packed_views are only looked at.
class packed_values {
 public:
  // packs_texts: texts lie one behind the other, too, and are made anew when they are given, instead of going there and
  // back. That pays where each is given once, far from the one given before.
  explicit packed_values(bool packs_texts) : packs_texts_(packs_texts) {}

  std::size_t size() const { return words_.size(); }

  // Moves a value here, as the last one.
  void push_back(value& moved);

  // Appends a value to the row stack; what it owns is not here any more until it comes back.
  void give(std::size_t position, execution_context& context);

  // What was given comes back, or a copy of it.
  void take_back(std::size_t position, value& moved);
  void copy_back(std::size_t position, const value& copied);

  // Prefetches a value that will be given; and, some time later, its text.
  void prefetch(std::size_t position) const { prefetch_memory(&words_[position]); }
  void prefetch_further(std::size_t position) const;

 private:
  // Large blocks that never move.
  using blocks =
      boost::container::deque<value, void,
                              boost::container::deque_options_t<boost::container::block_size<std::size_t{1024}>>>;

  void push(std::uint8_t kind, std::uint64_t word);
  bool push_text(const db_string::tt_string& text);

  bool packs_texts_;
  // The value's bytes, a reference's object number, where among the bytes a text lies, or a place among the others.
  large_vector<std::uint64_t> words_;
  large_vector<std::uint8_t> kinds_;  // alternatives, or that of no value for what lies among the others
  std::uint64_t second_word_ = 0;     // of the references; another one lies among the others
  bool has_references_ = false;
  large_vector<std::uint8_t> bytes_;  // of packed texts
  blocks others_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_PACKED_VALUES_HPP_
