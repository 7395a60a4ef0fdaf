#include "tests/exports/digest/digest.h"

namespace digest {

namespace {

template <class T>
struct Entries {
  Integer n, nnz;
  std::vector<T> a;
  std::vector<Integer> irow, icol;
};

/// Entries in any order with duplicates and zeros; of the lower triangle alone if wanted; sometimes a wrong index.
template <class T>
Entries<T> entries(Case& c, bool lower, bool canonical) {
  Entries<T> made = {c.size, 0, {}, {}, {}};
  for (Integer i = 1; i <= made.n; ++i) {
    for (Integer j = 1; j <= (lower ? i : made.n); ++j) {
      if (c.below(3) != 0) {
        made.a.push_back(c.below(6) == 0 ? T(0.0) : c.number<T>());
        made.irow.push_back(i);
        made.icol.push_back(j);
      }
    }
  }
  if (!canonical) {
    for (std::size_t k = made.a.size(); k > 1; --k) {
      const auto other = std::size_t(c.below(Integer(k)));
      std::swap(made.irow[k - 1], made.irow[other]);
      std::swap(made.icol[k - 1], made.icol[other]);
    }
    for (std::size_t k = 0; k + 1 < made.a.size() && c.below(3) != 0; k += 3) {
      made.irow[k] = made.irow[k + 1];
      made.icol[k] = made.icol[k + 1];
    }
    if (!made.a.empty() && c.below(5) == 0) {
      (c.below(2) == 0 ? made.irow : made.icol)[std::size_t(c.below(Integer(made.a.size())))] = made.n + 1;
    }
  }
  made.nnz = Integer(made.a.size());
  if (made.a.empty()) {
    made.a.resize(1);
    made.irow.resize(1);
    made.icol.resize(1);
  }
  return made;
}

template <class T, class... E>
void canonical_form(Suite& suite, bool lower, E... forms) {
  suite.cases(2, [&](Case& c) {
    for (const char* dup : {"R", "s", "F"}) {
      for (const char* zero : {"r", "K", "f"}) {
        const auto e = entries<T>(c, lower, c.below(4) == 0);
        const std::vector<Integer> istr(std::size_t(e.n + 1), -5);
        const Scratch<Integer> iwork(std::size_t(e.n + e.nnz + 1));
        (suite.run_form<2>(forms, e.n, e.nnz, e.a, e.irow, e.icol, dup, zero, istr, iwork), ...);
      }
    }
  });
  suite.few_cases([&](Case& c) {
    const auto e = entries<T>(c, lower, true);
    const std::vector<Integer> istr(9);
    const Scratch<Integer> iwork(40);
    const auto wrong = [&](Integer n, Integer nnz, const char* dup, const char* zero) {
      (suite.run_form<2>(forms, n, nnz, e.a, e.irow, e.icol, dup, zero, istr, iwork), ...);
    };
    wrong(0, 1, "R", "R");
    wrong(4, -1, "R", "R");
    wrong(4, 1, "X", "R");
    wrong(4, 1, "R", "X");
    wrong(4, 0, "R", "R");
  });
}

template <class T, bool kTriangle, class... E>
void product(Suite& suite, E... forms) {
  const auto run = [&](const char* trans, const Entries<T>& e, const char* check, const std::vector<T>& x,
                       const std::vector<T>& y) {
    if constexpr (kTriangle) {
      (suite.run_form<1>(forms, e.n, e.nnz, e.a, e.irow, e.icol, check, x, y), ...);
    } else {
      (suite.run_form<2>(forms, trans, e.n, e.nnz, e.a, e.irow, e.icol, check, x, y), ...);
    }
  };
  suite.cases(2, [&](Case& c) {
    for (const char* trans : {"N", "t", "X"}) {
      for (const char* check : {"c", "N", "X"}) {
        const auto e = entries<T>(c, kTriangle, *check == 'N' || c.below(3) != 0);
        run(trans, e, check, c.numbers<T>(e.n), std::vector<T>(std::size_t(e.n + 1)));
      }
    }
  });
  suite.few_cases([&](Case& c) {
    auto e = entries<T>(c, kTriangle, true);
    const auto x = c.numbers<T>(4);
    const Integer nnz = e.nnz;
    for (const Integer wrong : {-1, 0, 17, 11}) {
      e.nnz = wrong;
      if (wrong > 0) {
        e.a.resize(20), e.irow.resize(20, 4), e.icol.resize(20, 4);
      }
      run("N", e, "C", x, x);
    }
    e.nnz = nnz;
    e.n = -2;
    run("N", e, "C", x, x);
  });
}

template <class T, class Diagonal, class Jacobi, class Ssor>
void preconditioners(Suite& suite, Diagonal diagonal, Jacobi jacobi, Ssor ssor) {
  suite.cases(2, [&](Case& c) {
    const auto e = entries<T>(c, false, c.below(4) != 0);
    const std::vector<Integer> istr(std::size_t(e.n + 1), -5);
    const std::vector<Integer> idiag(std::size_t(std::max<Integer>(1, e.n)), -5);
    suite.run(diagonal, e.n, e.nnz, e.a, e.irow, e.icol, istr, idiag, Integer(-99));
    // A full matrix, whose structure is known.
    const Integer n = std::max<Integer>(1, e.n);
    const auto a = c.numbers<T>(std::int64_t(n) * n);
    std::vector<Integer> columns, starts, places;
    for (Integer i = 0; i < n; ++i) {
      starts.push_back(i * n + 1);
      places.push_back(i * n + i + 1);
      for (Integer j = 1; j <= n; ++j) {
        columns.push_back(j);
      }
    }
    starts.push_back(n * n + 1);
    const auto x = c.numbers<T>(n);
    for (const char* trans : {"N", "t", "C", "X"}) {
      suite.run(jacobi, trans, e.n, a, places, x, Integer(-99), 1);
      suite.run(ssor, trans, e.n, a, columns, starts, places, QuarnFloat(c.below(9)) / 4, x, Integer(-99), 1);
    }
  });
}

/// The forms of an incomplete factorisation. A triangle has one permutation and no places of pivots.
template <class T, bool kTriangle, class... E>
void incomplete_factors(Suite& suite, E... forms) {
  suite.cases(2, [&](Case& c) {
    for (const char* search : {"N", "R", "C", "b", "d", "M"}) {
      auto e = entries<T>(c, kTriangle, c.below(5) != 0);
      const auto n = std::size_t(std::max<Integer>(1, e.n));
      const Integer la = e.nnz + Integer(n * n) - Integer(c.below(8) == 0 ? n * n : 0);
      e.a.resize(std::size_t(std::max<Integer>(la, 1)));
      e.irow.resize(e.a.size());
      e.icol.resize(e.a.size());
      const std::vector<Integer> orders(n, -5), starts(n + 1, -5);
      const Integer level = Integer(c.below(4)) - 1;
      const QuarnFloat drop = QuarnFloat(c.below(4)) / 10;
      if constexpr (kTriangle) {
        (suite.run_form<2>(forms, e.n, e.nnz, e.a, la, e.irow, e.icol, level, drop, "m", drop, search, orders, starts,
                           Integer(-9), Integer(-9)),
         ...);
      } else {
        (suite.run_form<2>(forms, e.n, e.nnz, e.a, la, e.irow, e.icol, level, drop, search, "n", orders, orders, starts,
                           orders, Integer(-9), Integer(-9)),
         ...);
      }
    }
  });
}

/// Solutions with full factors that follow one entry.
template <class T, bool kTriangle, class... E>
void factor_solutions(Suite& suite, E... forms) {
  suite.cases(2, [&](Case& c) {
    const Integer n = std::max<Integer>(1, c.size);
    std::vector<Integer> irow = {1}, icol = {1}, order, starts = {2}, places;
    for (Integer i = 1; i <= n; ++i) {
      for (Integer j = 1; j <= (kTriangle ? i : n); ++j) {
        irow.push_back(i);
        icol.push_back(j);
        if (i == j) {
          places.push_back(Integer(irow.size()));
        }
      }
      starts.push_back(Integer(irow.size()) + 1);
      order.push_back(n + 1 - i);
    }
    const auto a = c.numbers<T>(std::int64_t(irow.size()));
    if (c.below(3) == 0) {
      irow[std::size_t(c.below(Integer(irow.size())))] = 0;
    }
    const auto y = c.numbers<T>(n);
    const std::vector<T> x(std::size_t(n), T(5.0));
    for (const char* check : {"c", "X"}) {
      if constexpr (kTriangle) {
        (suite.run_form<1>(forms, n, a, Integer(irow.size()), irow, icol, order, starts, check, y, x), ...);
      } else {
        for (const char* trans : {"N", "t", "X"}) {
          (suite.run_form<2>(forms, trans, n, a, Integer(irow.size()), irow, icol, order, order, starts, places, check,
                             y, x),
           ...);
        }
      }
    }
  });
}

/// The arrays that a complete factorisation asks for.
template <class T>
struct FactorArrays {
  std::vector<T> a;
  std::vector<Integer> irow, icol;

