// Rows of numbers that are kept ready for sums of products: what factorisations and triangular solutions do to few
// columns at a time, where a matrix product would be too small to pay.
#pragma once

#include <cstddef>
#include <memory>

#include "quarn/exact.h"

/// The entries x(i, l) of a matrix in somebody's storage, i and l from 0, which has to stay where it is. An entry
/// counts from the moment that prepare() has read it; the sums are over such entries alone.
///
/// Every sum is the exact value rounded once (of complex entries each part), half to even, to QuarnDigits() digits,
/// which must be those of the time when the object was made. A sum whose rounding the prepared forms do not decide,
/// whose terms differ much in magnitude, or of more than 125 digits, is formed from the entries themselves.
class QRNFLOAT_API QuarnRows {
 public:
  /// Throws std::bad_alloc. `conjugate` means the conjugates of the entries.
  QuarnRows(std::size_t rows, std::size_t columns, QuarnMatrix<const QuarnFloat> entries);
  QuarnRows(std::size_t rows, std::size_t columns, QuarnMatrix<const quarn::Complex> entries, bool conjugate = false);
  ~QuarnRows();
  QuarnRows(const QuarnRows&) = delete;
  QuarnRows& operator=(const QuarnRows&) = delete;

  /// Reads entries first, first + 1, ... last - 1 of a column; those of earlier columns have to be read before.
  void prepare(std::size_t column, std::size_t first, std::size_t last) noexcept;
  /// The two rows have changed places in storage.
  void exchange(std::size_t i, std::size_t k) noexcept;

  /// y(i) := y(i) - sum of x(i, l) y(l) over l < min(i, terms), for i = 0, 1, ..., rows - 1: the solution with a lower
  /// triangle of ones on the diagonal, and what it does to the rows below. `divide` divides the first `terms` elements
  /// by x(i, i) after that. A check point of interrupts, as is the next one.
  void substitute(std::size_t terms, QuarnFloat* y, std::ptrdiff_t step, bool divide = false);
  void substitute(std::size_t terms, quarn::Complex* y, std::ptrdiff_t step, bool divide = false);

  /// y(i) := y(i) - sum of x(i, l) conj(x(row, l)) over l < terms, for i = row, row + 1, ..., rows - 1.
  void subtract_products(std::size_t row, std::size_t terms, QuarnFloat* y, std::ptrdiff_t step);
  void subtract_products(std::size_t row, std::size_t terms, quarn::Complex* y, std::ptrdiff_t step);

 private:
  struct Store;
  std::unique_ptr<Store> store_;
};
