// Sparse matrices.
#include "digits.h"

namespace accuracy {
namespace {

/// Random entries, five a row, places in random order; of the lower triangle alone when it is asked for.
template <class T>
struct Entries {
  Entries(Data& data, std::vector<T> values, bool lower) : a(std::move(values)) {
    for (std::size_t k = 0; k < a.size(); ++k) {
      const Integer row = 1 + data.below(kOrder);
      irow.push_back(row);
      icol.push_back(1 + data.below(lower ? row : kOrder));
    }
  }
  std::vector<T> a;
  std::vector<Integer> irow;
  std::vector<Integer> icol;
};
constexpr Integer kEntries = 5 * kOrder;

template <class T>
std::vector<T> random_values(Data& data, std::size_t count) {
  if constexpr (std::is_same_v<T, Complex>) {
    return data.complexes(count);
  } else {
    return data.reals(count);
  }
}

/// y := A x by `multiply`(n, nnz, entries, x, y, ifail).
template <class T, class Multiply>
Computation sparse_product(bool lower, Multiply multiply) {
  return [lower, multiply](Data& data) {
    Entries<T> entries(data, random_values<T>(data, kEntries), lower);
    const std::vector<T> x = random_values<T>(data, kOrder);
    std::vector<T> y(kOrder);
    Integer ifail = 1;
    multiply(&kOrder, &kEntries, entries, x.data(), y.data(), &ifail);
    return gathered(y);
  };
}

/// f11xaf, f11xnf.
template <class T, class Entry>
Computation general_product(Entry entry) {
  return sparse_product<T>(false, [entry](auto n, auto nnz, const auto& e, auto x, auto y, auto ifail) {
    entry("N", n, nnz, e.a.data(), e.irow.data(), e.icol.data(), "N", x, y, ifail, 1, 1);
  });
}

/// f11xef, f11xsf.
template <class T, class Entry>
Computation symmetric_product(Entry entry) {
  return sparse_product<T>(true, [entry](auto n, auto nnz, const auto& e, auto x, auto y, auto ifail) {
    entry(n, nnz, e.a.data(), e.irow.data(), e.icol.data(), "N", x, y, ifail, 1);
  });
}

Vector canonical_form(Data& data) {
  Entries<QuarnFloat> entries(data, data.reals(kEntries), false);
  Integer n = kOrder;
  Integer nnz = kEntries;
  Integer ifail = 1;
  std::vector<Integer> istr(kOrder + 1);
  std::vector<Integer> iwork(std::size_t(kOrder) + kEntries);
  QuarnMP_f11zaf_(&n, &nnz, entries.a.data(), entries.irow.data(), entries.icol.data(), "S", "K", istr.data(),
                  iwork.data(), &ifail, 1, 1);
  entries.a.resize(std::size_t(nnz));
  return entries.a;
}

}  // namespace

std::vector<Case> sparse_cases() {
  return {
      {"f11zaf", "canonical form, duplicates summed", canonical_form, {}},
      {"f11xaf", "sparse product, n = 16", general_product<QuarnFloat>(QuarnMP_f11xaf_), {}},
      {"f11xnf", "the same, complex", general_product<Complex>(QuarnMP_f11xnf_), {}},
      {"f11xef", "symmetric sparse product", symmetric_product<QuarnFloat>(QuarnMP_f11xef_), {}},
      {"f11xsf", "Hermitian sparse product", symmetric_product<Complex>(QuarnMP_f11xsf_), {}},
  };
}

}  // namespace accuracy
