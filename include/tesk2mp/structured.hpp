// Symmetric indefinite, band and tridiagonal systems of the C++ interface. Part of tesk2mp.hpp; structured.h describes
// methods and costs.
#pragma once

#include "tesk2mp/dense.hpp"

namespace tesk2mp {

/// Whether an element across the diagonal is the same or its conjugate.
enum class Symmetry { symmetric, hermitian };

namespace detail {

/// Of a factorisation that came upon a zero.
[[noreturn]] inline void throw_singular(const char* routine, Integer info) {
  throw NumericalFailure(routine, info, 0, "pivot " + std::to_string(info) + " is exactly zero: the matrix is singular",
                         {std::int64_t(info)});
}

template <class B, class Factors>
auto solve_either(const Factors& factors, const B& b) {
  using T = Element<B>;
  if constexpr (VectorSource<B>) {
    return solve_vector<T>(b, [&](Matrix<T>& column) { factors.solve_in_place(column); });
  } else {
    Matrix<T> x{MatrixView<const T>(b)};
    factors.solve_in_place(x);
    return x;
  }
}

inline void require_rows(const char* routine, Integer position, std::size_t rows, std::size_t needed) {
  require(rows == needed, routine, position, "a right-hand side of ", rows, " rows for ", needed, " equations");
}

}  // namespace detail

/// A = L D L^H (lower) or U D U^H (upper) of a symmetric or Hermitian matrix, of which that triangle is read, D of
/// blocks of order 1 and 2.
template <Scalar T>
class SymmetricIndefinite {
 public:
  explicit SymmetricIndefinite(Matrix<T> a, Triangle triangle = Triangle::lower,
                               Symmetry symmetry = Symmetry::hermitian)
      : factors_(std::move(a)), triangle_(triangle), hermitian_(symmetry == Symmetry::hermitian) {
    const detail::RawMatrix<T> raw{factors_.view()};
    const Integer n = detail::order_of(routine(), 2, raw);
    pivots_.resize(std::max<std::size_t>(1, factors_.rows()));
    T work;
    if constexpr (detail::kIsComplex<T>) {
      (hermitian_ ? QuarnMPX_zhetrf_ : QuarnMPX_zsytrf_)(detail::Option(triangle), n, raw.data, raw.leading,
                                                         pivots_.data(), &work, 1, &info_, 1);
    } else {
      QuarnMPX_dsytrf_(detail::Option(triangle), n, raw.data, raw.leading, pivots_.data(), &work, 1, &info_, 1);
    }
    detail::require(info_ >= 0, routine(), 1, "a triangle is upper or lower");
  }

  /// A block of D is exactly zero.
  bool singular() const { return info_ > 0; }
  /// The solution x of A x = b, for one right-hand side or for each column. Throws NumericalFailure when singular().
  template <class B>
  auto solve(const B& b) const {
    return detail::solve_either(*this, b);
  }
  /// B := A^-1 B
  void solve_in_place(Matrix<T>& b) const {
    detail::require_rows(routine(), 1, b.rows(), factors_.rows());
    if (singular()) {
      detail::throw_singular(routine(), info_);
    }
    const detail::RawMatrix<T> a{factors_.view()};
    const detail::RawMatrix<T> x{b.view()};
    Integer info = 0;
    if constexpr (detail::kIsComplex<T>) {
      (hermitian_ ? QuarnMPX_zhetrs_ : QuarnMPX_zsytrs_)(detail::Option(triangle_), a.rows, x.columns, a.data,
                                                         a.leading, detail::unconst(pivots_.data()), x.data, x.leading,
                                                         &info, 1);
    } else {
      QuarnMPX_dsytrs_(detail::Option(triangle_), a.rows, x.columns, a.data, a.leading, detail::unconst(pivots_.data()),
                       x.data, x.leading, &info, 1);
    }
  }

 private:
  const char* routine() const { return !detail::kIsComplex<T> ? "DSYTRF" : hermitian_ ? "ZHETRF" : "ZSYTRF"; }

