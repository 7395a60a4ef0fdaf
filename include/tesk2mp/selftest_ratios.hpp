// The test ratios of selftest.hpp, routine by routine.
#pragma once

#include <algorithm>
#include <optional>
#include <vector>

#include "tesk2mp/dense.hpp"
#include "tesk2mp/eigenproblems.hpp"
#include "tesk2mp/generalised.hpp"
#include "tesk2mp/least_squares.hpp"
#include "tesk2mp/matrix_functions.hpp"
#include "tesk2mp/orthogonal.hpp"
#include "tesk2mp/schur_forms.hpp"
#include "tesk2mp/singular_values.hpp"
#include "tesk2mp/structured.hpp"

namespace tesk2mp::selftest {

namespace detail {

/// Forms residuals at more digits than the routine had.
template <class T>
class Judge {
 public:
  Judge() : unit_(5, -QuarnDigits()), finer_(QuarnDigits() + kSpare) {}

  /// op(A) op(B)
  static Matrix<T> product(Op first, const Matrix<T>& a, Op second, const Matrix<T>& b) {
    Matrix<T> c(first == Op::none ? a.rows() : a.columns(), second == Op::none ? b.columns() : b.rows());
    gemm(first, second, 1, a, b, 0, c);
    return c;
  }
  static Matrix<T> product(const Matrix<T>& a, const Matrix<T>& b) { return product(Op::none, a, Op::none, b); }
  /// A diag(d)
  template <class D>
  static Matrix<T> scaled(Matrix<T> a, const std::vector<D>& d) {
    for (std::size_t j = 0; j < a.columns(); ++j) {
      for (std::size_t i = 0; i < a.rows(); ++i) {
        a(i, j) = a(i, j) * T(d[j]);
      }
    }
    return a;
  }
  static Real norm(const Matrix<T>& a) { return a.columns() == 0 ? Real(0) : tesk2mp::norm(Norm::one, a); }
  /// |a - b| / (n size u)
  Real ratio(Matrix<T> a, const Matrix<T>& b, const Real& size) const {
    constexpr std::size_t kLeast = 5;
    const std::size_t n = std::max(kLeast, std::max(a.rows(), a.columns()));
    for (std::size_t j = 0; j < a.columns(); ++j) {
      for (std::size_t i = 0; i < a.rows(); ++i) {
        a(i, j) = a(i, j) - b(i, j);
      }
    }
    const Real difference = norm(a);
    return difference == 0 ? difference : difference / (size * unit_ * Real(int(n)));
  }
  /// |Q^H Q - I| / (n u)
  Real orthogonality(const Matrix<T>& q) const {
    return ratio(product(Op::conjugate_transpose, q, Op::none, q), Matrix<T>::identity(q.columns()), 1);
  }

 private:
  static constexpr int kSpare = 20;

