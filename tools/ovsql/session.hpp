#ifndef OVSQL_SESSION_HPP_
#define OVSQL_SESSION_HPP_

#include <cstddef>
#include <fstream>
#include <ostream>
#include <string>
#include <string_view>

#include "output/result_writer.hpp"
#include "ovsql/import/csv_import.hpp"
#include "ovsql/session/database.hpp"

namespace shell {

struct shell_settings {
  const output_mode* mode = nullptr;
  output_settings output = {};
  bool timer = false;
  bool explain = false;
  bool bail = false;
  bool interactive = false;  // say how many rows there were; Ctrl-C stops a statement
  std::size_t limit = 0;     // rows of a result that are shown; 0: all
};

// Runs statements and dot commands on one database and writes what comes of them.
class session {
 public:
  // The streams outlive the session.
  session(std::ostream& out, std::ostream& errors, const shell_settings& settings);

  // Runs a text of statements and dot commands. file: where it is from, for messages; empty for none.
  void run(std::string_view script, const std::string& file = {});

  // Runs the text of a file, or of standard input for "-".
  void run_file(const std::string& path);

  // Runs one dot command without its dot.
  void run_command(std::string_view line);

  // Whether anything has failed so far.
  bool failed() const { return failed_; }

  // Whether nothing more is to be run: .quit, or a failure with .bail.
  bool stopped() const { return quit_ || (failed_ && settings_.bail); }
  bool quits() const { return quit_; }

  // What dot commands work on.
  ovsql::database& database() { return database_; }
  shell_settings& settings() { return settings_; }
  std::ostream& out() { return *out_; }
  void quit() { quit_ = true; }
  void import(const std::string& path, const ovsql::csv_import_options& how = {});
  void write_to(const std::string& path);  // empty: to where the session wrote at first

 private:
  void run_next(std::string_view script, std::size_t& next);
  void run_statement(ovsql::statement& of);
  void run_without_rows(ovsql::statement& of);
  void write_rows(ovsql::statement& of);
  std::string why_enough(std::size_t rows) const;
  void note(const std::string& message);
  void write_lines(ovsql::statement& of);
  void report(const std::string& message);

  ovsql::database database_;
  shell_settings settings_;
  std::ostream& first_out_;
  std::ostream* out_;
  std::ofstream file_;
  std::ostream& errors_;
  std::string source_;     // the file that is being run
  std::size_t depth_ = 0;  // of files that read files
  bool failed_ = false;
  bool quit_ = false;
};

}  // namespace shell

#endif  // OVSQL_SESSION_HPP_
