// Linear equations of the C++ interface: LU and Cholesky factorisations and what follows from them. Part of
// tesk2mp.hpp; dense.h documents methods and costs.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "quarn/functions.h"
#include "tesk2mp/kernels.hpp"

namespace tesk2mp {
namespace detail {

/// A vector as a matrix of one column, solved in place by `solve`.
template <class T, class Solve>
std::vector<T> solve_vector(const VectorView<const T>& b, const Solve& solve) {
  Matrix<T> column(b.size(), 1);
  for (std::size_t i = 0; i < b.size(); ++i) {
    column(i, 0) = b[i];
  }
  solve(column);
  return std::vector<T>(column.data(), column.data() + b.size());
}

}  // namespace detail

/// Settings of a routine of chapters F07 and F08 ("F07ADF"), of the whole process; as shipped they mean unblocked
/// factorisations and the double-shift QR algorithm.
enum class Tuning : Integer {
  block_size = 1,
  shifts = 4,
  largest_small_block = 8,
};
/// Throws InvalidArgument when the routine has none.
inline Integer tuning(const std::string& routine, Tuning item) {
  Integer value = 0;
  detail::require(Integer(item) >= 1 && Integer(item) <= 8, "F07ZAZ", 1, "no setting ", Integer(item));
  QuarnMP_f07zaz_(Integer(item), routine.c_str(), &value, 0, int(routine.size()));
  detail::require(value != -2, "F07ZAZ", 2, "no settings of a routine ", routine);
  return value;
}
/// Sets one and returns its former value.
inline Integer set_tuning(const std::string& routine, Tuning item, Integer value) {
  const Integer former = tuning(routine, item);
  QuarnMP_f07zaz_(Integer(item), routine.c_str(), &value, 1, int(routine.size()));
  return former;
}

/// A = P L U by partial pivoting, real or complex.
///
/// @code
/// const tesk2mp::Matrix<tesk2mp::Real> a = {{2, 1}, {1, 3}};
/// const tesk2mp::LU factors(a);
/// const std::vector<tesk2mp::Real> x = factors.solve(std::vector<tesk2mp::Real>{3, 5});  // 4/5, 7/5
/// const tesk2mp::Real five = factors.determinant();
/// @endcode
template <Scalar T>
class LU {
 public:
  explicit LU(Matrix<T> a) : LU(std::move(a), false) {}
  /// A real matrix with its pivots chosen as if all its rows had length 1, so that the scaling of equations does not
  /// matter. Throws NumericalFailure when a pivot is below 8 times the machine precision, InvalidArgument for more than
  /// 10^D rows at D digits.
  static LU row_weighted(Matrix<T> a) requires std::same_as<T, Real> { return {std::move(a), true}; }
  /// What factors() and pivots() of another one have returned, such as from a file. Throws InvalidArgument for pivots
  /// that are no rows of the matrix.
  static LU from_factors(Matrix<T> factors, std::vector<Integer> pivots) {
    LU result;
    const std::size_t count = std::min(factors.rows(), factors.columns());
    detail::require(pivots.size() == count, routine(), 4, "a matrix of ", factors.rows(), " rows and ",
                    factors.columns(), " columns has ", count, " pivots, not ", pivots.size());
    for (std::size_t i = count; i-- > 0;) {
      detail::require(pivots[i] >= 0 && std::size_t(pivots[i]) < factors.rows(), routine(), 4, "pivot ", i, " is row ",
                      pivots[i], " of ", factors.rows());
      if (factors(i, i) == T(0)) {
        result.info_ = Integer(i) + 1;
      }
    }
    result.factors_ = std::move(factors);
    result.pivots_ = std::move(pivots);
    return result;
  }

  /// L below the diagonal, its ones left out; U on the diagonal and above.
  const Matrix<T>& factors() const { return factors_; }
  /// Row i was interchanged with row pivots()[i], i = 0, 1, ..., min(m, n) - 1; rows count from 0.
  const std::vector<Integer>& pivots() const { return pivots_; }
  /// The factorisation came upon a zero pivot: some U(j, j) is exactly zero.
  bool singular() const { return info_ > 0; }

