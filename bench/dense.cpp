// Dense linear algebra through the library's public header. Peers: the plain loops of the published algorithms over
// mpreal and over raw MPFR, and Eigen over mpreal.
#include <Eigen/Dense>
#include <Eigen/Eigenvalues>
#include <complex>

#include "bench/peers.h"
#include "tesk2mp/tesk2mp.hpp"

namespace bench {
namespace {

using mpfr::mpreal;
using EigenMatrix = Eigen::Matrix<mpreal, Eigen::Dynamic, Eigen::Dynamic>;

constexpr int kDigits[] = {50, 100};

template <class T>
std::vector<T> square(int digits, int n, unsigned seed) {
  return Operands(digits, false, seed).make<T>(std::size_t(n) * std::size_t(n));
}

EigenMatrix eigen_matrix(int digits, int n, unsigned seed) {
  const auto values = square<mpreal>(digits, n, seed);
  EigenMatrix matrix(n, n);
  std::copy(values.begin(), values.end(), matrix.data());
  return matrix;
}

// C := A B; a multiply-add is the unit. -------------------------------------------------------------------------------

std::size_t cube(int n) { return std::size_t(n) * std::size_t(n) * std::size_t(n); }

template <int n>
std::size_t product_ours(benchmark::State& state, int digits) {
  auto a = square<QuarnFloat>(digits, n, 1);
  auto b = square<QuarnFloat>(digits, n, 2);
  auto c = a;
  for (auto _ : state) {
    QuarnMP_dgemm_("N", "N", n, n, n, 1, a.data(), n, b.data(), n, 0, c.data(), n, 1, 1);
    benchmark::ClobberMemory();
  }
  return cube(n);
}

template <int n>
std::size_t product_mpreal(benchmark::State& state, int digits) {
  const auto a = square<mpreal>(digits, n, 1);
  const auto b = square<mpreal>(digits, n, 2);
  auto c = a;
  for (auto _ : state) {
    std::fill(c.begin(), c.end(), mpreal(0));
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t l = 0; l < n; ++l) {
        for (std::size_t i = 0; i < n; ++i) {
          c[i + j * n] = c[i + j * n] + a[i + l * n] * b[l + j * n];
        }
      }
    }
    benchmark::ClobberMemory();
  }
  return cube(n);
}

template <int n>
std::size_t product_eigen(benchmark::State& state, int digits) {
  const EigenMatrix a = eigen_matrix(digits, n, 1);
  const EigenMatrix b = eigen_matrix(digits, n, 2);
  EigenMatrix c(n, n);
  for (auto _ : state) {
    c.noalias() = a * b;
    benchmark::ClobberMemory();
  }
  return cube(n);
}

// P L U ---------------------------------------------------------------------------------------------------------------

template <int n>
std::size_t lu_ours(benchmark::State& state, int digits) {
  const auto a = square<QuarnFloat>(digits, n, 1);
  std::vector<Integer> ipiv(n);
  for (auto _ : state) {
    auto lu = a;
    Integer info = 0;
    QuarnMP_dgetrf_(n, n, lu.data(), n, ipiv.data(), &info);
    benchmark::ClobberMemory();
  }
  return cube(n) / 3;
}

template <int n>
std::size_t lu_mpreal(benchmark::State& state, int digits) {
  const auto given = square<mpreal>(digits, n, 1);
  for (auto _ : state) {
    auto a = given;
    for (std::size_t k = 0; k < n; ++k) {
      std::size_t pivot = k;
      for (std::size_t i = k + 1; i < n; ++i) {
        if (abs(a[i + k * n]) > abs(a[pivot + k * n])) {
          pivot = i;
        }
      }
      for (std::size_t j = 0; j < n; ++j) {
        std::swap(a[k + j * n], a[pivot + j * n]);
      }
      for (std::size_t i = k + 1; i < n; ++i) {
        a[i + k * n] = a[i + k * n] / a[k + k * n];
      }
      for (std::size_t j = k + 1; j < n; ++j) {
        for (std::size_t i = k + 1; i < n; ++i) {
          a[i + j * n] = a[i + j * n] - a[i + k * n] * a[k + j * n];
        }
      }
    }
    benchmark::ClobberMemory();
  }
  return cube(n) / 3;
}

