#ifndef OVHOST_SCHEMA_SESSION_HPP_
#define OVHOST_SCHEMA_SESSION_HPP_

#include <cstdint>

#include "ovcoredb/database.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// A context on a database for the calling thread. While the session lives, the thread's metadata are read on it, too.
// Requires: a thread's sessions end in the reverse order of their beginning.
class OVHOST_API session {
 public:
  // Requires: the database outlives the session. Throws std::runtime_error when too many contexts are open.
  explicit session(const ovcoredb::database& database);
  ~session();
  session(const session&) = delete;
  session& operator=(const session&) = delete;

  // A context to run statements with. Valid until: the session ends.
  std::uint64_t context() const { return context_.handle(); }

 private:
  ovcoredb::context context_;
  std::uint64_t previous_;
};

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_SESSION_HPP_
