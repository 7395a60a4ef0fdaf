// MPFR as the oracle: its value of an elementary function, as a decimal number of more digits than are tested.
#pragma once

#include <mpfr.h>

#include <string>

#include "quarn/quarnfloat.h"

namespace oracle {

using MpfrFunction1 = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
using MpfrFunction2 = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t);

class Real {
 public:
  explicit Real(long bits) { mpfr_init2(value_, bits); }
  Real(long bits, const std::string& text) : Real(bits) { mpfr_set_str(value_, text.c_str(), 10, MPFR_RNDN); }
  ~Real() { mpfr_clear(value_); }
  Real(const Real&) = delete;
  Real& operator=(const Real&) = delete;
  operator mpfr_ptr() { return value_; }

  /// The nearest decimal number of `digits` digits, as text.
  std::string text(int digits) {
    char* out = nullptr;
    mpfr_asprintf(&out, "%.*Re", digits - 1, value_);
    std::string result(out);
    mpfr_free_str(out);
    return result;
  }

 private:
  mpfr_t value_;
};

/// f(x) to `digits` digits, from the argument's text at `bits` bits.
inline std::string apply(MpfrFunction1 f, const std::string& x, long bits, int digits) {
  Real argument(bits, x);
  Real value(bits);
  f(value, argument, MPFR_RNDN);
  return value.text(digits);
}

inline std::string apply(MpfrFunction2 f, const std::string& x, const std::string& y, long bits, int digits) {
  Real first(bits, x);
  Real second(bits, y);
  Real value(bits);
  f(value, first, second, MPFR_RNDN);
  return value.text(digits);
}

}  // namespace oracle
