// Transforms, zeros of polynomials, random numbers, files, pictures.
#include <algorithm>
#include <array>

#include "cli/commands/options.h"
#include "cli/commands/transform_lines.h"
#include "cli/io/matrix_input.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/repl/functions.h"
#include "cli/system/progress.h"
#include "quarn/transform.h"
#include "tesk2mp/proven_spectra.hpp"

namespace cli::repl {

namespace {

// The place of the element that is the conjugate of element k where an array is the spectrum of real numbers.
std::size_t mirrored_place(const Array& shape, std::size_t k) {
  const std::size_t rows = shape.rows();
  const std::size_t columns = shape.columns();
  return (rows - k % rows) % rows + (columns - k / rows) % columns * rows;
}

bool is_mirrored(const Array& a) {
  for (std::size_t k = 0; k < size(a); ++k) {
    if (a.data()[k] != conj(a.data()[mirrored_place(a, k)])) {
      return false;
    }
  }
  return true;
}

// The spectrum of real numbers mirrors itself to the last digit, and what mirrors itself goes back to real numbers.
template <tesk2mp::Direction kDirection>
Values estimated_transform(State& /*state*/, const Arguments& arguments) {
  Array a = arguments.array(0);
  const bool real = is_real(a);
  const bool mirrored = is_mirrored(a);
  const Progress progress = Progress::estimated("transform", complex_transform_cost(size(a)));
  if (is_vector(a)) {
    tesk2mp::transform({a.data(), size(a)}, kDirection);
  } else {
    tesk2mp::transform(a, kDirection);
  }
  for (std::size_t k = 0; k < size(a); ++k) {
    if (mirrored) {
      a.data()[k].im = 0;
    }
    if (real) {
      const std::size_t other = mirrored_place(a, k);
      a.data()[k].im = other == k ? QuarnFloat() : a.data()[k].im;
      a.data()[other] = conj(a.data()[k]);
    }
  }
  return {a};
}

std::vector<Number> transformed(const std::vector<Number>& given, tesk2mp::Direction direction) {
  std::vector<BoundedComplex> sequence;
  std::transform(given.begin(), given.end(), std::back_inserter(sequence), as_complex);
  std::vector<Number> result;
  for (const BoundedComplex& z : proven::transform(sequence, direction)) {
    result.push_back(as_number(z));
  }
  return result;
}

// The same of numbers with bounds; `given` is what has been transformed.
Known without_imaginary_parts(const Known& given, std::vector<Number> result) {
  const Array& a = given.array();
  const bool real = is_real(given);
  const bool mirrored = given.is_exact() && is_mirrored(a);
  for (std::size_t k = 0; k < result.size(); ++k) {
    if (mirrored || (real && mirrored_place(a, k) == k)) {
      result[k] = as_number(result[k].re);
    }
  }
  return known(a.rows(), a.columns(), result);
}

// Long transforms and those with many digits have no bound.
bool is_beyond_bounds(std::size_t length) {
  return length > 0 && !QuarnTransform::is_supported(Integer(length), QuarnDigits());
}

template <tesk2mp::Direction kDirection>
Knowns fft(Evaluation& evaluation, const Arguments& arguments) {
  if (is_beyond_bounds(size(arguments.vector(0)))) {
    return estimated<estimated_transform<kDirection>>(evaluation, arguments);
  }
  const Known& given = arguments.known(0);
  return {without_imaginary_parts(given, transformed(numbers(given), kDirection))};
}

template <tesk2mp::Direction kDirection>
Knowns fft2(Evaluation& evaluation, const Arguments& arguments) {
  const Array& a = arguments.filled(0);
  if (is_beyond_bounds(std::max(a.rows(), a.columns()))) {
    return estimated<estimated_transform<kDirection>>(evaluation, arguments);
  }
  std::vector<Number> all = numbers(arguments.known(0));
  const auto transform = [](const std::vector<Number>& line) { return transformed(line, kDirection); };
  transform_lines(all, 1, a.rows(), transform);
  transform_lines(all, a.rows(), a.columns(), transform);
  return {without_imaginary_parts(arguments.known(0), std::move(all))};
}

// Coefficients come from the highest power down; leading zeros lower the degree.
std::vector<Complex> coefficients(const Arguments& arguments) {
  std::vector<Complex> c = elements(arguments.vector(0));
  c.erase(c.begin(), std::find_if(c.begin(), c.end(), [](const Complex& value) { return value != Complex(0); }));
  if (c.size() < 2) {
    throw Unfit("the coefficients of a polynomial are needed here, from the highest power down", 0);
  }
  return c;
}

Values estimated_zeros(State& /*state*/, const Arguments& arguments) {
  const std::vector<Complex> c = coefficients(arguments);
  constexpr double kOperations = 40;
  const double degree = double(c.size() - 1);
  const Progress progress = Progress::estimated("zeros", kOperations * degree * degree);
  std::vector<Complex> values;
  for (const tesk2mp::Zero& zero : is_real(arguments.array(0)) ? tesk2mp::polynomial_zeros(real_elements(column(c)))
                                                               : tesk2mp::polynomial_zeros(c)) {
    values.push_back(zero.value);
  }
  return {column(values)};
}

Knowns zeros(Evaluation& evaluation, const Arguments& arguments) {
  const std::vector<Complex> c = coefficients(arguments);
  if (!arguments.are_exact()) {
    return estimated<estimated_zeros>(evaluation, arguments);
  }
  return {known_column(is_real(arguments.array(0)) ? proven::zeros(real_elements(column(c))) : proven::zeros(c))};
}

// Horner's rule.
Knowns polyval(Evaluation& /*evaluation*/, const Arguments& arguments) {
  Known y(make_array(arguments.array(1).rows(), arguments.array(1).columns()));
  (void)arguments.vector(0);
  for (const Number& coefficient : numbers(arguments.known(0))) {
    y = operate("+", operate(".*", y, arguments.known(1)), known(coefficient));
  }
  return {y};
}

// With the digits that are asked for.
Knowns random(Evaluation& evaluation, const Arguments& arguments) {
  const Integer rows = arguments.count() > 0 ? arguments.whole(0, 0, kLargestSize) : 1;
  const Integer columns = arguments.count() > 1 ? arguments.whole(1, 0, kLargestSize) : 1;
  Array result = make_array(std::size_t(rows), std::size_t(columns));
  Progress progress("drawing numbers", double(size(result)));
  const tesk2mp::Digits digits(evaluation.digits);
  std::generate_n(result.data(), size(result), [&] {
    progress.advance();
    return Complex(evaluation.state.random());
  });
  return {Known(std::move(result))};
}

Values seed(State& state, const Arguments& arguments) {
  constexpr Integer kLastGenerator = 273;
  constexpr Integer kLargestSeed = 16'760'000;
  const Integer generator = arguments.whole(0, 0, kLastGenerator);
  if (arguments.count() == 1) {
    state.random = tesk2mp::Random(generator);
    return {};
  }
  if (arguments.count() != 5) {
    throw Unfit("a generator and four seeds are needed, or a generator alone");
  }
  tesk2mp::Random::State seeds;
  for (std::size_t k = 0; k < seeds.size(); ++k) {
    seeds[k] = arguments.whole(k + 1, 0, kLargestSeed);
  }
  state.random = tesk2mp::Random(generator, seeds);
  return {};
}

DenseMatrix dense_matrix(const Array& a, const std::string& source) {
  return is_real(a) ? DenseMatrix{source, real_array(a)} : DenseMatrix{source, a};
}

// With all digits that the file has.
Values load(State& /*state*/, const Arguments& arguments) {
  const tesk2mp::Digits digits(int{kMostDigits});
  const DenseMatrix matrix = read_dense_matrix(arguments.text(0));
  return {std::visit([](const auto& a) { return as_array(a); }, matrix.elements)};
}

// The file's ending says the format.
Values save(State& /*state*/, const Arguments& arguments) {
  OutputOptions options;
  options.file = arguments.text(1);
  options.format = format_of_file(Forms::matrix, options.file);
  if (options.format == Format::text) {
    throw Unfit("a name that ends in .mtx, .csv or .json is needed here", 1);
  }
  const DenseMatrix matrix = dense_matrix(arguments.array(0), options.file);
  if (matrix.rows() == 0 || matrix.columns() == 0) {
    throw Unfit("there is nothing to save", 0);
  }
  Result result;
  add_matrix(result, matrix);
  deliver(result, options);
  return {};
}

// What the numbers look like depends on what they are.
Values plot(State& /*state*/, const Arguments& arguments) {
  const std::size_t last = arguments.count() - 1;
  const std::string& file = arguments.text(last);
  if (!is_picture_name(file)) {
    throw Unfit("a name that ends in .svg, .png or .pdf, or \"-\", is needed here", int(last));
  }
  if (last == 2) {
    const std::vector<QuarnFloat> x = arguments.reals(0);
    const std::vector<QuarnFloat> y = arguments.reals(1);
    if (x.size() != y.size()) {
      throw Unfit(std::to_string(x.size()) + " numbers are needed here, not " + std::to_string(y.size()), 1);
    }
    draw({Panel{"", "x", "y", {x, y}, {}, Panel::Style::line}}, file);
    return {};
  }
  const Array& a = arguments.filled(0);
  if (!is_vector(a)) {
    draw(map_of_magnitudes(shape(a), DenseMatrix{"", a}), file);
  } else if (is_real(a)) {
    draw({panel_of_elements("", "value", real_elements(a))}, file);
  } else {
    draw(ComplexPlane{"", elements(a)}, file);
  }
  return {};
}

constexpr auto kOtherFunctions = std::to_array<Function>({
    {"fft", "x", "z", "z_k = 1/sqrt(N) sum x_j exp(-2 pi i j k/N)", 1, 1, fft<tesk2mp::Direction::forward>},
    {"ifft", "z", "x", "the inverse of fft", 1, 1, fft<tesk2mp::Direction::backward>},
    {"fft2", "A", "Z", "the transform of a matrix in both dimensions", 1, 1, fft2<tesk2mp::Direction::forward>},
    {"ifft2", "Z", "A", "the inverse of fft2", 1, 1, fft2<tesk2mp::Direction::backward>},
    {"zeros", "c", "z", "zeros of the polynomial c(1) z^n + ... + c(n + 1)", 1, 1, zeros},
    {"polyval", "c, x", "y", "the polynomial's values", 2, 2, polyval},
    {"random", "[rows [, columns]]", "A", "random numbers on (0, 1), random to the last digit", 0, 2, random,
     Nature::data},
    {"seed", "generator [, s1, s2, s3, s4]", "", "start one of the generators 0 to 273 anew", 1, 5, plain<seed>,
     Nature::effect},
    {"load", "\"file\"", "A", "a matrix from a file: Matrix Market, CSV, JSON", 1, 1, plain<load>, Nature::data},
    {"save", "A, \"file\"", "", "write to a file that ends in .mtx, .csv or .json", 2, 2, plain<save>, Nature::effect},
    {"plot", "[x,] y, \"file\"", "", "draw a vector, complex numbers in the plane, or the magnitudes of a matrix", 2, 3,
     plain<plot>, Nature::effect},
});

}  // namespace

std::span<const Function> other_functions() { return kOtherFunctions; }

}  // namespace cli::repl
