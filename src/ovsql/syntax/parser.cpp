#include "ovsql/syntax/parser.hpp"

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/reader.hpp"
#include "ovsql/syntax/statements.hpp"

namespace ovsql::syntax {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

// Moves a byte to where the first statement begins that is not empty; behind the last empty one where it throws.
void skip_empty_statements(std::string_view text, std::uint32_t& from) {
  if (from == 0 && text.starts_with(byte_order_mark)) from = byte_order_mark.size();
  token first = next_token(text, from);
  while (first.kind == token_kind::semicolon) {
    from = first.at.end;
    first = next_token(text, from);
  }
  from = first.at.begin;
}

const statement* parse_from(std::string_view text, std::uint32_t begin, std::size_t& next, memory& into) {
  reader in(text, begin, into);
  statement made{};
  made.is = parse_statement(in);
  if (!in.at(token_kind::end) && !in.at(token_kind::semicolon)) {
    in.fail_expected("an operator, a clause or the end of the statement");
  }
  made.at = in.from(begin);
  made.question_marks = in.question_marks;
  next = in.now().at.end;
  return into.make(made);
}

}  // namespace

const statement* parse(std::string_view text, std::size_t& next, memory& in) {
  if (next >= text.size()) return nullptr;
  if (text.size() > most_bytes) {
    next = text.size();
    throw error(error_kind::limit, "the text is longer than 64 MiB");
  }
  auto begin = static_cast<std::uint32_t>(next);
  try {
    skip_empty_statements(text, begin);
    next = begin;
    return begin == text.size() ? nullptr : parse_from(text, begin, next, in);
  } catch (const error&) {
    const std::uint32_t end = find_semicolon(text, begin);
    next = end == text.size() ? end : end + 1;
    throw;
  }
}

}  // namespace ovsql::syntax
