#include "quarn/convolution.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "number/fixed/plan.h"
#include "number/scalar/access.h"
#include "quarn/exact.h"
#include "quarn/quarnthread.h"
#include "quarn/realtransform.h"

namespace quarn {
namespace {

using Numbers = std::vector<QuarnFloat>;
using RealKind = QuarnRealTransform::Kind;

/// The decimal places that a sequence takes: its finite numbers are integers below 10^digits() times 10^lowest.
struct Span {
  std::int64_t highest = INT64_MIN;
  std::int64_t lowest = INT64_MAX;
  std::size_t longest = 0;  // coefficient, in limbs

  Span(const QuarnFloat* x, Integer n) {
    for (Integer i = 0; i < n; ++i) {
      if (kind_of(x[i]) != Kind::finite) {
        continue;
      }
      const View v = view_of(x[i]);
      std::int64_t end = v.exponent - std::int64_t(v.length) * Radix::digits;
      for (Limb last = v.limbs[v.length - 1]; last % 10 == 0; last /= 10) {
        ++end;
      }
      highest = std::max(highest, v.exponent);
      longest = std::max(longest, v.length);
      lowest = std::min(lowest, end);
    }
  }
  bool is_empty() const { return lowest == INT64_MAX; }
  std::int64_t digits() const { return highest - lowest; }
};

bool is_special(const QuarnFloat& x) { return kind_of(x) == Kind::infinite || kind_of(x) == Kind::nan; }

Integer results_of(QuarnConvolution kind, Integer na, Integer nb) {
  return kind == QuarnConvolution::circular ? na : na + nb - 1;
}

/// na nb products.
void convolve_directly(QuarnConvolution kind, const QuarnFloat* a, Integer na, const QuarnFloat* b, Integer nb,
                       QuarnFloat* z) {
  if (kind == QuarnConvolution::circular) {
    Numbers twice(b, b + nb);
    twice.insert(twice.end(), b, b + nb);
    for (Integer k = 0; k < na; ++k) {
      QuarnCheckInterrupt();
      z[k] = QuarnDot(std::size_t(na), a, 1, &twice[std::size_t(nb) + std::size_t(k)], -1);
    }
    return;
  }
  for (Integer k = 0; k < na + nb - 1; ++k) {
    QuarnCheckInterrupt();
    const Integer first = std::max<Integer>(0, k - nb + 1);
    const Integer last = std::min(k, na - 1);
    z[k] = QuarnDot(std::size_t(last - first) + 1, a + first, 1, b + (k - first), -1);
  }
}

/// Digits for a cyclic convolution of length n of integers below 10^digits together, so that results are off by less
/// than 1/4. With A and B the largest magnitudes, a number of either spectrum, below n A, is off by less than
/// 10^-G (sqrt(n) / 4 + 5 n) A in each part, thus by 9 * 10^-G n A in modulus; their product by less than
/// (18 + 30) 10^-G n^2 A B after its own roundings; and the results, averages of n numbers, by as much and a
/// quarter of 10^-G n^2 A B / sqrt(n) and half a unit, 5 * 10^-G n A B: less than 60 * 10^-G n^2 A B together.
int digits_for(std::int64_t digits, Integer n) {
  return int(digits) + int(std::ceil(2 * std::log10(double(n)) + std::log10(240.0)));
}

/// Whether the way by spectra costs less: estimates in microseconds, by measurements of either way from 20 to 500
/// digits.
bool pays(Integer na, const Span& a, Integer nb, const Span& b) {
  const double limbs = double(a.longest) * double(b.longest) / (block::kLimbsPerUnit * block::kLimbsPerUnit);
  const double products = double(na) * double(nb) * (0.03 + 0.0002 * limbs);
  const double n = double(na) + double(nb);
  const double digits = double(a.digits() + b.digits());
  return n * std::log2(n) * 0.23 * std::pow(digits / 100, 1.25) < products;
}

/// By spectra: all numbers are finite or count as zero.
void convolve_by_spectra(QuarnConvolution kind, const QuarnFloat* a, Integer na, const QuarnFloat* b, Integer nb,
                         const Span& span_a, const Span& span_b, Integer n, QuarnFloat* z) {
  const int digits = QuarnDigits();
  const WorkingDigits enough(digits_for(span_a.digits() + span_b.digits(), n));
  const auto spectrum_of = [n](const QuarnFloat* x, Integer count, std::int64_t lowest) {
    const QuarnFloat unit(1, int(-lowest));
    Numbers padded(static_cast<std::size_t>(n));
    for (Integer i = 0; i < count; ++i) {
      if (kind_of(x[i]) == Kind::finite) {
        padded[std::size_t(i)] = x[i] * unit;
      }
    }
    std::vector<Complex> spectrum(std::size_t(n / 2 + 1));
    QuarnRealTransform::kept(RealKind::to_spectrum, n)->run(padded.data(), 1, spectrum.data(), 1, QuarnDivisor::one);
    return spectrum;
  };
  std::vector<Complex> product = spectrum_of(a, na, span_a.lowest);
  QuarnCheckInterrupt();
  const std::vector<Complex> other = spectrum_of(b, nb, span_b.lowest);
  QuarnCheckInterrupt();
  for (std::size_t k = 0; k < product.size(); ++k) {
    product[k] = product[k] * other[k];
  }
  Numbers sums(static_cast<std::size_t>(n));
  QuarnRealTransform::kept(RealKind::from_spectrum, n)->run(product.data(), 1, sums.data(), 1, QuarnDivisor::length);
  QuarnCheckInterrupt();
  const QuarnFloat half(5, -1);
  const std::int64_t lowest = span_a.lowest + span_b.lowest;
  // Far exponents in two steps, since one power of ten might be none.
  const QuarnFloat unit_a(1, int(lowest / 2));
  const QuarnFloat unit_b(1, int(lowest - lowest / 2));
  const Integer results = results_of(kind, na, nb);
  for (Integer k = 0; k < results; ++k) {
    QuarnFloat sum = floor(sums[std::size_t(k)] + half);
    if (kind == QuarnConvolution::circular && k + na < na + nb - 1) {
      sum += floor(sums[std::size_t(k) + std::size_t(na)] + half);
    }
    z[k] = rounded(sum * unit_a * unit_b, digits);
  }
}

/// Adds the products that have an infinity or a NaN.
void add_special(QuarnConvolution kind, const QuarnFloat* a, Integer na, const QuarnFloat* b, Integer nb,
                 QuarnFloat* z) {
  const auto add = [&](Integer i, Integer j) {
    const std::int64_t k = std::int64_t(i) + j;
    z[kind == QuarnConvolution::circular ? k % na : k] += a[i] * b[j];
  };
  for (Integer i = 0; i < na; ++i) {
    for (Integer j = 0; j < nb && is_special(a[i]); ++j) {
      add(i, j);
    }
  }
  for (Integer j = 0; j < nb; ++j) {
    for (Integer i = 0; i < na && is_special(b[j]); ++i) {
      if (!is_special(a[i])) {
        add(i, j);
      }
    }
  }
}

}  // namespace
}  // namespace quarn

