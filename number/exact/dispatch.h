// Which kernels are in use, and a floating-point environment in which doubles do what the kernels count on.
#pragma once

#include <cstdint>

#include "number/exact/kernel.h"

#if !defined(__i386__) && !defined(__x86_64__)
#include <cfenv>
#endif

namespace quarn::exact {

/// The kernels in use, null when residues are not to be used: the processor has none of the instruction sets.
const Kernel* kernel_in_use() noexcept;

/// Those for small matrices: the narrowest ones that the processor runs, or the ones in use where a test has set these.
const Kernel* narrowest_kernel() noexcept;

/// Rounding to nearest and no exceptions in vector registers for a scope, whatever the caller has set.
class PlainRounding {
 public:
#if defined(__i386__) || defined(__x86_64__)
  // Written out: the 32-bit library is compiled without the instructions and asks the processor.
  PlainRounding() noexcept {
    const std::uint32_t plain = 0x1F80;
    __asm__ volatile("stmxcsr %0" : "=m"(saved_));
    __asm__ volatile("ldmxcsr %0" : : "m"(plain));
  }
  ~PlainRounding() { __asm__ volatile("ldmxcsr %0" : : "m"(saved_)); }
#else
  PlainRounding() noexcept {
    std::fegetenv(&saved_);
    std::fesetenv(FE_DFL_ENV);
  }
  ~PlainRounding() { std::fesetenv(&saved_); }
#endif
  PlainRounding(const PlainRounding&) = delete;
  PlainRounding& operator=(const PlainRounding&) = delete;

 private:
#if defined(__i386__) || defined(__x86_64__)
  std::uint32_t saved_;
#else
  std::fenv_t saved_;
#endif
};

}  // namespace quarn::exact
