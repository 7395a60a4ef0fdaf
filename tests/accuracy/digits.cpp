// Prints the table of docs/digits.md: how many digits of each routine's result are true.
//
// Every case is computed at D digits and again, on the same data and by the companion where there is one, at 2 D + 50.
// What is printed is -log10 of norm(difference) / norm(result), Euclidean norms, the least of three sets of data. That
// the routines converge to the right thing as the digits grow is what the tests show, against MPFR and LAPACK.
#include "support/digits.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/random.h"
#include "tesk2mp/tesk2mp.h"

namespace {

using Vector = std::vector<QuarnFloat>;
using ComplexVector = std::vector<Complex>;

/// Numbers in (-1, 1) with D digits, whatever the working precision when they are asked for.
class Data {
 public:
  Data(int digits, unsigned seed) : digits_(digits), random_(seed) {}

  QuarnFloat real() {
    std::string text = random_.below(2) == 0 ? "0." : "-0.";
    for (int i = 0; i < digits_; ++i) {
      text += char('0' + random_.below(10));
    }
    return QuarnFloat(text);
  }
  Complex complex() {
    QuarnFloat re = real();
    return {std::move(re), real()};
  }
  Vector reals(std::size_t count) {
    return filled<Vector>(count, [this] { return real(); });
  }
  ComplexVector complexes(std::size_t count) {
    return filled<ComplexVector>(count, [this] { return complex(); });
  }
  /// 0 <= value < bound
  Integer below(Integer bound) { return Integer(random_.below(std::uint64_t(bound))); }

 private:
  template <class Container, class Make>
  static Container filled(std::size_t count, Make make) {
    Container values(count);
    std::generate(values.begin(), values.end(), make);
    return values;
  }

