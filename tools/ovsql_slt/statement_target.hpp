#ifndef OVSQL_SLT_STATEMENT_TARGET_HPP_
#define OVSQL_SLT_STATEMENT_TARGET_HPP_

#include <string>
#include <string_view>
#include <vector>

namespace slt {

// What a statement changes, told from its words without parsing it.
struct statement_target {
  std::string action;  // "UPDATE", "CREATE VIEW"; empty for a statement that changes nothing
  std::string name;    // of the table, view or index, in lower case; "*" where it may be any
};

// Returns the names and keywords of a statement in lower case, without texts and comments.
std::vector<std::string> words_of(std::string_view sql);

statement_target target_of(std::string_view sql);

}  // namespace slt

#endif  // OVSQL_SLT_STATEMENT_TARGET_HPP_
