// The Lanczos process that MINRES and SYMMLQ are built on: C. Lanczos, An iteration method for the solution of the
// eigenvalue problem of linear differential and integral operators, J. Res. Nat. Bur. Standards 45 (1950). With a
// preconditioner it works in the inner product of M (O. Widlund, SIAM J. Numer. Anal. 15, 1978): beside every vector v
// there is M v, and v^T M v is 1.
#pragma once

#include "src/sparse/ritz.h"
#include "src/sparse/solver.h"

namespace tesk {

enum LanczosSlot : Integer { kLanczosFirst = kMethodSlot, kLanczosSecond, kLanczosImage, kLanczosEnd };
enum LanczosScalar : Integer {
  kLanczosCount,
  kLanczosParity,
  kLanczosAlpha,
  kLanczosBeta,
  kLanczosNextBeta,
  kLanczosEndScalar
};
enum LanczosStep : Integer {
  kLanczosStart,
  kLanczosNextVector,
  kLanczosHaveImage,
  kLanczosHaveSize,
  kLanczosHaveAlpha,
  kLanczosHaveBeta,
  kLanczosHavePoint,
  kLanczosLastStep = kLanczosHavePoint
};
// What alpha and beta are judged by; and, about as the residual squared, how much of it is left.
inline constexpr Integer kLanczosSize = 20;
inline constexpr Integer kLanczosLeft = 21;
inline constexpr Integer kLanczosBesidePreconditioner = 3;  // A v, and M v of two vectors

template <class T>
class Lanczos {
 public:
  explicit Lanczos(Solver<T>& solver) noexcept : solver_(solver) {}

  /// The residual becomes the first vector.
  void prepare() const;
  void want_size() const;
  /// beta_1, and v_1 of length 1. iterated: all is well.
  Outcome start() const;
  /// Asks for M^-1 A v_k.
  Outcome ask() const { return solver_.apply(current(), kLanczosImage, kLanczosHaveImage); }
  void want_alpha() const;
  /// From the image of v_k: alpha_k, and the direction of v_(k+1).
  Outcome make_orthogonal() const;
  void want_beta() const;
  /// beta_(k+1), and v_(k+1) of length 1; both are 0 at the end of the process.
  Outcome normalise() const;
  /// What alpha_k and beta_k say of SIGMAX.
  void estimate() const;
  /// v_(k+1) becomes v_k.
  void flip() const;

  /// v_k
  Integer current() const { return kLanczosFirst + parity(); }
  /// v_(k-1), after step() v_(k+1)
  Integer other() const { return kLanczosSecond - parity(); }
  Integer parity() const { return solver_.state().real(kLanczosParity) == 0 ? 0 : 1; }
  /// k is 1.
  bool is_first() const { return solver_.state().real(kLanczosCount) == 0; }
  const QuarnFloat& alpha() const { return solver_.state().real(kLanczosAlpha); }
  const QuarnFloat& beta() const { return solver_.state().real(kLanczosBeta); }
  const QuarnFloat& next_beta() const { return solver_.state().real(kLanczosNextBeta); }

 private:
  /// M v for one of the two vectors.
  Integer weighted(Integer slot) const {
    return solver_.preconditioned() ? solver_.product_slot() + 1 + (slot - kLanczosFirst) : slot;
  }
  /// x := x - alpha v - beta w
  void subtract(const QuarnFloat& alpha, Integer v, const QuarnFloat& beta, Integer w, Integer image) const;
  void scale_both(Integer slot, const QuarnFloat& factor) const;
  bool looks_for_symmetry() const;
  Integer product() const { return solver_.preconditioned() ? solver_.product_slot() : Integer(kLanczosImage); }

  Solver<T>& solver_;
};

/// The course of a method: begin() once v_1 and beta_1 are there, iterate() after each step of the process; when that
/// waits for sums at kLanczosHavePoint, then settle().
template <class T>
Outcome resume_lanczos(Solver<T>& solver, void (*begin)(const Solver<T>&, const Lanczos<T>&),
                       Outcome (*iterate)(Solver<T>&, const Lanczos<T>&),
                       Outcome (*settle)(Solver<T>&, const Lanczos<T>&));

}  // namespace tesk
