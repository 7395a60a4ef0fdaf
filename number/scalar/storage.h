// Storage of long coefficients: blocks of limbs, recycled through the thread's free lists by size class.
#pragma once

#include <cstddef>
#include <cstdint>

#include "number/limbs/radix.h"

namespace quarn {

/// A block of at least `wanted` limbs; `capacity` receives its true size. Throws std::bad_alloc.
Radix::Limb* acquire_limbs(std::size_t wanted, std::uint32_t& capacity);
void recycle_limbs(Radix::Limb* limbs, std::uint32_t capacity) noexcept;

/// Working storage for `size` limbs, not initialised: on the stack up to kInside limbs.
template <std::size_t kInside = 48>
class LimbBuffer {
 public:
  explicit LimbBuffer(std::size_t size) : limbs_(size <= kInside ? inside_ : acquire_limbs(size, capacity_)) {}
  ~LimbBuffer() {
    if (limbs_ != inside_) {
      recycle_limbs(limbs_, capacity_);
    }
  }
  LimbBuffer(const LimbBuffer&) = delete;
  LimbBuffer& operator=(const LimbBuffer&) = delete;

  operator Radix::Limb*() noexcept { return limbs_; }

 private:
  std::uint32_t capacity_ = 0;
  Radix::Limb inside_[kInside];
  Radix::Limb* limbs_;
};

}  // namespace quarn
