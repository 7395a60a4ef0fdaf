// Transforms at more digits than block fixed point has, by the complex companions with guard digits.
#include <cmath>
#include <type_traits>

#include "src/fft/complex_engine.h"
#include "src/fft/sequences.h"
#include "src/frame/working_digits.h"

namespace tesk {
namespace {

using Numbers = std::vector<Complex>;

/// Each of log2 n passes costs a few units of 10^-D of the largest number.
int guard_digits(Integer n) { return 8 + int(std::log10(double(n))); }

/// The sums themselves, times sqrt(length) too small.
void sum(bool backward, Numbers& z) {
  Numbers work(2 * z.size());
  kFullEngine.transform(backward, z.data(), {1, Integer(z.size()), 1}, work.data());
}

QuarnFloat value_of(QuarnDivisor divisor, std::int64_t n) {
  return divisor == QuarnDivisor::length ? QuarnFloat(n)
         : divisor == QuarnDivisor::root ? sqrt(QuarnFloat(n))
                                         : QuarnFloat(1);
}

bool is_finite(const QuarnFloat& x) { return isfinite(x); }
bool is_finite(const Complex& x) { return isfinite(x.re) && isfinite(x.im); }

/// results[i] = factor * values[i], rounded to the working digits; NaN unless the data were finite.
void store(bool finite, const QuarnFloat& value, QuarnFloat& result) {
  result = finite ? value + QuarnFloat() : QuarnFloat("nan");
}
void store(bool finite, const Complex& value, Complex& result) {
  store(finite, value.re, result.re);
  store(finite, value.im, result.im);
}

/// The transforms with more digits: cosine and sine ones from a complex transform of the numbers with as many zeros
/// behind, types 1 of their period.
class Evaluation {
 public:
  Evaluation(RealKind kind, std::int64_t n, bool orthogonal)
      : kind_(kind),
        n_(n),
        is_sine_(kind >= RealKind::dst1),
        orthogonal_(orthogonal),
        angle_(4 * atan(QuarnFloat(1)) / (4 * n)) {}

  /// Element k of n / 2 + 1 given.
  std::vector<QuarnFloat> from_spectrum(const Numbers& spectrum) const {
    Numbers z(static_cast<std::size_t>(n_));
    for (std::size_t k = 0; k < spectrum.size(); ++k) {
      const std::size_t mirror = k == 0 ? 0 : z.size() - k;
      z[k] = k == mirror ? Complex(spectrum[k].re, QuarnFloat()) : spectrum[k];
      z[mirror] = conj(z[k]);
    }
    return real_parts(true, z, std::size_t(n_));
  }

  std::vector<QuarnFloat> operator()(const std::vector<QuarnFloat>& x) const {
    const QuarnFloat root = sqrt(QuarnFloat(2));
    const auto alone = [&](std::int64_t i) { return orthogonal_ && is_alone(i); };
    const bool scales_data = kind_ != RealKind::dct2 && kind_ != RealKind::dst2;
    const bool scales_results = kind_ != RealKind::dct3 && kind_ != RealKind::dst3;
    std::vector<QuarnFloat> data = x;
    for (std::int64_t i = 0; i < n_ && scales_data; ++i) {
      if (alone(i)) {
        data[std::size_t(i)] *= root;
      }
    }
    std::vector<QuarnFloat> y = kind_ == RealKind::dct1 || kind_ == RealKind::dst1 ? of_period(data) : of_twice(data);
    for (std::int64_t i = 0; i < n_ && scales_results; ++i) {
      if (alone(i)) {
        y[std::size_t(i)] /= root;
      }
    }
    return y;
  }

 private:
  bool is_alone(std::int64_t i) const {
    switch (kind_) {
      case RealKind::dct1:
        return i == 0 || i == n_ - 1;
      case RealKind::dct2:
      case RealKind::dct3:
        return i == 0;
      case RealKind::dst2:
      case RealKind::dst3:
        return i == n_ - 1;
      default:
        return false;
    }
  }

  static std::vector<QuarnFloat> real_parts(bool backward, Numbers& z, std::size_t count) {
    sum(backward, z);
    const QuarnFloat scale = sqrt(QuarnFloat(std::int64_t(z.size())));
    std::vector<QuarnFloat> parts;
    for (std::size_t k = 0; k < count; ++k) {
      parts.push_back(z[k].re * scale);
    }
    return parts;
  }

  /// exp(-pi i k / (4 n)).
  Complex turn(std::int64_t k) const {
    const QuarnFloat angle = angle_ * k;
    return {cos(angle), -sin(angle)};
  }

  std::vector<QuarnFloat> of_period(const std::vector<QuarnFloat>& x) const {
    // Even, or odd: i times the sequence has real sums.
    const std::size_t n = x.size();
    Numbers z(is_sine_ ? 2 * (n + 1) : 2 * (n - 1));
    for (std::size_t j = 0; j < n; ++j) {
      if (is_sine_) {
        z[j + 1] = Complex(QuarnFloat(), x[j]);
        z[z.size() - j - 1] = Complex(QuarnFloat(), -x[j]);
      } else {
        z[j] = Complex(x[j], QuarnFloat());
        z[(z.size() - j) % z.size()] = z[j];
      }
    }
    std::vector<QuarnFloat> y = real_parts(false, z, n + (is_sine_ ? 1 : 0));
    if (is_sine_) {
      y.erase(y.begin());
    }
    return y;
  }

