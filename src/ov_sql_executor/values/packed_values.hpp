#ifndef OV_SQL_EXECUTOR_VALUES_PACKED_VALUES_HPP_
#define OV_SQL_EXECUTOR_VALUES_PACKED_VALUES_HPP_

#include <boost/container/deque.hpp>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ov_sql_executor/support/large_memory.hpp"
#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// A list of values, nine bytes for each number, bool, NULL and reference to an object of one table. A value takes
// forty: what takes less memory comes from nearer to the processor.
class packed_values {
 public:
  // What happens to texts. packed: their bytes lie one after the other. That pays where each is only looked at, or
  // handed out once, far from the one before. apart: each stays a value, which can be handed out and taken back without
  // copying.
  enum class texts : bool { packed, apart };
  explicit packed_values(texts how) : packs_texts_(how == texts::packed) {}

  std::size_t size() const { return words_.size(); }

  // Moves a value here, as the last one.
  void push_back(value& moved);

  // Copies what the view shows. Throws std::bad_variant_access for the view of a valueless value.
  void push_back(const value_view& view);

  // Valid until the list grows.
  value_view operator[](std::size_t position) const;

  // Group-key equality: see group_key.hpp.
  bool equals(std::size_t position, const value_view& other) const;

  // Appends a value to a list. What it owns is not here any more until it is taken back.
  void give(std::size_t position, std::vector<value>& list);

  // Takes back what was given, or a copy of it.
  void take_back(std::size_t position, value& moved);
  void copy_back(std::size_t position, const value& copied);

  // About how much memory the values take.
  std::size_t byte_count() const;

  // Prefetches a value; and, some time later, its text.
  void prefetch(std::size_t position) const {
    prefetch_memory(&words_[position]);
    prefetch_memory(&kinds_[position]);
  }
  void prefetch_further(std::size_t position) const;

 private:
  // Large blocks that never move.
  using blocks =
      boost::container::deque<value, void,
                              boost::container::deque_options_t<boost::container::block_size<std::size_t{1024}>>>;

  // Growing is rare, and kept out of the way.
  void push(std::uint8_t kind, std::uint64_t word) {
    if (words_.size() == words_.capacity()) make_room();
    if (words_.size() == words_.capacity() || kinds_.size() == kinds_.capacity()) __builtin_unreachable();
    words_.push_back(word);
    kinds_.push_back(kind);
  }
  [[gnu::noinline]] void make_room();

  bool is_of_one_table(const OV_OBJ_REF& reference);
  bool can_pack(std::size_t text_length) const;
  std::uint64_t copy_bytes(std::span<const std::uint8_t> text);

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

#endif  // OV_SQL_EXECUTOR_VALUES_PACKED_VALUES_HPP_