template <int n>
std::size_t lu_eigen(benchmark::State& state, int digits) {
  const EigenMatrix a = eigen_matrix(digits, n, 1);
  for (auto _ : state) {
    const Eigen::PartialPivLU<EigenMatrix> lu(a);
    benchmark::DoNotOptimize(lu.matrixLU().data());
  }
  return cube(n) / 3;
}

// L L^H, complex: a multiply-add of complex numbers is the unit.
// --------------------------------------------------------

template <int n>
std::size_t cholesky_ours(benchmark::State& state, int digits) {
  const auto re = square<QuarnFloat>(digits, n, 1);
  const auto im = square<QuarnFloat>(digits, n, 2);
  std::vector<Complex> given(re.size());
  for (std::size_t i = 0; i < re.size(); ++i) {
    given[i] = {re[i], im[i]};
  }
  for (std::size_t i = 0; i < re.size(); i += n + 1) {
    given[i] = Complex(QuarnFloat(1, 6));
  }
  for (auto _ : state) {
    auto a = given;
    Integer info = 0;
    QuarnMP_zpotrf_("L", n, a.data(), n, &info, 1);
    benchmark::DoNotOptimize(info);
  }
  return cube(n) / 6;
}

struct RawComplex {
  RawMpfr re{"0"};
  RawMpfr im{"0"};
};

/// The published loop by columns, all temporaries made once.
class RawCholesky {
 public:
  void factorise(std::vector<RawComplex>& a, std::size_t n) {
    for (std::size_t j = 0; j < n; ++j) {
      RawComplex& diagonal = a[j + j * n];
      for (std::size_t k = 0; k < j; ++k) {
        subtract_square(diagonal.re, a[j + k * n]);
      }
      mpfr_sqrt(diagonal.re.value, diagonal.re.value, MPFR_RNDN);
      for (std::size_t k = 0; k < j; ++k) {
        for (std::size_t i = j + 1; i < n; ++i) {
          subtract_product(a[i + j * n], a[i + k * n], a[j + k * n]);
        }
      }
      for (std::size_t i = j + 1; i < n; ++i) {
        mpfr_div(a[i + j * n].re.value, a[i + j * n].re.value, diagonal.re.value, MPFR_RNDN);
        mpfr_div(a[i + j * n].im.value, a[i + j * n].im.value, diagonal.re.value, MPFR_RNDN);
      }
    }
  }

 private:
  void subtract(RawMpfr& x, const RawMpfr& a, const RawMpfr& b) {
    mpfr_mul(product_.value, a.value, b.value, MPFR_RNDN);
    mpfr_sub(x.value, x.value, product_.value, MPFR_RNDN);
  }
  void add(RawMpfr& x, const RawMpfr& a, const RawMpfr& b) {
    mpfr_mul(product_.value, a.value, b.value, MPFR_RNDN);
    mpfr_add(x.value, x.value, product_.value, MPFR_RNDN);
  }
  void subtract_square(RawMpfr& x, const RawComplex& z) {
    subtract(x, z.re, z.re);
    subtract(x, z.im, z.im);
  }
  /// x -= y conj(z)
  void subtract_product(RawComplex& x, const RawComplex& y, const RawComplex& z) {
    subtract(x.re, y.re, z.re);
    subtract(x.re, y.im, z.im);
    subtract(x.im, y.im, z.re);
    add(x.im, y.re, z.im);
  }

  RawMpfr product_{"0"};
};

template <int n>
std::size_t cholesky_mpfr(benchmark::State& state, int digits) {
  const auto re = square<RawMpfr>(digits, n, 1);
  const auto im = square<RawMpfr>(digits, n, 2);
  std::vector<RawComplex> given(re.size());
  for (std::size_t i = 0; i < re.size(); ++i) {
    given[i] = {re[i], im[i]};
  }
  for (std::size_t i = 0; i < re.size(); i += n + 1) {
    given[i] = {RawMpfr("1e6"), RawMpfr("0")};
  }
  RawCholesky cholesky;
  for (auto _ : state) {
    auto a = given;
    cholesky.factorise(a, n);
    benchmark::ClobberMemory();
  }
  return cube(n) / 6;
}

// Eigenvalues
// -----------------------------------------------------------------------------------------------------------

constexpr int kHessenberg = 32;

template <class T>
std::vector<T> hessenberg(int digits) {
  auto h = square<T>(digits, kHessenberg, 3);
  for (std::size_t j = 0; j < kHessenberg; ++j) {
    for (std::size_t i = j + 2; i < kHessenberg; ++i) {
      h[i + j * kHessenberg] = T(0);
    }
  }
  return h;
}

