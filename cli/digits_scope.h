// More digits for the length of a computation.
#pragma once

#include <algorithm>

#include "cli/options.h"
#include "quarn/quarnfloat.h"

namespace cli {

/// The working precision is so many digits, or the most there are, while this lives.
class DigitsScope {
 public:
  explicit DigitsScope(int digits) : former_(QuarnSetDigits(std::min(digits, kMostDigits))) {}
  ~DigitsScope() { QuarnSetDigits(former_); }
  DigitsScope(const DigitsScope&) = delete;
  DigitsScope& operator=(const DigitsScope&) = delete;

 private:
  int former_;
};

}  // namespace cli
