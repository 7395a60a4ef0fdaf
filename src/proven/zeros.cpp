// Zeros of polynomials: bounds of approximations. A circle around c on which one term t(k) (z - c)^k of the polynomial
// is larger than all others together has k zeros inside: M. A. E. Pellet, Bull. Sci. Math. 5 (1881); for k = 1 and 0
// the discs of Newton and Cauchy. A k-fold zero, or k zeros too close for the digits, need no separate treatment.
#include <optional>

#include "src/proven/discs.h"
#include "src/proven/taylor.h"
#include "tesk2mp/proven_spectra.h"

namespace tesk::proven {
namespace {

QuarnBound times(const QuarnBound& a, std::uint32_t thousandths) {
  return a * QuarnBound::count(thousandths) * QuarnBound::power_of_ten(-3);
}

/// A small radius of a circle with k zeros inside.
std::optional<QuarnBound> radius(const Taylor& t, std::size_t k) {
  // With the terms below k alone: where each of them is as large as the last one, in turn.
  const WorkingDigits scope(kFewDigits);
  const QuarnFloat last = modulus(t.values[k]);
  if (last == 0) {
    return {};
  }
  QuarnFloat start;
  for (std::size_t j = 0; j < k; ++j) {
    const QuarnFloat ratio = (QuarnBound(t.values[j]) + t.errors[j]).value() / last;
    if (ratio > 0) {
      const auto order = Integer(k - j);
      start = std::max(start, order == 1 ? ratio : exp(log(ratio) / order));
    }
  }
  const QuarnBound least = start > 0 ? QuarnBound(start) : QuarnBound::power_of_ten(-999'999'999);
  for (const std::uint32_t factor : {1001U, 1010U, 1100U, 1500U, 2000U, 3000U, 6000U}) {
    if (const QuarnBound r = times(least, factor); dominates(t, k, r)) {
      return r;
    }
  }
  return {};
}

template <class T>
class ZeroBounds {
 public:
  ZeroBounds(std::vector<T> a, const Complex* zeros) : a_(std::move(a)), n_(a_.size() - 1), digits_(QuarnDigits()) {
    for (std::size_t i = 0; i < n_; ++i) {
      approximations_.push_back(zeros[i]);
    }
    // Exact zeros at 0 are those of missing coefficients.
    while (trailing_ < n_ && is_zero(a_[n_ - trailing_])) {
      ++trailing_;
    }
  }

  std::vector<Disc> discs() {
    std::vector<Disc> result(n_);
    std::vector<bool> done(n_, false);
    for (std::size_t i = 0; i < n_; ++i) {
      if (done[i]) {
        continue;
      }
      std::size_t count = 1;
      for (; count <= n_; ++count) {
        if (bound(nearest(i, count), result, done)) {
          break;
        }
      }
      if (count > n_) {
        result[i] = {approximations_[i], QuarnBound::infinity()};
      }
    }
    // A disc inside of another one, or beside it, has been counted twice.
    merge(result);
    if constexpr (std::is_same_v<T, QuarnFloat>) {
      make_real(result);
    }
    return result;
  }

 private:
  std::vector<std::size_t> nearest(std::size_t i, std::size_t count) const {
    const WorkingDigits scope(kFewDigits);
    std::vector<std::pair<QuarnFloat, std::size_t>> order;
    for (std::size_t j = 0; j < n_; ++j) {
      order.emplace_back(modulus(approximations_[j] - approximations_[i]), j);
    }
    order[i].first = -1;
    std::partial_sort(order.begin(), order.begin() + std::ptrdiff_t(count), order.end(),
                      [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::size_t> members;
    for (std::size_t k = 0; k < count; ++k) {
      members.push_back(order[k].second);
    }
    return members;
  }

  /// A disc for all members; false when there is none.
  bool bound(const std::vector<std::size_t>& members, std::vector<Disc>& result, std::vector<bool>& done) const {
    const std::size_t k = members.size();
    Complex centre;
    std::optional<QuarnBound> reach;
    if (k == trailing_ && is_zero(approximations_[members[0]])) {
      reach = QuarnBound();
    } else {
      for (const std::size_t i : members) {
        centre = centre + approximations_[i];
      }
      multiply_by(centre, QuarnFloat(1) / Integer(k));
      // Of k zeros within 10^-D the coefficient t(0) is about as small as 10^(-k D).
      const WorkingDigits scope(int(k + 1) * (digits_ + kSpareDigits) + int(n_) + 20);
      reach = radius(taylor(a_, centre), k);
    }
    if (!reach) {
      return false;
    }
    for (const std::size_t i : members) {
      result[i] = {centre, *reach, Integer(k)};
      done[i] = true;
    }
    return true;
  }

  /// Discs whose counts cannot stand side by side are given up.
  static void merge(std::vector<Disc>& discs) {
    std::vector<bool> lost(discs.size(), false);
    for (std::size_t i = 0; i < discs.size(); ++i) {
      std::size_t same = 0;
      for (std::size_t j = 0; j < discs.size(); ++j) {
        const bool equal = discs[i].value == discs[j].value && discs[i].error == discs[j].error;
        same += equal ? 1 : 0;
        lost[i] = lost[i] || (!equal && !are_apart(discs[i].value, discs[i].error, discs[j].value, discs[j].error));
      }
      lost[i] = lost[i] || Integer(same) != discs[i].count;
    }
    for (std::size_t i = 0; i < discs.size(); ++i) {
      if (lost[i]) {
        discs[i].error = QuarnBound::infinity();
      }
    }
  }

  std::vector<T> a_;
  std::size_t n_;
  int digits_;
  std::size_t trailing_ = 0;
  std::vector<Complex> approximations_;
};

template <class T>
Integer checked_zeros(Integer n, const T* a, Complex* zeros, QuarnFloat* error, Integer* count) {
  if (n < 0) {
    return -1;
  }
  if (is_zero(a[0])) {
    return -2;
  }
  return deliver(ZeroBounds<T>(std::vector<T>(a, a + n + 1), zeros).discs(), zeros, error, count);
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_zeros_(Integer n, const QuarnFloat* a, Complex* zeros, QuarnFloat* error, Integer* count,
                             Integer* info) {
  *info = tesk::proven::checked_zeros(n, a, zeros, error, count);
}
void QuarnMPX_zproven_zeros_(Integer n, const Complex* a, Complex* zeros, QuarnFloat* error, Integer* count,
                             Integer* info) {
  *info = tesk::proven::checked_zeros(n, a, zeros, error, count);
}
}
