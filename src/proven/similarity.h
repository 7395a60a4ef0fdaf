// How far (B X)^-1 A X is from a block diagonal matrix M, element by element: S. Miyajima, Numerical enclosure for each
// eigenvalue in generalized eigenvalue problem, J. Comput. Appl. Math. 236 (2012), with blocks for those that are not
// apart.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "src/proven/norms.h"

namespace tesk::proven {

/// A x = lambda B x. Without storage for B it is the identity.
template <class T>
struct Pencil {
  Integer n;
  OneBasedMatrix<T> a;
  Uncertainty of_a;
  OneBasedMatrix<T> b;
  Uncertainty of_b;
  bool has_b;
};

/// The bounds of a square matrix, rows and columns from 1 on.
class BoundMatrix {
 public:
  explicit BoundMatrix(Integer n) : n_(n), bounds_(std::size_t(n) * std::size_t(n)) {}

  QuarnBound& operator()(Integer i, Integer j) { return bounds_[index(i, j)]; }
  const QuarnBound& operator()(Integer i, Integer j) const { return bounds_[index(i, j)]; }

 private:
  std::size_t index(Integer i, Integer j) const { return std::size_t(j - 1) * std::size_t(n_) + std::size_t(i - 1); }

  Integer n_;
  std::vector<QuarnBound> bounds_;
};

/// The first rows of diagonal blocks, and behind them one more than there are rows.
using Blocks = std::vector<Integer>;

inline Blocks single_blocks(Integer n) {
  Blocks blocks;
  for (Integer i = 1; i <= n + 1; ++i) {
    blocks.push_back(i);
  }
  return blocks;
}

/// C := P M, each element rounded once.
template <class T>
void multiply_blocks(Integer n, OneBasedMatrix<T> p, OneBasedMatrix<T> m, const Blocks& blocks, OneBasedMatrix<T> c) {
  for (std::size_t k = 0; k + 1 < blocks.size(); ++k) {
    const Integer first = blocks[k];
    const Integer order = blocks[k + 1] - first;
    exact::multiply_matrices(Op::none, Op::none, n, order, order, T(1.0), p.from(1, first), m.from(first, first),
                             T(0.0), c.from(1, first));
  }
}

/// Of a matrix P near B X: P, and how far its elements are off.
template <class T>
class Basis {
 public:
  Basis(const Pencil<T>& pencil, OneBasedMatrix<T> x, int digits, const Range& range)
      : known_(!pencil.has_b),
        p_(x),
        product_(known_ ? 0 : pencil.n, known_ ? 0 : pencil.n),
        errors_(known_ ? 0 : pencil.n, known_ ? 0 : pencil.n),
        leading_(known_ ? 0 : std::max<Integer>(1, pencil.n)) {
    if (known_) {
      return;
    }
    const WorkingDigits scope(digits);
    const Rounded rounded(digits, range);
    const Integer n = pencil.n;
    p_ = product_.view();
    exact::multiply_matrices(Op::none, Op::none, n, n, n, T(1.0), pencil.b, x, T(0.0), p_);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        QuarnBound error = rounded.error(p_(i, j));
        for (Integer k = 1; k <= n && !pencil.of_b.is_zero(); ++k) {
          error += pencil.of_b(i, k) * QuarnBound(x(k, j));
        }
        errors_.view()(i, j) = error.value();
      }
    }
  }

  OneBasedMatrix<T> view() const { return p_; }
  Uncertainty uncertainty() { return {errors_.view().first(), leading_}; }

 private:
  bool known_;
  OneBasedMatrix<T> p_;
  OwnMatrix<T> product_;
  OwnMatrix<QuarnFloat> errors_;
  Integer leading_;
};

