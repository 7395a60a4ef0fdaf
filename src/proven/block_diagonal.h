// Invariant subspaces of a general matrix, one for each set of eigenvalues that the digits do not tell apart.
#pragma once

#include <optional>

#include "src/proven/similarity.h"

namespace tesk::proven {

/// A X near X M, M with upper triangular blocks on its diagonal and zeros beside them, columns of X of sizes near 1.
struct BlockForm {
  explicit BlockForm(Integer n) : x(n, n), m(n, n) {}

  OwnMatrix<Complex> x;
  OwnMatrix<Complex> m;
  Blocks blocks;
};

/// Of B^-1 A, at the working digits, `scaled` as far as that levels rows and columns; nothing where B is singular, or
/// the QR algorithm does not converge.
std::optional<BlockForm> block_diagonal_form(const Pencil<Complex>& pencil, bool scaled);

}  // namespace tesk::proven
