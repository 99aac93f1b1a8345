#ifndef OVSQL_SLT_VERDICT_HPP_
#define OVSQL_SLT_VERDICT_HPP_

#include <cstdint>
#include <string>

namespace slt {

enum class outcome : std::uint8_t { right, wrong, unsupported, error };

// What came of a record, and why where it is not right.
struct verdict {
  outcome is = outcome::right;
  std::string reason = {};
};

}  // namespace slt

#endif  // OVSQL_SLT_VERDICT_HPP_
