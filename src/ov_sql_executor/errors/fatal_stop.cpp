#include "ov_sql_executor/errors/fatal_stop.hpp"

#if defined(_WIN32)
#include <windows.h>
#else
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#endif
#include <cstdlib>

namespace error_handling {

void stop_process(std::uint32_t code, std::uint64_t first_argument) noexcept {
#if defined(_WIN32)
  const ULONG_PTR arguments[] = {static_cast<ULONG_PTR>(first_argument), GetLastError()};
  RaiseException(code, EXCEPTION_NONCONTINUABLE, 2, arguments);
#else
  std::fprintf(stderr, "fatal: structured exception 0x%08" PRIX32 " (%" PRIu64 ", %d)\n", code, first_argument, errno);
#endif
  std::abort();
}

}  // namespace error_handling
