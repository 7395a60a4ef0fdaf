// Matrices for the exact products, and every kernel that this processor runs.
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "quarn/exact.h"
#include "support/random.h"

namespace exact_test {

inline std::vector<const char*> kernels() {
  std::vector<const char*> names;
  for (const char* const name : {"none", "sse2", "avx2", "avx512", "best"}) {
    if (QuarnExactKernel(name) != nullptr) {
      names.push_back(name);
    }
  }
  QuarnExactKernel("best");
  return names;
}

/// Sets digits and kernels back.
struct Restore {
  ~Restore() {
    QuarnSetDigits(20);
    QuarnExactKernel("best");
  }
};

/// Both signs, exponents within `spread`, zeros now and then, digits in runs of nines and zeros.
inline QuarnFloat number(support::Random& random, int digits, int spread) {
  if (random.once_in(20)) {
    return QuarnFloat();
  }
  std::string text = random.once_in(2) ? "-0." : "0.";
  text += char('1' + random.below(9));
  text += random.digits(std::size_t(digits) - 1);
  return QuarnFloat(text + "e" + std::to_string(random.between(-spread / 2, spread - spread / 2)));
}

template <class T>
T entry(support::Random& random, int digits, int spread) {
  if constexpr (std::is_same_v<T, Complex>) {
    return {number(random, digits, spread), number(random, digits, spread)};
  } else {
    return number(random, digits, spread);
  }
}

/// Leaves these digits in force.
inline QuarnFloat rounded_to(int digits, const QuarnFloat& x) {
  QuarnSetDigits(digits);
  return x * QuarnFloat(1);
}
inline Complex rounded_to(int digits, const Complex& z) { return {rounded_to(digits, z.re), rounded_to(digits, z.im)}; }
inline QuarnFloat conjugate(const QuarnFloat& x) { return x; }
inline Complex conjugate(const Complex& z) { return conj(z); }

/// A matrix inside a larger array, stored either way round, forwards or backwards.
struct Sample {
  std::vector<QuarnFloat> storage;
  std::size_t rows;
  std::size_t columns;
  std::ptrdiff_t row;
  std::ptrdiff_t column;
  std::ptrdiff_t start;

  Sample(support::Random& random, std::size_t m, std::size_t n, int digits, int spread) : rows(m), columns(n) {
    const auto height = std::ptrdiff_t((random.once_in(2) ? m : n));
    const bool by_columns = height == std::ptrdiff_t(m);
    const std::ptrdiff_t leading = height + std::ptrdiff_t(random.below(3));
    row = by_columns ? 1 : leading;
    column = by_columns ? leading : 1;
    storage.resize(std::size_t(leading) * (by_columns ? n : m));
    start = 0;
    if (random.once_in(3)) {
      start = row * std::ptrdiff_t(m - 1);
      row = -row;
    }
    QuarnSetDigits(digits);
    for (QuarnFloat& x : storage) {
      x = number(random, digits, spread);
    }
  }

  QuarnFloat& at(std::size_t i, std::size_t j) {
    return storage[std::size_t(start + std::ptrdiff_t(i) * row + std::ptrdiff_t(j) * column)];
  }
  QuarnMatrix<const QuarnFloat> view() const { return {storage.data() + start, row, column}; }
  QuarnMatrix<QuarnFloat> view() { return {storage.data() + start, row, column}; }
};

}  // namespace exact_test
