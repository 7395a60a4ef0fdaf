// Scalars, ranking, random numbers and sparse matrices through the C++ interface.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "interface/samples.h"

using namespace front;
using namespace tesk2mp;

TEST_CASE("companions by default, classic entries by name") {
  const Digits digits(50);
  CHECK(pi().to_string() == "3.1415926535897932384626433832795028841971693993751");
  CHECK(fabs(classic::pi() - pi()) > Real(1, -17));
  CHECK(sqrt(Complex(-4)) == Complex(0, 2));
  const Complex half(Real("0.5"), 0);
  CHECK(fabs(tesk2mp::sqrt(half).re - ::sqrt(Real("0.5"))) < Real(1, -49));
  CHECK(fabs(classic::sqrt(half).re - ::sqrt(Real("0.5"))) > Real(1, -20));
  for (const Complex& z : {Complex(Real("nan"), 0), Complex(0, Real("nan")), Complex(Real("nan"), Real("inf"))}) {
    CHECK((isnan(sqrt(z).re) && isnan(sqrt(z).im)));
  }
  CHECK(abs(Complex(3, 4)) == 5);
  CHECK(machine_precision() == Real(1, -50));
  CHECK(smallest_number() * largest_number() == 1);
  CHECK(1 / safe_range() == largest_number());
  const Complex huge(largest_number(), largest_number());
  CHECK(quotient(huge, huge) == Complex(1));
}

TEST_CASE("ranks, permutations and sorting count from 0 and keep equal values in order") {
  const std::vector<Real> values = {3, 1, 2, 1};
  CHECK(rank(values) == std::vector<Integer>{3, 0, 2, 1});
  CHECK(rank(values, Order::descending) == std::vector<Integer>{0, 2, 1, 3});
  std::vector<Complex> partners = {Complex(30), Complex(10), Complex(20), Complex(11)};
  rearrange(partners, rank(values));
  CHECK(partners == std::vector<Complex>{Complex(10), Complex(11), Complex(20), Complex(30)});
  CHECK(invert(std::vector<Integer>{2, 0, 1}) == std::vector<Integer>{1, 2, 0});

  Samples samples;
  std::vector<Real> mine = samples.vector<Real>(100);
  std::vector<Real> theirs = mine;
  sort(mine);
  std::sort(theirs.begin(), theirs.end());
  CHECK(mine == theirs);
}

TEST_CASE("random numbers are those of the exports; a state goes on where it was taken") {
  for (const Integer generator : {0, 1, 273}) {
    Random random(generator);
    Random::State state = random.state();
    CHECK(random() == QuarnMPX_g05kafn_(generator, state.data()));
    CHECK(random.classic() == QuarnMP_g05kafn_(generator, state.data()));
    Random other(generator, random.state());
    const std::vector<Real> numbers = random.take(5);
    CHECK(numbers == other.take(5));
    CHECK(std::all_of(numbers.begin(), numbers.end(), [](const Real& u) { return u >= 0 && u < 1; }));
  }
}

TEST_CASE_TEMPLATE("sparse products are those of the dense matrix", T, Real, Complex) {
  Samples samples;
  support::Random places;
  const std::size_t n = 6;
  for (const Storage storage : {Storage::general, Storage::lower_triangle}) {
    SparseMatrix<T> sparse(n, storage);
    Matrix<T> dense(n, n);
    for (int entry = 0; entry < 30; ++entry) {
      const std::size_t i = places.below(n);
      const std::size_t j = places.below(storage == Storage::general ? n : i + 1);
      T value = samples.next<T>();
      if constexpr (std::same_as<T, Complex>) {
        value.im = storage != Storage::general && i == j ? Real(0) : value.im;
      }
      sparse.add(i, j, value);
      dense(i, j) = dense(i, j) + value;
      if (storage != Storage::general && i != j) {
        dense(j, i) = adjoint(dense)(j, i);
      }
    }
    const std::vector<T> x = samples.vector<T>(n);
    const auto column = [&](const std::vector<T>& y) { return Matrix<T>(MatrixView<const T>(y, n, 1)); };
    CHECK(distance(column(sparse.multiply(x)), column(multiply(dense, x))) < 1e3);
    const Op adjoint_op = std::same_as<T, Complex> ? Op::conjugate_transpose : Op::transpose;
    CHECK(distance(column(sparse.multiply(x, adjoint_op)), column(multiply(adjoint(dense), x))) < 1e3);

    const std::vector<T> before = sparse.multiply(x);
    const std::vector<Integer> starts = sparse.canonicalise();
    CHECK(starts.front() == 0);
    CHECK(std::size_t(starts.back()) == sparse.entries());
    for (std::size_t i = 0; i < n; ++i) {
      for (auto entry = std::size_t(starts[i]); entry < std::size_t(starts[i + 1]); ++entry) {
        CHECK(sparse.row(entry) == i);
        CHECK(widen(Matrix<T>{{sparse.value(entry) - dense(i, sparse.column(entry))}})(0, 0).re <
              Real(1, 2 - QuarnDigits()));
      }
    }
    CHECK(distance(column(sparse.multiply(x)), column(before)) < 1e3);
  }
}
