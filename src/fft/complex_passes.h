// The self-sorting passes of the complex transform (C. Temperton, J. Comput. Phys. 52, 1983), all of them forward.
//
// A pass of radix r finds the numbers as an array [blocks][r][length][lanes] and leaves them as [r][blocks][length]
// [lanes], the last index varying fastest. Lanes are independent sequences whose elements lie interleaved. Element s of
// a butterfly at place i of `length` is then turned by 2 pi s i/(r length).
//
// The table of a transform of length n has exp(-2 pi i k/n) in place k. A pass with `blocks` blocks takes the places
// that are multiples of s blocks, so that all passes share one table, and n/r apart lie the roots of its butterfly.
#pragma once

#include <memory>
#include <vector>

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

class PrimeTransform;

/// All passes over `lanes` sequences of n elements, unscaled. Large primes keep what their convolutions need from one
/// call to the next.
class Passes {
 public:
  /// The table and the factors stay the caller's.
  Passes(Integer n, Integer lanes, const Complex* table, Integer count, const Integer* factors,
         const Constants& constants);
  ~Passes();
  Passes(const Passes&) = delete;
  Passes& operator=(const Passes&) = delete;

  /// Transforms x and returns where the result is: x or scratch.
  Complex* operator()(Complex* x, Complex* scratch) const;

 private:
  bool pass(Integer place, const PassShape& shape, Complex* data, Complex* other) const;

  Integer n_;
  Integer lanes_;
  const Complex* table_;
  Integer count_;
  const Integer* factors_;
  Constants constants_;
  std::vector<std::unique_ptr<PrimeTransform>> convolutions_;  // of the full accuracy, a place for each factor
};

/// Fills table[0 .. n) with the rotations that the passes of these factors look at; places between are zero. Classic:
/// each rotation is evaluated once. Full: angles are folded into one octant, see Twiddles.
void make_table(Complex* table, Integer n, const ComplexFactors& factors, const Constants& constants);

}  // namespace tesk
