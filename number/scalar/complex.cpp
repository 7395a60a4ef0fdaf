// Complex arithmetic from the rounded operations on the parts.
#include "quarn/quarnfloat.h"

namespace quarn {

Complex operator+(const Complex& a, const Complex& b) { return {a.re + b.re, a.im + b.im}; }

Complex operator-(const Complex& a, const Complex& b) { return {a.re - b.re, a.im - b.im}; }

Complex operator*(const Complex& a, const Complex& b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }

// R. L. Smith, Algorithm 116: Complex division, Communications of the ACM 5 (1962).
Complex operator/(const Complex& a, const Complex& b) {
  if (fabs(b.re) >= fabs(b.im)) {
    const QuarnFloat ratio = b.im / b.re;
    const QuarnFloat denominator = b.re + b.im * ratio;
    return {(a.re + a.im * ratio) / denominator, (a.im - a.re * ratio) / denominator};
  }
  const QuarnFloat ratio = b.re / b.im;
  const QuarnFloat denominator = b.re * ratio + b.im;
  return {(a.re * ratio + a.im) / denominator, (a.im * ratio - a.re) / denominator};
}

}  // namespace quarn