std::size_t eigenvalues_ours(benchmark::State& state, int digits) {
  const auto given = hessenberg<QuarnFloat>(digits);
  std::vector<QuarnFloat> wr(kHessenberg);
  auto wi = wr;
  auto work = wr;
  for (auto _ : state) {
    auto h = given;
    Integer info = 0;
    QuarnMP_dhseqr_("E", "N", kHessenberg, 1, kHessenberg, h.data(), kHessenberg, wr.data(), wi.data(), nullptr, 1,
                    work.data(), kHessenberg, &info, 1, 1);
    benchmark::DoNotOptimize(info);
  }
  return 1;
}

std::size_t eigenvalues_eigen(benchmark::State& state, int digits) {
  const auto given = hessenberg<mpreal>(digits);
  EigenMatrix h(kHessenberg, kHessenberg);
  std::copy(given.begin(), given.end(), h.data());
  const EigenMatrix unit = EigenMatrix::Identity(kHessenberg, kHessenberg);
  for (auto _ : state) {
    Eigen::RealSchur<EigenMatrix> schur(kHessenberg);
    schur.computeFromHessenberg(h, unit, false);
    benchmark::DoNotOptimize(schur.matrixT().data());
  }
  return 1;
}

// Symmetric eigenproblems with vectors; the lower triangle counts.

template <int n>
std::size_t symmetric_ours(benchmark::State& state, int digits) {
  const auto given = square<QuarnFloat>(digits, n, 4);
  std::vector<QuarnFloat> w(n);
  std::vector<QuarnFloat> work(3 * n);
  for (auto _ : state) {
    auto a = given;
    Integer info = 0;
    QuarnMPX_dsyev_("V", "L", n, a.data(), n, w.data(), work.data(), 3 * n, &info, 1, 1);
    benchmark::DoNotOptimize(info);
  }
  return 1;
}

template <int n>
std::size_t symmetric_eigen(benchmark::State& state, int digits) {
  const EigenMatrix a = eigen_matrix(digits, n, 4);
  for (auto _ : state) {
    const Eigen::SelfAdjointEigenSolver<EigenMatrix> solver(a);
    benchmark::DoNotOptimize(solver.eigenvectors().data());
  }
  return 1;
}

template <int n>
std::size_t singular_ours(benchmark::State& state, int digits) {
  const auto given = square<QuarnFloat>(digits, n, 5);
  std::vector<QuarnFloat> s(n);
  std::vector<QuarnFloat> work(5 * n);
  auto u = given;
  auto vt = given;
  for (auto _ : state) {
    auto a = given;
    Integer info = 0;
    QuarnMPX_dgesvd_("A", "A", n, n, a.data(), n, s.data(), u.data(), n, vt.data(), n, work.data(), 5 * n, &info, 1, 1);
    benchmark::DoNotOptimize(info);
  }
  return 1;
}

template <int n>
std::size_t singular_eigen(benchmark::State& state, int digits) {
  const EigenMatrix a = eigen_matrix(digits, n, 5);
  for (auto _ : state) {
    const Eigen::JacobiSVD<EigenMatrix> solver(a, Eigen::ComputeFullU | Eigen::ComputeFullV);
    benchmark::DoNotOptimize(solver.singularValues().data());
  }
  return 1;
}

template <int n>
std::size_t qr_ours(benchmark::State& state, int digits) {
  const auto given = square<QuarnFloat>(digits, n, 12);
  std::vector<QuarnFloat> tau(n);
  std::vector<QuarnFloat> work(n);
  for (auto _ : state) {
    auto a = given;
    Integer info = 0;
    QuarnMPX_dgeqrf_(n, n, a.data(), n, tau.data(), work.data(), n, &info);
    benchmark::DoNotOptimize(info);
  }
  return 1;
}

template <int n>
std::size_t qr_eigen(benchmark::State& state, int digits) {
  const EigenMatrix a = eigen_matrix(digits, n, 12);
  for (auto _ : state) {
    const Eigen::HouseholderQR<EigenMatrix> solver(a);
    benchmark::DoNotOptimize(solver.matrixQR().data());
  }
  return 1;
}

