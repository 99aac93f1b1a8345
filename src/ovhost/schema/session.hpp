#ifndef OVHOST_SCHEMA_SESSION_HPP_
#define OVHOST_SCHEMA_SESSION_HPP_

#include <cstdint>

#include "ovcoredb/database.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// A context on a database for the calling thread, which is also the context that the thread's metadata are read on
// while the session lives. A thread's sessions end in the reverse order of their beginning.
class OVHOST_API session {
 public:
  // The database outlives it. Throws std::runtime_error when too many contexts are open.
  explicit session(const ovcoredb::database& database);
  ~session();
  session(const session&) = delete;
  session& operator=(const session&) = delete;

  // To run statements with. Valid as long as the session.
  std::uint64_t context() const { return context_.handle(); }

 private:
  ovcoredb::context context_;
  std::uint64_t previous_;
};

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_SESSION_HPP_
