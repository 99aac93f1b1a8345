// LIKE: the matcher beside one that follows the recursive definition, on short texts; and patterns that would keep that
// one busy for years.
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>
#include <string>

#include "expressions/naive_like.hpp"
#include "ov_sql_executor/values/like_pattern.hpp"

namespace {

using matcher = bool (*)(std::u16string_view, std::u16string_view);

// Nanoseconds of one match, as the processor counts them: the best of several runs, since the machine may be shared.
double time_match(matcher matches, std::u16string_view text, std::u16string_view pattern, int repetitions) {
  double best = std::numeric_limits<double>::max();
  for (int run = 0; run < 7; ++run) {
    int matched = 0;
    const std::clock_t start = std::clock();
    for (int i = 0; i < repetitions; ++i) matched += matches(text, pattern) ? 1 : 0;
    const double took = 1e9 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    if (matched != 0 && matched != repetitions) std::puts("the matcher changes its mind");
    best = std::min(best, took / repetitions);
  }
  return best;
}

std::string narrow(std::u16string_view units) { return {units.begin(), units.end()}; }

void compare_with_naive() {
  constexpr int repetitions = 200'000;
  constexpr std::u16string_view text = u"frankfurt am main international airport";
  std::printf("%-28s %10s %10s %8s\n", "pattern on a short text", "ours ns", "naive ns", "ratio");
  for (const std::u16string_view pattern : {u"frankfurt%", u"%airport", u"%inter%", u"%a%i%o%", u"fr_nk%m_in%airp_rt",
                                            u"%zurich%", u"frankfurt am main international airport"}) {
    const double ours = time_match(ov::sql_executor::matches_like, text, pattern, repetitions);
    const double naive = time_match(tests::naive_like, text, pattern, repetitions);
    std::printf("%-28.28s %10.1f %10.1f %8.2f\n", narrow(pattern).c_str(), ours, naive, naive / ours);
  }
}

void measure_hostile_patterns() {
  const std::u16string text(100'000, u'a');
  std::printf("\n%-28s %10s %18s\n", "30 times, 100,000 units", "ours ms", "ns per unit");
  for (const std::u16string_view part : {u"%a", u"%_", u"%a_a", u"%aaaaaaaab"}) {
    std::u16string pattern;
    for (int wildcards = 0; wildcards < 30; ++wildcards) pattern += part;
    pattern += u"b";
    const double ours = time_match(ov::sql_executor::matches_like, text, pattern, 1);
    std::printf("%-28s %10.3f %18.2f\n", (narrow(part) + "... b").c_str(), ours / 1e6,
                ours / static_cast<double>(text.size()));
  }
}

}  // namespace

int main() {
  compare_with_naive();
  measure_hostile_patterns();
}
