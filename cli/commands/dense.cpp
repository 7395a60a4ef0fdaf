#include "cli/commands/dense.h"

#include <algorithm>

#include "cli/commands/failure.h"

namespace cli {

namespace {

template <class T>
tesk2mp::Matrix<T> shaped_like(const DenseMatrix& matrix) {
  return {std::size_t(matrix.rows), std::size_t(matrix.columns)};
}

template <class T>
DenseMatrix dense_of(const tesk2mp::Matrix<T>& matrix, bool complex) {
  DenseMatrix result;
  result.rows = Integer(matrix.rows());
  result.columns = Integer(matrix.columns());
  result.complex = complex;
  result.values.assign(matrix.data(), matrix.data() + matrix.rows() * matrix.columns());
  return result;
}

}  // namespace

DenseMatrix read_operand(const std::string& file, bool square) {
  DenseMatrix matrix = read_dense_matrix(file);
  if (square && matrix.rows != matrix.columns) {
    throw bad_input(matrix.source + ": " + std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) +
                    ", but a square matrix is needed");
  }
  return matrix;
}

tesk2mp::Matrix<QuarnFloat> real_matrix(const DenseMatrix& matrix) {
  auto result = shaped_like<QuarnFloat>(matrix);
  std::transform(matrix.values.begin(), matrix.values.end(), result.data(), [](const Complex& z) { return z.re; });
  return result;
}

tesk2mp::Matrix<Complex> complex_matrix(const DenseMatrix& matrix) {
  auto result = shaped_like<Complex>(matrix);
  std::copy(matrix.values.begin(), matrix.values.end(), result.data());
  return result;
}

DenseMatrix dense(const tesk2mp::Matrix<QuarnFloat>& matrix) { return dense_of(matrix, false); }
DenseMatrix dense(const tesk2mp::Matrix<Complex>& matrix) { return dense_of(matrix, true); }

std::string exact_text(const QuarnFloat& value) { return value.to_string(); }

std::string exact_text(const Complex& value) {
  return value.re.to_string() + (signbit(value.im) ? "-" : "+") + fabs(value.im).to_string() + "i";
}

}  // namespace cli
