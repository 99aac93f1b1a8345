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

// The bits of the text, one per character.
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
  // Short ones that are often alike, and long ones of long runs of ASCII.
  const bool is_long = random() % 4 == 0;
  std::u16string text(random() % (is_long ? 70 : 6), u'\0');
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

TEST(text, order_and_beginnings_survive) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (int i = 0; i < 20000; ++i) {
    const std::u16string a = random_text(random);
    const std::u16string b = random_text(random);
    const std::string bits_a = bits(encode(a));
    const std::string bits_b = bits(encode(b));
    ASSERT_EQ(decode(orv_convert_turbotext_to_ucs2, encode(a)), a);
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

TEST(text, context_lends_the_same_as_the_calls_without_one) {
  const ovcoredb::database database;
  const ovcoredb::context context(database);
  const std::uint8_t* block = nullptr;
  const auto lent = [&](std::uint32_t status, std::size_t size) {
    EXPECT_EQ(status, ORV_OK);
    std::uint32_t count = 0;
    std::memcpy(&count, block, sizeof count);
    return bytes(block + 4, block + 4 + count * size);
  };
  const auto bytes_of = [](const std::u16string& units) {
    const auto* first = reinterpret_cast<const std::uint8_t*>(units.data());
    return bytes(first, first + units.size() * 2);
  };
  std::vector<std::u16string> texts = {u"Zürich", std::u16string(300, u'\xD800')};
  for (std::size_t length = 0; length <= 40; ++length) texts.emplace_back(length, static_cast<char16_t>(u'A' + length));
  for (const std::u16string& text : texts) {
    const bytes encoded = encode(text);
    const auto length = static_cast<std::uint32_t>(encoded.size());
    for (const bool limit : {false, true}) {
      for (const auto convert : {orv_context_convert_ucs2_to_turbotext, orv_context_convert_ucs2_to_setspectt}) {
        EXPECT_EQ(lent(convert(context.handle(), text.c_str(), limit, &block), 1), encode(text, limit));
      }
    }
    EXPECT_EQ(lent(orv_context_convert_turbotext_to_ucs2(context.handle(), encoded.data(), length, &block, 0), 2),
              bytes_of(text));
    EXPECT_EQ(lent(orv_context_convert_turbotext_to_base_ucs2(context.handle(), encoded.data(), length, &block, 0), 2),
              bytes_of(base_form(text)));
  }
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
  for (const char16_t* const text : {u"", u"abc", u"abcdé", u"abcdefghijklmnopqrstuvwxyz 0123456789", u"€€€€€€€€€"}) {
    const bytes encoded = encode(text);
    const auto count = static_cast<std::int32_t>(std::u16string(text).size());
    for (std::int32_t capacity = 0; capacity <= count + 2; ++capacity) {
      std::u16string units(static_cast<std::size_t>(count) + 3, u'#');
      const bool fits = capacity > count;
      EXPECT_EQ(orv_convert_turbotext_to_ucs2(encoded.data(), static_cast<std::uint32_t>(encoded.size()), units.data(),
                                              static_cast<std::uint32_t>(capacity)),
                fits ? count : -count);
      if (fits) {
        EXPECT_EQ(std::u16string(units.c_str()), text) << capacity;
      }
      EXPECT_EQ(units.substr(static_cast<std::size_t>(fits ? count + 1 : capacity)).find_first_not_of(u'#'),
                std::u16string::npos)
          << capacity;
    }
  }
  std::uint8_t small[3] = {9, 9, 9};
  EXPECT_EQ(orv_convert_ucs2_to_turbotext(u"abc", 0, small, 3), encode(u"abc").size());
  EXPECT_THAT(small, ElementsAre(9, 9, 9));
}

}  // namespace
