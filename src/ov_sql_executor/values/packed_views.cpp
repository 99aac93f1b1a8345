#include "ov_sql_executor/values/packed_views.hpp"

#include <array>
#include <concepts>
#include <cstring>
#include <new>
#include <span>
#include <type_traits>
#include <variant>

#include "ov_sql_executor/values/group_key.hpp"
#include "ov_sql_executor/values/value_word.hpp"

namespace ov::sql_executor {

namespace {

// What a view borrows.
std::span<const std::uint8_t> units(const text_view& view) { return view.bytes; }
std::span<const std::uint8_t> units(const binary_view& view) { return view.bytes; }
std::span<const char16_t> units(std::u16string_view view) { return view; }

template <class View>
concept borrowing = requires(const View& view) {
  units(view);
};

// By alternative.
constexpr auto is_copied = []<class... Views>(std::type_identity<std::variant<Views...>>) {
  return std::array<bool, sizeof...(Views)>{!fits_word<Views>...};
}(std::type_identity<value_view>());

// How many units there are stands in front of them.
template <borrowing View>
View view_at(const void* copied) {
  std::size_t count = 0;
  std::memcpy(&count, copied, sizeof count);
  using unit = typename decltype(units(View()))::value_type;
  const auto* const first = reinterpret_cast<const unit*>(static_cast<const std::byte*>(copied) + sizeof count);
  if constexpr (std::same_as<View, std::u16string_view>) {
    return {first, count};
  } else {
    return {{first, count}};
  }
}

}  // namespace

template <class View>
const void* packed_views::copy(const View& view) {
  if constexpr (borrowing<View>) {
    const auto seen = units(view);
    const std::size_t count = seen.size();
    auto* const room =
        static_cast<std::byte*>(memory_.allocate(sizeof count + seen.size_bytes(), alignof(std::size_t)));
    std::memcpy(room, &count, sizeof count);
    if (count != 0) std::memcpy(room + sizeof count, seen.data(), seen.size_bytes());
    return room;
  } else {
    return new (memory_.allocate(sizeof view, alignof(View))) View(view);
  }
}

void packed_views::push_back(const value_view& view) {
  visit_view(
      [this]<class View>(const View& seen) {
        if constexpr (std::same_as<View, std::monostate>) {
          throw std::bad_variant_access();
        } else if constexpr (fits_word<View>) {
          words_.push_back(to_word(seen));
        } else {
          words_.push_back(to_word(copy(seen)));
        }
      },
      view);
  kinds_.push_back(static_cast<std::uint8_t>(view.index()));
}

value_view packed_views::operator[](std::size_t position) const {
  const std::uint64_t word = words_[position];
  return boost::mp11::mp_with_index<view_count>(kinds_[position], [word](auto kind) -> value_view {
    using view = std::variant_alternative_t<kind, value_view>;
    if constexpr (fits_word<view>) {
      return from_word<view>(word);
    } else if constexpr (borrowing<view>) {
      return view_at<view>(from_word<const void*>(word));
    } else {
      return *static_cast<const view*>(from_word<const void*>(word));
    }
  });
}

void packed_views::prefetch(std::size_t position) const {
  prefetch_memory(&words_[position]);
  prefetch_memory(&kinds_[position]);
}

void packed_views::prefetch_further(std::size_t position) const {
  if (is_copied[kinds_[position]]) prefetch_memory(from_word<const void*>(words_[position]));
}

bool packed_views::equals(std::size_t position, const value_view& other) const {
  if (kinds_[position] != other.index()) return false;
  // Integers, the commonest keys, are told by their words.
  if (const auto* const number = std::get_if<std::int64_t>(&other)) return words_[position] == to_word(*number);
  return key_equal((*this)[position], other);
}

}  // namespace ov::sql_executor
