#include "ov_sql_executor/execution/aggregator.hpp"

#include <cmath>
#include <limits>
#include <stdexcept>

#include "nodes/given_rows.hpp"

namespace tests {
namespace {

using operators::operand;
namespace kinds = ov::sql_executor::aggregates;

template <class Kind>
std::vector<aggregate_entry> only() {
  std::vector<aggregate_entry> list;
  list.push_back(Kind{operand(column(0))});
  return list;
}

// The one aggregate over one column of these values, as text.
template <class Kind>
std::string over(const row& values) {
  rows input;
  for (const value& each : values) input.push_back({each});
  return show(run(aggregator(given(input), {}, only<Kind>())));
}

template <class Kind>
std::uint32_t error_over(const row& values) {
  return db_error([&] { over<Kind>(values); });
}

value text(const char* bytes) { return db_string::tt_string(bytes, 2); }

TEST(Aggregates, of_one_column) {
  EXPECT_EQ(over<kinds::sum>({}), "(NULL)");
  EXPECT_EQ(over<kinds::sum>({null(), null()}), "(NULL)");
  EXPECT_EQ(over<kinds::sum>({i(1), null(), i(3)}), "(4)");
  EXPECT_EQ(over<kinds::sum>({u(1), u(3)}), "(4)") << "unsigned numbers add as int64";
  EXPECT_EQ(over<kinds::sum>({u(5)}), "(5)");
  EXPECT_EQ(over<kinds::sum>({i(1), Decimal{500'000}, 0.25}), "(1.75f)");
  EXPECT_EQ(over<kinds::sum>({true}), "(true)");
  EXPECT_EQ(over<kinds::sum>({true, i(2)}), "(3)");

  EXPECT_EQ(over<kinds::count_values>({i(1), null(), i(3)}), "(2)");
  EXPECT_EQ(over<kinds::count_values>({}), "(0)");

  EXPECT_EQ(over<kinds::maximum>({i(2), null(), i(5)}), "(5)");
  EXPECT_EQ(over<kinds::minimum>({null(), i(4), i(2)}), "(2)");
  EXPECT_EQ(over<kinds::maximum>({}), "(NULL)");
  EXPECT_EQ(over<kinds::minimum>({null()}), "(NULL)");
  EXPECT_EQ(over<kinds::maximum>({text("\x80z"), text("\x80y")}), "('\x80z')");
  EXPECT_EQ(over<kinds::minimum>({std::nan("")}), "(nanf)") << "nothing to compare with";

  EXPECT_EQ(over<kinds::average_as_double>({i(1), null(), u(2)}), "(1.5f)");
  EXPECT_EQ(over<kinds::average_as_double>({}), "(NULL)");
  EXPECT_EQ(over<kinds::average_as_decimal>({i(1), u(2)}), "(1500000d)");
  EXPECT_EQ(over<kinds::average_as_decimal>({Decimal{1}, Decimal{2}}), "(2d)") << "a half rounds away from zero";
  EXPECT_EQ(over<kinds::average_as_decimal>({null()}), "(NULL)");

  EXPECT_EQ(over<kinds::count_distinct_values>({i(1), null(), i(1), null()}), "(2u)");
  EXPECT_EQ(over<kinds::count_distinct_values>({0.0, -0.0, std::nan(""), std::nan("")}), "(3u)");
  EXPECT_EQ(over<kinds::count_distinct_values>({i(5), u(5)}), "(2u)") << "different alternatives are different";
  EXPECT_EQ(over<kinds::count_distinct_values>({OV_OBJ_REF{1, 2}, OV_OBJ_REF{1, 3}}), "(1u)");
  EXPECT_EQ(over<kinds::count_distinct_values>({}), "(0u)");
}

TEST(Aggregates, refuse_what_they_cannot_take) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(error_over<kinds::sum>({i(most), i(1)}), 7041U);
  EXPECT_EQ(error_over<kinds::sum>({u(~0ULL)}), 7041U);
  EXPECT_EQ(error_over<kinds::sum>({true, true}), 7020U);
  EXPECT_EQ(error_over<kinds::sum>({text("\x80z")}), 7020U);
  EXPECT_EQ(error_over<kinds::sum>({OV_OBJ_REF{}}), 7020U);
  EXPECT_EQ(error_over<kinds::average_as_double>({text("\x80z")}), 1027U);
  EXPECT_EQ(error_over<kinds::average_as_decimal>({1.5}), 1027U);
  EXPECT_EQ(error_over<kinds::average_as_decimal>({Decimal{most}, Decimal{most}}), 7041U) << "beyond 64 bits";
  EXPECT_EQ(error_over<kinds::average_as_decimal>({Decimal{Decimal::max_raw}, Decimal{Decimal::max_raw}}), 7041U)
      << "a sum beyond the Decimal range cannot be divided";
  EXPECT_EQ(error_over<kinds::maximum>({1.0, std::nan("")}), 7041U);
  EXPECT_THROW(over<kinds::maximum>({i(1), 1.0}), std::logic_error);
  EXPECT_THROW(over<kinds::minimum>({i(1), u(1)}), std::logic_error);
}

std::vector<aggregate_entry> counts() {
  std::vector<aggregate_entry> list;
  list.push_back(kinds::count_rows{});
  kinds::count_distinct_rows distinct;
  distinct.arguments.emplace_back(column(1));
  distinct.arguments.emplace_back(column(2));
  list.push_back(std::move(distinct));
  return list;
}

TEST(Aggregator, groups_in_first_seen_order_with_aggregates_before_keys) {
  const rows input = {{i(5), i(1), i(1)},     {null(), i(1), i(1)}, {i(5), i(1), i(2)},
                      {u(5), null(), null()}, {null(), i(1), i(1)}, {i(5), i(1), i(1)}};
  EXPECT_EQ(show(run(aggregator(given(input), columns({0}), counts()))), "(3 2u 5)(2 1u NULL)(1 1u 5u)");
  EXPECT_EQ(show(run(aggregator(given(input), {}, counts()))), "(6 3u)");
  EXPECT_EQ(show(run(aggregator(given(rows{}), columns({0}), counts()))), "");
  EXPECT_EQ(show(run(aggregator(given(rows{}), {}, counts()))), "(0 0u)");
  EXPECT_EQ(show(run(aggregator(given(input), columns({1, 0}), {}))), "(1 5)(1 NULL)(NULL 5u)");
}

TEST(Aggregator, keeps_floating_zeros_together_and_every_nan_apart) {
  const rows input = {{0.0}, {std::nan("")}, {-0.0}, {std::nan("")}};
  std::vector<aggregate_entry> count;
  count.push_back(kinds::count_rows{});
  EXPECT_EQ(show(run(aggregator(given(input), columns({0}), std::move(count)))), "(2 0f)(1 nanf)(1 nanf)");
}

TEST(Aggregator, finds_its_groups_among_many) {
  rows input;
  for (int n = 0; n < 100'000; ++n) input.push_back({i(n % 20'000), text(n % 2 == 0 ? "\x80x" : "\x80y")});
  const auto log = std::make_shared<journal>();
  std::vector<aggregate_entry> count;
  count.push_back(kinds::count_rows{});
  const rows groups = run(aggregator(given(std::move(input), log), columns({0, 1}), std::move(count)));
  ASSERT_EQ(groups.size(), 20'000U);
  for (std::size_t n = 0; n < groups.size(); ++n) {
    ASSERT_EQ(std::get<std::int64_t>(groups[n][0]), 5);
    ASSERT_EQ(std::get<std::int64_t>(groups[n][1]), static_cast<std::int64_t>(n));
  }
  EXPECT_EQ(log->alive, 0);
}

}  // namespace
}  // namespace tests
