#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "fuzz/checks.hpp"
#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/parser.hpp"

namespace fuzz {
namespace {

using ovsql::error, ovsql::error_kind;

void require(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", promise);
  std::abort();
}

// Parses the statement that begins at a byte; false behind the last one.
bool check_statement(std::string_view text, std::size_t& next) {
  ovsql::syntax::memory memory;
  try {
    const ovsql::syntax::statement* const made = ovsql::syntax::parse(text, next, memory);
    if (made == nullptr) return false;
    require(made->at.begin < made->at.end && made->at.end <= next, "a statement has a place before its end");
  } catch (const error& failed) {
    const bool may_be = failed.kind() == error_kind::syntax || failed.kind() == error_kind::unsupported ||
                        failed.kind() == error_kind::limit;
    require(may_be, "a text without a meaning is a syntax error, unsupported or too deep");
    require(failed.position() <= next, "an error lies within its statement");
    require(!failed.describe(text).empty(), "an error can be shown");
  }
  return true;
}

}  // namespace

void check_parse(std::span<const std::uint8_t> input) {
  const std::string_view text(reinterpret_cast<const char*>(input.data()), input.size());
  std::size_t next = 0;
  for (std::size_t before = 0; check_statement(text, next); before = next) {
    require(next > before && next <= text.size(), "parsing goes on behind the statement");
  }
}

}  // namespace fuzz
