// Eigenvalues and eigenvectors of a pencil in generalised Schur form: xTGEVC of E. Anderson et al., LAPACK Users'
// Guide, with complex numbers for the pairs of real pencils.
#include <algorithm>
#include <utility>

#include "quarn/complex.h"
#include "quarn/quarnthread.h"
#include "src/dense/generalised_schur.h"
#include "src/frame/constants.h"

namespace tesk {
namespace {

/// beta H - alpha T, of which one element or column is asked for at a time.
template <class T>
class Singular {
 public:
  Singular(OneBasedMatrix<T> h, OneBasedMatrix<T> t, const PencilEigenvalue& eigenvalue)
      : h_(h), t_(t), alpha_(eigenvalue.alpha), beta_(eigenvalue.beta) {}

  Complex operator()(Integer i, Integer j) const {
    Complex element(h_(i, j));
    multiply_by(element, beta_);
    subtract_product(element, alpha_, Complex(t_(i, j)));
    return element;
  }

 private:
  OneBasedMatrix<T> h_;
  OneBasedMatrix<T> t_;
  Complex alpha_;
  QuarnFloat beta_;
};

/// Solves (a, b; c, d) (x, y) = (x, y) by elimination with row interchange; divisors are at least `smallest`.
void solve_pair(Complex a, Complex b, Complex c, Complex d, Complex& x, Complex& y, const QuarnFloat& smallest) {
  const auto at_least = [&](const Complex& divisor) {
    return magnitude(divisor) < smallest ? Complex(smallest) : divisor;
  };
  if (magnitude(c) > magnitude(a)) {
    std::swap(a, c);
    std::swap(b, d);
    std::swap(x, y);
  }
  a = at_least(a);
  const Complex factor = quotient(c, a);
  subtract_product(d, factor, b);
  subtract_product(y, factor, x);
  y = quotient(y, at_least(d));
  subtract_product(x, b, y);
  x = quotient(x, a);
}

}  // namespace

template <class T>
std::vector<PencilEigenvalue> pencil_eigenvalues(Integer n, OneBasedMatrix<T> h, OneBasedMatrix<T> t) {
  std::vector<PencilEigenvalue> found;
  for (Integer j = 1; j <= n; ++j) {
    const Complex beta(t(j, j));
    if (j == n || is_zero(h(j + 1, j))) {
      found.push_back({j, false, Complex(h(j, j)), beta.re});
      continue;
    }
    // A pair of a real pencil, T diagonal: of H T^-1.
    const Complex first(h(j, j));
    const Complex second(h(j + 1, j + 1));
    const QuarnFloat t2 = Complex(t(j + 1, j + 1)).re;
    const QuarnFloat a = first.re / beta.re;
    const QuarnFloat d = second.re / t2;
    const QuarnFloat half = (a - d) * QuarnFloat(0.5);
    const QuarnFloat product = (Complex(h(j, j + 1)).re / t2) * (Complex(h(j + 1, j)).re / beta.re);
    const QuarnFloat size = sqrt(beta.re) * sqrt(t2);
    found.push_back(
        {j, true, Complex((a + d) * QuarnFloat(0.5) * size, sqrt(fabs(half * half + product)) * size), size});
    ++j;
  }
  return found;
}

template <class T>
std::vector<Complex> right_pencil_vector(Integer n, OneBasedMatrix<T> h, OneBasedMatrix<T> t, const PencilSizes& sizes,
                                         const PencilEigenvalue& eigenvalue) {
  // Divisors that two equal eigenvalues give are replaced, and long chains of them are scaled on the way.
  constexpr int kLargeExponent = 200000000;
  const QuarnFloat large(1, kLargeExponent);
  const Singular<T> m(h, t, eigenvalue);
  auto values = std::vector<Complex>(std::size_t(n));
  const OneBasedVector<Complex> x(values.data(), 1);
  QuarnFloat size = std::max(eigenvalue.beta * sizes.of_h, magnitude(eigenvalue.alpha) * sizes.of_t);
  const QuarnFloat smallest = size == 0 ? smallest_number() : epsilon() * kBase * size;
  const auto subtract_column = [&](Integer j, Integer rows) {
    for (Integer i = 1; i <= rows; ++i) {
      subtract_product(x(i), m(i, j), x(j));
    }
  };
  const auto keep_in_range = [&](Integer j) {
    if (magnitude(x(j)) > large) {
      scale(n, 1 / large, x);
    }
  };
  const Integer k = eigenvalue.row;
  if (eigenvalue.pair) {
    // From the row of the singular block with the larger elements.
    const bool upper =
        magnitude(m(k, k)) + magnitude(m(k, k + 1)) >= magnitude(m(k + 1, k)) + magnitude(m(k + 1, k + 1));
    const Integer row = upper ? k : k + 1;
    x(k) = -m(row, k + 1);
    x(k + 1) = m(row, k);
    const QuarnFloat largest = std::max(magnitude(x(k)), magnitude(x(k + 1)));
    if (largest == 0) {
      x(k) = Complex(1.0);
    } else {
      scale(2, 1 / largest, x.from(k));
    }
    subtract_column(k + 1, k - 1);
  } else {
    x(k) = Complex(1.0);
  }
  subtract_column(k, k - 1);
  for (Integer j = k - 1; j >= 1; --j) {
    QuarnCheckInterrupt();
    if (j > 1 && !is_zero(h(j, j - 1))) {
      solve_pair(m(j - 1, j - 1), m(j - 1, j), m(j, j - 1), m(j, j), x(j - 1), x(j), smallest);
      keep_in_range(j - 1);
      keep_in_range(j);
      subtract_column(j, j - 2);
      --j;
    } else {
      const Complex divisor = m(j, j);
      x(j) = quotient(x(j), magnitude(divisor) < smallest ? Complex(smallest) : divisor);
      keep_in_range(j);
    }
    subtract_column(j, j - 1);
  }
  return values;
}

template <class T>
std::vector<Complex> left_pencil_vector(Integer n, OneBasedMatrix<T> h, OneBasedMatrix<T> t, const PencilSizes& sizes,
                                        const PencilEigenvalue& eigenvalue) {
  // Mirrored in the other diagonal the form stays what it is, and right eigenvectors become left ones, conjugated and
  // in the opposite order.
  PencilEigenvalue mirrored = eigenvalue;
  mirrored.row = n + 1 - eigenvalue.row - (eigenvalue.pair ? 1 : 0);
  std::vector<Complex> y = right_pencil_vector(n, h.antitransposed(n), t.antitransposed(n), sizes, mirrored);
  std::reverse(y.begin(), y.end());
  conjugate_vector(n, OneBasedVector<Complex>(y.data(), 1));
  return y;
}

template std::vector<PencilEigenvalue> pencil_eigenvalues(Integer, OneBasedMatrix<QuarnFloat>,
                                                          OneBasedMatrix<QuarnFloat>);
template std::vector<PencilEigenvalue> pencil_eigenvalues(Integer, OneBasedMatrix<Complex>, OneBasedMatrix<Complex>);
template std::vector<Complex> right_pencil_vector(Integer, OneBasedMatrix<QuarnFloat>, OneBasedMatrix<QuarnFloat>,
                                                  const PencilSizes&, const PencilEigenvalue&);
template std::vector<Complex> right_pencil_vector(Integer, OneBasedMatrix<Complex>, OneBasedMatrix<Complex>,
                                                  const PencilSizes&, const PencilEigenvalue&);
template std::vector<Complex> left_pencil_vector(Integer, OneBasedMatrix<QuarnFloat>, OneBasedMatrix<QuarnFloat>,
                                                 const PencilSizes&, const PencilEigenvalue&);
template std::vector<Complex> left_pencil_vector(Integer, OneBasedMatrix<Complex>, OneBasedMatrix<Complex>,
                                                 const PencilSizes&, const PencilEigenvalue&);

}  // namespace tesk
