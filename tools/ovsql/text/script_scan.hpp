#ifndef OVSQL_TEXT_SCRIPT_SCAN_HPP_
#define OVSQL_TEXT_SCRIPT_SCAN_HPP_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace shell {

// Returns the first byte from `at` on that belongs to neither a blank nor a comment.
std::size_t skip_blanks_and_comments(std::string_view script, std::size_t at);

// Tells whether a text ends with a semicolon that stands outside of quotes and comments, or holds nothing but blanks
// and comments.
bool is_complete(std::string_view script);

// Cuts a command line into words. 'single' and "double" quotes hold blanks together; a quote that does not end goes on
// to the end.
std::vector<std::string> split_words(std::string_view line);

}  // namespace shell

#endif  // OVSQL_TEXT_SCRIPT_SCAN_HPP_
