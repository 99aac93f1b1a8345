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

constexpr std::uint8_t kind_out_of_line = std::variant_size_v<value>;

template <class T>
constexpr std::uint8_t kind_of = static_cast<std::uint8_t>(boost::mp11::mp_find<value, T>::value);

// The word of a text: see the drawing in the header.
constexpr unsigned length_bits = 24;
constexpr std::uint64_t max_length = (std::uint64_t{1} << length_bits) - 1;
constexpr std::uint64_t max_bytes = std::uint64_t{1} << (64 - length_bits);

}  // namespace

[[gnu::always_inline]] inline bool packed_values::matches_table(const OV_OBJ_REF& reference) {
  if (!has_references_) second_word_ = reference.second_word;
  has_references_ = true;
  return reference.second_word == second_word_;
}

[[gnu::always_inline]] inline bool packed_values::can_pack(std::size_t text_length) const {
  return packs_texts_ && text_length <= max_length && bytes_.size() < max_bytes;
}

// Returns the text's word.
[[gnu::always_inline]] inline std::uint64_t packed_values::copy_bytes(std::span<const std::uint8_t> text) {
  const std::uint64_t first = bytes_.size();
  bytes_.resize(first + text.size());
  if (!text.empty()) std::memcpy(bytes_.data() + first, text.data(), text.size());
  return first << length_bits | text.size();
}

void packed_values::push_back(value& moved) {
  if (const auto* const reference = std::get_if<OV_OBJ_REF>(&moved)) {
    if (matches_table(*reference)) return push(kind_of<OV_OBJ_REF>, reference->object_number);
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
  push(kind_out_of_line, out_of_line_count());
  push_out_of_line(std::move(moved));
}

void packed_values::push_back(const value_view& view) {
  auto kind = static_cast<std::uint8_t>(view.index() - 1);  // a view has one alternative before those of value
  const std::uint64_t word = visit_view(
      [&]<class View>(const View& seen) -> std::uint64_t {
        if constexpr (std::same_as<View, std::monostate>) {
          throw std::bad_variant_access();
        } else if constexpr (std::same_as<View, OV_OBJ_REF>) {
          if (matches_table(seen)) return seen.object_number;
        } else if constexpr (std::same_as<View, text_view>) {
          if (can_pack(seen.bytes.size())) return copy_bytes(seen.bytes);
        } else if constexpr (fits_word<View>) {
          return to_word(seen);
        }
        kind = kind_out_of_line;
        push_out_of_line(to_value(view));
        return out_of_line_->size() - 1;
      },
      view);
  push(kind, word);
}

void packed_values::push_out_of_line(value held) {
  if (!out_of_line_) out_of_line_.emplace();
  out_of_line_->push_back(std::move(held));
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
  if (kind == kind_out_of_line) return view_of((*out_of_line_)[word]);
  return boost::mp11::mp_with_index<std::variant_size_v<value>>(kind, [&](auto alternative) -> value_view {
    using held = std::variant_alternative_t<alternative, value>;
    if constexpr (std::same_as<held, OV_OBJ_REF>) {
      return OV_OBJ_REF{word, second_word_};
    } else if constexpr (std::same_as<held, tt_string>) {
      return text_view{{bytes_.data() + (word >> length_bits), word & max_length}};
    } else if constexpr (fits_word<held>) {
      return from_word<held>(word);
    } else {
      return {};  // never: stored out of line
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

std::size_t packed_values::byte_count() const {
  constexpr std::size_t out_of_line_size = sizeof(value) + 64;  // with what most of them have on the heap
  return words_.capacity() * (sizeof words_[0] + sizeof kinds_[0]) + bytes_.capacity() +
         out_of_line_count() * out_of_line_size;
}

void packed_values::give(std::size_t position, std::vector<value>& list) {
  assert(position < size());
  const std::uint64_t word = words_[position];
  const std::uint8_t kind = kinds_[position];
  if (kind == kind_out_of_line) return append_in_place(list, std::move((*out_of_line_)[word]));
  boost::mp11::mp_with_index<std::variant_size_v<value>>(kind, [&](auto alternative) {
    using held = std::variant_alternative_t<alternative, value>;
    if constexpr (std::same_as<held, OV_OBJ_REF>) {
      append_in_place(list, OV_OBJ_REF{word, second_word_});
    } else if constexpr (std::same_as<held, tt_string>) {
      append_in_place(list, tt_string(bytes_.data() + (word >> length_bits), word & max_length));
    } else if constexpr (fits_word<held>) {
      append_in_place(list, from_word<held>(word));
    }
  });
}

void packed_values::prefetch_text(std::size_t position) const {
  assert(position < size());
  if (kinds_[position] == kind_of<tt_string>) prefetch_memory(bytes_.data() + (words_[position] >> length_bits));
}

void packed_values::take_back(std::size_t position, value& moved) {
  assert(position < size());
  if (kinds_[position] == kind_out_of_line) (*out_of_line_)[words_[position]] = std::move(moved);
}

void packed_values::copy_back(std::size_t position, const value& copied) {
  assert(position < size());
  if (kinds_[position] == kind_out_of_line) (*out_of_line_)[words_[position]] = copied;
}

}  // namespace ov::sql_executor