void QuarnConvolve(QuarnConvolution kind, const QuarnFloat* a, Integer na, const QuarnFloat* b, Integer nb,
                   QuarnFloat* z) {
  const quarn::Span span_a(a, na);
  const quarn::Span span_b(b, nb);
  const std::int64_t length = std::int64_t(na) + nb - 1;
  if (length <= quarn::block::kLongest && !span_a.is_empty() && !span_b.is_empty() &&
      span_a.digits() + span_b.digits() <= quarn::block::kMostDigits && quarn::pays(na, span_a, nb, span_b)) {
    const Integer n = QuarnFastLength(Integer(length));
    if (QuarnRealTransform::is_supported(QuarnRealTransform::Kind::to_spectrum, n,
                                         quarn::digits_for(span_a.digits() + span_b.digits(), n))) {
      quarn::convolve_by_spectra(kind, a, na, b, nb, span_a, span_b, n, z);
      return quarn::add_special(kind, a, na, b, nb, z);
    }
  }
  quarn::convolve_directly(kind, a, na, b, nb, z);
}

Integer QuarnFastLength(Integer n) noexcept {
  constexpr std::int64_t kMost = std::numeric_limits<Integer>::max();
  std::int64_t best = std::numeric_limits<std::int64_t>::max();
  for (std::int64_t five = 1; five <= kMost; five *= 5) {
    for (std::int64_t odd = five; odd <= kMost; odd *= 3) {
      std::int64_t length = odd;
      while (length < n) {
        length *= 2;
      }
      best = std::min(best, length);
    }
  }
  return best > kMost ? 0 : Integer(best);
}
