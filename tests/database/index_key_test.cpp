#include "ov_sql_executor/database/index_key.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>
#include <numeric>
#include <utility>

#include "outcome.hpp"

namespace tests {
namespace {

using namespace db_util;  // NOLINT: both kinds of key, and what they are made of

byte_list payload(std::size_t size) {
  byte_list bytes(size);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  return bytes;
}

// Reads "3F p31 09 p9 80", with bytes from 0 on: a hexadecimal byte each, or the next so many of the payload.
byte_list bytes_of(const std::string& words) {
  byte_list bytes;
  std::uint8_t next = 0;
  for (const std::string& word : split(words)) {
    const bool is_payload = word[0] == 'p';
    if (!is_payload) bytes.push_back(static_cast<std::uint8_t>(std::stoul(word, nullptr, 16)));
    for (std::size_t left = is_payload ? std::stoul(word.substr(1)) : 0; left != 0; --left) bytes.push_back(next++);
  }
  return bytes;
}

// Builds the key in memory that was used before, so that a byte that is not written is not zero by chance.
template <class Key>
Key key_of(const std::vector<key_bound>& bounds) {
  alignas(Key) std::byte used[sizeof(Key)];
  std::ranges::fill(used, std::byte{0xEE});
  asm volatile("" : : "r"(used) : "memory");  // or the bytes would count as lost when the key begins to live there
  Key& key = *new (used) Key;
  for (const key_bound& bound : bounds) key.append(bound);
  key.terminate();
  Key made = std::move(key);
  key.~Key();
  return made;
}

// Expects both kinds of key, with the end mark and zeros up to eight bytes.
void expect_key(const std::vector<key_bound>& bounds, const std::string& words) {
  byte_list expected = bytes_of(words + " C0");
  while (expected.size() % 8 != 0) expected.push_back(0);
  const auto growing = key_of<growing_key>(bounds);
  EXPECT_EQ(std::vector(growing.bytes().begin(), growing.bytes().end()), expected) << words;
  const auto fixed = key_of<fixed_key>(bounds);
  EXPECT_EQ(std::vector(fixed.data(), fixed.data() + expected.size()), expected) << words;
}

TEST(IndexKey, writes_numbers_big_endian_and_the_end_up_to_eight_bytes) {
  constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
  constexpr auto highest = std::numeric_limits<std::int64_t>::max();
  expect_key({}, "");
  expect_key({lowest_marker{}}, "60");
  expect_key({true}, "28 0 0 0 0 0 0 0 1");
  expect_key({false}, "28 0 0 0 0 0 0 0 0");
  expect_key({std::uint64_t{0x0102030405060708}}, "28 1 2 3 4 5 6 7 8");
  expect_key({key_object{~std::uint64_t{0}}}, "28 FF FF FF FF FF FF FF FF");
  expect_key({std::int64_t{1}}, "28 80 0 0 0 0 0 0 1");
  expect_key({std::int64_t{-1}}, "28 7F FF FF FF FF FF FF FF");
  expect_key({lowest}, "28 0 0 0 0 0 0 0 0");
  expect_key({highest}, "28 FF FF FF FF FF FF FF FF");
  // 1.5 is 1 << 21 | 50 << 14; the largest Decimal is all ones but for what hundredths and the rest leave over.
  expect_key({Decimal{1'500'000}}, "28 80 0 0 0 0 2C 80 0");
  expect_key({Decimal{-1'500'000}}, "28 7F FF FF FF FF D3 80 0");
  expect_key({Decimal{1}}, "28 80 0 0 0 0 0 0 1");
  expect_key({Decimal{Decimal::max_raw}}, "28 FF FF FF FF FF F8 E7 0F");
  // Seven and eight bytes of components.
  expect_key(std::vector<key_bound>(7, lowest_marker{}), "60 60 60 60 60 60 60");
  expect_key(std::vector<key_bound>(8, lowest_marker{}), "60 60 60 60 60 60 60 60");
}

TEST(IndexKey, writes_texts_and_binaries_in_chunks) {
  const byte_list bytes = payload(63);
  const char* const texts[] = {"20 80",          "21 p1 80",       "3E p30 80",        "3F p31 80",
                               "3F p31 1 p1 80", "3F p31 9 p9 80", "3F p31 1F p31 80", "3F p31 1F p31 1 p1 80"};
  const char* const binaries[] = {"21 0 80",          "22 0 p1 80",         "3F 0 p30 80",
                                  "3F 0 p30 1 p1 80", "3F 0 p30 1F p31 80", "3F 0 p30 1F p31 1 p1 80"};
  // The words tell how much of the payload there is.
  const auto part_of = [&bytes](const std::string& words) {
    std::size_t size = 0;
    for (const std::string& word : split(words)) size += word[0] == 'p' ? std::stoul(word.substr(1)) : 0;
    return std::span(bytes).first(size);
  };
  for (const char* words : texts) expect_key({key_text{part_of(words)}}, words);
  for (const char* words : binaries) expect_key({key_binary{part_of(words)}}, words);
  expect_key({key_binary{{}, true}}, "21 1 80");
}

TEST(IndexKey, a_fixed_key_takes_1024_bytes_and_not_one_more) {
  const std::vector<key_bound> numbers(113, std::uint64_t{1});  // 1017 bytes
  const auto with = [&](std::vector<key_bound> more) {
    more.insert(more.begin(), numbers.begin(), numbers.end());
    return outcome([&] { return u(key_of<fixed_key>(more).data() == nullptr ? 1 : 0); });
  };
  const byte_list bytes = payload(4);
  EXPECT_EQ(with({}), "u0");
  EXPECT_EQ(with({lowest_marker{}}), "u0");
  EXPECT_EQ(with({key_text{std::span(bytes).first(4)}}), "u0") << "one byte is left for the end";
  EXPECT_EQ(with(std::vector<key_bound>(7, lowest_marker{})), "4197") << "none is left for the end";
  EXPECT_EQ(with(std::vector<key_bound>(8, lowest_marker{})), "4197");
  EXPECT_EQ(with({std::uint64_t{1}}), "4197");
  const byte_list long_text = payload(1000);
  EXPECT_EQ(outcome([&] { return u(key_of<fixed_key>({key_text{long_text}}).data()[0]); }), "4197");
  EXPECT_EQ(key_of<growing_key>({key_text{long_text}}).bytes().size(), 1040U);
}

}  // namespace
}  // namespace tests
