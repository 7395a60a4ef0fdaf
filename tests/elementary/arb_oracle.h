// Arb as the oracle of special functions of complex numbers: balls that are made smaller until they hold the digits.
#pragma once

#include <acb.h>
#include <acb_hypgeom.h>

#include <string>
#include <utility>

#include "quarn/complex.h"

namespace oracle {

using ArbFunction = void (*)(acb_ptr, acb_srcptr, slong);

class ArbNumber {
 public:
  ArbNumber() { acb_init(value_); }
  ~ArbNumber() { acb_clear(value_); }
  ArbNumber(const ArbNumber&) = delete;
  ArbNumber& operator=(const ArbNumber&) = delete;
  acb_ptr get() { return value_; }

 private:
  acb_t value_;
};

/// The parts of f(re + i im) to more than `digits` digits each, as text; nothing when 200,000 bits do not suffice.
inline std::pair<std::string, std::string> apply(ArbFunction f, const std::string& re, const std::string& im,
                                                 int digits) {
  ArbNumber z;
  ArbNumber value;
  const auto bits = slong(3.33 * digits) + 10;
  const auto text = [&](arb_srcptr x) {
    if (arb_is_zero(x)) {
      return std::string("0");
    }
    if (arb_rel_accuracy_bits(x) < bits) {
      return std::string();
    }
    char* const out = arb_get_str(x, digits, ARB_STR_NO_RADIUS);
    std::string result(out);
    flint_free(out);
    return result;
  };
  std::pair<std::string, std::string> result;
  for (slong precision = 2 * bits + 200; precision < 200'000; precision *= 2) {
    arb_set_str(acb_realref(z.get()), re.c_str(), precision);
    arb_set_str(acb_imagref(z.get()), im.c_str(), precision);
    f(value.get(), z.get(), precision);
    result = {text(acb_realref(value.get())), text(acb_imagref(value.get()))};
    if (!result.first.empty() && !result.second.empty()) {
      break;
    }
  }
  return result;
}

}  // namespace oracle
