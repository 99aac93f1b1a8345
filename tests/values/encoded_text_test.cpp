#include "ov_sql_executor/values/encoded_text.hpp"

#include <gtest/gtest.h>

#include <bitset>
#include <boost/multiprecision/cpp_int.hpp>
#include <random>

#include "outcome.hpp"

namespace tests {
namespace {

text_view view(const byte_list& encoded) { return {encoded}; }

// Reads an encoded text by its definition, a bit at a time.
struct bit_model {
  std::string payload;     // all bits after the header, unused ones included
  std::size_t length = 0;  // how many of them are the text

  explicit bit_model(const byte_list& encoded) {
    boost::multiprecision::cpp_int unused = 0;
    auto next = encoded.begin();
    for (bool ended = false; !ended; ++next) {
      if (next == encoded.end()) return;
      unused = unused * 128 + (*next & 0x7F);
      ended = *next >= 0x80;
    }
    for (; next != encoded.end(); ++next) payload += std::bitset<8>(*next).to_string();
    if (unused < payload.size()) length = payload.size() - static_cast<std::size_t>(unused);
  }

  // Compares whole bytes of the common length, with what stands after its last bit.
  std::strong_ordering order(const bit_model& other) const {
    const std::size_t common = (std::min(length, other.length) + 7) / 8 * 8;
    const std::strong_ordering by_bytes = payload.substr(0, common) <=> other.payload.substr(0, common);
    return by_bytes != 0 ? by_bytes : length <=> other.length;
  }

  bool starts_with(const bit_model& prefix) const {
    return prefix.length <= length && payload.substr(0, prefix.length) == prefix.payload.substr(0, prefix.length);
  }
};

// Makes texts of few different bytes, which often agree in their beginnings.
byte_list random_text(std::mt19937_64& random) {
  // The last but one says more than 64 bits.
  static const row headers = vals(
      "bytes'80' bytes'81' bytes'83' bytes'87' bytes'90' bytes'0084' bytes'0181' bytes'00018c' "
      "bytes'7f7f7f7f7f7f7f7f7f7f7fff' bytes''");
  const auto& header = std::get<db_string::tt_string>(headers[random() % headers.size()]);
  byte_list text(header.data(), header.data() + header.size());
  const int mask = text.empty() ? 0x7F : 0xFF;  // without a header, bytes below 0x80 never end one
  for (std::size_t left = random() % (random() % 4 == 0 ? 20 : 5); left != 0; --left) {
    text.push_back(static_cast<std::uint8_t>("\x00\x80\xC0\xFF"[random() % 4] & mask));
  }
  return text;
}

TEST(EncodedText, orders_and_begins_as_its_bits_do) {
  const std::uint64_t seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  int prefixes = 0;
  for (int round = 0; round < 50'000; ++round) {
    const byte_list left = random_text(random);
    const byte_list right = random_text(random);
    const bit_model model(left);
    const bit_model other(right);
    SCOPED_TRACE(testing::PrintToString(left) + " against " + testing::PrintToString(right));
    ASSERT_EQ(bit_count(view(left)).bits, model.length);
    ASSERT_EQ(bit_count(view(left)).payload.size(), (model.length + 7) / 8);
    ASSERT_TRUE(compare_texts(view(left), view(right)) == model.order(other));
    ASSERT_EQ(text_starts_with(view(left), view(right)), model.starts_with(other));
    prefixes += model.starts_with(other) && other.length != 0 ? 1 : 0;
  }
  EXPECT_GT(prefixes, 100) << "the texts are too different to test anything";
}

}  // namespace
}  // namespace tests
