#ifndef FUZZ_CHOICES_HPP_
#define FUZZ_CHOICES_HPP_

#include <cstddef>
#include <cstdint>
#include <span>

namespace fuzz {

// Decisions read from bytes, one byte each. When they run out every decision is the first possible one.
class choices {
 public:
  explicit choices(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::size_t below(std::size_t limit) { return at_ == bytes_.size() ? 0 : bytes_[at_++] % limit; }
  bool one_in(std::size_t limit) { return below(limit) == limit - 1; }

  template <class List>
  auto& of(List& list) {
    return list[below(std::size(list))];
  }

 private:
  std::span<const std::uint8_t> bytes_;
  std::size_t at_ = 0;
};

}  // namespace fuzz

#endif  // FUZZ_CHOICES_HPP_
