// Making, measuring and ordering vectors and matrices.
#include <algorithm>
#include <array>
#include <functional>
#include <numeric>

#include "cli/repl/functions.h"
#include "quarn/exact.h"

namespace cli::repl {

namespace {

using Values = std::vector<Value>;

Values fill(State& /*state*/, const Arguments& arguments) {
  Array result =
      make_array(std::size_t(arguments.whole(0, 0, kLargestSize)), std::size_t(arguments.whole(1, 0, kLargestSize)));
  if (arguments.count() == 3) {
    std::fill_n(result.data(), size(result), arguments.number(2));
  }
  return {result};
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

Values linspace(State& /*state*/, const Arguments& arguments) {
  const Integer n = arguments.whole(2, 2, kLargestSize);
  const Complex first = arguments.number(0);
  const Complex last = arguments.number(1);
  const Complex distance = last - first;
  Array result = make_array(1, std::size_t(n));
  for (Integer k = 0; k < n; ++k) {
    const QuarnFloat part = QuarnFloat(k) / (n - 1);
    result(0, std::size_t(k)) = k + 1 == n ? last : first + Complex(distance.re * part, distance.im * part);
  }
  return {result};
}

// The diagonal of a matrix, or the matrix of a diagonal.
Values diag(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  const std::size_t n = is_vector(a) ? size(a) : std::min(a.rows(), a.columns());
  Array result = is_vector(a) ? make_array(n, n) : make_array(n, 1);
  for (std::size_t i = 0; i < n; ++i) {
    (is_vector(a) ? result(i, i) : result(i, 0)) = is_vector(a) ? a.data()[i] : a(i, i);
  }
  return {result};
}

Values transpose(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  Array result = make_array(a.columns(), a.rows());
  for (std::size_t i = 0; i < a.rows(); ++i) {
    for (std::size_t j = 0; j < a.columns(); ++j) {
      result(j, i) = a(i, j);
    }
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

// With one rounding, or of long whole numbers exactly.
Complex total(const Array& a) {
  static_assert(sizeof(Complex) == 2 * sizeof(QuarnFloat));
  if (size(a) == 0) {
    return 0;
  }
  const QuarnFloat one(1);
  Complex sum(QuarnDot(size(a), &a.data()->re, 2, &one, 0), QuarnDot(size(a), &a.data()->im, 2, &one, 0));
  if (!is_real(sum) || fabs(sum.re) < QuarnFloat(1, QuarnDigits())) {
    return sum;
  }
  return std::accumulate(a.data(), a.data() + size(a), Complex(0), added);
}

Values sum(State& /*state*/, const Arguments& arguments) { return {number(total(arguments.array(0)))}; }

Values mean(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.vector(0);
  return {operate("/", number(total(a)), number(Complex(QuarnFloat(size(a)))))};
}

Values prod(State& /*state*/, const Arguments& arguments) {
  Array result = number(1);
  for (const Complex& value : elements(arguments.array(0))) {
    result = operate("*", result, number(value));
  }
  return {result};
}

Values dot(State& /*state*/, const Arguments& arguments) {
  const Array& x = arguments.vector(0);
  const Array& y = arguments.vector(1);
  if (size(x) != size(y)) {
    throw Unfit(std::to_string(size(x)) + " numbers are needed here, not " + std::to_string(size(y)), 1);
  }
  const Array left = conjugate_transpose(column(elements(x)));
  return {operate("*", left, column(elements(y)))};
}

// The first of the elements in that order, or of two arrays element by element.
template <class Before>
Values first_of(const Arguments& arguments, const Before& before) {
  if (arguments.count() == 1) {
    const std::vector<QuarnFloat> values = arguments.reals(0);
    return {number(*std::min_element(values.begin(), values.end(), before))};
  }
  const RealArray a = arguments.real_matrix(0);
  const RealArray b = arguments.real_matrix(1);
  const bool same = a.rows() == b.rows() && a.columns() == b.columns();
  const std::size_t step_a = a.rows() * a.columns() == 1 ? 0 : 1;
  const std::size_t step_b = b.rows() * b.columns() == 1 ? 0 : 1;
  if (!same && step_a == 1 && step_b == 1) {
    throw Unfit("as many numbers as in the first argument are needed here, or one", 1);
  }
  const RealArray& larger = step_a == 1 ? a : b;
  Array result = make_array(larger.rows(), larger.columns());
  for (std::size_t k = 0; k < size(result); ++k) {
    const QuarnFloat& x = a.data()[k * step_a];
    const QuarnFloat& y = b.data()[k * step_b];
    result.data()[k] = before(y, x) ? y : x;
  }
  return {result};
}

Values smallest(State& /*state*/, const Arguments& arguments) { return first_of(arguments, std::less<QuarnFloat>()); }
Values largest(State& /*state*/, const Arguments& arguments) { return first_of(arguments, std::greater<QuarnFloat>()); }

tesk2mp::Order order_of(const Arguments& arguments) {
  const bool descending = arguments.count() == 2 && arguments.choice(1, {"ascending", "descending"}) == 1;
  return descending ? tesk2mp::Order::descending : tesk2mp::Order::ascending;
}

Array like(const Array& a, const std::vector<QuarnFloat>& values) {
  return reshaped({values.begin(), values.end()}, a.rows(), a.columns());
}

Values sort(State& /*state*/, const Arguments& arguments) {
  std::vector<QuarnFloat> values = arguments.reals(0);
  tesk2mp::sort(values, order_of(arguments));
  return {like(arguments.array(0), values)};
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
    {"ones", "rows, columns", "A", "a matrix of ones", 2, 2, ones},
    {"identity", "n", "A", "the identity matrix", 1, 1, identity},
    {"linspace", "a, b, n", "x", "n evenly spaced numbers from a to b", 3, 3, linspace},
    {"diag", "x", "A", "the matrix with that diagonal, or the diagonal of a matrix", 1, 1, diag},
    {"transpose", "A", "B", "rows and columns exchanged, nothing conjugated (A' conjugates)", 1, 1, transpose},
    {"size", "A", "x", "numbers of rows and columns", 1, 1, size_of},
    {"length", "A", "n", "number of elements", 1, 1, length},
    {"sum", "A", "y", "sum of all elements", 1, 1, sum},
    {"prod", "A", "y", "product of all elements", 1, 1, prod},
    {"mean", "x", "y", "mean of a vector", 1, 1, mean},
    {"dot", "x, y", "z", "scalar product, x conjugated", 2, 2, dot},
    {"min", "x [, y]", "z", "smallest element of a real vector, or of two arrays place by place", 1, 2, smallest},
    {"max", "x [, y]", "z", "largest element of a real vector, or of two arrays place by place", 1, 2, largest},
    {"sort", "x [, \"descending\"]", "y", "a real vector in order", 1, 2, sort},
    {"rank", "x [, \"descending\"]", "p", "the rank of each element of a real vector, from 1", 1, 2, rank},
});

}  // namespace

std::span<const Function> array_functions() { return kArrayFunctions; }

}  // namespace cli::repl
