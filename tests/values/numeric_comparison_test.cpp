#include <gtest/gtest.h>

#include <bit>
#include <boost/multiprecision/cpp_int.hpp>
#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "outcome.hpp"
#include "ov_sql_executor/values/comparison.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"

namespace tests {
namespace {

using rational = boost::multiprecision::cpp_rational;

// The mathematical number that a value denotes.
struct exact_number {
  bool is_nan = false;
  int infinity = 0;  // its sign
  rational finite = 0;
};

exact_number exact(const value& any) {
  return std::visit(
      []<class T>(const T& held) -> exact_number {
        if constexpr (floating_alternative<T>) {
          if (std::isnan(held)) return {true};
          if (std::isinf(held)) return {false, held < 0 ? -1 : 1};
          return {false, 0, rational(held)};
        } else if constexpr (std::same_as<T, Decimal>) {
          return {false, 0, rational(held.raw, 1'000'000)};
        } else if constexpr (integer_alternative<T>) {
          return {false, 0, rational(static_cast<boost::multiprecision::cpp_int>(held))};
        } else {
          throw std::logic_error("not a number");
        }
      },
      any);
}

std::partial_ordering order(const exact_number& left, const exact_number& right) {
  if (left.is_nan || right.is_nan) return std::partial_ordering::unordered;
  if (left.infinity != 0 || right.infinity != 0) return left.infinity <=> right.infinity;
  return left.finite.compare(right.finite) <=> 0;
}

std::string name(std::partial_ordering any) { return any < 0 ? "<" : any > 0 ? ">" : any == 0 ? "==" : "unordered"; }

void expect_exact(const value& left, const exact_number& exact_left, const value& right,
                  const exact_number& exact_right) {
  const auto found = compare_values(view_of(left), view_of(right));
  ASSERT_TRUE(found.has_value());
  const std::partial_ordering expected = order(exact_left, exact_right);
  ASSERT_EQ(name(*found), name(expected)) << spell(left) << " against " << spell(right);
}

template <class Float>
void add_floats(std::vector<value>& list) {
  using limits = std::numeric_limits<Float>;
  for (const double near : {0.0, 0.5, 1.0, 2.5, 0.000001, 0.0000015, 1e12, 4398046511103.999999, 4398046511104.0,
                            9007199254740992.0, 16777216.0, 0x1p31, 0x1p32, 0x1p62, 0x1p63, 0x1p64, 0x1p65, 1e300}) {
    const auto center = static_cast<Float>(near);
    for (const Float each : {center, std::nextafter(center, Float{0}), std::nextafter(center, limits::max())}) {
      list.emplace_back(each);
      list.emplace_back(-each);
    }
  }
  for (const Float each : {limits::denorm_min(), limits::min(), limits::max(), limits::infinity()}) {
    list.emplace_back(each);
    list.emplace_back(-each);
  }
  list.emplace_back(limits::quiet_NaN());
}

std::vector<value> boundary_values() {
  constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
  std::vector<value> list = {false, true};
  for (const std::uint64_t near : {std::uint64_t{2}, std::uint64_t{1} << 24, std::uint64_t{1} << 42,
                                   std::uint64_t{1} << 53, std::uint64_t{1} << 63}) {
    for (const std::uint64_t each : {near - 2, near - 1, near, near + 1}) {
      list.emplace_back(each);
      list.emplace_back(static_cast<std::int64_t>(each));
      list.emplace_back(static_cast<std::int64_t>(0 - each));
    }
  }
  for (const std::uint64_t below_end : {0U, 1U, 1024U, 1025U, 2047U, 2048U}) list.emplace_back(~below_end);
  for (const std::int64_t each : {lowest, lowest + 1, highest, highest - 1}) list.emplace_back(each);
  for (const std::int64_t raw :
       {std::int64_t{0}, std::int64_t{1}, std::int64_t{500'000}, std::int64_t{999'999}, std::int64_t{1'000'000},
        std::int64_t{1'000'001}, std::int64_t{2'500'000}, 16'777'217 * Decimal::scale,
        (std::int64_t{1} << 42) * Decimal::scale - 1, Decimal::max_raw, Decimal::max_raw - 1, highest}) {
    list.emplace_back(Decimal{raw});
    list.emplace_back(Decimal{-raw});
  }
  list.emplace_back(Decimal{lowest});
  add_floats<double>(list);
  add_floats<float>(list);
  return list;
}

TEST(NumericComparison, is_exact_at_the_boundaries_of_all_six_types) {
  const std::vector<value> values = boundary_values();
  std::vector<exact_number> numbers;
  for (const value& each : values) numbers.push_back(exact(each));
  for (std::size_t left = 0; left < values.size(); ++left) {
    for (std::size_t right = 0; right < values.size(); ++right) {
      expect_exact(values[left], numbers[left], values[right], numbers[right]);
    }
  }
}

// A number of a random size and a value of another type that is close to it, if that type reaches so far.
class random_pairs {
 public:
  explicit random_pairs(std::uint64_t seed) : random_(seed) {}

  value any() {
    const std::uint64_t bits = random_() >> (random_() % 64);
    switch (random_() % 6) {
      case 0:
        return random_() % 2 == 0;
      case 1:
        return bits;
      case 2:
        return static_cast<std::int64_t>(bits);
      case 3:
        return Decimal{static_cast<std::int64_t>(bits)};
      case 4:
        return std::bit_cast<double>(random_());
      default:
        return std::bit_cast<float>(static_cast<std::uint32_t>(random_()));
    }
  }

  value near(const exact_number& number) {
    if (number.is_nan || number.infinity != 0 || abs(number.finite) > 9'000'000'000'000'000'000U) return any();
    const auto whole = static_cast<std::int64_t>(floor_of(number.finite));
    const std::int64_t step = static_cast<std::int64_t>(random_() % 3) - 1;
    switch (random_() % 5) {
      case 0:
        return static_cast<std::uint64_t>(whole + step);
      case 1:
        return whole + step;
      case 2:
        return abs(number.finite) > 9'000'000'000'000U
                   ? any()
                   : Decimal{static_cast<std::int64_t>(floor_of(number.finite * 1'000'000)) + step};
      case 3:
        return nudged(static_cast<double>(number.finite), step);
      default:
        return nudged(static_cast<float>(number.finite), step);
    }
  }

 private:
  static boost::multiprecision::cpp_int floor_of(const rational& number) {
    const boost::multiprecision::cpp_int whole = numerator(number) / denominator(number);
    return number < whole ? boost::multiprecision::cpp_int(whole - 1) : whole;
  }

  template <class Float>
  static value nudged(Float number, std::int64_t step) {
    return step == 0 ? number
                     : std::nextafter(number, std::numeric_limits<Float>::infinity() * static_cast<Float>(step));
  }

  std::mt19937_64 random_;
};

TEST(NumericComparison, is_exact_for_random_neighbours) {
  const std::uint64_t seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  random_pairs random(seed);
  for (int round = 0; round < 20'000; ++round) {
    const value left = random.any();
    const exact_number exact_left = exact(left);
    const value right = random.near(exact_left);
    const exact_number exact_right = exact(right);
    expect_exact(left, exact_left, right, exact_right);
    expect_exact(right, exact_right, left, exact_left);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace tests
