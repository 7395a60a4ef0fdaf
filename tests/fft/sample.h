// What the transform tests share: the entries side by side, and seeded data.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "tesk2mp/fft.h"

namespace sample {

using Sequence = std::vector<QuarnFloat>;

/// The classic entries (0) and their companions (1).
struct Entries {
  const char* name;
  void (*forward)(QuarnFloat*, Integer*, QuarnFloat*, Integer*);
  void (*backward)(QuarnFloat*, Integer*, QuarnFloat*, Integer*);
};
inline constexpr Entries kEntries[] = {{"classic", QuarnMP_c06faf_, QuarnMP_c06fbf_},
                                       {"companion", QuarnMPX_c06faf_, QuarnMPX_c06fbf_}};

/// n numbers between -1 and 1, their digits as many as the working precision has, and not all of them non-zero.
inline Sequence random_sequence(Integer n, unsigned seed) {
  std::mt19937_64 random(seed);
  Sequence x;
  for (Integer i = 0; i < n; ++i) {
    std::string text = random() % 2 == 0 ? "-0." : "0.";
    for (int digit = 0; digit < QuarnDigits(); ++digit) {
      text += char('0' + random() % 10);
    }
    x.push_back(random() % 16 == 0 ? QuarnFloat() : QuarnFloat(text));
  }
  return x;
}

/// x transformed, with workspace full of NaN.
inline Sequence transformed(void (*entry)(QuarnFloat*, Integer*, QuarnFloat*, Integer*), Sequence x) {
  auto n = Integer(x.size());
  Sequence work(x.size(), QuarnFloat("nan"));
  Integer ifail = -1;
  entry(x.data(), &n, work.data(), &ifail);
  return ifail == 0 ? x : Sequence();
}

}  // namespace sample
