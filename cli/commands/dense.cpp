#include "cli/commands/dense.h"

#include "cli/commands/failure.h"

namespace cli {

DenseMatrix read_operand(const std::string& file, const TableOptions& options, bool square) {
  DenseMatrix matrix = read_dense_matrix(file, options);
  if (square && matrix.rows() != matrix.columns()) {
    throw bad_input(matrix.source + ": " + std::to_string(matrix.rows()) + " by " + std::to_string(matrix.columns()) +
                    ", but a square matrix is needed");
  }
  return matrix;
}

std::string exact_text(const QuarnFloat& value) { return value.to_string(); }

std::string exact_text(const Complex& value) {
  return value.re.to_string() + (signbit(value.im) ? "-" : "+") + fabs(value.im).to_string() + "i";
}

namespace {

template <class T>
std::string text_of_product(const T& mantissa, std::int64_t exponent, const std::string& beyond) {
  constexpr std::int64_t kFarthest = 999999999;
  if (exponent >= -kFarthest && exponent <= kFarthest) {
    return exact_text(T(mantissa * T(QuarnFloat(1, int(exponent)))));
  }
  return beyond + "e" + std::to_string(exponent);
}

}  // namespace

std::string determinant_text(const QuarnFloat& mantissa, std::int64_t exponent) {
  return text_of_product(mantissa, exponent, exact_text(mantissa));
}

std::string determinant_text(const Complex& mantissa, std::int64_t exponent) {
  return text_of_product(mantissa, exponent, "(" + exact_text(mantissa) + ")");
}

}  // namespace cli
