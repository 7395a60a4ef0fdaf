// exp, log and the pair of sine and cosine.
#include "bench/peers.h"

namespace bench {
namespace {

struct Exponential {
  static constexpr const char* name = "exp";
  static constexpr bool positive = false;
  template <class T>
  static void apply(T& result, const T&, const T& b) {
    result = exp(b);
  }
  static void apply(RawMpfr& result, const RawMpfr&, const RawMpfr& b) { mpfr_exp(result.value, b.value, MPFR_RNDN); }
};

struct Logarithm {
  static constexpr const char* name = "log";
  static constexpr bool positive = true;
  template <class T>
  static void apply(T& result, const T&, const T& b) {
    result = log(b);
  }
  static void apply(RawMpfr& result, const RawMpfr&, const RawMpfr& b) { mpfr_log(result.value, b.value, MPFR_RNDN); }
};

struct SineAndCosine {
  static constexpr const char* name = "sin+cos";
  static constexpr bool positive = false;
  template <class T>
  static void apply(T& result, const T&, const T& b) {
    result = sin(b);
    result = cos(b);
  }
  static void apply(RawMpfr& result, const RawMpfr&, const RawMpfr& b) {
    static RawMpfr cosine("0");
    if (mpfr_get_prec(cosine.value) != mpfr_get_prec(result.value)) {
      mpfr_set_prec(cosine.value, mpfr_get_prec(result.value));
    }
    mpfr_sin_cos(result.value, cosine.value, b.value, MPFR_RNDN);
  }
};

const bool registered =
    register_operation<Exponential>() && register_operation<Logarithm>() && register_operation<SineAndCosine>();

}  // namespace
}  // namespace bench
