#include "ov_sql_executor/expressions/constants.hpp"

#include <boost/numeric/conversion/cast.hpp>
#include <utility>

namespace ov::sql_executor {

std::int16_t to_position(std::uint64_t index) { return boost::numeric_cast<std::int16_t>(index); }

std::int16_t add_constant(std::vector<value>& constants, value literal) {
  constants.push_back(std::move(literal));
  return to_position(constants.size() - 1);
}

}  // namespace ov::sql_executor
