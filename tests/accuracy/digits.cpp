// Prints the table of docs/digits.md: how many digits of each routine's result are true.
//
// Every case is computed at D digits and again, on the same data and by the companion where there is one, at 2 D + 50.
// What is printed is -log10 of norm(difference) / norm(result), Euclidean norms, the least of three sets of data. That
// the routines converge to the right thing as the digits grow is what the tests show, against MPFR and LAPACK.
#include "digits.h"

#include <cstdio>

using namespace accuracy;

namespace {

Vector at_precision(const Computation& compute, int digits, int data_digits, unsigned seed) {
  const support::Digits scope(digits);
  Data data(data_digits, seed);
  return compute(data);
}

/// -log10 of the relative error, not above D + 1.
double digits_true(const Computation& compute, const Computation& reference, int digits) {
  double least = digits + 1;
  for (const unsigned seed : {1U, 2U, 3U}) {
    const Vector result = at_precision(compute, digits, digits, seed);
    const Vector exact = at_precision(reference, 2 * digits + 50, digits, seed);
    const support::Digits scope(2 * digits + 50);
    QuarnFloat error = 0;
    QuarnFloat norm = 0;
    for (std::size_t i = 0; i < exact.size(); ++i) {
      error += (result[i] - exact[i]) * (result[i] - exact[i]);
      norm += exact[i] * exact[i];
    }
    if (error != 0) {
      least = std::min(least, FloatToDouble(log10(norm / error)) / 2);
    }
  }
  return least;
}

void print_row(const Case& row, const char* entry, const Computation& compute) {
  std::printf("| `%s` | %s | %s |", row.routines, row.what, entry);
  for (const int digits : {20, 50, 100, 1000}) {
    const double count = digits_true(compute, row.full, digits);
    if (count > digits - 0.05) {
      std::printf(" all |");
    } else {
      std::printf(" %.1f |", count);
    }
    std::fflush(stdout);
  }
  std::printf("\n");
}

}  // namespace

int main() {
  std::printf("| routine | what is computed | entry | 20 digits | 50 | 100 | 1000 |\n|---|---|---|--:|--:|--:|--:|\n");
  for (const auto& cases : {kernel_cases, dense_cases, transform_cases, sparse_cases}) {
    for (const Case& row : cases()) {
      if (row.classic) {
        print_row(row, "classic", row.classic);
      }
      print_row(row, row.classic ? "companion" : "", row.full);
    }
  }
}
