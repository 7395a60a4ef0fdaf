// Eigenvectors of a real matrix in Schur form: quasi upper triangular, with 1 by 1 and 2 by 2 diagonal blocks.
#pragma once

#include <vector>

#include "src/frame/constants.h"
#include "src/kernels/level1.h"

namespace tesk {

/// An eigenvalue of a diagonal block, with the block's first row. Of a pair it is the one above the real axis.
struct BlockEigenvalue {
  Integer row;
  bool pair;
  QuarnFloat re;
  QuarnFloat im;
};

/// The eigenvalues of the diagonal blocks from the top.
std::vector<BlockEigenvalue> block_eigenvalues(Integer n, OneBasedMatrix<QuarnFloat> t);

/// The right eigenvector x of T for the eigenvalue: T x = lambda x, with x zero below the eigenvalue's block. A divisor
/// below `smallest` (one that two equal eigenvalues give) is replaced by it. Full accuracy rescales the vector on the
/// way, as published, when it grows beyond all bounds.
std::vector<Complex> right_eigenvector(Accuracy accuracy, Integer n, OneBasedMatrix<QuarnFloat> t,
                                       const BlockEigenvalue& eigenvalue, const QuarnFloat& smallest);

/// The left eigenvector y: y^H T = lambda y^H, with y zero above the eigenvalue's block.
std::vector<Complex> left_eigenvector(Accuracy accuracy, Integer n, OneBasedMatrix<QuarnFloat> t,
                                      const BlockEigenvalue& eigenvalue, const QuarnFloat& smallest);

}  // namespace tesk
