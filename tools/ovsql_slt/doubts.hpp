#ifndef OVSQL_SLT_DOUBTS_HPP_
#define OVSQL_SLT_DOUBTS_HPP_

#include <map>
#include <string>
#include <string_view>

#include "verdict.hpp"

namespace slt {

// Which tables and views of a file are no longer what it expects, since statements failed that should have changed
// them. Results that depend on them say nothing.
class doubts {
 public:
  // A statement that should have been done failed.
  void failed(std::string_view sql, const verdict& how);

  // A statement was done: what it drops or makes anew is as expected, what it makes of doubtful tables is not.
  void done(std::string_view sql);

  // Returns why the result of a statement says nothing, as the verdict on it; null if it depends on nothing doubtful.
  // Valid until: the next change.
  const verdict* about(std::string_view sql) const;

 private:
  std::map<std::string, verdict> reasons_;  // by name in lower case
};

}  // namespace slt

#endif  // OVSQL_SLT_DOUBTS_HPP_
