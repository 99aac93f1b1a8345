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

// A list of values. Takes nine bytes for each number, bool, NULL and reference to an object of one table, where a value
// takes forty: less memory stays closer to the processor. Requires: positions are below the size.
class packed_values {
 public:
  // How texts are held. packed: their bytes lie one after another, which pays where each text is only looked at, or
  // handed out once, far from the one before. apart: each text stays a value, which is handed out and taken back
  // without a copy.
  enum class texts : bool { packed, apart };
  explicit packed_values(texts how) : packs_texts_(how == texts::packed) {}

  std::size_t size() const { return words_.size(); }

  // Moves a value to the end of this list.
  void push_back(value& moved);

  // Copies what the view shows to the end of this list. Throws std::bad_variant_access for the view of a valueless
  // value.
  void push_back(const value_view& view);

  // Valid until: the list grows.
  value_view operator[](std::size_t position) const;

  // Compares by the equality of group keys: see group_key.hpp.
  bool equals(std::size_t position, const value_view& other) const;

  // Moves a value to the end of another list. What it owns is not here any more until it is taken back.
  void give(std::size_t position, std::vector<value>& list);

  // Take back what was given, or a copy of it.
  void take_back(std::size_t position, value& moved);
  void copy_back(std::size_t position, const value& copied);

  // Prefetches a value. prefetch_further prefetches its text, some time later.
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

  // Grows out of line, since that is rare.
  void push(std::uint8_t kind, std::uint64_t word) {
    if (words_.size() == words_.capacity()) grow();
    if (words_.size() == words_.capacity() || kinds_.size() == kinds_.capacity()) __builtin_unreachable();
    words_.push_back(word);
    kinds_.push_back(kind);
  }
  [[gnu::noinline]] void grow();

  bool is_of_one_table(const OV_OBJ_REF& reference);
  bool can_pack(std::size_t text_length) const;
  std::uint64_t copy_bytes(std::span<const std::uint8_t> text);

  bool packs_texts_;
  // The bytes of a value, the object number of a reference, the location of a text in bytes_, or an index of others_.
  large_vector<std::uint64_t> words_;
  large_vector<std::uint8_t> kinds_;  // indices of alternatives; one more for values in others_
  std::uint64_t second_word_ = 0;     // of the references; one with another word is in others_
  bool has_references_ = false;
  large_vector<std::uint8_t> bytes_;  // of packed texts
  blocks others_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_PACKED_VALUES_HPP_
