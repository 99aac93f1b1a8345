#include "ovsql/catalog/names.hpp"

#include <cstddef>

namespace ovsql {
namespace {

// The Levenshtein distance: how many letters have to be put in, left out or changed.
std::size_t distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t at = 0; at < row.size(); ++at) row[at] = at;
  for (std::size_t line = 1; line <= left.size(); ++line) {
    std::size_t diagonal = row[0]++;
    for (std::size_t at = 1; at <= right.size(); ++at) {
      const bool same = fold_ascii(left[line - 1]) == fold_ascii(right[at - 1]);
      const std::size_t best = std::min({row[at] + 1, row[at - 1] + 1, diagonal + (same ? 0 : 1)});
      diagonal = row[at];
      row[at] = best;
    }
  }
  return row.back();
}

constexpr std::size_t longest_name_compared = 64;

}  // namespace

std::string suggest(std::string_view wrong, const std::vector<std::string_view>& known) {
  if (wrong.size() > longest_name_compared) return {};
  std::size_t best = wrong.size() / 3 + 1;
  std::string_view nearest;
  for (const std::string_view each : known) {
    if (each.size() > longest_name_compared) continue;
    const std::size_t far = distance(wrong, each);
    if (far > best || (far == best && !nearest.empty())) continue;
    best = far;
    nearest = each;
  }
  return nearest.empty() ? std::string() : "; did you mean \"" + std::string(nearest) + "\"?";
}

}  // namespace ovsql
