// Zeros of polynomials. O. Aberth, Iteration methods for finding all zeros of a polynomial simultaneously, Math. Comp.
// 27 (1973); D. A. Bini, Numerical computation of polynomial zeros by means of Aberth's method, Numer. Algorithms 13
// (1996): starts on circles that Newton's polygon gives. Errors: B. T. Smith, Error bounds for zeros of a polynomial
// based upon Gerschgorin's theorem, J. ACM 17 (1970).
#include <algorithm>
#include <cmath>

#include "quarn/quarnthread.h"
#include "src/dense/polynomial.h"
#include "src/frame/working_digits.h"

namespace tesk {
namespace {

constexpr int kFewDigits = 18;  // of sizes and bounds

/// 10^x as a number of few digits.
QuarnFloat power_of_ten(double x) {
  const double whole = std::floor(x);
  return QuarnFloat(std::pow(10.0, x - whole)) * QuarnFloat(1, int(whole));
}
double rough_log10(const QuarnFloat& x) {
  const WorkingDigits few(kFewDigits);
  return FloatToDouble(log10(x));
}

template <class T>
class ZeroFinder {
 public:
  explicit ZeroFinder(const std::vector<T>& a) : a_(a), n_(a.size() - 1), digits_(QuarnDigits()), x_(n_), radius_(n_) {
    const WorkingDigits few(kFewDigits);
    for (const T& coefficient : a) {
      sizes_.push_back(modulus(coefficient));
    }
    start();
  }

  /// Refines at more and more digits; false when a number left the range.
  bool solve() {
    const int limit = int(n_ + 2) * (digits_ + 15) + 60;
    int working = digits_ + 12 + int(n_ / 2);
    for (;;) {
      int wanted = 0;
      {
        const WorkingDigits more(working);
        iterate();
        if (!bound_errors()) {
          return false;
        }
        find_clusters();
        wanted = digits_wanted(working);
        if (wanted == 0 || working == limit) {
          return true;
        }
      }
      const int next = std::min({limit, std::max(wanted, working + working / 4), 4 * working});
      const WorkingDigits more(next);
      shrink_clusters(next - working);
      working = next;
    }
  }

  std::vector<PolynomialZero> result();

 private:
  struct Cluster {
    std::vector<std::size_t> members;
    QuarnFloat reach;  // of all its discs together
  };

  void start();
  void iterate();
  bool bound_errors();
  void find_clusters();
  int digits_wanted(int working) const;
  void shrink_clusters(int more);
  void evaluate(const Complex& x, Complex& p, Complex& derivative) const;
  QuarnFloat rounding_bound(const Complex& x) const;
  Complex cluster_centre(Complex centre, std::size_t order) const;
  bool is_single(std::size_t i, const Complex& at, const QuarnFloat& reach) const;
  void make_symmetric(std::vector<PolynomialZero>& zeros) const;

