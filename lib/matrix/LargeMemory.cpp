#include "matrix/LargeMemory.h"

#include <cstdint>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

// As operator new: the handler of missing memory is asked first.
void* ZeroedMemory(std::size_t bytes) {
  void* memory = nullptr;
  while ((memory = std::calloc(bytes, 1)) == nullptr) {
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
  UseLargePages(memory, bytes);
  return memory;
}

void UseLargePages([[maybe_unused]] void* start, [[maybe_unused]] std::size_t bytes) {
#ifdef __linux__
  constexpr std::uintptr_t kLargePage = 1U << 21;
  const auto begin = reinterpret_cast<std::uintptr_t>(start);
  const std::uintptr_t first = (begin + kLargePage - 1) / kLargePage * kLargePage;
  const std::uintptr_t end = (begin + bytes) / kLargePage * kLargePage;
  if (first < end) madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
#endif
}
