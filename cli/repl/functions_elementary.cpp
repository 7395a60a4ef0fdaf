// Functions that work element by element.
#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "cli/repl/functions.h"
#include "cli/system/progress.h"
#include "quarn/function_table.h"

namespace cli::repl {

namespace {

using Values = std::vector<Value>;

template <class Map>
Values mapped(const Arguments& arguments, const Map& map) {
  const Array& a = arguments.array(0);
  Array result = make_array(a.rows(), a.columns());
  Progress progress("evaluating", double(size(a)));
  for (std::size_t k = 0; k < size(a); ++k) {
    result.data()[k] = map(a.data()[k]);
    progress.advance();
  }
  return {result};
}

template <Complex (*kMap)(const Complex&)>
Values complex_map(State& /*state*/, const Arguments& arguments) {
  return mapped(arguments, kMap);
}

// The value of a function of the table, or what kept it from having one.
Complex taken(std::optional<Complex> value) {
  return value ? *std::move(value) : throw Unfit("real numbers are needed here", 0);
}

/// Function k of one number in the table of the library.
template <std::size_t kPlace>
Values table_map(State& /*state*/, const Arguments& arguments) {
  const quarn::NamedFunction1& f = quarn::functions_of_one()[kPlace];
  return mapped(arguments, [&](const Complex& z) { return taken(quarn::evaluate(f, z)); });
}

/// Function k of two numbers, element by element; one number meets every element of the other argument.
template <std::size_t kPlace>
Values table_pairs(State& /*state*/, const Arguments& arguments) {
  const quarn::NamedFunction2& f = quarn::functions_of_two()[kPlace];
  const Array& a = arguments.array(0);
  const Array& b = arguments.array(1);
  const bool one_a = is_number(a);
  const bool one_b = is_number(b);
  if (!one_a && !one_b && (a.rows() != b.rows() || a.columns() != b.columns())) {
    throw Unfit("as many numbers as in the first argument are needed here, or one", 1);
  }
  const bool counts = std::string_view(f.name) == "binomial";  // whole numbers, exact however long
  const Array& shape = one_a ? b : a;
  Array result = make_array(shape.rows(), shape.columns());
  Progress progress("evaluating", double(size(result)));
  for (std::size_t k = 0; k < size(result); ++k) {
    progress.advance();
    const Complex& w = b.data()[one_b ? 0 : k];
    if (f.complex == nullptr && !is_real(w)) {
      throw Unfit("real numbers are needed here", 1);
    }
    const Complex& z = a.data()[one_a ? 0 : k];
    result.data()[k] = counts && is_real(z) ? exact_binomial(z.re, w.re) : taken(quarn::evaluate(f, z, w));
  }
  return {result};
}

template <QuarnFloat (*kMap)(const Complex&)>
Values real_valued(State& /*state*/, const Arguments& arguments) {
  return mapped(arguments, [](const Complex& z) { return Complex(kMap(z)); });
}

QuarnFloat modulus(const Complex& z) { return quarn::abs(z); }
QuarnFloat argument(const Complex& z) { return quarn::arg(z); }
QuarnFloat real_part(const Complex& z) { return z.re; }
QuarnFloat imaginary_part(const Complex& z) { return z.im; }
Complex conjugate(const Complex& z) { return is_real(z) ? z : conj(z); }

Values factorials(State& /*state*/, const Arguments& arguments) { return {factorial(arguments.array(0))}; }

tesk2mp::Rounding mode_of(const Arguments& arguments, std::size_t k) {
  static const std::vector<std::string> kNames = {"half_even", "half_up", "half_down", "up",
                                                  "down",      "ceiling", "floor",     "05up"};
  if (arguments.count() <= k) {
    return tesk2mp::Rounding::half_even;
  }
  return *quarn::rounding_named(kNames[arguments.choice(k, kNames)]);
}

constexpr Integer kMostPlaces = 1'000'000;

Values quantized(State& /*state*/, const Arguments& arguments) {
  const Integer places = arguments.whole(1, -kMostPlaces, kMostPlaces);
  const tesk2mp::Rounding mode = mode_of(arguments, 2);
  return mapped(arguments, [&](const Complex& z) { return tesk2mp::quantize(z, int(places), mode); });
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
    {"abs", "x", "y", "magnitude", 1, 1, real_valued<modulus>},
    {"arg", "x", "y", "angle of a complex number, -pi to pi", 1, 1, real_valued<argument>},
    {"re", "x", "y", "real part", 1, 1, real_valued<real_part>},
    {"im", "x", "y", "imaginary part", 1, 1, real_valued<imaginary_part>},
    {"conj", "x", "y", "conjugate", 1, 1, complex_map<conjugate>},
    {"factorial", "n", "y", "n!, exact up to 100000 digits", 1, 1, factorials},
    {"quantize", "x, places [, mode]", "y", "rounded to places, \"half_even\" or as another mode says", 2, 3,
     quantized},
    {"round_parts", "v, places [, mode, rule]", "w",
     "rounded to places, with the rounded total: by \"largest_remainder\" or \"cumulative\"", 2, 4, rounded_parts},
});

using Apply = Values (*)(State& state, const Arguments& arguments);

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
