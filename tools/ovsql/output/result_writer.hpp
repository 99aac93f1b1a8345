#ifndef OVSQL_OUTPUT_RESULT_WRITER_HPP_
#define OVSQL_OUTPUT_RESULT_WRITER_HPP_

#include <cstddef>
#include <memory>
#include <ostream>
#include <span>
#include <string_view>

#include "ovsql/session/statement.hpp"

namespace shell {

struct output_settings {
  bool headers = true;
  std::size_t width = 0;  // of the terminal; 0: lines may be of any length
  bool colours = false;
};

// Writes the rows of one statement in some form.
class result_writer {
 public:
  virtual ~result_writer() = default;

  // Requires: of has been stepped to the row.
  virtual void add(const ovsql::statement& row) = 0;

  // Writes what is left. Called once, after the last row.
  virtual void end() = 0;
};

// A form of output, by its name.
struct output_mode {
  std::string_view name;
  std::string_view help;
  std::unique_ptr<result_writer> (*make)(const ovsql::statement& of, std::ostream& out, const output_settings& how);
};

std::span<const output_mode> output_modes();

// Returns null for a name that there is none of. Valid until: the program ends.
const output_mode* find_output_mode(std::string_view name);

}  // namespace shell

#endif  // OVSQL_OUTPUT_RESULT_WRITER_HPP_