  Real unit_;
  Digits finer_;
};

template <class T>
Real largest(std::initializer_list<T> ratios) {
  Real most = 0;
  for (const T& each : ratios) {
    most = isnan(each) || each > most ? each : most;
  }
  return most;
}

template <class T>
Real linear_system(const Matrix<T>& a) {
  const Matrix<T> x = Matrix<T>::identity(a.rows());
  const Matrix<T> b = multiply(a, x);
  const LU<T> lu(a);
  if (lu.singular()) {
    return {};
  }
  const Matrix<T> solution = lu.solve(b);
  const Judge<T> judge;
  return judge.ratio(judge.product(a, solution), b, judge.norm(a) * judge.norm(solution));
}
template <class T>
Real lu_factors(const Matrix<T>& a) {
  const LU<T> lu(a);
  const std::size_t n = a.rows();
  Matrix<T> lower = Matrix<T>::identity(n);
  Matrix<T> upper(n, n);
  Matrix<T> permuted = a;
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i < n; ++i) {
      (i > j ? lower : upper)(i, j) = lu.factors()(i, j);
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      std::swap(permuted(i, j), permuted(std::size_t(lu.pivots()[i]), j));
    }
  }
  const Judge<T> judge;
  return judge.ratio(judge.product(lower, upper), permuted, judge.norm(a));
}
template <class T>
Real qr_factors(const Matrix<T>& a) {
  const QR<T> factors(a);
  const Matrix<T> q = factors.q();
  const Matrix<T> r = factors.r();
  const Judge<T> judge;
  return largest({judge.ratio(judge.product(q, r), a, judge.norm(a)), judge.orthogonality(q)});
}
template <class T>
Real singular(const Matrix<T>& a) {
  const SingularSystem<T> system = svd(a);
  const Judge<T> judge;
  const Matrix<T> product =
      judge.product(Op::none, judge.scaled(system.u, system.values), Op::conjugate_transpose, system.v);
  return largest(
      {judge.ratio(product, a, judge.norm(a)), judge.orthogonality(system.u), judge.orthogonality(system.v)});
}
inline Schur schur_of(const Matrix<Real>& a) { return schur(a); }
inline ComplexSchur schur_of(const Matrix<Complex>& a) { return complex_schur(a); }
template <class T, class Form>
Real similarity_ratio(const Matrix<T>& a, const Form& form) {
  const Judge<T> judge;
  const Matrix<T> product = judge.product(Op::none, judge.product(form.z, form.t), Op::conjugate_transpose, form.z);
  return largest({judge.ratio(product, a, judge.norm(a)), judge.orthogonality(form.z)});
}
template <class T>
Real schur_factors(const Matrix<T>& a) {
  return similarity_ratio(a, schur_of(a));
}
template <class T>
Real ordered_schur(const Matrix<T>& a) {
  return similarity_ratio(a, order_schur(schur_of(a), [](const Complex& z) { return z.re < 1; }).form);
}
template <class T>
Real eigensystem(const Matrix<T>& a) {
  const EigenSystem system = eigen(a);
  Matrix<Complex> whole(a.rows(), a.columns());
  std::transform(a.data(), a.data() + a.rows() * a.columns(), whole.data(), [](const T& x) { return Complex(x); });
  const Judge<Complex> judge;
  const Matrix<Complex> image = judge.product(whole, system.right);
  return judge.ratio(image, judge.scaled(system.right, system.values), judge.norm(whole));
}
template <class T>
Matrix<T> with_adjoint(const Matrix<T>& a) {
  Matrix<T> unit = Matrix<T>::identity(a.rows());
  Matrix<T> sum = a;
  gemm(Op::conjugate_transpose, Op::none, 1, a, unit, 1, sum);
  for (std::size_t i = 0; i < sum.rows(); ++i) {
    sum(i, i) = T(Complex(sum(i, i)).re);
  }
  return sum;
}
template <>
inline Matrix<Real> with_adjoint(const Matrix<Real>& a) {
  Matrix<Real> sum = a;
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      sum(i, j) = a(i, j) + a(j, i);
    }
  }
  return sum;
}
template <class T>
Real symmetric_ratio(const Matrix<T>& hermitian, const SymmetricEigenSystem<T>& system) {
  const Judge<T> judge;
  const Matrix<T> image = judge.product(hermitian, system.vectors);
  return largest({judge.ratio(image, judge.scaled(system.vectors, system.values), judge.norm(hermitian)),
                  judge.orthogonality(system.vectors)});
}
template <class T>
Real symmetric_system(const Matrix<T>& a) {
  const Matrix<T> hermitian = with_adjoint(a);
  const SymmetricEigenSystem<T> system = symmetric_eigen(hermitian);
  return symmetric_ratio(hermitian, system);
}
/// A^H A + I, positive definite.
template <class T>
Matrix<T> definite_matrix(const Matrix<T>& a) {
  Matrix<T> definite = Matrix<T>::identity(a.rows());
  gemm(Op::conjugate_transpose, Op::none, 1, a, a, 1, definite);
  for (std::size_t j = 0; j < a.rows(); ++j) {
    definite(j, j) = T(Complex(definite(j, j)).re);
    for (std::size_t i = 0; i < j; ++i) {
      if constexpr (tesk2mp::detail::kIsComplex<T>) {
        definite(i, j) = conj(definite(j, i));
      } else {
        definite(i, j) = definite(j, i);
      }
    }
  }
  return definite;
}
template <class T>
Real definite_factor(const Matrix<T>& a) {
  const Matrix<T> definite = definite_matrix(a);
  const Matrix<T> lower = Cholesky<T>(definite).factor();
  const Judge<T> judge;
  return judge.ratio(judge.product(Op::none, lower, Op::conjugate_transpose, lower), definite, judge.norm(definite));
}
template <class T>
Real symmetric_solution(const Matrix<T>& a) {
  const Matrix<T> hermitian = with_adjoint(a);
  const Matrix<T> b = Matrix<T>::identity(a.rows());
  Matrix<T> x;
  try {
    x = solve_symmetric(hermitian, b, Triangle::lower);
  } catch (const NumericalFailure&) {
    return {};  // singular
  }
  const Judge<T> judge;
  return judge.ratio(judge.product(hermitian, x), b, judge.norm(hermitian) * judge.norm(x));
}
template <class T>
Real sylvester(const Matrix<T>& a) {
  Matrix<T> shifted = Matrix<T>::identity(a.rows());
  const Real size = 3 * Judge<T>::norm(a) + 1;
  for (std::size_t i = 0; i < a.rows(); ++i) {
    shifted(i, i) = T(size);
  }
  const Matrix<T> x = solve_sylvester(a, shifted, a);
  const Judge<T> judge;
  Matrix<T> sum = judge.product(a, x);
  gemm(Op::none, Op::none, 1, x, shifted, 1, sum);
  return judge.ratio(sum, a, (judge.norm(a) + size) * judge.norm(x));
}
template <class T>
Real square_root(const Matrix<T>& a) {
  Matrix<T> root;
  try {
    root = sqrtm(a);
  } catch (const NumericalFailure&) {
    return {};  // a real matrix with negative eigenvalues, or one without a root
  }
  const Judge<T> judge;
  const Real size = judge.norm(root);
  return judge.ratio(judge.product(root, root), a, size * size);
}
template <class T>
Real exponential(Matrix<T> a) {
  const Real size = Judge<T>::norm(a);
  for (std::size_t j = 0; j < a.columns() && size > 0; ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      a(i, j) = a(i, j) * T(1 / size);
    }
  }
  const Matrix<T> f = expm(a);
  const Judge<T> judge;
  return judge.ratio(f, expm(a), judge.norm(f));
}

