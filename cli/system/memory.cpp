#include "cli/system/memory.h"

#include <cmath>
#include <cstdio>

#include "cli/commands/failure.h"
#include "quarn/quarnfloat.h"
#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace cli {

namespace {

double physical_memory() {
#if defined(_WIN32)
  return 2147483648.0;  // the address space of a 32-bit process
#else
  return double(sysconf(_SC_PHYS_PAGES)) * double(sysconf(_SC_PAGESIZE));
#endif
}

}  // namespace

std::size_t bytes_per_number(int digits) {
  const std::size_t limbs = std::size_t(digits) / QuarnFloat::kLimbDigits + 2;
  return sizeof(QuarnFloat) + (limbs > std::size_t(QuarnFloat::kInlineLimbs) ? limbs * sizeof(QuarnFloat::Limb) : 0);
}

void require_bytes(double bytes, const std::string& purpose) {
  if (bytes > physical_memory()) {
    constexpr double kGigabyte = 1e9;
    char sizes[80];
    std::snprintf(sizes, sizeof sizes, "%.1f GB of memory, this machine has %.1f GB", bytes / kGigabyte,
                  physical_memory() / kGigabyte);
    throw bad_input(purpose + " needs " + sizes);
  }
}

void require_memory(double numbers, const std::string& purpose) {
  require_bytes(numbers * double(bytes_per_number(QuarnDigits())),
                purpose + " at " + std::to_string(QuarnDigits()) + " digits");
}

}  // namespace cli