/// Bounds of the elements of E, (B X)^-1 A X = M + E; M has blocks on its diagonal, and zeros beside them. Nothing
/// where B X is not proven to be regular.
template <class T>
std::optional<BoundMatrix> distance_from_blocks(const Pencil<T>& pencil, OneBasedMatrix<T> x, OneBasedMatrix<T> m,
                                                const Blocks& blocks) {
  const Integer n = pencil.n;
  Range range;
  range.take(n, n, pencil.a);
  range.take(n, n, x);
  range.take(n, n, m);
  if (pencil.has_b) {
    range.take(n, n, pencil.b);
  }
  if (!range.is_finite()) {
    return {};
  }
  const int many_digits = 2 * QuarnDigits() + kSpareDigits;
  Basis<T> basis(pencil, x, many_digits, range);
  const OneBasedMatrix<T> p = basis.view();
  range.take(n, n, p);
  const Uncertainty of_p = basis.uncertainty();
  std::optional<ApproximateInverse<T>> inverse;
  for (const int digits : {kFewDigits, QuarnDigits() / 2 + kSpareDigits, QuarnDigits() + kSpareDigits}) {
    inverse.emplace(n, p, of_p, digits, range);
    if (inverse->norm() < QuarnBound::power_of_ten(-2)) {
      break;
    }
  }
  if (!(inverse->norm() < QuarnBound::count(1))) {
    return {};
  }
  range = inverse->range();
  // P M, and A X - P M with few digits.
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> residual = own.view();
  BoundMatrix of_residual(n);
  {
    const WorkingDigits scope(many_digits);
    const Rounded rounded(many_digits, range);
    multiply_blocks(n, p, m, blocks, residual);
    range.take(n, n, residual);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        of_residual(i, j) = rounded.error(residual(i, j));
      }
    }
  }
  const WorkingDigits scope(kFewDigits);
  const Rounded rounded(kFewDigits, range);
  exact::multiply_matrices(Op::none, Op::none, n, n, n, T(1.0), pencil.a, x, T(-1.0), residual);
  range.take(n, n, residual);
  OwnMatrix<T> product(n, n);
  const OneBasedMatrix<T> y = product.view();
  inverse->apply(n, residual, y);
  BoundMatrix result(n);
  for (std::size_t block = 0; block + 1 < blocks.size(); ++block) {
    for (Integer j = blocks[block]; j < blocks[block + 1]; ++j) {
      std::vector<QuarnBound> of_column(std::size_t(n) + 1);
      for (Integer i = 1; i <= n; ++i) {
        QuarnBound& bound = of_column[std::size_t(i)];
        bound = of_residual(i, j) + rounded.error(residual(i, j));
        for (Integer k = 1; k <= n && !pencil.of_a.is_zero(); ++k) {
          bound += pencil.of_a(i, k) * QuarnBound(x(k, j));
        }
        for (Integer k = blocks[block]; k < blocks[block + 1] && !of_p.is_zero(); ++k) {
          bound += of_p(i, k) * QuarnBound(m(k, j));
        }
      }
      const std::vector<QuarnBound> of_y = inverse->errors(y.column(j), std::move(of_column), range);
      for (Integer i = 1; i <= n; ++i) {
        result(i, j) = QuarnBound(y(i, j)) + of_y[std::size_t(i)];
      }
    }
    QuarnCheckInterrupt();
  }
  return result;
}

/// A real pencil with complex numbers.
class ComplexPencil {
 public:
  explicit ComplexPencil(const Pencil<QuarnFloat>& pencil);
  Pencil<Complex> view() { return {given_.n, a_.view(), given_.of_a, b_.view(), given_.of_b, given_.has_b}; }

 private:
  OwnMatrix<Complex> a_;
  OwnMatrix<Complex> b_;
  Pencil<QuarnFloat> given_;
};

/// The same for diag(w), of a real pencil: where pairs of numbers and vectors are each other's conjugates, by their
/// real and imaginary parts.
std::optional<BoundMatrix> distance_from_diagonal(const Pencil<QuarnFloat>& pencil, OneBasedMatrix<Complex> x,
                                                  const Complex* w);
std::optional<BoundMatrix> distance_from_diagonal(const Pencil<Complex>& pencil, OneBasedMatrix<Complex> x,
                                                  const Complex* w);

}  // namespace tesk::proven
