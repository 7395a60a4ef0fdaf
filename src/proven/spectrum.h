// What M + E, M block diagonal and E small, says of eigenvalues and eigenvectors.
#pragma once

#include <vector>

#include "src/proven/discs.h"
#include "src/proven/similarity.h"

namespace tesk::proven {

/// Discs of the eigenvalues of D^-1 (M + E) D, D diagonal with powers of ten that make the elements above the diagonal
/// of the blocks of M as small as pays, and bounds of the eigenvectors.
class Spectrum {
 public:
  /// M upper triangular within its blocks.
  Spectrum(Integer n, OneBasedMatrix<Complex> m, const Blocks& blocks, const BoundMatrix& e);
  /// M = diag(w)
  Spectrum(Integer n, const Complex* w, const BoundMatrix& e);

  /// A disc for each row, not resolved.
  std::vector<Disc> discs() const;
  /// For an eigenvalue in a disc of its own, row i a block of its own: bounds of the coefficients of the other columns
  /// of X in the eigenvector whose coefficient of column i is 1. Infinite ones otherwise.
  std::vector<QuarnBound> coefficients(Integer i) const;
  /// A bound of the distance of the mean of the eigenvalues in a connected set of discs from `centre`. Infinity where
  /// none is found.
  QuarnBound mean_error(const Members& members, const Complex& centre) const;

 private:
  QuarnBound distance_of_centres(const Members& members, const Complex& centre) const;
  void set_weights(Integer first, Integer next);
  QuarnBound radius(Integer i) const;
  /// Element (i, j) of D^-1 |M - diag(M) + E| D.
  QuarnBound element(Integer i, Integer j) const {
    return sizes_(i, j) * QuarnBound::power_of_ten(weights_[std::size_t(j)] - weights_[std::size_t(i)]);
  }

  Integer n_;
  std::vector<Complex> centres_;
  std::vector<bool> alone_;
  std::vector<std::int64_t> weights_;  // exponents of ten, from 1 on
  BoundMatrix sizes_;
  std::vector<QuarnBound> radii_;
};

}  // namespace tesk::proven
