#include "command_line.hpp"

#include <filesystem>

namespace shell {
namespace {

class reading {
 public:
  explicit reading(const std::vector<std::string>& arguments) : arguments_(arguments) {}

  command_line run() {
    while (next_ < arguments_.size()) {
      const std::string& each = arguments_[next_++];
      each.size() > 1 && each.front() == '-' ? take_option(each) : take_file(each);
    }
    return std::move(read_);
  }

 private:
  void take_file(const std::string& path) {
    if (!std::filesystem::exists(path)) throw bad_usage("there is no file \"" + path + "\"; SQL goes after -c");
    read_.csv_files.push_back(path);
  }

  void take_option(const std::string& option) {
    if (option == "-c" || option == "-f") {
      read_.scripts.push_back({option == "-f", argument_of(option)});
    } else if (option == "--mode") {
      set_mode(argument_of(option));
    } else if (option == "--database") {
      check_database(argument_of(option));
    } else {
      set_switch(option);
    }
  }

  void set_switch(const std::string& option) {
    if (option == "--no-headers") {
      read_.headers = false;
    } else if (option == "--bail") {
      read_.bail = true;
    } else if (option == "--help" || option == "-h") {
      read_.help = true;
    } else if (option.starts_with("--") && find_output_mode(option.substr(2)) != nullptr) {
      set_mode(option.substr(2));
    } else {
      throw bad_usage("there is no option " + option);
    }
  }

  void set_mode(const std::string& name) {
    read_.mode = find_output_mode(name);
    if (read_.mode == nullptr) throw bad_usage("there is no mode " + name);
  }

  static void check_database(const std::string& name) {
    if (name != ":memory:") throw bad_usage("there is no database but :memory:");
  }

  const std::string& argument_of(const std::string& option) {
    if (next_ == arguments_.size()) throw bad_usage(option + " takes an argument");
    return arguments_[next_++];
  }

  const std::vector<std::string>& arguments_;
  std::size_t next_ = 0;
  command_line read_;
};

}  // namespace

command_line read_command_line(const std::vector<std::string>& arguments) { return reading(arguments).run(); }

std::string usage() {
  std::string modes;
  for (const output_mode& each : output_modes()) {
    modes += "  --" + std::string(each.name) + std::string(16 - each.name.size(), ' ') + std::string(each.help) + "\n";
  }
  return "usage: ovsql [OPTION]... [FILE.csv]...\n"
         "Answers SQL over CSV files: each file becomes a table of its name. Runs standard input unless -c or -f say\n"
         "what to run; .help lists the commands that it understands besides SQL.\n\n"
         "  -c SQL            run statements or a dot command; may be repeated\n"
         "  -f FILE           run a script; - is standard input\n"
         "  --mode MODE       how results are shown; box on a terminal, table elsewhere\n" +
         modes +
         "  --no-headers      leave out the names of columns\n"
         "  --bail            stop at the first error\n"
         "  --database NAME   :memory:, the only one\n"
         "  --help            show this\n\n"
         "Ends with 0, with 1 where a statement failed, with 2 for arguments that it does not know.\n";
}

}  // namespace shell
