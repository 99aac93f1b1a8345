#include "ov_sql_executor/execution/packed_values.hpp"

#include <boost/mp11/algorithm.hpp>
#include <concepts>
#include <utility>
#include <variant>

#include "ov_sql_executor/execution/row_stack.hpp"
#include "ov_sql_executor/values/value_word.hpp"

namespace ov::sql_executor {

namespace {

constexpr std::uint8_t apart = std::variant_size_v<value>;

template <class T>
constexpr std::uint8_t kind_of = static_cast<std::uint8_t>(boost::mp11::mp_find<value, T>::value);

// Where a text lies: its first byte's position in the upper bits, its length in the lower ones.
constexpr unsigned length_bits = 24;
constexpr std::uint64_t longest_text = (std::uint64_t{1} << length_bits) - 1;
constexpr std::uint64_t most_bytes = std::uint64_t{1} << (64 - length_bits);

}  // namespace

void packed_values::push_back(value& moved) {
  if (const auto* const reference = std::get_if<OV_OBJ_REF>(&moved)) {
    if (!has_references_) second_word_ = reference->second_word;
    has_references_ = true;
    if (reference->second_word == second_word_) return push(kind_of<OV_OBJ_REF>, reference->object_number);
  } else if (const auto* const text = std::get_if<db_string::tt_string>(&moved)) {
    if (push_text(*text)) return;
  } else if (!moved.valueless_by_exception()) {
    const bool is_in_word = std::visit(
        [this]<class T>(const T& held) {
          if constexpr (fits_word<T>) push(kind_of<T>, to_word(held));
          return fits_word<T>;
        },
        moved);
    if (is_in_word) return;
  }
  push(apart, others_.size());
  others_.push_back(std::move(moved));
}

// Whether it is packed.
bool packed_values::push_text(const db_string::tt_string& text) {
  const std::uint64_t first = bytes_.size();
  if (!packs_texts_ || text.size() > longest_text || first >= most_bytes) return false;
  bytes_.insert(bytes_.end(), text.data(), text.data() + text.size());
  push(kind_of<db_string::tt_string>, first << length_bits | text.size());
  return true;
}

void packed_values::push(std::uint8_t kind, std::uint64_t word) {
  words_.push_back(word);
  kinds_.push_back(kind);
}

void packed_values::give(std::size_t position, execution_context& context) {
  const std::uint64_t word = words_[position];
  const std::uint8_t kind = kinds_[position];
  if (kind == apart) return push_value(context, std::move(others_[word]));
  boost::mp11::mp_with_index<std::variant_size_v<value>>(kind, [&](auto alternative) {
    using held = std::variant_alternative_t<alternative, value>;
    if constexpr (std::same_as<held, OV_OBJ_REF>) {
      push_value(context, OV_OBJ_REF{word, second_word_});
    } else if constexpr (std::same_as<held, db_string::tt_string>) {
      push_value(context, db_string::tt_string(bytes_.data() + (word >> length_bits), word & longest_text));
    } else if constexpr (fits_word<held>) {
      push_value(context, from_word<held>(word));
    }
  });
}

// What a word leads to can only be asked for once the word is near.
void packed_values::prefetch_further(std::size_t position) const {
  if (kinds_[position] != kind_of<db_string::tt_string>) return;
  prefetch_memory(bytes_.data() + (words_[position] >> length_bits));
}

void packed_values::take_back(std::size_t position, value& moved) {
  if (kinds_[position] == apart) others_[words_[position]] = std::move(moved);
}

void packed_values::copy_back(std::size_t position, const value& copied) {
  if (kinds_[position] == apart) others_[words_[position]] = copied;
}

}  // namespace ov::sql_executor
