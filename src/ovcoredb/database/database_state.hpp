// What a database consists of.
#ifndef OVCOREDB_DATABASE_DATABASE_STATE_HPP_
#define OVCOREDB_DATABASE_DATABASE_STATE_HPP_

#include <cstdint>
#include <memory>
#include <vector>

#include "ovcoredb/database/write_listener.hpp"
#include "ovcoredb/index/ordered_index.hpp"
#include "ovcoredb/storage/object_store.hpp"

namespace ovcoredb {

struct database_state {
  object_store objects;
  std::vector<std::unique_ptr<ordered_index>> indexes;  // by handle, with gaps
  std::vector<std::uint64_t> index_handles;             // in the order of creation
  std::vector<write_listener*> listeners;               // the contexts that are open on it

  const ordered_index* find_index(std::uint64_t handle) const {
    return handle < indexes.size() ? indexes[handle].get() : nullptr;
  }

  void before_write() {
    for (write_listener* const each : listeners) each->before_write();
  }
};

}  // namespace ovcoredb

#endif  // OVCOREDB_DATABASE_DATABASE_STATE_HPP_
