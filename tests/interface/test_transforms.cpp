// Fourier transforms through the C++ interface.
#include <doctest/doctest.h>

#include <limits>
#include <vector>

#include "interface/samples.h"

using namespace front;
using namespace tesk2mp;

namespace {

bool alike(const Complex& a, const Complex& b) { return abs(a - b) < Real(1, 4 - QuarnDigits()); }

/// Element (i, j, k) of an array of the extents {3, 4, 2} below.
std::size_t place(std::size_t i, std::size_t j, std::size_t k) { return i + 3 * (j + 4 * k); }

/// The elements of that array along a dimension, through a given one.
std::vector<Complex> line(const std::vector<Complex>& x, std::size_t dimension, const std::size_t (&through)[3]) {
  const std::size_t extents[] = {3, 4, 2};
  std::vector<Complex> elements;
  std::size_t at[] = {through[0], through[1], through[2]};
  for (at[dimension] = 0; at[dimension] < extents[dimension]; ++at[dimension]) {
    elements.push_back(x[place(at[0], at[1], at[2])]);
  }
  return elements;
}

}  // namespace

TEST_CASE("transforms are those of the exports, companions by default") {
  const Digits digits(50);
  Samples samples;
  const std::vector<Real> x = samples.vector<Real>(12);
  Integer n = 12;
  std::vector<Real> work(12);
  Integer ifail = 1;

  using Export = void (*)(QuarnFloat*, Integer*, QuarnFloat*, Integer*);
  const std::pair<void (*)(std::span<Real>), Export> table[] = {
      {transform_real, QuarnMPX_c06faf_},
      {transform_hermitian, QuarnMPX_c06fbf_},
      {classic::transform_real, QuarnMP_c06faf_},
      {classic::transform_hermitian, QuarnMP_c06fbf_},
  };
  for (const auto& [routine, export_] : table) {
    std::vector<Real> mine = x;
    std::vector<Real> theirs = x;
    routine(mine);
    export_(theirs.data(), &n, work.data(), &ifail);
    CHECK(mine == theirs);
  }
}

TEST_CASE("a spectrum is the sum that defines it, for even and odd lengths") {
  const Digits digits(40);
  Samples samples;
  for (const std::size_t n : {2U, 3U, 7U, 10U}) {
    const std::vector<Real> x = samples.vector<Real>(n);
    const std::vector<Complex> z = spectrum(x);
    REQUIRE(z.size() == n);
    for (std::size_t k = 0; k < n; ++k) {
      Complex sum(0);
      for (std::size_t j = 0; j < n; ++j) {
        const Real angle = -2 * pi() * Real(j * k) / Real(n);
        sum = sum + Complex(x[j] * cos(angle), x[j] * sin(angle));
      }
      CHECK(abs(sum / Complex(sqrt(Real(n))) - z[k]) < Real(1, 3 - 40));
    }
  }
}

TEST_CASE("a complex transform of reals is their spectrum, and backward undoes forward") {
  const Digits digits(40);
  Samples samples;
  const std::vector<Real> x = samples.vector<Real>(21);
  std::vector<Complex> z(x.begin(), x.end());
  transform(z);
  const std::vector<Complex> expected = spectrum(x);
  for (std::size_t k = 0; k < z.size(); ++k) {
    CHECK(abs(z[k] - expected[k]) < Real(1, 3 - 40));
  }
  transform(z, Direction::backward);
  for (std::size_t k = 0; k < z.size(); ++k) {
    CHECK(abs(z[k] - Complex(x[k])) < Real(1, 3 - 40));
  }
  std::vector<Complex> none;
  CHECK_THROWS_AS(transform(none), InvalidArgument);
}

TEST_CASE("the transform of an array is the sum that defines it, both ways") {
  const Digits digits(40);
  const std::vector<Complex> x = Samples().vector<Complex>(24);
  for (const auto& [direction, sign] : {std::pair{Direction::forward, -1}, std::pair{Direction::backward, 1}}) {
    std::vector<Complex> z = x;
    transform(z, {3, 4, 2}, direction);
    for (std::size_t k = 0; k < 24; ++k) {
      Complex sum(0);
      for (std::size_t j = 0; j < 24; ++j) {
        const std::size_t twelfths = 4 * (j % 3) * (k % 3) + 3 * (j / 3 % 4) * (k / 3 % 4) + 6 * (j / 12) * (k / 12);
        const Real angle = 2 * sign * pi() * Real(twelfths) / 12;
        sum = sum + x[j] * Complex(cos(angle), sin(angle));
      }
      CHECK(alike(z[k], sum / Complex(sqrt(Real(24)))));
    }
  }
}

