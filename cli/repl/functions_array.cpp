// Making, measuring and ordering vectors and matrices.
#include <algorithm>
#include <array>
#include <numeric>

#include "cli/repl/functions.h"

namespace cli::repl {

namespace {

/// Places moved, nothing else: places[k] is where element k comes from.
Known moved(const Known& a, std::size_t rows, std::size_t columns, const std::vector<std::size_t>& places) {
  std::vector<Number> elements;
  elements.reserve(places.size());
  for (const std::size_t place : places) {
    elements.push_back(element(a, place));
  }
  return known(rows, columns, elements);
}

Knowns transpose(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < a.rows(); ++i) {
    for (std::size_t j = 0; j < a.columns(); ++j) {
      places.push_back(i + j * a.rows());
    }
  }
  return {moved(arguments.known(0), a.columns(), a.rows(), places)};
}

Knowns diag(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  if (is_vector(a)) {
    std::vector<Number> elements(size(a) * size(a));
    for (std::size_t k = 0; k < size(a); ++k) {
      elements[k + k * size(a)] = element(arguments.known(0), k);
    }
    return {known(size(a), size(a), elements)};
  }
  std::vector<std::size_t> places;
  for (std::size_t k = 0; k < std::min(a.rows(), a.columns()); ++k) {
    places.push_back(k + k * a.rows());
  }
  return {moved(arguments.known(0), places.size(), 1, places)};
}

Integer exact_size(const Arguments& arguments, std::size_t k, Integer least) {
  const Integer size = arguments.whole(k, least, kLargestSize);
  return arguments.known(k).is_exact() ? size : throw Unfit("this size is not known exactly", int(k));
}

Knowns fill(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const Array shape = make_array(std::size_t(exact_size(arguments, 0, 0)), std::size_t(exact_size(arguments, 1, 0)));
  if (arguments.count() < 3) {
    return {shape};
  }
  (void)arguments.number(2);
  return {moved(arguments.known(2), shape.rows(), shape.columns(), std::vector<std::size_t>(size(shape), 0))};
}

Knowns sum(Evaluation& /*evaluation*/, const Arguments& arguments) {
  return {known(total(numbers(arguments.known(0))))};
}
std::vector<Number> vector_numbers(const Arguments& arguments, std::size_t k) {
  (void)arguments.vector(k);
  return numbers(arguments.known(k));
}

Knowns mean(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const std::vector<Number> all = vector_numbers(arguments, 0);
  return {known(divide(total(all), {proven::exact(QuarnFloat(all.size()))}))};
}
Knowns prod(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const std::vector<Number> all = numbers(arguments.known(0));
  return {known(std::accumulate(all.begin(), all.end(), Number{proven::exact(1)}, multiply))};
}
Knowns dot(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const std::vector<Number> x = vector_numbers(arguments, 0);
  const std::vector<Number> y = vector_numbers(arguments, 1);
  if (x.size() != y.size()) {
    throw Unfit(std::to_string(x.size()) + " numbers are needed here, not " + std::to_string(y.size()), 1);
  }
  Number result;
  for (std::size_t k = 0; k < x.size(); ++k) {
    result = add(result, multiply(conjugate(x[k]), y[k]));
  }
  return {known(result)};
}

const Known& real_numbers(const Arguments& arguments, std::size_t k) {
  const Known& a = arguments.known(k);
  return is_real(a) ? a : throw Unfit("real numbers are needed here", int(k));
}

template <BoundedReal (*kChoose)(const BoundedReal&, const BoundedReal&)>
Number chosen(const Number& a, const Number& b) {
  return as_number(kChoose(a.re, b.re));
}
template <BoundedReal (*kChoose)(const BoundedReal&, const BoundedReal&)>
Knowns first_of(Evaluation& /*evaluation*/, const Arguments& arguments) {
  if (arguments.count() == 1) {
    (void)arguments.vector(0);
    const std::vector<Number> all = numbers(real_numbers(arguments, 0));
    return {known(std::accumulate(all.begin() + 1, all.end(), all.front(), chosen<kChoose>))};
  }
  (void)real_numbers(arguments, 0);
  (void)real_numbers(arguments, 1);
  return {paired(arguments, chosen<kChoose>)};
}

Knowns linspace(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const Integer n = exact_size(arguments, 2, 2);
  (void)arguments.number(0);
  (void)arguments.number(1);
  const Number first = element(arguments.known(0), 0);
  const Number last = element(arguments.known(1), 0);
  const Number distance = subtract(last, first);
  std::vector<Number> result;
  for (Integer k = 0; k + 1 < n; ++k) {
    const Number part{proven::exact(QuarnFloat(k)) / proven::exact(QuarnFloat(n - 1))};
    result.push_back(add(first, multiply(distance, part)));
  }
  result.push_back(last);
  return {known(1, std::size_t(n), result)};
}

Values ones(State& /*state*/, const Arguments& arguments) {
  Array result =
      make_array(std::size_t(arguments.whole(0, 0, kLargestSize)), std::size_t(arguments.whole(1, 0, kLargestSize)));
  std::fill_n(result.data(), size(result), Complex(1));
  return {result};
}

Values identity(State& /*state*/, const Arguments& arguments) {
  const auto n = std::size_t(arguments.whole(0, 0, kLargestSize));
  Array result = make_array(n, n);
  for (std::size_t i = 0; i < n; ++i) {
    result(i, i) = 1;
  }
  return {result};
}

Values size_of(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  return {reshaped({Complex(QuarnFloat(a.rows())), Complex(QuarnFloat(a.columns()))}, 1, 2)};
}

Values length(State& /*state*/, const Arguments& arguments) {
  return {number(Complex(QuarnFloat(size(arguments.array(0)))))};
}

tesk2mp::Order order_of(const Arguments& arguments) {
  const bool descending = arguments.count() == 2 && arguments.choice(1, {"ascending", "descending"}) == 1;
  return descending ? tesk2mp::Order::descending : tesk2mp::Order::ascending;
}

Array like(const Array& a, const std::vector<QuarnFloat>& values) {
  return reshaped({values.begin(), values.end()}, a.rows(), a.columns());
}

// The k-th number in order moves by no more than the largest error.
Knowns sort(Evaluation& /*evaluation*/, const Arguments& arguments) {
  std::vector<QuarnFloat> values = arguments.reals(0);
  tesk2mp::sort(values, order_of(arguments));
  PartErrors largest;
  for (const PartErrors& each : arguments.known(0).errors) {
    largest.re = std::max(largest.re, each.re);
  }
  return {Known(like(arguments.array(0), values), std::vector<PartErrors>(values.size(), largest))};
}

Values rank(State& /*state*/, const Arguments& arguments) {
  const std::vector<Integer> ranks = tesk2mp::rank(arguments.reals(0), order_of(arguments));
  std::vector<QuarnFloat> values(ranks.begin(), ranks.end());
  for (QuarnFloat& value : values) {
    value += 1;
  }
  return {like(arguments.array(0), values)};
}

constexpr auto kArrayFunctions = std::to_array<Function>({
    {"fill", "rows, columns [, value]", "A", "a matrix of one value, 0 without it", 2, 3, fill},
    {"ones", "rows, columns", "A", "a matrix of ones", 2, 2, exact_or_estimated<ones>},
    {"identity", "n", "A", "the identity matrix", 1, 1, exact_or_estimated<identity>},
    {"linspace", "a, b, n", "x", "n evenly spaced numbers from a to b", 3, 3, linspace},
    {"diag", "x", "A", "the matrix with that diagonal, or the diagonal of a matrix", 1, 1, diag},
    {"transpose", "A", "B", "rows and columns exchanged, nothing conjugated (A' conjugates)", 1, 1, transpose},
    {"size", "A", "x", "numbers of rows and columns", 1, 1, plain<size_of>},
    {"length", "A", "n", "number of elements", 1, 1, plain<length>},
    {"sum", "A", "y", "sum of all elements", 1, 1, sum},
    {"prod", "A", "y", "product of all elements", 1, 1, prod},
    {"mean", "x", "y", "mean of a vector", 1, 1, mean},
    {"dot", "x, y", "z", "scalar product, x conjugated", 2, 2, dot},
    {"min", "x [, y]", "z", "smallest element of a real vector, or of two arrays place by place", 1, 2,
     first_of<proven::fmin>},
    {"max", "x [, y]", "z", "largest element of a real vector, or of two arrays place by place", 1, 2,
     first_of<proven::fmax>},
    {"sort", "x [, \"descending\"]", "y", "a real vector in order", 1, 2, sort},
    {"rank", "x [, \"descending\"]", "p", "the rank of each element of a real vector, from 1", 1, 2,
     exact_or_estimated<rank>},
});

}  // namespace

std::span<const Function> array_functions() { return kArrayFunctions; }

}  // namespace cli::repl
