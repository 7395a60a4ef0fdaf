// Functions of vectors and matrices with bounds.
#include <algorithm>
#include <numeric>
#include <string_view>

#include "cli/repl/proofs.h"
#include "cli/system/progress.h"
#include "tesk2mp/proven_spectra.hpp"

namespace cli::repl {

namespace {

const Known& square(const Knowns& arguments) {
  const Array& a = arguments[0].array(0);
  if (a.rows() != a.columns()) {
    throw Unfit("a square matrix is needed here, not " + shape(a), 0);
  }
  return arguments[0];
}

const Known& vector(const Knowns& arguments, std::size_t k) {
  if (!is_vector(arguments[k].array(int(k)))) {
    throw Unfit("a vector is needed here, not " + shape(arguments[k].array()), int(k));
  }
  return arguments[k];
}

std::vector<Number> numbers(const Known& a) {
  std::vector<Number> result;
  for (std::size_t k = 0; k < size(a.array()); ++k) {
    result.push_back(element(a, k));
  }
  return result;
}

Known real_only(const Known& a, int argument) {
  if (!is_real(a)) {
    throw Unfit("real numbers are needed here", argument);
  }
  return a;
}

/// Places moved, nothing else: places[k] is where element k comes from.
Known moved(const Known& a, std::size_t rows, std::size_t columns, const std::vector<std::size_t>& places) {
  std::vector<Number> elements;
  elements.reserve(places.size());
  for (const std::size_t place : places) {
    elements.push_back(element(a, place));
  }
  return known(rows, columns, elements);
}

Knowns transpose(const Knowns& arguments) {
  const Array& a = arguments[0].array(0);
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < a.rows(); ++i) {
    for (std::size_t j = 0; j < a.columns(); ++j) {
      places.push_back(i + j * a.rows());
    }
  }
  return {moved(arguments[0], a.columns(), a.rows(), places)};
}

Knowns diag(const Knowns& arguments) {
  const Array& a = arguments[0].array(0);
  if (is_vector(a)) {
    std::vector<Number> elements(size(a) * size(a));
    for (std::size_t k = 0; k < size(a); ++k) {
      elements[k + k * size(a)] = element(arguments[0], k);
    }
    return {known(size(a), size(a), elements)};
  }
  std::vector<std::size_t> places;
  for (std::size_t k = 0; k < std::min(a.rows(), a.columns()); ++k) {
    places.push_back(k + k * a.rows());
  }
  return {moved(arguments[0], places.size(), 1, places)};
}

Integer exact_size(const Knowns& arguments, std::size_t k, Integer least) {
  const Integer size = plain(arguments).whole(k, least, kLargestSize);
  return arguments[k].is_exact() ? size : throw Unfit("this size is not known exactly", int(k));
}

Knowns fill(const Knowns& arguments) {
  const Arguments sizes = plain(arguments);
  const Array shape = make_array(std::size_t(exact_size(arguments, 0, 0)), std::size_t(exact_size(arguments, 1, 0)));
  if (arguments.size() < 3) {
    return {shape};
  }
  (void)sizes.number(2);
  return {moved(arguments[2], shape.rows(), shape.columns(), std::vector<std::size_t>(size(shape), 0))};
}

Number total(const std::vector<Number>& all) { return std::accumulate(all.begin(), all.end(), Number(), add); }

Knowns sum(const Knowns& arguments) { return {known(total(numbers(arguments[0])))}; }
Knowns mean(const Knowns& arguments) {
  const std::vector<Number> all = numbers(vector(arguments, 0));
  return {known(divide(total(all), {proven::exact(QuarnFloat(all.size()))}))};
}
Knowns prod(const Knowns& arguments) {
  const std::vector<Number> all = numbers(arguments[0]);
  return {known(std::accumulate(all.begin(), all.end(), Number{proven::exact(1)}, multiply))};
}
Knowns trace(const Knowns& arguments) { return {known(total(numbers(diag({square(arguments)})[0])))}; }
Knowns dot(const Knowns& arguments) {
  const std::vector<Number> x = numbers(vector(arguments, 0));
  const std::vector<Number> y = numbers(vector(arguments, 1));
  if (x.size() != y.size()) {
    throw Unfit(std::to_string(x.size()) + " numbers are needed here, not " + std::to_string(y.size()), 1);
  }
  Number result;
  for (std::size_t k = 0; k < x.size(); ++k) {
    result = add(result, multiply({x[k].re, x[k].is_real() ? x[k].im : -x[k].im}, y[k]));
  }
  return {known(result)};
}

template <BoundedReal (*kChoose)(const BoundedReal&, const BoundedReal&)>
Number chosen(const Number& a, const Number& b) {
  return as_number(kChoose(a.re, b.re));
}
template <BoundedReal (*kChoose)(const BoundedReal&, const BoundedReal&)>
Knowns first_of(const Knowns& arguments) {
  if (arguments.size() == 1) {
    const std::vector<Number> all = numbers(real_only(vector(arguments, 0), 0));
    return {known(std::accumulate(all.begin() + 1, all.end(), all.front(), chosen<kChoose>))};
  }
  const Known a = real_only(arguments[0], 0);
  const Known b = real_only(arguments[1], 1);
  const bool same = a.array().rows() == b.array().rows() && a.array().columns() == b.array().columns();
  if (!same && !is_number(a.array()) && !is_number(b.array())) {
    throw Unfit("as many numbers as in the first argument are needed here, or one", 1);
  }
  return {elementwise("compare", chosen<kChoose>, a, b)};
}

Knowns linspace(const Knowns& arguments) {
  const Arguments values = plain(arguments);
  const Integer n = exact_size(arguments, 2, 2);
  (void)values.number(0);
  (void)values.number(1);
  const Number first = element(arguments[0], 0);
  const Number last = element(arguments[1], 0);
  const Number distance = subtract(last, first);
  std::vector<Number> result;
  for (Integer k = 0; k + 1 < n; ++k) {
    const Number part{proven::exact(QuarnFloat(k)) / proven::exact(QuarnFloat(n - 1))};
    result.push_back(add(first, multiply(distance, part)));
  }
  result.push_back(last);
  return {known(1, std::size_t(n), result)};
}

// Linear algebra ---------------------------------------------------------------------------------------------------

Progress factorising(const Known& a, double factorisations) {
  const double order = double(std::min(a.array().rows(), a.array().columns()));
  return Progress::estimated("factorising", factorisations * factorisation_cost(order, !is_real(a)));
}

Knowns solve(const Knowns& arguments) {
  const Known& a = square(arguments);
  const std::size_t rows = a.array().rows();
  const Array& b = arguments[1].array(1);
  Known right = arguments[1];
  if (b.rows() == 1 && b.columns() == rows) {
    right = Known(reshaped(elements(b), rows, 1), right.errors);
  }
  if (right.array().rows() != rows) {
    throw Unfit("right-hand sides of " + std::to_string(rows) + " numbers are needed here, not " + shape(b), 1);
  }
  // Also where A is a number.
  return {rows == 1 ? elementwise("divide", divide, right, a) : operate("\\", a, right)};
}
Knowns det(const Knowns& arguments) {
  const Progress progress = factorising(square(arguments), 3);
  return {known(with_matrix(arguments[0], [](const auto& a) { return as_number(proven::determinant(a)); }))};
}
Knowns inv(const Knowns& arguments) {
  const Progress progress = factorising(square(arguments), 8);
  return {with_matrix(arguments[0], [](const auto& a) { return known(proven::inverse(a)); })};
}
Knowns eig(const Knowns& arguments) {
  const Progress progress =
      Progress::estimated("eigenvalues", 2 * eigenvalue_cost(double(square(arguments).array().rows()), false));
  return {with_matrix(arguments[0], [](const auto& a) { return known_column(proven::eigenvalues(a)); })};
}
Knowns eigvec(const Knowns& arguments) {
  const Progress progress =
      Progress::estimated("eigenvalues", 2 * eigenvalue_cost(double(square(arguments).array().rows()), true));
  return with_matrix(arguments[0], [](const auto& a) {
    const proven::EigenBounds system = proven::eigen(a);
    return Knowns{known(system.vectors), known_column(system.values)};
  });
}
Knowns svd(const Knowns& arguments) {
  const Progress progress = factorising(arguments[0], 60);
  return {with_matrix(arguments[0], [](const auto& a) { return known_column(proven::singular_values(a)); })};
}

tesk2mp::Norm norm_kind(const Knowns& arguments) {
  constexpr tesk2mp::Norm kKinds[] = {tesk2mp::Norm::frobenius, tesk2mp::Norm::one, tesk2mp::Norm::infinity,
                                      tesk2mp::Norm::largest};
  return arguments.size() == 2 ? kKinds[plain(arguments).choice(1, {"fro", "one", "inf", "max"})]
                               : tesk2mp::Norm::frobenius;
}
Number norm_of(const Known& given, tesk2mp::Norm kind) {
  return with_matrix(given, [&](const auto& a) { return as_number(proven::norm(kind, a)); });
}
Knowns norm(const Knowns& arguments) {
  (void)arguments[0].array(0);
  return {known(norm_of(arguments[0], norm_kind(arguments)))};
}
Knowns cond(const Knowns& arguments) {
  const Known& a = square(arguments);
  return {known(multiply(norm_of(a, tesk2mp::Norm::one), norm_of(inv(arguments)[0], tesk2mp::Norm::one)))};
}

// Transforms and polynomials ---------------------------------------------------------------------------------------

std::vector<BoundedComplex> complex_numbers(const std::vector<Number>& given) {
  std::vector<BoundedComplex> result;
  std::transform(given.begin(), given.end(), std::back_inserter(result), as_complex);
  return result;
}

std::vector<Number> transformed(const std::vector<Number>& given, tesk2mp::Direction direction) {
  std::vector<Number> result;
  for (const BoundedComplex& z : proven::transform(complex_numbers(given), direction)) {
    result.push_back(as_number(z));
  }
  return result;
}

// Real numbers have a transform that mirrors itself, and what mirrors itself has a real one.
void drop_imaginary_parts(const std::vector<Number>& given, std::vector<Number>& result, std::size_t rows,
                          std::size_t columns) {
  const auto mirror = [&](std::size_t k) { return (rows - k % rows) % rows + (columns - k / rows) % columns * rows; };
  bool real = true;
  bool mirrored = true;
  for (std::size_t k = 0; k < given.size(); ++k) {
    const Number& other = given[mirror(k)];
    real = real && given[k].is_real();
    mirrored =
        mirrored && given[k].is_exact() && given[k].re.value == other.re.value && given[k].im.value == -other.im.value;
  }
  for (std::size_t k = 0; k < result.size(); ++k) {
    if (mirrored || (real && mirror(k) == k)) {
      result[k] = as_number(result[k].re);
    }
  }
}

template <tesk2mp::Direction kDirection>
Knowns fft(const Knowns& arguments) {
  const Array& a = vector(arguments, 0).array();
  const std::vector<Number> given = numbers(arguments[0]);
  std::vector<Number> result = transformed(given, kDirection);
  drop_imaginary_parts(given, result, size(a), 1);
  return {known(a.rows(), a.columns(), result)};
}
template <tesk2mp::Direction kDirection>
Knowns fft2(const Knowns& arguments) {
  const Array& a = arguments[0].array(0);
  if (size(a) == 0) {
    throw Unfit("at least one number is needed here", 0);
  }
  const std::vector<Number> given = numbers(arguments[0]);
  std::vector<Number> all = given;
  for (const bool along_rows : {false, true}) {
    const std::size_t count = along_rows ? a.rows() : a.columns();
    const std::size_t length = along_rows ? a.columns() : a.rows();
    const auto place = [&](std::size_t line, std::size_t k) {
      return along_rows ? line + k * a.rows() : k + line * a.rows();
    };
    for (std::size_t line = 0; line < count; ++line) {
      std::vector<Number> sequence;
      for (std::size_t k = 0; k < length; ++k) {
        sequence.push_back(all[place(line, k)]);
      }
      sequence = transformed(sequence, kDirection);
      for (std::size_t k = 0; k < length; ++k) {
        all[place(line, k)] = sequence[k];
      }
    }
  }
  drop_imaginary_parts(given, all, a.rows(), a.columns());
  return {known(a.rows(), a.columns(), all)};
}

Knowns polyval(const Knowns& arguments) {
  Known y(make_array(arguments[1].array(1).rows(), arguments[1].array(1).columns()));
  for (const Number& coefficient : numbers(vector(arguments, 0))) {
    y = operate("+", operate(".*", y, arguments[1]), known(coefficient));
  }
  return {y};
}

struct NamedProof {
  std::string_view name;
  Proof proof;
};

constexpr NamedProof kMatrixProofs[] = {
    {"transpose", transpose},
    {"diag", diag},
    {"fill", fill},
    {"sum", sum},
    {"mean", mean},
    {"prod", prod},
    {"trace", trace},
    {"dot", dot},
    {"min", first_of<proven::fmin>},
    {"max", first_of<proven::fmax>},
    {"linspace", linspace},
    {"solve", solve},
    {"det", det},
    {"inv", inv},
    {"eig", eig},
    {"eigvec", eigvec},
    {"svd", svd},
    {"norm", norm},
    {"cond", cond},
    {"fft", fft<tesk2mp::Direction::forward>},
    {"ifft", fft<tesk2mp::Direction::backward>},
    {"fft2", fft2<tesk2mp::Direction::forward>},
    {"ifft2", fft2<tesk2mp::Direction::backward>},
    {"polyval", polyval},
};

}  // namespace

Proof find_matrix_proof(const std::string& name) {
  const auto* found = std::find_if(std::begin(kMatrixProofs), std::end(kMatrixProofs),
                                   [&](const NamedProof& each) { return each.name == name; });
  return found == std::end(kMatrixProofs) ? nullptr : found->proof;
}

}  // namespace cli::repl
