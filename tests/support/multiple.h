// Upper Hessenberg matrices with defective eigenvalues of a chosen multiplicity: companions of integer polynomials.
#pragma once

#include <vector>

#include "support/matrices.h"

namespace support {

using Coefficients = std::vector<int>;  // the highest power first

inline std::vector<QuarnFloat> product_of_powers(const std::vector<std::pair<Coefficients, int>>& factors) {
  std::vector<QuarnFloat> product{1};
  for (const auto& [factor, power] : factors) {
    for (int k = 0; k < power; ++k) {
      std::vector<QuarnFloat> next(product.size() + factor.size() - 1);
      for (std::size_t i = 0; i < product.size(); ++i) {
        for (std::size_t j = 0; j < factor.size(); ++j) {
          next[i + j] += product[i] * factor[j];
        }
      }
      product = std::move(next);
    }
  }
  return product;
}

struct MultipleEigenvalues {
  const char* name;
  int clusters;
  std::vector<std::pair<Coefficients, int>> (*factors)(int k);

  Matrix<QuarnFloat> matrix(int k) const {
    const std::vector<QuarnFloat> p = product_of_powers(factors(k));
    const auto n = Integer(p.size() - 1);
    Matrix<QuarnFloat> h(n, n);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        h(i, j) = i == 1 ? -p[std::size_t(j)] : QuarnFloat(i == j + 1 ? 1 : 0);
      }
    }
    return h;
  }
};

using Factors = std::vector<std::pair<Coefficients, int>>;
inline const MultipleEigenvalues kMultipleEigenvalues[] = {
    {"(x - 1)^k", 1,
     [](int k) {
       return Factors{{{1, -1}, k}};
     }},
    {"(x - 1)^k (x + 2) (x - 3) (x^2 + 5)", 1,
     [](int k) {
       return Factors{{{1, -1}, k}, {{1, 2}, 1}, {{1, -3}, 1}, {{1, 0, 5}, 1}};
     }},
    {"(x - 1)^k (x + 2)^k", 2,
     [](int k) {
       return Factors{{{1, -1}, k}, {{1, 2}, k}};
     }},
    {"(x^2 + 1)^k", 1,
     [](int k) {
       return Factors{{{1, 0, 1}, k}};
     }},
    {"(x^2 + 1)^k (x - 3) (x^2 + 5)", 1,
     [](int k) {
       return Factors{{{1, 0, 1}, k}, {{1, -3}, 1}, {{1, 0, 5}, 1}};
     }},
};

}  // namespace support
