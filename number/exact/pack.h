// Numbers as residues: rows and columns aligned to an exponent each, cut into digits of 10^6, the digits turned into
// residues a batch at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "number/exact/kernel.h"
#include "number/exact/operand.h"
#include "number/scalar/access.h"

namespace quarn::exact {

/// What the numbers of a row of the left operand, or of a column of the right one, have in common.
struct Line {
  std::int64_t top = INT64_MIN;  // every number is below 10^top; INT64_MIN if all are zero
  std::int64_t low = INT64_MAX;  // and a multiple of 10^low
  bool finite = true;            // neither infinities nor NaN
  bool exactly = false;          // not by residues: entries are sums of limbs

  void take(const QuarnFloat& x) noexcept;
  /// Digits of 10^6 that hold every number.
  std::int64_t digits() const noexcept { return top == INT64_MIN ? 0 : (top - low + 5) / 6; }
  std::int64_t exponent() const noexcept { return top == INT64_MIN ? 0 : top; }
};

/// Entries in the order of their places, turned into residues.
class Packer {
 public:
  /// Doubles of working storage for numbers of so many digits, and limbs.
  static std::size_t digits_size(const Kernel& kernel, int count) noexcept;
  static std::size_t limbs_size(int count) noexcept;

  Packer(const Kernel& kernel, const Tables& tables, int count, double* digits, Limb* limbs, double* out,
         std::size_t stride) noexcept
      : kernel_(kernel), tables_(tables), count_(count), digits_(digits), limbs_(limbs), out_(out), stride_(stride) {}

  void put(const Entry& entry, const Line& line) noexcept;
  void put_zero() noexcept;
  /// Fills the last group with zeros.
  void finish() noexcept;

 private:
  static constexpr std::size_t kBatch = 8;  // groups

  double* place() const noexcept;
  void next() noexcept;
  void flush(std::size_t groups) noexcept;

  const Kernel& kernel_;
  const Tables& tables_;
  int count_;
  double* digits_;
  Limb* limbs_;
  double* out_;
  std::size_t stride_;
  std::size_t group_ = 0;
  int row_ = 0;
};

}  // namespace quarn::exact
