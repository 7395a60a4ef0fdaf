// Another working precision for the length of a scope.
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

class WorkingDigits {
 public:
  explicit WorkingDigits(int digits) : former_(QuarnSetDigits(digits)) {}
  ~WorkingDigits() { QuarnSetDigits(former_); }
  WorkingDigits(const WorkingDigits&) = delete;
  WorkingDigits& operator=(const WorkingDigits&) = delete;

 private:
  int former_;
};

}  // namespace tesk
