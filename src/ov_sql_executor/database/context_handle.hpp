#ifndef OV_SQL_EXECUTOR_DATABASE_CONTEXT_HANDLE_HPP_
#define OV_SQL_EXECUTOR_DATABASE_CONTEXT_HANDLE_HPP_

#include <cstdint>

#include "ov_sql_executor/errors/export.hpp"

namespace db_util {

// Holds a context handle of the core; does not own the context.
class OV_SQL_EXECUTOR_API ContextHandle {
 public:
  ContextHandle();  // 0, no context
  explicit ContextHandle(std::uint64_t handle);
  ContextHandle(const ContextHandle&) = default;
  ContextHandle& operator=(const ContextHandle& other);
  ContextHandle& operator=(ContextHandle&& other) noexcept;

  std::uint64_t context_handle() const;

 private:
  std::uint64_t handle_;
};

}  // namespace db_util

namespace metalayer {

// The calling thread's metadata-layer context. Has no state: assigning one to another does nothing.
class OV_SQL_EXECUTOR_API TlsContextHandle {
 public:
  TlsContextHandle() = default;
  TlsContextHandle(const TlsContextHandle&) = default;
  TlsContextHandle& operator=(const TlsContextHandle& other);
  TlsContextHandle& operator=(TlsContextHandle&& other) noexcept;

  static std::uint64_t context_handle();
};

}  // namespace metalayer

#endif  // OV_SQL_EXECUTOR_DATABASE_CONTEXT_HANDLE_HPP_
