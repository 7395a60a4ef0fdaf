// Transforms, zeros of polynomials, random numbers, files.
#include <algorithm>
#include <array>

#include "cli/matrix_input.h"
#include "cli/matrix_output.h"
#include "cli/options.h"
#include "cli/repl/functions.h"

namespace cli::repl {

namespace {

using Values = std::vector<Value>;

constexpr Integer kLargestSize = 100'000'000;

// The transform is linear: that of a complex sequence is put together from those of its parts.
std::vector<Complex> transformed(const Array& x) {
  std::vector<Complex> z = tesk2mp::spectrum(real_parts(elements(x)));
  if (is_real(x)) {
    return z;
  }
  const std::vector<Complex> imaginary = tesk2mp::spectrum(imaginary_parts(elements(x)));
  for (std::size_t k = 0; k < z.size(); ++k) {
    z[k] = Complex(z[k].re - imaginary[k].im, z[k].im + imaginary[k].re);
  }
  return z;
}

Values fft(State& /*state*/, const Arguments& arguments) {
  const Array& x = arguments.vector(0);
  return {reshaped(transformed(x), x.rows(), x.columns())};
}

// The inverse is the conjugate of the transform of the conjugate. A spectrum that mirrors itself gives real numbers.
Values ifft(State& /*state*/, const Arguments& arguments) {
  Array z = arguments.vector(0);
  const std::size_t n = size(z);
  bool mirrored = true;
  for (std::size_t k = 0; k < n; ++k) {
    mirrored = mirrored && z.data()[k] == conj(z.data()[(n - k) % n]);
  }
  std::transform(z.data(), z.data() + n, z.data(), [](const Complex& value) { return conj(value); });
  std::vector<Complex> x = transformed(z);
  std::transform(x.begin(), x.end(), x.begin(),
                 [&](const Complex& value) { return mirrored ? Complex(value.re) : conj(value); });
  return {reshaped(x, z.rows(), z.columns())};
}

// Of a quartic by its own routine, otherwise the eigenvalues of the companion matrix. Coefficients come from the
// highest power down; leading zeros lower the degree.
Values zeros(State& /*state*/, const Arguments& arguments) {
  std::vector<QuarnFloat> c = arguments.reals(0);
  c.erase(c.begin(), std::find_if(c.begin(), c.end(), [](const QuarnFloat& value) { return value != 0; }));
  if (c.size() < 2) {
    throw Unfit("the coefficients of a polynomial are needed here, from the highest power down", 0);
  }
  constexpr std::size_t kQuartic = 5;
  std::vector<Complex> values;
  if (c.size() == kQuartic) {
    for (const tesk2mp::Zero& zero : tesk2mp::quartic_zeros(c[0], c[1], c[2], c[3], c[4])) {
      values.push_back(zero.value);
    }
  } else {
    const std::size_t n = c.size() - 1;
    RealArray companion(n, n);
    for (std::size_t j = 0; j < n; ++j) {
      companion(0, j) = -c[j + 1] / c[0];
      if (j > 0) {
        companion(j, j - 1) = 1;
      }
    }
    values = tesk2mp::eigenvalues(companion);
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
  std::generate_n(result.data(), size(result), [&] { return Complex(state.random()); });
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
  return {source, Integer(a.rows()), Integer(a.columns()), !is_real(a), elements(a)};
}

Values load(State& /*state*/, const Arguments& arguments) {
  const DenseMatrix matrix = read_dense_matrix(arguments.text(0));
  return {reshaped(matrix.values, std::size_t(matrix.rows), std::size_t(matrix.columns))};
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
  if (matrix.values.empty()) {
    throw Unfit("there is nothing to save", 0);
  }
  Result result;
  add_matrix(result, matrix);
  deliver(result, options);
  return {};
}

constexpr auto kFunctions = std::to_array<Function>({
    {"fft", "x", "z", "z_k = 1/sqrt(N) sum x_j exp(-2 pi i j k/N)", 1, 1, fft},
    {"ifft", "z", "x", "the inverse of fft", 1, 1, ifft},
    {"zeros", "c", "z", "zeros of the polynomial c(1) z^n + ... + c(n + 1)", 1, 1, zeros},
    {"polyval", "c, x", "y", "the polynomial's values", 2, 2, polyval},
    {"random", "[rows [, columns]]", "A", "random numbers on (0, 1), random to the last digit", 0, 2, random},
    {"seed", "generator [, s1, s2, s3, s4]", "", "start one of the generators 0 to 273 anew", 1, 5, seed},
    {"load", "\"file\"", "A", "a matrix from a file: Matrix Market, CSV, JSON", 1, 1, load},
    {"save", "A, \"file\"", "", "write to a file that ends in .mtx, .csv or .json", 2, 2, save},
});

}  // namespace

std::span<const Function> other_functions() { return kFunctions; }

}  // namespace cli::repl
