#include "ovsql/errors/source_line.hpp"

#include <gtest/gtest.h>

namespace tests {
namespace {

using ovsql::point_at;

TEST(SourceLine, is_shown_with_a_caret) {
  EXPECT_EQ(point_at("SELECT citty FROM airport", 7),
            "line 1, column 8: SELECT citty FROM airport\n"
            "                         ^");
  EXPECT_EQ(point_at("SELECT\n\t'\u00E9\u00E9', b\r\nFROM c", 16),
            "line 2, column 8:  '\u00E9\u00E9', b \n"
            "                         ^");
  EXPECT_EQ(point_at("a\n", 99),
            "line 2, column 1: \n"
            "                  ^");
}

TEST(SourceLine, is_cut_around_the_caret) {
  const std::string shown = point_at(std::string(100, 'a') + "!" + std::string(100, 'b'), 100);
  EXPECT_EQ(shown, "line 1, column 101: ..." + std::string(60, 'a') + "!" + std::string(39, 'b') + "...\n" +
                       std::string(83, ' ') + "^");
}

}  // namespace
}  // namespace tests
