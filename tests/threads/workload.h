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

/// A sparse system and its canonical form, a product, ranks, random numbers, in text.
inline std::string more_routines(const tesk2mp::Matrix<QuarnFloat>& a) {
  const std::size_t n = a.rows();
  tesk2mp::SparseMatrix<QuarnFloat> sparse(n);
  for (std::size_t k = n * n; k-- > 0;) {
    sparse.add(k % n, k / n, a(k % n, k / n) + (k % (n + 1) == 0 ? QuarnFloat(20) : QuarnFloat(0)));
  }
  tesk2mp::Random random(7);
  const std::vector<QuarnFloat> b = random.take(n);
  // Large enough to be formed modulo primes.
  tesk2mp::Matrix<QuarnFloat> large(24, 24);
  for (std::size_t k = 0; k < 24 * 24; ++k) {
    large(k % 24, k / 24) = a(k % n, k / n % n) * QuarnFloat(k + 1);
  }
  std::string text =
      tesk2mp::multiply(large, large)(1, 2).to_string() + " " + tesk2mp::solve(a, b)[0].to_string() + " ";
  tesk2mp::SolverOptions options;
  options.method = tesk2mp::Method::bicgstab;
  try {
    text += tesk2mp::norm2(tesk2mp::solve_iteratively(sparse, b, options).x).to_string();
  } catch (const tesk2mp::Error& failure) {
    text += failure.what();  // few digits
  }
  for (const Integer rank : tesk2mp::rank(b)) {
    text += " " + std::to_string(rank);
  }
  return text;
}

/// Transforms, a factorisation, eigenvalues, zeros of a quartic, a failure, and more.
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
  for (const auto& zero : tesk2mp::quartic_zeros(1, 0, 2, 0, 1)) {
    text += " " + zero.value.im.to_string();
  }
  std::vector<QuarnFloat> x(12);
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = QuarnFloat(1) / QuarnFloat(i + 1);
  }
  tesk2mp::transform_real(x);
  text += " " + x[5].to_string() + " " + more_routines(a);
  try {
    std::vector<QuarnFloat> one(1);
    tesk2mp::classic::transform_real(one);
  } catch (const tesk2mp::Error& failure) {
    text += std::string(" ") + failure.what();
  }
  return text;
}

}  // namespace threads
