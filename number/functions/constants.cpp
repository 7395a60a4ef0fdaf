// Mathematical constants, and hashes.
#include <cmath>

#include "number/elementary/series.h"
#include "number/functions/support.h"
#include "number/scalar/thread_state.h"
#include "quarn/numeric.hpp"

namespace quarn {
namespace {

/// R. P. Brent and E. M. McMillan, "Some new algorithms for high-precision computation of Euler's constant" (1980),
/// algorithm B1: U / V - log n with V the sum of (n^k / k!)^2 and U that of the same terms times the harmonic numbers;
/// the error is below e^-4n (R. P. Brent, F. Johansson 2013).
QuarnFloat compute_euler(int w) {
  const long n = long(w * 0.5757) + 4;
  const WorkingDigits scope(w + 20 + int(std::log10(double(n))));
  const QuarnFloat square = QuarnFloat(n) * QuarnFloat(n);
  QuarnFloat term = 1;
  QuarnFloat weighted;
  QuarnFloat sum = 1;
  QuarnFloat weighted_sum;
  for (long k = 1;; ++k) {
    const QuarnFloat number = k;
    term = term * square / number / number;
    // term H(k) = term (H(k - 1) + 1 / k)
    weighted = weighted * square / number / number + term / number;
    sum += term;
    weighted_sum += weighted;
    if (k > n && scientific_exponent(weighted) < scientific_exponent(weighted_sum) - QuarnDigits()) {
      break;
    }
    if (k % 64 == 0) {
      QuarnCheckInterrupt();
    }
  }
  return weighted_sum / sum - log(QuarnFloat(n));
}

/// pi log(2 + sqrt 3) / 8 + 3/8 of the sum of 1 / ((2 k + 1)^2 binomial(2 k, k)), by binary splitting.
QuarnFloat compute_catalan(int w) {
  const WorkingDigits scope(w + 20);
  const auto term = [](long k) -> Splitting {
    if (k == 0) {
      return {1, 1, 1};
    }
    // a(k) / a(k - 1) = k (2 k - 1) / (2 (2 k + 1)^2), so that a is 1
    const QuarnFloat p = QuarnFloat(k) * QuarnFloat(2 * k - 1);
    const QuarnFloat q = QuarnFloat(2) * QuarnFloat(2 * k + 1) * QuarnFloat(2 * k + 1);
    return {p, q, p};
  };
  const Splitting sum = split(0, long(w * 1.67) + 10, term);
  const QuarnFloat three = 3;
  return approximate_pi(w + 20) * log(QuarnFloat(2) + sqrt(three)) / QuarnFloat(8) +
         three * sum.t / (sum.q * QuarnFloat(8));
}

struct Grown {
  QuarnFloat value;
  int digits = 0;

  template <class Compute>
  QuarnFloat to(int w, const Compute& compute) {
    if (w > digits) {
      const int wanted = w + w / 8;
      value = compute(wanted);
      digits = wanted;
    }
    return rounded(value, w + 3);
  }
};

struct Kept {
  Grown euler;
  Grown catalan;
};

QuarnFloat approximate_constant(KnownConstant which, int w) {
  const WorkingDigits scope(w + 5);
  switch (which) {
    case KnownConstant::pi:
      return approximate_pi(w);
    case KnownConstant::e:
      return approximate_exp(1, w);
    case KnownConstant::euler:
      return own_cache<Kept>(Cache::named_constants).euler.to(w, compute_euler);
    case KnownConstant::catalan:
      return own_cache<Kept>(Cache::named_constants).catalan.to(w, compute_catalan);
    case KnownConstant::ln2:
      return approximate_ln2(w);
    case KnownConstant::ln10:
      return approximate_ln10(w);
    case KnownConstant::sqrt2:
      return sqrt(QuarnFloat(2));
    case KnownConstant::golden_ratio:
      return (QuarnFloat(1) + sqrt(QuarnFloat(5))) / QuarnFloat(2);
  }
  return special(Kind::nan);
}

}  // namespace

QuarnFloat constant(KnownConstant which) {
  return correctly_rounded([which](int w) { return approximate_constant(which, w); });
}

std::size_t hash(const QuarnFloat& x) noexcept {
  const auto mix = [](std::uint64_t seed, std::uint64_t value) {
    seed = (seed ^ value) * 0x9E3779B97F4A7C15U;
    return seed ^ (seed >> 32);
  };
  if (kind_of(x) == Kind::zero || kind_of(x) == Kind::nan) {
    return std::size_t(kind_of(x));
  }
  if (kind_of(x) == Kind::infinite) {
    return signbit(x) ? 0x5EED : 0xFEED;
  }
  const View v = view_of(x);
  std::uint64_t seed = mix(v.negative ? 1 : 2, std::uint64_t(v.exponent));
  for (std::size_t i = 0; i < v.length; ++i) {
    seed = mix(seed, v.limbs[i]);
  }
  return std::size_t(seed);
}

}  // namespace quarn
