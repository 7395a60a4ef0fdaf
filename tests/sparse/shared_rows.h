// A system whose rows can be shared out: what every rank knows of it.
#pragma once

#include <type_traits>
#include <vector>

#include "quarn/complex.h"
#include "support/random.h"

namespace shared_rows {

inline QuarnFloat conjugate(const QuarnFloat& x) { return x; }
inline quarn::Complex conjugate(const quarn::Complex& x) { return quarn::conj(x); }

/// Diffusion on a line; symmetric or Hermitian without drift.
template <class T>
struct Line {
  Integer n;
  T below, above;
  std::vector<T> diagonal;

  static Line make(Integer n, const QuarnFloat& drift) {
    Line line{n, T(-1 - drift), T(drift - 1), {}};
    if constexpr (std::is_same_v<T, quarn::Complex>) {
      line.below.im = QuarnFloat(1) / 4;
      line.above.im = QuarnFloat(-1) / 4;
    }
    for (Integer i = 0; i < n; ++i) {
      line.diagonal.push_back(T(QuarnFloat(3 + i % 4) + QuarnFloat(1) / (i + 3)));
    }
    return line;
  }
  void multiply(const std::vector<T>& x, std::vector<T>& y, bool adjoint) const {
    const T lower = adjoint ? conjugate(above) : below;
    const T upper = adjoint ? conjugate(below) : above;
    for (std::size_t i = 0; i < std::size_t(n); ++i) {
      y[i] = diagonal[i] * x[i];
      y[i] += i > 0 ? lower * x[i - 1] : T();
      y[i] += i + 1 < std::size_t(n) ? upper * x[i + 1] : T();
    }
  }
};

template <class T>
std::vector<T> right_side(support::Random& random, Integer n) {
  std::vector<T> b;
  for (Integer i = 0; i < n; ++i) {
    b.push_back(T(QuarnFloat(random.between(-1000, 1000)) / 7));
    if constexpr (std::is_same_v<T, quarn::Complex>) {
      b.back().im = QuarnFloat(random.between(-1000, 1000)) / 7;
    }
  }
  return b;
}

}  // namespace shared_rows
