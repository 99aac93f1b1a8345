// Encoded text keeps order, beginnings and every unit, and marks the end of all texts that begin alike.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "ovcoredb/database.hpp"

namespace {

using bytes = std::vector<std::uint8_t>;
using testing::ElementsAre;

bytes encode(const std::u16string& text, std::uint8_t upper_limit = 0) {
  bytes encoded(orv_convert_ucs2_to_turbotext(text.c_str(), upper_limit, nullptr, 0));
  EXPECT_EQ(orv_convert_ucs2_to_turbotext(text.c_str(), upper_limit, encoded.data(),
                                          static_cast<std::uint32_t>(encoded.size())),
            encoded.size());
  return encoded;
}

template <class Convert>
std::u16string decode(Convert convert, const bytes& encoded) {
  const auto length = static_cast<std::uint32_t>(encoded.size());
  const auto count = static_cast<std::uint32_t>(-convert(encoded.data(), length, nullptr, 0));
  std::u16string units(count + 1, u'#');
  EXPECT_EQ(convert(encoded.data(), length, units.data(), count + 1), static_cast<std::int32_t>(count));
  EXPECT_EQ(units.back(), u'\0');
  units.pop_back();
  return units;
}

std::u16string base_form(const std::u16string& text) {
  return decode(orv_convert_turbotext_to_base_ucs2, encode(text));
}

// Spells the bits of the text, one per character.
std::string bits(const bytes& encoded) {
  std::string all;
  for (std::size_t i = 1; i < encoded.size(); ++i) {
    for (int bit = 7; bit >= 0; --bit) all.push_back((encoded[i] >> bit & 1) != 0 ? '1' : '0');
  }
  return all.substr(0, all.size() - (encoded[0] & 0x7F));
}

std::u16string random_text(std::mt19937& random) {
  static constexpr char16_t units[] = {1,     0x1F,  0x20,   0x3F,   0x40,   0x5F,   0x60,   0x7F,   0x80,
                                       0x87F, 0x880, 0x20AC, 0xD7FF, 0xD800, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
  // Makes short texts that are often alike, and long ones of long runs of ASCII.
  const bool is_long = random() % 4 == 0;
  std::u16string text(random() % (is_long ? random() % 16 == 0 ? 400 : 70 : 6), u'\0');
  for (char16_t& unit : text) {
    unit = is_long && random() % 32 != 0 ? static_cast<char16_t>(0x20 + random() % 0x60)
                                         : units[random() % std::size(units)];
  }
  return text;
}

TEST(text, bytes_are_those_of_the_code) {
  EXPECT_THAT(encode(u""), ElementsAre(0x80));
  EXPECT_THAT(encode(u"a"), ElementsAre(0x81, 0b10000100));
  EXPECT_THAT(encode(u"A "), ElementsAre(0x82, 0b01000100, 0b00000100));
  EXPECT_THAT(encode(u"\x1F"), ElementsAre(0x84, 0b00000001, 0b11110000));
  EXPECT_THAT(encode(u"\u0080"), ElementsAre(0x82, 0b11000010, 0));
  EXPECT_THAT(encode(u"\u0880"), ElementsAre(0x84, 0b11100010, 0, 0));
  EXPECT_THAT(encode(u"a", 1), ElementsAre(0x81, 0x85, 0xFF, 0xFF, 0xFE));
}

// What a context lends is the same as what is converted without one.
TEST(text, order_and_beginnings_survive) {
  const ovcoredb::database database;
  const ovcoredb::context context(database);
  const std::uint8_t* block = nullptr;
  const auto lends = [&](std::uint32_t status, const auto& expected) {
    const std::size_t size = expected.size() * sizeof expected[0];
    const auto count = static_cast<std::uint32_t>(expected.size());
    return status == ORV_OK && std::memcmp(block, &count, 4) == 0 && std::memcmp(block + 4, expected.data(), size) == 0;
  };
  const unsigned seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (int i = 0; i < 20000; ++i) {
    const std::u16string a = random_text(random);
    const std::u16string b = random_text(random);
    const std::string bits_a = bits(encode(a));
    const std::string bits_b = bits(encode(b));
    const bytes encoded = encode(a);
    const auto length = static_cast<std::uint32_t>(encoded.size());
    ASSERT_EQ(decode(orv_convert_turbotext_to_ucs2, encoded), a);
    ASSERT_TRUE(lends(orv_context_convert_turbotext_to_ucs2(context.handle(), encoded.data(), length, &block, 0), a));
    ASSERT_TRUE(lends(orv_context_convert_turbotext_to_base_ucs2(context.handle(), encoded.data(), length, &block, 0),
                      base_form(a)));
    ASSERT_TRUE(lends(orv_context_convert_ucs2_to_turbotext(context.handle(), a.c_str(), 0, &block), encoded));
    ASSERT_TRUE(lends(orv_context_convert_ucs2_to_setspectt(context.handle(), a.c_str(), 1, &block), encode(a, 1)));
    ASSERT_EQ(a < b, bits_a < bits_b);
    ASSERT_EQ(a == b, encode(a) == encode(b));
    ASSERT_EQ(b.starts_with(a), bits_b.starts_with(bits_a));
    ASSERT_EQ(b < a || b.starts_with(a), bits_b < bits(encode(a, 1)));
  }
}

TEST(text, base_form_folds_case) {
  std::u16string ascii;
  for (char16_t unit = 1; unit < 0x80; ++unit) ascii += unit;
  std::u16string folded = ascii;
  for (char16_t& unit : folded) unit = static_cast<char16_t>(unit >= u'A' && unit <= u'Z' ? unit + 0x20 : unit);
  EXPECT_EQ(base_form(ascii), folded);
  EXPECT_EQ(base_form(u"Shop.ORDER_9"), u"shop.order_9");
  EXPECT_EQ(base_form(u"Straße"), base_form(u"STRASSE"));
  EXPECT_EQ(base_form(u"ΣΊΣΥΦΟΣ"), base_form(u"σίσυφος"));
  EXPECT_EQ(base_form(u"\U00010400"), u"\U00010428");
  EXPECT_EQ(base_form(u"\xD800Ä\xDC00"), u"\xD800ä\xDC00");
  EXPECT_EQ(base_form(u""), u"");
}

TEST(text, what_is_not_encoded_text_is_refused) {
  const ovcoredb::database database;
  const ovcoredb::context context(database);
  const std::uint8_t* block = nullptr;
  const auto status = [&](const bytes& encoded) {
    return orv_context_convert_turbotext_to_ucs2(context.handle(), encoded.data(),
                                                 static_cast<std::uint32_t>(encoded.size()), &block, 0);
  };
  const bytes bad[] = {{0x80, 0xFF, 0xFF, 0xFF}, {0x80, 0x83}, {0x80, 0xC0}, {0x84, 0xE0, 0x00, 0x10}, {0x80, 0xE0}};
  for (const bytes& each : bad) {
    EXPECT_EQ(status(each), ORV_BAD_TEXT) << testing::PrintToString(each);
    EXPECT_EQ(orv_convert_turbotext_to_ucs2(each.data(), static_cast<std::uint32_t>(each.size()), nullptr, 0), 0);
  }
  // No complete header, more unused bits than there are, a header of several bytes.
  const bytes empty[] = {{}, {0x01, 0x02}, {0x85}, {0xFF, 0x82}, bytes(20, 0x7F)};
  for (const bytes& each : empty) {
    EXPECT_EQ(status(each), ORV_OK);
    EXPECT_THAT(bytes(block, block + 4), ElementsAre(0, 0, 0, 0));
  }
  EXPECT_EQ(decode(orv_convert_turbotext_to_ucs2, {0x00, 0x81, 0x84}), u"a");
}

TEST(text, capacity_is_respected) {
  for (const std::u16string text : {u"", u"abc", u"abcdé", u"abcdefghijklmnopqrstuvwxyz 0123456789", u"€€€€€€€€€"}) {
    const bytes encoded = encode(text);
    for (std::size_t capacity = 0; capacity <= text.size() + 2; ++capacity) {
      std::u16string units(text.size() + 3, u'#');
      const bool fits = capacity > text.size();
      const auto count = static_cast<std::int32_t>(text.size());
      EXPECT_EQ(orv_convert_turbotext_to_ucs2(encoded.data(), static_cast<std::uint32_t>(encoded.size()), units.data(),
                                              static_cast<std::uint32_t>(capacity)),
                fits ? count : -count);
      EXPECT_TRUE(!fits || units.starts_with(text + u'\0')) << capacity;
      EXPECT_EQ(units.find_first_not_of(u'#', fits ? text.size() + 1 : capacity), std::u16string::npos) << capacity;
    }
  }
  std::uint8_t small[3] = {9, 9, 9};
  EXPECT_EQ(orv_convert_ucs2_to_turbotext(u"abc", 0, small, 3), encode(u"abc").size());
  EXPECT_THAT(small, ElementsAre(9, 9, 9));
}

}  // namespace
