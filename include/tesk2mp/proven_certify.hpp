// Makes certificates of results that are proven already, and checks each before it is returned. Not part of
// tesk2mp.hpp; docs/guide/certificates.md describes what they consist of.
#pragma once

#include <algorithm>
#include <functional>
#include <numeric>

#include "quarn/complex.h"
#include "tesk2mp/linear.hpp"
#include "tesk2mp/proven_certificates.hpp"
#include "tesk2mp/proven_spectra.hpp"
#include "tesk2mp/schur_forms.hpp"

namespace tesk2mp::proven {
namespace detail {

inline constexpr int kAttempts = 4;
inline constexpr const char* kCertify = "CERTIFY";

/// That the arguments fit together.
template <class... Pieces>
void require_problem(bool holds, const Pieces&... pieces) {
  tesk2mp::detail::require(holds, kCertify, 1, pieces...);
}
template <class T>
void require_square(const Matrix<T>& a) {
  require_problem(a.rows() > 0 && a.rows() == a.columns(), "the matrix is ", a.rows(), " by ", a.columns(),
                  ", not square, of order 1 or more");
}

/// The first certificate that is right, made with more and more digits than those of the proof.
template <class Make>
Certificate first_that_holds(int worked_with, const Make& make) {
  constexpr int kMore = 12;
  for (int attempt = 0;; ++attempt) {
    try {
      Certificate certificate = make(worked_with + (kMore << attempt));
      static_cast<void>(verify(certificate));
      return certificate;
    } catch (const NumericalFailure& failure) {
      if (attempt + 1 == kAttempts) {
        throw NumericalFailure(kCertify, 1, 0, "no certificate is found: " + failure.text(), {});
      }
    }
  }
}

template <class T>
Matrix<Complex> widened(const Matrix<T>& a) {
  Matrix<Complex> wide(a.rows(), a.columns());
  std::copy(a.data(), a.data() + a.rows() * a.columns(), wide.data());
  return wide;
}
template <class T>
Matrix<Complex> column_of(const std::vector<T>& x) {
  Matrix<Complex> column(x.size(), 1);
  std::copy(x.begin(), x.end(), column.data());
  return column;
}
inline Matrix<Complex> column_of_bounds(std::size_t count, const std::function<QuarnBound(std::size_t)>& bound) {
  Matrix<Complex> column(count, 1);
  for (std::size_t i = 0; i < count; ++i) {
    const QuarnBound each = bound(i);
    require_proof(each.is_finite(), "a bound of the proof is infinite");
    column(i, 0) = Complex(each.value());
  }
  return column;
}

/// Rounded to so many digits.
template <class T>
Matrix<T> shortened(Matrix<T> a, int digits) {
  const Digits scope(digits);
  std::for_each(a.data(), a.data() + a.rows() * a.columns(), [](T& x) { x = x * T(1); });
  return a;
}

/// An inverse of as few digits as carry a proof: a short one makes a short certificate.
template <class T>
Matrix<T> short_inverse(const Matrix<T>& a, int most_digits) {
  for (int digits = 12;; digits *= 2) {
    Matrix<T> inverse;
    try {
      {
        const Digits scope(std::min(digits, most_digits));
        inverse = tesk2mp::inverse(a);  // few digits may take a regular matrix for a singular one
      }
      const ExactMatrix product = ExactMatrix(widened(inverse)) * ExactMatrix(widened(a));
      if (defect(product, "R A").largest.value < Real(1, -2)) {
        return inverse;
      }
    } catch (const NumericalFailure&) {
      if (digits >= most_digits) {
        throw;
      }
    }
    if (digits >= most_digits) {
      return inverse;
    }
  }
}

/// `first` counts the members of groups so far: of each answer's disc the place among the approximations, and groups.
struct Assignment {
  std::vector<std::size_t> order;
  Matrix<Complex> groups;
};

/// Gives every answer its disc: the smallest ones first choose the approximations that are nearest, one for each.
inline Assignment assign(const std::vector<BoundedRoot>& roots, const std::vector<Complex>& near) {
  const std::size_t n = roots.size();
  require_proof(near.size() == n, "there are ", near.size(), " approximations of ", n, " roots");
  const auto same = [&](std::size_t i, std::size_t j) {
    return roots[i].count > 1 && roots[i].count == roots[j].count && roots[i].value == roots[j].value &&
           roots[i].error == roots[j].error;
  };
  std::vector<std::size_t> by_error(n);
  std::iota(by_error.begin(), by_error.end(), 0);
  std::stable_sort(by_error.begin(), by_error.end(),
                   [&](std::size_t i, std::size_t j) { return roots[i].error < roots[j].error; });
  Assignment found{std::vector<std::size_t>(n), Matrix<Complex>(n, 1)};
  std::vector<bool> taken(n, false);
  std::vector<std::size_t> members(n, 0);  // of the group that an answer leads
  const Digits scope(std::max(QuarnDigits(), 30));
  for (const std::size_t i : by_error) {
    std::size_t leader = i;
    for (std::size_t j = 0; j < n; ++j) {
      if (members[j] > 0 && members[j] < roots[j].count && same(i, j)) {
        leader = j;
      }
    }
    ++members[leader];
    found.groups(i, 0) = Complex(int(leader) + 1);
    std::size_t best = n;
    Real least;
    for (std::size_t k = 0; k < n; ++k) {
      const Real distance = taken[k] ? Real() : quarn::abs(near[k] - roots[i].value);
      if (!taken[k] && (best == n || distance < least)) {
        best = k;
        least = distance;
      }
    }
    taken[best] = true;
    found.order[i] = best;
  }
  return found;
}

inline void add_roots(Certificate& certificate, const std::vector<BoundedRoot>& roots, const Assignment& assignment) {
  const std::size_t n = roots.size();
  Matrix<Complex> values(n, 1);
  Matrix<Complex> errors(n, 1);
  Matrix<Complex> counts(n, 1);
  Matrix<Complex> real(n, 1);
  for (std::size_t i = 0; i < n; ++i) {
    values(i, 0) = roots[i].value;
    errors(i, 0) = Complex(roots[i].error.value());
    counts(i, 0) = Complex(int(roots[i].count));
    real(i, 0) = Complex(roots[i].is_real && roots[i].count == 1 ? 1 : 0);  // that equal ones are real is not certified
  }
  certificate.add("values", std::move(values));
  certificate.add("errors", std::move(errors));
  certificate.add("counts", std::move(counts));
  certificate.add("real", std::move(real));
  certificate.add("groups", assignment.groups);
}

}  // namespace detail

/// The certificate of x, near A^-1 B, with the bounds `errors`, which a proof with `worked_with` digits has shown; B is
/// the identity where there is none. Throws NumericalFailure where no certificate is found, InvalidArgument where the
/// shapes do not fit, or there is nothing in them.
template <Scalar T>
Certificate certify_solution(const Matrix<T>& a, const Matrix<T>* b, const Matrix<T>& x, const Matrix<Real>& errors,
                             int worked_with) {
  detail::require_square(a);
  const Matrix<T> right = b == nullptr ? Matrix<T>::identity(a.rows()) : *b;
  const auto fits = [&](const auto& y) { return y.rows() == a.rows() && y.columns() == right.columns(); };
  detail::require_problem(right.columns() > 0 && fits(right) && fits(x) && fits(errors),
                          "right-hand sides, solutions and bounds differ in shape, or there are none");
  const detail::ExactMatrix exact_a(detail::widened(a));
  const detail::ExactMatrix exact_b(detail::widened(right));
  return detail::first_that_holds(worked_with, [&](int digits) {
    const Matrix<T> r = detail::short_inverse(a, digits + 20);
    const detail::ExactMatrix exact_r(detail::widened(r));
    const Digits scope(digits);
    const Matrix<Complex> near = detail::widened(proven::solve(a, right).values());
    const detail::SolutionCheck proof(exact_a, exact_b, detail::ExactMatrix(near), exact_r);
    Matrix<Complex> of_near(near.rows(), near.columns());
    for (std::size_t j = 0; j < near.columns(); ++j) {
      for (std::size_t i = 0; i < near.rows(); ++i) {
        of_near(i, j) = Complex(proof.bound(i, j).value());
      }
    }
    Certificate certificate{b == nullptr ? "inverse" : "solution", {}};
    certificate.add("a", detail::widened(a));
    if (b != nullptr) {
      certificate.add("b", detail::widened(right));
    }
    certificate.add("x", detail::widened(x));
    certificate.add("errors", detail::widened(errors));
    certificate.add("near", near);
    certificate.add("near_errors", std::move(of_near));
    certificate.add("approximate_inverse", detail::widened(r));
    return certificate;
  });
}

/// The same of a determinant that is not 0.
template <Scalar T>
Certificate certify_determinant(const Matrix<T>& a, const T& determinant, const QuarnBound& error, int worked_with) {
  detail::require_square(a);
  const std::size_t n = a.rows();
  detail::require_proof(!error.is_zero() || determinant != T(0),
                        "a determinant that is 0 is proven by the rank, without a certificate");
  return detail::first_that_holds(worked_with, [&](int digits) {
    const Digits scope(digits);
    const LU<T> lu(detail::shortened(a, digits));
    detail::require_proof(!lu.singular(), "the matrix is singular to working precision");
    std::vector<std::size_t> order(n);
    std::iota(order.begin(), order.end(), 0);
    for (std::size_t i = 0; i < n; ++i) {
      std::swap(order[i], order[std::size_t(lu.pivots()[i])]);
    }
    Matrix<T> left = Matrix<T>::identity(n);
    Matrix<T> right = Matrix<T>::identity(n);
    trsm(Side::left, Triangle::lower, Op::none, Diagonal::unit, T(1), lu.factors(), left);
    trsm(Side::left, Triangle::upper, Op::none, Diagonal::general, T(1), lu.factors(), right);
    Matrix<Complex> rows(n, 1);
    for (std::size_t i = 0; i < n; ++i) {
      rows(i, 0) = Complex(int(order[i]) + 1);
    }
    const detail::DeterminantCheck proof(detail::ExactMatrix(detail::widened(a)), order,
                                         detail::ExactMatrix(detail::widened(left)),
                                         detail::ExactMatrix(detail::widened(right)));
    const Complex q(proof.q().re(0).value, proof.q().im(0).value);
    const Matrix<Complex> near = {{Complex(1) / q}};
    const Real reciprocal = quarn::abs(near(0, 0));
    Certificate certificate{"determinant", {}};
    certificate.add("a", detail::widened(a));
    certificate.add("determinant", {{Complex(determinant)}});
    certificate.add("errors", {{Complex(error.value())}});
    certificate.add("near", near);
    const QuarnBound of_q = QuarnBound(reciprocal) + QuarnBound(reciprocal).half_unit(digits - 2);
    certificate.add("near_errors", detail::column_of_bounds(
                                       1, [&](std::size_t) { return proof.bound(detail::ExactMatrix(near)) * of_q; }));
    certificate.add("rows", std::move(rows));
    certificate.add("left", detail::widened(left));
    certificate.add("right", detail::widened(right));
    return certificate;
  });
}

/// The same of the eigenvalues of a symmetric or Hermitian matrix, or of singular values.
template <Scalar T>
Certificate certify_values(bool singular, const Matrix<T>& a, const std::vector<Real>& values,
                           const std::vector<Real>& errors, int worked_with) {
  const std::size_t count = std::min(a.rows(), a.columns());
  detail::require_problem(count > 0 && (singular || a.rows() == a.columns()), "the matrix is ", a.rows(), " by ",
                          a.columns());
  detail::require_problem(values.size() == count && errors.size() == count, "there are ", values.size(), " values and ",
                          errors.size(), " bounds, not ", count);
  return detail::first_that_holds(worked_with, [&](int digits) {
    const Digits scope(digits);
    std::vector<Real> near;
    Matrix<Complex> left;
    Matrix<Complex> right;
    if (singular) {
      SingularSystem<T> system = tesk2mp::svd(a);
      near = std::move(system.values);
      left = detail::widened(system.u);
      right = detail::widened(system.v);
    } else {
      SymmetricEigenSystem<T> system = tesk2mp::symmetric_eigen(a);
      near = std::move(system.values);
      left = detail::widened(system.vectors);
      right = left;
    }
    // In the order of the answers.
    std::vector<std::size_t> ranks(near.size());
    std::iota(ranks.begin(), ranks.end(), 0);
    const auto sorted_by = [&](const std::vector<Real>& x) {
      std::vector<std::size_t> order = ranks;
      std::stable_sort(order.begin(), order.end(), [&](std::size_t i, std::size_t j) { return x[i] < x[j]; });
      return order;
    };
    const std::vector<std::size_t> of_near = sorted_by(near);
    const std::vector<std::size_t> of_values = sorted_by(values);
    Matrix<Complex> centres(near.size(), 1);
    Matrix<Complex> u(left.rows(), near.size());
    Matrix<Complex> v(right.rows(), near.size());
    for (std::size_t k = 0; k < near.size(); ++k) {
      centres(of_values[k], 0) = Complex(near[of_near[k]]);
      std::copy_n(left.data() + of_near[k] * left.rows(), left.rows(), u.data() + of_values[k] * left.rows());
      std::copy_n(right.data() + of_near[k] * right.rows(), right.rows(), v.data() + of_values[k] * right.rows());
    }
    const detail::WeylCheck proof(detail::ExactMatrix(detail::widened(a)), detail::ExactMatrix(centres),
                                  detail::ExactMatrix(u), detail::ExactMatrix(v));
    Certificate certificate{singular ? "singular values" : "symmetric eigenvalues", {}};
    certificate.add("a", detail::widened(a));
    certificate.add("values", detail::column_of(values));
    certificate.add("errors", detail::column_of(errors));
    certificate.add("near", centres);
    certificate.add("near_errors", detail::column_of_bounds(
                                       near.size(), [&](std::size_t k) { return proof.bound(centres(k, 0).re); }));
    certificate.add("left", std::move(u));
    if (singular) {
      certificate.add("right", std::move(v));
    }
    return certificate;
  });
}

/// The same of the eigenvalues of a general matrix: by eigenvectors, and where these do not suffice by a Schur form
/// with so many digits that its triangle can be scaled away. Discs do not show that eigenvalues are equal, or that one
/// is 0: bounds of those that are below 10^-worked_with times the largest value are certified as that. Where all values
/// are 0 the largest element of the matrix takes its place.
template <Scalar T>
Certificate certify_eigenvalues(const Matrix<T>& a, std::vector<BoundedRoot> roots, int worked_with) {
  detail::require_square(a);
  QuarnBound least;
  for (const BoundedRoot& root : roots) {
    least = std::max(least, QuarnBound(root.value));
  }
  if (least.is_zero()) {
    std::for_each(a.data(), a.data() + a.rows() * a.columns(),
                  [&](const T& element) { least = std::max(least, QuarnBound(element)); });
  }
  least *= QuarnBound::power_of_ten(-worked_with);
  for (BoundedRoot& root : roots) {
    const bool is_zero = root.value == Complex(0) && root.error.is_zero();
    root.error = root.count > 1 || is_zero ? std::max(root.error, least) : root.error;
  }
  const std::size_t n = a.rows();
  detail::require_problem(roots.size() == n, "there are ", roots.size(), " eigenvalues, not ", n);
  const auto made_of = [&](const std::vector<Complex>& centres, const Matrix<Complex>& vectors,
                           const Matrix<Complex>* middle, int step) {
    const detail::Assignment assignment = detail::assign(roots, centres);
    Matrix<Complex> x(n, n);
    Matrix<Complex> near(n, 1);
    Matrix<Complex> m(n, n);
    Matrix<Complex> weights(n, 1);
    std::vector<std::int64_t> exponents(n);
    for (std::size_t j = 0; j < n; ++j) {
      const std::size_t from = assignment.order[j];
      std::copy_n(vectors.data() + from * n, n, x.data() + j * n);
      near(j, 0) = centres[from];
      exponents[j] = -std::int64_t(step) * std::int64_t(from);
      weights(j, 0) = Complex(int(exponents[j]));
      for (std::size_t i = 0; i < n && middle != nullptr; ++i) {
        m(i, j) = (*middle)(assignment.order[i], from);
      }
      m(j, j) = near(j, 0);
    }
    const Matrix<Complex> y = detail::short_inverse(x, QuarnDigits() + 20);
    const detail::GerschgorinCheck proof(detail::ExactMatrix(detail::widened(a)), detail::ExactMatrix(x),
                                         detail::ExactMatrix(m), detail::ExactMatrix(y));
    Certificate certificate{"eigenvalues", {}};
    certificate.add("a", detail::widened(a));
    detail::add_roots(certificate, roots, assignment);
    certificate.add("near", near);
    certificate.add("near_errors",
                    detail::column_of_bounds(n, [&](std::size_t i) { return proof.bound(i, exponents); }));
    certificate.add("vectors", std::move(x));
    if (middle != nullptr) {
      certificate.add("middle", std::move(m));
      certificate.add("weights", std::move(weights));
    }
    certificate.add("approximate_inverse", y);
    return certificate;
  };
  const bool simple = std::all_of(roots.begin(), roots.end(), [](const auto& root) { return root.count == 1; });
  int steps = 0;
  return detail::first_that_holds(worked_with, [&](int digits) {
    ++steps;
    if (simple || steps % 2 == 1) {
      try {
        const Digits scope(digits);
        const EigenSystem system = tesk2mp::eigen(a);
        Certificate certificate = made_of(system.values, system.right, nullptr, 0);
        static_cast<void>(verify(certificate));
        return certificate;
      } catch (const Error&) {
        // Vectors that are parallel but for roundings have an inverse of any size.
        if (simple) {
          throw;
        }
      }
    }
    constexpr int kMostDigits = 20'000;
    const std::int64_t wanted = std::int64_t(digits) * std::int64_t(n + 1) + 20;
    detail::require_proof(wanted <= kMostDigits, "multiple eigenvalues take more than 20000 digits");
    const Digits scope{int(wanted)};
    const ComplexSchur form = complex_schur(a);
    return made_of(form.values, form.z, &form.t, digits);
  });
}

/// The same of the zeros of a polynomial, the coefficient of the highest power first.
inline Certificate certify_zeros(const std::vector<Complex>& a, const std::vector<BoundedRoot>& roots,
                                 int worked_with) {
  detail::require_problem(a.size() > 1 && a.front() != Complex(0), "there is no coefficient of the highest power");
  detail::require_problem(roots.size() == a.size() - 1, "there are ", roots.size(), " zeros, not ", a.size() - 1);
  const bool real = std::all_of(a.begin(), a.end(), [](const Complex& x) { return x.im == 0; });
  return detail::first_that_holds(worked_with, [&](int digits) {
    const Digits scope(digits);
    std::vector<Real> real_coefficients;
    std::transform(a.begin(), a.end(), std::back_inserter(real_coefficients), [](const Complex& x) { return x.re; });
    std::vector<Complex> centres;
    const bool zeros_at_end = a.size() > 1 && a.back() == Complex(0);
    for (const Zero& zero : real ? polynomial_zeros(real_coefficients) : polynomial_zeros(a)) {
      Complex centre = zero.value;
      // Of a multiple zero there may be equal ones, which the discs do not allow.
      const bool exact = zeros_at_end && centre == Complex(0);
      for (int k = 1; !exact && std::find(centres.begin(), centres.end(), centre) != centres.end(); ++k) {
        const Real size = centre == Complex(0) ? Real(1) : quarn::abs(centre);
        centre.re = zero.value.re + size * Real(k, -digits + 3);
      }
      centres.push_back(std::move(centre));
    }
    const detail::Assignment assignment = detail::assign(roots, centres);
    Matrix<Complex> near(roots.size(), 1);
    for (std::size_t i = 0; i < roots.size(); ++i) {
      near(i, 0) = centres[assignment.order[i]];
    }
    const Matrix<Complex> coefficients = detail::column_of(a);
    const detail::SmithCheck proof{detail::ExactMatrix(coefficients), detail::ExactMatrix(near),
                                   std::vector<bool>(roots.size(), true)};
    Certificate certificate{"zeros", {}};
    certificate.add("a", coefficients);
    detail::add_roots(certificate, roots, assignment);
    certificate.add("near", near);
    certificate.add("near_errors",
                    detail::column_of_bounds(roots.size(), [&](std::size_t i) { return proof.bound(i); }));
    return certificate;
  });
}

}  // namespace tesk2mp::proven
