#include "number/exact/dispatch.h"

#include <cstring>

#include "quarn/exact.h"

namespace quarn::exact {
namespace {

using processor::Vectors;

constexpr Vectors kWidestFirst[] = {Vectors::bytes64, Vectors::bytes32, Vectors::bytes16};

/// Null where the compiler has no such instructions.
const Kernel* kernel_for(Vectors vectors) noexcept {
  switch (vectors) {
    case Vectors::bytes64:
      return kKernel64;
    case Vectors::bytes32:
      return kKernel32;
    case Vectors::bytes16:
      return kKernel16;
    case Vectors::none:
      break;
  }
  return nullptr;
}

/// Whether there are kernels of that name and the processor runs them; they are then in use.
bool choose(const char* name) noexcept {
  if (std::strcmp(name, "none") == 0) {
    processor::choose(Vectors::none);
    return true;
  }
  if (std::strcmp(name, "best") == 0) {
    processor::choose_widest();
    return true;
  }
  for (const Vectors vectors : kWidestFirst) {
    const Kernel* const kernel = kernel_for(vectors);
    if (kernel != nullptr && std::strcmp(name, kernel->name) == 0 && processor::has(vectors)) {
      processor::choose(vectors);
      return true;
    }
  }
  return false;
}

}  // namespace

const Kernel* kernel_in_use() noexcept {
  for (const Vectors vectors : kWidestFirst) {
    if (vectors <= processor::in_use() && kernel_for(vectors) != nullptr) {
      return kernel_for(vectors);
    }
  }
  return nullptr;
}

const Kernel* narrowest_kernel() noexcept {
  const Kernel* const now = kernel_in_use();
  return now != nullptr && kKernel16 != nullptr && !processor::chosen() ? kKernel16 : now;
}

}  // namespace quarn::exact

const char* QuarnExactKernel(const char* name) noexcept {
  using namespace quarn::exact;
  if (name != nullptr && !choose(name)) {
    return nullptr;
  }
  const Kernel* const now = kernel_in_use();
  return now != nullptr ? now->name : "none";
}
