#include "Harness.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    RunTarget(FuzzTargets().front(), {reinterpret_cast<const char*>(data), size});
  } catch (const BrokenProperty& broken) {
    std::fprintf(stderr, "%s\n", broken.what());
    std::abort();
  }
  return 0;
}
