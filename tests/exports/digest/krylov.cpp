// Digests of the exports for large matrices that are functions: of a full matrix that the context holds.
#include <algorithm>

#include "digest.h"

namespace digest {
namespace {

template <class T>
T adjoint_of(const T& x) {
  if constexpr (std::is_same_v<T, Complex>) {
    return conj(x);
  } else {
    return x;
  }
}

/// A matrix of n rows, and its products.
template <class T>
struct Full {
  std::vector<T> a;
  Integer n;

  static void form(void* context, Integer what, const T* x, T* y) {
    const auto& self = *static_cast<const Full*>(context);
    const auto columns = Integer(self.a.size()) / self.n;
    const bool adjoint = what == 1;
    for (Integer i = 0; i < (adjoint ? columns : self.n); ++i) {
      y[i] = T();
      for (Integer j = 0; j < (adjoint ? self.n : columns); ++j) {
        const T& element = self.a[std::size_t(adjoint ? i * self.n + j : j * self.n + i)];
        y[i] = y[i] + (adjoint ? adjoint_of(element) : element) * x[j];
      }
    }
  }
};

template <class T, class F>
void hermitian(Suite& suite, const Entry<F>& entry) {
  if (entry.function == nullptr) {
    return;
  }
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size + 1;
    Full<T> matrix{c.numbers<T>(std::int64_t(n) * n), n};
    for (Integer j = 0; j < n; ++j) {
      for (Integer i = 0; i <= j; ++i) {
        T& above = matrix.a[std::size_t(j * n + i)];
        T& below = matrix.a[std::size_t(i * n + j)];
        above = above + adjoint_of(below);
        below = adjoint_of(above);
      }
    }
    for (const char* which : {"LM", "sa", "BE", "XX"}) {
      const Integer k = 1 + c.below(n);
      std::vector<QuarnFloat> w(static_cast<std::size_t>(k)), residuals(w);
      std::vector<T> z(std::size_t(n) * w.size());
      Integer products = -99;
      Integer info = -99;
      entry.function(which, n, k, nullptr, Full<T>::form, &matrix, 0, 0, 1000, nullptr, w.data(), z.data(), n,
                     residuals.data(), &products, &info, 2);
      Suite::take(*entry.result, w, z, residuals, products, info);
    }
  });
}

template <class T, class F>
void general(Suite& suite, const Entry<F>& entry) {
  if (entry.function == nullptr) {
    return;
  }
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size + 1;
    Full<T> matrix{c.numbers<T>(std::int64_t(n) * n), n};
    for (const char* which : {"LM", "sr", "LI", "XX"}) {
      const Integer k = 1 + c.below(n);
      std::vector<Complex> w(std::size_t(k) + 1), z(std::size_t(n) * w.size());
      std::vector<QuarnFloat> residuals(w.size());
      Integer found = -99;
      Integer products = -99;
      Integer info = -99;
      entry.function(which, n, k, nullptr, Full<T>::form, &matrix, 0, 0, 1000, nullptr, w.data(), z.data(), n,
                     residuals.data(), &found, &products, &info, 2);
      Suite::take(*entry.result, w, z, residuals, found, products, info);
    }
  });
}

template <class T, class F>
void singular(Suite& suite, const Entry<F>& entry) {
  if (entry.function == nullptr) {
    return;
  }
  suite.cases(3, [&](Case& c) {
    const Integer m = c.size + 1;
    const Integer n = 1 + c.below(m + 3);
    Full<T> matrix{c.numbers<T>(std::int64_t(m) * n), m};
    for (const char* which : {"LM", "sm", "XX"}) {
      const Integer k = 1 + c.below(std::min(m, n));
      std::vector<QuarnFloat> s(static_cast<std::size_t>(k)), residuals(s.size());
      std::vector<T> u(std::size_t(m) * s.size()), v(std::size_t(n) * s.size());
      Integer products = -99;
      Integer info = -99;
      entry.function(which, m, n, k, Full<T>::form, &matrix, 0, 0, 1000, nullptr, s.data(), u.data(), m, v.data(), n,
                     residuals.data(), &products, &info, 2);
      Suite::take(*entry.result, s, u, v, residuals, products, info);
    }
  });
}

template <class T, class F>
void least_squares(Suite& suite, const Entry<F>& entry) {
  if (entry.function == nullptr) {
    return;
  }
  suite.cases(2, [&](Case& c) {
    const Integer m = c.size + 1;
    const Integer n = 1 + c.below(m);
    Full<T> matrix{c.numbers<T>(std::int64_t(m) * n), m};
    const std::vector<T> b = c.numbers<T>(m);
    for (const int damp : {0, 1, -1}) {
      std::vector<T> x(static_cast<std::size_t>(n));
      std::vector<QuarnFloat> norms(4);
      Integer iterations = -99;
      Integer stop = -99;
      Integer info = -99;
      entry.function(m, n, Full<T>::form, &matrix, b.data(), damp, 0, 0, 0, 200, x.data(), &norms[0], &norms[1],
                     &norms[2], &norms[3], &iterations, &stop, &info);
      Suite::take(*entry.result, x, norms, iterations, stop, info);
    }
  });
}

}  // namespace

void krylov(Suite& suite) {
  hermitian<QuarnFloat>(suite, ENTRY(QuarnMPX_deigsh_));
  hermitian<Complex>(suite, ENTRY(QuarnMPX_zeigsh_));
  general<QuarnFloat>(suite, ENTRY(QuarnMPX_deigs_));
  general<Complex>(suite, ENTRY(QuarnMPX_zeigs_));
  singular<QuarnFloat>(suite, ENTRY(QuarnMPX_dsvds_));
  singular<Complex>(suite, ENTRY(QuarnMPX_zsvds_));
  least_squares<QuarnFloat>(suite, ENTRY(QuarnMPX_dlsmr_));
  least_squares<Complex>(suite, ENTRY(QuarnMPX_zlsmr_));
}

}  // namespace digest
