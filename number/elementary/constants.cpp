// pi, ln 10 and ln 2 as decimal numbers, kept at the largest precision that the thread ever asked for.
#include "number/elementary/approximate.h"
#include "number/elementary/series.h"
#include "number/scalar/thread_state.h"

namespace quarn {
namespace {

/// A constant that is computed again only when more digits are wanted than before.
class GrowingConstant {
 public:
  explicit GrowingConstant(QuarnFloat (*compute)(int w)) : compute_(compute) {}

  QuarnFloat to(int w) {
    if (w > digits_) {
      const int digits = w + w / 8;
      value_ = compute_(digits);
      digits_ = digits;
    }
    // Three digits more leave the rounding without weight.
    return rounded(value_, w + 3);
  }

 private:
  QuarnFloat (*compute_)(int w);
  QuarnFloat value_;
  int digits_ = 0;
};

/// Chudnovsky and Chudnovsky (1989): 14.18 digits a term.
QuarnFloat compute_pi(int w) {
  const WorkingDigits digits(w + 20);
  const QuarnFloat c = 10'939'058'860'032'000;  // 640320^3 / 24
  const auto term = [&c](long k) -> Splitting {
    const QuarnFloat a = 13'591'409 + QuarnFloat(545'140'134) * k;
    if (k == 0) {
      return {1, 1, a};
    }
    const QuarnFloat p = -QuarnFloat(6 * k - 5) * QuarnFloat(2 * k - 1) * QuarnFloat(6 * k - 1);
    return {p, QuarnFloat(k) * QuarnFloat(k) * QuarnFloat(k) * c, a * p};
  };
  const Splitting sum = split(0, w / 14 + 3, term);
  return QuarnFloat(426'880) * sqrt(QuarnFloat(10'005)) * sum.q / sum.t;
}

/// atanh(1/n) = sum of 1 / ((2k+1) n^(2k+1)).
QuarnFloat inverse_atanh(int n, int w) {
  const QuarnFloat square = n * n;
  const auto term = [&square](long k) -> Splitting {
    if (k == 0) {
      return {1, 1, 1};
    }
    return {2 * k - 1, QuarnFloat(2 * k + 1) * square, 2 * k - 1};
  };
  // Each term is at most n^-2 of the one before, n >= 31: 2.98 digits.
  const Splitting sum = split(0, w / 2 + 3, term);
  return sum.t / (sum.q * QuarnFloat(n));
}

/// ln 10 = 46 atanh(1/31) + 34 atanh(1/49) + 20 atanh(1/161), and ln 2 in the same way, from 2, 3 and 5 as products of
/// 32/30, 50/48 and 162/160.
QuarnFloat compute_ln10(int w) {
  const WorkingDigits digits(w + 20);
  return QuarnFloat(46) * inverse_atanh(31, w) + QuarnFloat(34) * inverse_atanh(49, w) +
         QuarnFloat(20) * inverse_atanh(161, w);
}

QuarnFloat compute_ln2(int w) {
  const WorkingDigits digits(w + 20);
  return QuarnFloat(14) * inverse_atanh(31, w) + QuarnFloat(10) * inverse_atanh(49, w) +
         QuarnFloat(6) * inverse_atanh(161, w);
}

struct Constants {
  GrowingConstant pi{compute_pi};
  GrowingConstant ln10{compute_ln10};
  GrowingConstant ln2{compute_ln2};
};

Constants& constants() { return own_cache<Constants>(Cache::constants); }

}  // namespace

QuarnFloat approximate_pi(int w) { return constants().pi.to(w); }
QuarnFloat approximate_ln10(int w) { return constants().ln10.to(w); }
QuarnFloat approximate_ln2(int w) { return constants().ln2.to(w); }

}  // namespace quarn
