// Calls of the incomplete factorisations for the tests, and matrices written out.
#pragma once

#include <string>
#include <vector>

#include "sparse/entries.h"
#include "src/kernels/scalar.h"
#include "support/outcome.h"
#include "support/pick.h"
#include "tesk2mp/incomplete.h"

namespace factorisation {

template <class T>
using Full = std::vector<std::vector<T>>;

template <class T>
Full<T> zeros(std::size_t n) {
  return Full<T>(n, std::vector<T>(n));
}

/// Arguments and results of F11DAF or F11JAF, and of the complex ones.
template <class T>
struct Factors {
  bool triangle = false;
  Integer n = 0, nnz = 0, la = 0, lfill = 0;
  QuarnFloat dtol, dscale;
  std::string search = "N", modified = "N";
  std::vector<T> a;
  std::vector<Integer> irow, icol, ipivp, ipivq, istr, idiag;
  Integer nnzc = -1, npivm = -1;

  Factors() = default;
  Factors(const entries::Coordinates<T>& matrix, bool lower_triangle)
      : triangle(lower_triangle),
        n(matrix.n),
        nnz(matrix.nnz()),
        la(nnz + n * n),
        a(matrix.a),
        irow(matrix.irow),
        icol(matrix.icol),
        ipivp(std::size_t(n), -1),
        ipivq(std::size_t(n), -1),
        istr(std::size_t(n) + 1, -1),
        idiag(std::size_t(n), -1) {
    a.resize(std::size_t(la));
    irow.resize(std::size_t(la), -1);
    icol.resize(std::size_t(la), -1);
  }

  support::Outcome factorise() {
    return support::outcome_of([this](char* buffer, Integer* ifail, int length) {
      if (triangle) {
        support::pick<T>(QuarnMP_f11jafn_, QuarnMP_f11jnfn_)(
            n, nnz, a.data(), la, irow.data(), icol.data(), lfill, dtol, modified.c_str(), dscale, search.c_str(),
            ipivp.data(), istr.data(), &nnzc, &npivm, buffer, ifail, 1, 1, length);
      } else {
        support::pick<T>(QuarnMP_f11dafn_, QuarnMP_f11dnfn_)(
            n, nnz, a.data(), la, irow.data(), icol.data(), lfill, dtol, search.c_str(), modified.c_str(), ipivp.data(),
            ipivq.data(), istr.data(), idiag.data(), &nnzc, &npivm, buffer, ifail, 1, 1, length);
      }
    });
  }
  support::Outcome solve(const std::string& trans, const std::vector<T>& y, std::vector<T>& x,
                         const std::string& check = "C", bool companion = false) const {
    return support::outcome_of([&](char* buffer, Integer* ifail, int length) {
      if (triangle) {
        const auto solver = companion ? support::pick<T>(QuarnMPX_f11jbfn_, QuarnMPX_f11jpfn_)
                                      : support::pick<T>(QuarnMP_f11jbfn_, QuarnMP_f11jpfn_);
        solver(n, a.data(), la, irow.data(), icol.data(), ipivp.data(), istr.data(), check.c_str(), y.data(), x.data(),
               buffer, ifail, 1, length);
      } else {
        const auto solver = companion ? support::pick<T>(QuarnMPX_f11dbfn_, QuarnMPX_f11dpfn_)
                                      : support::pick<T>(QuarnMP_f11dbfn_, QuarnMP_f11dpfn_);
        solver(trans.c_str(), n, a.data(), la, irow.data(), icol.data(), ipivp.data(), ipivq.data(), istr.data(),
               idiag.data(), check.c_str(), y.data(), x.data(), buffer, ifail, 1, 1, length);
      }
    });
  }

  std::size_t row(std::size_t k) const { return std::size_t(ipivp[k] - 1); }
  std::size_t column(std::size_t k) const { return std::size_t((triangle ? ipivp : ipivq)[k] - 1); }

  Full<T> lower() const {
    return part([](Integer i, Integer j) { return j < i; }, true);
  }
  Full<T> upper() const {
    if (!triangle) {
      return part([](Integer i, Integer j) { return j >= i; }, false);
    }
    const Full<T> l = lower();
    Full<T> u = zeros<T>(l.size());
    for (std::size_t i = 0; i < l.size(); ++i) {
      const T& pivot = a[std::size_t(istr[i + 1] - 2)];
      for (std::size_t j = i; j < l.size(); ++j) {
        u[i][j] = pivot * tesk::conjugate(l[j][i]);
      }
    }
    return u;
  }
  /// Where the factors have entries; of a triangle below the diagonal, and on it.
  Full<int> pattern() const {
    Full<int> found = zeros<int>(std::size_t(n));
    for (Integer k = istr[0]; k < istr[std::size_t(n)]; ++k) {
      found[std::size_t(irow[std::size_t(k - 1)] - 1)][std::size_t(icol[std::size_t(k - 1)] - 1)] = 1;
    }
    return found;
  }

 private:
  template <class Wanted>
  Full<T> part(const Wanted& wanted, bool unit) const {
    Full<T> full = zeros<T>(std::size_t(n));
    for (Integer k = istr[0]; k < istr[std::size_t(n)]; ++k) {
      const Integer i = irow[std::size_t(k - 1)];
      const Integer j = icol[std::size_t(k - 1)];
      if (wanted(i, j)) {
        full[std::size_t(i - 1)][std::size_t(j - 1)] = a[std::size_t(k - 1)];
      }
    }
    for (std::size_t i = 0; unit && i < full.size(); ++i) {
      full[i][i] = T(1.0);
    }
    return full;
  }
};

template <class T>
Full<T> product(const Full<T>& a, const Full<T>& b) {
  Full<T> c = zeros<T>(a.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t j = 0; j < a.size(); ++j) {
      for (std::size_t k = 0; k < a.size(); ++k) {
        c[i][j] = c[i][j] + a[i][k] * b[k][j];
      }
    }
  }
  return c;
}

/// The whole matrix of which the entries are stored.
template <class T>
Full<T> written_out(const entries::Coordinates<T>& matrix, bool triangle) {
  Full<T> full = zeros<T>(std::size_t(matrix.n));
  for (std::size_t k = 0; k < matrix.a.size(); ++k) {
    const auto i = std::size_t(matrix.irow[k] - 1);
    const auto j = std::size_t(matrix.icol[k] - 1);
    full[i][j] = matrix.a[k];
    if (triangle && i != j) {
      full[j][i] = tesk::conjugate(matrix.a[k]);
    }
  }
  return full;
}

/// A random sparse matrix; its diagonal is larger than the rest of its rows and columns times `dominance`, and real.
template <class T>
entries::Coordinates<T> sample(support::Random& random, Integer n, bool triangle, int dominance) {
  entries::Coordinates<T> a{n, {}, {}, {}};
  for (Integer i = 1; i <= n; ++i) {
    for (Integer j = 1; j <= (triangle ? i : n); ++j) {
      if (i == j) {
        a.add(i, j, T(QuarnFloat(3000000 * n * dominance) / 7 + 1));
      } else if (random.between(0, 3) == 0) {
        a.add(i, j, entries::random_value<T>(random));
      }
    }
  }
  return a;
}

}  // namespace factorisation
