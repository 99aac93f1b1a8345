// A growing array of trivial elements. It grows by realloc, which moves large blocks by remapping their pages: loading
// neither copies nor ever holds a column twice, and capacity that is not filled takes no memory.
#ifndef OVCOREDB_RAW_ARRAY_HPP_
#define OVCOREDB_RAW_ARRAY_HPP_

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace ovcoredb {

template <class T>
class raw_array {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  const T* data() const { return data_.get(); }
  T* data() { return data_.get(); }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const T& operator[](std::size_t position) const { return data_.get()[position]; }
  T& operator[](std::size_t position) { return data_.get()[position]; }

  void push_back(T value) { *extend(1) = value; }

  // Appends `count` elements and returns the first of them; their contents are for the caller to write.
  T* extend(std::size_t count) {
    if (capacity_ - size_ < count) grow(count);
    T* const first = data_.get() + size_;
    size_ += count;
    return first;
  }

  // size is at most the present one.
  void truncate(std::size_t size) { size_ = size; }

 private:
  struct releaser {
    void operator()(T* block) const { std::free(block); }
  };

  void grow(std::size_t count) {
    const std::size_t wanted = size_ + count;
    const std::size_t capacity = wanted < capacity_ * 2 ? capacity_ * 2 : wanted + 8;
    T* const block = static_cast<T*>(std::realloc(data_.get(), capacity * sizeof(T)));
    if (block == nullptr) throw std::bad_alloc();
    static_cast<void>(data_.release());
    data_.reset(block);
    capacity_ = capacity;
  }

  std::unique_ptr<T[], releaser> data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_RAW_ARRAY_HPP_