/// The ratio of a call, 0 where the call says that the matrix is singular.
template <class Call>
Real unless_singular(const Call& call) {
  try {
    return call();
  } catch (const NumericalFailure&) {
    return {};
  }
}
/// Columns first ... end - 1.
template <class T>
Matrix<T> some_columns(const Matrix<T>& a, std::size_t first, std::size_t end) {
  Matrix<T> result(a.rows(), end - first);
  for (std::size_t j = first; j < end; ++j) {
    std::copy_n(a.data() + j * a.rows(), a.rows(), result.data() + (j - first) * a.rows());
  }
  return result;
}
template <class T>
Matrix<T> difference(Matrix<T> a, const Matrix<T>& b) {
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      a(i, j) = a(i, j) - b(i, j);
    }
  }
  return a;
}
template <class T>
Real inverse_matrix(const Matrix<T>& a) {
  return unless_singular([&] {
    const Matrix<T> x = inverse(a);
    const Judge<T> judge;
    return judge.ratio(judge.product(a, x), Matrix<T>::identity(a.rows()), judge.norm(a) * judge.norm(x));
  });
}
template <class T>
Real pivoted_factors(const Matrix<T>& a) {
  const PivotedQR<T> factors(a);
  const Matrix<T> q = factors.q();
  const Matrix<T> r = factors.r();
  Matrix<T> permuted(a.rows(), a.columns());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      permuted(i, j) = a(i, std::size_t(factors.order()[j]));
    }
  }
  const Judge<T> judge;
  return largest({judge.ratio(judge.product(q, r), permuted, judge.norm(a)), judge.orthogonality(q)});
}
/// A^H (B - A X) of the first half of the columns, B the others.
template <class T>
Real normal_equations(const Matrix<T>& a) {
  return unless_singular([&] {
    const std::size_t half = a.columns() / 2;
    const Matrix<T> left = some_columns(a, 0, half);
    const Matrix<T> right = some_columns(a, half, a.columns());
    const Matrix<T> x = least_squares(left, right);
    const Judge<T> judge;
    const Real size = judge.norm(left);
    const Matrix<T> residual = difference(right, judge.product(left, x));
    return judge.ratio(judge.product(Op::conjugate_transpose, left, Op::none, residual),
                       Matrix<T>(left.columns(), right.columns()), size * (judge.norm(right) + size * judge.norm(x)));
  });
}
template <class T>
Real pseudo_inverse_matrix(const Matrix<T>& a) {
  const Matrix<T> x = pseudo_inverse(a);
  const Judge<T> judge;
  const Real size = judge.norm(a);
  return judge.ratio(judge.product(judge.product(a, x), a), a, size * size * judge.norm(x));
}
/// With the first third of the unknowns fixed by the constraints: C X - D, and the normal equations of the others.
template <class T>
Real constrained(const Matrix<T>& a) {
  const std::size_t n = a.columns();
  const std::size_t fixed = n / 3;
  Matrix<T> c(fixed, n);
  for (std::size_t i = 0; i < fixed; ++i) {
    c(i, i) = T(1);
  }
  const std::vector<T> b(a.rows(), T(1));
  const std::vector<T> d(fixed, T(2));
  return unless_singular([&] {
    const std::vector<T> x = constrained_least_squares(a, b, c, d);
    const Judge<T> judge;
    Matrix<T> solution(n, 1);
    std::copy(x.begin(), x.end(), solution.data());
    Matrix<T> right(a.rows(), 1);
    std::copy(b.begin(), b.end(), right.data());
    Matrix<T> wanted(fixed, 1);
    std::copy(d.begin(), d.end(), wanted.data());
    const Real size = judge.norm(a);
    const Real whole = judge.norm(right) + size * judge.norm(solution);
    const Matrix<T> residual = difference(right, judge.product(a, solution));
    const Matrix<T> free = some_columns(a, fixed, n);
    return largest({judge.ratio(judge.product(c, solution), wanted, 1 + judge.norm(solution)),
                    judge.ratio(judge.product(Op::conjugate_transpose, free, Op::none, residual),
                                Matrix<T>(n - fixed, 1), size * whole)});
  });
}
/// D - A X - Y of the first half of the columns, and A^H Y.
template <class T>
Real gauss_markov_model(const Matrix<T>& a) {
  const Matrix<T> left = some_columns(a, 0, a.columns() / 2);
  const std::vector<T> d(a.rows(), T(1));
  return unless_singular([&] {
    const GaussMarkov<T> found = gauss_markov(left, Matrix<T>::identity(a.rows()), d);
    const Judge<T> judge;
    Matrix<T> x(left.columns(), 1);
    std::copy(found.x.begin(), found.x.end(), x.data());
    Matrix<T> y(a.rows(), 1);
    std::copy(found.y.begin(), found.y.end(), y.data());
    Matrix<T> right(a.rows(), 1);
    std::copy(d.begin(), d.end(), right.data());
    const Real size = judge.norm(left);
    const Real whole = judge.norm(right) + size * judge.norm(x) + judge.norm(y);
    return largest({judge.ratio(difference(right, judge.product(left, x)), y, whole),
                    judge.ratio(judge.product(Op::conjugate_transpose, left, Op::none, y), Matrix<T>(left.columns(), 1),
                                size * whole)});
  });
}
template <class T>
Real jacobi_singular(const Matrix<T>& a) {
  using tesk2mp::detail::Option;
  Matrix<T> given = a;
  Matrix<T> u(a.rows(), a.columns());
  Matrix<T> v(a.columns(), a.columns());
  const tesk2mp::detail::RawMatrix<T> raw{given.view()};
  const tesk2mp::detail::RawMatrix<T> left{u.view()};
  const tesk2mp::detail::RawMatrix<T> right{v.view()};
  std::vector<Real> values(a.columns());
  constexpr Integer kWork = 7;
  Real work[kWork];
  Integer counts[3] = {};
  Integer info = 0;
  if constexpr (tesk2mp::detail::kIsComplex<T>) {
    Complex more[2];
    QuarnMPX_zgejsv_(Option('F'), Option('U'), Option('V'), Option('N'), Option('N'), Option('N'), raw.rows,
                     raw.columns, raw.data, raw.leading, values.data(), left.data, left.leading, right.data,
                     right.leading, more, 2, work, kWork, counts, &info, 1, 1, 1, 1, 1, 1);
  } else {
    QuarnMPX_dgejsv_(Option('F'), Option('U'), Option('V'), Option('N'), Option('N'), Option('N'), raw.rows,
                     raw.columns, raw.data, raw.leading, values.data(), left.data, left.leading, right.data,
                     right.leading, work, kWork, counts, &info, 1, 1, 1, 1, 1, 1);
  }
  if (info != 0) {
    return Real("inf");
  }
  const Judge<T> judge;
  const Matrix<T> product = judge.product(Op::none, judge.scaled(u, values), Op::conjugate_transpose, v);
  return largest({judge.ratio(product, a, judge.norm(a)), judge.orthogonality(u), judge.orthogonality(v)});
}
/// By bisection and inverse iteration.
template <class T>
Real chosen_system(const Matrix<T>& a) {
  if (a.rows() == 0) {
    return {};
  }
  const Matrix<T> hermitian = with_adjoint(a);
  const SymmetricEigenSystem<T> system = symmetric_eigen(hermitian, EigenIndices{0, a.rows()});
  return symmetric_ratio(hermitian, system);
}
/// Of the tridiagonal part of A + A^H.
template <class T>
Real divided_system(const Matrix<T>& a) {
  const std::size_t n = a.rows();
  const Matrix<T> hermitian = with_adjoint(a);
  std::vector<Real> d(n + 1);
  std::vector<Real> e(n + 1);
  Matrix<T> tridiagonal(n, n);
  for (std::size_t i = 0; i < n; ++i) {
    d[i] = Complex(hermitian(i, i)).re;
    tridiagonal(i, i) = T(d[i]);
    if (i + 1 < n) {
      e[i] = Complex(hermitian(i + 1, i)).re;
      tridiagonal(i + 1, i) = T(e[i]);
      tridiagonal(i, i + 1) = T(e[i]);
    }
  }
  Matrix<T> z(n, n);
  const tesk2mp::detail::RawMatrix<T> raw{z.view()};
  const tesk2mp::detail::Option formed('I');
  Integer info = 0;
  if constexpr (tesk2mp::detail::kIsComplex<T>) {
    QuarnMPX_zstedc_(formed, raw.rows, d.data(), e.data(), raw.data, raw.leading, nullptr, 1, nullptr, 1, nullptr, 1,
                     &info, 1);
  } else {
    QuarnMPX_dstedc_(formed, raw.rows, d.data(), e.data(), raw.data, raw.leading, nullptr, 1, nullptr, 1, &info, 1);
  }
  if (info != 0) {
    return Real("inf");
  }
  const Judge<T> judge;
  return largest({judge.ratio(judge.product(tridiagonal, z), judge.scaled(z, d), judge.norm(tridiagonal)),
                  judge.orthogonality(z)});
}
template <class T>
Real definite_system(const Matrix<T>& a) {
  const Matrix<T> hermitian = with_adjoint(a);
  const Matrix<T> definite = definite_matrix(a);
  const SymmetricEigenSystem<T> system = symmetric_eigen(hermitian, definite);
  const Judge<T> judge;
  Real most = 0;
  for (const Real& value : system.values) {
    most = std::max(most, fabs(value));
  }
  const Real size = (judge.norm(hermitian) + judge.norm(definite) * most) * judge.norm(system.vectors);
  const Matrix<T> image = judge.product(definite, system.vectors);
  const Matrix<T> gram = judge.product(Op::conjugate_transpose, system.vectors, Op::none, image);
  return largest({judge.ratio(judge.product(hermitian, system.vectors), judge.scaled(image, system.values), size),
                  judge.ratio(gram, Matrix<T>::identity(a.rows()),
                              1 + judge.norm(definite) * judge.norm(system.vectors) * judge.norm(system.vectors))});
}
/// Of A X diag(beta) - B X diag(alpha), B = A^H A + I.
template <class T>
Real pencil_system(const Matrix<T>& a) {
  const Matrix<T> b = definite_matrix(a);
  const PencilEigenSystem system = eigen(a, b);
  const auto complex_of = [](const Matrix<T>& x) {
    Matrix<Complex> result(x.rows(), x.columns());
    std::transform(x.data(), x.data() + x.rows() * x.columns(), result.data(), [](const T& z) { return Complex(z); });
    return result;
  };
  const Judge<Complex> judge;
  const Matrix<Complex> left = complex_of(a);
  const Matrix<Complex> right = complex_of(b);
  return judge.ratio(judge.scaled(judge.product(left, system.right), system.beta),
                     judge.scaled(judge.product(right, system.right), system.alpha),
                     judge.norm(left) * judge.norm(right));
}
/// A - Q S Z^H and B - Q P Z^H, B = A^H A + I, by the triangular factor of B and the Hessenberg form beside it.
template <class T>
Real generalised_schur(const Matrix<T>& a) {
  using tesk2mp::detail::Option;
  const std::size_t n = a.rows();
  const Matrix<T> b = definite_matrix(a);
  const QR<T> factors(b);
  Matrix<T> q = factors.q();
  Matrix<T> p = factors.r();
  Matrix<T> s = factors.multiply(Side::left, Op::conjugate_transpose, a);
  Matrix<T> z(n, n);
  const tesk2mp::detail::RawMatrix<T> rs{s.view()};
  const tesk2mp::detail::RawMatrix<T> rp{p.view()};
  const tesk2mp::detail::RawMatrix<T> rq{q.view()};
  const tesk2mp::detail::RawMatrix<T> rz{z.view()};
  std::vector<T> alpha(n + 1);
  std::vector<T> more(n + 1);
  std::vector<T> beta(n + 1);
  std::vector<T> work(n + 1);
  const auto length = Integer(work.size());
  Integer info = 0;
  tesk2mp::detail::pick<T>(QuarnMPX_dgghrd_, QuarnMPX_zgghrd_)(Option('V'), Option('I'), rs.rows, 1, rs.rows, rs.data,
                                                               rs.leading, rp.data, rp.leading, rq.data, rq.leading,
                                                               rz.data, rz.leading, &info, 1, 1);
  if (info == 0) {
    if constexpr (tesk2mp::detail::kIsComplex<T>) {
      QuarnMPX_zhgeqz_(Option('S'), Option('V'), Option('V'), rs.rows, 1, rs.rows, rs.data, rs.leading, rp.data,
                       rp.leading, alpha.data(), beta.data(), rq.data, rq.leading, rz.data, rz.leading, work.data(),
                       length, nullptr, &info, 1, 1, 1);
    } else {
      QuarnMPX_dhgeqz_(Option('S'), Option('V'), Option('V'), rs.rows, 1, rs.rows, rs.data, rs.leading, rp.data,
                       rp.leading, alpha.data(), more.data(), beta.data(), rq.data, rq.leading, rz.data, rz.leading,
                       work.data(), length, &info, 1, 1, 1);
    }
  }
  if (info != 0) {
    return Real("inf");
  }
  const Judge<T> judge;
  const auto back = [&](const Matrix<T>& form) {
    return judge.product(Op::none, judge.product(q, form), Op::conjugate_transpose, z);
  };
  return largest({judge.ratio(back(s), a, judge.norm(a)), judge.ratio(back(p), b, judge.norm(b)),
                  judge.orthogonality(q), judge.orthogonality(z)});
}
/// Of the logarithm of I + A / (2 |A|).
template <class T>
Real logarithm(Matrix<T> a) {
  const Real size = 2 * Judge<T>::norm(a);
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      a(i, j) = (size > 0 ? a(i, j) * T(1 / size) : T()) + T(i == j ? 1 : 0);
    }
  }
  const Matrix<T> f = logm(a);
  const Judge<T> judge;
  return judge.ratio(expm(f), a, judge.norm(a));
}

}  // namespace detail

}  // namespace tesk2mp::selftest
