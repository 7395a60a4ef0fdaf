#include "cli/commands/linear_system.h"

#include <algorithm>

#include "cli/commands/command.h"
#include "cli/commands/failure.h"
#include "cli/io/matrix_input.h"
#include "tesk2mp/error.hpp"

namespace cli {

namespace {

template <class T>
QuarnFloat norm(const std::vector<T>& x) {
  return tesk2mp::norm(tesk2mp::Norm::frobenius, tesk2mp::MatrixView<const T>(x, x.size(), 1));
}

// Sums duplicates, keeps zeros.
template <class T>
tesk2mp::SparseMatrix<T> canonical(const SparseMatrix& matrix, const std::vector<T>& values) {
  tesk2mp::SparseMatrix<T> a(std::size_t(matrix.rows));
  for (std::size_t k = 0; k < values.size(); ++k) {
    a.add(std::size_t(matrix.row[k]) - 1, std::size_t(matrix.column[k]) - 1, values[k]);
  }
  a.canonicalise(tesk2mp::Duplicates::sum, tesk2mp::Zeros::keep);
  return a;
}

template <class T>
Equations<T> equations_of(const SparseMatrix& matrix, const std::vector<T>& values, std::vector<T> b) {
  Equations<T> equations{canonical(matrix, values), std::move(b)};
  if (equations.b.empty()) {
    equations.b = equations.a.multiply(std::vector<T>(std::size_t(matrix.rows), T(1)));
  }
  return equations;
}

}  // namespace

LinearSystem linear_system(const SparseMatrix& matrix, const DenseMatrix* b) {
  if (matrix.rows != matrix.columns || matrix.rows < 1) {
    throw bad_input(matrix.source + ": " + std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) +
                    ", but a system needs a square matrix");
  }
  if (b != nullptr && b->rows() != matrix.rows) {
    throw bad_input(matrix.source + ": order " + std::to_string(matrix.rows) + ", but the right side has " +
                    std::to_string(b->rows()) + (b->rows() == 1 ? " number" : " numbers"));
  }
  const SparseMatrix whole = expanded(matrix);
  if (matrix.complex() || (b != nullptr && b->complex())) {
    return {matrix.source, matrix.rows,
            equations_of(whole, whole.values, b == nullptr ? std::vector<Complex>() : elements_of<Complex>(*b))};
  }
  return {matrix.source, matrix.rows,
          equations_of(whole, real_parts(whole.values),
                       b == nullptr ? std::vector<QuarnFloat>() : elements_of<QuarnFloat>(*b))};
}

std::variant<tesk2mp::SparseMatrix<QuarnFloat>, tesk2mp::SparseMatrix<Complex>> assembled(const SparseMatrix& matrix) {
  const SparseMatrix whole = expanded(matrix);
  if (matrix.complex()) {
    return canonical(whole, whole.values);
  }
  return canonical(whole, real_parts(whole.values));
}

template <class T>
QuarnFloat relative_residual(const Equations<T>& equations, const std::vector<T>& x) {
  const tesk2mp::Digits twice(int(std::min<Integer>(2 * QuarnDigits(), kMostDigits)));
  std::vector<T> residual = equations.a.multiply(x);
  for (std::size_t i = 0; i < residual.size(); ++i) {
    residual[i] = equations.b[i] - residual[i];
  }
  const QuarnFloat size = norm(equations.b);
  return size == 0 ? norm(residual) : norm(residual) / size;
}

template QuarnFloat relative_residual(const Equations<QuarnFloat>&, const std::vector<QuarnFloat>&);
template QuarnFloat relative_residual(const Equations<Complex>&, const std::vector<Complex>&);

}  // namespace cli
