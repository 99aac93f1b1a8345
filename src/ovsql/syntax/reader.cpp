#include "ovsql/syntax/reader.hpp"

#include "ov_sql_executor/support/stack_weights.hpp"
#include "ov_sql_executor/support/thread_stack.hpp"
#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/character.hpp"
#include "ovsql/syntax/literals.hpp"

namespace ovsql::syntax {
namespace {

constexpr std::size_t most_shown = 30;

// What lies between two checks of the stack.
constexpr std::size_t stack_of_level = ov::sql_executor::stack_weights::guards_frames ? 16384 : 4096;

std::string in_quotes(std::string_view text) {
  std::size_t end = text.size();
  if (end > most_shown) {
    end = most_shown;
    while (end != 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  }
  std::string shown(text.substr(0, end));
  if (end != text.size()) shown += "...";
  return text.front() == '"' ? shown : '"' + shown + '"';
}

}  // namespace

place reader::expect(token_kind kind, std::string_view what) {
  if (!at(kind)) fail_expected(what);
  return take().at;
}

void reader::expect(keyword word, std::string_view what) {
  if (!accept(word)) fail_expected(what);
}

name reader::take_name(std::string_view what) {
  if (!at_name()) fail_expected(what);
  const token taken = take();
  return {unquoted(text_, taken, trees), taken.at};
}

name reader::take_label(std::string_view what) {
  if (!at(token_kind::word) && !at(token_kind::quoted_name)) fail_expected(what);
  const token taken = take();
  return {unquoted(text_, taken, trees), taken.at};
}

name reader::take_dotted_name(std::string_view what) {
  name first = take_name(what);
  if (!at(token_kind::dot)) return first;
  std::string whole(first.text);
  while (accept(token_kind::dot)) whole.append(".").append(take_label("a name").text);
  return {trees.keep(whole), from(first.at.begin)};
}

std::string_view reader::take_text(std::string_view what) {
  if (!at(token_kind::text) && !at(token_kind::escaped_text) && !at(token_kind::dollar_text)) fail_expected(what);
  return unquoted(text_, take(), trees);
}

std::string_view reader::take_binary() { return decoded_binary(text_, take(), trees); }

name_list reader::take_names_in_brackets(std::string_view what) {
  expect(token_kind::open, "\"(\"");
  const name_list names = take_list<name>([&](reader& from) { return from.take_name(what); });
  expect_close();
  return names;
}

unsupported reader::skip(std::string_view words_before) {
  std::string words(words_before);
  for (const char letter : text_of(now_.at)) {
    words += letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  }
  std::uint32_t end = find_semicolon(text_, now_.at.end);
  now_ = next_token(text_, end);
  while (is_byte(text_[end - 1], space_byte)) --end;
  last_.end = end;
  return {trees.keep(words)};
}

void reader::fail_expected(std::string_view what) const {
  std::string message = "expected " + std::string(what);
  if (last_.end != 0) message += " after " + in_quotes(text_of(last_));
  throw error(error_kind::syntax, message + ", found " + found(), now_.at.begin);
}

std::string reader::found() const {
  if (at(token_kind::end)) return "the end of the text";
  return in_quotes(text_of(now_.at)) + keyword_hint();
}

// Says how a keyword becomes a name where it looks like one: something follows that follows names.
std::string reader::keyword_hint() const {
  if (!is_reserved(now_.word)) return {};
  const token next = after_now();
  const bool looks_like_name = next.kind >= token_kind::close || next.kind == token_kind::end ||
                               next.word == "from"_k || next.word == "as"_k || next.word == "where"_k;
  if (!looks_like_name) return {};
  return ", a keyword; write " + in_quotes('"' + std::string(text_of(now_.at)) + '"') + " to use it as a name";
}

void reader::refuse(std::string_view message, place at) const {
  throw error(error_kind::unsupported, std::string(message), at.begin);
}

void reader::require_stack() const {
  if (ov::sql_executor::has_stack(stack_of_level)) return;
  throw error(error_kind::limit, "this is nested too deeply for the stack of this thread", now_.at.begin);
}

}  // namespace ovsql::syntax
