#ifndef OVSQL_SYNTAX_LIST_STACK_HPP_
#define OVSQL_SYNTAX_LIST_STACK_HPP_

#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <type_traits>

#include "ovsql/syntax/memory.hpp"

namespace ovsql::syntax {

// Holds the lists that are being read, the innermost on top, so that no list needs memory of its own.
class list_stack {
 public:
  list_stack() = default;
  list_stack(const list_stack&) = delete;
  list_stack& operator=(const list_stack&) = delete;

  // Where the next list begins.
  std::size_t top() const { return used_; }

  template <class T>
  void push(const T& item) {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= alignof(std::max_align_t));
    if (size_ - used_ < bytes_of<T>) grow();
    std::memcpy(bytes_ + used_, &item, bytes_of<T>);
    used_ += bytes_of<T>;
  }

  // Takes the list that begins there, the topmost one, off the stack.
  template <class T>
  std::span<const T> keep(std::size_t begin, memory& in) {
    const std::span<const T> kept = in.keep_bytes<T>(bytes_ + begin, (used_ - begin) / bytes_of<T>);
    used_ = begin;
    return kept;
  }

 private:
  void grow() {
    std::unique_ptr<std::byte[]> larger = std::make_unique<std::byte[]>(2 * size_);
    std::memcpy(larger.get(), bytes_, used_);
    large_ = std::move(larger);
    bytes_ = large_.get();
    size_ *= 2;
  }

  alignas(std::max_align_t) std::byte small_[1024];
  std::unique_ptr<std::byte[]> large_;
  std::byte* bytes_ = small_;
  std::size_t size_ = sizeof small_;
  std::size_t used_ = 0;
};

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_LIST_STACK_HPP_
