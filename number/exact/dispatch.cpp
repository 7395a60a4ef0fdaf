#include "number/exact/dispatch.h"

#include <atomic>
#include <cstring>

#include "quarn/exact.h"

namespace quarn::exact {
namespace {

bool runs(const Kernel* kernel) noexcept {
  if (kernel == nullptr) {
    return false;
  }
#if defined(__i386__) || defined(__x86_64__)
  __builtin_cpu_init();
  if (kernel == kKernel64) {
    return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512dq") != 0;
  }
  if (kernel == kKernel32) {
    return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
  }
  return __builtin_cpu_supports("sse2") != 0;
#else
  return true;
#endif
}

const Kernel* best() noexcept {
  for (const Kernel* const kernel : {kKernel64, kKernel32, kKernel16}) {
    if (runs(kernel)) {
      return kernel;
    }
  }
  return nullptr;
}

// Chosen when the library is loaded.
const Kernel* const fastest = best();
std::atomic<const Kernel*> chosen = fastest;
std::atomic<bool> forced = false;

}  // namespace

const Kernel* kernel_in_use() noexcept { return chosen.load(std::memory_order_relaxed); }

const Kernel* narrowest_kernel() noexcept {
  const Kernel* const now = kernel_in_use();
  return now != nullptr && kKernel16 != nullptr && !forced ? kKernel16 : now;
}

}  // namespace quarn::exact

const char* QuarnExactKernel(const char* name) noexcept {
  using namespace quarn::exact;
  if (name != nullptr) {
    if (std::strcmp(name, "none") == 0) {
      chosen = nullptr;
    } else if (std::strcmp(name, "best") == 0) {
      chosen = fastest;
      forced = false;
    } else {
      const Kernel* found = nullptr;
      for (const Kernel* const kernel : {kKernel64, kKernel32, kKernel16}) {
        if (kernel != nullptr && std::strcmp(name, kernel->name) == 0 && runs(kernel)) {
          found = kernel;
        }
      }
      if (found == nullptr) {
        return nullptr;
      }
      chosen = found;
      forced = true;
    }
  }
  const Kernel* const now = kernel_in_use();
  return now != nullptr ? now->name : "none";
}
