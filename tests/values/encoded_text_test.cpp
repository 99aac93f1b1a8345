#include "ov_sql_executor/values/encoded_text.hpp"

#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <random>
#include <string>
#include <vector>

#include "outcome.hpp"

namespace tests {
namespace {

using bytes = std::vector<std::uint8_t>;

text_view view(const bytes& encoded) { return {encoded}; }

// Reads an encoded text by its definition, a bit at a time.
struct bit_model {
  std::vector<bool> payload;  // all bits behind the header, unused ones included
  std::size_t length = 0;     // how many of them are the text

  explicit bit_model(const bytes& encoded) {
    boost::multiprecision::cpp_int unused = 0;
    std::size_t position = 0;
    bool ended = false;
    while (!ended && position < encoded.size()) {
      const std::uint8_t byte = encoded[position++];
      unused = unused * 128 + (byte & 0x7F);
      ended = byte >= 0x80;
    }
    if (!ended) return;
    for (; position < encoded.size(); ++position) {
      for (int bit = 7; bit >= 0; --bit) payload.push_back((encoded[position] >> bit & 1) != 0);
    }
    if (unused < payload.size()) length = payload.size() - static_cast<std::size_t>(unused);
  }

  // Whole bytes of the common length are compared, with what stands behind the last bit of it.
  std::strong_ordering order(const bit_model& other) const {
    const std::size_t common = (std::min(length, other.length) + 7) / 8 * 8;
    for (std::size_t i = 0; i < common; ++i) {
      if (payload[i] != other.payload[i]) return payload[i] <=> other.payload[i];
    }
    return length <=> other.length;
  }

  bool starts_with(const bit_model& prefix) const {
    if (prefix.length > length) return false;
    for (std::size_t i = 0; i < prefix.length; ++i) {
      if (payload[i] != prefix.payload[i]) return false;
    }
    return true;
  }
};

// Few different bytes, so that texts often agree in their beginnings.
bytes random_text(std::mt19937_64& random) {
  constexpr std::uint8_t payload[] = {0x00, 0x80, 0xC0, 0xFF};
  constexpr std::uint8_t headers[][3] = {{0x80}, {0x81},       {0x83},       {0x87},
                                         {0x90}, {0x00, 0x84}, {0x01, 0x81}, {0x00, 0x01, 0x8C}};
  constexpr std::size_t sizes[] = {1, 1, 1, 1, 1, 2, 2, 3};
  bytes text;
  const std::size_t kind = random() % 10;
  if (kind < std::size(sizes)) text.assign(headers[kind], headers[kind] + sizes[kind]);
  if (kind == 8) text = {0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0xFF};  // beyond 64 bits
  for (std::size_t left = random() % 5; left != 0; --left) {
    // Without a header, bytes below 0x80 never end one.
    text.push_back(kind == 9 ? payload[random() % 4] & 0x7F : payload[random() % 4]);
  }
  return text;
}

TEST(EncodedText, orders_and_begins_as_its_bits_do) {
  const std::uint64_t seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  int prefixes = 0;
  for (int round = 0; round < 50'000; ++round) {
    const bytes left = random_text(random);
    const bytes right = random_text(random);
    const bit_model model(left);
    const bit_model other(right);
    ASSERT_EQ(bit_count(view(left)).bits, model.length) << testing::PrintToString(left);
    ASSERT_EQ(bit_count(view(left)).payload.size(), (model.length + 7) / 8) << testing::PrintToString(left);
    ASSERT_TRUE(compare_texts(view(left), view(right)) == model.order(other))
        << testing::PrintToString(left) << " against " << testing::PrintToString(right);
    ASSERT_EQ(text_starts_with(view(left), view(right)), model.starts_with(other))
        << testing::PrintToString(left) << " against " << testing::PrintToString(right);
    prefixes += model.starts_with(other) && other.length != 0 ? 1 : 0;
  }
  EXPECT_GT(prefixes, 100) << "the texts are too different to test anything";
}

TEST(EncodedText, counts_bits) {
  const struct {
    bytes encoded;
    std::uint64_t bits;
  } cases[] = {
      {{}, 0},                  // the empty text
      {{0x80}, 0},              // an empty payload
      {{0x84, 1, 2, 3}, 20},    //
      {{0x05, 0x06, 0x07}, 0},  // no end of the header
      {{0x89, 0xFF}, 0},        // more unused bits than there are
      {{0x80, 0xFF}, 8},        //
      {{0x01, 0x83, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 17 * 8 - 131},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(bit_count(view(each.encoded)).bits, each.bits) << testing::PrintToString(each.encoded);
  }
}

}  // namespace
}  // namespace tests
