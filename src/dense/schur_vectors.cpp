#include "src/dense/schur_vectors.h"

#include <algorithm>

#include "quarn/quarnthread.h"

namespace tesk {
namespace {

// A solution beyond 10 to this power is scaled down by it: two divisors of the order of the safe range and elements of
// common size keep the next ones within the exponents of QuarnFloat.
constexpr int kLargeExponent = 200000000;

Complex at_least(const Complex& divisor, const QuarnFloat& smallest) {
  return magnitude(divisor) < smallest ? Complex(smallest) : divisor;
}

/// Solves (a, b; c, d) (x1, x2) = (x1, x2) by elimination with row interchange.
void solve_block(Complex a, Complex b, Complex c, Complex d, Complex& x1, Complex& x2, const QuarnFloat& smallest) {
  if (magnitude(c) > magnitude(a)) {
    std::swap(a, c);
    std::swap(b, d);
    std::swap(x1, x2);
  }
  a = at_least(a, smallest);
  const Complex factor = quotient(c, a);
  subtract_product(d, factor, b);
  subtract_product(x2, factor, x1);
  x2 = quotient(x2, at_least(d, smallest));
  subtract_product(x1, b, x2);
  x1 = quotient(x1, a);
}

}  // namespace

std::vector<BlockEigenvalue> block_eigenvalues(Integer n, OneBasedMatrix<QuarnFloat> t) {
  std::vector<BlockEigenvalue> found;
  for (Integer j = 1; j <= n; ++j) {
    const bool pair = j < n && t(j + 1, j) != 0;
    const QuarnFloat im = pair ? sqrt(fabs(t(j, j + 1))) * sqrt(fabs(t(j + 1, j))) : QuarnFloat();
    found.push_back({j, pair, t(j, j), im});
    j += pair ? 1 : 0;
  }
  return found;
}

std::vector<Complex> right_eigenvector(Accuracy accuracy, Integer n, OneBasedMatrix<QuarnFloat> t,
                                       const BlockEigenvalue& eigenvalue, const QuarnFloat& smallest) {
  const Complex lambda(eigenvalue.re, eigenvalue.im);
  auto values = std::vector<Complex>(std::size_t(n));
  const OneBasedVector<Complex> x(values.data(), 1);
  const auto subtract_column = [&](Integer j, Integer rows) {
    for (Integer i = 1; i <= rows; ++i) {
      subtract_product(x(i).re, x(j).re, t(i, j));
      subtract_product(x(i).im, x(j).im, t(i, j));
    }
  };
  const QuarnFloat large(1, kLargeExponent);
  // Divisors as small as `smallest` follow one another where eigenvalues are equal.
  const auto keep_in_range = [&](Integer j) {
    if (accuracy == Accuracy::full && magnitude(x(j)) > large) {
      scale(n, 1 / large, x);
    }
  };
  const Integer k = eigenvalue.row;
  if (!eigenvalue.pair) {
    x(k) = 1.0;
  } else if (fabs(t(k, k + 1)) >= fabs(t(k + 1, k))) {
    x(k) = 1.0;
    x(k + 1).im = eigenvalue.im / t(k, k + 1);
  } else {
    x(k).re = -eigenvalue.im / t(k + 1, k);
    x(k + 1).im = 1;
  }
  subtract_column(k, k - 1);
  if (eigenvalue.pair) {
    subtract_column(k + 1, k - 1);
  }
  for (Integer j = k - 1; j >= 1; --j) {
    QuarnCheckInterrupt();
    if (j > 1 && t(j, j - 1) != 0) {
      solve_block(t(j - 1, j - 1) - lambda, t(j - 1, j), t(j, j - 1), t(j, j) - lambda, x(j - 1), x(j), smallest);
      keep_in_range(j - 1);
      keep_in_range(j);
      subtract_column(j, j - 2);
      --j;
    } else {
      x(j) = quotient(x(j), at_least(t(j, j) - lambda, smallest));
      keep_in_range(j);
    }
    subtract_column(j, j - 1);
  }
  return values;
}

std::vector<Complex> left_eigenvector(Accuracy accuracy, Integer n, OneBasedMatrix<QuarnFloat> t,
                                      const BlockEigenvalue& eigenvalue, const QuarnFloat& smallest) {
  // Mirrored in the other diagonal T stays quasi triangular, and its right eigenvectors are the left ones of T,
  // conjugated and in the opposite order.
  BlockEigenvalue mirrored = eigenvalue;
  mirrored.row = n + 1 - eigenvalue.row - (eigenvalue.pair ? 1 : 0);
  std::vector<Complex> y = right_eigenvector(accuracy, n, t.antitransposed(n), mirrored, smallest);
  std::reverse(y.begin(), y.end());
  if (eigenvalue.pair) {
    // i times the conjugate: the phase of the published algorithm.
    for (Complex& element : y) {
      std::swap(element.re, element.im);
    }
  }
  return y;
}

}  // namespace tesk
