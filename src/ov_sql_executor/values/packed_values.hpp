#ifndef OV_SQL_EXECUTOR_VALUES_PACKED_VALUES_HPP_
#define OV_SQL_EXECUTOR_VALUES_PACKED_VALUES_HPP_

#include <boost/container/deque.hpp>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "ov_sql_executor/support/large_memory.hpp"
#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// A list of values that takes nine bytes for most of them. A `value` takes forty, so fewer of them fit into the cache.
//
//    position           0       1            2      3                   4
//    kinds_           | int64 | reference  | NULL | text              | out of line |    1 byte each
//    words_           | 42    | object 17  | 0    | first 0, length 5 | index 0     |    8 bytes each
//    bytes_           | P a r i s ...                                                    packed texts
//    out_of_line_     | value ...                                                        40 bytes each
//
//    kind                                   word
//    number, bool or NULL                   the bytes of the value
//    reference to the list's one table      the object number
//    text, where texts are packed           upper 40 bits: position of its first byte in bytes_; lower 24: its length
//    out of line, which is all the rest     index in out_of_line_
class packed_values {
 public:
  // How texts are stored.
  enum class texts : bool {
    packed,       // In bytes_. Pays where each text is only viewed, or given once and far from the one before.
    out_of_line,  // As values. Giving one and taking it back moves it, without a copy.
  };
  explicit packed_values(texts how) : packs_texts_(how == texts::packed) {}

  std::size_t size() const { return words_.size(); }

  // Requires, of every position below: position < size().

  // Moves a value to the end.
  void push_back(value& moved);

  // Copies what the view shows to the end. Throws: std::bad_variant_access for the view of a valueless value.
  void push_back(const value_view& view);

  // Valid until: the list grows, or the value is given.
  value_view operator[](std::size_t position) const;

  // Compares by group-key equality: see group_key.hpp.
  bool equals(std::size_t position, const value_view& other) const;

  // Appends the value to a list. A value out of line is moved there, and its position holds nothing useful until
  // take_back or copy_back.
  void give(std::size_t position, std::vector<value>& list);

  // Moves or copies the value that was given back to its position.
  void take_back(std::size_t position, value& moved);
  void copy_back(std::size_t position, const value& copied);

  // About how much memory the values take.
  std::size_t byte_count() const;

  // Prefetches the word and the kind.
  void prefetch(std::size_t position) const {
    assert(position < size());
    prefetch_memory(&words_[position]);
    prefetch_memory(&kinds_[position]);
  }
  // Prefetches a packed text. Reads the word: prefetch that some time before.
  void prefetch_text(std::size_t position) const;

 private:
  // A list in large blocks, which stay where they are when it grows.
  using blocks =
      boost::container::deque<value, void,
                              boost::container::deque_options_t<boost::container::block_size<std::size_t{1024}>>>;

  // Growing is rare. Out of line it does not slow down the rest.
  void push(std::uint8_t kind, std::uint64_t word) {
    if (words_.size() == words_.capacity()) grow();
    if (words_.size() == words_.capacity() || kinds_.size() == kinds_.capacity()) __builtin_unreachable();
    words_.push_back(word);
    kinds_.push_back(kind);
  }
  [[gnu::noinline]] void grow();

  std::size_t out_of_line_count() const { return out_of_line_ ? out_of_line_->size() : 0; }
  void push_out_of_line(value held);

  bool matches_table(const OV_OBJ_REF& reference);
  bool can_pack(std::size_t text_length) const;
  std::uint64_t copy_bytes(std::span<const std::uint8_t> text);

  bool packs_texts_;
  large_vector<std::uint64_t> words_;
  large_vector<std::uint8_t> kinds_;  // indexes of value's alternatives, or one past them: out of line
  std::uint64_t second_word_ = 0;     // the table of the first reference; those to others are out of line
  bool has_references_ = false;
  large_vector<std::uint8_t> bytes_;
  std::optional<blocks> out_of_line_;  // none before the first value: moving an empty deque is not defined
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_PACKED_VALUES_HPP_
