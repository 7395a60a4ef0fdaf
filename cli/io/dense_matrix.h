// Dense matrices as the console has them: real or complex, with the name of their input.
#pragma once

#include <algorithm>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "quarn/quarnfloat.h"
#include "tesk2mp/views.hpp"

namespace cli {

using RealMatrix = tesk2mp::Matrix<QuarnFloat>;
using ComplexMatrix = tesk2mp::Matrix<Complex>;

struct DenseMatrix {
  std::string source;
  std::variant<RealMatrix, ComplexMatrix> elements;

  Integer rows() const {
    return std::visit([](const auto& a) { return Integer(a.rows()); }, elements);
  }
  Integer columns() const {
    return std::visit([](const auto& a) { return Integer(a.columns()); }, elements);
  }
  bool complex() const { return elements.index() == 1; }
};

/// A matrix out of its elements, column by column.
template <class T>
tesk2mp::Matrix<T> matrix_of(const std::vector<T>& elements, std::size_t rows) {
  tesk2mp::Matrix<T> matrix(rows, rows == 0 ? 0 : elements.size() / rows);
  std::copy(elements.begin(), elements.end(), matrix.data());
  return matrix;
}

/// The elements, column by column; as reals only those of a real matrix.
template <class T>
std::vector<T> elements_of(const DenseMatrix& matrix) {
  const auto copied = [](const auto& a) { return std::vector<T>(a.data(), a.data() + a.rows() * a.columns()); };
  if constexpr (std::is_same_v<T, QuarnFloat>) {
    return copied(std::get<RealMatrix>(matrix.elements));
  } else {
    return std::visit(copied, matrix.elements);
  }
}

}  // namespace cli
