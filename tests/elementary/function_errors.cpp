// Prints the largest error of each function against MPFR, and of the functions of complex numbers against MPC and Arb,
// over many random arguments, in units of the last place, as the table of docs/accuracy.md. Run as: function_errors
// SEED[:NAME] CASES DIGITS [CASES DIGITS]...; a name restricts it to the functions of that name.
#include <cstdio>
#include <cstdlib>

#include "elementary/complex_cases.h"
#include "elementary/special_complex_cases.h"

namespace {

struct Run {
  long count;
  int digits;
  std::mt19937_64 random;
  bool good = true;

  /// draw() gives the arguments of a case, measure() its error; more than `allowed` is a fault.
  template <class Draw, class Measure>
  void sweep(const std::string& name, double allowed, const Draw& draw, const Measure& measure) {
    double worst = 0;
    std::string at;
    for (long k = 0; k < count; ++k) {
      const auto arguments = draw(std::size_t(k));
      const double error = measure(arguments.first, arguments.second);
      if (error > worst) {
        worst = error;
        at = arguments.first + ", " + arguments.second;
      }
    }
    std::printf("%-10s %5d digits %8ld cases: %.7f", name.c_str(), digits, count, worst);
    if (worst > allowed) {
      good = false;
      std::printf("  WRONG at %s", at.c_str());
    }
    std::printf("\n");
    std::fflush(stdout);
  }
};

}  // namespace

int main(int argc, char** argv) {
  const std::string choice = argc > 1 ? argv[1] : "1";
  const std::string only = choice.find(':') == std::string::npos ? "" : choice.substr(choice.find(':') + 1);
  const auto chosen = [&](const std::string& name) { return only.empty() || only == name; };
  bool good = argc > 3;
  for (int i = 2; i + 1 < argc; i += 2) {
    const auto seed = unsigned(std::strtoul(choice.c_str(), nullptr, 10));
    Run run{std::atol(argv[i]), std::atoi(argv[i + 1]), std::mt19937_64(seed)};
    constexpr double kCorrectlyRounded = 0.5000001;
    using Pair = std::pair<std::string, std::string>;
    for (const cases::Case& f : cases::functions_of_one()) {
      if (chosen(f.name)) {
        run.sweep(
            f.name, kCorrectlyRounded,
            [&](std::size_t k) {
              return Pair(cases::random_argument(run.random, f.ranges[k % f.ranges.size()], run.digits), "");
            },
            [&](const std::string& x, const std::string&) { return cases::error_of(f, x, run.digits); });
      }
    }
    for (const cases::Case2& f : cases::functions_of_two()) {
      if (chosen(f.name)) {
        run.sweep(
            f.name, kCorrectlyRounded,
            [&](std::size_t) {
              std::string x = cases::random_argument(run.random, f.first, run.digits);
              return Pair(std::move(x), cases::random_argument(run.random, f.second, run.digits));
            },
            [&](const std::string& x, const std::string& y) { return cases::error_of(f, x, y, run.digits); });
      }
    }
    for (const cases::ComplexCase& f : cases::complex_functions()) {
      const std::string name = std::string(f.name) + "(z)";
      if (chosen(name)) {
        run.sweep(
            name, 1, [&](std::size_t) { return cases::random_complex(run.random, f, run.digits); },
            [&](const std::string& re, const std::string& im) { return cases::error_of(f, re, im, run.digits); });
      }
    }
    for (const cases::SpecialComplexCase& f : cases::special_complex_functions()) {
      const std::string name = std::string(f.name) + "(z)";
      if (chosen(name)) {
        run.sweep(
            name, 0.51, [&](std::size_t) { return cases::random_special_complex(run.random, f, run.digits); },
            [&](const std::string& re, const std::string& im) { return cases::error_of(f, re, im, run.digits); });
      }
    }
    good = good && run.good;
  }
  return good ? 0 : 1;
}
