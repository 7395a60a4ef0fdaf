#include "number/elementary/coefficients.h"

#include <cmath>

namespace quarn::fixed {

Coefficients::Coefficients(Kind kind) {
  const auto factor = [kind](int k) -> Word {
    const Word twice = 2 * Word(k);
    return kind == Kind::every ? Word(k) : kind == Kind::even ? twice * (twice - 1) : twice * (twice + 1);
  };
  double logarithm = 0;
  size[0] = 0;
  for (int k = 1; k < kCount; ++k) {
    logarithm += std::log2(double(factor(k)));
    size[k] = int(logarithm) - 1;
  }
  // Sums are below twice the numerator: a bit is left for that.
  constexpr Word kMost = Word(1) << (kBits - 1);
  numerator[0] = 0;
  divisor[0] = 0;
  for (int first = 1; first < kCount;) {
    Word product = factor(first);
    int end = first + 1;
    for (; end < kCount && product <= kMost / factor(end); ++end) {
      product *= factor(end);
    }
    divisor[first] = product;
    Word behind = 1;
    for (int k = end; k-- > first;) {
      numerator[k] = behind;
      behind *= factor(k);
      if (k > first) {
        divisor[k] = 0;
      }
    }
    first = end;
  }
}

const Coefficients& coefficients(Coefficients::Kind kind) {
  static const Coefficients tables[] = {Coefficients(Coefficients::Kind::every), Coefficients(Coefficients::Kind::even),
                                        Coefficients(Coefficients::Kind::odd)};
  return tables[int(kind)];
}

}  // namespace quarn::fixed
