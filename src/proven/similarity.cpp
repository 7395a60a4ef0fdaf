#include "src/proven/similarity.h"

namespace tesk::proven {
namespace {

/// Where column j of x belongs: alone with a real number, or first or second of a pair.
enum class Place { alone, first, second };

/// Nothing where numbers and vectors are neither real nor in pairs of neighbours.
std::optional<std::vector<Place>> places(Integer n, OneBasedMatrix<Complex> x, const Complex* w) {
  std::vector<Place> result;
  for (Integer j = 1; j <= n; ++j) {
    const bool real = w[j - 1].im == 0;
    if (!real && (j == n || !(w[j] == conj(w[j - 1])))) {
      return {};
    }
    for (Integer i = 1; i <= n; ++i) {
      if (real ? x(i, j).im != 0 : !(x(i, j + 1) == conj(x(i, j)))) {
        return {};
      }
    }
    result.push_back(real ? Place::alone : Place::first);
    if (!real) {
      result.push_back(Place::second);
      ++j;
    }
  }
  return result;
}

/// From what belongs to real and imaginary parts of pairs to what belongs to the vectors: S^-1 E S, where S has a block
/// (1, 1; i, -i) for each pair.
BoundMatrix of_vectors(Integer n, const std::vector<Place>& place, const BoundMatrix& e) {
  const QuarnBound half = QuarnBound::count(5) * QuarnBound::power_of_ten(-1);
  BoundMatrix result(n);
  for (Integer j = 1; j <= n; ++j) {
    const bool column_pair = place[std::size_t(j - 1)] == Place::first;
    for (Integer i = 1; i <= n; ++i) {
      const bool row_pair = place[std::size_t(i - 1)] == Place::first;
      QuarnBound bound = e(i, j);
      if (row_pair && column_pair) {
        bound = half * hypotenuse(e(i, j) + e(i + 1, j + 1), e(i, j + 1) + e(i + 1, j));
      } else if (row_pair) {
        bound = half * hypotenuse(e(i, j), e(i + 1, j));
      } else if (column_pair) {
        bound = hypotenuse(e(i, j), e(i, j + 1));
      }
      for (Integer k = j; k <= j + (column_pair ? 1 : 0); ++k) {
        for (Integer l = i; l <= i + (row_pair ? 1 : 0); ++l) {
          result(l, k) = bound;
        }
      }
      i += row_pair ? 1 : 0;
    }
    j += column_pair ? 1 : 0;
  }
  return result;
}

/// Its elements as complex numbers; one element where there is no storage.
OwnMatrix<Complex> complex_copy(Integer n, OneBasedMatrix<QuarnFloat> a) {
  OwnMatrix<Complex> copy(n, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      copy.view()(i, j) = Complex(a(i, j));
    }
  }
  return copy;
}

}  // namespace

std::optional<BoundMatrix> distance_from_diagonal(const Pencil<Complex>& pencil, OneBasedMatrix<Complex> x,
                                                  const Complex* w) {
  OwnMatrix<Complex> diagonal(pencil.n, pencil.n);
  for (Integer j = 1; j <= pencil.n; ++j) {
    diagonal.view()(j, j) = w[j - 1];
  }
  return distance_from_blocks(pencil, x, diagonal.view(), single_blocks(pencil.n));
}

ComplexPencil::ComplexPencil(const Pencil<QuarnFloat>& pencil)
    : a_(complex_copy(pencil.n, pencil.a)), b_(complex_copy(pencil.has_b ? pencil.n : 0, pencil.b)), given_(pencil) {}

std::optional<BoundMatrix> distance_from_diagonal(const Pencil<QuarnFloat>& pencil, OneBasedMatrix<Complex> x,
                                                  const Complex* w) {
  const Integer n = pencil.n;
  const auto place = places(n, x, w);
  if (!place) {
    ComplexPencil same(pencil);
    return distance_from_diagonal(same.view(), x, w);
  }
  // A (u, v) = (u, v) (a, b; -b, a) for the eigenvector u + i v of a + i b.
  OwnMatrix<QuarnFloat> parts(n, n);
  OwnMatrix<QuarnFloat> diagonal(n, n);
  const OneBasedMatrix<QuarnFloat> m = diagonal.view();
  Blocks blocks;
  for (Integer j = 1; j <= n; ++j) {
    const bool pair = (*place)[std::size_t(j - 1)] == Place::first;
    const Complex& value = w[j - 1];
    blocks.push_back(j);
    for (Integer i = 1; i <= n; ++i) {
      parts.view()(i, j) = x(i, j).re;
      if (pair) {
        parts.view()(i, j + 1) = x(i, j).im;
      }
    }
    m(j, j) = value.re;
    if (pair) {
      m(j + 1, j) = -value.im;
      m(j, j + 1) = value.im;
      m(j + 1, j + 1) = value.re;
      ++j;
    }
  }
  blocks.push_back(n + 1);
  const auto bounds = distance_from_blocks(pencil, parts.view(), m, blocks);
  return bounds ? std::optional<BoundMatrix>(of_vectors(n, *place, *bounds)) : std::nullopt;
}

}  // namespace tesk::proven