TEST_CASE("one dimension of an array is transformed line by line") {
  const Digits digits(40);
  const std::vector<Complex> x = Samples().vector<Complex>(24);
  for (const std::size_t dimension : {0U, 1U, 2U}) {
    std::vector<Complex> z = x;
    transform_dimension(z, {3, 4, 2}, dimension);
    for (std::size_t j = 0; j < 24; ++j) {
      const std::size_t at[] = {j % 3, j / 3 % 4, j / 12};
      std::vector<Complex> expected = line(x, dimension, at);
      transform(expected);
      CHECK(alike(z[j], expected[at[dimension]]));
    }
    transform_dimension(z, {3, 4, 2}, dimension, Direction::backward);
    for (std::size_t j = 0; j < 24; ++j) {
      CHECK(alike(z[j], x[j]));
    }
  }
}

TEST_CASE("columns, rows and both of a matrix, and of a block whose surroundings stay") {
  const Digits digits(40);
  const Matrix<Complex> all = Samples().matrix<Complex>(6, 7);
  const struct {
    void (*work)(const MatrixView<Complex>&, Direction);
    bool columns;
    bool rows;
  } table[] = {{transform_columns, true, false}, {transform_rows, false, true}, {transform, true, true}};
  for (const auto& row : table) {
    for (const auto& [rows, columns] : {std::pair{6U, 7U}, std::pair{4U, 5U}, std::pair{5U, 1U}}) {
      Matrix<Complex> a = all;
      Matrix<Complex> expected = all;
      row.work(a.view().block(0, 0, rows, columns), Direction::forward);
      for (std::size_t j = 0; row.columns && j < columns; ++j) {
        transform(std::span(&expected(0, j), rows));
      }
      for (std::size_t i = 0; row.rows && i < rows; ++i) {
        std::vector<Complex> elements = expected.view().block(0, 0, rows, columns).row(i).to_vector();
        transform(elements);
        for (std::size_t j = 0; j < columns; ++j) {
          expected(i, j) = elements[j];
        }
      }
      CHECK(distance(a, expected) < 1e3);
      row.work(a.view().block(0, 0, rows, columns), Direction::backward);
      CHECK(distance(a, all) < 1e3);
      for (std::size_t i = 0; i < 6; ++i) {
        for (std::size_t j = 0; j < 7; ++j) {
          CHECK(((i < rows && j < columns) || a(i, j) == all(i, j)));
        }
      }
    }
  }
}

TEST_CASE("classic transforms of complex numbers have some 16 digits, the others all") {
  const Digits digits(60);
  const Matrix<Complex> all = Samples().matrix<Complex>(5, 7);
  const std::pair<void (*)(const MatrixView<Complex>&, Direction), void (*)(const MatrixView<Complex>&, Direction)>
      table[] = {{transform_columns, classic::transform_columns},
                 {transform_rows, classic::transform_rows},
                 {transform, classic::transform},
                 {[](const MatrixView<Complex>& a, Direction direction) {
                    transform_dimension({a.data(), 35}, {5, 7}, 1, direction);
                  },
                  [](const MatrixView<Complex>& a, Direction direction) {
                    classic::transform_dimension({a.data(), 35}, {5, 7}, 1, direction);
                  }}};
  for (const auto& [full, old] : table) {
    Matrix<Complex> a = all;
    Matrix<Complex> b = all;
    full(a, Direction::forward);
    old(b, Direction::forward);
    CHECK(distance(a, b) > 1e38);
    CHECK(distance(a, b) < 1e47);
  }
}

