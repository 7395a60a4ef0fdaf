// Matrices with bounds beside references.
#pragma once

#include <string>

#include "spectra.h"
#include "tesk2mp/proven_factors.hpp"

namespace spectra {

/// How many results had bounds, and how many had none.
struct Counts {
  int known = 0;
  int open = 0;
};

/// Is every reference within the bound, but for what the reference itself is off by?
template <class T>
void check_near(const proven::BoundedMatrix<T>& x, const Matrix<T>& reference, Counts& counts,
                const std::string& what = "") {
  CAPTURE(what);
  REQUIRE(x.rows() == reference.rows());
  REQUIRE(x.columns() == reference.columns());
  const bool known = proven::detail::is_known(x);
  ++(known ? counts.known : counts.open);
  Real largest = 1;
  for (std::size_t k = 0; k < x.rows() * x.columns(); ++k) {
    largest = std::max(largest, size(Complex(reference.data()[k])));
  }
  const Real slack = largest * Real(1, -QuarnDigits() / 2);
  for (std::size_t j = 0; j < x.columns(); ++j) {
    for (std::size_t i = 0; i < x.rows(); ++i) {
      const proven::Bounded<T> element = x(i, j);
      CAPTURE(i);
      CAPTURE(j);
      CHECK((!element.error.is_finite() ||
             size(Complex(element.value) - Complex(reference(i, j))) <= element.error.value() + slack));
    }
  }
}

}  // namespace spectra
