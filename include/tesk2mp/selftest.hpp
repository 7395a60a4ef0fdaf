// The published test ratios of routines of linear algebra, over the test matrices of the gallery: norms of residuals in
// units of n norm(A) u, u half a unit of the last place, formed at more digits. E. Anderson et al., LAPACK Users'
// Guide, SIAM 1999, and its testing guide: a ratio of more than 30 counts as wrong. Not part of tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tesk2mp/gallery.hpp"
#include "tesk2mp/selftest_ratios.hpp"

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
      {"dgetri", "zgetri", "A X - I", inverse_matrix, inverse_matrix},
      {"dpotrf", "zpotrf", "A - L L^H", definite_factor, definite_factor},
      {"dsytrs", "zhetrs", "A X - B, A Hermitian", symmetric_solution, symmetric_solution},
      {"dgeqrf", "zgeqrf", "A - Q R, Q^H Q - I", qr_factors, qr_factors},
      {"dgeqp3", "zgeqp3", "A P - Q R, Q^H Q - I", pivoted_factors, pivoted_factors},
      {"dgels", "zgels", "A^H (B - A X)", normal_equations, normal_equations},
      {"dgelsy", "zgelsy", "A X A - A", pseudo_inverse_matrix, pseudo_inverse_matrix},
      {"dgglse", "zgglse", "C X - D, A^H (B - A X)", constrained, constrained},
      {"dggglm", "zggglm", "D - A X - Y, A^H Y", gauss_markov_model, gauss_markov_model},
      {"dgesvd", "zgesvd", "A - U S V^H, U^H U - I, V^H V - I", singular, singular},
      {"dgejsv", "zgejsv", "A - U S V^H, U^H U - I, V^H V - I", jacobi_singular, jacobi_singular},
      {"dsyev", "zheev", "A Z - Z D, Z^H Z - I", symmetric_system, symmetric_system},
      {"dsyevx", "zheevx", "A Z - Z D, Z^H Z - I", chosen_system, chosen_system},
      {"dstedc", "zstedc", "T Z - Z D, Z^H Z - I", divided_system, divided_system},
      {"dsygv", "zhegv", "A Z - B Z D, Z^H B Z - I", definite_system, definite_system},
      {"dhseqr", "zhseqr", "A - Z T Z^H, Z^H Z - I", schur_factors, schur_factors},
      {"dgeev", "zgeev", "A X - X D", eigensystem, eigensystem},
      {"dhgeqz", "zhgeqz", "A - Q S Z^H, B - Q P Z^H, Q^H Q - I, Z^H Z - I", generalised_schur, generalised_schur},
      {"dggev", "zggev", "A X beta - B X alpha", pencil_system, pencil_system},
      {"dtrsen", "ztrsen", "A - Z T Z^H, Z^H Z - I, reordered", ordered_schur, ordered_schur},
      {"dtrsyl", "ztrsyl", "A X + X B - C", sylvester, sylvester},
      {"dsqrtm", "zsqrtm", "F F - A", square_root, square_root},
      {"dlogm", "zlogm", "exp(F) - A", [](const Matrix<Real>& a) { return logarithm(a); },
       [](const Matrix<Complex>& a) { return logarithm(a); }},
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
