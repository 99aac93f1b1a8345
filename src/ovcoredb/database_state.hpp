// What a database consists of, as the C interface sees it.
#ifndef OVCOREDB_DATABASE_STATE_HPP_
#define OVCOREDB_DATABASE_STATE_HPP_

#include <memory>
#include <vector>

#include "ovcoredb/contexts.hpp"
#include "ovcoredb/object_store.hpp"
#include "ovcoredb/ordered_index.hpp"

namespace ovcoredb {

struct database_state {
  object_store objects;
  std::vector<std::unique_ptr<ordered_index>> indexes;  // by handle, with gaps
  std::vector<std::uint64_t> index_handles;             // in the order of creation
  std::vector<context_state*> contexts;                 // open on this database

  const ordered_index* find_index(std::uint64_t handle) const {
    return handle < indexes.size() ? indexes[handle].get() : nullptr;
  }

  void before_write() {
    for (context_state* const each : contexts) each->before_write();
  }
};

}  // namespace ovcoredb

#endif  // OVCOREDB_DATABASE_STATE_HPP_
