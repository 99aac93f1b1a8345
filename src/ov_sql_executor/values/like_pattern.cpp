#include "ov_sql_executor/values/like_pattern.hpp"

#include <cstddef>

#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ov_sql_executor/values/unit_search.hpp"

namespace ov::sql_executor {

namespace {

constexpr char16_t any_run = u'%';
constexpr char16_t any_character = u'_';
constexpr char16_t escape = u'\\';
constexpr std::size_t nowhere = std::u16string_view::npos;

constexpr bool is_special(char16_t unit) { return unit == any_run || unit == any_character || unit == escape; }
constexpr bool is_high_surrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

// A pattern's units behind its last %, without the escapes: with no _ among them they are what matching texts end with.
struct pattern_end {
  std::size_t start = nowhere;  // nowhere: the pattern has no %
  std::size_t length = 0;
  bool is_fixed = false;
};

// Throws if an escape is followed by anything else than a special unit.
pattern_end check_escapes(std::u16string_view pattern) {
  pattern_end end;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char16_t unit = pattern[at];
    if (unit == escape && (++at == pattern.size() || !is_special(pattern[at]))) {
      error_handling::raise_error(error_handling::bad_escape, error_handling::no_detail,
                                  L"Escape character must be followed by a special character.");
    }
    if (unit == any_run) end = {at + 1, 0, true};
    if (unit == any_character) end.is_fixed = false;
    if (unit != any_run) ++end.length;
  }
  return end;
}

bool ends_with(std::u16string_view text, std::u16string_view pattern, const pattern_end& end) {
  if (text.size() < end.length) return false;
  std::size_t text_at = text.size() - end.length;
  for (std::size_t at = end.start; at < pattern.size(); ++at) {
    if (pattern[at] == escape) ++at;
    if (pattern[at] != text[text_at++]) return false;
  }
  return true;
}

// Walks text and pattern together. Behind a % the walk restarts from the next place in the text whenever it fails, but
// never goes back before the last %: a walk that starts later is never ahead of one that started earlier, so the first
// place where the pattern up to the next % fits leaves the most for the rest.
class like_walk {
 public:
  like_walk(std::u16string_view text, std::u16string_view pattern) : text_(text), pattern_(pattern) {}

  bool succeeds() {
    while (!is_at_end()) {
      if (pattern_at_ < pattern_.size() && pattern_[pattern_at_] == any_run) {
        if (++pattern_at_ == pattern_.size()) return true;
        segment_ = pattern_at_;
        if (!start_segment(text_at_)) return false;
      } else if (!take_item() && !(segment_ != nowhere && start_segment(segment_start_ + 1))) {
        return false;
      }
    }
    return true;
  }

 private:
  bool is_at_end() const { return pattern_at_ == pattern_.size() && text_at_ == text_.size(); }

  // Goes past one item of the pattern and what it matches, if it does.
  bool take_item() {
    if (pattern_at_ == pattern_.size() || text_at_ == text_.size()) return false;
    const char16_t unit = text_[text_at_];
    char16_t item = pattern_[pattern_at_++];
    if (item == any_character) {
      text_at_ += is_high_surrogate(unit) ? 2 : 1;
      return text_at_ <= text_.size();
    }
    if (item == escape) item = pattern_[pattern_at_++];
    ++text_at_;
    return unit == item;
  }

  // Goes to the first place from start on where the segment's first item matches, if there is one.
  bool start_segment(std::size_t start) {
    if (start > text_.size()) return false;
    segment_start_ = find_segment(start);
    text_at_ = segment_start_;
    pattern_at_ = segment_;
    return segment_start_ != nowhere;
  }

  // Where its first item matches, and its second one, too, if both are units that stand for themselves.
  std::size_t find_segment(std::size_t start) const {
    const char16_t first = pattern_[segment_];
    if (first == any_character || first == any_run) return start;
    if (first == escape) return find_unit(text_, pattern_[segment_ + 1], start);
    if (segment_ + 1 == pattern_.size() || is_special(pattern_[segment_ + 1])) return find_unit(text_, first, start);
    return find_units(text_, first, pattern_[segment_ + 1], start);
  }

  std::u16string_view text_;
  std::u16string_view pattern_;
  std::size_t text_at_ = 0;
  std::size_t pattern_at_ = 0;
  std::size_t segment_ = nowhere;  // the pattern behind the last %; nowhere before the first
  std::size_t segment_start_ = 0;  // where in the text it is tried
};

}  // namespace

bool matches_like(std::u16string_view text, std::u16string_view pattern) {
  const pattern_end end = check_escapes(pattern);
  if (!end.is_fixed) return like_walk(text, pattern).succeeds();
  // The cheaper question first; what is left of the pattern ends in %.
  if (!ends_with(text, pattern, end)) return false;
  return like_walk(text.substr(0, text.size() - end.length), pattern.substr(0, end.start)).succeeds();
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
