#include "number/processor/vectors.h"

#include <atomic>
#include <initializer_list>

namespace quarn::processor {
namespace {

// Asked for when the library is loaded.
const Vectors fastest = [] {
  for (const Vectors vectors : {Vectors::bytes64, Vectors::bytes32, Vectors::bytes16}) {
    if (has(vectors)) {
      return vectors;
    }
  }
  return Vectors::none;
}();
std::atomic<Vectors> now = fastest;
std::atomic<bool> by_choice = false;

}  // namespace

bool has(Vectors vectors) noexcept {
#if defined(__i386__) || defined(__x86_64__)
  __builtin_cpu_init();
  switch (vectors) {
    case Vectors::bytes64:
      return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512dq") != 0;
    case Vectors::bytes32:
      return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
    case Vectors::bytes16:
      return __builtin_cpu_supports("sse2") != 0;
    case Vectors::none:
      break;
  }
  return true;
#else
  return vectors == Vectors::bytes16 || vectors == Vectors::none;
#endif
}

Vectors widest() noexcept { return fastest; }

Vectors in_use() noexcept { return now.load(std::memory_order_relaxed); }

bool chosen() noexcept { return by_choice; }

void choose(Vectors vectors) noexcept {
  now = vectors;
  by_choice = true;
}

void choose_widest() noexcept {
  now = fastest;
  by_choice = false;
}

}  // namespace quarn::processor
