// Walks over the tokens of one statement, for the functions that recognise its parts.
#ifndef OVSQL_SYNTAX_READER_HPP_
#define OVSQL_SYNTAX_READER_HPP_

#include <cstdint>
#include <string>
#include <string_view>

#include "ovsql/syntax/lexer.hpp"
#include "ovsql/syntax/list_stack.hpp"
#include "ovsql/syntax/memory.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

class reader {
 public:
  reader(std::string_view text, std::uint32_t from, memory& into)
      : trees(into), text_(text), now_(next_token(text, from)) {}

  memory& trees;                     // where the tree is made
  list_stack lists;                  // lists that are being read
  std::uint32_t question_marks = 0;  // the highest number of a parameter

  // ---- Looking. `now` is the first token that is not taken yet; `after_now` is the one behind it;
  //      do not ask for it at a semicolon: the next statement may be broken.

  const token& now() const { return now_; }
  token after(const token& of) const { return next_token(text_, of.at.end); }
  token after_now() const { return after(now_); }
  bool at(token_kind kind) const { return now_.kind == kind; }
  bool at(keyword word) const { return now_.word == word; }
  bool at_name() const { return (at(token_kind::word) && !is_reserved(now_.word)) || at(token_kind::quoted_name); }
  std::string_view text_of(place at) const { return text_.substr(at.begin, at.end - at.begin); }
  std::uint32_t end_of_last() const { return last_.end; }  // of the token that was taken last
  place from(std::uint32_t begin) const { return {begin, last_.end}; }

  // ---- Taking

  token take() {
    const token taken = now_;
    now_ = next_token(text_, taken.at.end);
    last_ = taken.at;
    return taken;
  }
  template <class T>
  bool accept(T what) {
    if (!at(what)) return false;
    take();
    return true;
  }
  // Throw unless the next token is that one. what: as the error names it.
  place expect(token_kind kind, std::string_view what);
  void expect(keyword word, std::string_view what);
  place expect_close() { return expect(token_kind::close, "\")\""); }

  // A name; what: what is named, as "a table". A label may be a keyword.
  name take_name(std::string_view what);
  name take_label(std::string_view what);
  // A name of several parts with points between, which stay in it.
  name take_dotted_name(std::string_view what);
  std::string_view take_text(std::string_view what);
  std::string_view take_binary();

  // Reads a list with commas between its items; item(*this) returns one.
  template <class T, class Item>
  std::span<const T> take_list(const Item& item) {
    const std::size_t begin = lists.top();
    do {
      lists.push<T>(item(*this));
    } while (accept(token_kind::comma));
    return lists.keep<T>(begin, trees);
  }
  // (a, b)
  name_list take_names_in_brackets(std::string_view what);

  // Takes the rest of a statement that is not done here, up to its semicolon. The next token is the last word of its
  // name, behind those that are given.
  unsupported skip(std::string_view words_before);

  // ---- Failing

  // Says: expected WHAT after "...", found "...".
  [[noreturn]] void fail_expected(std::string_view what) const;
  // Says what is SQL and not done here.
  [[noreturn]] void refuse(std::string_view message, place at) const;
  void refuse_at(keyword word, std::string_view message) const {
    if (at(word)) refuse(message, now_.at);
  }
  // Throws an error of kind limit if the stack has no room for another level.
  void require_stack() const;

 private:
  std::string found() const;
  std::string keyword_hint() const;

  std::string_view text_;
  token now_;
  place last_{};
};

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_READER_HPP_