  int digits_;
  support::Random random_;
};

void append(Vector& result, const QuarnFloat& x) { result.push_back(x); }
void append(Vector& result, const Complex& z) {
  result.push_back(z.re);
  result.push_back(z.im);
}
template <class T>
void append(Vector& result, const std::vector<T>& values) {
  for (const T& value : values) {
    append(result, value);
  }
}
template <class... Values>
Vector gathered(const Values&... values) {
  Vector result;
  (append(result, values), ...);
  return result;
}

using Computation = std::function<Vector(Data&)>;

/// A row of the table; a routine that carries constants as doubles has a classic computation beside the full one.
struct Case {
  const char* routines;
  const char* what;
  Computation full;
  Computation classic;
};

constexpr Integer kOrder = 16;
constexpr std::size_t kElements = std::size_t(kOrder) * kOrder;

Vector at_precision(const Computation& compute, int digits, int data_digits, unsigned seed) {
  const support::Digits scope(digits);
  Data data(data_digits, seed);
  return compute(data);
}

/// -log10 of the relative error, not above D + 1.
double digits_true(const Computation& compute, const Computation& reference, int digits) {
  double least = digits + 1;
  for (const unsigned seed : {1U, 2U, 3U}) {
    const Vector result = at_precision(compute, digits, digits, seed);
    const Vector exact = at_precision(reference, 2 * digits + 50, digits, seed);
    const support::Digits scope(2 * digits + 50);
    QuarnFloat error = 0;
    QuarnFloat norm = 0;
    for (std::size_t i = 0; i < exact.size(); ++i) {
      error += (result[i] - exact[i]) * (result[i] - exact[i]);
      norm += exact[i] * exact[i];
    }
    if (error != 0) {
      least = std::min(least, FloatToDouble(log10(norm / error)) / 2);
    }
  }
  return least;
}

/// A random matrix with 4 added on its diagonal: well conditioned, but not diagonally dominant.
template <class T>
std::vector<T> well_conditioned(std::vector<T> a) {
  for (std::size_t i = 0; i < a.size(); i += kOrder + 1) {
    a[i] = a[i] + T(QuarnFloat(4));
  }
  return a;
}

// Scalars and kernels -------------------------------------------------------------------------------------------------

using ComplexRoot = void (*)(QuarnFloat*, QuarnFloat*, QuarnFloat*, QuarnFloat*);

Computation complex_root(ComplexRoot entry) {
  return [entry](Data& data) {
    Vector x = data.reals(2);
    Vector y(2);
    entry(&x[0], &x[1], &y[0], &y[1]);
    return y;
  };
}

Vector modulus(Data& data) {
  const Complex z = data.complex();
  return gathered(QuarnMP_a02abfn_(z.re, z.im));
}

Vector quotient(Data& data) {
  const Complex x = data.complex();
  const Complex y = data.complex();
  Vector z(2);
  QuarnMP_a02acfn_(x.re, x.im, y.re, y.im, &z[0], &z[1]);
  return z;
}

Vector rotation(Data& data) {
  Vector x = data.reals(2);
  Vector c_and_s(2);
  QuarnMP_f06aaf_(&x[0], &x[1], &c_and_s[0], &c_and_s[1]);
  return gathered(x, c_and_s);
}

Vector euclidean_norm(Data& data) {
  Vector x = data.reals(100);
  return gathered(QuarnMP_f06ejf_(100, x.data(), 1));
}

Vector matrix_vector(Data& data) {
  Vector a = data.reals(kElements);
  Vector x = data.reals(kOrder);
  Vector y(kOrder);
  QuarnMP_f06paf_("N", kOrder, kOrder, 1, a.data(), kOrder, x.data(), 1, 0, y.data(), 1, 1);
  return y;
}

Vector triangle_vector(Data& data) {
  Vector a = data.reals(kElements);
  Vector x = data.reals(kOrder);
  QuarnMP_f06pff_("U", "N", "N", kOrder, a.data(), kOrder, x.data(), 1, 1, 1, 1);
  return x;
}

Vector rank_one_update(Data& data) {
  Vector a = data.reals(kElements);
  Vector x = data.reals(kOrder);
  Vector y = data.reals(kOrder);
  QuarnMP_f06pmf_(kOrder, kOrder, data.real(), x.data(), 1, y.data(), 1, a.data(), kOrder);
  return a;
}

Vector matrix_product(Data& data) {
  Vector a = data.reals(kElements);
  Vector b = data.reals(kElements);
  Vector c(kElements);
  QuarnMP_f06yaf_("N", "N", kOrder, kOrder, kOrder, 1, a.data(), kOrder, b.data(), kOrder, 0, c.data(), kOrder, 1, 1);
  return c;
}

Vector complex_matrix_product(Data& data) {
  ComplexVector a = data.complexes(kElements);
  ComplexVector b = data.complexes(kElements);
  ComplexVector c(kElements);
  QuarnMP_f06zaf_("N", "N", kOrder, kOrder, kOrder, Complex(1), a.data(), kOrder, b.data(), kOrder, Complex(0),
                  c.data(), kOrder, 1, 1);
  return gathered(c);
}

Vector triangular_systems(Data& data) {
  Vector a = well_conditioned(data.reals(kElements));
  Vector b = data.reals(kElements);
  QuarnMP_f06yjf_("L", "U", "N", "N", kOrder, kOrder, 1, a.data(), kOrder, b.data(), kOrder, 1, 1, 1, 1);
  return b;
}

Vector rank_k_update(Data& data) {
  ComplexVector a = data.complexes(kElements);
  ComplexVector c(kElements);
  QuarnMP_f06zpf_("L", "N", kOrder, kOrder, 1, a.data(), kOrder, 0, c.data(), kOrder, 1, 1);
  return gathered(c);
}

Vector frobenius_norm(Data& data) {
  Vector a = data.reals(kElements);
  Vector work(kOrder);
  return gathered(QuarnMP_f06raf_("F", kOrder, kOrder, a.data(), kOrder, work.data(), 1));
}

// Factorisations and eigenvalues --------------------------------------------------------------------------------------

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

// Sparse matrices -----------------------------------------------------------------------------------------------------

/// Random entries, five a row, places in random order; of the lower triangle alone when it is asked for.
template <class T>
struct Entries {
  Entries(Data& data, std::vector<T> values, bool lower) : a(std::move(values)) {
    for (std::size_t k = 0; k < a.size(); ++k) {
      const Integer row = 1 + data.below(kOrder);
      irow.push_back(row);
      icol.push_back(1 + data.below(lower ? row : kOrder));
    }
  }
  std::vector<T> a;
  std::vector<Integer> irow;
  std::vector<Integer> icol;
};
constexpr Integer kEntries = 5 * kOrder;

template <class T>
std::vector<T> random_values(Data& data, std::size_t count) {
  if constexpr (std::is_same_v<T, Complex>) {
    return data.complexes(count);
  } else {
    return data.reals(count);
  }
}

/// y := A x by `multiply`(n, nnz, entries, x, y, ifail).
template <class T, class Multiply>
Computation sparse_product(bool lower, Multiply multiply) {
  return [lower, multiply](Data& data) {
    Entries<T> entries(data, random_values<T>(data, kEntries), lower);
    const std::vector<T> x = random_values<T>(data, kOrder);
    std::vector<T> y(kOrder);
    Integer ifail = 1;
    multiply(&kOrder, &kEntries, entries, x.data(), y.data(), &ifail);
    return gathered(y);
  };
}

/// f11xaf, f11xnf.
template <class T, class Entry>
Computation general_product(Entry entry) {
  return sparse_product<T>(false, [entry](auto n, auto nnz, const auto& e, auto x, auto y, auto ifail) {
    entry("N", n, nnz, e.a.data(), e.irow.data(), e.icol.data(), "N", x, y, ifail, 1, 1);
  });
}

/// f11xef, f11xsf.
template <class T, class Entry>
Computation symmetric_product(Entry entry) {
  return sparse_product<T>(true, [entry](auto n, auto nnz, const auto& e, auto x, auto y, auto ifail) {
    entry(n, nnz, e.a.data(), e.irow.data(), e.icol.data(), "N", x, y, ifail, 1);
  });
}

Vector canonical_form(Data& data) {
  Entries<QuarnFloat> entries(data, data.reals(kEntries), false);
  Integer n = kOrder;
  Integer nnz = kEntries;
  Integer ifail = 1;
  std::vector<Integer> istr(kOrder + 1);
  std::vector<Integer> iwork(std::size_t(kOrder) + kEntries);
  QuarnMP_f11zaf_(&n, &nnz, entries.a.data(), entries.irow.data(), entries.icol.data(), "S", "K", istr.data(),
                  iwork.data(), &ifail, 1, 1);
  entries.a.resize(std::size_t(nnz));
  return entries.a;
}

// Transforms ----------------------------------------------------------------------------------------------------------

using RealTransform = void (*)(QuarnFloat*, Integer*, QuarnFloat*, Integer*);

Computation transform(RealTransform entry) {
  return [entry](Data& data) {
    Vector x = data.reals(360);
    Vector work(x.size());
    Integer n = Integer(x.size());
    Integer ifail = 1;
    entry(x.data(), &n, work.data(), &ifail);
    return x;
  };
}

using ComplexTransform = decltype(&QuarnMP_c06pcf_);

Computation complex_transform(ComplexTransform entry, Integer n) {
  return [entry, n](Data& data) {
    ComplexVector x = data.complexes(std::size_t(n));
    ComplexVector work(2 * x.size());
    Integer ifail = 1;
    entry("F", x.data(), &n, work.data(), &ifail, 1);
    return gathered(x);
  };
}

using DimensionalTransform = decltype(&QuarnMP_c06pjf_);

Computation dimensional_transform(DimensionalTransform entry) {
  return [entry](Data& data) {
    const std::array<Integer, 3> nd = {6, 10, 6};
    const Integer ndim = 3;
    const Integer n = 360;
    const Integer lwork = n + 3 * (10 + 5);
    ComplexVector x = data.complexes(std::size_t(n));
    ComplexVector work(std::size_t(lwork), Complex(0));
    Integer ifail = 1;
    entry("F", &ndim, nd.data(), &n, x.data(), work.data(), &lwork, &ifail, 1);
    return gathered(x);
  };
}

/// Between 360 reals and their spectrum.
template <class Export>
Computation spectrum(Export entry) {
  return [entry](Data& data) {
    Vector reals = data.reals(360);
    ComplexVector numbers = data.complexes(181);
    Integer ifail = 1;
    if constexpr (std::is_same_v<Export, decltype(&QuarnMPX_rfft_)>) {
      entry("O", 360, 1, reals.data(), 1, 0, numbers.data(), 1, 0, &ifail, 1);
      return gathered(numbers);
    } else {
      entry("O", 360, 1, numbers.data(), 1, 0, reals.data(), 1, 0, &ifail, 1);
      return gathered(reals);
    }
  };
}

Computation typed_transform(decltype(&QuarnMPX_dct_) entry, Integer type) {
  return [entry, type](Data& data) {
    const Vector x = data.reals(360);
    Vector y(360);
    Integer ifail = 1;
    entry("F", "O", type, 360, 1, x.data(), 1, 0, y.data(), 1, 0, &ifail, 1, 1);
    return gathered(y);
  };
}

Vector array_transform(Data& data) {
  const Integer nd[] = {6, 10, 6};
  const Integer axes[] = {1, 2, 3};
  const ComplexVector x = data.complexes(360);
  ComplexVector y(360);
  Integer ifail = 1;
  QuarnMPX_fftn_("F", "O", 3, nd, 3, axes, x.data(), y.data(), &ifail, 1, 1);
  return gathered(y);
}

Vector convolution(Data& data) {
  const Vector a = data.reals(100);
  const Vector b = data.reals(80);
  Vector z(179);
  Integer ifail = 1;
  QuarnMPX_convolve_("L", 1, 100, a.data(), 80, b.data(), z.data(), &ifail, 1);
  return gathered(z);
}

// The table -----------------------------------------------------------------------------------------------------------

const std::vector<Case> kCases = {
    {"x01aaf", "pi", [](Data&) { return gathered(QuarnMPX_x01aaf_()); },
     [](Data&) { return gathered(QuarnMP_x01aaf_()); }},
    {"a02aaf", "complex square root", complex_root(QuarnMPX_a02aaf_), complex_root(QuarnMP_a02aaf_)},
    {"a02abf", "modulus of a complex number", modulus, {}},
    {"a02acf", "complex quotient", quotient, {}},
    {"f06aaf", "plane rotation", rotation, {}},
    {"f06ejf", "Euclidean norm, n = 100", euclidean_norm, {}},
    {"f06paf", "matrix times vector, n = 16", matrix_vector, {}},
    {"f06pff", "triangular matrix times vector, n = 16", triangle_vector, {}},
    {"f06pmf", "rank-1 update, n = 16", rank_one_update, {}},
    {"f06yaf", "matrix times matrix, n = 16", matrix_product, {}},
    {"f06zaf", "the same, complex", complex_matrix_product, {}},
    {"f06yjf", "triangular system, 16 right-hand sides", triangular_systems, {}},
    {"f06zpf", "Hermitian rank-16 update, n = 16", rank_k_update, {}},
    {"f06raf", "Frobenius norm, n = 16", frobenius_norm, {}},
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
    {"c06faf", "real Fourier transform, N = 360", transform(QuarnMPX_c06faf_), transform(QuarnMP_c06faf_)},
    {"c06fbf", "and its inverse", transform(QuarnMPX_c06fbf_), transform(QuarnMP_c06fbf_)},
    {"c06pcf", "complex Fourier transform, N = 360", complex_transform(QuarnMPX_c06pcf_, 360),
     complex_transform(QuarnMP_c06pcf_, 360)},
    {"c06pcf", "of a large prime, N = 1009", complex_transform(QuarnMPX_c06pcf_, 1009),
     complex_transform(QuarnMP_c06pcf_, 1009)},
    {"c06pjf", "all dimensions of 6 by 10 by 6", dimensional_transform(QuarnMPX_c06pjf_),
     dimensional_transform(QuarnMP_c06pjf_)},
    {"rfft", "spectrum of 360 reals", spectrum(QuarnMPX_rfft_), {}},
    {"irfft", "and its inverse", spectrum(QuarnMPX_irfft_), {}},
    {"dct", "cosine transform of type 1, N = 360", typed_transform(QuarnMPX_dct_, 1), {}},
    {"dct", "of type 2", typed_transform(QuarnMPX_dct_, 2), {}},
    {"dct", "of type 4", typed_transform(QuarnMPX_dct_, 4), {}},
    {"dst", "sine transform of type 3, N = 360", typed_transform(QuarnMPX_dst_, 3), {}},
    {"fftn", "all dimensions of 6 by 10 by 6", array_transform, {}},
    {"convolve", "convolution of 100 and 80 reals", convolution, {}},
    {"f11zaf", "canonical form, duplicates summed", canonical_form, {}},
    {"f11xaf", "sparse product, n = 16", general_product<QuarnFloat>(QuarnMP_f11xaf_), {}},
    {"f11xnf", "the same, complex", general_product<Complex>(QuarnMP_f11xnf_), {}},
    {"f11xef", "symmetric sparse product", symmetric_product<QuarnFloat>(QuarnMP_f11xef_), {}},
    {"f11xsf", "Hermitian sparse product", symmetric_product<Complex>(QuarnMP_f11xsf_), {}},
};

void print_row(const Case& row, const char* entry, const Computation& compute) {
  std::printf("| `%s` | %s | %s |", row.routines, row.what, entry);
  for (const int digits : {20, 50, 100, 1000}) {
    const double count = digits_true(compute, row.full, digits);
    if (count > digits - 0.05) {
      std::printf(" all |");
    } else {
      std::printf(" %.1f |", count);
    }
    std::fflush(stdout);
  }
  std::printf("\n");
}

}  // namespace

int main() {
  std::printf("| routine | what is computed | entry | 20 digits | 50 | 100 | 1000 |\n|---|---|---|--:|--:|--:|--:|\n");
  for (const Case& row : kCases) {
    if (row.classic) {
      print_row(row, "classic", row.classic);
    }
    print_row(row, row.classic ? "companion" : "", row.full);
  }
}
