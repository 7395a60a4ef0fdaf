#include "number/functions/gamma_series.h"

#include <cmath>
#include <vector>

#include "number/functions/complex_parts.h"
#include "number/scalar/thread_state.h"

namespace quarn {
namespace {

/// B(2k) / (2k (2k - 1)) for k = 1, 2, ..., each to a relative error of 10^-digits, and the logarithms of their sizes.
class StirlingCoefficients {
 public:
  void prepare(int count, int digits) {
    if (count <= this->count() && digits <= digits_) {
      return;
    }
    const int n = std::max(count + count / 4, this->count());
    const int w = std::max(digits + digits / 8, digits_);
    std::vector<QuarnFloat> made = compute(n, w);
    std::vector<double> sizes(made.size());
    for (std::size_t k = 1; k < made.size(); ++k) {
      sizes[k] = std::log10(std::fabs(leading_fraction(made[k]))) + double(view_of(made[k]).exponent);
    }
    values_ = std::move(made);
    sizes_ = std::move(sizes);
    digits_ = w;
  }
  int count() const { return values_.empty() ? 0 : int(values_.size()) - 1; }
  const QuarnFloat& value(int k) const { return values_[std::size_t(k)]; }
  bool good_for(int digits) const { return digits <= digits_; }
  /// log(2 pi) / 2 to `digits` digits.
  QuarnFloat half_log_two_pi(int digits) {
    if (digits > constant_digits_) {
      const int w = digits + digits / 8 + 10;
      const WorkingDigits scope(w);
      constant_ = QuarnFloat(5, -1) * approximate_log(QuarnFloat(2) * approximate_pi(w), w);
      constant_digits_ = w - 3;
    }
    return rounded(constant_, digits + 3);
  }
  /// log10 |value(k)|
  double size(int k) const { return sizes_[std::size_t(k)]; }

 private:
  /// From the tangent numbers T(k), B(2k) = (-1)^(k-1) 2k T(k) / (4^k (4^k - 1)), by the recurrence of Brent and Harvey
  /// ("Fast computation of Bernoulli, tangent and secant numbers", 2013): additions of positive numbers alone, so that
  /// each of n steps costs at most three units.
  static std::vector<QuarnFloat> compute(int n, int w) {
    const WorkingDigits scope(w + 10 + int(std::log10(double(n)) + 1));
    std::vector<QuarnFloat> t(std::size_t(n) + 1);
    t[1] = 1;
    for (int k = 2; k <= n; ++k) {
      t[std::size_t(k)] = t[std::size_t(k) - 1] * QuarnFloat(k - 1);
    }
    std::vector<QuarnFloat> small(std::size_t(n) + 1);
    for (int i = 0; i <= n; ++i) {
      small[std::size_t(i)] = i;
    }
    for (int k = 2; k <= n; ++k) {
      QuarnCheckInterrupt();
      for (int j = k; j <= n; ++j) {
        QuarnFloat& target = t[std::size_t(j)];
        target = small[std::size_t(j - k)] * t[std::size_t(j) - 1] + small[std::size_t(j - k) + 2] * target;
      }
    }
    QuarnFloat power = 1;
    for (int k = 1; k <= n; ++k) {
      power *= QuarnFloat(4);
      QuarnFloat& target = t[std::size_t(k)];
      target = target / (power * (power - QuarnFloat(1)) * QuarnFloat(2 * k - 1));
      if (k % 2 == 0) {
        target = -target;
      }
    }
    return t;
  }

