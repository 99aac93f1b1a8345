// Writes index keys for the tests, from the description at orv_context_create_iterator and not with the engine's code.
#ifndef OVCOREDB_KEY_WRITER_HPP_
#define OVCOREDB_KEY_WRITER_HPP_

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "ovcoredb/ovcoredb.h"

class key_writer {
 public:
  key_writer& lowest() { return raw({0x60}); }

  key_writer& number(std::uint64_t word) {
    bytes_.push_back(0x28);
    for (int shift = 56; shift >= 0; shift -= 8) bytes_.push_back(static_cast<std::uint8_t>(word >> shift));
    return *this;
  }
  // Writes a text that fits one chunk.
  key_writer& text(const std::u16string& units) {
    std::vector<std::uint8_t> encoded(orv_convert_ucs2_to_turbotext(units.c_str(), 0, nullptr, 0));
    orv_convert_ucs2_to_turbotext(units.c_str(), 0, encoded.data(), static_cast<std::uint32_t>(encoded.size()));
    encoded[0] = static_cast<std::uint8_t>(0x20 | (encoded.size() - 1));  // instead of the text's own header
    return raw(encoded).raw({0x80});
  }
  key_writer& raw(const std::vector<std::uint8_t>& bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
  }

  // Ends with the terminator and no padding, so that a sanitizer sees a core that reads further.
  std::vector<std::uint8_t> end() { return raw({0xC0}).bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
};

// Returns the objects of a range. Returns none where the core refuses it, and writes its status to `status`.
inline std::vector<std::uint64_t> walk(std::uint64_t context, std::uint64_t index, std::uint32_t flags,
                                       const std::vector<std::uint8_t>& first, const std::vector<std::uint8_t>& last,
                                       std::uint32_t* status = nullptr) {
  std::uint64_t iterator = 0;
  const std::uint32_t opened = orv_context_create_iterator(context, index, flags, first.data(), last.data(), &iterator);
  if (status != nullptr) *status = opened;
  std::vector<std::uint64_t> found;
  if (opened != ORV_OK) return found;
  ORV_REFERENCE_VALUE reference{};
  const auto is_next = [&] {
    return orv_iterator_next(iterator, &reference) == ORV_OK && reference.object_number != 0;
  };
  while (is_next()) found.push_back(reference.object_number);
  if (is_next()) found.push_back(0);  // the end should stay the end
  orv_iterator_free(iterator);
  return found;
}

inline constexpr std::uint32_t inclusive = ORV_ITERATOR_FIRST_INCLUSIVE | ORV_ITERATOR_LAST_INCLUSIVE;

#endif  // OVCOREDB_KEY_WRITER_HPP_