TEST_CASE("shapes that are none are refused, and the array stays") {
  const std::vector<Complex> x = Samples().vector<Complex>(12);
  std::vector<Complex> z = x;
  const std::size_t most = std::size_t(std::numeric_limits<Integer>::max());
  for (const Shape& shape : {Shape{}, Shape{3, 0}, Shape{3, 5}, Shape{12, 0, 1}, Shape{most}, Shape{most, most}}) {
    CHECK_THROWS_AS(transform(z, shape), InvalidArgument);
    CHECK_THROWS_AS(transform_dimension(z, shape, 0), InvalidArgument);
  }
  CHECK_THROWS_WITH_AS(transform_dimension(z, {3, 4}, 2), "C06PFF: dimension 2 of 2", InvalidArgument);
  CHECK_THROWS_WITH_AS(transform(z, {3, 5}), "C06PJF: N = the product of the ND(I): N = 12 ND(I) = 15.",
                       InvalidArgument);
  Matrix<Complex> none;
  CHECK_THROWS_AS(transform(none), InvalidArgument);
  CHECK_THROWS_AS(transform_rows(none), InvalidArgument);
  CHECK_THROWS_AS(transform_columns(none), InvalidArgument);
  CHECK(z == x);
}

TEST_CASE("a plan gives what transform() gives, at its own digits, and refuses other lengths") {
  std::vector<Complex> x;
  for (int i = 0; i < 12; ++i) {
    x.emplace_back(Real(i) / 7, Real(5 - i) / 3);
  }
  const Digits digits(33);
  const TransformPlan plan(x.size());
  CHECK(plan.length() == 12);
  for (const Direction direction : {Direction::forward, Direction::backward}) {
    std::vector<Complex> expected = x;
    transform(expected, direction);
    const Digits other(5);
    std::vector<Complex> z = x;
    plan.transform(z, direction);
    CHECK(z == expected);
    CHECK(plan.digits() == 33);
  }
  std::vector<Complex> longer(13, Complex(1, 2));
  CHECK_THROWS_AS(plan.transform(longer), InvalidArgument);
  CHECK(longer == std::vector<Complex>(13, Complex(1, 2)));
  CHECK_THROWS_AS(TransformPlan(0), InvalidArgument);
  const Digits many(2000);
  CHECK_THROWS_AS(TransformPlan(8), InvalidArgument);
}

TEST_CASE("plans of real transforms give what the functions give, at their own digits, and refuse other lengths") {
  for (const std::size_t n : {std::size_t(9), std::size_t(12)}) {
    std::vector<Real> x;
    for (std::size_t i = 0; i < n; ++i) {
      x.push_back(Real(std::int64_t(i * i % 7)) / 13 - Real(2) / 7);
    }
    const Digits digits(33);
    const SpectrumPlan spectra(n);
    for (const Scaling norm : {Scaling::backward, Scaling::orthonormal, Scaling::forward}) {
      const Along along{.n = n, .norm = norm};
      const std::vector<Complex> z = rfft(x, along);
      const std::vector<Real> back = irfft(z, along);
      for (int type = 1; type <= 4; ++type) {
        const CosinePlan cosines(n, type);
        const SinePlan sines(n, type);
        const std::vector<Real> results[] = {dct(x, type, along), idct(x, type, along), dst(x, type, along),
                                             idst(x, type, along)};
        const Digits other(5);
        CHECK(cosines.dct(x, norm) == results[0]);
        CHECK(cosines.idct(x, norm) == results[1]);
        CHECK(sines.dst(x, norm) == results[2]);
        CHECK(sines.idst(x, norm) == results[3]);
        CHECK(cosines.digits() + sines.digits() + spectra.digits() == 99);
      }
      const Digits other(5);
      CHECK(spectra.rfft(x, norm) == z);
      CHECK(spectra.irfft(z, norm) == back);
    }
    CHECK_THROWS_AS(spectra.rfft(std::vector<Real>(n + 1)), InvalidArgument);
    CHECK_THROWS_AS(spectra.irfft(std::vector<Complex>(n)), InvalidArgument);
    CHECK_THROWS_AS(CosinePlan(n).dct(std::vector<Real>(n - 1)), InvalidArgument);
  }
  CHECK_THROWS_WITH_AS(CosinePlan(8, 5), "DCT: On entry, ITYPE is not 1 to 4: ITYPE = 5.", InvalidArgument);
  CHECK_THROWS_AS(CosinePlan(1, 1), InvalidArgument);
  CHECK_THROWS_AS(SinePlan(0), InvalidArgument);
  CHECK_THROWS_AS(SpectrumPlan((1U << 24) + 1), InvalidArgument);
  const Digits many(2000);
  CHECK_THROWS_AS(SpectrumPlan(8), InvalidArgument);
}

TEST_CASE("the number of threads") {
  CHECK(set_threads(2) == 1);
  CHECK_THROWS_AS(set_threads(-1), InvalidArgument);
  set_threads(1);
  CHECK(set_threads(1) == 1);
}
