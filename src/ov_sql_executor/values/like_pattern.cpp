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

void check_escapes(std::u16string_view pattern) {
  for (std::size_t at = pattern.find(escape); at != nowhere; at = pattern.find(escape, at + 2)) {
    if (at + 1 < pattern.size() && is_special(pattern[at + 1])) continue;
    error_handling::raise_error(error_handling::bad_escape, error_handling::no_detail,
                                L"Escape character must be followed by a special character.");
  }
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
    char16_t item = pattern_[segment_];
    const bool is_literal = item != any_character && item != any_run;
    if (item == escape) item = pattern_[segment_ + 1];
    segment_start_ = is_literal ? find_unit(text_, item, start) : start;
    text_at_ = segment_start_;
    pattern_at_ = segment_;
    return segment_start_ != nowhere;
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
  check_escapes(pattern);
  return like_walk(text, pattern).succeeds();
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