/// Left and right eigenvectors; the peer has right ones alone.
template <int n>
std::size_t general_ours(benchmark::State& state, int digits) {
  const auto given = square<QuarnFloat>(digits, n, 13);
  const tesk2mp::MatrixView<const QuarnFloat> a(given.data(), n, n, n);
  for (auto _ : state) {
    const tesk2mp::EigenSystem system = tesk2mp::eigen(a);
    benchmark::DoNotOptimize(system.values.data());
  }
  return 1;
}

template <int n>
std::size_t general_eigen(benchmark::State& state, int digits) {
  const EigenMatrix a = eigen_matrix(digits, n, 13);
  for (auto _ : state) {
    const Eigen::EigenSolver<EigenMatrix> solver(a, true);
    benchmark::DoNotOptimize(solver.eigenvalues().data());
  }
  return 1;
}

/// Positive definite, of the lower triangle.
template <class T>
std::vector<T> dominant(int digits, int n, unsigned seed) {
  auto b = square<T>(digits, n, seed);
  for (std::size_t i = 0; i < b.size(); i += std::size_t(n) + 1) {
    b[i] = T(1000 * n);
  }
  return b;
}

template <int n>
std::size_t definite_ours(benchmark::State& state, int digits) {
  const auto a = square<QuarnFloat>(digits, n, 6);
  const auto b = dominant<QuarnFloat>(digits, n, 7);
  std::vector<QuarnFloat> w(n);
  std::vector<QuarnFloat> work(3 * n);
  for (auto _ : state) {
    auto x = a;
    auto factor = b;
    Integer info = 0;
    QuarnMPX_dsygv_(1, "V", "L", n, x.data(), n, factor.data(), n, w.data(), work.data(), 3 * n, &info, 1, 1);
    benchmark::DoNotOptimize(info);
  }
  return 1;
}

template <int n>
std::size_t definite_eigen(benchmark::State& state, int digits) {
  const EigenMatrix a = eigen_matrix(digits, n, 6);
  const auto values = dominant<mpreal>(digits, n, 7);
  EigenMatrix b(n, n);
  std::copy(values.begin(), values.end(), b.data());
  for (auto _ : state) {
    const Eigen::GeneralizedSelfAdjointEigenSolver<EigenMatrix> solver(a, b);
    benchmark::DoNotOptimize(solver.eigenvectors().data());
  }
  return 1;
}

template <int n>
std::size_t pencil_ours(benchmark::State& state, int digits) {
  const auto a = square<QuarnFloat>(digits, n, 8);
  const auto b = square<QuarnFloat>(digits, n, 9);
  std::vector<QuarnFloat> re(n);
  auto im = re;
  auto beta = re;
  auto x = a;
  std::vector<QuarnFloat> work(8 * n);
  for (auto _ : state) {
    auto p = a;
    auto q = b;
    Integer info = 0;
    QuarnMPX_dggev_("N", "V", n, p.data(), n, q.data(), n, re.data(), im.data(), beta.data(), nullptr, 1, x.data(), n,
                    work.data(), 8 * n, &info, 1, 1);
    benchmark::DoNotOptimize(info);
  }
  return 1;
}

template <int n>
std::size_t pencil_eigen(benchmark::State& state, int digits) {
  const EigenMatrix a = eigen_matrix(digits, n, 8);
  const EigenMatrix b = eigen_matrix(digits, n, 9);
  for (auto _ : state) {
    const Eigen::GeneralizedEigenSolver<EigenMatrix> solver(a, b, true);
    benchmark::DoNotOptimize(solver.alphas().data());
  }
  return 1;
}

template <int n>
std::size_t complex_ours(benchmark::State& state, int digits) {
  const auto re = square<QuarnFloat>(digits, n, 10);
  const auto im = square<QuarnFloat>(digits, n, 11);
  std::vector<Complex> given(re.size());
  for (std::size_t i = 0; i < re.size(); ++i) {
    given[i] = {re[i], im[i]};
  }
  std::vector<Complex> w(n);
  std::vector<Complex> work(2 * n);
  auto x = given;
  for (auto _ : state) {
    auto a = given;
    Integer info = 0;
    QuarnMPX_zgeev_("N", "V", n, a.data(), n, w.data(), nullptr, 1, x.data(), n, work.data(), 2 * n, nullptr, &info, 1,
                    1);
    benchmark::DoNotOptimize(info);
  }
  return 1;
}

