// Random arguments for the functions of complex.h, and MPC's values.
#pragma once

#include <mpc.h>

#include "elementary/function_cases.h"
#include "quarn/complex.h"

namespace cases {

struct ComplexCase {
  const char* name;
  quarn::Complex (*ours)(const quarn::Complex&);
  int (*reference)(mpc_ptr, mpc_srcptr, mpc_rnd_t);
  bool grows;  // as exp does: arguments stay moderate
};

inline const std::vector<ComplexCase>& complex_functions() {
  using namespace quarn;
  static const std::vector<ComplexCase> all = {
      {"sqrt", sqrt, mpc_sqrt, false},    {"exp", exp, mpc_exp, true},        {"log", log, mpc_log, false},
      {"log10", log10, mpc_log10, false}, {"sin", sin, mpc_sin, true},        {"cos", cos, mpc_cos, true},
      {"tan", tan, mpc_tan, true},        {"asin", asin, mpc_asin, false},    {"acos", acos, mpc_acos, false},
      {"atan", atan, mpc_atan, false},    {"sinh", sinh, mpc_sinh, true},     {"cosh", cosh, mpc_cosh, true},
      {"tanh", tanh, mpc_tanh, true},     {"asinh", asinh, mpc_asinh, false}, {"acosh", acosh, mpc_acosh, false},
      {"atanh", atanh, mpc_atanh, false}};
  return all;
}

class MpcNumber {
 public:
  explicit MpcNumber(long bits) { mpc_init2(value_, bits); }
  ~MpcNumber() { mpc_clear(value_); }
  MpcNumber(const MpcNumber&) = delete;
  MpcNumber& operator=(const MpcNumber&) = delete;
  operator mpc_ptr() { return value_; }
  void set(const std::string& re, const std::string& im) {
    mpfr_set_str(mpc_realref(value_), re.c_str(), 10, MPFR_RNDN);
    mpfr_set_str(mpc_imagref(value_), im.c_str(), 10, MPFR_RNDN);
  }
  std::string re(int digits) const { return text(mpc_realref(value_), digits); }
  std::string im(int digits) const { return text(mpc_imagref(value_), digits); }

 private:
  static std::string text(mpfr_srcptr x, int digits) {
    char* out = nullptr;
    mpfr_asprintf(&out, "%.*Re", digits - 1, x);
    std::string result(out);
    mpfr_free_str(out);
    return result;
  }
  mpc_t value_;
};

/// Both parts of moderate size, one tiny, next to the branch points, huge, and on the axes from both sides.
inline std::pair<std::string, std::string> random_complex(std::mt19937_64& random, const ComplexCase& f, int digits) {
  const Range unit{0, 0, true};
  const Range modest{-6, f.grows ? 1 : 2, true};
  const Range tiny{-60, -5, true};
  const Range large{f.grows ? 1 : 3, f.grows ? 3 : 40, true};
  const Range at_one{-30, -1, true, random() % 2 == 0 ? "1" : "-1"};
  const auto draw = [&](const Range& range) { return random_argument(random, range, digits); };
  const char* const zero = random() % 2 == 0 ? "0" : "-0";
  switch (random() % 12) {
    case 0:
      return {draw(tiny), draw(unit)};
    case 1:
      return {draw(unit), draw(tiny)};
    case 2:
      return {draw(at_one), draw(tiny)};
    case 3:
      return {draw(tiny), draw(at_one)};
    case 4:
      return {draw(large), draw(modest)};
    case 5:
      return {draw(modest), draw(large)};
    case 6:
      return {draw(modest), zero};
    case 7:
      return {zero, draw(modest)};
    case 8:
      return {draw(tiny), draw(tiny)};
    case 9:
      return {draw(unit), draw(unit)};
    default:
      return {draw(modest), draw(modest)};
  }
}

/// The larger error of the two parts, each in units of its last place.
inline double error_of(const ComplexCase& f, const std::string& re, const std::string& im, int digits) {
  QuarnSetDigits(digits);
  const quarn::Complex z{QuarnFloat(re), QuarnFloat(im)};
  const quarn::Complex ours = f.ours(z);
  const long bits = std::max(bits_for(z.re, digits), bits_for(z.im, digits));
  MpcNumber argument(2 * bits);
  argument.set(re, im);
  MpcNumber value(long(3.33 * (digits + 40)));
  f.reference(value, argument, MPC_RNDNN);
  return std::max(error_in_units(ours.re, value.re(digits + 25), digits),
                  error_in_units(ours.im, value.im(digits + 25), digits));
}

}  // namespace cases
