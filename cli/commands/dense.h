// Dense matrices as operands of commands.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "cli/io/matrix_input.h"
#include "cli/io/result.h"
#include "tesk2mp/linear.hpp"

namespace cli {

/// Reads a dense matrix; throws Failure when `square` is asked for and it is not.
DenseMatrix read_operand(const std::string& file, const TableOptions& options, bool square);

/// A number as one text, exact: "1.5", "1.5-2i".
std::string exact_text(const QuarnFloat& value);
std::string exact_text(const Complex& value);
/// mantissa 10^exponent as a number, or what stands for it beyond the exponents of numbers: "2.5e1000000007".
std::string determinant_text(const QuarnFloat& mantissa, std::int64_t exponent);
std::string determinant_text(const Complex& mantissa, std::int64_t exponent);

/// Determinants of several computations, wherever they are, as numbers that can be compared: beside the power of ten of
/// the first one that is not 0.
class ComparedDeterminants {
 public:
  template <class T>
  T scaled(const T& mantissa, std::int64_t exponent) {
    constexpr std::int64_t kFarthest = 100'000'000;  // of another one, which has no digit in common then
    if (mantissa == T()) {
      return mantissa;
    }
    exponent_ = exponent_.value_or(exponent);
    return mantissa * T(QuarnFloat(1, int(std::clamp(exponent - *exponent_, -kFarthest, kFarthest))));
  }
  template <class T>
  std::string text(const T& scaled) const {
    const Complex parts = scaled;
    const QuarnFloat size = std::max(fabs(parts.re), fabs(parts.im));
    if (size == 0 || !isfinite(size)) {
      return determinant_text(size == 0 ? T() : scaled, 0);
    }
    const long places = decimal_exponent(size);
    return determinant_text(T(scaled * T(QuarnFloat(1, int(-places)))), exponent_.value_or(0) + places);
  }

 private:
  std::optional<std::int64_t> exponent_;
};

}  // namespace cli
