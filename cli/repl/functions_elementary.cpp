// Functions that work element by element.
#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "cli/repl/proofs_elementary.h"
#include "quarn/function_table.h"

namespace cli::repl {

namespace {

/// The function at a place of the library's table of one number, element by element.
template <std::size_t kPlace>
Knowns table_map(Evaluation& evaluation, const Arguments& arguments) {
  const quarn::NamedFunction1& f = quarn::functions_of_one()[kPlace];
  return {mapped(arguments.known(0), [&](const Number& z) { return function_value(f, z, evaluation); })};
}

/// The same of two numbers.
template <std::size_t kPlace>
Knowns table_pairs(Evaluation& evaluation, const Arguments& arguments) {
  const quarn::NamedFunction2& f = quarn::functions_of_two()[kPlace];
  return {paired(arguments, [&](const Number& z, const Number& w) { return function_value(f, z, w, evaluation); })};
}

template <Number (*kMap)(const Number&)>
Knowns map(Evaluation& /*evaluation*/, const Arguments& arguments) {
  return {mapped(arguments.known(0), kMap)};
}

Number magnitude(const Number& z) { return as_number(modulus(z)); }
Number angle(const Number& z) { return as_number(proven::atan2(z.im, z.re)); }
Number real_part(const Number& z) { return as_number(z.re); }
Number imaginary_part(const Number& z) { return as_number(z.im); }

Knowns factorials(Evaluation& /*evaluation*/, const Arguments& arguments) { return {factorial(arguments.known(0))}; }

tesk2mp::Rounding mode_of(const Arguments& arguments, std::size_t k) {
  static const std::vector<std::string> kNames = {"half_even", "half_up", "half_down", "up",
                                                  "down",      "ceiling", "floor",     "05up"};
  if (arguments.count() <= k) {
    return tesk2mp::Rounding::half_even;
  }
  return *quarn::rounding_named(kNames[arguments.choice(k, kNames)]);
}

constexpr Integer kMostPlaces = 1'000'000;

// What is rounded to places is exact where both ends of the interval give the same.
Number quantized(const Number& z, int places, tesk2mp::Rounding mode) {
  const auto part = [&](const BoundedReal& x) {
    QuarnFloat low = x.value;
    QuarnFloat high = x.value;
    if (!x.error.is_zero()) {
      const tesk2mp::Digits scope(QuarnDigits() + 20);
      low = quarn::subtract(x.value, x.error.value(), quarn::Rounding::floor);
      high = quarn::add(x.value, x.error.value(), quarn::Rounding::ceiling);
    }
    low = tesk2mp::quantize(low, places, mode);
    high = tesk2mp::quantize(high, places, mode);
    return BoundedReal{low, low == high ? QuarnBound() : QuarnBound::infinity()};
  };
  return {part(z.re), part(z.im)};
}

Values estimated_quantize(State& /*state*/, const Arguments& arguments) {
  const Integer places = arguments.whole(1, -kMostPlaces, kMostPlaces);
  return {tesk2mp::quantize(arguments.array(0), int(places), mode_of(arguments, 2))};
}

Knowns quantize(Evaluation& evaluation, const Arguments& arguments) {
  (void)arguments.array(0);
  if (!arguments.known(1).is_exact()) {
    return estimated<estimated_quantize>(evaluation, arguments);
  }
  const Integer places = arguments.whole(1, -kMostPlaces, kMostPlaces);
  const tesk2mp::Rounding mode = mode_of(arguments, 2);
  return {mapped(arguments.known(0), [&](const Number& z) { return quantized(z, int(places), mode); })};
}

Values rounded_parts(State& /*state*/, const Arguments& arguments) {
  const Integer places = arguments.whole(1, -kMostPlaces, kMostPlaces);
  const tesk2mp::Rounding mode = mode_of(arguments, 2);
  const bool cumulative = arguments.count() > 3 && arguments.choice(3, {"largest_remainder", "cumulative"}) == 1;
  const Array& given = arguments.vector(0);
  const std::vector<QuarnFloat> parts = tesk2mp::round_parts(
      arguments.reals(0), int(places), mode,
      cumulative ? tesk2mp::Reconciliation::cumulative : tesk2mp::Reconciliation::largest_remainder);
  return {reshaped(std::vector<Complex>(parts.begin(), parts.end()), given.rows(), given.columns())};
}

// What the table of the library does not have, or has for real numbers alone.
constexpr auto kOwnFunctions = std::to_array<Function>({
    {"abs", "x", "y", "magnitude", 1, 1, map<magnitude>},
    {"arg", "x", "y", "angle of a complex number, -pi to pi", 1, 1, map<angle>},
    {"re", "x", "y", "real part", 1, 1, map<real_part>},
    {"im", "x", "y", "imaginary part", 1, 1, map<imaginary_part>},
    {"conj", "x", "y", "conjugate", 1, 1, map<conjugate>},
    {"factorial", "n", "y", "n!, exact up to 100000 digits", 1, 1, factorials},
    {"quantize", "x, places [, mode]", "y", "rounded to places, \"half_even\" or as another mode says", 2, 3, quantize},
    {"round_parts", "v, places [, mode, rule]", "w",
     "rounded to places, with the rounded total: by \"largest_remainder\" or \"cumulative\"", 2, 4,
     exact_or_estimated<rounded_parts>},
});

using Apply = Knowns (*)(Evaluation& evaluation, const Arguments& arguments);

template <std::size_t... kPlaces>
constexpr std::array<Apply, sizeof...(kPlaces)> one_by_place(std::index_sequence<kPlaces...> /*places*/) {
  return {table_map<kPlaces>...};
}
template <std::size_t... kPlaces>
constexpr std::array<Apply, sizeof...(kPlaces)> two_by_place(std::index_sequence<kPlaces...> /*places*/) {
  return {table_pairs<kPlaces>...};
}

std::vector<Function> all_functions() {
  constexpr auto kOne = one_by_place(std::make_index_sequence<decltype(quarn::functions_of_one())::extent>());
  constexpr auto kTwo = two_by_place(std::make_index_sequence<decltype(quarn::functions_of_two())::extent>());
  std::vector<Function> functions(kOwnFunctions.begin(), kOwnFunctions.end());
  const auto is_own = [](std::string_view name) {
    return std::any_of(kOwnFunctions.begin(), kOwnFunctions.end(), [&](const Function& f) { return name == f.name; });
  };
  const auto one = quarn::functions_of_one();
  for (std::size_t k = 0; k < one.size(); ++k) {
    if (!is_own(one[k].name)) {
      functions.push_back({one[k].name, "x", "y", one[k].summary, 1, 1, kOne[k]});
    }
  }
  const auto two = quarn::functions_of_two();
  for (std::size_t k = 0; k < two.size(); ++k) {
    functions.push_back({two[k].name, two[k].arguments, "z", two[k].summary, 2, 2, kTwo[k]});
    if (std::string_view(two[k].name) == "fmod") {
      functions.push_back({"mod", "x, y", "r", "x - y trunc(x / y), with the sign of x", 2, 2, kTwo[k]});
    }
  }
  return functions;
}

}  // namespace

std::span<const Function> elementary_functions() {
  static const std::vector<Function> kFunctions = all_functions();
  return kFunctions;
}

}  // namespace cli::repl
