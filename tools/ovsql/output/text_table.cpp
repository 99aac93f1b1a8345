#include "output/text_table.hpp"

#include <algorithm>
#include <numeric>

#include "output/column_kind.hpp"
#include "text/display_width.hpp"
#include "text/shown_text.hpp"

namespace shell {
namespace {

constexpr std::size_t least_width = 4;

}  // namespace

text_table::text_table(const ovsql::statement& of) {
  for (std::size_t at = 0; at < of.column_count(); ++at) {
    const std::string heading = without_controls(of.column(at).name);
    columns_.push_back({heading, is_number(of.column(at).type), display_width(heading)});
  }
}

void text_table::add(const ovsql::statement& row) {
  std::vector<text_cell>& cells = rows_.emplace_back();
  for (std::size_t at = 0; at < columns_.size(); ++at) {
    cells.push_back({shown_value(row, at), row.is_null(at)});
    columns_[at].width = std::max(columns_[at].width, display_width(cells.back().text));
  }
}

void text_table::fit(std::size_t width) {
  const auto narrower = [](const text_column& a, const text_column& b) { return a.width < b.width; };
  std::size_t all = std::accumulate(columns_.begin(), columns_.end(), std::size_t{0},
                                    [](std::size_t sum, const text_column& each) { return sum + each.width; });
  for (; all > width; --all) {
    text_column& widest = *std::max_element(columns_.begin(), columns_.end(), narrower);
    if (widest.width <= least_width) break;
    --widest.width;
  }
}

std::string text_table::aligned(std::size_t column, const text_cell& cell, bool colours) const {
  const std::size_t width = columns_[column].width;
  std::string text = width == 0 ? "" : cut_to_width(cell.text, width);
  const std::string padding(width - display_width(text), ' ');
  if (colours && cell.is_null) text = "\x1b[2m" + text + "\x1b[0m";
  return columns_[column].right_aligned ? padding + text : text + padding;
}

}  // namespace shell