  std::vector<QuarnFloat> of_twice(const std::vector<QuarnFloat>& x) const {
    const std::size_t n = x.size();
    const bool turned_before = kind_ != RealKind::dct2 && kind_ != RealKind::dst2;
    const bool turned_after = kind_ != RealKind::dct3 && kind_ != RealKind::dst3;
    const bool quarter = turned_before && turned_after;
    Numbers z(2 * n);
    for (std::size_t j = 0; j < n; ++j) {
      // Sine transforms are cosine transforms of the data with alternating signs, or in reverse order.
      const QuarnFloat value = !is_sine_ ? x[j] : turned_before ? x[n - 1 - j] : j % 2 == 0 ? x[j] : -x[j];
      z[j] = turned_before ? turn(2 * std::int64_t(j)) * Complex(value, QuarnFloat()) : Complex(value, QuarnFloat());
    }
    const Complex first = z[0];
    sum(false, z);
    const QuarnFloat scale = 2 * sqrt(QuarnFloat(std::int64_t(2 * n)));
    std::vector<QuarnFloat> y(n);
    for (std::size_t k = 0; k < n; ++k) {
      const std::int64_t turns = quarter ? 2 * std::int64_t(k) + 1 : turned_after ? 2 * std::int64_t(k) : 0;
      const Complex w = turn(turns);
      QuarnFloat value = (z[k].re * w.re - z[k].im * w.im) * scale;
      if (!turned_after) {
        value -= first.re;
      }
      const bool negated = is_sine_ && turned_before && k % 2 == 1;
      y[is_sine_ && !turned_before ? n - 1 - k : k] = negated ? -value : value;
    }
    return y;
  }

  RealKind kind_;
  std::int64_t n_;
  bool is_sine_;
  bool orthogonal_;
  QuarnFloat angle_;
};

std::int64_t logical_length(RealKind kind, std::int64_t n) {
  switch (kind) {
    case RealKind::to_spectrum:
    case RealKind::from_spectrum:
      return n;
    case RealKind::dct1:
      return 2 * (n - 1);
    case RealKind::dst1:
      return 2 * (n + 1);
    default:
      return 2 * n;
  }
}

template <class T>
bool are_finite(std::size_t count, const T* x, std::ptrdiff_t step) {
  for (std::size_t i = 0; i < count; ++i) {
    if (!is_finite(x[std::ptrdiff_t(i) * step])) {
      return false;
    }
  }
  return true;
}

}  // namespace

void transform_long(bool backward, Integer n, const Complex* x, std::ptrdiff_t step, Complex* y, QuarnDivisor divisor) {
  const bool finite = are_finite(std::size_t(n), x, step);
  Numbers z;
  {
    const WorkingDigits more(QuarnDigits() + guard_digits(n));
    for (Integer i = 0; i < n && finite; ++i) {
      z.push_back(x[i * step]);
    }
    z.resize(std::size_t(n));
    sum(backward, z);
    const QuarnFloat factor = sqrt(QuarnFloat(n)) / value_of(divisor, n);
    for (Complex& value : z) {
      value = Complex(value.re * factor, value.im * factor);
    }
  }
  for (std::size_t i = 0; i < z.size(); ++i) {
    store(finite, z[i], y[i]);
  }
}

template <class T, class U>
void transform_long(RealKind kind, Integer n, const T* x, std::ptrdiff_t step, U* y, QuarnDivisor divisor) {
  if constexpr (std::is_same_v<U, Complex>) {
    Numbers all;
    for (Integer i = 0; i < n; ++i) {
      all.emplace_back(x[i * step], QuarnFloat());
    }
    Numbers z(all.size());
    transform_long(false, n, all.data(), 1, z.data(), divisor);
    const std::size_t count = half_of(n);
    for (std::size_t k = 0; k < count; ++k) {
      const bool real = isfinite(z[k].im) && (k == 0 || 2 * k == z.size());
      y[k] = real ? Complex(z[k].re, QuarnFloat()) : z[k];
    }
  } else {
    const std::size_t count = std::is_same_v<T, Complex> ? half_of(n) : std::size_t(n);
    const bool finite = are_finite(count, x, step);
    std::vector<QuarnFloat> results;
    {
      const WorkingDigits more(QuarnDigits() + guard_digits(n));
      std::vector<T> data;
      for (std::size_t i = 0; i < count && finite; ++i) {
        data.push_back(x[std::ptrdiff_t(i) * step]);
      }
      data.resize(count);
      const Evaluation evaluate(kind, n, divisor == QuarnDivisor::root);
      if constexpr (std::is_same_v<T, Complex>) {
        results = evaluate.from_spectrum(data);
      } else {
        results = evaluate(data);
      }
      const QuarnFloat length = value_of(divisor, logical_length(kind, n));
      for (QuarnFloat& value : results) {
        value /= length;
      }
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
      store(finite, results[i], y[i]);
    }
  }
}

template void transform_long(RealKind, Integer, const QuarnFloat*, std::ptrdiff_t, Complex*, QuarnDivisor);
template void transform_long(RealKind, Integer, const Complex*, std::ptrdiff_t, QuarnFloat*, QuarnDivisor);
template void transform_long(RealKind, Integer, const QuarnFloat*, std::ptrdiff_t, QuarnFloat*, QuarnDivisor);

}  // namespace tesk
