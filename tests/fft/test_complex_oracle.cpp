#include <doctest/doctest.h>

#include <cmath>
#include <map>
#include <string>

#include "complex_sample.h"
#include "oracle.h"
#include "src/fft/complex_engine.h"
#include "src/fft/complex_factors.h"
#include "support/digits.h"

using oracle::Constants;

namespace {

/// The host's functions that were asked for, by their arguments.
std::map<std::string, int> asked;

}  // namespace

/// Takes the place of the host's own in this program, and counts.
QuarnFloat QuarnEvalf1(const char* function, const QuarnFloat& x) {
  const std::string name = function;
  ++asked[name + " " + x.to_string()];
  return name == "cos" ? cos(x) : name == "sin" ? sin(x) : name == "acos" ? acos(x) : QuarnFloat("nan");
}

namespace {

std::vector<Integer> radices_of(Integer n) {
  const tesk::ComplexFactors factors = tesk::factorize_complex(n);
  return {factors.factor.begin(), factors.factor.begin() + factors.count};
}

/// Against the passes in MPFR with the given constants, in units of 10^-digits.
double error(decltype(&QuarnMP_c06pcf_) entry, bool forward, const Constants& constants, Integer n, int digits) {
  const sample::ComplexSequence x = sample::random_complex(n, unsigned(n));
  const sample::ComplexSequence z = sample::transformed(entry, forward ? "F" : "B", x);
  const auto conjugated = [forward](oracle::Sequence y) {
    for (oracle::Point& value : y) {
      value.im = forward ? value.im : -value.im;
    }
    return y;
  };
  return oracle::error_in_units(
      oracle::from_complex(z),
      conjugated(oracle::by_complex_passes(conjugated(oracle::from_complex(x)), radices_of(n), constants)), digits);
}

/// A few units for the passes; plain sums over r terms lose another sqrt(r) or so.
double bound(Integer n) {
  return 12 * std::sqrt(std::log2(double(n) + 1)) + 2 * std::sqrt(double(radices_of(n).back()));
}

int count_of(const std::string& function) {
  int count = 0;
  for (const auto& [call, times] : asked) {
    count += call.rfind(function + " ", 0) == 0 ? times : 0;
  }
  return count;
}

}  // namespace

TEST_CASE("the complex passes with true constants are the transform by its definition") {
  const oracle::Precision precision(60);
  support::Digits scope(20);
  for (const Integer n : {1, 2, 3, 4, 5, 6, 7, 12, 25, 30, 49, 61, 64, 90}) {
    CAPTURE(n);
    const oracle::Sequence x = oracle::from_complex(sample::random_complex(n, 1));
    CHECK(oracle::error_in_units(oracle::by_complex_passes(x, radices_of(n), Constants::full()),
                                 oracle::by_definition(x, -1), 58) < 1);
  }
}

TEST_CASE("complex transforms against MPFR with the same constants") {
  std::vector<Integer> lengths = {49, 61, 64, 121, 125, 128, 360, 500, 1000, 1024};
  for (Integer n = 1; n <= 40; ++n) {
    lengths.push_back(n);
  }
  for (const int digits : {8, 16, 50}) {
    const oracle::Precision precision(digits + 20);
    support::Digits scope(digits);
    for (const Integer n : lengths) {
      if (n > 128 && digits != 50) {
        continue;
      }
      for (const bool forward : {true, false}) {
        CAPTURE(digits);
        CAPTURE(n);
        CAPTURE(forward);
        // The classic angle itself, up to 2 pi, is rounded here.
        CHECK(error(QuarnMP_c06pcf_, forward, Constants::classic(), n, digits) < 2 * bound(n));
        CHECK(error(QuarnMPX_c06pcf_, forward, Constants::full(), n, digits) < bound(n));
      }
    }
  }
}

TEST_CASE("large primes against MPFR") {
  const int digits = 30;
  const oracle::Precision precision(digits + 20);
  support::Digits scope(digits);
  for (const Integer n : {1009, 2 * 1009, 31 * 37}) {
    CAPTURE(n);
    CHECK(error(QuarnMP_c06pcf_, n == 1009, Constants::classic(), n, digits) < 2 * bound(n));
    CHECK(error(QuarnMPX_c06pcf_, n == 1009, Constants::full(), n, digits) < bound(n));
  }
}

TEST_CASE("the table: the classic entry evaluates each rotation once, the companion's engine folds the angles") {
  support::Digits scope(50);
  const sample::ComplexSequence x = sample::random_complex(1024, 1);
  asked.clear();
  sample::transformed(QuarnMP_c06pcf_, "F", x);
  // Passes of radix 4 take the multiples of 1, 2 and 3 up to 3 * 255; each has another angle.
  CHECK(count_of("cos") == 510);
  CHECK(count_of("sin") == 510);
  for (const auto& entry : asked) {
    CAPTURE(entry.first);
    CHECK(entry.second == 1);
  }
  asked.clear();
  sample::ComplexSequence table(1024);
  REQUIRE(tesk::kFullEngine.prepare(1024, table.data()) == tesk::Status::ok);
  CHECK(count_of("cos") >= 16);
  CHECK(count_of("cos") <= 1024 / 8);
  CHECK(count_of("sin") == count_of("cos"));
}
