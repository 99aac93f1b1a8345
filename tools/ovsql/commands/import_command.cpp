#include <algorithm>
#include <stdexcept>
#include <string>

#include "commands/command_functions.hpp"
#include "ovsql/import/csv_import.hpp"
#include "session.hpp"

namespace shell {
namespace {

char delimiter(const std::string& word) {
  if (word == "tab" || word == "\\t") return '\t';
  if (word.size() != 1) throw std::runtime_error("a delimiter is one character, or tab");
  return word.front();
}

// "a=TEXT,b=DOUBLE PRECISION"
void add_types(ovsql::csv_import_options& how, const std::string& list) {
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = std::min(list.find(',', begin), list.size());
    const std::size_t sign = list.find('=', begin);
    if (sign >= end) throw std::runtime_error("types are given as column=TYPE,column=TYPE");
    how.types[list.substr(begin, sign - begin)] = list.substr(sign + 1, end - sign - 1);
    begin = end + 1;
  }
}

class import_arguments {
 public:
  explicit import_arguments(const std::vector<std::string>& words) : words_(words) {
    while (next_ < words_.size()) take(words_[next_++]);
    if (file.empty()) throw std::runtime_error("usage: .import FILE [TABLE] [OPTION]...");
  }

  std::string file = {};
  ovsql::csv_import_options how = {};

 private:
  void take(const std::string& word) {
    if (word == "--types") {
      add_types(how, argument_of(word));
    } else if (word == "--delimiter") {
      how.delimiter = delimiter(argument_of(word));
    } else if (word == "--null") {
      how.null_text = argument_of(word);
    } else if (word == "--no-header") {
      how.header = false;
    } else if (!word.starts_with("--") && how.table.empty()) {
      (file.empty() ? file : how.table) = word;
    } else {
      throw std::runtime_error(".import does not take \"" + word + "\"");
    }
  }

  const std::string& argument_of(const std::string& option) {
    if (next_ == words_.size()) throw std::runtime_error(option + " takes an argument");
    return words_[next_++];
  }

  const std::vector<std::string>& words_;
  std::size_t next_ = 0;
};

}  // namespace

void import_file(session& on, const std::vector<std::string>& arguments) {
  const import_arguments wanted(arguments);
  on.import(wanted.file, wanted.how);
}

}  // namespace shell
