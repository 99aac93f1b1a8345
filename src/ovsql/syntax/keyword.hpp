// The words that mean something to the grammar.
#ifndef OVSQL_SYNTAX_KEYWORD_HPP_
#define OVSQL_SYNTAX_KEYWORD_HPP_

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace ovsql::syntax {

// The number of a word, written "select"_k.
using keyword = std::uint8_t;
inline constexpr keyword no_keyword = 0;

// Are names only in double quotes.
inline constexpr std::string_view reserved_words[] = {
    "all",   "and",     "any",      "as",     "case",    "cast",       "check",     "collate", "constraint", "create",
    "cross", "default", "distinct", "else",   "end",     "except",     "false",     "fetch",   "for",        "foreign",
    "from",  "full",    "group",    "having", "in",      "inner",      "intersect", "into",    "is",         "isnull",
    "join",  "lateral", "left",     "like",   "limit",   "natural",    "not",       "notnull", "null",       "offset",
    "on",    "or",      "order",    "outer",  "primary", "references", "returning", "right",   "select",     "some",
    "table", "then",    "true",     "union",  "unique",  "using",      "when",      "where",   "window",     "with"};

// Mean something in one place and are names everywhere else.
inline constexpr std::string_view plain_words[] = {
    "abort",     "alter",    "analyze",    "asc",       "attach",   "begin",        "between",   "by",
    "call",      "cascade",  "checkpoint", "close",     "cluster",  "columns",      "comment",   "commit",
    "conflict",  "copy",     "csv",        "cube",      "data",     "deallocate",   "declare",   "delete",
    "delimiter", "desc",     "describe",   "detach",    "discard",  "do",           "drop",      "escape",
    "execute",   "exists",   "explain",    "filter",    "first",    "format",       "generated", "grant",
    "grouping",  "header",   "if",         "ilike",     "import",   "index",        "inherits",  "insert",
    "key",       "last",     "listen",     "load",      "lock",     "materialized", "merge",     "move",
    "next",      "no",       "notify",     "nulls",     "of",       "only",         "over",      "pragma",
    "precision", "prepare",  "reassign",   "recursive", "refresh",  "reindex",      "release",   "replace",
    "reset",     "restrict", "revoke",     "rollback",  "rollup",   "row",          "rows",      "savepoint",
    "security",  "set",      "sets",       "show",      "similar",  "start",        "stdin",     "temp",
    "temporary", "time",     "timestamp",  "to",        "truncate", "unknown",      "unlisten",  "update",
    "use",       "vacuum",   "values",     "varying",   "view",     "within",       "without",   "zone",
    "char",      "character"};

consteval keyword operator""_k(const char* text, std::size_t size) {
  keyword number = no_keyword;
  for (const std::string_view each : reserved_words) {
    ++number;
    if (each == std::string_view(text, size)) return number;
  }
  for (const std::string_view each : plain_words) {
    ++number;
    if (each == std::string_view(text, size)) return number;
  }
  throw "no keyword";
}

constexpr bool is_reserved(keyword which) { return which != no_keyword && which <= std::size(reserved_words); }

// One more letter of a word; begins with 0. Letters of either case are alike.
constexpr std::uint32_t add_to_hash(std::uint32_t hash, char letter) {
  return hash * 31U + (static_cast<unsigned char>(letter) | 0x20U);
}

// Finds a word, in letters of either case, whose hash is known.
keyword find_keyword(std::string_view word, std::uint32_t hash);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_KEYWORD_HPP_
