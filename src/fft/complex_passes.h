// The self-sorting passes of the complex transform (C. Temperton, J. Comput. Phys. 52, 1983), all of them forward.
//
// A pass of radix r finds the numbers as an array [blocks][r][length][lanes] and leaves them as [r][blocks][length]
// [lanes], the last index varying fastest. Lanes are independent sequences whose elements lie interleaved. Element s of
// a butterfly at place i of `length` is then turned by 2 pi s i/(r length).
//
// The table of a transform of length n has exp(-2 pi i k/n) in place k. A pass with `blocks` blocks takes the places
// that are multiples of s blocks, so that all passes share one table, and n/r apart lie the roots of its butterfly.
#pragma once

#include "src/fft/complex_factors.h"
#include "src/frame/constants.h"

namespace tesk {

struct PassShape {
  Integer length;
  Integer blocks;
  Integer lanes;
};

/// Passes that read `source` and write `target`.
void pass2(const PassShape& shape, const Complex* source, Complex* target, const Complex* table);
void pass3(const PassShape& shape, const Complex* source, Complex* target, const Complex* table,
           const Constants& constants);
void pass4(const PassShape& shape, const Complex* source, Complex* target, const Complex* table);
void pass5(const PassShape& shape, const Complex* source, Complex* target, const Complex* table,
           const Constants& constants);

/// All passes over `lanes` sequences of n elements, unscaled. Returns where the result is: x or scratch.
Complex* run_passes(Integer n, Integer lanes, Complex* x, Complex* scratch, const Complex* table, Integer count,
                    const Integer* factors, const Constants& constants);

/// Fills table[0 .. n) with the rotations that the passes of these factors look at; places between are zero. Classic:
/// each rotation is evaluated once. Full: angles are folded into one octant, see Twiddles.
void make_table(Complex* table, Integer n, const ComplexFactors& factors, const Constants& constants);

}  // namespace tesk