  std::vector<QuarnFloat> values_;
  std::vector<double> sizes_;
  int digits_ = 0;
  QuarnFloat constant_;
  int constant_digits_ = 0;
};

double log10_of(const QuarnFloat& x) noexcept {
  return std::log10(std::fabs(leading_fraction(x))) + double(view_of(x).exponent);
}

/// |z| cos(arg(z) / 2)
double stirling_size(double re, double im) noexcept {
  const double size = std::hypot(re, im);
  return std::sqrt(size) * std::sqrt((size + re) / 2);
}

/// The logarithm of the size that counts.
double log_of_size(const QuarnFloat& z) noexcept { return log10_of(z); }
double log_of_size(const Complex& z) noexcept {
  constexpr std::int64_t kFar = 290;
  const std::int64_t exponent = largest_exponent(z);
  return exponent > kFar ? double(exponent) - 0.2 : std::log10(stirling_size(magnitude(z.re), magnitude(z.im)));
}

QuarnFloat logarithm(const QuarnFloat& z, int w) { return approximate_log(z, w); }
Complex logarithm(const Complex& z, int w) {
  const WorkingDigits scope(w + 1);
  return log(z);
}

bool is_one(const QuarnFloat& z) { return z == QuarnFloat(1); }
bool is_one(const Complex& /*not real*/) { return false; }

/// An upper estimate of the number of terms, from |B(2k)| < 4 (2k)! / (2 pi)^2k.
int terms_at_most(double log_z, int a) {
  int k = 1;
  for (;; k += 1 + k / 8) {
    const double size = std::lgamma(2.0 * k - 1) / 2.302585 + 0.61 - 2.0 * k * 0.79818;
    if (size - (2.0 * k - 1) * log_z < -a - 2) {
      return k + 1;
    }
  }
}

}  // namespace

double magnitude(const QuarnFloat& x) noexcept {
  if (kind_of(x) == Kind::zero) {
    return 0;
  }
  const std::int64_t exponent = view_of(x).exponent;
  return exponent > 300    ? 1e300
         : exponent < -300 ? 0
                           : std::fabs(leading_fraction(x)) * std::pow(10.0, double(exponent));
}

double stirling_start(int a) noexcept {
  // The series ends being useful below 0.367 a.
  return a <= 0 ? 3 : 3 + 0.52 * a;
}

long steps_to_stirling(const QuarnFloat& z, int a) noexcept {
  const double missing = stirling_start(a) - magnitude(z);
  return missing <= 0 ? 0 : long(missing) + 1;
}

long steps_to_stirling(const Complex& z, int a) noexcept {
  const double start = stirling_start(a);
  const double re = magnitude(z.re);
  const double im = magnitude(z.im);
  // |z + n| grows with n, and so does its cosine.
  long low = -1;
  long high = long(start) + 1;
  if (stirling_size(re, im) >= start) {
    return 0;
  }
  while (high - low > 1) {
    const long middle = low + (high - low) / 2;
    (stirling_size(re + double(middle), im) >= start ? high : low) = middle;
  }
  return high;
}

template <class T>
T stirling_sum(const T& z, int a, bool derivative) {
  StirlingCoefficients& c = own_cache<StirlingCoefficients>(Cache::gamma_series);
  const double log_z = log_of_size(z);
  const double more = derivative ? 4 : 0;  // the factor 2k - 1
  const int wanted = a + 8 + int(more);
  if (wanted <= 0 || log_z > wanted) {
    return T();
  }
  // The term with index last + 1 is left out, and its size bounds the error.
  const auto last_term = [&] {
    int k = 1;
    while (k <= c.count() && c.size(k) - (2.0 * k - 1) * log_z > -a - 1 - more) {
      ++k;
    }
    return k - 1;
  };
  if (!c.good_for(wanted) || last_term() == c.count()) {
    c.prepare(terms_at_most(log_z, a + int(more)), wanted);
  }
  const int last = last_term();
  const T inverse_square = [&] {
    const WorkingDigits scope(wanted);
    return T(1) / (z * z);
  }();
  // Horner's rule, each step to the digits that count: an error at term k counts as much as the term does. Shorter
  // steps pay where numbers are long.
  const int slack = 8 + int(more) + int(std::log10(last + 1.0));
  const auto digits_of = [&](int k) { return std::max(int(wanted + c.size(k) - (2.0 * k - 1) * log_z), 0) + slack; };
  T sum;
  for (int k = last; k > 0;) {
    const int digits = wanted < 126 ? wanted + 10 : std::min(digits_of(k) + wanted / 16 + 20, wanted + 10);
    const WorkingDigits scope(digits);
    const T factor = rounded(inverse_square, digits);
    do {
      sum = sum * factor + (derivative ? c.value(k) * QuarnFloat(2 * k - 1) : c.value(k));
      --k;
    } while (k > 0 && (digits == wanted + 10 || digits_of(k) <= digits));
  }
  const WorkingDigits scope(wanted);
  return derivative ? sum * inverse_square : sum / z;
}

template <class T>
T log_gamma_by_stirling(const T& z, int a) {
  const int whole = int(std::max<std::int64_t>(largest_exponent(z), 0)) + 10;
  const WorkingDigits scope(std::max(a + whole, 1) + 5);
  const int w = QuarnDigits();
  const T sum = (z - QuarnFloat(5, -1)) * logarithm(z, w) - z;
  return sum + own_cache<StirlingCoefficients>(Cache::gamma_series).half_log_two_pi(w) + stirling_sum(z, a + 1, false);
}

template <class T>
T digamma_by_stirling(const T& z, long steps, int a) {
  const int w = QuarnDigits();
  const T far = z + QuarnFloat(steps);
  T sum = (is_one(far) ? T() : logarithm(far, w)) - QuarnFloat(5, -1) / far - stirling_sum(far, a, true);
  // 1/(z + j) + 1/(z + n - 1 - j) = (2 z + n - 1) / (c + j (n - 1 - j)), c = z (z + n - 1)
  if (steps > 1) {
    const T c = z * (z + QuarnFloat(steps - 1));
    T inverses;
    for (long j = 0; j < steps / 2; ++j) {
      inverses = inverses + T(1) / (c + QuarnFloat(j * (steps - 1 - j)));
    }
    sum = sum - inverses * (z + z + QuarnFloat(steps - 1));
  }
  if (steps % 2 != 0) {
    sum = sum - T(1) / (z + QuarnFloat(steps / 2));
  }
  return sum;
}

template <class T>
T rising_product(const T& z, long n) {
  // Factors from both ends: (z + j)(z + n - 1 - j) = c + j (n - 1 - j) with c = z (z + n - 1), and two of these
  // together are c^2 + (p + q) c + p q. No sum is much smaller than its terms, since the real part of z is not
  // negative.
  T product = 1;
  T first = z;
  if (n % 2 != 0) {
    product = z;
    first = z + QuarnFloat(1);
    --n;
  }
  if (n == 0) {
    return product;
  }
  const T c = first * (first + QuarnFloat(n - 1));
  const long pairs = n / 2;
  const auto added = [n](long j) { return j * (n - 1 - j); };
  long j = 0;
  if (pairs >= 4 && n < 50'000) {
    const T square = c * c;
    for (; j + 1 < pairs; j += 2) {
      const std::int64_t p = added(j);
      const std::int64_t q = added(j + 1);
      product *= square + QuarnFloat(p + q) * c + QuarnFloat(p * q);
    }
  }
  for (; j < pairs; ++j) {
    product *= c + QuarnFloat(added(j));
  }
  return product;
}

template QuarnFloat stirling_sum(const QuarnFloat&, int, bool);
template Complex stirling_sum(const Complex&, int, bool);
template QuarnFloat log_gamma_by_stirling(const QuarnFloat&, int);
template Complex log_gamma_by_stirling(const Complex&, int);
template QuarnFloat digamma_by_stirling(const QuarnFloat&, long, int);
template Complex digamma_by_stirling(const Complex&, long, int);
template QuarnFloat rising_product(const QuarnFloat&, long);
template Complex rising_product(const Complex&, long);

}  // namespace quarn
