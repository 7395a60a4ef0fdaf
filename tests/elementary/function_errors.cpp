// Prints the largest error of each function of functions.h against MPFR over many random arguments, in units of the
// last place, as the table of docs/accuracy.md. Run as: function_errors SEED CASES DIGITS [CASES DIGITS]...
#include <cstdio>
#include <cstdlib>

#include "elementary/function_cases.h"

int main(int argc, char** argv) {
  const unsigned seed = argc > 1 ? unsigned(std::strtoul(argv[1], nullptr, 10)) : 1;
  bool good = argc > 3;
  for (int i = 2; i + 1 < argc; i += 2) {
    const long count = std::atol(argv[i]);
    const int digits = std::atoi(argv[i + 1]);
    std::mt19937_64 random(seed);
    const auto report = [&](const char* name, double worst, const std::string& argument) {
      std::printf("%-10s %5d digits %8ld cases: %.7f", name, digits, count, worst);
      if (worst > 0.5000001) {
        good = false;
        std::printf("  WRONG at %s", argument.c_str());
      }
      std::printf("\n");
      std::fflush(stdout);
    };
    for (const cases::Case& f : cases::functions_of_one()) {
      double worst = 0;
      std::string at;
      for (long k = 0; k < count; ++k) {
        const std::string x = cases::random_argument(random, f.ranges[std::size_t(k) % f.ranges.size()], digits);
        const double error = cases::error_of(f, x, digits);
        if (error > worst) {
          worst = error;
          at = x;
        }
      }
      report(f.name, worst, at);
    }
    for (const cases::Case2& f : cases::functions_of_two()) {
      double worst = 0;
      std::string at;
      for (long k = 0; k < count; ++k) {
        const std::string x = cases::random_argument(random, f.first, digits);
        const std::string y = cases::random_argument(random, f.second, digits);
        const double error = cases::error_of(f, x, y, digits);
        if (error > worst) {
          worst = error;
          at = x + ", " + y;
        }
      }
      report(f.name, worst, at);
    }
  }
  return good ? 0 : 1;
}
