#include "ov_sql_executor/values/like_pattern.hpp"

#include <cassert>
#include <cstddef>

#include "ov_sql_executor/errors/raise.hpp"
#include "ov_sql_executor/values/unit_search.hpp"

namespace ov::sql_executor {

namespace {

constexpr char16_t any_run = u'%';
constexpr char16_t any_character = u'_';
constexpr char16_t escape = u'\\';
constexpr std::size_t nowhere = std::u16string_view::npos;

constexpr bool is_special(char16_t unit) { return unit == any_run || unit == any_character || unit == escape; }
constexpr bool is_high_surrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

// What every matching text begins and ends with. Patterns without % have no fixed end.
struct fixed_ends {
  std::size_t beginning = 0;        // units before the first special one
  std::size_t end_start = nowhere;  // after the last %
  std::size_t end_length = 0;       // without the escapes
  bool is_end_fixed = false;        // no _ in it
};

// Throws where a unit that is not special, or none, follows an escape.
fixed_ends check_escapes(std::u16string_view pattern) {
  fixed_ends ends;
  std::size_t at = 0;
  while (at < pattern.size() && !is_special(pattern[at])) ++at;
  ends.beginning = at;
  for (; at < pattern.size(); ++at) {
    const char16_t unit = pattern[at];
    if (unit == any_run) {
      ends.end_start = at + 1;
      ends.end_length = 0;
      ends.is_end_fixed = true;
      continue;
    }
    ++ends.end_length;
    if (!is_special(unit)) continue;
    if (unit == any_character) {
      ends.is_end_fixed = false;
    } else if (++at == pattern.size() || !is_special(pattern[at])) {
      error_handling::raise_error(error_handling::bad_escape, error_handling::no_detail,
                                  L"Escape character must be followed by a special character.");
    }
  }
  return ends;
}

bool begins_with(std::u16string_view text, std::u16string_view units) {
  if (units.empty()) return true;
  return text.size() >= units.size() && text[0] == units[0] && are_equal(text.data(), units.data(), units.size());
}

// Requires: the pattern has a fixed end, and the text is at least as long.
bool ends_with(std::u16string_view text, std::u16string_view pattern, const fixed_ends& ends) {
  assert(ends.is_end_fixed && text.size() >= ends.end_length);
  std::size_t text_at = text.size() - ends.end_length;
  for (std::size_t at = ends.end_start; at < pattern.size(); ++at) {
    if (pattern[at] == escape) ++at;
    if (pattern[at] != text[text_at++]) return false;
  }
  return true;
}

// Walks text and pattern together. After a %, the walk restarts from the next place in the text whenever it fails, but
// never goes back before the last %: a walk that starts later is never ahead of one that started earlier, so the first
// place where the pattern up to the next % fits leaves the most text for the rest.
class like_matcher {
 public:
  like_matcher(std::u16string_view text, std::u16string_view pattern) : text_(text), pattern_(pattern) {}

  bool matches() {
    while (!is_at_end()) {
      if (pattern_at_ < pattern_.size() && pattern_[pattern_at_] == any_run) {
        if (++pattern_at_ == pattern_.size()) return true;
        segment_ = pattern_at_;
        segment_literals_ = count_literals(segment_);
        if (!start_segment(text_at_)) return false;
      } else if (!take_item() && !(segment_ != nowhere && start_segment(segment_start_ + 1))) {
        return false;
      }
    }
    return true;
  }

 private:
  bool is_at_end() const { return pattern_at_ == pattern_.size() && text_at_ == text_.size(); }

  // Counts the literal units, without escapes, from here on in the pattern.
  std::size_t count_literals(std::size_t at) const {
    const std::size_t start = at;
    while (at < pattern_.size() && !is_special(pattern_[at])) ++at;
    return at - start;
  }

  // Passes one item of the pattern, or several literals, and what they match. Returns false where they do not match.
  bool take_item() {
    if (pattern_at_ == pattern_.size() || text_at_ == text_.size()) return false;
    const char16_t item = pattern_[pattern_at_];
    if (!is_special(item)) {
      if (item != text_[text_at_]) return false;
      return take_literals(pattern_at_ == segment_ ? segment_literals_ : count_literals(pattern_at_));
    }
    const char16_t unit = text_[text_at_];
    if (item == any_character) {
      ++pattern_at_;
      text_at_ += is_high_surrogate(unit) ? 2 : 1;
      return text_at_ <= text_.size();
    }
    pattern_at_ += 2;
    ++text_at_;
    return unit == pattern_[pattern_at_ - 1];
  }

  bool take_literals(std::size_t count) {
    if (text_.size() - text_at_ < count) return false;
    if (!are_equal(text_.data() + text_at_, pattern_.data() + pattern_at_, count)) return false;
    text_at_ += count;
    pattern_at_ += count;
    return true;
  }

  // Goes to the first place, from start on, where the segment may match. Returns false if there is none.
  bool start_segment(std::size_t start) {
    if (start > text_.size()) return false;
    segment_start_ = find_segment(start);
    text_at_ = segment_start_;
    pattern_at_ = segment_;
    return segment_start_ != nowhere;
  }

  // Finds where its first item matches, and its second one, too, if both are literals.
  std::size_t find_segment(std::size_t start) const {
    const char16_t first = pattern_[segment_];
    if (first == any_character || first == any_run) return start;
    if (first == escape) return find_unit(text_, pattern_[segment_ + 1], start);
    if (segment_literals_ == 1) return find_unit(text_, first, start);
    return find_units(text_, first, pattern_[segment_ + 1], start);
  }

  std::u16string_view text_;
  std::u16string_view pattern_;
  std::size_t text_at_ = 0;
  std::size_t pattern_at_ = 0;
  std::size_t segment_ = nowhere;     // the pattern after the last %; nowhere before the first
  std::size_t segment_literals_ = 0;  // at its beginning
  std::size_t segment_start_ = 0;     // where in the text it is tried
};

}  // namespace

bool matches_like(std::u16string_view text, std::u16string_view pattern) {
  const fixed_ends ends = check_escapes(pattern);
  // Asks the cheaper questions first.
  if (!begins_with(text, pattern.substr(0, ends.beginning))) return false;
  if (ends.is_end_fixed) {
    if (text.size() < ends.beginning + ends.end_length || !ends_with(text, pattern, ends)) return false;
    text.remove_suffix(ends.end_length);  // what is left of the pattern ends in %
    pattern.remove_suffix(pattern.size() - ends.end_start);
  }
  return like_matcher(text.substr(ends.beginning), pattern.substr(ends.beginning)).matches();
}

std::u16string like_prefix(std::u16string_view pattern) {
  std::u16string prefix;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    if (pattern[at] == any_run || pattern[at] == any_character) return prefix;
    if (pattern[at] == escape && ++at == pattern.size()) break;
    prefix.push_back(pattern[at]);
  }
  return {};
}

}  // namespace ov::sql_executor
