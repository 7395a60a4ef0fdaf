// The steps of a product by transforms on doubles modulo two primes, for one instruction set.
//
// A residue modulo p < 0.75 * 2^50 is a whole double, kept near zero rather than between 0 and p. With q the whole
// number next to a * (w / p), a * w - q * p comes out of fused multiply-adds without rounding (J. van der Hoeven, G.
// Lecerf, G. Quintin, "Modular SIMD arithmetic in Mathemagix", ACM Trans. Math. Software 43, 2016), and lies within p
// (1/2 + |a| 2^-54) where |w| <= p / 2 and |a| <= 5.3 p, so that the quotient stays below 2^51. The comments at the
// steps bound values in units of p. Nothing is ever rounded: all instruction sets give the same numbers.
//
// A polynomial in x stands as vectors of kLanes neighbouring coefficients, which are a polynomial in x whose
// coefficients are vectors in z = x^kLanes. Transforms go over z alone, each lane by itself. What they leave,
// polynomials in x modulo x^kLanes - z for each root z, is multiplied term by term.
//
// These files include nothing with inline functions: what they would be compiled to is for one instruction set only.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace quarn::convolution {

/// A constant factor, at most p / 2 in magnitude, and its quotient by p.
struct Factor {
  double value;
  double quotient;
};

/// What belongs to one prime.
struct Field {
  double prime;
  double inverse;  ///< 1 / prime
  /// Block j of a level is a polynomial modulo z^(2 s) - r^2 with r = twiddles[j]; the mirror image of a twiddle is
  /// minus its inverse (number/limbs/ntt.h).
  const Factor* twiddles;
  /// For lengths 3 and 5: half sums and half differences of opposite roots of unity, [(i half + k) 2], of the power
  /// (i + 1) (k + 1), and the roots themselves.
  Factor third[2], third_root[3];
  Factor fifth[8], fifth_root[5];
};

/// How two residues become digits: of base `base`, in which the first prime is high * base + low.
struct Recombination {
  Factor inverse;  ///< of the first prime modulo the second one
  double base, base_inverse;
  double prime_high, prime_low;
};

/// Coefficients are counted in vectors of `lanes`; parts 1, 3 or 5 times a power of two.
struct Kernel {
  size_t lanes;

  /// Whole numbers below 2^52 to doubles; out may be the same storage.
  void (*convert)(const uint64_t* words, double* out, size_t vectors);
  /// x to the values at all roots of z^vectors - 1.
  void (*forward)(const Field& field, double* x, size_t vectors);
  /// x *= y * factor at each root; x may be y.
  void (*multiply)(const Field& field, double* x, const double* y, size_t vectors, double factor);
  /// Undoes forward, but for a factor `vectors`.
  void (*inverse)(const Field& field, double* x, size_t vectors);
  /// From residues x and y of numbers from 0 to 0.4 p1 p2, two vectors at least: the sum of number i base^i modulo
  /// base^(vectors lanes) - 1 as digits from -2^12 to base + 2^12. x may be the same storage as out.
  void (*recombine)(const Field& first, const Field& second, const Recombination& how, const double* x, const double* y,
                    int64_t* out, size_t vectors);
  /// out[i] = in[i] * root, count of them.
  void (*fill)(const Field& field, const Factor* in, Factor* out, size_t count, double root);
};

extern const Kernel* const kKernel32;
extern const Kernel* const kKernel64;

}  // namespace quarn::convolution
