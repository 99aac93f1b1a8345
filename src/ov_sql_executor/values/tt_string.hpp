#ifndef OV_SQL_EXECUTOR_VALUES_TT_STRING_HPP_
#define OV_SQL_EXECUTOR_VALUES_TT_STRING_HPP_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

namespace db_string {

// Text in the database's own encoded form, which ovcoredb.h describes. Owns a buffer of exactly length bytes. A host
// makes one of the bytes that orv_context_convert_ucs2_to_turbotext or orv_convert_ucs2_to_turbotext writes, and reads
// one with orv_convert_turbotext_to_ucs2. Copies are deep; a move leaves the source empty.
//
// The empty text has two forms, which compare equal: no bytes, and the lone header byte 0x80, which the core writes.
class tt_string {
 public:
  tt_string() noexcept = default;

  // Copies length bytes. Throws std::bad_alloc.
  tt_string(const void* bytes, std::size_t length) : length_(length) {
    if (length == 0) return;
    buffer_ = std::make_unique_for_overwrite<std::uint8_t[]>(length);
    std::memcpy(buffer_.get(), bytes, length);
  }

  tt_string(const tt_string& other) : tt_string(other.data(), other.size()) {}
  tt_string(tt_string&& other) noexcept : length_(std::exchange(other.length_, 0)), buffer_(std::move(other.buffer_)) {}
  tt_string& operator=(const tt_string& other) {
    if (this != &other) *this = tt_string(other);
    return *this;
  }
  tt_string& operator=(tt_string&& other) noexcept {
    length_ = std::exchange(other.length_, 0);
    buffer_ = std::move(other.buffer_);
    return *this;
  }
  ~tt_string() = default;

  const std::uint8_t* data() const noexcept { return buffer_.get(); }  // null when size() is 0
  std::size_t size() const noexcept { return static_cast<std::size_t>(length_); }

 private:
  std::uint64_t length_ = 0;
  std::unique_ptr<std::uint8_t[]> buffer_;
};

}  // namespace db_string

#endif  // OV_SQL_EXECUTOR_VALUES_TT_STRING_HPP_
