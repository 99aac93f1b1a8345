#include "ovsql/errors/source_line.hpp"

#include <algorithm>

namespace ovsql {
namespace {

// How many characters of a line are shown before the caret, and from it on.
constexpr std::size_t most_before = 60;
constexpr std::size_t most_after = 40;

bool is_continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

std::size_t characters(std::string_view text) {
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), is_continuation));
}

// The last characters of a text; the first ones.
std::string_view last(std::string_view text, std::size_t count) {
  std::size_t begin = text.size();
  while (begin != 0 && count != 0) {
    if (!is_continuation(text[--begin])) --count;
  }
  return text.substr(begin);
}
std::string_view first(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  while (end != text.size() && (count != 0 || is_continuation(text[end]))) {
    if (!is_continuation(text[end++])) --count;
  }
  return text.substr(0, end);
}

std::string printable(std::string_view text) {
  std::string shown(text);
  std::replace_if(
      shown.begin(), shown.end(), [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, ' ');
  return shown;
}

}  // namespace

std::string point_at(std::string_view text, std::size_t position) {
  position = std::min(position, text.size());
  const std::size_t before = text.substr(0, position).rfind('\n');
  const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
  const std::string_view left = text.substr(begin, position - begin);
  const std::string_view right = text.substr(position, text.substr(position).find('\n'));
  const auto line = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(begin), '\n');

  std::string shown = "line " + std::to_string(line) + ", column " + std::to_string(characters(left) + 1) + ": ";
  const std::string_view shown_left = last(left, most_before);
  if (shown_left.size() < left.size()) shown += "...";
  shown += printable(shown_left);
  const std::string caret(characters(shown), ' ');
  const std::string_view shown_right = first(right, most_after);
  shown += printable(shown_right);
  if (shown_right.size() < right.size()) shown += "...";
  return shown + "\n" + caret + "^";
}

}  // namespace ovsql
