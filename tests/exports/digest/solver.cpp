#include "tests/exports/digest/digest.h"

namespace digest {

namespace {

/// A system that the caller alone knows: a matrix and a diagonal preconditioner.
template <class T>
struct System {
  Integer n;
  std::vector<T> a, diagonal;

  void multiply(const std::vector<T>& x, std::vector<T>& y, bool transposed) const {
    for (Integer i = 0; i < n; ++i) {
      T sum = T();
      for (Integer j = 0; j < n; ++j) {
        QuarnAddProduct(sum, a[std::size_t(transposed ? j + i * n : i + j * n)], x[std::size_t(j)],
                        transposed ? QuarnConjugateA : 0U);
      }
      y[std::size_t(i)] = sum;
    }
  }
};

template <class T>
System<T> system_of(Case& c) {
  System<T> made = {c.size, c.numbers<T>(std::int64_t(c.size) * c.size), {}};
  for (Integer i = 0; i < made.n; ++i) {
    if (c.size % 5 != 4) {
      made.a[std::size_t(i * (made.n + 1))] = T(QuarnFloat(made.n + i));
    }
    made.diagonal.push_back(T(QuarnFloat(made.n + i)));
  }
  return made;
}

struct Problem {
  const char* method;
  const char* precon;
  const char* norm;
  const char* weight;
  Integer iterm, m, maxitn, monit;
};

constexpr Problem kProblems[] = {
    {"RGMRES  ", "N", "2", "N", 1, 3, 40, 0}, {"rgmres  ", "P", "1", "W", 2, 2, 9, 1},
    {"CGS     ", "N", "I", "N", 1, 0, 40, 2}, {"CGS     ", "P", "2", "W", 2, 0, 40, 0},
    {"BICGSTAB", "N", "1", "N", 1, 1, 40, 0}, {"BICGSTAB", "P", "2", "N", 2, 2, 40, 1},
    {"TFQMR   ", "N", "2", "W", 1, 0, 40, 0}, {"TFQMR   ", "P", "I", "N", 2, 0, 7, 3},
};

/// The sums that a problem of one rank, with all the rows, asks for.
template <class T>
void form_sums(std::vector<T>& work, std::size_t n) {
  const auto integer = [](const T& x) {
    if constexpr (std::is_same_v<T, Complex>) {
      return std::size_t(FloatToInt(x.re));
    } else {
      return std::size_t(FloatToInt(x));
    }
  };
  const std::size_t count = integer(work[30]);
  for (std::size_t k = 0; k < count; ++k) {
    T* const sum = &work[integer(work[31]) - 1 + 4 * k];
    const std::size_t kind = integer(sum[0]);
    T total = T();
    for (std::size_t i = 0; i < n; ++i) {
      const T& x = work[integer(sum[1]) - 1 + i];
      QuarnAddProduct(total, x, work[integer(sum[2]) - 1 + i], QuarnConjugateA);
    }
    if constexpr (std::is_same_v<T, Complex>) {
      sum[3] = kind == 1 ? total : T(sqrt(total.re));
    } else {
      sum[3] = kind == 1 ? total : sqrt(total);
    }
  }
}

/// Sets up, iterates to the end, and looks at the progress on the way; through one family of forms.
template <class T, class Setup, class Iterate, class Progress>
void solve(Suite& suite, Setup setup, Iterate iterate, Progress progress) {
  suite.cases(3, [&](Case& c) {
    if (c.size < 2 || c.kind == Kind::special) {
      return;
    }
    for (const Problem& problem : kProblems) {
      const System<T> system = system_of<T>(c);
      const auto length = std::size_t(system.n);
      std::vector<T> work(100 + length * 16 + 40 + (Setup::kShared ? 512 : 0));
      auto u = c.numbers<T>(system.n);
      auto v = c.numbers<T>(system.n);
      std::vector<QuarnFloat> wgt(length, QuarnFloat("0.5"));
      const auto lwork = Integer(work.size());
      const Integer m = problem.m < system.n ? problem.m : system.n;
      Integer lwreq = 0;
      Integer ifail = 1;
      setup.step(problem, system.n, m, lwreq, work, lwork, ifail);
      Suite::take(*setup.result, lwreq, ifail);
      Integer irevcm = 0;
      for (int count = 0; ifail == 0 && irevcm != 4 && count < 1000; ++count) {
        iterate.step(irevcm, u, v, wgt, work, lwork, ifail);
        Suite::take(*iterate.result, irevcm, u, v, ifail);
        if (irevcm == 1 || irevcm == -1) {
          system.multiply(u, v, irevcm == -1);
        } else if (irevcm == 2) {
          for (std::size_t i = 0; i < length; ++i) {
            v[i] = u[i] / system.diagonal[i];
          }
        } else if (irevcm == 7) {
          form_sums(work, length);
        }
        if (count % 7 == 6) {
          suite.run_form<0>(progress, Integer(-9), QuarnFloat(), QuarnFloat(), QuarnFloat(), QuarnFloat(), work, lwork);
        }
        ifail = irevcm == 4 ? ifail : 1;
        if (irevcm != 4) {
          ifail = 0;
        }
      }
      suite.run_form<0>(iterate.entry, Integer(0), u, v, wgt, Scratch<T>(work.begin(), work.end()), lwork);
    }
  });
}

template <class F>
struct Setup {
  static constexpr bool kShared =
      std::is_same_v<F, decltype(&QuarnMPX_f11bdd_)> || std::is_same_v<F, decltype(&QuarnMPX_zf11bdd_)>;
  Result* result;
  F function;
  template <class T>
  void step(const Problem& p, Integer n, Integer m, Integer& lwreq, std::vector<T>& work, Integer lwork,
            Integer& ifail) const {
    const QuarnFloat none;
    char buffer[200];
    if constexpr (kShared) {
      const Integer first = 1;
      function(p.method, p.precon, p.norm, p.weight, &p.iterm, &n, &n, &first, &m, &none, &p.maxitn, &none, &none,
               &p.monit, &lwreq, work.data(), &lwork, &ifail, 8, 1, 1, 1);
    } else if constexpr (std::is_same_v<F, decltype(&QuarnMP_f11bdf_)> || std::is_same_v<T, Complex>) {
      function(p.method, p.precon, p.norm, p.weight, &p.iterm, &n, &m, &none, &p.maxitn, &none, &none, &p.monit, &lwreq,
               work.data(), &lwork, &ifail, 8, 1, 1, 1);
    } else {
      function(p.method, p.precon, p.norm, p.weight, p.iterm, n, m, none, p.maxitn, none, none, p.monit, &lwreq,
               work.data(), lwork, buffer, &ifail, 8, 1, 1, 1, 200);
    }
  }
};

template <class F>
struct Iterate {
  Entry<F> entry;
  Result* result;
  template <class T>
  void step(Integer& irevcm, std::vector<T>& u, std::vector<T>& v, std::vector<QuarnFloat>& wgt, std::vector<T>& work,
            Integer lwork, Integer& ifail) const {
    char buffer[200];
    ifail = 1;
    if constexpr (std::is_same_v<F, decltype(&QuarnMP_f11bef_)> || std::is_same_v<T, Complex>) {
      entry.function(&irevcm, u.data(), v.data(), wgt.data(), work.data(), &lwork, &ifail);
    } else {
      entry.function(&irevcm, u.data(), v.data(), wgt.data(), work.data(), lwork, buffer, &ifail, 200);
      result->messages.add(buffer);
    }
  }
};

/// The steps of one method, without a message.
template <class F>
struct Steps {
  Entry<F> entry;
  Result* result;
  void step(Integer& irevcm, std::vector<QuarnFloat>& u, std::vector<QuarnFloat>& v, std::vector<QuarnFloat>& wgt,
            std::vector<QuarnFloat>& work, Integer lwork, Integer& info) const {
    info = lwork;
    entry.function(&irevcm, work.data(), u.data(), v.data(), wgt.data(), &info);
  }
};

template <class... E>
void wrong_setups(Suite& suite, E... setups) {
  suite.few_cases([&](Case& c) {
    const std::vector<QuarnFloat> work(200, c.number<QuarnFloat>());
    const auto wrong = [&](const char* method, const char* precon, const char* norm, const char* weight, Integer iterm,
                           Integer n, Integer m, const char* tol, Integer maxitn, const char* anorm, const char* sigmax,
                           Integer monit, Integer lwork) {
      (suite.run_form<4>(setups, method, precon, norm, weight, iterm, n, m, QuarnFloat(tol), maxitn, QuarnFloat(anorm),
                         QuarnFloat(sigmax), monit, Integer(-9), work, lwork),
       ...);
    };
    wrong("LUDOLF  ", "N", "1", "N", 1, 5, 2, "0", 9, "0", "0", 0, 200);
    wrong("RGMRES  ", "X", "1", "N", 1, 5, 2, "0", 9, "0", "0", 0, 200);
    wrong("RGMRES  ", "N", "X", "N", 1, 5, 2, "0", 9, "0", "0", 0, 200);
    wrong("RGMRES  ", "N", "1", "X", 1, 5, 2, "0", 9, "0", "0", 0, 200);
    wrong("RGMRES  ", "N", "1", "N", 3, 5, 2, "0", 9, "0", "0", 0, 200);
    wrong("RGMRES  ", "N", "1", "N", 1, 0, 2, "0", 9, "0", "0", 0, 200);
    wrong("RGMRES  ", "N", "1", "N", 1, 5, 0, "0", 9, "0", "0", 0, 200);
    wrong("RGMRES  ", "N", "1", "N", 1, 5, 6, "0", 9, "0", "0", 0, 200);
    wrong("BICGSTAB", "N", "1", "N", 1, 50, 11, "0", 9, "0", "0", 0, 200);
    wrong("RGMRES  ", "N", "1", "N", 1, 5, 2, "1", 9, "0", "0", 0, 200);
    wrong("RGMRES  ", "N", "1", "N", 1, 5, 2, "0", 0, "0", "0", 0, 200);
    wrong("RGMRES  ", "N", "1", "N", 1, 5, 2, "0", 9, "nan", "0", 0, 200);
    wrong("RGMRES  ", "N", "1", "N", 2, 5, 2, "0", 9, "0", "inf", 0, 200);
    wrong("RGMRES  ", "N", "1", "N", 1, 5, 2, "0", 9, "0", "0", -1, 200);
    wrong("RGMRES  ", "N", "1", "N", 1, 5, 2, "0", 9, "0", "0", 0, 99);
    wrong("RGMRES  ", "N", "1", "N", 1, 5, 2, "0", 9, "0", "0", 0, 200);
  });
}

template <class E1, class E2>
void wrong_calls(Suite& suite, E1 iterate, E2 progress) {
  suite.few_cases([&](Case& c) {
    const auto u = c.numbers<QuarnFloat>(4);
    for (const Integer lwork : {99, 200}) {
      const std::vector<QuarnFloat> work(200);
      suite.run_form<0>(iterate, Integer(0), u, u, u, work, lwork);
      suite.run_form<0>(progress, Integer(-9), QuarnFloat(), QuarnFloat(), QuarnFloat(), QuarnFloat(), work, lwork);
    }
  });
}

template <class E>
auto setup_by(E entry) {
  return Setup<decltype(entry.function)>{entry.result, entry.function};
}
template <class E>
auto iterate_by(E entry) {
  return Iterate<decltype(entry.function)>{entry, entry.result};
}

/// The methods' own steps, each on a problem set up for it.
template <class Setup, class... E>
void steps(Suite& suite, Setup setup, E... entries) {
  suite.few_cases([&](Case& c) {
    const System<QuarnFloat> system = system_of<QuarnFloat>(c);
    const auto length = std::size_t(system.n);
    const Problem* problem = kProblems;
    const auto one = [&](auto entry) {
      for (Integer repeat = 0; repeat < 2; ++repeat, ++problem) {
        std::vector<QuarnFloat> work(100 + length * 16 + 40);
        auto u = c.numbers<QuarnFloat>(system.n);
        auto v = u;
        std::vector<QuarnFloat> wgt(length, QuarnFloat(1));
        const auto lwork = Integer(work.size());
        Integer lwreq = 0;
        Integer info = 1;
        setup.step(*problem, system.n, problem->m < 3 ? problem->m : 3, lwreq, work, lwork, info);
        Integer irevcm = 0;
        const Steps<decltype(entry.function)> stepping = {entry, entry.result};
        for (int count = 0; irevcm != 4 && count < 300; ++count) {
          stepping.step(irevcm, u, v, wgt, work, lwork, info);
          Suite::take(*entry.result, irevcm, u, v, info);
          if (irevcm == 1 || irevcm == -1) {
            system.multiply(u, v, irevcm == -1);
          } else if (irevcm == 2) {
            v = u;
          }
        }
      }
    };
    (one(entries), ...);
  });
}

/// A tridiagonal system with its diagonal as the factors.
template <class T, bool kTriangle = false, class... E>
void drivers(Suite& suite, E... forms) {
  suite.cases(2, [&](Case& c) {
    const Integer n = std::max<Integer>(2, c.size);
    std::vector<T> a;
    std::vector<Integer> irow, icol, order, starts, places;
    for (Integer i = 1; i <= n; ++i) {
      for (Integer j = std::max<Integer>(1, i - 1); j <= (kTriangle ? i : std::min(n, i + 1)); ++j) {
        a.push_back(i == j ? T(4.0) : T(-1.0));
        irow.push_back(i);
        icol.push_back(j);
      }
    }
    const auto nnz = Integer(a.size());
    for (Integer i = 1; i <= n; ++i) {
      a.push_back(T(4.0));
      irow.push_back(i);
      icol.push_back(c.below(40) == 0 ? 1 : i);
      order.push_back(i);
      starts.push_back(nnz + i);
      places.push_back(nnz + i);
    }
    starts.push_back(nnz + n + 1);
    const auto la = Integer(a.size());
    const auto b = c.numbers<T>(n);
    for (const char* method : {"RGMRES", "TFQMR ", "CG    ", "MINRES"}) {
      for (const Integer most : {0, 2, 50}) {
        const QuarnFloat tolerance(1, -6);
        if constexpr (kTriangle) {
          (suite.run_form<1>(forms, method, n, nnz, a, la, irow, icol, order, starts, b, tolerance, most,
                             std::vector<T>(b.size()), QuarnFloat(), Integer(-9)),
           ...);
        } else {
          (suite.run_form<1>(forms, method, n, nnz, a, la, irow, icol, order, order, starts, places, b, Integer(2),
                             tolerance, most, std::vector<T>(b.size()), QuarnFloat(), Integer(-9)),
           ...);
        }
      }
    }
  });
}

}  // namespace

void solver(Suite& suite) {
  const auto setup = ENTRY(QuarnMP_f11bdf_);
  const auto setup_core = ENTRY(QuarnMP_f11bdfn_);
  const auto iterate = ENTRY(QuarnMP_f11bef_);
  const auto iterate_core = ENTRY(QuarnMP_f11befn_);
  const auto progress = ENTRY(QuarnMP_f11bff_);
  const auto progress_core = ENTRY(QuarnMP_f11bffn_);
  wrong_setups(suite, setup, setup_core);
  wrong_calls(suite, iterate, progress);
  wrong_calls(suite, iterate_core, progress_core);
  solve<QuarnFloat>(suite, setup_by(setup), iterate_by(iterate), progress);
  solve<QuarnFloat>(suite, setup_by(setup_core), iterate_by(iterate_core), progress_core);
  steps(suite, setup_by(setup), ENTRY(QuarnMP_f11bezn_), ENTRY(QuarnMP_f11betn_), ENTRY(QuarnMP_f11bepn_),
        ENTRY(QuarnMP_f11beln_));
  solve<QuarnFloat>(suite, setup_by(ENTRY(QuarnMPX_f11bdf_)), iterate_by(ENTRY(QuarnMPX_f11bef_)),
                    ENTRY(QuarnMPX_f11bff_));
  solve<Complex>(suite, setup_by(ENTRY(QuarnMPX_zf11bdf_)), iterate_by(ENTRY(QuarnMPX_zf11bef_)),
                 ENTRY(QuarnMPX_zf11bff_));
  solve<QuarnFloat>(suite, setup_by(ENTRY(QuarnMPX_f11bdd_)), iterate_by(ENTRY(QuarnMPX_f11bef_)),
                    ENTRY(QuarnMPX_f11bff_));
  solve<Complex>(suite, setup_by(ENTRY(QuarnMPX_zf11bdd_)), iterate_by(ENTRY(QuarnMPX_zf11bef_)),
                 ENTRY(QuarnMPX_zf11bff_));
  drivers<QuarnFloat>(suite, ENTRY(QuarnMP_f11dcf_), ENTRY(QuarnMP_f11dcfn_));
  drivers<Complex>(suite, ENTRY(QuarnMP_f11dqf_), ENTRY(QuarnMP_f11dqfn_));
  drivers<Complex, true>(suite, ENTRY(QuarnMP_f11jqf_), ENTRY(QuarnMP_f11jqfn_));
  solve<QuarnFloat>(suite, setup_by(ENTRY(QuarnMPX_f11bdfn_)), iterate_by(ENTRY(QuarnMPX_f11befn_)),
                    ENTRY(QuarnMPX_f11bffn_));
}

}  // namespace digest
