// The published test ratios of routines of linear algebra, over the test matrices of the gallery: norms of residuals in
// units of n norm(A) u, u half a unit of the last place, formed at more digits. E. Anderson et al., LAPACK Users'
// Guide, SIAM 1999, and its testing guide: a ratio of more than 30 counts as wrong. Not part of tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tesk2mp/dense.hpp"
#include "tesk2mp/eigenproblems.hpp"
#include "tesk2mp/gallery.hpp"
#include "tesk2mp/matrix_functions.hpp"
#include "tesk2mp/orthogonal.hpp"
#include "tesk2mp/schur_forms.hpp"
#include "tesk2mp/singular_values.hpp"
#include "tesk2mp/structured.hpp"

namespace tesk2mp::selftest {

/// A ratio of more than this counts as wrong.
inline constexpr int kLargestRatio = 30;

/// The largest ratio of a routine, and the matrix that gave it.
struct Outcome {
  std::string routine;
  std::string what;  // the quantity that is measured
  std::string matrix;
  Real ratio;
  bool passed = false;
};

namespace detail {

/// Other working digits for a scope.
class WorkingDigits {
 public:
  explicit WorkingDigits(int digits) : former_(QuarnSetDigits(digits)) {}
  ~WorkingDigits() { QuarnSetDigits(former_); }
  WorkingDigits(const WorkingDigits&) = delete;
  WorkingDigits& operator=(const WorkingDigits&) = delete;

