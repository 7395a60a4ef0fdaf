// Transforms, zeros of polynomials, random numbers, files, pictures.
#include <algorithm>
#include <array>

#include "cli/commands/options.h"
#include "cli/io/matrix_input.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/repl/functions.h"
#include "cli/system/progress.h"

namespace cli::repl {

namespace {

using Values = std::vector<Value>;

// The element that is the conjugate of the one at (i, j) where an array is the spectrum of real numbers.
template <class Matrix>
auto& mirror(Matrix& a, std::size_t i, std::size_t j) {
  return a((a.rows() - i) % a.rows(), (a.columns() - j) % a.columns());
}

bool is_mirrored(const Array& a) {
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      if (a(i, j) != conj(mirror(a, i, j))) {
        return false;
      }
    }
  }
  return true;
}

// The spectrum of real numbers mirrors itself to the last digit, and what mirrors itself goes back to real numbers.
Array transformed(Array a, tesk2mp::Direction direction) {
  const bool real = is_real(a);
  const bool mirrored = is_mirrored(a);
  const Progress progress = Progress::estimated("transform", complex_transform_cost(size(a)));
  if (is_vector(a)) {
    tesk2mp::transform({a.data(), size(a)}, direction);
  } else {
    tesk2mp::transform(a, direction);
  }
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      if (mirrored) {
        a(i, j).im = 0;
      }
      if (real) {
        Complex& other = mirror(a, i, j);
        a(i, j).im = &other == &a(i, j) ? QuarnFloat() : a(i, j).im;
        other = conj(a(i, j));
      }
    }
  }
  return a;
}

Values fft(State& /*state*/, const Arguments& arguments) {
  return {transformed(arguments.vector(0), tesk2mp::Direction::forward)};
}

Values ifft(State& /*state*/, const Arguments& arguments) {
  return {transformed(arguments.vector(0), tesk2mp::Direction::backward)};
}

Values fft2(State& /*state*/, const Arguments& arguments) {
  return {transformed(arguments.filled(0), tesk2mp::Direction::forward)};
}

Values ifft2(State& /*state*/, const Arguments& arguments) {
  return {transformed(arguments.filled(0), tesk2mp::Direction::backward)};
}

// Coefficients come from the highest power down; leading zeros lower the degree.
Values zeros(State& /*state*/, const Arguments& arguments) {
  std::vector<Complex> c = elements(arguments.vector(0));
  const auto is_real_number = [](const Complex& value) { return value.im == 0; };
  c.erase(c.begin(), std::find_if(c.begin(), c.end(), [](const Complex& value) { return value != Complex(0); }));
  if (c.size() < 2) {
    throw Unfit("the coefficients of a polynomial are needed here, from the highest power down", 0);
  }
  constexpr double kOperations = 40;
  const double degree = double(c.size() - 1);
  const Progress progress = Progress::estimated("zeros", kOperations * degree * degree);
  std::vector<QuarnFloat> re;
  std::transform(c.begin(), c.end(), std::back_inserter(re), [](const Complex& value) { return value.re; });
  const bool real = std::all_of(c.begin(), c.end(), is_real_number);
  std::vector<Complex> values;
  for (const tesk2mp::Zero& zero : real ? tesk2mp::polynomial_zeros(re) : tesk2mp::polynomial_zeros(c)) {
    values.push_back(zero.value);
  }
  return {column(values)};
}

// Horner's rule.
Values polyval(State& /*state*/, const Arguments& arguments) {
  const Array& x = arguments.array(1);
  Array y = make_array(x.rows(), x.columns());
  for (const Complex& coefficient : elements(arguments.vector(0))) {
    y = operate("+", operate(".*", y, x), number(coefficient));
  }
  return {y};
}

Values random(State& state, const Arguments& arguments) {
  const Integer rows = arguments.count() > 0 ? arguments.whole(0, 0, kLargestSize) : 1;
  const Integer columns = arguments.count() > 1 ? arguments.whole(1, 0, kLargestSize) : 1;
  Array result = make_array(std::size_t(rows), std::size_t(columns));
  Progress progress("drawing numbers", double(size(result)));
  std::generate_n(result.data(), size(result), [&] {
    progress.advance();
    return Complex(state.random());
  });
  return {result};
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

Values load(State& /*state*/, const Arguments& arguments) {
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
    {"fft", "x", "z", "z_k = 1/sqrt(N) sum x_j exp(-2 pi i j k/N)", 1, 1, fft},
    {"ifft", "z", "x", "the inverse of fft", 1, 1, ifft},
    {"fft2", "A", "Z", "the transform of a matrix in both dimensions", 1, 1, fft2},
    {"ifft2", "Z", "A", "the inverse of fft2", 1, 1, ifft2},
    {"zeros", "c", "z", "zeros of the polynomial c(1) z^n + ... + c(n + 1)", 1, 1, zeros},
    {"polyval", "c, x", "y", "the polynomial's values", 2, 2, polyval},
    {"random", "[rows [, columns]]", "A", "random numbers on (0, 1), random to the last digit", 0, 2, random},
    {"seed", "generator [, s1, s2, s3, s4]", "", "start one of the generators 0 to 273 anew", 1, 5, seed},
    {"load", "\"file\"", "A", "a matrix from a file: Matrix Market, CSV, JSON", 1, 1, load},
    {"save", "A, \"file\"", "", "write to a file that ends in .mtx, .csv or .json", 2, 2, save},
    {"plot", "[x,] y, \"file\"", "", "draw a vector, complex numbers in the plane, or the magnitudes of a matrix", 2, 3,
     plot},
});

}  // namespace

std::span<const Function> other_functions() { return kOtherFunctions; }

}  // namespace cli::repl
