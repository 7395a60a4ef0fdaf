// operator new of the whole program, made to fail at will. Included by one source of a test program.
#pragma once

#include <cstdlib>
#include <new>

namespace support {

/// How many allocations there were, and which one fails: the `first`, alone or with all after it; 0: none.
struct Allocations {
  long count = 0;
  long first = 0;
  bool once = false;

  /// From now on the k-th allocation fails.
  void fail(long k, bool alone) {
    count = 0;
    first = k;
    once = alone;
  }
  void stop_failing() { first = 0; }
};
inline Allocations allocations;

inline void* allocate(std::size_t size, std::size_t alignment) {
  ++allocations.count;
  if (allocations.first != 0 &&
      (allocations.once ? allocations.count == allocations.first : allocations.count >= allocations.first)) {
    throw std::bad_alloc();
  }
  void* const made = std::aligned_alloc(alignment, (size + alignment) / alignment * alignment);
  if (made == nullptr) {
    throw std::bad_alloc();
  }
  return made;
}

}  // namespace support

void* operator new(std::size_t size) { return support::allocate(size, 16); }
// As std::inplace_merge asks for its buffer.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return support::allocate(size, std::size_t(alignment));
}
// Inlined where operator new is not, they would look like a mismatch to the compiler.
[[gnu::noinline]] void operator delete(void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
