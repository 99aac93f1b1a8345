#ifndef OVSQL_IMPORT_PLAIN_NAMES_HPP_
#define OVSQL_IMPORT_PLAIN_NAMES_HPP_

#include <string>
#include <string_view>
#include <vector>

namespace ovsql {

// Makes a name that needs no quotes: whatever cannot stand in one becomes an underscore, an underscore keeps it apart
// from a digit before and from a reserved word behind. Empty where nothing of the text can stand in a name.
std::string plain_name(std::string_view text);

// Names the columns of a file by its headings. Those without one are numbered; so are those whose name was there
// before.
std::vector<std::string> plain_column_names(const std::vector<std::string>& headings);

// Compares names as SQL does, without regard to the case of ASCII letters.
bool same_plain_name(std::string_view left, std::string_view right);

}  // namespace ovsql

#endif  // OVSQL_IMPORT_PLAIN_NAMES_HPP_
