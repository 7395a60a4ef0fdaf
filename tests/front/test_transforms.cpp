// Fourier transforms through the front door.
#include <doctest/doctest.h>

#include <vector>

#include "front/samples.h"

using namespace front;
using namespace tesk2mp;

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
  for (const auto& [front_door, export_] : table) {
    std::vector<Real> mine = x;
    std::vector<Real> theirs = x;
    front_door(mine);
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