  /// The determinant of A as mantissa 10^exponent, the mantissa from 1 to 10 (of a complex one the larger part) or
  /// zero.
  struct DeterminantParts {
    T mantissa{};
    std::int64_t exponent = 0;
  };
  DeterminantParts determinant_parts() const {
    require_square();
    std::vector<Integer> rows(pivots_.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      rows[i] = pivots_[i] + 1;
    }
    const detail::RawMatrix<T> raw{factors_.view()};
    constexpr Integer kDeterminant = 10;
    std::array<T, 2> parts{};
    detail::pick<T>(QuarnMPX_dgedi_, QuarnMPX_zgedi_)(raw.data, raw.leading, raw.rows, rows.data(), parts.data(),
                                                      nullptr, kDeterminant);
    return {parts[0], std::int64_t(FloatToDouble(Complex(parts[1]).re))};
  }
  /// The determinant of A, 0 when singular(). Throws NumericalFailure when no number holds it; determinant_parts() has
  /// it then.
  T determinant() const {
    constexpr std::int64_t kFarthest = 999999999;  // the largest exponent of a number
    const DeterminantParts parts = determinant_parts();
    if (parts.exponent < -kFarthest || parts.exponent > kFarthest) {
      const bool small = parts.exponent < 0;
      throw NumericalFailure(detail::name<T>("DGEDI", "ZGEDI"), small ? 3 : 4, small ? 99996 : 99995,
                             small ? " ** The value of the determinant is too small to be stored."
                                   : " ** The value of the determinant is too large to be stored.",
                             {});
    }
    return parts.mantissa * T(Real(1, int(parts.exponent)));
  }
  /// The solution x of op(A) x = b, for one right-hand side or for each column. Throws NumericalFailure when
  /// singular().
  template <VectorSource B>
  std::vector<T> solve(const B& b, Op op = Op::none) const {
    return detail::solve_vector<T>(b, [&](Matrix<T>& column) { solve_in_place(column, op); });
  }
  template <MatrixSource B>
  Matrix<T> solve(const B& b, Op op = Op::none) const {
    Matrix<T> x{MatrixView<const T>(b)};
    solve_in_place(x, op);
    return x;
  }
  /// Throws NumericalFailure when singular().
  Matrix<T> inverse() const {
    require_regular();
    Matrix<T> result = factors_;
    const detail::RawMatrix<T> raw{result.view()};
    std::vector<Integer> rows = rows_from_one();
    std::vector<T> space(std::max<std::size_t>(1, factors_.rows()));
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dgetri_, QuarnMPX_zgetri_)(raw.rows, raw.data, raw.leading, rows.data(), space.data(),
                                                        Integer(space.size()), &info);
    return result;
  }

 private:
  LU() = default;
  LU(Matrix<T> a, bool row_weighted) : factors_(std::move(a)) {
    const detail::RawMatrix<T> raw{factors_.view()};
    pivots_.resize(std::size_t(std::min(raw.rows, raw.columns)));
    if constexpr (!detail::kIsComplex<T>) {
      if (row_weighted) {
        factorise_row_weighted(raw);
      }
    }
    if (!row_weighted) {
      detail::pick<T>(QuarnMPX_dgetrf_, QuarnMPX_zgetrf_)(raw.rows, raw.columns, raw.data, raw.leading, pivots_.data(),
                                                          &info_);
    }
    for (Integer& row : pivots_) {
      --row;
    }
  }

