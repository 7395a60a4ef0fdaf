// Bounds of single eigenvalues and singular values of sparse matrices, such as eigsh() and svds() find. Not part of
// tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "tesk2mp/krylov.hpp"
#include "tesk2mp/proven_sparse.hpp"

namespace tesk2mp::proven {

/// How far at most an eigenvalue of a symmetric or Hermitian matrix, whose entries are exact, is from a number: for any
/// vector v but 0 one is within ||A v - value v|| / ||v|| (B. N. Parlett, The Symmetric Eigenvalue Problem, theorem
/// 4.5.1). Nothing is said about which eigenvalue it is, nor how often it counts. Each row of the residual is rounded
/// once, so that its bound needs no norm of A; one product with A.
///
/// @code
/// const auto pairs = tesk2mp::eigsh(a, 3);
/// const tesk2mp::proven::NearEigenvalue<Real> near(a);
/// const QuarnBound error = near.distance(pairs.values[0], vector);  // of the first column of pairs.vectors
/// @endcode
template <Scalar T>
class NearEigenvalue {
 public:
  /// A triangle, or a whole matrix; throws InvalidArgument for one that is not its own adjoint, or gives an entry
  /// twice.
  explicit NearEigenvalue(const SparseMatrix<T>& a) : equations_(checked(a)), b_(a.order()), r_(a.order()) {
    const auto is_moderate = [](const T& x) { return detail::is_moderate(QuarnBound(x)); };
    is_moderate_ = std::all_of(a.values().begin(), a.values().end(), is_moderate);
  }

  /// Infinity where v is 0, or its elements or those of A are so near the ends of the range that products may leave it.
  QuarnBound distance(const Real& value, std::span<const T> v) {
    tesk2mp::detail::require(v.size() == b_.size(), "NEAR_EIGENVALUE", 3, "a vector of ", v.size(),
                             " elements for a matrix of order ", b_.size());
    const auto is_moderate = [](const T& x) { return detail::is_moderate(QuarnBound(x)); };
    if (!is_moderate_ || !detail::is_moderate(QuarnBound(value)) || !std::all_of(v.begin(), v.end(), is_moderate)) {
      return QuarnBound::infinity();
    }
    for (std::size_t i = 0; i < v.size(); ++i) {
      b_[i] = v[i] * T(value);
    }
    equations_.take(b_);
    const std::vector<QuarnBound> sizes = equations_.residual(std::vector<T>(v.begin(), v.end()), r_);
    QuarnBound squares;
    for (std::size_t i = 0; i < v.size(); ++i) {
      const QuarnBound size = sizes[i] + detail::SparseResidual<T>::rounding(b_[i], QuarnDigits());
      squares += size * size;
    }
    return sqrt(squares) * over_length(v);
  }

 private:
  static SparseMatrix<T> checked(const SparseMatrix<T>& a) {
    SparseMatrix<T> matrix(a.order());
    for (std::size_t k = 0; k < a.entries(); ++k) {
      matrix.add(a.row(k), a.column(k), a.value(k));
      if (a.storage() == Storage::lower_triangle && a.row(k) != a.column(k)) {
        matrix.add(a.column(k), a.row(k), tesk2mp::detail::mirrored(a.value(k)));
      }
    }
    static_cast<void>(matrix.canonicalise(Duplicates::fail, Zeros::keep));
    tesk2mp::detail::require(a.storage() == Storage::lower_triangle || is_hermitian(matrix), "NEAR_EIGENVALUE", 1,
                             "a matrix that is not its own adjoint");
    return matrix;
  }

  /// Not below 1 / ||v||. At 30 digits a sum of up to 2^33 squares, its root and the reciprocal lose less than 10^-17.
  static QuarnBound over_length(std::span<const T> v) {
    constexpr int kDigits = 30;
    constexpr int kLost = 17;
    const Digits scope(kDigits);
    Real squares = 0;
    for (const T& x : v) {
      if constexpr (tesk2mp::detail::kIsComplex<T>) {
        squares += x.re * x.re + x.im * x.im;
      } else {
        squares += x * x;
      }
    }
    if (!(squares > 0)) {
      return QuarnBound::infinity();
    }
    const QuarnBound reciprocal(1 / ::sqrt(squares));
    return reciprocal + reciprocal * QuarnBound::power_of_ten(-kLost);
  }

  detail::SparseResidual<T> equations_;
  std::vector<T> b_;
  std::vector<T> r_;
  bool is_moderate_ = true;
};

/// The same of singular values of a matrix of any shape, by the vectors u and v of A v = s u, A^H u = s v: those of
/// the Hermitian matrix (0, A; A^H, 0) are +-s, and 0 where A is not square.
template <Scalar T>
class NearSingularValue {
 public:
  explicit NearSingularValue(const SparseRectangle<T>& a)
      : rows_(a.rows()), is_square_(a.rows() == a.columns()), near_(doubled(a)) {}

  /// Infinity too where a value is negative, or below its bound may stand for one of those zeros.
  QuarnBound distance(const Real& value, std::span<const T> u, std::span<const T> v) {
    tesk2mp::detail::require(u.size() == rows_, "NEAR_SINGULAR_VALUE", 3, "a left vector of ", u.size(),
                             " elements for ", rows_, " rows");
    std::vector<T> both(u.begin(), u.end());
    both.insert(both.end(), v.begin(), v.end());
    const QuarnBound found = near_.distance(value, both);
    const bool is_apart = is_square_ ? !(value < 0) : found.is_finite() && found.value() < value;
    return is_apart ? found : QuarnBound::infinity();
  }

 private:
  static SparseMatrix<T> doubled(const SparseRectangle<T>& a) {
    SparseMatrix<T> result(a.rows() + a.columns());
    const SparseMatrix<T>& square = a.square();
    for (std::size_t k = 0; k < square.entries(); ++k) {
      const std::size_t i = square.row(k);
      const std::size_t j = a.rows() + square.column(k);
      result.add(i, j, square.value(k));
      result.add(j, i, tesk2mp::detail::mirrored(square.value(k)));
    }
    static_cast<void>(result.canonicalise(Duplicates::fail, Zeros::keep));
    return result;
  }

  std::size_t rows_;
  bool is_square_;
  NearEigenvalue<T> near_;
};

}  // namespace tesk2mp::proven
