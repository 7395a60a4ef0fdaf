// QR factorisation and least squares of the C++ interface. Part of tesk2mp.hpp; orthogonal.h describes methods and
// costs.
#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tesk2mp/dense.hpp"

namespace tesk2mp {

template <Scalar T>
class PivotedQR;

/// A = Q R of an m by n matrix, real or complex, Q a product of Householder reflectors.
template <Scalar T>
class QR {
 public:
  explicit QR(Matrix<T> a) : factors_(std::move(a)), tau_(std::min(factors_.rows(), factors_.columns())) {
    const detail::RawMatrix<T> raw{factors_.view()};
    std::vector<T> work(std::max<std::size_t>(1, factors_.columns()));
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dgeqrf_, QuarnMPX_zgeqrf_)(raw.rows, raw.columns, raw.data, raw.leading, tau_.data(),
                                                        work.data(), Integer(work.size()), &info);
  }

  /// R, min(m, n) by n, upper triangular.
  Matrix<T> r() const {
    Matrix<T> result(tau_.size(), factors_.columns());
    for (std::size_t j = 0; j < result.columns(); ++j) {
      std::copy_n(&factors_.data()[j * factors_.rows()], std::min(j + 1, result.rows()),
                  result.data() + j * result.rows());
    }
    return result;
  }
  /// The first min(m, n) columns of Q.
  Matrix<T> q() const {
    const std::size_t steps = tau_.size();
    Matrix<T> result{MatrixView<const T>(factors_.data(), factors_.rows(), steps, factors_.leading())};
    const detail::RawMatrix<T> raw{result.view()};
    std::vector<T> work(std::max<std::size_t>(1, steps));
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dorgqr_, QuarnMPX_zungqr_)(raw.rows, raw.columns, raw.columns, raw.data, raw.leading,
                                                        detail::unconst(tau_.data()), work.data(), Integer(work.size()),
                                                        &info);
    return result;
  }
  /// op(Q) C (side left) or C op(Q) (right), Q the whole matrix of order m; op is none or conjugate_transpose.
  template <MatrixSource C>
  Matrix<T> multiply(Side side, Op op, const C& c) const {
    detail::require(op != Op::transpose || !detail::kIsComplex<T>, routine(), 2, "Q or its adjoint is applied");
    Matrix<T> result{MatrixView<const T>(c)};
    const detail::RawMatrix<T> raw{result.view()};
    const detail::RawMatrix<T> a{factors_.view()};
    const Integer order = side == Side::left ? raw.rows : raw.columns;
    detail::require(order == a.rows, routine(), 3, "Q of order ", a.rows, " is applied to ", raw.rows, " by ",
                    raw.columns);
    std::vector<T> work(std::max<std::size_t>({1, result.rows(), result.columns()}));
    Integer info = 0;
    const char adjoint = op == Op::none ? 'N' : detail::kIsComplex<T> ? 'C' : 'T';
    detail::pick<T>(QuarnMPX_dormqr_, QuarnMPX_zunmqr_)(
        detail::Option(side), detail::Option(adjoint), raw.rows, raw.columns, Integer(tau_.size()), a.data, a.leading,
        detail::unconst(tau_.data()), raw.data, raw.leading, work.data(), Integer(work.size()), &info, 1, 1);
    return result;
  }

 private:
  template <Scalar>
  friend class PivotedQR;
  QR(Matrix<T> factors, std::vector<T> tau) : factors_(std::move(factors)), tau_(std::move(tau)) {}

  static const char* routine() { return detail::name<T>("DORMQR", "ZUNMQR"); }

  Matrix<T> factors_;
  std::vector<T> tau_;
};

/// A P = Q R with the columns in an order in which the diagonal of R does not grow, so that it shows the rank.
template <Scalar T>
class PivotedQR {
 public:
  explicit PivotedQR(Matrix<T> a) : PivotedQR(std::move(a), Order()) {}

  /// Column j of A P is column order()[j] of A; columns count from 0.
  const std::vector<Integer>& order() const { return order_; }
  /// R, min(m, n) by n, upper triangular.
  Matrix<T> r() const { return factors_.r(); }
  /// The first min(m, n) columns of Q.
  Matrix<T> q() const { return factors_.q(); }
  /// op(Q) C (side left) or C op(Q) (right), Q the whole matrix of order m; op is none or conjugate_transpose.
  template <MatrixSource C>
  Matrix<T> multiply(Side side, Op op, const C& c) const {
    return factors_.multiply(side, op, c);
  }

 private:
  using Order = std::vector<Integer>;

  PivotedQR(Matrix<T> a, Order order) : factors_(factorise(std::move(a), order)), order_(std::move(order)) {
    for (Integer& column : order_) {
      --column;
    }
  }
  static QR<T> factorise(Matrix<T> a, Order& order) {
    const detail::RawMatrix<T> raw{a.view()};
    order.resize(a.columns());
    std::vector<T> tau(std::min(a.rows(), a.columns()));
    std::vector<T> work(3 * a.columns() + 1);
    Integer info = 0;
    if constexpr (detail::kIsComplex<T>) {
      QuarnMPX_zgeqp3_(raw.rows, raw.columns, raw.data, raw.leading, order.data(), tau.data(), work.data(),
                       detail::count_of(work.size()), nullptr, &info);
    } else {
      QuarnMPX_dgeqp3_(raw.rows, raw.columns, raw.data, raw.leading, order.data(), tau.data(), work.data(),
                       detail::count_of(work.size()), &info);
    }
    return QR<T>(std::move(a), std::move(tau));
  }

  QR<T> factors_;
  Order order_;
};

