// Which vectors of doubles are in use, and a floating-point environment in which they do what kernels count on.
#pragma once

#include <cstdint>

#if !defined(__i386__) && !defined(__x86_64__)
#include <cfenv>
#endif

namespace quarn::processor {

/// By their bytes: SSE2, AVX2 with FMA, AVX-512 on x86, and 16 bytes on other processors.
enum class Vectors : int { none = 0, bytes16 = 16, bytes32 = 32, bytes64 = 64 };

bool has(Vectors vectors) noexcept;

/// The widest ones that the processor has.
Vectors widest() noexcept;

/// The widest ones to be used; those of the processor until a test or a benchmark chooses others.
Vectors in_use() noexcept;
bool chosen() noexcept;
void choose(Vectors vectors) noexcept;
void choose_widest() noexcept;

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

}  // namespace quarn::processor
