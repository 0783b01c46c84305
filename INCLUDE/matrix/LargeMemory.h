#ifndef MATRIX_LARGEMEMORY_H
#define MATRIX_LARGEMEMORY_H

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <type_traits>

/// Memory of long tables and texts. The system hands it out zeroed and page by page; setting it to
/// zero once more, and a page fault every 4 KiB, take longer than filling it.

/// Objects of all zero bytes are those of T's default value. To be specialised by a class of
/// numbers that are 0 by default and that needs no destructor.
template <typename T> inline constexpr bool kIsZeroByDefault = std::is_arithmetic_v<T>;

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};

/// \p bytes that are zero, to be given back by FreeMemory. Where there are not as many, what
/// operator new does then.
void* ZeroedMemory(std::size_t bytes);

/// Asks for large pages where the range holds whole ones. A hint: without them nothing changes but
/// the time.
void UseLargePages(void* start, std::size_t bytes);

/// An array of elements of T's default value.
template <typename T>
using DefaultedArray =
    std::conditional_t<kIsZeroByDefault<T>, std::unique_ptr<T[], FreeMemory>, std::unique_ptr<T[]>>;

template <typename T> DefaultedArray<T> MakeDefaulted(std::size_t n) {
  if constexpr (kIsZeroByDefault<T>) {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    return DefaultedArray<T>(static_cast<T*>(ZeroedMemory(n * sizeof(T))));
  } else {
    return std::make_unique<T[]>(n);
  }
}

#endif
