// Numbers of all six types near the limits of each, and between.
#ifndef TESTS_VALUES_EDGE_NUMBERS_HPP_
#define TESTS_VALUES_EDGE_NUMBERS_HPP_

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "spelling.hpp"

namespace tests {

template <class Float>
void add_floats(row& list) {
  using limits = std::numeric_limits<Float>;
  const auto add = [&list](Float each) { list.insert(list.end(), {each, -each}); };
  for (const double near : {0.0, 0.5, 1.0, 2.5, 0.000001, 0.0000015, 1e12, 4398046511103.999999, 4398046511104.0,
                            9007199254740992.0, 16777216.0, 0x1p31, 0x1p32, 0x1p62, 0x1p63, 0x1p64, 0x1p65, 1e300}) {
    const auto center = static_cast<Float>(near);
    for (const Float each : {center, std::nextafter(center, Float{0}), std::nextafter(center, limits::max())})
      add(each);
  }
  for (const Float each : {limits::denorm_min(), limits::min(), limits::max(), limits::infinity()}) add(each);
  list.emplace_back(limits::quiet_NaN());
}

inline row boundary_values() {
  row list = vals(
      "false true i9223372036854775807 i9223372036854775806 dec-9223372036854775808 dec0 dec1 dec-1 dec500000 "
      "dec-500000 dec999999 dec1000000 dec-1000000 dec1000001 dec2500000 dec-2500000 dec16777217000000 "
      "dec4398046511103999999 dec-4398046511103999999 dec4398046511103999998 dec9223372036854775807");
  for (const int power : {1, 24, 42, 53, 63}) {
    const std::uint64_t near = std::uint64_t{1} << power;
    for (const std::uint64_t each : {near - 2, near - 1, near, near + 1}) {
      list.insert(list.end(), {u(each), i(static_cast<std::int64_t>(each)), i(static_cast<std::int64_t>(0 - each))});
    }
  }
  for (const std::uint64_t below_end : {0U, 1U, 1024U, 1025U, 2047U, 2048U}) list.emplace_back(~below_end);
  add_floats<double>(list);
  add_floats<float>(list);
  return list;
}

// Numbers of any magnitude, each in every type that can come near it.
inline void add_random_values(row& list, std::mt19937_64& random) {
  for (int count = 0; count < 25; ++count) {
    const std::uint64_t bits = random() >> random() % 64;
    const auto number = static_cast<double>(bits);
    const auto raw = static_cast<std::int64_t>(bits / Decimal::scale * Decimal::scale);
    list.insert(list.end(), {u(bits), i(static_cast<std::int64_t>(bits)), Decimal{raw}, Decimal{raw + 1},
                             number / Decimal::scale, number, std::nextafter(number, 0.0), static_cast<float>(number),
                             std::bit_cast<double>(random()), std::bit_cast<float>(static_cast<unsigned>(random()))});
  }
}

}  // namespace tests

#endif  // TESTS_VALUES_EDGE_NUMBERS_HPP_
