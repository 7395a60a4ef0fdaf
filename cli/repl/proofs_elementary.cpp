#include "cli/repl/proofs_elementary.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "cli/repl/fault.h"
#include "tesk2mp/proven_table.hpp"
#include "tesk2mp/util.hpp"

namespace cli::repl {

namespace {

BoundedReal half_pi() { return proven::detail::once_rounded(tesk2mp::pi(), QuarnBound()) / proven::exact(2); }

// Results of real numbers beyond the domain: those of the principal values above their cuts, part by part.
std::optional<Number> beyond(std::string_view name, const BoundedReal& x) {
  const BoundedReal one = proven::exact(1);
  const BoundedReal zero = proven::exact(QuarnFloat());
  const bool is_negative = x.value < 0;
  const BoundedReal size = proven::fabs(x);
  if (is_negative && name == "sqrt") {
    return Number{zero, proven::sqrt(size)};
  }
  if (is_negative && (name == "log" || name == "ln")) {
    return Number{proven::log(size), half_pi() * proven::exact(2)};
  }
  if (is_negative && name == "log10") {
    return Number{proven::log10(size), half_pi() * proven::exact(2) / proven::log(proven::exact(10))};
  }
  if (name == "asin" || name == "acos") {
    // asin(x) = pi/2 + i acosh(x) for x > 1, -pi/2 + i acosh(-x) for x < -1; acos(x) = pi/2 - asin(x)
    const BoundedReal im = proven::acosh(size);
    if (name == "asin") {
      return Number{is_negative ? -half_pi() : half_pi(), im};
    }
    return Number{is_negative ? half_pi() * proven::exact(2) : zero, -im};
  }
  if (name == "acosh") {
    return size.value <= 1 ? Number{zero, proven::acos(x)} : Number{proven::acosh(size), half_pi() * proven::exact(2)};
  }
  if (name == "atanh" && size.value > 1) {
    const BoundedReal re = proven::log((size + one) / (size - one)) / proven::exact(2);
    return Number{is_negative ? -re : re, half_pi()};
  }
  return std::nullopt;
}

bool has_cut(std::string_view name) {
  constexpr std::array<std::string_view, 8> kNames = {"sqrt", "log", "ln", "log10", "asin", "acos", "acosh", "atanh"};
  return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

// Is the result infinite because it is beyond the range of numbers, and not because the argument is a pole?
bool is_overflow(const Number& z, const Complex& result) {
  const QuarnFloat& x = z.re.value;
  const QuarnFloat& y = z.im.value;
  if (!(isinf(result.re) || isinf(result.im)) || !isfinite(x) || !isfinite(y)) {
    return false;
  }
  const bool is_unit = (y == 0 && fabs(x) == 1) || (x == 0 && fabs(y) == 1);
  return !is_unit && !(x == 0 && y == 0);
}

}  // namespace

Number function_value(const quarn::NamedFunction1& f, const Number& z, Evaluation& evaluation) {
  const proven::NamedFunction* proof = proven::find_function(f.name);
  if (!z.is_real()) {
    if (f.complex == nullptr) {
      if (z.im.error.is_zero() || z.im.error < QuarnBound(z.im.value)) {
        throw Unfit("real numbers are needed here", 0);
      }
      // Perhaps real: that is not proven.
      evaluation.unproven = no_proof_found(f.name);
      return function_value(f, as_number(z.re), evaluation);
    }
    if (proof == nullptr || proof->complex == nullptr) {
      evaluation.unproven = no_proof_found(f.name);
      const Complex value = f.complex(Complex(z.re.value, z.im.value));
      return {proven::exact(value.re), proven::exact(value.im)};
    }
    const BoundedComplex result = proof->complex(as_complex(z));
    const bool is_value =
        !z.is_exact() || (isfinite(result.value.re) && isfinite(result.value.im)) || is_overflow(z, result.value);
    return is_value ? as_number(result) : Number{proven::exact(result.value.re), proven::exact(result.value.im)};
  }
  if (!z.is_exact()) {
    if (proof == nullptr) {
      evaluation.unproven = no_proof_found(f.name);
      return as_number(proven::exact(f.apply(z.re.value)));
    }
    const BoundedReal real = proof->real(z.re);
    Number result = as_number(real);
    if (!real.error.is_finite() && isnan(real.value)) {
      result = beyond(f.name, z.re).value_or(result);
    }
    if (has_cut(f.name) && !(result.re.error.is_finite() && result.im.error.is_finite())) {
      // Perhaps real, perhaps not.
      if (!evaluation.is_last) {
        throw Undecided();
      }
      result.re.error = result.im.error = QuarnBound::infinity();
    }
    return result;
  }
  const BoundedReal result =
      proof != nullptr ? proof->real(z.re) : proven::detail::once_rounded(f.apply(z.re.value), QuarnBound());
  if (isnan(result.value) && !isnan(z.re.value) && f.complex != nullptr) {
    if (const std::optional<Number> found = beyond(f.name, z.re)) {
      return *found;
    }
    if (proof != nullptr && proof->complex != nullptr) {
      return as_number(proof->complex(as_complex(z)));
    }
  }
  const bool is_gamma = std::string_view(f.name).find("gamma") != std::string_view::npos;
  if (is_overflow(z, Complex(result.value)) && !(is_gamma && z.re.value < 0)) {
    return as_number(BoundedReal{result.value, QuarnBound::infinity()});
  }
  // Other infinities and NaN of exact arguments are what they are.
  return as_number(isfinite(result.value) ? result : proven::exact(result.value));
}

namespace {

BoundedReal real_argument(const Number& z, int place) {
  return z.is_real() ? z.re : throw Unfit("real numbers are needed here", place);
}

// Zeros, infinities and NaN of exact arguments, unless they stand for what is beyond the range of numbers.
bool is_exact_result(std::string_view name, const QuarnFloat& x, const QuarnFloat& y, const QuarnFloat& result) {
  const bool are_finite = isfinite(x) && isfinite(y);
  const bool has_zero = x == 0 || y == 0;
  if (result == 0) {
    if (name == "atan2") {
      return x == 0 || !are_finite;
    }
    return name == "fdim" ? x <= y : name != "beta" && (name != "hypot" || (x == 0 && y == 0));
  }
  return isnan(result) || (isinf(result) && (!are_finite || has_zero));
}

}  // namespace

Number function_value(const quarn::NamedFunction2& f, const Number& z, const Number& w, Evaluation& evaluation) {
  const std::string_view name = f.name;
  if (name == "pow") {
    return power(z, w);
  }
  const BoundedReal x = real_argument(z, 0);
  const BoundedReal y = real_argument(w, 1);
  if (z.is_exact() && w.is_exact()) {
    if (name == "binomial") {
      const QuarnFloat value = exact_binomial(x.value, y.value);
      const bool whole = ::trunc(x.value) == x.value && ::trunc(y.value) == y.value && ilogb(value) < kMostExactDigits;
      return as_number(whole ? proven::exact(value) : proven::detail::once_rounded(value, QuarnBound()));
    }
    if (name == "nextafter" || name == "copysign") {
      const tesk2mp::Digits scope(name == "nextafter" ? evaluation.digits : QuarnDigits());
      return as_number(proven::exact(f.apply(x.value, y.value)));
    }
    const BoundedReal result = proven::detail::once_rounded(f.apply(x.value, y.value), QuarnBound());
    return as_number(is_exact_result(name, x.value, y.value, result.value) ? proven::exact(result.value) : result);
  }
  if (const proven::NamedFunction2* const bounded = proven::find_function_of_two(name)) {
    return as_number(bounded->real(x, y));
  }
  evaluation.unproven = no_proof_found(f.name);
  return as_number(proven::exact(f.apply(x.value, y.value)));
}

}  // namespace cli::repl