template <int n>
std::size_t complex_eigen(benchmark::State& state, int digits) {
  using Number = std::complex<mpreal>;
  const auto re = square<mpreal>(digits, n, 10);
  const auto im = square<mpreal>(digits, n, 11);
  Eigen::Matrix<Number, Eigen::Dynamic, Eigen::Dynamic> a(n, n);
  for (std::size_t i = 0; i < re.size(); ++i) {
    a.data()[i] = Number(re[i], im[i]);
  }
  for (auto _ : state) {
    const Eigen::ComplexEigenSolver<Eigen::Matrix<Number, Eigen::Dynamic, Eigen::Dynamic>> solver(a, true);
    benchmark::DoNotOptimize(solver.eigenvalues().data());
  }
  return 1;
}

constexpr const char* kQuartic[] = {"1.25", "-3.5", "0.7", "2.2", "-4.1"};

std::size_t quartic_ours(benchmark::State& state, int /*digits*/) {
  std::vector<QuarnFloat> k(std::begin(kQuartic), std::end(kQuartic));
  std::vector<QuarnFloat> re(4);
  auto im = re;
  auto error = re;
  for (auto _ : state) {
    Integer ifail = -1;
    QuarnMP_c02alf_(&k[0], &k[1], &k[2], &k[3], &k[4], re.data(), im.data(), error.data(), &ifail);
    benchmark::ClobberMemory();
  }
  return 1;
}

std::size_t quartic_eigen(benchmark::State& state, int /*digits*/) {
  const std::vector<mpreal> k(std::begin(kQuartic), std::end(kQuartic));
  for (auto _ : state) {
    EigenMatrix companion = EigenMatrix::Zero(4, 4);
    for (int j = 0; j < 4; ++j) {
      companion(0, j) = -k[std::size_t(j) + 1] / k[0];
      if (j < 3) {
        companion(j + 1, j) = 1;
      }
    }
    const Eigen::EigenSolver<EigenMatrix> solver(companion, false);
    benchmark::DoNotOptimize(solver.eigenvalues().data());
  }
  return 1;
}

template <int n>
void register_order() {
  const std::string order = " n=" + std::to_string(n);
  register_work("product" + order, "quarn", kDigits, product_ours<n>);
  register_work("product" + order, "mpreal", kDigits, product_mpreal<n>);
  register_work("product" + order, "eigen", kDigits, product_eigen<n>);
  register_work("LU" + order, "quarn", kDigits, lu_ours<n>);
  register_work("LU" + order, "mpreal", kDigits, lu_mpreal<n>);
  register_work("LU" + order, "eigen", kDigits, lu_eigen<n>);
  register_work("complex Cholesky" + order, "quarn", kDigits, cholesky_ours<n>);
  register_work("complex Cholesky" + order, "mpfr", kDigits, cholesky_mpfr<n>);
}

template <int n>
void register_spectra() {
  const std::string order = " n=" + std::to_string(n);
  register_work("symmetric eigen" + order, "quarn", kDigits, symmetric_ours<n>);
  register_work("symmetric eigen" + order, "eigen", kDigits, symmetric_eigen<n>);
  register_work("singular values" + order, "quarn", kDigits, singular_ours<n>);
  register_work("singular values" + order, "eigen", kDigits, singular_eigen<n>);
  register_work("QR" + order, "quarn", kDigits, qr_ours<n>);
  register_work("QR" + order, "eigen", kDigits, qr_eigen<n>);
  register_work("general eigen" + order, "quarn", kDigits, general_ours<n>);
  register_work("general eigen" + order, "eigen", kDigits, general_eigen<n>);
  register_work("complex eigen" + order, "quarn", kDigits, complex_ours<n>);
  register_work("complex eigen" + order, "eigen", kDigits, complex_eigen<n>);
  register_work("definite pencil" + order, "quarn", kDigits, definite_ours<n>);
  register_work("definite pencil" + order, "eigen", kDigits, definite_eigen<n>);
  register_work("pencil" + order, "quarn", kDigits, pencil_ours<n>);
  register_work("pencil" + order, "eigen", kDigits, pencil_eigen<n>);
}

const bool registered = [] {
  register_order<64>();
  register_order<128>();
  register_spectra<32>();
  register_spectra<64>();
  register_work("eigenvalues n=32", "quarn", kDigits, eigenvalues_ours);
  register_work("eigenvalues n=32", "eigen", kDigits, eigenvalues_eigen);
  register_work("quartic", "quarn", kDigits, quartic_ours);
  register_work("quartic", "eigen", kDigits, quartic_eigen);
  return true;
}();

}  // namespace
}  // namespace bench
