// The factorisations of the companions, for the rest of the library.
#pragma once

#include "src/kernels/views.h"

namespace tesk {

/// P A = L U in the place of A, m by n; row i was exchanged with row ipiv[i - 1]. Returns INFO.
template <class T>
Integer factorise_lu(Integer m, Integer n, OneBasedMatrix<T> a, Integer* ipiv);

/// A = L L^H in the lower triangle of A, the upper one is not touched. Returns INFO.
template <class T>
Integer factorise_cholesky(Integer n, OneBasedMatrix<T> a);

}  // namespace tesk
