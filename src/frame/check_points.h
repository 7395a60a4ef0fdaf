// Where long work of the library may be interrupted (quarnthread.h).
#pragma once

#include "quarn/quarnthread.h"

namespace tesk {

/// A check point once every kBetween operations on numbers, for loops in which one at each turn would cost. Numbers of
/// thousands of digits are check points themselves.
class CheckPoints {
 public:
  /// So many operations were done.
  void pass(std::ptrdiff_t operations) {
    done_ += operations;
    if (done_ >= kBetween) {
      done_ = 0;
      QuarnCheckInterrupt();
    }
  }

 private:
  static constexpr std::ptrdiff_t kBetween = 512;

  std::ptrdiff_t done_ = 0;
};

}  // namespace tesk
