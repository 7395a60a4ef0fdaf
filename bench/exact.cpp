// Products with one rounding of each entry beside the published order of operations, with a rounding in each, and
// beside MPFR's products and sums; factorisations out of them beside the published ones.
#include "quarn/exact.h"

#include "bench/peers.h"

// After mpreal, which the macros of mpfr.h would break.
#include <arb_mat.h>
#ifdef TESK_NFLOAT
#include <gr_mat.h>
#include <nfloat.h>
#endif

#include "tesk2mp/tesk2mp.h"

namespace bench {
namespace {

struct Shape {
  const char* name;
  int m;
  int n;
  int k;
  int spread;  // decimal exponents from -spread to spread; 0: over a few units
  std::vector<int> digits;
  bool mpfr;
};

const Shape kShapes[] = {
    {"product n = 8", 8, 8, 8, 0, {50}, true},
    {"product n = 16", 16, 16, 16, 0, {50}, true},
    {"product n = 32", 32, 32, 32, 0, {50}, true},
    {"product n = 64", 64, 64, 64, 0, {20, 50, 100, 200, 500, 1000}, true},
    {"product n = 128", 128, 128, 128, 0, {50, 100, 200}, true},
    {"product n = 256", 256, 256, 256, 0, {50}, true},
    {"product 256 x 1 x 256", 256, 1, 256, 0, {50}, false},
    {"product 256 x 256 x 8", 256, 256, 8, 0, {50}, false},
    {"graded by 10^(+-45), n = 128", 128, 128, 128, 45, {50}, true},
    {"graded by 10^(+-150), n = 128", 128, 128, 128, 150, {50}, true},
};

const Shape kComplex[] = {{"complex n = 64", 64, 64, 64, 0, {50}, false},
                          {"complex n = 128", 128, 128, 128, 0, {50}, false}};

template <class T>
std::vector<T> entries(const Shape& shape, int digits, std::size_t count, unsigned seed) {
  std::vector<T> made;
  Operands operands(digits, false, seed);
  if (shape.spread == 0) {
    return operands.make<T>(count);
  }
  std::mt19937 random(seed);
  for (std::size_t i = 0; i < count; ++i) {
    std::string text = random() % 2 != 0 ? "-0." : "0.";
    text += char('1' + random() % 9);
    for (int d = 1; d < digits; ++d) {
      text += char('0' + random() % 10);
    }
    text += "e" + std::to_string(int(random() % unsigned(2 * shape.spread + 1)) - shape.spread);
    made.push_back(T(text.c_str()));
  }
  return made;
}

void ours(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  const auto a = entries<QuarnFloat>(s, digits, std::size_t(s.m) * std::size_t(s.k), 1);
  const auto b = entries<QuarnFloat>(s, digits, std::size_t(s.k) * std::size_t(s.n), 2);
  std::vector<QuarnFloat> c(std::size_t(s.m) * std::size_t(s.n));
  const QuarnFloat one(1);
  const QuarnFloat zero;
  for (auto _ : state) {
    QuarnMatrixProduct(std::size_t(s.m), std::size_t(s.n), std::size_t(s.k), one, {a.data(), 1, s.m},
                       {b.data(), 1, s.k}, zero, {c.data(), 1, s.m});
  }
}

void classic(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  auto a = entries<QuarnFloat>(s, digits, std::size_t(s.m) * std::size_t(s.k), 1);
  auto b = entries<QuarnFloat>(s, digits, std::size_t(s.k) * std::size_t(s.n), 2);
  std::vector<QuarnFloat> c(std::size_t(s.m) * std::size_t(s.n));
  for (auto _ : state) {
    QuarnMP_dgemm_("N", "N", s.m, s.n, s.k, 1, a.data(), s.m, b.data(), s.k, 0, c.data(), s.m, 1, 1);
  }
}

/// A matrix of balls, by rows.
class ArbMatrix {
 public:
  ArbMatrix(const Shape& s, int digits, int rows, int columns, unsigned seed) {
    arb_mat_init(value, rows, columns);
    const auto numbers = entries<std::string>(s, digits, std::size_t(rows) * std::size_t(columns), seed);
    for (int i = 0; i < rows; ++i) {
      for (int j = 0; j < columns; ++j) {
        arb_set_str(arb_mat_entry(value, i, j), numbers[std::size_t(i + j * rows)].c_str(), bits_for(digits));
        mag_zero(arb_radref(arb_mat_entry(value, i, j)));
      }
    }
  }
  ~ArbMatrix() { arb_mat_clear(value); }
  ArbMatrix(const ArbMatrix&) = delete;
  ArbMatrix& operator=(const ArbMatrix&) = delete;

