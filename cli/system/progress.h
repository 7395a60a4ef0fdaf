// How far long work is, told on standard error.
#pragma once

#include <cstddef>
#include <string>

namespace cli {

/// From now on lines are written, if standard error is a terminal.
void enable_progress();

/// A piece of work: after a second, and twice a second from then on, one line says how far it is and about how long it
/// still takes; the line vanishes with this object. Of pieces within each other the outer one counts.
class Progress {
 public:
  /// Work whose course advance() reports.
  Progress(const std::string& what, double steps);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void advance(double steps = 1);
  /// So many of the steps are done; with none the line shows the time gone by instead.
  void reach(double steps);

  /// A call that cannot tell how far it is: the time is estimated from that number of multiplications with an addition
  /// each, at the working precision.
  static Progress estimated(const std::string& what, double multiply_adds);

 private:
  Progress(const std::string& what, double steps, double seconds);

  bool counts_ = false;
};

// Work in multiply-adds of reals, of which a complex one is four.
inline constexpr double kComplexCost = 4;

/// A factorisation of order n.
inline double factorisation_cost(double n, bool complex) { return n * n * n / 3 * (complex ? kComplexCost : 1); }

/// Eigenvalues of a real matrix of order n: reduction and iterations, with the Schur form as well for vectors.
inline double eigenvalue_cost(double n, bool schur_form) {
  return (schur_form ? 90 : 45) * factorisation_cost(n, false);
}

/// A Fourier transform of n reals: some two operations an element and factor of two, and an evaluation of sines and
/// cosines for every second element.
double transform_cost(double n);
/// Of n complex numbers: a large prime factor is transformed by convolutions.
double complex_transform_cost(std::size_t n);

}  // namespace cli
