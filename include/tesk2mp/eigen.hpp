// Eigenvalues of real matrices, and the zeros of a quartic. Part of tesk2mp.hpp; dense.h documents methods and costs.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "tesk2mp/finite.hpp"
#include "tesk2mp/kernels.hpp"

namespace tesk2mp {

enum class Balancing : char { none = 'N', permute = 'P', scale = 'S', both = 'B' };

/// A matrix similar to the given one, better suited to the QR algorithm; scaled by powers of 10, without rounding. Rows
/// and columns low ... high - 1 (from 0) hold the eigenvalues that are still to be found; the others are on the
/// diagonal.
struct Balanced {
  Matrix<Real> matrix;
  std::size_t low = 0;
  std::size_t high = 0;
  /// As QuarnMPX_f08nhf_ returns it: scale factors in low ... high - 1, elsewhere the row interchanged, from 1.
  std::vector<Real> scale;
};
template <MatrixSource A>
Balanced balance(const A& a, Balancing job = Balancing::both) {
  Balanced result{Matrix<Real>(a), 0, 0, {}};
  const detail::RawMatrix<Real> raw{result.matrix.view()};
  const Integer n = detail::order_of("F08NHF/DGEBAL", 3, raw);
  result.scale.resize(std::size_t(n));
  Integer low = 1;
  Integer high = 0;
  Integer info = 0;
  QuarnMPX_f08nhf_(detail::Option(job), n, raw.data, raw.leading, &low, &high, result.scale.data(), &info, 1);
  detail::require(info == 0, "F08NHF/DGEBAL", 1, "no such balancing");
  result.low = std::size_t(low - 1);
  result.high = std::size_t(high);
  return result;
}

/// A = Q H Q^T with Q orthogonal and H upper Hessenberg.
struct Hessenberg {
  Matrix<Real> h;
  Matrix<Real> q;
};

namespace detail {

/// H, and Q if it is wanted.
inline Hessenberg reduce(Matrix<Real> a, std::size_t low, std::size_t high, bool wants_q) {
  constexpr const char* kRoutine = "F08NEF/DGEHRD";
  Hessenberg result{std::move(a), {}};
  const RawMatrix<Real> h{result.h.view()};
  const Integer n = order_of(kRoutine, 4, h);
  const std::size_t order = result.h.rows();
  high = std::min(high, order);
  if (low >= high) {
    result.q = Matrix<Real>::identity(wants_q ? order : 0);
    return result;
  }
  std::vector<Real> tau(order);
  std::vector<Real> work(order);
  Integer info = 0;
  QuarnMPX_dgehrd_(n, Integer(low) + 1, Integer(high), h.data, h.leading, tau.data(), work.data(), n, &info);
  if (wants_q) {
    result.q = result.h;
    const RawMatrix<Real> q{result.q.view()};
    QuarnMPX_dorghr_(n, Integer(low) + 1, Integer(high), q.data, q.leading, tau.data(), work.data(), n, &info);
  }
  for (std::size_t j = low; j + 2 < high; ++j) {
    std::fill_n(&result.h(j + 2, j), high - j - 2, Real(0));
  }
  return result;
}

}  // namespace detail

/// Reduces the square matrix, of which columns low ... high - 1 are not yet in Hessenberg form (from balance(); without
/// it all of them), by Householder reflectors. Cost: about 14/3 n^3 multiply-adds, Q included.
template <MatrixSource A>
Hessenberg hessenberg(const A& a, std::size_t low = 0, std::size_t high = std::size_t(-1)) {
  return detail::reduce(Matrix<Real>(a), low, high, true);
}

/// A = Z T Z^T: Z orthogonal; T upper triangular but for 2 by 2 blocks on its diagonal, a pair of conjugate eigenvalues
/// each. values: the eigenvalues in the order of T.
struct Schur {
  Matrix<Real> t;
  Matrix<Real> z;
  std::vector<Complex> values;
};

namespace detail {

/// Takes the Hessenberg form to the Schur form (job S, z becomes z times its Schur vectors) or to eigenvalues alone
/// (E).
inline std::vector<Complex> hessenberg_qr(char job, Hessenberg& hessenberg, std::size_t low, std::size_t high) {
  const RawMatrix<Real> h{hessenberg.h.view()};
  const RawMatrix<Real> z{hessenberg.q.view()};
  const Integer n = order_of("F08PEF/DHSEQR", 3, h);
  if (job == 'S') {
    require_shape("F08PEF/DHSEQR", 10, z, n, n);
  }
  require_finite("F08PEF/DHSEQR", 6, hessenberg.h.view(), Part::hessenberg);
  std::vector<Real> wr(hessenberg.h.rows());
  std::vector<Real> wi(wr.size());
  std::vector<Real> work(std::max<std::size_t>(1, wr.size()));
  Integer info = 0;
  QuarnMPX_dhseqr_(Option(job), Option(job == 'S' ? 'V' : 'N'), n, Integer(low) + 1, Integer(high), h.data, h.leading,
                   wr.data(), wi.data(), z.data, z.leading, work.data(), Integer(work.size()), &info, 1, 1);
  if (info > 0) {
    throw NumericalFailure("F08PEF/DHSEQR", info, 0, "eigenvalue " + std::to_string(info) + " was not found",
                           {std::int64_t(info)});
  }
  std::vector<Complex> values;
  for (std::size_t i = 0; i < wr.size(); ++i) {
    values.emplace_back(wr[i], wi[i]);
  }
  return values;
}

}  // namespace detail

/// The Schur form of the matrix Q H Q^T; what lies below the first subdiagonal of H is not read. Throws
/// NumericalFailure when the QR algorithm does not converge, InvalidArgument when an element is not finite, as all
/// functions of eigenvalues do.
inline Schur schur(Hessenberg reduced) {
  std::vector<Complex> values = detail::hessenberg_qr('S', reduced, 0, reduced.h.rows());
  return {std::move(reduced.h), std::move(reduced.q), std::move(values)};
}
/// The Schur form of a square matrix.
template <MatrixSource A>
Schur schur(const A& a) {
  detail::require_finite("F08NEF/DGEHRD", 4, a);
  return schur(hessenberg(a));
}

/// The eigenvalues of a square matrix, a pair in consecutive places with the positive imaginary part first. The matrix
/// is balanced, reduced to Hessenberg form, and the QR algorithm does the rest. An eigenvalue in a chain of k is good
/// to a k-th of the digits.
///
/// @code
/// const tesk2mp::Matrix<tesk2mp::Real> a = {{0, 1}, {-1, 0}};
/// const std::vector<tesk2mp::Complex> values = tesk2mp::eigenvalues(a);  // i, -i
/// @endcode
template <MatrixSource A>
std::vector<Complex> eigenvalues(const A& a) {
  detail::require_finite("F08NHF/DGEBAL", 3, a);
  Balanced balanced = balance(a);
  Hessenberg reduced = detail::reduce(std::move(balanced.matrix), balanced.low, balanced.high, false);
  return detail::hessenberg_qr('E', reduced, balanced.low, balanced.high);
}

/// The eigenvalues of an upper Hessenberg matrix alone; what lies below its first subdiagonal is not read.
template <MatrixSource A>
std::vector<Complex> hessenberg_eigenvalues(const A& a) {
  Hessenberg reduced{Matrix<Real>(a), {}};
  return detail::hessenberg_qr('E', reduced, 0, reduced.h.rows());
}

/// Eigenvalues with their eigenvectors, each a column of Euclidean norm 1: A right = right diag(values), and
/// left^H A = diag(values) left^H.
struct EigenSystem {
  std::vector<Complex> values;
  Matrix<Complex> right;
  Matrix<Complex> left;
};

namespace detail {

/// Left and right eigenvectors of a Schur form, packed as the exports do, a pair in two columns; multiplied by z if so.
struct PackedVectors {
  /// side B: both; R: right ones, and what is left is not changed.
  PackedVectors(const Schur& schur, char howmny, char side = 'B')
      : left(side == 'B' ? schur.z : Matrix<Real>()), right(schur.z) {
    const RawMatrix<Real> t{schur.t.view()};
    require_finite("F08QKF/DTREVC", 5, schur.t.view());
    require_shape("F08QKF/DTREVC", 5, t, Integer(schur.values.size()), Integer(schur.values.size()));
    require_shape("F08QKF/DTREVC", 9, RawMatrix<Real>(right.view()), t.rows, t.rows);
    const RawMatrix<Real> vl{left.view()};
    const RawMatrix<Real> vr{right.view()};
    std::vector<Integer> select(schur.values.size(), 1);
    std::vector<Real> work(3 * schur.values.size());
    Integer used = 0;
    Integer info = 0;
    QuarnMPX_dtrevc_(Option(side), Option(howmny), select.data(), t.rows, t.data, t.leading, vl.data, vl.leading,
                     vr.data, vr.leading, t.rows, &used, work.data(), &info, 1, 1);
  }
  Matrix<Real> left;
  Matrix<Real> right;
};

/// Eigenvectors of the matrix before balancing.
inline void unbalance(const Balanced& balanced, Side side, Matrix<Real>& vectors) {
  const RawMatrix<Real> v{vectors.view()};
  Integer info = 0;
  QuarnMPX_dgebak_(Option('B'), Option(side), v.rows, Integer(balanced.low) + 1, Integer(balanced.high),
                   unconst(balanced.scale.data()), v.columns, v.data, v.leading, &info, 1, 1);
}

/// Complex columns of norm 1 out of packed ones.
inline Matrix<Complex> unpack(const std::vector<Complex>& values, const Matrix<Real>& packed) {
  const std::size_t n = values.size();
  Matrix<Complex> vectors(n, n);
  for (std::size_t j = 0; j < n; ++j) {
    const bool pair = values[j].im > 0 && j + 1 < n;
    const MatrixView<const Real> columns = packed.view().block(0, j, n, pair ? 2 : 1);
    const Real length = norm(Norm::frobenius, columns);
    for (std::size_t i = 0; i < n; ++i) {
      const Complex value(columns(i, 0) / length, pair ? columns(i, 1) / length : Real(0));
      vectors(i, j) = value;
      if (pair) {
        vectors(i, j + 1) = conj(value);
      }
    }
    j += pair ? 1 : 0;
  }
  return vectors;
}

/// Of a square matrix, balanced first; side R: without left eigenvectors.
template <MatrixSource A>
EigenSystem real_eigen(const A& a, char side) {
  require_finite("F08NHF/DGEBAL", 3, a);
  const Balanced balanced = balance(a);
  Hessenberg reduced = hessenberg(balanced.matrix, balanced.low, balanced.high);
  std::vector<Complex> values = hessenberg_qr('S', reduced, balanced.low, balanced.high);
  const Schur schur{std::move(reduced.h), std::move(reduced.q), std::move(values)};
  PackedVectors packed(schur, 'B', side);
  unbalance(balanced, Side::right, packed.right);
  if (side == 'B') {
    unbalance(balanced, Side::left, packed.left);
  }
  return {schur.values, unpack(schur.values, packed.right),
          side == 'B' ? unpack(schur.values, packed.left) : Matrix<Complex>()};
}

}  // namespace detail

/// Eigenvalues and eigenvectors of the matrix Z T Z^T.
inline EigenSystem eigen(const Schur& schur) {
  const detail::PackedVectors packed(schur, 'B');
  return {schur.values, detail::unpack(schur.values, packed.right), detail::unpack(schur.values, packed.left)};
}
/// Eigenvalues and eigenvectors of a square matrix, balanced first. Eigenvectors of a defective eigenvalue come out
/// parallel.
template <MatrixSource A>
EigenSystem eigen(const A& a) {
  return detail::real_eigen(a, 'B');
}

/// How eigenvalues and eigenvectors react to a change of the matrix. value[i]: reciprocal condition number of
/// eigenvalue i, a change of size e moves it by about e / value[i]. vector[i]: the gap between it and the others; its
/// right eigenvector turns by about e / vector[i].
struct EigenConditions {
  std::vector<Complex> values;
  std::vector<Real> value;
  std::vector<Real> vector;
};
namespace detail {

/// Job E: condition numbers of eigenvalues alone, V of eigenvectors alone, B both.
inline EigenConditions conditions(char job, const Schur& form) {
  PackedVectors packed(form, 'A');
  const RawMatrix<Real> t{form.t.view()};
  const RawMatrix<Real> vl{packed.left.view()};
  const RawMatrix<Real> vr{packed.right.view()};
  const std::size_t n = form.values.size();
  EigenConditions result{form.values, {}, {}};
  result.value.resize(job == 'V' ? 0 : n);
  result.vector.resize(job == 'E' ? 0 : n);
  std::vector<Integer> select(n, 1);
  Integer used = 0;
  Integer info = 0;
  QuarnMPX_dtrsna_(Option(job), Option('A'), select.data(), t.rows, t.data, t.leading, vl.data, vl.leading, vr.data,
                   vr.leading, result.value.data(), result.vector.data(), t.rows, &used, nullptr,
                   std::max<Integer>(1, t.rows), nullptr, &info, 1, 1);
  return result;
}

}  // namespace detail

/// Of the matrix Z T Z^T; of a square matrix. Cost: that of the Schur form, and 3 n^3/2 complex multiply-adds for each
/// element of `vector`.
inline EigenConditions eigen_conditions(const Schur& form) { return detail::conditions('B', form); }
template <MatrixSource A>
EigenConditions eigen_conditions(const A& a) {
  return eigen_conditions(schur(a));
}
/// The same of eigenvalues alone, at little more than the cost of the Schur form; `vector` is empty.
inline EigenConditions eigenvalue_conditions(const Schur& form) { return detail::conditions('E', form); }
template <MatrixSource A>
EigenConditions eigenvalue_conditions(const A& a) {
  return eigenvalue_conditions(schur(a));
}

/// A zero of a polynomial; error is what one rounding of the coefficients does to it.
struct Zero {
  Complex value;
  Real error;
};
/// The four zeros of e z^4 + a z^3 + b z^2 + c z + d. Throws InvalidArgument when e is 0, NumericalFailure when a
/// quotient by e is not finite or the iterations do not converge.
inline std::array<Zero, 4> quartic_zeros(Real e, Real a, Real b, Real c, Real d) {
  std::array<Real, 4> re;
  std::array<Real, 4> im;
  std::array<Real, 4> error;
  detail::call([&](Integer* ifail) { QuarnMPX_c02alf_(&e, &a, &b, &c, &d, re.data(), im.data(), error.data(), ifail); },
               {2, 3});
  std::array<Zero, 4> zeros;
  for (std::size_t i = 0; i < zeros.size(); ++i) {
    zeros[i] = {Complex(re[i], im[i]), error[i]};
  }
  return zeros;
}

}  // namespace tesk2mp