  void factorise_row_weighted(const detail::RawMatrix<Real>& raw) {
    // Rows are numbered by numbers of the working precision.
    detail::require(raw.rows <= FloatToInt(Real(1, QuarnDigits())), "F07ADG", 1, "at ", QuarnDigits(),
                    " digits a matrix of ", raw.rows, " rows cannot be factorised by weighted pivoting");
    std::vector<Real> rows(factors_.rows());
    QuarnMP_f07adg_(raw.rows, raw.columns, raw.data, raw.leading, rows.data(), &info_);
    if (info_ > 0) {
      throw NumericalFailure("F07ADG", info_, 0, "no pivot of step " + std::to_string(info_) + " is large enough",
                             {std::int64_t(info_)});
    }
    std::transform(rows.begin(), rows.begin() + std::ptrdiff_t(pivots_.size()), pivots_.begin(), FloatToInt);
  }

  static const char* routine() { return detail::name<T>("F07ADF/DGETRF", "F07ARF/ZGETRF"); }
  void require_square() const { detail::order_of(routine(), 2, detail::RawMatrix<T>(factors_.view())); }

  /// Square, and no zero on the diagonal of U.
  void require_regular() const {
    require_square();
    if (singular()) {
      throw NumericalFailure(
          routine(), info_, 0,
          "U(" + std::to_string(info_) + ", " + std::to_string(info_) + ") is exactly zero: the matrix is singular",
          {std::int64_t(info_), std::int64_t(info_)});
    }
  }
  std::vector<Integer> rows_from_one() const {
    std::vector<Integer> rows = pivots_;
    for (Integer& row : rows) {
      ++row;
    }
    return rows;
  }

  void solve_in_place(Matrix<T>& b, Op op) const {
    require_square();
    detail::require(b.rows() == factors_.rows(), routine(), 1, "a right-hand side of ", b.rows(), " rows for ",
                    factors_.rows(), " equations");
    require_regular();
    const detail::RawMatrix<T> a{factors_.view()};
    const detail::RawMatrix<T> x{b.view()};
    std::vector<Integer> rows = rows_from_one();
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dgetrs_, QuarnMPX_zgetrs_)(detail::Option(op), a.rows, x.columns, a.data, a.leading,
                                                        rows.data(), x.data, x.leading, &info, 1);
  }

  Matrix<T> factors_;
  std::vector<Integer> pivots_;
  Integer info_ = 0;
};