  Matrix<T> factors_;
  Triangle triangle_;
  bool hermitian_;
  std::vector<Integer> pivots_;
  Integer info_ = 0;
};

/// The solution of A x = b, A symmetric or Hermitian and read on one triangle, for a vector or for each column of a
/// matrix. Throws NumericalFailure when A is singular.
template <MatrixSource A, class B>
auto solve_symmetric(const A& a, const B& b, Triangle triangle = Triangle::lower,
                     Symmetry symmetry = Symmetry::hermitian) {
  using T = Element<A>;
  return SymmetricIndefinite<T>(Matrix<T>{MatrixView<const T>(a)}, triangle, symmetry).solve(b);
}

/// A = L U of a square band matrix.
template <Scalar T>
class BandLU {
 public:
  /// Of the diagonals of A as rows, from the highest one: element (i, j) of A in row above + i - j of column j, both
  /// from 0. There are below + above + 1 rows; elements of rows outside of A are not read.
  BandLU(std::size_t below, std::size_t above, const Matrix<T>& diagonals)
      : below_(detail::count_of(below)),
        above_(detail::count_of(above)),
        factors_(2 * below + above + 1, diagonals.columns()) {
    detail::require(diagonals.rows() == below + above + 1, routine(), 5, diagonals.rows(), " diagonals where ",
                    below + above + 1, " are needed");
    for (std::size_t j = 0; j < diagonals.columns(); ++j) {
      std::copy_n(diagonals.data() + j * diagonals.rows(), diagonals.rows(),
                  factors_.data() + j * factors_.rows() + below);
    }
    const detail::RawMatrix<T> raw{factors_.view()};
    pivots_.resize(std::max<std::size_t>(1, diagonals.columns()));
    detail::pick<T>(QuarnMPX_dgbtrf_, QuarnMPX_zgbtrf_)(raw.columns, raw.columns, below_, above_, raw.data, raw.leading,
                                                        pivots_.data(), &info_);
  }

  /// Some U(j, j) is exactly zero.
  bool singular() const { return info_ > 0; }
  /// The solution x of op(A) x = b, for one right-hand side or for each column. Throws NumericalFailure when
  /// singular().
  template <class B>
  auto solve(const B& b, Op op = Op::none) const {
    return detail::solve_either(Solution{*this, op}, b);
  }

 private:
  static const char* routine() { return detail::name<T>("DGBTRF", "ZGBTRF"); }

  struct Solution {
    const BandLU& lu;
    Op op;
    void solve_in_place(Matrix<T>& b) const {
      detail::require_rows(routine(), 1, b.rows(), lu.factors_.columns());
      if (lu.singular()) {
        detail::throw_singular(routine(), lu.info_);
      }
      const detail::RawMatrix<T> a{lu.factors_.view()};
      const detail::RawMatrix<T> x{b.view()};
      Integer info = 0;
      detail::pick<T>(QuarnMPX_dgbtrs_, QuarnMPX_zgbtrs_)(
          detail::Option(op), a.columns, lu.below_, lu.above_, x.columns, a.data, a.leading,
          detail::unconst(lu.pivots_.data()), x.data, x.leading, &info, 1);
    }
  };

  Integer below_;
  Integer above_;
  Matrix<T> factors_;
  std::vector<Integer> pivots_;
  Integer info_ = 0;
};

/// The solution of A x = b with a square band matrix (BandLU says how it is given), for a vector or for each column of
/// a matrix. Throws NumericalFailure when A is singular.
template <MatrixSource A, class B>
auto solve_banded(std::size_t below, std::size_t above, const A& diagonals, const B& b) {
  using T = Element<A>;
  return BandLU<T>(below, above, Matrix<T>{MatrixView<const T>(diagonals)}).solve(b);
}

/// A = L U of a tridiagonal matrix.
template <Scalar T>
class TridiagonalLU {
 public:
  /// Of n - 1 elements below the diagonal, n on it, n - 1 above it.
  TridiagonalLU(std::vector<T> below, std::vector<T> diagonal, std::vector<T> above)
      : below_(std::move(below)), diagonal_(std::move(diagonal)), above_(std::move(above)) {
    const std::size_t n = diagonal_.size();
    const std::size_t beside = n == 0 ? 0 : n - 1;
    detail::require(below_.size() == beside, routine(), 2, below_.size(), " elements below a diagonal of ", n);
    detail::require(above_.size() == beside, routine(), 4, above_.size(), " elements above a diagonal of ", n);
    second_.resize(std::max<std::size_t>(1, n));
    pivots_.resize(std::max<std::size_t>(1, n));
    detail::pick<T>(QuarnMPX_dgttrf_, QuarnMPX_zgttrf_)(detail::count_of(n), below_.data(), diagonal_.data(),
                                                        above_.data(), second_.data(), pivots_.data(), &info_);
  }

