// Working digits for the length of a test.
#pragma once

#include "quarn/quarnfloat.h"

namespace support {

class Digits {
 public:
  explicit Digits(int digits) : former_(QuarnSetDigits(digits)) {}
  ~Digits() { QuarnSetDigits(former_); }
  Digits(const Digits&) = delete;
  Digits& operator=(const Digits&) = delete;

 private:
  int former_;
};

}  // namespace support
