// Balls of Arb around numbers of decimal digits, and whether a bound holds what is in them.
#pragma once

#include <acb.h>
#include <acb_hypgeom.h>
#include <acb_mat.h>
#include <acb_poly.h>
#include <arb_hypgeom.h>
#include <arb_mat.h>

#include <cstdlib>
#include <string>

#include "tesk2mp/tesk2mp.hpp"

namespace balls {

/// A complex ball.
class Ball {
 public:
  Ball() { acb_init(value_); }
  Ball(const tesk2mp::Real& re, const tesk2mp::Real& im, slong bits) : Ball() {
    arb_set_str(acb_realref(value_), re.to_string().c_str(), bits);
    arb_set_str(acb_imagref(value_), im.to_string().c_str(), bits);
  }
  Ball(const tesk2mp::Real& x, slong bits) : Ball(x, 0, bits) {}
  Ball(const Complex& z, slong bits) : Ball(z.re, z.im, bits) {}
  ~Ball() { acb_clear(value_); }
  Ball(const Ball&) = delete;
  Ball& operator=(const Ball&) = delete;
  acb_ptr get() { return value_; }
  arb_ptr real() { return acb_realref(value_); }

 private:
  acb_t value_;
};

/// What is known of |ball - value| <= error.
enum class Place { inside, outside, open };

/// Inside too where the ball, far narrower than the error, touches its edge: numbers of decimal digits have no binary
/// ones.
template <class T>
Place place_of(acb_srcptr ball, const T& value, const QuarnBound& error, slong bits) {
  if (!acb_is_finite(ball)) {
    return Place::open;
  }
  if (error.is_zero() && value == T()) {
    return acb_contains_zero(ball) ? Place::inside : Place::outside;
  }
  Ball distance;
  Ball allowed(error.value(), bits);
  Ball centre(value, bits);
  acb_sub(distance.get(), ball, centre.get(), bits);
  acb_abs(distance.real(), distance.get(), bits);
  arb_sub(allowed.real(), allowed.real(), distance.real(), bits);
  // The width, beside the error or, where that is 0, the value.
  Ball width;
  arb_get_rad_arb(width.real(), allowed.real());
  Ball scale(error.is_zero() ? value : T(error.value()), bits);
  Ball size;
  acb_abs(size.real(), scale.get(), bits);
  arb_mul_2exp_si(size.real(), size.real(), -100);
  if (arb_is_negative(allowed.real())) {
    return Place::outside;
  }
  return arb_is_nonnegative(allowed.real()) || arb_le(width.real(), size.real()) ? Place::inside : Place::open;
}

/// How many times as much is tried: TESK_ROUNDS.
inline int rounds() {
  const char* const text = std::getenv("TESK_ROUNDS");
  return text != nullptr ? std::atoi(text) : 1;
}
/// Bits of so many decimal digits.
inline slong bits_of(int digits) { return slong(3.33 * digits) + 10; }

}  // namespace balls