  static void make(void* context, Integer count, T** a, Integer** irow, Integer** icol) {
    auto& arrays = *static_cast<FactorArrays*>(context);
    arrays.a.resize(std::size_t(count));
    arrays.irow.resize(std::size_t(count));
    arrays.icol.resize(std::size_t(count));
    *a = arrays.a.data();
    *irow = arrays.irow.data();
    *icol = arrays.icol.data();
  }
};

template <class T, class Lu, class Cholesky>
void direct_factors(Suite& suite, const Lu& lu, const Cholesky& cholesky) {
  if (lu.function == nullptr || cholesky.function == nullptr) {
    return;
  }
  suite.cases(2, [&](Case& c) {
    for (const bool triangle : {false, true}) {
      const auto e = entries<T>(c, triangle, c.below(5) != 0);
      FactorArrays<T> arrays;
      std::vector<Integer> rows(std::size_t(e.n) + 1), columns(rows), starts(rows), diagonals(rows), order(rows);
      for (Integer k = 0; k < e.n; ++k) {
        order[std::size_t(k)] = e.n - k;
      }
      const Integer* const given = c.below(3) == 0 ? order.data() : nullptr;
      Integer info = -99;
      if (triangle) {
        cholesky.function(e.n, e.nnz, e.a.data(), e.irow.data(), e.icol.data(), given, FactorArrays<T>::make, &arrays,
                          rows.data(), starts.data(), &info);
      } else {
        lu.function(e.n, e.nnz, e.a.data(), e.irow.data(), e.icol.data(), given, FactorArrays<T>::make, &arrays,
                    rows.data(), columns.data(), starts.data(), diagonals.data(), &info);
      }
      Suite::take(triangle ? *cholesky.result : *lu.result, arrays.a, arrays.irow, arrays.icol, rows, columns, starts,
                  diagonals, info);
    }
  });
}

void fill_order(Suite& suite, const Entry<decltype(&QuarnMPX_sparse_order_)>& order) {
  suite.cases(2, [&](Case& c) {
    for (const char* kind : {"S", "r", "X"}) {
      const auto e = entries<QuarnFloat>(c, false, c.below(2) == 0);
      suite.run(order, kind, e.n, e.nnz, e.irow, e.icol, std::vector<Integer>(std::size_t(e.n) + 1), Integer(-99), 1);
    }
  });
}

}  // namespace

void sparse(Suite& suite) {
  fill_order(suite, ENTRY(QuarnMPX_sparse_order_));
  direct_factors<QuarnFloat>(suite, ENTRY(QuarnMPX_sparse_lu_), ENTRY(QuarnMPX_sparse_cholesky_));
  direct_factors<Complex>(suite, ENTRY(QuarnMPX_zsparse_lu_), ENTRY(QuarnMPX_zsparse_cholesky_));
  incomplete_factors<QuarnFloat, false>(suite, ENTRY(QuarnMP_f11daf_), ENTRY(QuarnMP_f11dafn_));
  incomplete_factors<Complex, false>(suite, ENTRY(QuarnMP_f11dnf_), ENTRY(QuarnMP_f11dnfn_));
  incomplete_factors<QuarnFloat, true>(suite, ENTRY(QuarnMP_f11jaf_), ENTRY(QuarnMP_f11jafn_));
  incomplete_factors<Complex, true>(suite, ENTRY(QuarnMP_f11jnf_), ENTRY(QuarnMP_f11jnfn_));
  factor_solutions<QuarnFloat, false>(suite, ENTRY(QuarnMP_f11dbf_), ENTRY(QuarnMP_f11dbfn_));
  factor_solutions<QuarnFloat, false>(suite, ENTRY(QuarnMPX_f11dbf_), ENTRY(QuarnMPX_f11dbfn_));
  factor_solutions<Complex, false>(suite, ENTRY(QuarnMP_f11dpf_), ENTRY(QuarnMP_f11dpfn_));
  factor_solutions<Complex, false>(suite, ENTRY(QuarnMPX_f11dpf_), ENTRY(QuarnMPX_f11dpfn_));
  factor_solutions<QuarnFloat, true>(suite, ENTRY(QuarnMP_f11jbf_), ENTRY(QuarnMP_f11jbfn_));
  factor_solutions<QuarnFloat, true>(suite, ENTRY(QuarnMPX_f11jbf_), ENTRY(QuarnMPX_f11jbfn_));
  factor_solutions<Complex, true>(suite, ENTRY(QuarnMP_f11jpf_), ENTRY(QuarnMP_f11jpfn_));
  factor_solutions<Complex, true>(suite, ENTRY(QuarnMPX_f11jpf_), ENTRY(QuarnMPX_f11jpfn_));
  canonical_form<QuarnFloat>(suite, false, ENTRY(QuarnMP_f11zaf_), ENTRY(QuarnMP_f11zafn_));
  canonical_form<QuarnFloat>(suite, false, ENTRY(QuarnMPX_f11zaf_), ENTRY(QuarnMPX_f11zafn_));
  canonical_form<Complex>(suite, false, ENTRY(QuarnMP_f11znf_), ENTRY(QuarnMP_f11znfn_));
  canonical_form<Complex>(suite, false, ENTRY(QuarnMPX_f11znf_), ENTRY(QuarnMPX_f11znfn_));
  canonical_form<QuarnFloat>(suite, true, ENTRY(QuarnMP_f11zbfn_));
  canonical_form<QuarnFloat>(suite, true, ENTRY(QuarnMPX_f11zbf_), ENTRY(QuarnMPX_f11zbfn_));
  canonical_form<Complex>(suite, true, ENTRY(QuarnMP_f11zpf_), ENTRY(QuarnMP_f11zpfn_));
  canonical_form<Complex>(suite, true, ENTRY(QuarnMPX_f11zpf_), ENTRY(QuarnMPX_f11zpfn_));
  preconditioners<QuarnFloat>(suite, ENTRY(QuarnMPX_sparse_diagonal_), ENTRY(QuarnMPX_jacobi_), ENTRY(QuarnMPX_ssor_));
  preconditioners<Complex>(suite, ENTRY(QuarnMPX_zsparse_diagonal_), ENTRY(QuarnMPX_zjacobi_), ENTRY(QuarnMPX_zssor_));
  product<QuarnFloat, false>(suite, ENTRY(QuarnMP_f11xaf_), ENTRY(QuarnMP_f11xafn_));
  product<QuarnFloat, false>(suite, ENTRY(QuarnMPX_f11xaf_), ENTRY(QuarnMPX_f11xafn_));
  product<Complex, false>(suite, ENTRY(QuarnMP_f11xnf_), ENTRY(QuarnMP_f11xnfn_));
  product<Complex, false>(suite, ENTRY(QuarnMPX_f11xnf_), ENTRY(QuarnMPX_f11xnfn_));
  product<QuarnFloat, true>(suite, ENTRY(QuarnMP_f11xef_), ENTRY(QuarnMP_f11xefn_));
  product<QuarnFloat, true>(suite, ENTRY(QuarnMPX_f11xef_), ENTRY(QuarnMPX_f11xefn_));
  product<Complex, true>(suite, ENTRY(QuarnMP_f11xsf_), ENTRY(QuarnMP_f11xsfn_));
  product<Complex, true>(suite, ENTRY(QuarnMPX_f11xsf_), ENTRY(QuarnMPX_f11xsfn_));
}

}  // namespace digest
