// Writes trees as text in which every operation is in brackets, so that a test shows what was understood in one line.
#ifndef TESTS_OVSQL_TREE_WORDS_HPP_
#define TESTS_OVSQL_TREE_WORDS_HPP_

#include <string>

#include "ovsql/syntax/tree.hpp"

namespace tests {

std::string words_of(const ovsql::syntax::expression& is);
std::string words_of(const ovsql::syntax::query& is);
std::string words_of(const ovsql::syntax::statement& is);

}  // namespace tests

#endif  // TESTS_OVSQL_TREE_WORDS_HPP_
