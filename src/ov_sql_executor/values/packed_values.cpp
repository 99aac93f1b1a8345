#include "ov_sql_executor/values/packed_values.hpp"

#include <boost/mp11/algorithm.hpp>
#include <cassert>
#include <concepts>
#include <cstring>
#include <utility>
#include <variant>

#include "ov_sql_executor/values/group_key.hpp"
#include "ov_sql_executor/values/value_word.hpp"

namespace ov::sql_executor {

namespace {

using db_string::tt_string;

constexpr std::uint8_t kind_of_other = std::variant_size_v<value>;

template <class T>
constexpr std::uint8_t kind_of = static_cast<std::uint8_t>(boost::mp11::mp_find<value, T>::value);

// Locates a text: the position of its first byte in the upper bits of the word, its length in the lower ones.
constexpr unsigned length_bits = 24;
constexpr std::uint64_t max_text_length = (std::uint64_t{1} << length_bits) - 1;
constexpr std::uint64_t max_bytes = std::uint64_t{1} << (64 - length_bits);

}  // namespace

[[gnu::always_inline]] inline bool packed_values::is_of_one_table(const OV_OBJ_REF& reference) {
  if (!has_references_) second_word_ = reference.second_word;
  has_references_ = true;
  return reference.second_word == second_word_;
}

[[gnu::always_inline]] inline bool packed_values::can_pack(std::size_t text_length) const {
  return packs_texts_ && text_length <= max_text_length && bytes_.size() < max_bytes;
}

// Returns the word that locates the copy.
[[gnu::always_inline]] inline std::uint64_t packed_values::copy_bytes(std::span<const std::uint8_t> text) {
  const std::uint64_t first = bytes_.size();
  bytes_.resize(first + text.size());
  if (!text.empty()) std::memcpy(bytes_.data() + first, text.data(), text.size());
  return first << length_bits | text.size();
}

void packed_values::push_back(value& moved) {
  if (const auto* const reference = std::get_if<OV_OBJ_REF>(&moved)) {
    if (is_of_one_table(*reference)) return push(kind_of<OV_OBJ_REF>, reference->object_number);
  } else if (const auto* const text = std::get_if<tt_string>(&moved)) {
    if (can_pack(text->size())) return push(kind_of<tt_string>, copy_bytes({text->data(), text->size()}));
  } else if (!moved.valueless_by_exception()) {
    const bool is_in_word = std::visit(
        [this]<class T>(const T& held) {
          if constexpr (fits_word<T>) push(kind_of<T>, to_word(held));
          return fits_word<T>;
        },
        moved);
    if (is_in_word) return;
  }
  push(kind_of_other, others_.size());
  others_.push_back(std::move(moved));
}

void packed_values::push_back(const value_view& view) {
  auto kind = static_cast<std::uint8_t>(view.index() - 1);  // views have one more alternative in front
  const std::uint64_t word = visit_view(
      [&]<class View>(const View& seen) -> std::uint64_t {
        if constexpr (std::same_as<View, std::monostate>) {
          throw std::bad_variant_access();
        } else if constexpr (std::same_as<View, OV_OBJ_REF>) {
          if (is_of_one_table(seen)) return seen.object_number;
        } else if constexpr (std::same_as<View, text_view>) {
          if (can_pack(seen.bytes.size())) return copy_bytes(seen.bytes);
        } else if constexpr (fits_word<View>) {
          return to_word(seen);
        }
        kind = kind_of_other;
        others_.push_back(to_value(view));
        return others_.size() - 1;
      },
      view);
  push(kind, word);
}

void packed_values::grow() {
  const std::size_t capacity = 2 * words_.size() + 1;
  words_.reserve(capacity);
  kinds_.reserve(capacity);
}

value_view packed_values::operator[](std::size_t position) const {
  assert(position < size());
  const std::uint64_t word = words_[position];
  const std::uint8_t kind = kinds_[position];
  if (kind == kind_of_other) return view_of(others_[word]);
  return boost::mp11::mp_with_index<std::variant_size_v<value>>(kind, [&](auto alternative) -> value_view {
    using held = std::variant_alternative_t<alternative, value>;
    if constexpr (std::same_as<held, OV_OBJ_REF>) {
      return OV_OBJ_REF{word, second_word_};
    } else if constexpr (std::same_as<held, tt_string>) {
      return text_view{{bytes_.data() + (word >> length_bits), word & max_text_length}};
    } else if constexpr (fits_word<held>) {
      return from_word<held>(word);
    } else {
      return {};  // is one of the others
    }
  });
}

bool packed_values::equals(std::size_t position, const value_view& other) const {
  assert(position < size());
  // Compares integers, the commonest keys, by their words.
  if (const auto* const number = std::get_if<std::int64_t>(&other)) {
    return kinds_[position] == kind_of<std::int64_t> && words_[position] == to_word(*number);
  }
  const value_view own = (*this)[position];
  return own.index() == other.index() && key_equal(own, other);
}

void packed_values::give(std::size_t position, std::vector<value>& list) {
  assert(position < size());
  const std::uint64_t word = words_[position];
  const std::uint8_t kind = kinds_[position];
  if (kind == kind_of_other) return append_in_place(list, std::move(others_[word]));
  boost::mp11::mp_with_index<std::variant_size_v<value>>(kind, [&](auto alternative) {
    using held = std::variant_alternative_t<alternative, value>;
    if constexpr (std::same_as<held, OV_OBJ_REF>) {
      append_in_place(list, OV_OBJ_REF{word, second_word_});
    } else if constexpr (std::same_as<held, tt_string>) {
      append_in_place(list, tt_string(bytes_.data() + (word >> length_bits), word & max_text_length));
    } else if constexpr (fits_word<held>) {
      append_in_place(list, from_word<held>(word));
    }
  });
}

// Reads the word, which must have arrived in the cache by then.
void packed_values::prefetch_further(std::size_t position) const {
  if (kinds_[position] == kind_of<tt_string>) prefetch_memory(bytes_.data() + (words_[position] >> length_bits));
}

void packed_values::take_back(std::size_t position, value& moved) {
  assert(position < size());
  if (kinds_[position] == kind_of_other) others_[words_[position]] = std::move(moved);
}

void packed_values::copy_back(std::size_t position, const value& copied) {
  assert(position < size());
  if (kinds_[position] == kind_of_other) others_[words_[position]] = copied;
}

}  // namespace ov::sql_executor
