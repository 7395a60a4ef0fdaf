// Substitution with the triangles of a sparse matrix: what a row takes off an element is rounded once.
#include "quarn/substitution.h"

#include <cstdint>
#include <vector>

#include "number/exact/sparse_row.h"
#include "quarn/quarnthread.h"

namespace quarn::exact {
namespace {

/// The entries of one triangle that stand in a column, as rows of the transpose.
class Columns {
 public:
  Columns() = default;
  template <class T>
  Columns(const QuarnSparseRows<T>& a, bool upper) : starts_(a.n + 1, 0) {
    for_each(a, upper, [&](std::size_t, std::size_t k) { ++starts_[std::size_t(a.columns[k])]; });
    for (std::size_t i = 0; i < a.n; ++i) {
      starts_[i + 1] += starts_[i];
    }
    names_.resize(starts_[a.n]);
    rows_.resize(starts_[a.n]);
    std::vector<std::size_t> next(starts_.begin(), starts_.end() - 1);
    for_each(a, upper, [&](std::size_t i, std::size_t k) {
      const std::size_t place = next[std::size_t(a.columns[k]) - 1]++;
      names_[place] = std::uint32_t(2 * k);
      rows_[place] = Integer(i + 1);
    });
  }

  std::size_t begin(std::size_t column) const { return starts_[column]; }
  const std::uint32_t* names() const { return names_.data(); }
  const Integer* rows() const { return rows_.data(); }

 private:
  template <class T, class Body>
  static void for_each(const QuarnSparseRows<T>& a, bool upper, const Body& body) {
    for (std::size_t i = 0; i < a.n; ++i) {
      const Integer first = upper ? a.diagonals[i] + 1 : a.starts[i];
      const Integer end = upper ? a.starts[i + 1] : a.diagonals[i];
      for (Integer k = first; k < end; ++k) {
        body(i, std::size_t(k - 1));
      }
    }
  }

  std::vector<std::size_t> starts_;
  std::vector<std::uint32_t> names_;
  std::vector<Integer> rows_;
};

void divide(QuarnFloat& x, const QuarnFloat& pivot, bool /*conjugate*/) { x /= pivot; }
void divide(Complex& x, const Complex& pivot, bool conjugate) {
  if (pivot.im == 0) {
    x.re /= pivot.re;
    x.im /= pivot.re;
  } else {
    x = x / Complex(pivot.re, conjugate ? -pivot.im : pivot.im);
  }
}

constexpr std::size_t kBetweenCheckPoints = 512;  // entries
constexpr std::size_t kRowsAhead = 2;             // rows

/// The entries of a row of the triangle, or of its adjoint: places begin ... end - 1, by names there.
struct Places {
  std::size_t begin;
  std::size_t end;
};

template <class T>
void substitute(const QuarnSparseRows<T>& a, T* x, unsigned how) {
  const bool upper = (how & QuarnUpper) != 0;
  const bool adjoint = (how & QuarnAdjoint) != 0;
  const Columns columns = adjoint ? Columns(a, upper) : Columns();
  const Integer* const of_places = adjoint ? columns.rows() : a.columns;
  const auto row_of = [&](std::size_t step) { return upper != adjoint ? a.n - 1 - step : step; };
  const auto places_of = [&](std::size_t i) {
    const auto diagonal = std::size_t(a.diagonals[i] - 1);
    return adjoint ? Places{columns.begin(i), columns.begin(i + 1)}
           : upper ? Places{diagonal + 1, std::size_t(a.starts[i + 1] - 1)}
                   : Places{std::size_t(a.starts[i] - 1), diagonal};
  };
  const auto value_at = [&](std::size_t place) { return a.values + (adjoint ? columns.names()[place] / 2 : place); };
  const QuarnFloat one = 1;
  const Rounder rounder;
  Prospects prospects;
  std::size_t done = kBetweenCheckPoints;
  for (std::size_t step = 0; step < a.n; ++step) {
    if (done >= kBetweenCheckPoints) {
      done = 0;
      QuarnCheckInterrupt();
    }
    if (step + kRowsAhead < a.n) {
      const std::size_t later = row_of(step + kRowsAhead);
      const Places places = places_of(later);
      for (std::size_t place = places.begin; place < places.end; ++place) {
        __builtin_prefetch(value_at(place));
      }
      __builtin_prefetch(a.values + (a.diagonals[later] - 1));
    }
    const std::size_t i = row_of(step);
    const Places places = places_of(i);
    done += places.end - places.begin + 1;
    if (places.begin < places.end) {
      SparseRow row = sparse_row(a.values, of_places + places.begin, x, places.end - places.begin, adjoint);
      row.one = &one;
      if (adjoint) {
        row.names = columns.names() + places.begin;
      } else {
        row.values = parts_of(a.values + places.begin);
      }
      subtract_row(x[i], row, rounder, prospects);
    }
    if ((how & QuarnUnit) == 0) {
      divide(x[i], a.values[a.diagonals[i] - 1], adjoint);
    }
  }
}

}  // namespace
}  // namespace quarn::exact

void QuarnSparseSubstitution(const QuarnSparseRows<QuarnFloat>& a, QuarnFloat* x, unsigned how) {
  quarn::exact::substitute(a, x, how);
}

void QuarnSparseSubstitution(const QuarnSparseRows<Complex>& a, Complex* x, unsigned how) {
  quarn::exact::substitute(a, x, how);
}