/// A = L Q of an m by n matrix, real or complex, Q a product of Householder reflectors.
template <Scalar T>
class LQ {
 public:
  explicit LQ(Matrix<T> a) : factors_(std::move(a)), tau_(std::min(factors_.rows(), factors_.columns())) {
    const detail::RawMatrix<T> raw{factors_.view()};
    std::vector<T> work(std::max<std::size_t>(1, factors_.rows()));
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dgelqf_, QuarnMPX_zgelqf_)(raw.rows, raw.columns, raw.data, raw.leading, tau_.data(),
                                                        work.data(), detail::count_of(work.size()), &info);
  }

  /// L, m by min(m, n), lower triangular.
  Matrix<T> l() const {
    Matrix<T> result(factors_.rows(), tau_.size());
    for (std::size_t j = 0; j < result.columns(); ++j) {
      for (std::size_t i = j; i < result.rows(); ++i) {
        result(i, j) = factors_(i, j);
      }
    }
    return result;
  }
  /// The first min(m, n) rows of Q.
  Matrix<T> q() const {
    Matrix<T> result{MatrixView<const T>(factors_.data(), tau_.size(), factors_.columns(), factors_.leading())};
    const detail::RawMatrix<T> raw{result.view()};
    std::vector<T> work(std::max<std::size_t>(1, tau_.size()));
    Integer info = 0;
    detail::pick<T>(QuarnMPX_dorglq_, QuarnMPX_zunglq_)(raw.rows, raw.columns, raw.rows, raw.data, raw.leading,
                                                        detail::unconst(tau_.data()), work.data(),
                                                        detail::count_of(work.size()), &info);
    return result;
  }
  /// op(Q) C (side left) or C op(Q) (right), Q the whole matrix of order n; op is none or conjugate_transpose.
  template <MatrixSource C>
  Matrix<T> multiply(Side side, Op op, const C& c) const {
    const char* routine = detail::name<T>("DORMLQ", "ZUNMLQ");
    detail::require(op != Op::transpose || !detail::kIsComplex<T>, routine, 2, "Q or its adjoint is applied");
    Matrix<T> result{MatrixView<const T>(c)};
    const detail::RawMatrix<T> raw{result.view()};
    const detail::RawMatrix<T> a{factors_.view()};
    const Integer order = side == Side::left ? raw.rows : raw.columns;
    detail::require(order == a.columns, routine, 3, "Q of order ", a.columns, " is applied to ", raw.rows, " by ",
                    raw.columns);
    std::vector<T> work(std::max<std::size_t>({1, result.rows(), result.columns()}));
    Integer info = 0;
    const char adjoint = op == Op::none ? 'N' : detail::kIsComplex<T> ? 'C' : 'T';
    detail::pick<T>(QuarnMPX_dormlq_, QuarnMPX_zunmlq_)(detail::Option(side), detail::Option(adjoint), raw.rows,
                                                        raw.columns, detail::count_of(tau_.size()), a.data, a.leading,
                                                        detail::unconst(tau_.data()), raw.data, raw.leading,
                                                        work.data(), detail::count_of(work.size()), &info, 1, 1);
    return result;
  }

 private:
  Matrix<T> factors_;
  std::vector<T> tau_;
};

/// For each column b of B the x of least norm(b - A x), and of several such x the one of least norm. Throws
/// NumericalFailure when A is not of full rank to the last digit.
///
/// @code
/// const tesk2mp::Matrix<tesk2mp::Real> a = {{1}, {1}, {1}};
/// const auto mean = tesk2mp::least_squares(a, std::vector<tesk2mp::Real>{1, 2, 6});  // 3
/// @endcode
template <MatrixSource A, MatrixSource B>
Matrix<Element<A>> least_squares(const A& a, const B& b) {
  using T = Element<A>;
  const char* routine = detail::name<T>("DGELS", "ZGELS");
  const detail::RawMatrix<T> ra{MatrixView<const T>(a)};
  const MatrixView<const T> right(b);
  detail::require(right.rows() == std::size_t(ra.rows), routine, 7, "a right-hand side of ", right.rows(), " rows for ",
                  ra.rows, " equations");
  const auto unknowns = std::size_t(ra.columns);
  Matrix<T> x(std::max(right.rows(), unknowns), right.columns());
  for (std::size_t j = 0; j < right.columns(); ++j) {
    std::copy_n(right.data() + j * right.leading(), right.rows(), x.data() + j * x.rows());
  }
  const detail::RawMatrix<T> rx{x.view()};
  const Integer least = std::min(ra.rows, ra.columns);
  std::vector<T> work(std::size_t(std::max<Integer>(1, least + std::max(least, rx.columns))));
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dgels_, QuarnMPX_zgels_)(detail::Option('N'), ra.rows, ra.columns, rx.columns, ra.data,
                                                    ra.leading, rx.data, rx.leading, work.data(), Integer(work.size()),
                                                    &info, 1);
  if (info > 0) {
    throw NumericalFailure(
        routine, info, 0,
        "R(" + std::to_string(info) + ", " + std::to_string(info) + ") is exactly zero: the matrix is not of full rank",
        {std::int64_t(info), std::int64_t(info)});
  }
  return Matrix<T>{MatrixView<const T>(x.data(), unknowns, x.columns(), x.leading())};
}
template <MatrixSource A, VectorSource B>
std::vector<Element<A>> least_squares(const A& a, const B& b) {
  using T = Element<A>;
  const std::vector<T> column = VectorView<const T>(b).to_vector();
  const Matrix<T> x =
      least_squares(a, MatrixView<const T>(column.data(), column.size(), 1, std::max<std::size_t>(1, column.size())));
  return std::vector<T>(x.data(), x.data() + x.rows());
}

}  // namespace tesk2mp
