// The transform in MPFR, by two methods that share nothing with the library's.
#pragma once

#include <mpreal.h>

#include <vector>

#include "quarn/quarnfloat.h"

namespace oracle {

using mpfr::mpreal;

struct Point {
  mpreal re = 0;
  mpreal im = 0;
};
using Sequence = std::vector<Point>;  // for a Hermitian or a real sequence: all its n elements

/// The constants of a transform: those of the classic entries, or true ones.
struct Constants {
  mpreal pi, half_sqrt3, sqrt_half, quarter_sqrt5;

  static Constants classic();
  static Constants full();
};

/// MPFR's working precision for a scope, in decimal digits.
class Precision {
 public:
  explicit Precision(int digits) : former_(mpreal::get_default_prec()) {
    mpreal::set_default_prec(mpfr::digits2bits(digits));
  }
  ~Precision() { mpreal::set_default_prec(former_); }
  Precision(const Precision&) = delete;
  Precision& operator=(const Precision&) = delete;

 private:
  mp_prec_t former_;
};

mpreal exact(const QuarnFloat& x);
Sequence from_real(const std::vector<QuarnFloat>& x);
Sequence from_half_complex(const std::vector<QuarnFloat>& x);
Sequence from_complex(const std::vector<Complex>& x);

/// The definition: n^2 products with the true pi, scaled by 1/sqrt(n). sign: -1 forward, +1 backward.
Sequence by_definition(const Sequence& x, int sign);

/// The transform of radices r1, r2, ... as the passes define it, in natural order over full complex sequences: each
/// pass is the r by r matrix of its radix and the rotations of its index, both with the given constants, which need
/// not be true. x: a real sequence forward, a Hermitian one backward.
Sequence by_passes_forward(const Sequence& x, std::vector<Integer> radices, const Constants& constants);
Sequence by_passes_backward(const Sequence& z, std::vector<Integer> radices, const Constants& constants);

/// The transform of a complex sequence by decimation in frequency, by the same matrices and rotations as above.
Sequence by_complex_passes(const Sequence& x, const std::vector<Integer>& radices, const Constants& constants);

/// The pass list of length n, without its ones.
std::vector<Integer> radices_of(Integer n);

/// |x| in units of 10^-digits.
double in_units(const mpreal& x, int digits);

/// norm(a - b) / norm(b), Euclidean norms, in units of 10^-digits.
double error_in_units(const Sequence& a, const Sequence& b, int digits);

}  // namespace oracle