  arb_mat_t value;
};

void arb(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  const ArbMatrix a(s, digits, s.m, s.k, 1);
  const ArbMatrix b(s, digits, s.k, s.n, 2);
  const ArbMatrix c(s, digits, s.m, s.n, 3);
  for (auto _ : state) {
    arb_mat_mul(const_cast<arb_mat_struct*>(c.value), a.value, b.value, bits_for(digits));
  }
}

#ifdef TESK_NFLOAT
/// A matrix of FLINT's floating-point numbers without errors, of as many bits as those of mpreal.
class NfloatMatrix {
 public:
  NfloatMatrix(const Shape& s, int digits, int rows, int columns, unsigned seed) {
    if (nfloat_ctx_init(context, bits_for(digits), 0) != GR_SUCCESS) {
      throw std::length_error("nfloat has no numbers of so many bits");
    }
    gr_mat_init(value, rows, columns, context);
    const ArbMatrix balls(s, digits, rows, columns, seed);
    for (int i = 0; i < rows; ++i) {
      for (int j = 0; j < columns; ++j) {
        (void)nfloat_set_arf(gr_mat_entry_ptr(value, i, j, context), arb_midref(arb_mat_entry(balls.value, i, j)),
                             context);
      }
    }
  }
  ~NfloatMatrix() {
    gr_mat_clear(value, context);
    gr_ctx_clear(context);
  }
  NfloatMatrix(const NfloatMatrix&) = delete;
  NfloatMatrix& operator=(const NfloatMatrix&) = delete;

  gr_ctx_t context;
  gr_mat_t value;
};

void nfloat(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  const NfloatMatrix a(s, digits, s.m, s.k, 1);
  const NfloatMatrix b(s, digits, s.k, s.n, 2);
  NfloatMatrix c(s, digits, s.m, s.n, 3);
  for (auto _ : state) {
    if (gr_mat_mul(c.value, a.value, b.value, c.context) != GR_SUCCESS) {
      state.SkipWithError("gr_mat_mul failed");
      return;
    }
  }
}
#endif

std::vector<Complex> complex_entries(const Shape& s, int digits, std::size_t count, unsigned seed) {
  const auto parts = entries<QuarnFloat>(s, digits, 2 * count, seed);
  std::vector<Complex> made(count);
  for (std::size_t i = 0; i < count; ++i) {
    made[i] = {parts[2 * i], parts[2 * i + 1]};
  }
  return made;
}

void complex_ours(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  const auto a = complex_entries(s, digits, std::size_t(s.m) * std::size_t(s.k), 1);
  const auto b = complex_entries(s, digits, std::size_t(s.k) * std::size_t(s.n), 2);
  std::vector<Complex> c(std::size_t(s.m) * std::size_t(s.n));
  for (auto _ : state) {
    QuarnMatrixProduct(std::size_t(s.m), std::size_t(s.n), std::size_t(s.k), Complex(1), {a.data(), 1, s.m},
                       {b.data(), 1, s.k}, Complex(), {c.data(), 1, s.m});
  }
}

void mpfr_loop(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  const auto m = std::size_t(s.m);
  const auto n = std::size_t(s.n);
  const auto k = std::size_t(s.k);
  auto a = entries<RawMpfr>(s, digits, m * k, 1);
  auto b = entries<RawMpfr>(s, digits, k * n, 2);
  std::vector<RawMpfr> c(m * n, RawMpfr("0"));
  RawMpfr product("0");
  for (auto _ : state) {
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t l = 0; l < k; ++l) {
        for (std::size_t i = 0; i < m; ++i) {
          mpfr_mul(product.value, a[i + l * m].value, b[l + j * k].value, MPFR_RNDN);
          mpfr_add(c[i + j * m].value, c[i + j * m].value, product.value, MPFR_RNDN);
        }
      }
    }
  }
}

constexpr std::size_t kTerms = 1000;

void dot_ours(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  const auto a = entries<QuarnFloat>(s, digits, kTerms, 1);
  const auto b = entries<QuarnFloat>(s, digits, kTerms, 2);
  for (auto _ : state) {
    benchmark::DoNotOptimize(QuarnDot(kTerms, a.data(), 1, b.data(), 1));
  }
}

void dot_classic(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  const auto a = entries<QuarnFloat>(s, digits, kTerms, 1);
  const auto b = entries<QuarnFloat>(s, digits, kTerms, 2);
  for (auto _ : state) {
    QuarnFloat sum;
    for (std::size_t i = 0; i < kTerms; ++i) {
      QuarnAddProduct(sum, a[i], b[i]);
    }
    benchmark::DoNotOptimize(sum);
  }
}

