#include "ov_sql_executor/database/context_handle.hpp"

#include "ovdbmetalayer/metalayer.hpp"

namespace db_util {

ContextHandle::ContextHandle() : handle_(0) {}
ContextHandle::ContextHandle(std::uint64_t handle) : handle_(handle) {}
ContextHandle& ContextHandle::operator=(const ContextHandle& other) = default;
ContextHandle& ContextHandle::operator=(ContextHandle&& other) noexcept = default;

std::uint64_t ContextHandle::context_handle() const { return handle_; }

}  // namespace db_util

namespace metalayer {

TlsContextHandle& TlsContextHandle::operator=(const TlsContextHandle&) = default;
TlsContextHandle& TlsContextHandle::operator=(TlsContextHandle&&) noexcept = default;

std::uint64_t TlsContextHandle::context_handle() { return TlsMetalayerContext::Current(); }

}  // namespace metalayer
