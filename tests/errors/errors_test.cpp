#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "ov_sql_executor/errors/destroyed_in_turn.hpp"
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

struct thing {
  virtual ~thing() = default;
};

struct branch final : destroyed_in_turn<thing> {
  branch(std::string& log, char own_name, std::vector<std::unique_ptr<thing>> list) : gone(log), name(own_name) {
    for (auto& each : list) parts.emplace_back(std::move(each));
  }
  ~branch() override {
    gone += name;
    while (!parts.empty()) parts.erase(parts.begin());
  }
  std::string& gone;
  char name;
  std::vector<owned_part<thing, branch>> parts;
};

template <class... Parts>
std::unique_ptr<thing> make(std::string& gone, char name, Parts... parts) {
  std::vector<std::unique_ptr<thing>> list;
  (list.push_back(std::move(parts)), ...);
  return std::make_unique<branch>(gone, name, std::move(list));
}

struct foreign final : thing {
  explicit foreign(std::string& log) : gone(log) {}
  ~foreign() override { gone += 'x'; }
  std::string& gone;
};

// As if each destroyed its own parts, but after its own members; what is not of the family goes at once.
TEST(DestroyedInTurn, parts_go_before_those_that_wait_and_in_order) {
  std::string gone;
  {
    const owned_part<thing, branch> root(make(gone, 'a',
                                              make(gone, 'b', make(gone, 'c', make(gone, 'd')), make(gone, 'e')),
                                              std::make_unique<foreign>(gone), make(gone, 'f', make(gone, 'g'))));
    EXPECT_EQ(root.own(), &*root);
  }
  EXPECT_EQ(gone, "axbcdefg");
}

}  // namespace
}  // namespace error_handling
