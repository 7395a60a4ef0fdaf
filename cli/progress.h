// How far long work is, told on standard error.
#pragma once

#include <string>

namespace cli {

/// From now on lines are written, if standard error is a terminal. (Not on Windows, which has no timer signal.)
void enable_progress();

/// A piece of work: after a second, and twice a second from then on, one line tells how far it is and about how long it
/// still takes; the line vanishes with this object. Of pieces within each other the outer one counts.
class Progress {
 public:
  /// Work that advance() tells the course of.
  Progress(const std::string& what, double steps);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void advance(double steps = 1);

  /// A call that cannot tell how far it is: the time is estimated from that number of multiplications with an addition
  /// each, at the working precision.
  static Progress estimated(const std::string& what, double multiply_adds);

 private:
  Progress(const std::string& what, double steps, double seconds);

  bool counts_ = false;
};

/// Multiply-adds of a factorisation of order n, complex ones at four times the cost.
inline double factorisation_cost(double n, bool complex) { return n * n * n / 3 * (complex ? 4 : 1); }

}  // namespace cli
