// Dense matrices between files and the library's C++ interface.
#pragma once

#include "cli/io/matrix_input.h"
#include "tesk2mp/tesk2mp.hpp"

namespace cli {

/// Reads a dense matrix; throws Failure when `square` is asked for and it is not.
DenseMatrix read_operand(const std::string& file, bool square);

tesk2mp::Matrix<QuarnFloat> real_matrix(const DenseMatrix& matrix);
tesk2mp::Matrix<Complex> complex_matrix(const DenseMatrix& matrix);
DenseMatrix dense(const tesk2mp::Matrix<QuarnFloat>& matrix);
DenseMatrix dense(const tesk2mp::Matrix<Complex>& matrix);

/// work(a), where a is the matrix as a tesk2mp::Matrix of its own kind of numbers.
template <class Work>
auto with_elements(const DenseMatrix& matrix, const Work& work) {
  return matrix.complex ? work(complex_matrix(matrix)) : work(real_matrix(matrix));
}

/// A number as one text, exact: "1.5", "1.5-2i".
std::string exact_text(const QuarnFloat& value);
std::string exact_text(const Complex& value);

}  // namespace cli
