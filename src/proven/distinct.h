// How many eigenvalues of an exact matrix are distinct.
#pragma once

#include <optional>

#include "quarn/bound.h"
#include "src/kernels/scalar.h"
#include "src/kernels/views.h"

namespace tesk::proven {

/// A bound of the minors with so many rows of the n by n matrix of the traces of A^(i+j), i, j = 0, ..., n - 1, where
/// no eigenvalue of A, of order n, is larger than `radius`.
QuarnBound minors_of_traces(Integer n, Integer rows, const QuarnBound& radius);

/// The number of distinct eigenvalues of an exact matrix without any that is larger than `radius`, if that is proven to
/// be at most `most`; nothing otherwise, or where the proof would take too long.
std::optional<Integer> distinct_eigenvalues(Integer n, OneBasedMatrix<Complex> a, bool is_real,
                                            const QuarnBound& radius, Integer most);

}  // namespace tesk::proven
