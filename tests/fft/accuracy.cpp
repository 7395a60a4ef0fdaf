// Prints the tables of docs/accuracy.md: errors of the transforms against MPFR.
#include <cstdio>

#include "measure.h"
#include "support/digits.h"

namespace {

using Entry = sample::Entry;

/// Forward and backward error against the definition, in units of 10^-unit_digits.
void print_pair(Entry forward, Entry backward, Integer n, int unit_digits) {
  std::printf(" %.2f / %.2f |", sample::error_against_definition(forward, true, n, unit_digits),
              sample::error_against_definition(backward, false, n, unit_digits));
}

}  // namespace

int main() {
  const Integer lengths[] = {2, 3, 4, 5, 7, 8, 11, 13, 16, 17, 19, 60, 64, 100, 210, 289, 360, 512, 1000, 1001, 1024};
  const int all_digits[] = {20, 50, 100, 1000};

  std::printf("| N | 20 digits | 50 | 100 | 1000 |\n|---|---|---|---|---|\n");
  for (const Integer n : lengths) {
    std::printf("| %ld |", long(n));
    for (const int digits : all_digits) {
      const oracle::Precision precision(digits + 20);
      const support::Digits scope(digits);
      print_pair(c06faf_full_, c06fbf_full_, n, digits);
      std::fflush(stdout);
    }
    std::printf("\n");
  }

  std::printf("\n| N | 16 digits | 20 | 50 | 100 |\n|---|---|---|---|---|\n");
  for (const Integer n : lengths) {
    std::printf("| %ld |", long(n));
    for (const int digits : {16, 20, 50, 100}) {
      const oracle::Precision precision(digits + 20);
      const support::Digits scope(digits);
      print_pair(c06faf_, c06fbf_, n, 16);
    }
    std::printf("\n");
  }
}
