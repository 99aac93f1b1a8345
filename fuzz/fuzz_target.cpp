// One target for the fuzzer, which calls this for each input; OV_FUZZ_CHECK names the check.
#include "fuzz/checks.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::OV_FUZZ_CHECK({data, size});
  return 0;
}
