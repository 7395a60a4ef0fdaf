// Test matrices: a function for each row of the library's table.
#include <algorithm>
#include <array>
#include <utility>

#include "cli/repl/functions.h"

namespace cli::repl {

namespace {

constexpr Integer kLargestOrder = 10'000;
constexpr std::size_t kMostRows = 64;

const std::vector<tesk2mp::gallery::Entry>& entries() {
  static const std::vector<tesk2mp::gallery::Entry> kEntries = tesk2mp::gallery::entries();
  return kEntries;
}

template <class T>
Array made(State& state, const std::string& name, std::size_t order, const std::vector<T>& parameters) {
  tesk2mp::Matrix<T> a = tesk2mp::gallery::matrix<T>(name, order, parameters, state.random);
  if constexpr (std::is_same_v<T, Complex>) {
    return a;
  } else {
    return complex_array(a);
  }
}

// name(order, parameters), or name(vector [, vector]).
Array matrix(State& state, const std::string& name, const Arguments& arguments) {
  if (size(arguments.filled(0)) > 1) {
    const std::vector<Complex> second = arguments.count() > 1 ? elements(arguments.vector(1)) : std::vector<Complex>();
    return tesk2mp::gallery::from_vectors(name, elements(arguments.vector(0)), second);
  }
  const auto order = std::size_t(arguments.whole(0, 0, kLargestOrder));
  std::vector<Complex> parameters;
  for (std::size_t k = 1; k < arguments.count(); ++k) {
    const std::vector<Complex> more = elements(arguments.array(k));
    parameters.insert(parameters.end(), more.begin(), more.end());
  }
  if (std::any_of(parameters.begin(), parameters.end(), [](const Complex& z) { return z.im != 0; })) {
    return made(state, name, order, parameters);
  }
  std::vector<QuarnFloat> real;
  std::transform(parameters.begin(), parameters.end(), std::back_inserter(real), [](const Complex& z) { return z.re; });
  return made(state, name, order, real);
}

template <std::size_t kRow>
Values row(State& state, const Arguments& arguments) {
  return {matrix(state, entries()[kRow].name, arguments)};
}

// Elements are rounded from more digits: a unit of the last place. Zeros stand where there is nothing, and without
// parameters whole numbers are no roundings of other ones, which few digits might bring there: a cosine near 1.
Known with_bounds(const Array& values, bool has_parameters) {
  constexpr int kFewDigits = 20;
  const auto error = [&](const QuarnFloat& x) {
    const bool whole = !has_parameters && QuarnDigits() >= kFewDigits && ilogb(x) < QuarnDigits() && trunc(x) == x;
    return whole ? QuarnBound() : QuarnBound::count(2) * QuarnBound(x).half_unit(QuarnDigits());
  };
  std::vector<PartErrors> errors;
  for (const Complex& z : elements(values)) {
    errors.push_back({error(z.re), error(z.im)});
  }
  return {values, std::move(errors)};
}

template <std::size_t kRow>
Knowns bounded_row(Evaluation& evaluation, const Arguments& arguments) {
  if (!arguments.are_exact()) {
    return estimated<row<kRow>>(evaluation, arguments);
  }
  const std::string& name = entries()[kRow].name;
  const Array values = matrix(evaluation.state, name, arguments);
  const bool is_of_vectors = size(arguments.array(0)) > 1;
  if (is_of_vectors && (name == "toeplitz" || name == "hankel" || name == "circulant")) {
    return {Known(values)};  // moved elements
  }
  return {with_bounds(values, arguments.count() > 1 || is_of_vectors)};
}

template <std::size_t... kRows>
std::vector<Function> table(std::index_sequence<kRows...> /*rows*/) {
  constexpr std::array kApply = {bounded_row<kRows>...};
  static std::vector<std::string> arguments;
  for (const auto& entry : entries()) {
    const bool optional = entry.parameters.starts_with("[");
    arguments.push_back(entry.parameters.empty() ? "n"
                        : optional               ? "n [, " + entry.parameters.substr(1)
                                                 : "n, " + entry.parameters);
  }
  std::vector<Function> functions;
  for (std::size_t k = 0; k < std::min(entries().size(), kApply.size()); ++k) {
    const std::size_t most = entries()[k].parameters.empty() ? 1 : 3;
    functions.push_back(
        {entries()[k].name.c_str(), arguments[k].c_str(), "A", entries()[k].purpose.c_str(), 1, most, kApply[k]});
  }
  return functions;
}

}  // namespace

std::span<const Function> gallery_functions() {
  static const std::vector<Function> kFunctions = table(std::make_index_sequence<kMostRows>());
  return kFunctions;
}

}  // namespace cli::repl
