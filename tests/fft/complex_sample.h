// What the tests of the complex transforms share.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sample.h"
#include "tesk2mp/fft.h"

namespace sample {

using ComplexSequence = std::vector<Complex>;

/// Both accuracies of an entry.
struct SingleEntry {
  const char* name;
  decltype(&QuarnMP_c06pcf_) transform;
};
inline constexpr SingleEntry kSingleEntries[] = {{"classic", QuarnMP_c06pcf_}, {"companion", QuarnMPX_c06pcf_}};

inline ComplexSequence random_complex(Integer n, unsigned seed) {
  const Sequence parts = random_sequence(2 * n, seed);
  ComplexSequence x;
  for (std::size_t i = 0; i < std::size_t(n); ++i) {
    x.emplace_back(parts[2 * i], parts[2 * i + 1]);
  }
  return x;
}

/// Workspace that gives away whoever reads it before writing it.
inline ComplexSequence junk(std::int64_t length) {
  return ComplexSequence(std::size_t(length), Complex(QuarnFloat("nan"), QuarnFloat("nan")));
}

inline ComplexSequence transformed(decltype(&QuarnMP_c06pcf_) entry, const char* direct, ComplexSequence x) {
  const auto n = Integer(x.size());
  ComplexSequence work = junk(2 * std::int64_t(n));
  Integer ifail = -1;
  entry(direct, x.data(), &n, work.data(), &ifail, 1);
  return ifail == 0 ? x : ComplexSequence();
}

inline QuarnFloat largest_difference(const ComplexSequence& a, const ComplexSequence& b) {
  QuarnFloat largest = a.size() == b.size() ? QuarnFloat() : QuarnFloat("inf");
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
    const QuarnFloat difference = fabs(a[i].re - b[i].re) + fabs(a[i].im - b[i].im);
    // A NaN is a difference, too.
    largest = difference <= largest ? largest : difference;
  }
  return largest;
}

}  // namespace sample
