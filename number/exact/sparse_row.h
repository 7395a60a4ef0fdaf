// A row of a sparse matrix times a vector, rounded once.
#pragma once

#include <type_traits>

#include "number/exact/dot.h"
#include "number/exact/leading.h"

namespace quarn::exact {

inline const QuarnFloat* parts_of(const QuarnFloat* x) noexcept { return x; }
inline const QuarnFloat* parts_of(const Complex* x) noexcept { return &x->re; }

/// `count` neighbouring entries; the arrays are not empty.
template <class T>
SparseRow sparse_row(const T* values, const Integer* columns, const T* vector, std::size_t count,
                     bool conjugate) noexcept {
  SparseRow row{parts_of(values), columns, parts_of(vector), count};
  row.parts = std::is_same_v<T, Complex> ? 1 : 0;
  row.conjugate = conjugate;
  return row;
}

inline void round_part(QuarnFloat& y, const SparseRow& row, const Rounder& rounder, Prospects& prospects) {
  if (!prospects.decides(y, row, rounder)) {
    rounded_whole_total(y, row, rounder, false);
  }
}

/// y := the row's total.
inline void round_row(QuarnFloat& y, const SparseRow& row, const Rounder& rounder, Prospects& prospects) {
  round_part(y, row, rounder, prospects);
}
inline void round_row(Complex& y, SparseRow& row, const Rounder& rounder, Prospects& prospects) {
  row.part = 0;
  round_part(y.re, row, rounder, prospects);
  row.part = 1;
  round_part(y.im, row, rounder, prospects);
}

/// y := y less the row's total, y no element of the row's vector that has an entry.
inline void subtract_row(QuarnFloat& y, SparseRow& row, const Rounder& rounder, Prospects& prospects) {
  row.addend = &y;
  round_part(y, row, rounder, prospects);
}
inline void subtract_row(Complex& y, SparseRow& row, const Rounder& rounder, Prospects& prospects) {
  row.part = 0;
  subtract_row(y.re, row, rounder, prospects);
  row.part = 1;
  subtract_row(y.im, row, rounder, prospects);
}

}  // namespace quarn::exact
