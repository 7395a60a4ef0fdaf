// The error of an entry on seeded random data.
#pragma once

#include "complex_sample.h"
#include "oracle.h"
#include "sample.h"

namespace sample {

using Entry = void (*)(QuarnFloat*, Integer*, QuarnFloat*, Integer*);

/// Against the passes in MPFR with the given constants, in units of 10^-digits.
inline double error_against_passes(Entry entry, bool forward, const oracle::Constants& constants, Integer n,
                                   int digits) {
  const Sequence x = random_sequence(n, unsigned(n));
  const Sequence result = transformed(entry, x);
  const std::vector<Integer> radices = oracle::radices_of(n);
  return forward ? oracle::error_in_units(oracle::from_half_complex(result),
                                          oracle::by_passes_forward(oracle::from_real(x), radices, constants), digits)
                 : oracle::error_in_units(oracle::from_real(result),
                                          oracle::by_passes_backward(oracle::from_half_complex(x), radices, constants),
                                          digits);
}

/// Against the definition with the true pi, in units of 10^-digits.
inline double error_against_definition(Entry entry, bool forward, Integer n, int digits) {
  const Sequence x = random_sequence(n, unsigned(n));
  const Sequence result = transformed(entry, x);
  return forward ? oracle::error_in_units(oracle::from_half_complex(result),
                                          oracle::by_definition(oracle::from_real(x), -1), digits)
                 : oracle::error_in_units(oracle::from_real(result),
                                          oracle::by_definition(oracle::from_half_complex(x), +1), digits);
}

/// The same of a complex entry.
inline double error_against_definition(decltype(&QuarnMP_c06pcf_) entry, bool forward, Integer n, int digits) {
  const ComplexSequence x = random_complex(n, unsigned(n));
  return oracle::error_in_units(oracle::from_complex(transformed(entry, forward ? "F" : "B", x)),
                                oracle::by_definition(oracle::from_complex(x), forward ? -1 : +1), digits);
}

}  // namespace sample
