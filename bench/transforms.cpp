// Complex Fourier transforms, through the library's public header. Peers: acb_dft of FLINT (Arb), with its plan made
// anew in each call and made beforehand, and a loop of radix 2 over raw MPFR with its table made anew.
#include "bench/peers.h"

// After mpreal, which the macros of mpfr.h would break.
#include <acb_dft.h>

#include "tesk2mp/fft.h"

namespace bench {
namespace {

constexpr int kSeed = 20261121;

/// Registers body(state, digits) under "cfft n/peer/digits"; it transforms the same random numbers again and again.
template <class Body>
void add(int n, const char* peer, Body body) {
  for (const int digits : {20, 50, 100, 500}) {
    const std::string name = "cfft " + std::to_string(n) + "/" + peer + "/" + std::to_string(digits);
    benchmark::RegisterBenchmark(name.c_str(), [n, digits, body](benchmark::State& state) {
      set_precision(digits);
      body(state, n, digits);
      state.counters["ns"] =
          benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    })->Unit(benchmark::kMillisecond);
  }
}

template <decltype(&QuarnMP_c06pcf_) transform>
void ours(benchmark::State& state, int n, int digits) {
  const auto parts = Operands(digits, false, kSeed).make<QuarnFloat>(std::size_t(2 * n));
  std::vector<Complex> x;
  for (std::size_t i = 0; i < parts.size(); i += 2) {
    x.emplace_back(parts[i], parts[i + 1]);
  }
  std::vector<Complex> work(2 * x.size());
  const Integer length = n;
  for (auto _ : state) {
    Integer ifail = -1;
    transform("F", x.data(), &length, work.data(), &ifail, 1);
    benchmark::ClobberMemory();
  }
}

/// The numbers of an acb vector.
class AcbVector {
 public:
  AcbVector(int n, int digits) : size_(n), values_(_acb_vec_init(n)) {
    const auto parts = Operands(digits, false, kSeed).make<std::string>(std::size_t(2 * n));
    for (int i = 0; i < n; ++i) {
      arb_set_str(acb_realref(values_ + i), parts[std::size_t(2 * i)].c_str(), bits_for(digits));
      arb_set_str(acb_imagref(values_ + i), parts[std::size_t(2 * i + 1)].c_str(), bits_for(digits));
    }
  }
  ~AcbVector() { _acb_vec_clear(values_, size_); }
  AcbVector(const AcbVector&) = delete;
  AcbVector& operator=(const AcbVector&) = delete;

  acb_ptr get() const { return values_; }

 private:
  slong size_;
  acb_ptr values_;
};

void acb(benchmark::State& state, int n, int digits) {
  const AcbVector x(n, digits);
  const AcbVector z(n, digits);
  for (auto _ : state) {
    acb_dft(z.get(), x.get(), n, bits_for(digits));
  }
}

void acb_planned(benchmark::State& state, int n, int digits) {
  const AcbVector x(n, digits);
  const AcbVector z(n, digits);
  acb_dft_pre_t plan;
  acb_dft_precomp_init(plan, n, bits_for(digits));
  for (auto _ : state) {
    acb_dft_precomp(z.get(), x.get(), plan, bits_for(digits));
  }
  acb_dft_precomp_clear(plan);
}

struct MpfrComplex {
  RawMpfr re{"0"};
  RawMpfr im{"0"};
};

/// One transform of radix 2 in place, n a power of 2, unscaled: bit reversal, then passes over doubling lengths.
class MpfrRadix2 {
 public:
  explicit MpfrRadix2(std::size_t n) : roots_(n / 2) {}

  void operator()(std::vector<MpfrComplex>& x) {
    make_table(x.size());
    reverse_bits(x);
    for (std::size_t half = 1; half < x.size(); half *= 2) {
      for (std::size_t block = 0; block < x.size(); block += 2 * half) {
        for (std::size_t i = 0; i < half; ++i) {
          butterfly(x[block + i], x[block + half + i], roots_[i * (x.size() / 2 / half)]);
        }
      }
    }
  }

 private:
  void make_table(std::size_t n) {
    mpfr_const_pi(step_.value, MPFR_RNDN);
    mpfr_mul_si(step_.value, step_.value, -2, MPFR_RNDN);
    mpfr_div_ui(step_.value, step_.value, n, MPFR_RNDN);
    for (std::size_t k = 0; k < roots_.size(); ++k) {
      mpfr_mul_ui(angle_.value, step_.value, k, MPFR_RNDN);
      mpfr_sin_cos(roots_[k].im.value, roots_[k].re.value, angle_.value, MPFR_RNDN);
    }
  }

  static void reverse_bits(std::vector<MpfrComplex>& x) {
    for (std::size_t i = 1, j = 0; i < x.size(); ++i) {
      std::size_t bit = x.size() / 2;
      for (; (j & bit) != 0; bit /= 2) {
        j ^= bit;
      }
      j ^= bit;
      if (i < j) {
        mpfr_swap(x[i].re.value, x[j].re.value);
        mpfr_swap(x[i].im.value, x[j].im.value);
      }
    }
  }

  /// (a, b) := (a + w b, a - w b)
  void butterfly(MpfrComplex& a, MpfrComplex& b, const MpfrComplex& w) {
    mpfr_mul(re_.value, b.re.value, w.re.value, MPFR_RNDN);
    mpfr_mul(product_.value, b.im.value, w.im.value, MPFR_RNDN);
    mpfr_sub(re_.value, re_.value, product_.value, MPFR_RNDN);
    mpfr_mul(im_.value, b.re.value, w.im.value, MPFR_RNDN);
    mpfr_mul(product_.value, b.im.value, w.re.value, MPFR_RNDN);
    mpfr_add(im_.value, im_.value, product_.value, MPFR_RNDN);
    mpfr_sub(b.re.value, a.re.value, re_.value, MPFR_RNDN);
    mpfr_sub(b.im.value, a.im.value, im_.value, MPFR_RNDN);
    mpfr_add(a.re.value, a.re.value, re_.value, MPFR_RNDN);
    mpfr_add(a.im.value, a.im.value, im_.value, MPFR_RNDN);
  }

  std::vector<MpfrComplex> roots_;
  RawMpfr step_{"0"};
  RawMpfr angle_{"0"};
  RawMpfr re_{"0"};
  RawMpfr im_{"0"};
  RawMpfr product_{"0"};
};

void mpfr_radix2(benchmark::State& state, int n, int digits) {
  auto parts = Operands(digits, false, kSeed).make<RawMpfr>(std::size_t(2 * n));
  std::vector<MpfrComplex> x(static_cast<std::size_t>(n));
  for (std::size_t i = 0; i < x.size(); ++i) {
    mpfr_swap(x[i].re.value, parts[2 * i].value);
    mpfr_swap(x[i].im.value, parts[2 * i + 1].value);
  }
  MpfrRadix2 transform(x.size());
  for (auto _ : state) {
    transform(x);
    benchmark::ClobberMemory();
  }
}

const bool registered = [] {
  for (const int n : {1000, 1009, 1024, 10007}) {
    add(n, "quarn", ours<QuarnMPX_c06pcf_>);
    if (n < 10000) {
      add(n, "classic", ours<QuarnMP_c06pcf_>);
    }
    add(n, "acb_dft", acb);
    add(n, "acb_dft planned", acb_planned);
  }
  add(1024, "mpfr", mpfr_radix2);
  return true;
}();

}  // namespace
}  // namespace bench