  /// Some U(j, j) is exactly zero.
  bool singular() const { return info_ > 0; }
  /// The solution x of op(A) x = b, for one right-hand side or for each column. Throws NumericalFailure when
  /// singular().
  template <class B>
  auto solve(const B& b, Op op = Op::none) const {
    return detail::solve_either(Solution{*this, op}, b);
  }

 private:
  static const char* routine() { return detail::name<T>("DGTTRF", "ZGTTRF"); }

  struct Solution {
    const TridiagonalLU& lu;
    Op op;
    void solve_in_place(Matrix<T>& b) const {
      detail::require_rows(routine(), 1, b.rows(), lu.diagonal_.size());
      if (lu.singular()) {
        detail::throw_singular(routine(), lu.info_);
      }
      const detail::RawMatrix<T> x{b.view()};
      Integer info = 0;
      detail::pick<T>(QuarnMPX_dgttrs_, QuarnMPX_zgttrs_)(
          detail::Option(op), x.rows, x.columns, detail::unconst(lu.below_.data()),
          detail::unconst(lu.diagonal_.data()), detail::unconst(lu.above_.data()), detail::unconst(lu.second_.data()),
          detail::unconst(lu.pivots_.data()), x.data, x.leading, &info, 1);
    }
  };

  std::vector<T> below_;
  std::vector<T> diagonal_;
  std::vector<T> above_;
  std::vector<T> second_;
  std::vector<Integer> pivots_;
  Integer info_ = 0;
};

/// The solution of A x = b, A tridiagonal with n - 1 elements below its diagonal of n and n - 1 above it, for a vector
/// or for each column of a matrix. Throws NumericalFailure when A is singular.
template <VectorSource D, class B>
auto solve_tridiagonal(const D& below, const D& diagonal, const D& above, const B& b) {
  using T = Element<D>;
  return TridiagonalLU<T>(VectorView<const T>(below).to_vector(), VectorView<const T>(diagonal).to_vector(),
                          VectorView<const T>(above).to_vector())
      .solve(b);
}

/// A = L D L^H of a tridiagonal positive definite matrix. Throws NumericalFailure when it is not positive definite.
template <Scalar T>
class DefiniteTridiagonal {
 public:
  /// Of n real elements on the diagonal, n - 1 below it.
  DefiniteTridiagonal(std::vector<Real> diagonal, std::vector<T> below)
      : diagonal_(std::move(diagonal)), below_(std::move(below)) {
    const std::size_t n = diagonal_.size();
    detail::require(below_.size() == (n == 0 ? 0 : n - 1), routine(), 3, below_.size(),
                    " elements below a diagonal of ", n);
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dpttrf_, QuarnMPX_zpttrf_)(detail::count_of(n), diagonal_.data(), below_.data(), &info);
    if (info > 0) {
      throw NumericalFailure(routine(), info, 0,
                             "the leading minor of order " + std::to_string(info) + " is not positive",
                             {std::int64_t(info)});
    }
  }

  /// The solution x of A x = b, for one right-hand side or for each column.
  template <class B>
  auto solve(const B& b) const {
    return detail::solve_either(*this, b);
  }
  /// B := A^-1 B
  void solve_in_place(Matrix<T>& b) const {
    detail::require_rows(routine(), 1, b.rows(), diagonal_.size());
    const detail::RawMatrix<T> x{b.view()};
    Integer info = 0;
    if constexpr (detail::kIsComplex<T>) {
      QuarnMPX_zpttrs_("L", x.rows, x.columns, detail::unconst(diagonal_.data()), detail::unconst(below_.data()),
                       x.data, x.leading, &info, 1);
    } else {
      QuarnMPX_dpttrs_(x.rows, x.columns, detail::unconst(diagonal_.data()), detail::unconst(below_.data()), x.data,
                       x.leading, &info);
    }
  }

 private:
  static const char* routine() { return detail::name<T>("DPTTRF", "ZPTTRF"); }

  std::vector<Real> diagonal_;
  std::vector<T> below_;
};

/// The solution of A x = b, A tridiagonal and positive definite with n real elements on its diagonal and n - 1 below
/// it, for a vector or for each column of a matrix. Throws NumericalFailure when A is not positive definite.
template <VectorSource E, class B>
auto solve_definite_tridiagonal(const VectorView<const Real>& diagonal, const E& below, const B& b) {
  using T = Element<E>;
  return DefiniteTridiagonal<T>(diagonal.to_vector(), VectorView<const T>(below).to_vector()).solve(b);
}

}  // namespace tesk2mp
