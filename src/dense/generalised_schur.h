// The generalised Schur form of a pencil A - lambda B and its eigenvectors, without checks.
#pragma once

#include <vector>

#include "src/kernels/level1.h"

namespace tesk {

/// A = Q H Z^H, B = Q T Z^H. Q and Z of no rows are not wanted.
template <class T>
struct Pencil {
  Integer n;
  OneBasedMatrix<T> h;
  OneBasedMatrix<T> t;
  Integer q_rows;
  OneBasedMatrix<T> q;
  Integer z_rows;
  OneBasedMatrix<T> z;
};

/// H becomes upper Hessenberg; T is upper triangular and stays so.
template <class T>
void reduce_pencil(const Pencil<T>& pencil);

/// H, upper Hessenberg, becomes upper triangular, of real numbers with 2 by 2 blocks that are pairs of eigenvalues and
/// diagonal in T; the diagonal of T is not negative. Without the Schur form the diagonal blocks alone come out right.
/// Returns INFO: 0, or the index of the eigenvalue that was being sought when the iterations ran out.
template <class T>
Integer qz(bool wants_schur_form, const Pencil<T>& pencil);

/// lambda = alpha / beta of a diagonal block, with the block's first row. Of a pair it is the one above the real axis.
struct PencilEigenvalue {
  Integer row;
  bool pair;
  Complex alpha;
  QuarnFloat beta;
};
template <class T>
std::vector<PencilEigenvalue> pencil_eigenvalues(Integer n, OneBasedMatrix<T> h, OneBasedMatrix<T> t);

/// The largest elements of H and T: divisors that are small beside them are replaced.
struct PencilSizes {
  QuarnFloat of_h;
  QuarnFloat of_t;
};

/// The right eigenvector of the generalised Schur form: beta H x = alpha T x.
template <class T>
std::vector<Complex> right_pencil_vector(Integer n, OneBasedMatrix<T> h, OneBasedMatrix<T> t, const PencilSizes& sizes,
                                         const PencilEigenvalue& eigenvalue);
/// The left one: beta y^H H = alpha y^H T.
template <class T>
std::vector<Complex> left_pencil_vector(Integer n, OneBasedMatrix<T> h, OneBasedMatrix<T> t, const PencilSizes& sizes,
                                        const PencilEigenvalue& eigenvalue);

}  // namespace tesk
