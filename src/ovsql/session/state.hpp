#ifndef OVSQL_SESSION_STATE_HPP_
#define OVSQL_SESSION_STATE_HPP_

#include <cstdint>
#include <memory>

#include "ovcoredb/database.hpp"
#include "ovdbmetalayer/metalayer.hpp"
#include "ovhost/schema/schema.hpp"
#include "ovsql/catalog/catalog.hpp"
#include "ovsql/session/database.hpp"

namespace ovsql {

// What a database and its statements share.
struct database_state {
  std::unique_ptr<ovcoredb::database> own_core;
  std::unique_ptr<ovhost::schema> own_schema;
  ovcoredb::database* core = nullptr;
  ovhost::schema* schema = nullptr;
  options how{};
  std::unique_ptr<ovcoredb::context> context;
  ovsql::catalog catalog{};
  std::uint64_t version = 1;  // of the catalog: changes with it

  void read_catalog() {
    catalog.read(context->handle());
    ++version;
  }

  // Counts the table's rows once; what this layer inserts is added.
  double row_count(const table& of);
};

// Has the thread's metadata read on a context while it lives.
class metadata_scope {
 public:
  explicit metadata_scope(const database_state& of) : before_(metalayer::TlsMetalayerContext::Current()) {
    metalayer::TlsMetalayerContext::Current() = of.context->handle();
  }
  ~metadata_scope() { metalayer::TlsMetalayerContext::Current() = before_; }
  metadata_scope(const metadata_scope&) = delete;
  metadata_scope& operator=(const metadata_scope&) = delete;

 private:
  std::uint64_t before_;
};

}  // namespace ovsql

#endif  // OVSQL_SESSION_STATE_HPP_