 private:
  int former_;
};

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
  WorkingDigits finer_;
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
template <class T>
Real schur_factors(const Matrix<T>& a) {
  const auto form = schur_of(a);
  const Judge<T> judge;
  const Matrix<T> product = judge.product(Op::none, judge.product(form.z, form.t), Op::conjugate_transpose, form.z);
  return largest({judge.ratio(product, a, judge.norm(a)), judge.orthogonality(form.z)});
}
template <class T>
Real ordered_schur(const Matrix<T>& a) {
  const auto ordered = order_schur(schur_of(a), [](const Complex& z) { return z.re < 1; }).form;
  const Judge<T> judge;
  const Matrix<T> product =
      judge.product(Op::none, judge.product(ordered.z, ordered.t), Op::conjugate_transpose, ordered.z);
  return largest({judge.ratio(product, a, judge.norm(a)), judge.orthogonality(ordered.z)});
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
Real symmetric_system(const Matrix<T>& a) {
  const Matrix<T> hermitian = with_adjoint(a);
  const SymmetricEigenSystem<T> system = symmetric_eigen(hermitian);
  const Judge<T> judge;
  const Matrix<T> image = judge.product(hermitian, system.vectors);
  return largest({judge.ratio(image, judge.scaled(system.vectors, system.values), judge.norm(hermitian)),
                  judge.orthogonality(system.vectors)});
}
template <class T>
Real definite_factor(const Matrix<T>& a) {
  // A^H A + I is positive definite.
  Matrix<T> definite = Matrix<T>::identity(a.rows());
  gemm(Op::conjugate_transpose, Op::none, 1, a, a, 1, definite);
  for (std::size_t j = 0; j < a.rows(); ++j) {
    definite(j, j) = T(Complex(definite(j, j)).re);
  }
  const Matrix<T> lower = Cholesky<T>(definite).factor();
  const Judge<T> judge;
  Matrix<T> mirrored = definite;
  for (std::size_t j = 0; j < a.rows(); ++j) {
    for (std::size_t i = 0; i < j; ++i) {
      if constexpr (tesk2mp::detail::kIsComplex<T>) {
        mirrored(i, j) = conj(definite(j, i));
      } else {
        mirrored(i, j) = definite(j, i);
      }
    }
  }
  return judge.ratio(judge.product(Op::none, lower, Op::conjugate_transpose, lower), mirrored, judge.norm(mirrored));
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

struct Routine {
  const char* real;
  const char* complex;
  const char* what;
  Real (*real_ratio)(const Matrix<Real>&);
  Real (*complex_ratio)(const Matrix<Complex>&);
};

inline const std::vector<Routine>& table() {
  static const std::vector<Routine> kTable = {
      {"dgetrf", "zgetrf", "P A - L U", lu_factors, lu_factors},
      {"dgetrs", "zgetrs", "A X - B", linear_system, linear_system},
      {"dpotrf", "zpotrf", "A - L L^H", definite_factor, definite_factor},
      {"dsytrs", "", "A X - B, A symmetric", symmetric_solution, nullptr},
      {"dgeqrf", "zgeqrf", "A - Q R, Q^H Q - I", qr_factors, qr_factors},
      {"dgesvd", "zgesvd", "A - U S V^H, U^H U - I, V^H V - I", singular, singular},
      {"dsyev", "zheev", "A Z - Z D, Z^H Z - I", symmetric_system, symmetric_system},
      {"dhseqr", "zhseqr", "A - Z T Z^H, Z^H Z - I", schur_factors, schur_factors},
      {"dgeev", "zgeev", "A X - X D", eigensystem, eigensystem},
      {"dtrsen", "ztrsen", "A - Z T Z^H, Z^H Z - I, reordered", ordered_schur, ordered_schur},
      {"dtrsyl", "ztrsyl", "A X + X B - C", sylvester, sylvester},
      {"dsqrtm", "zsqrtm", "F F - A", square_root, square_root},
      {"dexpm", "zexpm", "F - exp(A)", [](const Matrix<Real>& a) { return exponential(a); },
       [](const Matrix<Complex>& a) { return exponential(a); }}};
  return kTable;
}

/// The matrices: those of the table that have any order, by their defaults, and random ones.
inline std::vector<std::string> matrices() {
  return {"chebyshev",     "clement",     "frank",  "grcar",         "hilbert",       "jordan",
          "kahan",         "lehmer",      "parter", "random_normal", "random_sparse", "random_uniform",
          "random_values", "tridiagonal", "triw",   "wilkinson"};
}

template <class T>
Outcome examine(const char* routine, const char* what, Real (*ratio)(const Matrix<T>&), std::size_t order,
                Random& random) {
  Outcome outcome{routine, what, "", Real(0), true};
  for (const std::string& name : matrices()) {
    QuarnCheckInterrupt();
    Real value("inf");  // of a routine that fails
    try {
      value = ratio(gallery::matrix<T>(name, order, {}, random));
    } catch (const NumericalFailure&) {
    }
    if (outcome.matrix.empty() || !(value <= outcome.ratio)) {
      outcome.ratio = value;
      outcome.matrix = name;
    }
    outcome.passed = outcome.passed && value <= Real(kLargestRatio);
  }
  return outcome;
}

}  // namespace detail

/// The names of the routines that run() examines.
[[nodiscard]] inline std::vector<std::string> routines() {
  std::vector<std::string> names;
  for (const detail::Routine& routine : detail::table()) {
    names.emplace_back(routine.real);
    if (routine.complex_ratio != nullptr) {
      names.emplace_back(routine.complex);
    }
  }
  return names;
}

/// Examines the routines of these names, all of them without any, at the working digits and over matrices of that
/// order. done: called with the number of routines that are done. Throws InvalidArgument for an unknown name, and for
/// fewer than 7 working digits.
[[nodiscard]] inline std::vector<Outcome> run(const std::vector<std::string>& names, std::size_t order, Random& random,
                                              const std::function<void(std::size_t)>& done = {}) {
  constexpr int kLeastDigits = 7;
  tesk2mp::detail::require(QuarnDigits() >= kLeastDigits, "SELFTEST", 0, "test ratios need at least ", kLeastDigits,
                           " working digits");
  const std::vector<std::string> known = routines();
  for (const std::string& name : names) {
    tesk2mp::detail::require(std::find(known.begin(), known.end(), name) != known.end(), "SELFTEST", 1, "no routine '",
                             name, "' is examined");
  }
  const auto wanted = [&](const char* name) {
    return names.empty() || std::find(names.begin(), names.end(), name) != names.end();
  };
  std::vector<Outcome> outcomes;
  const auto add = [&](Outcome outcome) {
    outcomes.push_back(std::move(outcome));
    if (done) {
      done(outcomes.size());
    }
  };
  for (const detail::Routine& routine : detail::table()) {
    if (wanted(routine.real)) {
      add(detail::examine<Real>(routine.real, routine.what, routine.real_ratio, order, random));
    }
    if (routine.complex_ratio != nullptr && wanted(routine.complex)) {
      add(detail::examine<Complex>(routine.complex, routine.what, routine.complex_ratio, order, random));
    }
  }
  return outcomes;
}

}  // namespace tesk2mp::selftest
