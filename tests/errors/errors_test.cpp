#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "ov_sql_executor/errors/raise.hpp"
#include "ov_sql_executor/errors/utf8.hpp"

namespace error_handling {
namespace {

TEST(Utf8, is_made_of_every_valid_text) {
  const std::pair<std::wstring, std::string> cases[] = {
      {L"", ""},
      {L"a\x7F", "a\x7F"},
      {{0x80, 0x7FF}, "\xC2\x80\xDF\xBF"},
      {{0x800, 0xFFFF, 0xFEFF}, "\xE0\xA0\x80\xEF\xBF\xBF\xEF\xBB\xBF"},
      {{0xD7FF, 0xE000}, "\xED\x9F\xBF\xEE\x80\x80"},
      {{0xD800, 0xDC00, 0xDBFF, 0xDFFF}, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {{L'a', 0, L'b'}, std::string("a\0b", 3)},
  };
  for (const auto& [units, bytes] : cases) EXPECT_EQ(ucs2_to_utf8(units), bytes);
}

TEST(Utf8, is_not_made_of_half_a_surrogate_pair) {
  for (const std::wstring& units :
       {std::wstring{0xD800}, std::wstring{L'a', 0xDBFF}, std::wstring{0xD800, L'a'}, std::wstring{0xD800, 0xD800},
        std::wstring{0xDC00}, std::wstring{0xDFFF, 0xD800}, std::wstring{static_cast<wchar_t>(0x10000)},
        std::wstring{static_cast<wchar_t>(-1)}}) {
    EXPECT_THAT([&] { ucs2_to_utf8(units); }, testing::ThrowsMessage<std::range_error>("bad conversion"));
  }
}

TEST(OVException, carries_code_message_and_detail_through_copies) {
  try {
    raise_not_implemented(no_detail, L"kein Pl\u00E4n");
    FAIL();
  } catch (const std::exception& error) {
    const OVException copy = dynamic_cast<const OVException&>(error);
    EXPECT_EQ(copy.code, 7022U);
    EXPECT_EQ(copy.message, L"kein Pl\u00E4n");
    EXPECT_STREQ(copy.what(), "kein Pl\xC3\xA4n");
    for (const std::uint32_t word : copy.detail) EXPECT_EQ(word, 0xFFFFFFFF);
  }
  EXPECT_THROW(raise_error(1, no_detail, std::wstring{0xD800}), std::range_error);
}

}  // namespace
}  // namespace error_handling
