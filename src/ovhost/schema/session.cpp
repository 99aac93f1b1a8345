#include "ovhost/schema/session.hpp"

#include <utility>

#include "ovdbmetalayer/metalayer.hpp"

namespace ovhost {

session::session(const ovcoredb::database& database)
    : context_(database), previous_(std::exchange(metalayer::TlsMetalayerContext::Current(), context_.handle())) {}

session::~session() { metalayer::TlsMetalayerContext::Current() = previous_; }

}  // namespace ovhost
