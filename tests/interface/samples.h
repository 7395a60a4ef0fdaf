// Random matrices and vectors for the tests of the C++ interface, and how far results are from what they should be.
#pragma once

#include <string>
#include <vector>

#include "support/random.h"
#include "tesk2mp/tesk2mp.hpp"

namespace front {

using tesk2mp::Complex;
using tesk2mp::Matrix;
using tesk2mp::Real;

/// Numbers of the run's seed in (-1, 1), to the last digit.
class Samples {
 public:
  Real real() {
    std::string digits = "0.";
    while (int(digits.size()) < QuarnDigits() + 2) {
      digits += char('0' + random_.below(10));
    }
    return Real((random_.once_in(2) ? "-" : "") + digits);
  }
  template <class T>
  T next() {
    if constexpr (std::same_as<T, Complex>) {
      return Complex(real(), real());
    } else {
      return real();
    }
  }
  template <class T>
  std::vector<T> vector(std::size_t size) {
    std::vector<T> x(size);
    for (T& element : x) {
      element = next<T>();
    }
    return x;
  }
  template <class T>
  Matrix<T> matrix(std::size_t rows, std::size_t columns) {
    Matrix<T> a(rows, columns);
    for (std::size_t j = 0; j < columns; ++j) {
      for (std::size_t i = 0; i < rows; ++i) {
        a(i, j) = next<T>();
      }
    }
    return a;
  }

 private:
  support::Random random_;
};

/// A real matrix as a complex one.
inline Matrix<Complex> widen(const Matrix<Real>& a) {
  Matrix<Complex> z(a.rows(), a.columns());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      z(i, j) = Complex(a(i, j));
    }
  }
  return z;
}
inline const Matrix<Complex>& widen(const Matrix<Complex>& a) { return a; }

/// The conjugate transpose.
template <class T>
Matrix<T> adjoint(const Matrix<T>& a) {
  Matrix<T> b(a.columns(), a.rows());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      if constexpr (std::same_as<T, Complex>) {
        b(j, i) = conj(a(i, j));
      } else {
        b(j, i) = a(i, j);
      }
    }
  }
  return b;
}

/// The largest |a - b| in units of 10^-digits.
template <class A, class B>
double distance(const Matrix<A>& a, const Matrix<B>& b) {
  const Matrix<Complex> difference = [&] {
    Matrix<Complex> c = widen(a);
    for (std::size_t j = 0; j < c.columns(); ++j) {
      for (std::size_t i = 0; i < c.rows(); ++i) {
        c(i, j) = c(i, j) - widen(b)(i, j);
      }
    }
    return c;
  }();
  return FloatToDouble(tesk2mp::norm(tesk2mp::Norm::largest, difference) * Real(1, QuarnDigits()));
}

}  // namespace front
