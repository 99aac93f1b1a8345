#ifndef OVSQL_SYNTAX_MEMORY_HPP_
#define OVSQL_SYNTAX_MEMORY_HPP_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory_resource>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace ovsql::syntax {

template <class T>
inline constexpr std::size_t bytes_of = sizeof(T);  // NOLINT(bugprone-sizeof-expression): of pointers, too

// Holds the trees of one text. What is made in it lives as long as it does and is never destroyed piece by piece, so
// that no tree is too deep to free.
class memory {
 public:
  memory() {}  // NOLINT(modernize-use-equals-default): leaves the first bytes as they are
  memory(const memory&) = delete;
  memory& operator=(const memory&) = delete;

  template <class T>
  T* make(T of) {
    static_assert(std::is_trivially_destructible_v<T>);
    return new (bytes_.allocate(bytes_of<T>, alignof(T))) T(std::move(of));
  }

  template <class T>
  std::span<const T> keep(const std::vector<T>& list) {
    static_assert(std::is_trivially_destructible_v<T>);
    if (list.empty()) return {};
    T* const first = static_cast<T*>(bytes_.allocate(list.size() * bytes_of<T>, alignof(T)));
    std::uninitialized_copy(list.begin(), list.end(), first);
    return {first, list.size()};
  }

  // Copies a list whose items lie there as bytes.
  template <class T>
  std::span<const T> keep_bytes(const std::byte* items, std::size_t count) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (count == 0) return {};
    void* const first = bytes_.allocate(count * bytes_of<T>, alignof(T));
    std::memcpy(first, items, count * bytes_of<T>);
    return {static_cast<const T*>(first), count};
  }

  std::string_view keep(std::string_view text) {
    if (text.empty()) return {};
    char* const first = static_cast<char*>(bytes_.allocate(text.size(), 1));
    std::copy(text.begin(), text.end(), first);
    return {first, text.size()};
  }

 private:
  // Enough for most statements, without asking for memory.
  alignas(std::max_align_t) std::array<std::byte, 4096> first_;
  std::pmr::monotonic_buffer_resource bytes_{first_.data(), first_.size()};
};

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_MEMORY_HPP_
