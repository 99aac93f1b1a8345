#include "ovsql/errors/error.hpp"

#include <algorithm>

#include "ovsql/errors/source_line.hpp"

namespace ovsql {

error::error(error_kind kind, const std::string& message, std::size_t position)
    : std::runtime_error(message), kind_(kind), position_(position) {}

error::~error() = default;

std::string error::describe(std::string_view sql) const {
  std::string text = std::string("error: ") + what();
  if (position_ != nowhere) text += "\n" + point_at(sql, position_);
  return text;
}

}  // namespace ovsql
