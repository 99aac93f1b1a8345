// Keys that somebody chose: grouping by keys whose documented hash collides, and sorting of keys that lie badly, each
// beside random keys. Prints nanoseconds of processor time per key and what the chosen ones cost against the random.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "ov_sql_executor/execution/grouping/distinct_rows.hpp"
#include "ov_sql_executor/execution/sorting/key_sort.hpp"
#include "ov_sql_executor/values/group_key.hpp"

namespace {

using ov::sql_executor::hash_combine;
using ov::sql_executor::key_hash;
using ov::sql_executor::value_view;

constexpr std::size_t group_count = 200'000;
constexpr std::size_t sorted_count = 1'000'000;
constexpr int repetitions = 5;

std::mt19937_64 random_words(1);

// The best of several runs, since the machine may be shared.
double time_per_key(std::size_t keys, const std::function<void()>& run) {
  double best = std::numeric_limits<double>::max();
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    const std::clock_t start = std::clock();
    run();
    best = std::min(best, 1e9 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best / static_cast<double>(keys);
}

void print(const char* what, double chosen, double random) {
  std::printf("%-44s %8.1f ns %8.1f ns random %6.2f\n", what, chosen, random, chosen / random);
}

// The word that hash_combine turns, with this seed, into the hash.
std::uint64_t word_with_hash(std::uint64_t seed, std::uint64_t hash) {
  constexpr std::uint64_t multiplier = 0xC6A4A7935BD1E995;
  std::uint64_t inverse = multiplier;  // Newton's iteration modulo 2^64
  for (int i = 0; i < 5; ++i) inverse *= 2 - multiplier * inverse;
  std::uint64_t word = seed ^ (hash - 0xE6546B64) * inverse;
  word *= inverse;
  word ^= word >> 47;
  return word * inverse;
}

std::int64_t random_number() { return static_cast<std::int64_t>(random_words()); }

template <std::size_t Width>
using rows = std::vector<std::array<value_view, Width>>;

template <std::size_t Width>
rows<Width> make_rows(const std::function<std::array<value_view, Width>(std::uint64_t)>& row) {
  rows<Width> made(group_count);
  for (std::size_t i = 0; i < group_count; ++i) made[i] = row(i);
  return made;
}

template <std::size_t Width>
double time_grouping(const rows<Width>& keys) {
  return time_per_key(keys.size(), [&] {
    ov::sql_executor::distinct_rows groups(Width);
    for (const auto& key : keys) groups.find_or_insert(key);
    if (groups.size() != keys.size()) std::puts("keys that should differ do not");
  });
}

// Texts of one header and twelve bytes.
class texts {
 public:
  // Those with the hash's low eight bits equal, or any.
  explicit texts(bool collide) : bytes_(group_count) {
    for (auto& each : bytes_) {
      do {
        each[0] = 0x80;
        for (std::size_t at = 1; at < each.size(); ++at) each[at] = static_cast<std::uint8_t>(random_words());
      } while (collide && (key_hash(0, view(each)) & 0xFF) != 0);
    }
  }

  rows<1> keys() const {
    return make_rows<1>([this](std::uint64_t i) { return std::array{view(bytes_[i])}; });
  }

 private:
  using text = std::array<std::uint8_t, 13>;

  static value_view view(const text& bytes) { return ov::sql_executor::text_view{bytes}; }

  std::vector<text> bytes_;
};

void compare_grouping() {
  const double one =
      time_grouping(make_rows<1>([](std::uint64_t) { return std::array<value_view, 1>{random_number()}; }));
  print("one integer, low 44 bits of the hash equal", time_grouping(make_rows<1>([](std::uint64_t i) {
          return std::array<value_view, 1>{static_cast<std::int64_t>(word_with_hash(0, i << 44))};
        })),
        one);
  print("one integer, high 44 bits of the hash equal", time_grouping(make_rows<1>([](std::uint64_t i) {
          return std::array<value_view, 1>{static_cast<std::int64_t>(word_with_hash(0, i))};
        })),
        one);
  const double two = time_grouping(make_rows<2>([](std::uint64_t) {
    return std::array<value_view, 2>{random_number(), random_number()};
  }));
  print("two integers, the whole hash equal", time_grouping(make_rows<2>([](std::uint64_t i) {
          const auto second = static_cast<std::int64_t>(word_with_hash(hash_combine(0, i), 42));
          return std::array<value_view, 2>{static_cast<std::int64_t>(i), second};
        })),
        two);
  print("text, low 8 bits of the hash equal", time_grouping(texts(true).keys()), time_grouping(texts(false).keys()));
}

double time_sorting(const std::function<std::int64_t(std::size_t)>& key) {
  const std::vector<bool> ascending{true};
  std::vector<std::int64_t> keys(sorted_count);
  for (std::size_t i = 0; i < sorted_count; ++i) keys[i] = key(i);
  return time_per_key(sorted_count, [&] {
    ov::sql_executor::key_sort sort(ascending);
    for (const std::int64_t each : keys) sort.add_key(each);
    sort.start(sorted_count);
    std::size_t sorted = 0;
    for (auto rows = sort.next_rows(); !rows.empty(); rows = sort.next_rows()) sorted += rows.size();
    if (sorted != sorted_count) std::puts("rows were lost");
  });
}

void compare_sorting() {
  constexpr auto count = static_cast<std::int64_t>(sorted_count);
  const double random = time_sorting([](std::size_t) { return random_number(); });
  const auto as_number = [](std::size_t i) { return static_cast<std::int64_t>(i); };
  print("sort, ascending already", time_sorting([&](std::size_t i) { return as_number(i); }), random);
  print("sort, descending", time_sorting([&](std::size_t i) { return -as_number(i); }), random);
  print("sort, all equal", time_sorting([](std::size_t) { return 7; }), random);
  print("sort, up and down again",
        time_sorting([&](std::size_t i) { return std::min(as_number(i), count - as_number(i)); }), random);
  print("sort, sixteen values", time_sorting([&](std::size_t i) { return as_number(i) * 7919 % 16; }), random);
}

}  // namespace

int main() {
  compare_grouping();
  compare_sorting();
}