/// A = L L^H (lower) or U^H U (upper) of a Hermitian (real: symmetric) positive definite matrix, of which that triangle
/// is read. Throws NumericalFailure when the matrix is not positive definite.
template <Scalar T>
class Cholesky {
 public:
  explicit Cholesky(const Matrix<T>& a, Triangle triangle = Triangle::lower)
      : triangle_(triangle), factor_(a.rows(), a.columns()) {
    const detail::RawMatrix<T> raw{factor_.view()};
    const Integer n = detail::order_of(routine(), 2, raw);
    for (std::size_t j = 0; j < a.columns(); ++j) {
      const std::size_t first = triangle == Triangle::lower ? j : 0;
      const std::size_t last = triangle == Triangle::lower ? a.rows() : j + 1;
      std::copy(a.data() + first + j * a.rows(), a.data() + last + j * a.rows(), factor_.data() + first + j * a.rows());
    }
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dpotrf_, QuarnMPX_zpotrf_)(detail::Option(triangle), n, raw.data, raw.leading, &info, 1);
    detail::require(info >= 0, routine(), 1, "a triangle is upper or lower");
    if (info > 0) {
      throw NumericalFailure(routine(), info, 0,
                             "the leading minor of order " + std::to_string(info) + " is not positive",
                             {std::int64_t(info)});
    }
  }

  /// What factor() and triangle() of another one have returned. Throws InvalidArgument for a factor that is not square.
  static Cholesky from_factor(Matrix<T> factor, Triangle triangle) {
    detail::order_of(routine(), 2, detail::RawMatrix<T>(factor.view()));
    return {std::move(factor), triangle, 0};
  }

  /// The triangular factor, zeros in its other triangle.
  const Matrix<T>& factor() const { return factor_; }
  /// Which one it is.
  Triangle triangle() const { return triangle_; }
  /// The determinant of A as mantissa 10^exponent, the mantissa from 1 to 100.
  typename LU<Real>::DeterminantParts determinant_parts() const {
    typename LU<Real>::DeterminantParts parts{1, 0};
    for (std::size_t i = 0; i < factor_.rows(); ++i) {
      const Real pivot = Complex(factor_(i, i)).re;
      const int places = ilogb(pivot);
      parts.mantissa = parts.mantissa * scalbn(pivot, -places);
      const int more = ilogb(parts.mantissa);
      parts.mantissa = scalbn(parts.mantissa, -more);
      parts.exponent += std::int64_t(places) + more;
    }
    return {parts.mantissa * parts.mantissa, 2 * parts.exponent};
  }
  /// The determinant of A; 0 or infinity when no number holds it, determinant_parts() has it then.
  Real determinant() const {
    Real product(1);
    for (std::size_t i = 0; i < factor_.rows(); ++i) {
      product = product * Complex(factor_(i, i)).re;
    }
    return product * product;
  }
  /// The solution x of A x = b, for one right-hand side or for each column.
  template <VectorSource B>
  std::vector<T> solve(const B& b) const {
    return detail::solve_vector<T>(b, [&](Matrix<T>& column) { solve_in_place(column); });
  }
  template <MatrixSource B>
  Matrix<T> solve(const B& b) const {
    Matrix<T> x{MatrixView<const T>(b)};
    solve_in_place(x);
    return x;
  }
  Matrix<T> inverse() const {
    Matrix<T> result = factor_;
    const detail::RawMatrix<T> raw{result.view()};
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dpotri_, QuarnMPX_zpotri_)(detail::Option(triangle_), raw.rows, raw.data, raw.leading,
                                                        &info, 1);
    for (std::size_t j = 0; j < result.columns(); ++j) {
      for (std::size_t i = 0; i < j; ++i) {
        const bool lower = triangle_ == Triangle::lower;
        result(lower ? i : j, lower ? j : i) = conjugate(result(lower ? j : i, lower ? i : j));
      }
    }
    return result;
  }
  /// 1 / (norm(A) norm(A^-1)) in the 1-norm, estimated, when that of A is given.
  Real reciprocal_condition(const Real& norm) const {
    const detail::RawMatrix<T> raw{factor_.view()};
    Real result;
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dpocon_, QuarnMPX_zpocon_)(detail::Option(triangle_), raw.rows, raw.data, raw.leading,
                                                        norm, &result, nullptr, nullptr, &info, 1);
    detail::require(info == 0, routine(), 5, "a norm is a number from 0");
    return result;
  }

 private:
  Cholesky(Matrix<T> factor, Triangle triangle, int /*factorised*/) : triangle_(triangle), factor_(std::move(factor)) {}

  static const char* routine() { return detail::name<T>("DPOTRF", "F07FRF/ZPOTRF"); }
  static Real conjugate(const Real& x) { return x; }
  static Complex conjugate(const Complex& x) { return conj(x); }

  void solve_in_place(Matrix<T>& b) const {
    detail::require(b.rows() == factor_.rows(), routine(), 1, "a right-hand side of ", b.rows(), " rows for ",
                    factor_.rows(), " equations");
    const detail::RawMatrix<T> a{factor_.view()};
    const detail::RawMatrix<T> x{b.view()};
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dpotrs_, QuarnMPX_zpotrs_)(detail::Option(triangle_), a.rows, x.columns, a.data, a.leading,
                                                        x.data, x.leading, &info, 1);
  }

  Triangle triangle_;
  Matrix<T> factor_;
};

/// The solution of A x = b, for a vector or for each column of a matrix. Throws NumericalFailure when A is singular.
template <MatrixSource A, class B>
auto solve(const A& a, const B& b) {
  return LU<Element<A>>(Matrix<Element<A>>(a)).solve(b);
}

/// Throws NumericalFailure when A is singular.
template <MatrixSource A>
Matrix<Element<A>> inverse(const A& a) {
  return LU<Element<A>>(Matrix<Element<A>>(a)).inverse();
}

}  // namespace tesk2mp
