#include "ovsql/import/plain_names.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

namespace ovsql {
namespace {

TEST(PlainNames, NeedNoQuotes) {
  const std::pair<const char*, const char*> cases[] = {{"name", "name"},
                                                       {"Net price (EUR)", "Net_price_EUR"},
                                                       {" a  -  b ", "a_b"},
                                                       {"_id_", "_id_"},
                                                       {"2024 flights", "_2024_flights"},
                                                       {"a$b", "a_b"},
                                                       {"a\"b'c", "a_b_c"},
                                                       {"Größe", "Größe"},
                                                       {"Order", "Order_"},
                                                       {"values", "values"},
                                                       {"?!", ""},
                                                       {"", ""}};
  for (const auto& [text, name] : cases) EXPECT_EQ(plain_name(text), name) << text;
}

TEST(PlainNames, OfColumnsDiffer) {
  using testing::ElementsAre;
  EXPECT_THAT(plain_column_names({"a", "A", "", "a 2", "a", "%"}),
              ElementsAre("a", "A_2", "column3", "a_2_2", "a_3", "column6"));
  EXPECT_THAT(plain_column_names({"", "column1"}), ElementsAre("column1", "column1_2"));
}

}  // namespace
}  // namespace ovsql
