#include "quarn/quarnthread.h"
#include "src/fft/sequences.h"
#include "src/frame/working_digits.h"

namespace tesk {
namespace {

/// The modified Bessel function I0 of sqrt(square): sum over m of (square / 4)^m / (m!)^2.
QuarnFloat bessel_i0(const QuarnFloat& square) {
  const QuarnFloat quarter = square / 4;
  const QuarnFloat least(1, -QuarnDigits() - 1);
  QuarnFloat sum = 1;
  QuarnFloat term = 1;
  for (std::int64_t m = 1;; ++m) {
    term = term * quarter / (m * m);
    sum += term;
    // From then on each term is less than half of the one before.
    if (term < sum * least && quarter * 2 < QuarnFloat(m * m)) {
      return sum;
    }
  }
}

}  // namespace

std::vector<QuarnFloat> window(Window kind, Integer n, bool periodic, const QuarnFloat& beta) {
  std::vector<QuarnFloat> w(std::size_t(n), QuarnFloat(1));
  if (n == 1 || kind == Window::ones) {
    return w;
  }
  const Integer period = periodic ? n : n - 1;
  {
    const WorkingDigits more(QuarnDigits() + 10);
    const QuarnFloat angle = 4 * atan(QuarnFloat(1)) / period;
    const QuarnFloat square = beta * beta;
    const QuarnFloat whole = kind == Window::kaiser ? bessel_i0(square) : QuarnFloat(1);
    for (Integer k = 0; 2 * k <= period; ++k) {
      QuarnCheckInterrupt();
      QuarnFloat value;
      if (kind == Window::kaiser) {
        // 1 - (2 k / p - 1)^2 = 4 k (p - k) / p^2
        const QuarnFloat part = QuarnFloat(4 * std::int64_t(k) * (period - k)) / (std::int64_t(period) * period);
        value = bessel_i0(square * part) / whole;
      } else {
        // By (1 - cos t) / 2 = sin(t / 2)^2 all terms are positive.
        const QuarnFloat sine = sin(angle * k);
        const QuarnFloat s = sine * sine;
        value = kind == Window::hann ? s : kind == Window::hamming ? (8 + 92 * s) / 100 : (36 * s + 64 * s * s) / 100;
      }
      w[std::size_t(k)] = value;
      if (k != 0 && period - k < n) {
        w[std::size_t(period - k)] = value;
      }
    }
    if (!periodic) {
      w[std::size_t(n - 1)] = w[0];
    }
  }
  for (QuarnFloat& value : w) {
    value += QuarnFloat();
  }
  return w;
}

}  // namespace tesk
