// A little of everything that a thread may compute, as text to be compared.
#pragma once

#include <string>
#include <vector>

#include "support/digits.h"
#include "tesk2mp/tesk2mp.hpp"

namespace threads {

/// Arithmetic, elementary functions, text in and out.
inline std::string numbers(int digits) {
  const support::Digits scope(digits);
  const QuarnFloat third = QuarnFloat(1) / 3;
  QuarnFloat sum = sqrt(QuarnFloat(2)) * third - fmod(QuarnFloat(7), third);
  for (const char* name :
       {"sin", "cos", "tan", "asin", "acos", "atan", "sinh", "cosh", "tanh", "exp", "log", "log10"}) {
    sum += QuarnEvalf1(name, third);
  }
  sum += pow(third, QuarnFloat(25, -1)) + atan2(third, QuarnFloat(-2)) + sin(QuarnFloat(100));
  char text[64];
  QFsprintf(text, "%.20e", sum);
  QuarnFloat read;
  QFsscanf(sum.to_string().c_str(), "%f", &read);
  return read.to_string() + " " + text;
}

/// Transforms, a factorisation, eigenvalues, and a failure.
inline std::string routines(int digits) {
  const support::Digits scope(digits);
  constexpr std::size_t n = 6;
  tesk2mp::Matrix<QuarnFloat> a(n, n);
  std::vector<Complex> z(30);
  for (std::size_t i = 0; i < n * n; ++i) {
    a(i % n, i / n) = QuarnFloat(1) / QuarnFloat(1 + i * i % 17) - (i % 7 == 0 ? 1 : 0);
    z[i % z.size()] = Complex(QuarnFloat(i) / 7, QuarnFloat(1) / QuarnFloat(i + 1));
  }
  tesk2mp::transform(z);
  std::string text = z[7].re.to_string() + " " + tesk2mp::determinant(a).to_string();
  for (const Complex& value : tesk2mp::eigenvalues(a)) {
    text += " " + value.re.to_string();
  }
  try {
    std::vector<QuarnFloat> one(1);
    tesk2mp::classic::transform_real(one);
  } catch (const tesk2mp::Error& failure) {
    text += std::string(" ") + failure.what();
  }
  return text;
}

}  // namespace threads
