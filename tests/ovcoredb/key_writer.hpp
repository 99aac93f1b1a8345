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
  key_writer& int64(std::int64_t value) { return number(static_cast<std::uint64_t>(value) + (std::uint64_t{1} << 63)); }
  key_writer& decimal(std::int64_t millionths) {
    const std::int64_t a = millionths < 0 ? -millionths : millionths;
    const std::int64_t packed = a / 1000000 * (1 << 21) + a % 1000000 / 10000 * (1 << 14) + a % 10000;
    return int64(millionths < 0 ? -packed : packed);
  }

  key_writer& text(const std::u16string& units, bool upper_limit = false) {
    std::vector<std::uint8_t> encoded(orv_convert_ucs2_to_turbotext(units.c_str(), upper_limit, nullptr, 0));
    orv_convert_ucs2_to_turbotext(units.c_str(), upper_limit, encoded.data(),
                                  static_cast<std::uint32_t>(encoded.size()));
    return chunks({encoded.begin() + 1, encoded.end()}, {});
  }
  key_writer& binary(const std::vector<std::uint8_t>& data) { return chunks(data, {0x00}); }
  key_writer& highest_binary() { return raw({0x21, 0x01, 0x80}); }

  key_writer& raw(const std::vector<std::uint8_t>& bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
  }

  // Ends with the terminator itself, so that a sanitizer sees a core that reads further.
  std::vector<std::uint8_t> end() const {
    std::vector<std::uint8_t> ended = bytes_;
    ended.push_back(0xC0);
    return ended;
  }

 private:
  // `front` counts for the first chunk's length.
  key_writer& chunks(const std::vector<std::uint8_t>& data, const std::vector<std::uint8_t>& front) {
    std::vector<std::uint8_t> all = front;
    all.insert(all.end(), data.begin(), data.end());
    std::size_t done = 0;
    do {
      const std::size_t length = std::min<std::size_t>(all.size() - done, 31);
      bytes_.push_back(static_cast<std::uint8_t>((done == 0 ? 0x20 : 0) | length));
      bytes_.insert(bytes_.end(), all.begin() + static_cast<std::ptrdiff_t>(done),
                    all.begin() + static_cast<std::ptrdiff_t>(done + length));
      done += length;
    } while (done < all.size());
    bytes_.push_back(0x80);
    return *this;
  }

  std::vector<std::uint8_t> bytes_;
};

// The objects of a range, or nothing but the status in `status` if the core refuses it.
inline std::vector<std::uint64_t> walk(std::uint64_t context, std::uint64_t index, std::uint32_t flags,
                                       const std::vector<std::uint8_t>& first, const std::vector<std::uint8_t>& last,
                                       std::uint32_t* status = nullptr) {
  std::uint64_t iterator = 0;
  const std::uint32_t opened = orv_context_create_iterator(context, index, flags, first.data(), last.data(), &iterator);
  if (status != nullptr) *status = opened;
  std::vector<std::uint64_t> found;
  if (opened != ORV_OK) return found;
  ORV_REFERENCE_VALUE reference{};
  while (orv_iterator_next(iterator, &reference) == ORV_OK && reference.object_number != 0) {
    found.push_back(reference.object_number);
  }
  orv_iterator_free(iterator);
  return found;
}

inline constexpr std::uint32_t inclusive = ORV_ITERATOR_FIRST_INCLUSIVE | ORV_ITERATOR_LAST_INCLUSIVE;

#endif  // OVCOREDB_KEY_WRITER_HPP_
