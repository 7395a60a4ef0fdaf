// Factorisations and eigenvalues.
#include "digits.h"

namespace accuracy {
namespace {

Vector real_solution(Data& data) {
  Vector a = well_conditioned(data.reals(kElements));
  Vector x = data.reals(kOrder);
  std::array<Integer, kOrder> ipiv{};
  Integer info = 0;
  QuarnMP_f07adf_(kOrder, kOrder, a.data(), kOrder, ipiv.data(), &info);
  for (Integer i = 0; i < kOrder; ++i) {
    std::swap(x[std::size_t(i)], x[std::size_t(ipiv[std::size_t(i)] - 1)]);
  }
  QuarnMP_f06pjf_("L", "N", "U", kOrder, a.data(), kOrder, x.data(), 1, 1, 1, 1);
  QuarnMP_f06pjf_("U", "N", "N", kOrder, a.data(), kOrder, x.data(), 1, 1, 1, 1);
  return x;
}

Vector complex_solution(Data& data) {
  ComplexVector a = well_conditioned(data.complexes(kElements));
  ComplexVector x = data.complexes(kOrder);
  std::array<Integer, kOrder> ipiv{};
  Integer info = 0;
  QuarnMP_f07arf_(kOrder, kOrder, a.data(), kOrder, ipiv.data(), &info);
  for (Integer i = 0; i < kOrder; ++i) {
    std::swap(x[std::size_t(i)], x[std::size_t(ipiv[std::size_t(i)] - 1)]);
  }
  QuarnMP_f06sjf_("L", "N", "U", kOrder, a.data(), kOrder, x.data(), 1, 1, 1, 1);
  QuarnMP_f06sjf_("U", "N", "N", kOrder, a.data(), kOrder, x.data(), 1, 1, 1, 1);
  return gathered(x);
}

Vector weighted_factors(Data& data) {
  Vector a = well_conditioned(data.reals(kElements));
  Vector pivots(kOrder);
  Integer info = 0;
  QuarnMP_f07adg_(kOrder, kOrder, a.data(), kOrder, pivots.data(), &info);
  return a;
}

/// The Cholesky factor of B B^H for a random B, which zherk forms.
Vector cholesky_factor(Data& data) {
  ComplexVector b = well_conditioned(data.complexes(kElements));
  ComplexVector a(kElements);
  Integer info = 0;
  {
    // Formed once for both precisions, so that the product's rounding does not count.
    const support::Digits scope(2500);
    QuarnMP_f06zpf_("L", "N", kOrder, kOrder, 1, b.data(), kOrder, 0, a.data(), kOrder, 1, 1);
  }
  QuarnMP_f07frf_("L", kOrder, a.data(), kOrder, &info, 1);
  return gathered(a);
}

/// wr and wi in one sequence, by real and then imaginary part: the order of deflation depends on rounding.
Vector in_order(const Vector& wr, const Vector& wi) {
  std::vector<std::pair<QuarnFloat, QuarnFloat>> zeros;
  for (std::size_t i = 0; i < wr.size(); ++i) {
    zeros.emplace_back(wr[i], wi[i]);
  }
  const support::Digits scope(8);  // conjugates have equal real parts up to rounding
  std::sort(zeros.begin(), zeros.end(), [](const auto& a, const auto& b) {
    const QuarnFloat gap = a.first - b.first;
    return fabs(gap) > QuarnFloat(1, -7) ? gap < 0 : a.second < b.second;
  });
  Vector result;
  for (const auto& [re, im] : zeros) {
    result.push_back(re);
    result.push_back(im);
  }
  return result;
}

Vector eigenvalues(Data& data) {
  Vector h = data.reals(kElements);
  for (std::size_t j = 0; j < kOrder; ++j) {
    for (std::size_t i = j + 2; i < kOrder; ++i) {
      h[i + j * kOrder] = 0;
    }
  }
  Vector wr(kOrder);
  Vector wi(kOrder);
  Vector work(kOrder);
  Integer info = 0;
  QuarnMP_f08pef_("E", "N", kOrder, 1, kOrder, h.data(), kOrder, wr.data(), wi.data(), nullptr, 1, work.data(), kOrder,
                  &info, 1, 1);
  return in_order(wr, wi);
}

/// Eigenvalues, and the eigenvectors with positive first components.
Vector symmetric_eigensystem(Data& data) {
  Vector a = data.reals(kElements);
  Vector w(kOrder);
  Vector work(3 * kOrder);
  Integer info = 0;
  QuarnMPX_dsyev_("V", "L", kOrder, a.data(), kOrder, w.data(), work.data(), 3 * kOrder, &info, 1, 1);
  for (std::size_t j = 0; j < kOrder; ++j) {
    const QuarnFloat sign = signbit(a[j * kOrder]) ? -1 : 1;
    for (std::size_t i = 0; i < kOrder; ++i) {
      w.push_back(sign * a[i + j * kOrder]);
    }
  }
  return w;
}

Vector chosen_eigenvalues(Data& data) {
  Vector a = data.reals(kElements);
  Vector w(kOrder);
  Vector work(8 * kOrder);
  Integer m = 0;
  Integer info = 0;
  QuarnMPX_dsyevx_("N", "I", "L", kOrder, a.data(), kOrder, 0, 0, 2, kOrder, 0, &m, w.data(), nullptr, 1, work.data(),
                   8 * kOrder, nullptr, nullptr, &info, 1, 1, 1);
  return w;
}

/// B is diagonally dominant.
Vector generalised_symmetric_eigenvalues(Data& data) {
  Vector a = data.reals(kElements);
  Vector b = data.reals(kElements);
  for (std::size_t i = 0; i < b.size(); i += kOrder + 1) {
    b[i] += kOrder + 1;
  }
  Vector w(kOrder);
  Vector work(3 * kOrder);
  Integer info = 0;
  QuarnMPX_dsygv_(1, "N", "L", kOrder, a.data(), kOrder, b.data(), kOrder, w.data(), work.data(), 3 * kOrder, &info, 1,
                  1);
  return w;
}

Vector complex_eigenvalues(Data& data) {
  ComplexVector a = data.complexes(kElements);
  ComplexVector w(kOrder);
  ComplexVector work(2 * kOrder);
  Integer info = 0;
  QuarnMPX_zgeev_("N", "N", kOrder, a.data(), kOrder, w.data(), nullptr, 1, nullptr, 1, work.data(), 2 * kOrder,
                  nullptr, &info, 1, 1);
  Vector re;
  Vector im;
  for (const Complex& value : w) {
    re.push_back(value.re);
    im.push_back(value.im);
  }
  return in_order(re, im);
}

Vector polynomial_zeros(Data& data) {
  const Vector a = data.reals(kOrder + 1);
  ComplexVector zeros(kOrder);
  Vector errors(kOrder);
  Integer info = 0;
  QuarnMPX_dpzeros_(kOrder, a.data(), zeros.data(), errors.data(), &info);
  Vector re;
  Vector im;
  for (const Complex& zero : zeros) {
    re.push_back(zero.re);
    im.push_back(zero.im);
  }
  return in_order(re, im);
}

Vector singular_values(Data& data) {
  Vector a = data.reals(kElements);
  Vector s(kOrder);
  Vector work(5 * kOrder);
  Integer info = 0;
  QuarnMPX_dgesvd_("N", "N", kOrder, kOrder, a.data(), kOrder, s.data(), nullptr, 1, nullptr, 1, work.data(),
                   5 * kOrder, &info, 1, 1);
  return s;
}

/// A random upper triangle with the diagonal 1 ... n.
Vector schur_form(Data& data) {
  Vector t = data.reals(kElements);
  for (std::size_t j = 0; j < kOrder; ++j) {
    for (std::size_t i = j; i < kOrder; ++i) {
      t[i + j * kOrder] = i == j ? QuarnFloat(Integer(j) + 1) : QuarnFloat(0);
    }
  }
  return t;
}

Vector eigenvectors(Data& data) {
  Vector t = schur_form(data);
  Vector vr(kElements);
  Vector work(3 * std::size_t(kOrder));
  Integer m = 0;
  Integer info = 0;
  QuarnMP_f08qkf_("R", "A", nullptr, kOrder, t.data(), kOrder, nullptr, 1, vr.data(), kOrder, kOrder, &m, work.data(),
                  &info, 1, 1);
  return vr;
}

Vector condition_numbers(Data& data) {
  Vector t = schur_form(data);
  Vector vl(kElements);
  Vector vr(kElements);
  Vector s(kOrder);
  Vector sep(kOrder);
  Vector work(kElements);
  std::vector<Integer> iwork(2 * std::size_t(kOrder));
  Integer m = 0;
  Integer info = 0;
  QuarnMP_f08qkf_("B", "A", nullptr, kOrder, t.data(), kOrder, vl.data(), kOrder, vr.data(), kOrder, kOrder, &m,
                  work.data(), &info, 1, 1);
  QuarnMP_f08qlf_("B", "A", nullptr, kOrder, t.data(), kOrder, vl.data(), kOrder, vr.data(), kOrder, s.data(),
                  sep.data(), kOrder, &m, work.data(), kOrder, iwork.data(), &info, 1, 1);
  return gathered(s, sep);
}

Vector quartic_zeros(Data& data) {
  Vector coefficients = data.reals(5);
  Vector re(4);
  Vector im(4);
  Vector estimate(4);
  Integer ifail = 1;
  QuarnMP_c02alf_(&coefficients[0], &coefficients[1], &coefficients[2], &coefficients[3], &coefficients[4], re.data(),
                  im.data(), estimate.data(), &ifail);
  return in_order(re, im);
}

}  // namespace

std::vector<Case> dense_cases() {
  return {
      {"f07adf f06pjf", "linear system by LU, n = 16", real_solution, {}},
      {"f07arf f06sjf", "the same, complex", complex_solution, {}},
      {"f07adg", "LU with weighted pivoting, n = 16", weighted_factors, {}},
      {"f07frf", "Cholesky factor, n = 16", cholesky_factor, {}},
      {"f08pef", "eigenvalues of a Hessenberg matrix, n = 16", eigenvalues, {}},
      {"f08qkf", "eigenvectors of a triangular matrix, n = 16", eigenvectors, {}},
      {"f08qlf", "their condition numbers", condition_numbers, {}},
      {"dsyev", "symmetric eigenvalues and eigenvectors, n = 16", symmetric_eigensystem, {}},
      {"dsyevx", "chosen symmetric eigenvalues, n = 16", chosen_eigenvalues, {}},
      {"dsygv", "generalised symmetric eigenvalues, n = 16", generalised_symmetric_eigenvalues, {}},
      {"zgeev", "complex eigenvalues, n = 16", complex_eigenvalues, {}},
      {"dpzeros", "zeros of a polynomial, n = 16", polynomial_zeros, {}},
      {"dgesvd", "singular values, n = 16", singular_values, {}},
      {"c02alf", "zeros of a quartic", quartic_zeros, {}},
  };
}

}  // namespace accuracy
