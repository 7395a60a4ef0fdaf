// Elementary functions of complex numbers, from those of real ones. A real argument with a real result keeps to the
// real function, so that its result is within one unit in the last place.
#pragma once

#include "quarn/quarnfloat.h"

namespace cli::repl {

Complex square_root(const Complex& z);
Complex exponential(const Complex& z);
/// The principal logarithm.
Complex logarithm(const Complex& z);
/// Whole powers by repeated multiplication, others as exp(w log z), the principal value. 0 to the power 0 is 1.
Complex power(const Complex& z, const Complex& w);
Complex sine(const Complex& z);
Complex cosine(const Complex& z);
Complex tangent(const Complex& z);
Complex hyperbolic_sine(const Complex& z);
Complex hyperbolic_cosine(const Complex& z);
Complex hyperbolic_tangent(const Complex& z);
/// -pi ... pi
QuarnFloat argument(const Complex& z);
QuarnFloat modulus(const Complex& z);

inline bool is_real(const Complex& z) { return z.im == 0; }

}  // namespace cli::repl