  const std::vector<T>& a_;
  std::size_t n_;
  int digits_;
  std::vector<QuarnFloat> sizes_;
  std::vector<Complex> x_;
  std::vector<QuarnFloat> radius_;
  std::vector<Cluster> clusters_;
};

/// On circles whose radii are the slopes of the upper hull of the points (i, log |a(i)|).
template <class T>
void ZeroFinder<T>::start() {
  std::vector<std::size_t> hull;
  std::vector<double> logs(n_ + 1);
  for (std::size_t i = 0; i <= n_; ++i) {
    if (sizes_[i] == 0) {
      continue;
    }
    logs[i] = rough_log10(sizes_[i]);
    while (hull.size() > 1) {
      const std::size_t b = hull.back();
      const std::size_t a = hull[hull.size() - 2];
      if ((logs[b] - logs[a]) * double(i - a) > (logs[i] - logs[a]) * double(b - a)) {
        break;
      }
      hull.pop_back();
    }
    hull.push_back(i);
  }
  // Coefficients run from the highest power down, so that the largest zeros come first.
  std::size_t at = 0;
  for (std::size_t k = 0; k + 1 < hull.size(); ++k) {
    const std::size_t count = hull[k + 1] - hull[k];
    const QuarnFloat radius = power_of_ten((logs[hull[k + 1]] - logs[hull[k]]) / double(count));
    for (std::size_t j = 0; j < count; ++j) {
      const double angle = 6.283185307179586 * (double(j) / double(count) + double(k) / double(n_)) + 0.7;
      x_[at++] = Complex(radius * QuarnFloat(std::cos(angle)), radius * QuarnFloat(std::sin(angle)));
    }
  }
}

template <class T>
void ZeroFinder<T>::evaluate(const Complex& x, Complex& p, Complex& derivative) const {
  QuarnCheckInterrupt();
  p = Complex(a_[0]);
  derivative = Complex();
  for (std::size_t i = 1; i <= n_; ++i) {
    derivative = derivative * x + p;
    p = p * x + Complex(a_[i]);
  }
}

/// What the roundings of evaluate() can have done to p: each of 2 n operations on complex numbers costs less than four
/// units of its result, and what it is multiplied by later adds up to the same polynomial of moduli.
template <class T>
QuarnFloat ZeroFinder<T>::rounding_bound(const Complex& x) const {
  const int working = QuarnDigits();
  const WorkingDigits few(kFewDigits);
  const QuarnFloat size = modulus(x);
  QuarnFloat sum = sizes_[0];
  for (std::size_t i = 1; i <= n_; ++i) {
    sum = sum * size + sizes_[i];
  }
  return sum * QuarnFloat(Integer(n_ + 1)) * QuarnFloat(9, 1 - working);
}

/// Aberth's corrections until p is as small as its roundings, or corrections are.
template <class T>
void ZeroFinder<T>::iterate() {
  const int working = QuarnDigits();
  const QuarnFloat least(1, 2 - working);
  std::vector<bool> settled(n_, false);
  const std::size_t most = 200 + std::size_t(8 * working);
  for (std::size_t sweep = 0; sweep < most; ++sweep) {
    bool all = true;
    for (std::size_t i = 0; i < n_; ++i) {
      if (settled[i]) {
        continue;
      }
      Complex p;
      Complex derivative;
      evaluate(x_[i], p, derivative);
      if (modulus(p) <= rounding_bound(x_[i])) {
        settled[i] = true;
        continue;
      }
      all = false;
      Complex push;
      for (std::size_t j = 0; j < n_; ++j) {
        const Complex distance = x_[i] - x_[j];
        if (j != i && !is_zero(distance)) {
          push = push + quotient(Complex(1.0), distance);
        }
      }
      // p / p' / (1 - push p / p')
      const Complex divisor = derivative - push * p;
      if (is_zero(divisor)) {
        x_[i] = x_[i] * Complex(QuarnFloat(1.1), QuarnFloat(0.1));
        continue;
      }
      const Complex correction = quotient(p, divisor);
      x_[i] = x_[i] - correction;
      settled[i] = magnitude(correction) <= least * magnitude(x_[i]);
    }
    if (all) {
      return;
    }
  }
}

/// Radii of discs of which every connected set of k holds k zeros.
template <class T>
bool ZeroFinder<T>::bound_errors() {
  for (std::size_t i = 0; i < n_; ++i) {
    Complex p;
    Complex derivative;
    evaluate(x_[i], p, derivative);
    QuarnFloat size = modulus(p) + rounding_bound(x_[i]);
    std::vector<QuarnFloat> distances;
    for (std::size_t j = 0; j < n_; ++j) {
      if (j != i) {
        const Complex distance = x_[i] - x_[j];
        const WorkingDigits few(kFewDigits);
        distances.push_back(modulus(distance));
      }
    }
    const WorkingDigits few(kFewDigits);
    // Large and small distances in turn, so that the product stays in range.
    size = size / sizes_[0] * QuarnFloat(Integer(n_));
    for (const QuarnFloat& distance : distances) {
      size /= distance;
    }
    radius_[i] = size * QuarnFloat(1.001);
    if (isnan(radius_[i]) || !isfinite(x_[i].re) || !isfinite(x_[i].im)) {
      return false;
    }
  }
  return true;
}

template <class T>
void ZeroFinder<T>::find_clusters() {
  clusters_.clear();
  std::vector<bool> taken(n_, false);
  for (std::size_t first = 0; first < n_; ++first) {
    if (taken[first]) {
      continue;
    }
    Cluster cluster{{first}, {}};
    taken[first] = true;
    for (std::size_t k = 0; k < cluster.members.size(); ++k) {
      const std::size_t i = cluster.members[k];
      for (std::size_t j = 0; j < n_; ++j) {
        if (!taken[j] && !(modulus(x_[i] - x_[j]) > radius_[i] + radius_[j])) {
          taken[j] = true;
          cluster.members.push_back(j);
        }
      }
    }
    if (cluster.members.size() == 1) {
      cluster.reach = radius_[first];
    } else {
      for (const std::size_t i : cluster.members) {
        cluster.reach += 2 * radius_[i];
      }
    }
    clusters_.push_back(std::move(cluster));
  }
}

/// 0 when every zero is good enough, otherwise with how many digits that may be so.
template <class T>
int ZeroFinder<T>::digits_wanted(int working) const {
  const WorkingDigits few(kFewDigits);
  int most = 0;
  for (const Cluster& cluster : clusters_) {
    QuarnFloat least = modulus(x_[cluster.members[0]]);
    for (const std::size_t i : cluster.members) {
      least = std::min(least, modulus(x_[i]));
    }
    const QuarnFloat target = least * QuarnFloat(1, -digits_ - 1);
    if (!(cluster.reach <= target)) {
      const double lacking = isfinite(cluster.reach) && target > 0 ? rough_log10(cluster.reach / target) : working;
      most = std::max(most, working + int(std::min(1e6, lacking * double(cluster.members.size()))) + 6);
    }
  }
  return most;
}

/// The zero of the derivative of that order less 1 which a cluster of zeros is around.
template <class T>
Complex ZeroFinder<T>::cluster_centre(Complex centre, std::size_t order) const {
  const QuarnFloat least(1, 3 - QuarnDigits());
  for (int step = 0; step < 40; ++step) {
    std::vector<Complex> taylor(order + 1);
    for (const T& coefficient : a_) {
      for (std::size_t k = order; k > 0; --k) {
        taylor[k] = taylor[k] * centre + taylor[k - 1];
      }
      taylor[0] = taylor[0] * centre + Complex(coefficient);
    }
    if (is_zero(taylor[order])) {
      return centre;
    }
    Complex correction = quotient(taylor[order - 1], taylor[order]);
    multiply_by(correction, QuarnFloat(1) / Integer(order));
    centre = centre - correction;
    if (!(magnitude(correction) > least * magnitude(centre))) {
      return centre;
    }
  }
  return centre;
}

/// Places the approximations of a cluster of k as `more` digits will find those of a zero of multiplicity k.
template <class T>
void ZeroFinder<T>::shrink_clusters(int more) {
  for (const Cluster& cluster : clusters_) {
    const std::size_t k = cluster.members.size();
    if (k == 1) {
      continue;
    }
    Complex mean;
    for (const std::size_t i : cluster.members) {
      mean = mean + x_[i];
    }
    multiply_by(mean, QuarnFloat(1) / Integer(k));
    const Complex centre = cluster_centre(mean, k);
    if (!(modulus(centre - mean) <= cluster.reach)) {
      continue;
    }
    const QuarnFloat factor = power_of_ten(-double(more) / double(k));
    for (const std::size_t i : cluster.members) {
      Complex away = x_[i] - mean;
      multiply_by(away, factor);
      x_[i] = centre + away;
    }
  }
}

template <class T>
bool ZeroFinder<T>::is_single(std::size_t i, const Complex& at, const QuarnFloat& reach) const {
  for (std::size_t j = 0; j < n_; ++j) {
    if (j != i && !(modulus(at - x_[j]) > reach + radius_[j])) {
      return false;
    }
  }
  return true;
}

/// A disc around a real point that holds one zero holds a real one; the others stand in pairs.
template <class T>
void ZeroFinder<T>::make_symmetric(std::vector<PolynomialZero>& zeros) const {
  std::vector<bool> done(zeros.size(), false);
  std::vector<PolynomialZero> ordered;
  for (std::size_t i = 0; i < zeros.size(); ++i) {
    if (done[i] || zeros[i].value.im == 0) {
      continue;
    }
    // The partner: the nearest to the conjugate.
    std::size_t partner = i;
    QuarnFloat nearest;
    for (std::size_t j = 0; j < zeros.size(); ++j) {
      const QuarnFloat distance = modulus(conj(zeros[i].value) - zeros[j].value);
      if (j != i && !done[j] && zeros[j].value.im != 0 && (partner == i || distance < nearest)) {
        partner = j;
        nearest = distance;
      }
    }
    if (partner != i && nearest <= zeros[i].error + zeros[partner].error) {
      const std::size_t upper = zeros[i].value.im > 0 ? i : partner;
      const std::size_t lower = upper == i ? partner : i;
      zeros[lower] = {conj(zeros[upper].value), zeros[upper].error};
      done[i] = done[partner] = true;
      ordered.push_back(zeros[upper]);
      ordered.push_back(zeros[lower]);
    }
  }
  for (std::size_t i = 0; i < zeros.size(); ++i) {
    if (!done[i]) {
      ordered.push_back(zeros[i]);
    }
  }
  zeros = std::move(ordered);
}

template <class T>
std::vector<PolynomialZero> ZeroFinder<T>::result() {
  std::vector<PolynomialZero> zeros(n_);
  for (const Cluster& cluster : clusters_) {
    const std::size_t k = cluster.members.size();
    for (const std::size_t i : cluster.members) {
      PolynomialZero& zero = zeros[i];
      zero = {x_[i], cluster.reach};
      if constexpr (std::is_same_v<T, QuarnFloat>) {
        const QuarnFloat reach = zero.error + fabs(x_[i].im);
        if (k == 1 && fabs(x_[i].im) <= radius_[i] && is_single(i, Complex(x_[i].re), reach)) {
          zero = {Complex(x_[i].re), reach};
        }
      }
    }
    const QuarnFloat size = modulus(x_[cluster.members[0]]);
    if (k > 1 && cluster.reach <= size * QuarnFloat(1, -digits_ - 1)) {
      // Nothing but their mean shows in the digits that are delivered.
      Complex mean;
      for (const std::size_t i : cluster.members) {
        mean = mean + x_[i];
      }
      multiply_by(mean, QuarnFloat(1) / Integer(k));
      if (std::is_same_v<T, QuarnFloat> && fabs(mean.im) <= cluster.reach) {
        mean.im = QuarnFloat();
      }
      for (const std::size_t i : cluster.members) {
        zeros[i] = {mean, 2 * cluster.reach};
      }
    }
  }
  if constexpr (std::is_same_v<T, QuarnFloat>) {
    make_symmetric(zeros);
  }
  return zeros;
}

/// Zeros far from 1, whose squares would leave the range of exponents: with z = 10^k w the polynomial in w has zeros
/// near
/// 1. Returns k, 0 where none is needed or the coefficients would leave the range.
template <class T>
int take_out_size(std::vector<T>& a) {
  constexpr double kCommon = 1e6;
  const std::size_t n = a.size() - 1;
  if (n == 0) {
    return 0;
  }
  const auto size = [](const T& x) {
    const WorkingDigits few(kFewDigits);
    return rough_log10(magnitude(x));
  };
  const double first = size(a.front());
  const double slope = std::floor((size(a.back()) - first) / double(n) + 0.5);
  if (std::fabs(slope) < kCommon) {
    return 0;
  }
  std::vector<T> scaled = a;
  for (std::size_t i = 0; i <= n; ++i) {
    const double steps = -slope * double(i) - std::floor(first);
    if (std::fabs(steps) > 1.9e9) {
      return 0;
    }
    // In two halves, each in the range of exponents.
    multiply_by(scaled[i], QuarnFloat(1, int(steps / 2)));
    multiply_by(scaled[i], QuarnFloat(1, int(steps) - int(steps / 2)));
    if (is_zero(scaled[i]) != is_zero(a[i]) || !isfinite(magnitude(scaled[i]))) {
      return 0;
    }
  }
  a = std::move(scaled);
  return int(slope);
}

}  // namespace

template <class T>
bool polynomial_zeros(const std::vector<T>& a, std::vector<PolynomialZero>& zeros) {
  std::vector<T> stripped = a;
  std::size_t at_origin = 0;
  while (stripped.size() > 1 && is_zero(stripped.back())) {
    stripped.pop_back();
    ++at_origin;
  }
  zeros.clear();
  const int digits = QuarnDigits();
  const int exponent = take_out_size(stripped);
  if (stripped.size() > 1) {
    ZeroFinder<T> finder(stripped);
    if (!finder.solve()) {
      return false;
    }
    const WorkingDigits more(4 * digits + 40);
    zeros = finder.result();
  }
  std::stable_sort(zeros.begin(), zeros.end(), [](const PolynomialZero& x, const PolynomialZero& y) {
    const WorkingDigits few(kFewDigits);
    return modulus(x.value) > modulus(y.value);
  });
  for (PolynomialZero& zero : zeros) {
    // A part that the error covers has no true digit.
    const QuarnFloat reach = zero.error;
    for (QuarnFloat* part : {&zero.value.re, &zero.value.im}) {
      if (fabs(*part) <= reach) {
        zero.error += fabs(*part);
        *part = QuarnFloat();
      }
    }
    Complex rounded = zero.value;
    multiply_by(rounded, QuarnFloat(1));
    const WorkingDigits more(4 * digits + 40);
    zero.error += modulus(zero.value - rounded);
    zero.value = rounded;
  }
  const QuarnFloat unit(1, exponent);
  for (PolynomialZero& zero : zeros) {
    multiply_by(zero.value, unit);
    zero.error *= unit;
  }
  zeros.resize(zeros.size() + at_origin);
  for (PolynomialZero& zero : zeros) {
    const WorkingDigits few(std::min(digits, kFewDigits));
    zero.error *= QuarnFloat(1);
    zero.error += zero.error * QuarnFloat(1, 1 - QuarnDigits());
  }
  return true;
}

template bool polynomial_zeros(const std::vector<QuarnFloat>&, std::vector<PolynomialZero>&);
template bool polynomial_zeros(const std::vector<Complex>&, std::vector<PolynomialZero>&);

}  // namespace tesk
