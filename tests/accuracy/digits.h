// Rows of the table of docs/digits.md: what they compute, and on which data.
#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/tesk2mp.h"

namespace accuracy {

using Vector = std::vector<QuarnFloat>;
using ComplexVector = std::vector<Complex>;

/// Numbers in (-1, 1) with D digits, whatever the working precision when they are asked for.
class Data {
 public:
  Data(int digits, unsigned seed) : digits_(digits), random_(seed) {}

  QuarnFloat real() {
    std::string text = random_.below(2) == 0 ? "0." : "-0.";
    for (int i = 0; i < digits_; ++i) {
      text += char('0' + random_.below(10));
    }
    return QuarnFloat(text);
  }
  Complex complex() {
    QuarnFloat re = real();
    return {std::move(re), real()};
  }
  Vector reals(std::size_t count) {
    return filled<Vector>(count, [this] { return real(); });
  }
  ComplexVector complexes(std::size_t count) {
    return filled<ComplexVector>(count, [this] { return complex(); });
  }
  /// 0 <= value < bound
  Integer below(Integer bound) { return Integer(random_.below(std::uint64_t(bound))); }

 private:
  template <class Container, class Make>
  static Container filled(std::size_t count, Make make) {
    Container values(count);
    std::generate(values.begin(), values.end(), make);
    return values;
  }

  int digits_;
  support::Random random_;
};

inline void append(Vector& result, const QuarnFloat& x) { result.push_back(x); }
inline void append(Vector& result, const Complex& z) {
  result.push_back(z.re);
  result.push_back(z.im);
}
template <class T>
void append(Vector& result, const std::vector<T>& values) {
  for (const T& value : values) {
    append(result, value);
  }
}
template <class... Values>
Vector gathered(const Values&... values) {
  Vector result;
  (append(result, values), ...);
  return result;
}

using Computation = std::function<Vector(Data&)>;

/// A row of the table; a routine that carries constants as doubles has a classic computation beside the full one.
struct Case {
  const char* routines;
  const char* what;
  Computation full;
  Computation classic;
};

inline constexpr Integer kOrder = 16;
inline constexpr std::size_t kElements = std::size_t(kOrder) * kOrder;

/// A random matrix with 4 added on its diagonal: well conditioned, but not diagonally dominant.
template <class T>
std::vector<T> well_conditioned(std::vector<T> a) {
  for (std::size_t i = 0; i < a.size(); i += kOrder + 1) {
    a[i] = a[i] + T(QuarnFloat(4));
  }
  return a;
}

// In the order of the table.
std::vector<Case> kernel_cases();
std::vector<Case> dense_cases();
std::vector<Case> transform_cases();
std::vector<Case> sparse_cases();

}  // namespace accuracy