void dot_mpfr(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  auto a = entries<RawMpfr>(s, digits, kTerms, 1);
  auto b = entries<RawMpfr>(s, digits, kTerms, 2);
  RawMpfr sum("0");
  RawMpfr product("0");
  for (auto _ : state) {
    mpfr_set_zero(sum.value, 1);
    for (std::size_t i = 0; i < kTerms; ++i) {
      mpfr_mul(product.value, a[i].value, b[i].value, MPFR_RNDN);
      mpfr_add(sum.value, sum.value, product.value, MPFR_RNDN);
    }
  }
}

// Factorisations of matrices of order n.

/// Hermitian, of random numbers and a diagonal that makes it positive definite; its lower triangle counts.
std::vector<Complex> definite(const Shape& s, int digits) {
  const auto order = std::size_t(s.n);
  const auto re = entries<QuarnFloat>(s, digits, order * order, 1);
  const auto im = entries<QuarnFloat>(s, digits, order * order, 2);
  std::vector<Complex> a(order * order);
  for (std::size_t i = 0; i < a.size(); ++i) {
    a[i] = Complex(re[i], im[i]);
  }
  for (std::size_t j = 0; j < order; ++j) {
    a[j * (order + 1)] = Complex(100 * s.n);
  }
  return a;
}

template <auto kFactorise>
void lu(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  const auto given = entries<QuarnFloat>(s, digits, std::size_t(s.n) * std::size_t(s.n), 1);
  std::vector<Integer> pivots(std::size_t(s.n));
  Integer info = 0;
  auto a = given;
  for (auto _ : state) {
    state.PauseTiming();
    a = given;
    state.ResumeTiming();
    kFactorise(s.n, s.n, a.data(), s.n, pivots.data(), &info);
  }
}

template <auto kFactorise>
void cholesky(benchmark::State& state, const Shape& s, int digits) {
  set_precision(digits);
  const auto given = definite(s, digits);
  Integer info = 0;
  auto a = given;
  for (auto _ : state) {
    state.PauseTiming();
    a = given;
    state.ResumeTiming();
    kFactorise("L", s.n, a.data(), s.n, &info, 1);
  }
}

const Shape kLu[] = {{"LU n = 32", 0, 32, 0, 0, {20, 50, 100}, false},
                     {"LU n = 64", 0, 64, 0, 0, {20, 50, 100, 200}, false},
                     {"LU n = 128", 0, 128, 0, 0, {50, 100}, false},
                     {"LU n = 256", 0, 256, 0, 0, {50}, false}};
const Shape kCholesky[] = {{"complex Cholesky n = 64", 0, 64, 0, 0, {20, 50, 100}, false},
                           {"complex Cholesky n = 128", 0, 128, 0, 0, {50}, false}};

using Run = void (*)(benchmark::State&, const Shape&, int);

void add(const Shape& shape, int digits, const char* peer, Run run) {
  const std::string name = std::string(shape.name) + "/" + peer + "/" + std::to_string(digits);
  benchmark::RegisterBenchmark(name.c_str(), [&shape, digits, run](benchmark::State& state) {
    run(state, shape, digits);
    state.counters["ns"] =
        benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  });
}

const Shape kDot = {"dot of 1000", 0, 0, 0, 0, {20, 50, 100}, true};

const bool registered = [] {
  for (const Shape& shape : kShapes) {
    for (const int digits : shape.digits) {
      add(shape, digits, "quarn", ours);
      add(shape, digits, "classic", classic);
      if (shape.mpfr) {
        add(shape, digits, "mpfr", mpfr_loop);
        add(shape, digits, "arb", arb);
#ifdef TESK_NFLOAT
        add(shape, digits, "nfloat", nfloat);
#endif
      }
    }
  }
  for (const Shape& shape : kComplex) {
    add(shape, 50, "complex", complex_ours);
    add(shape, 50, "quarn", ours);
  }
  for (const Shape& shape : kLu) {
    for (const int digits : shape.digits) {
      add(shape, digits, "quarn", lu<QuarnMPX_dgetrf_>);
      add(shape, digits, "classic", lu<QuarnMP_dgetrf_>);
    }
  }
  for (const Shape& shape : kCholesky) {
    for (const int digits : shape.digits) {
      add(shape, digits, "quarn", cholesky<QuarnMPX_zpotrf_>);
      add(shape, digits, "classic", cholesky<QuarnMP_zpotrf_>);
    }
  }
  for (const int digits : kDot.digits) {
    add(kDot, digits, "quarn", dot_ours);
    add(kDot, digits, "classic", dot_classic);
    add(kDot, digits, "mpfr", dot_mpfr);
  }
  return true;
}();

}  // namespace
}  // namespace bench
