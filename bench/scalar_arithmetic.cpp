// + - * / sqrt, y = y + a * x and y += a * x.
#include "bench/peers.h"

namespace bench {
namespace {

struct Add {
  static constexpr const char* name = "add";
  static constexpr bool positive = false;
  template <class T>
  static void apply(T& result, const T& a, const T& b) {
    result = a + b;
  }
  static void apply(RawMpfr& result, const RawMpfr& a, const RawMpfr& b) {
    mpfr_add(result.value, a.value, b.value, MPFR_RNDN);
  }
};

struct Subtract {
  static constexpr const char* name = "sub";
  static constexpr bool positive = false;
  template <class T>
  static void apply(T& result, const T& a, const T& b) {
    result = a - b;
  }
  static void apply(RawMpfr& result, const RawMpfr& a, const RawMpfr& b) {
    mpfr_sub(result.value, a.value, b.value, MPFR_RNDN);
  }
};

struct Multiply {
  static constexpr const char* name = "mul";
  static constexpr bool positive = false;
  template <class T>
  static void apply(T& result, const T& a, const T& b) {
    result = a * b;
  }
  static void apply(RawMpfr& result, const RawMpfr& a, const RawMpfr& b) {
    mpfr_mul(result.value, a.value, b.value, MPFR_RNDN);
  }
};

struct Divide {
  static constexpr const char* name = "div";
  static constexpr bool positive = false;
  template <class T>
  static void apply(T& result, const T& a, const T& b) {
    result = a / b;
  }
  static void apply(RawMpfr& result, const RawMpfr& a, const RawMpfr& b) {
    mpfr_div(result.value, a.value, b.value, MPFR_RNDN);
  }
};

struct SquareRoot {
  static constexpr const char* name = "sqrt";
  static constexpr bool positive = true;
  template <class T>
  static void apply(T& result, const T&, const T& b) {
    result = sqrt(b);
  }
  static void apply(RawMpfr& result, const RawMpfr&, const RawMpfr& b) { mpfr_sqrt(result.value, b.value, MPFR_RNDN); }
};

struct MultiplyAdd {
  static constexpr const char* name = "y+a*x";
  static constexpr bool positive = false;
  template <class T>
  static void apply(T& y, const T& a, const T& x) {
    y = y + a * x;
  }
  static void apply(RawMpfr& y, const RawMpfr& a, const RawMpfr& x) {
    static RawMpfr product("0");
    if (mpfr_get_prec(product.value) != mpfr_get_prec(y.value)) {
      mpfr_set_prec(product.value, mpfr_get_prec(y.value));
    }
    mpfr_mul(product.value, a.value, x.value, MPFR_RNDN);
    mpfr_add(y.value, y.value, product.value, MPFR_RNDN);
  }
};

/// The same in place, where a product by operator* is a number of its own.
struct AddInPlace : MultiplyAdd {
  static constexpr const char* name = "y+=a*x";
  template <class T>
  static void apply(T& y, const T& a, const T& x) {
    y += a * x;
  }
  static void apply(RawMpfr& y, const RawMpfr& a, const RawMpfr& x) { MultiplyAdd::apply(y, a, x); }
};

const bool registered = register_operation<Add>() && register_operation<Subtract>() &&
                        register_operation<Multiply>(1'000'000) && register_operation<Divide>() &&
                        register_operation<SquareRoot>() && register_operation<MultiplyAdd>() &&
                        register_operation<AddInPlace>(1000);

}  // namespace
}  // namespace bench
