// Chosen eigenvalues of a real symmetric tridiagonal matrix and their eigenvectors, without checks.
#pragma once

#include <vector>

#include "src/kernels/level1.h"

namespace tesk {

/// Which eigenvalues: all, those in (low, high], or the ones from `first` to `last` in ascending order.
struct Selection {
  enum class Kind { all, interval, indices };
  Kind kind = Kind::all;
  QuarnFloat low;
  QuarnFloat high;
  Integer first = 1;
  Integer last = 0;
};

/// Eigenvalues by blocks, ascending in each. Elements beside the diagonal that are negligible divide the matrix.
struct ChosenEigenvalues {
  std::vector<QuarnFloat> w;
  std::vector<Integer> block;  // of each eigenvalue, from 1
  std::vector<Integer> split;  // the last rows of the blocks
};

/// By bisection; an eigenvalue is found when it is known to `tolerance`, or if that is not positive to the last place
/// of the largest element. All elements are finite.
ChosenEigenvalues bisect(const Selection& selection, Integer n, OneBasedVector<QuarnFloat> d,
                         OneBasedVector<QuarnFloat> e, const QuarnFloat& tolerance);

/// Their eigenvectors into the columns of Z, by inverse iteration; those of close eigenvalues are made orthogonal.
/// Returns the numbers, from 1, of those that did not converge. known: the unit roundoff of the eigenvalues.
template <class T>
std::vector<Integer> inverse_iteration(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e,
                                       const ChosenEigenvalues& chosen, const QuarnFloat& known, OneBasedMatrix<T> z);

/// All eigenvalues in ascending order: their places among the chosen ones.
std::vector<std::size_t> ascending(const ChosenEigenvalues& chosen);

}  // namespace tesk
