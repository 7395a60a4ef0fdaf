// Prints the tables of docs/accuracy.md: errors of the transforms against MPFR.
#include <cstdio>
#include <initializer_list>

#include "measure.h"
#include "support/digits.h"

namespace {

/// Forward and backward error against the definition, in units of 10^-unit_digits.
template <class Entry>
void print_pair(Entry forward, Entry backward, Integer n, int unit_digits) {
  std::printf(" %.2f / %.2f |", sample::error_against_definition(forward, true, n, unit_digits),
              sample::error_against_definition(backward, false, n, unit_digits));
  std::fflush(stdout);
}

/// Errors of companions, in units of the working digits.
template <class Entry>
void print_companions(Entry forward, Entry backward, std::initializer_list<Integer> lengths) {
  std::printf("| N | 20 digits | 50 | 100 | 1000 |\n|---|---|---|---|---|\n");
  for (const Integer n : lengths) {
    std::printf("| %ld |", long(n));
    for (const int digits : {20, 50, 100, 1000}) {
      const oracle::Precision precision(digits + 20);
      const support::Digits scope(digits);
      print_pair(forward, backward, n, digits);
    }
    std::printf("\n");
  }
  std::printf("\n");
}

/// Errors of classic entries, in units of 10^-16.
template <class Entry>
void print_classic(Entry forward, Entry backward, std::initializer_list<Integer> lengths) {
  std::printf("| N | 16 digits | 20 | 50 | 100 |\n|---|---|---|---|---|\n");
  for (const Integer n : lengths) {
    std::printf("| %ld |", long(n));
    for (const int digits : {16, 20, 50, 100}) {
      const oracle::Precision precision(digits + 20);
      const support::Digits scope(digits);
      print_pair(forward, backward, n, 16);
    }
    std::printf("\n");
  }
  std::printf("\n");
}

}  // namespace

int main() {
  const std::initializer_list<Integer> real_lengths = {2,  3,  4,   5,   7,   8,   11,  13,   16,   17,  19,
                                                       60, 64, 100, 210, 289, 360, 512, 1000, 1001, 1024};
  const std::initializer_list<Integer> complex_lengths = {2,  3,  4,  5,   7,   11,   19,   30,   59,
                                                          61, 64, 97, 128, 360, 1000, 1009, 1024, 1147};
  print_companions(QuarnMPX_c06faf_, QuarnMPX_c06fbf_, real_lengths);
  print_classic(QuarnMP_c06faf_, QuarnMP_c06fbf_, real_lengths);
  print_companions(QuarnMPX_c06pcf_, QuarnMPX_c06pcf_, complex_lengths);
  print_classic(QuarnMP_c06pcf_, QuarnMP_c06pcf_, complex_lengths);
}
