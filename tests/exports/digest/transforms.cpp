#include <numeric>

#include "tests/exports/digest/digest.h"

namespace digest {

namespace {

std::size_t room(std::int64_t count) { return std::size_t(count > 1 ? count : 1); }

template <class... E>
void real_transforms(Suite& suite, E... entries) {
  suite.cases(1.3, [&](Case& c) {
    const Integer n = c.size;
    const auto x = c.numbers<QuarnFloat>(n);
    (suite.run_form<0>(entries, x, n, Scratch<QuarnFloat>(room(n))), ...);
  });
  suite.few_cases([&](Case& c) {
    const auto x = c.numbers<QuarnFloat>(46);
    for (const Integer n : {-7, 0, 1, 23, 46}) {
      (suite.run_form<0>(entries, x, n, Scratch<QuarnFloat>(46)), ...);
    }
  });
}

template <class... E>
void real_passes(Suite& suite, E... entries) {
  const std::vector<std::vector<Integer>> lists = {
      {2, 0},  {3, 0},          {4, 0},    {5, 0},    {8, 0},    {7, 0},    {11, 0},    {13, 0},    {17, 0},
      {19, 0}, {4, 3, 1, 5, 0}, {2, 2, 0}, {8, 4, 0}, {5, 3, 0}, {7, 2, 0}, {3, 13, 0}, {19, 2, 0}, {0}};
  for (int round = 0; round < 3; ++round) {
    suite.few_cases([&](Case& c) {
      for (const auto& radices : lists) {
        const Integer n = std::accumulate(radices.begin(), radices.end() - 1, Integer(1), std::multiplies<>());
        const auto x = c.numbers<QuarnFloat>(n);
        (suite.run(entries, x, n, radices), ...);
      }
    });
  }
}

/// One sequence: core and classic form, and the forms without checks.
template <class E1, class E2, class E3, class E4>
void one_sequence(Suite& suite, E1 classic, E2 core, E3 sequence, E4 unchecked) {
  suite.cases(1.3, [&](Case& c) {
    for (const char* direct : {"F", "b"}) {
      const Integer n = c.size;
      const auto x = c.numbers<Complex>(n);
      const Scratch<Complex> work(2 * room(n));
      suite.run_form<1>(classic, direct, x, n, work);
      suite.run_form<1>(core, direct, x, n, work);
      suite.run(sequence, direct, x, n, work, Integer(-9), 1);
      suite.run(unchecked, direct, n, x, work, Integer(-9), 1);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto x = c.numbers<Complex>(4);
    const Scratch<Complex> work(8);
    for (const Integer n : {-3, 0, 4}) {
      suite.run_form<1>(classic, "X", x, n, work);
      suite.run_form<1>(core, "X", x, n, work);
    }
  });
}

template <class E1, class E2, class... E>
void interleaved(Suite& suite, E1 with_table, E2 passes, E... entries) {
  suite.cases(2, [&](Case& c) {
    for (const char* direct : {"F", "b"}) {
      const Integer n = c.size;
      const Integer m = 1 + c.below(4);
      const auto x = c.numbers<Complex>(std::int64_t(m) * n);
      const std::vector<Complex> work(2 * room(std::int64_t(m) * n) + room(n), Complex());
      (
          [&](auto entry) {
            if constexpr (requires { entry.function(direct, m, n, nullptr, nullptr, nullptr, 1); }) {
              suite.run(entry, direct, m, n, x, Scratch<Complex>(work.begin(), work.end()), Integer(-9), 1);
            } else {
              suite.run_form<1>(entry, direct, m, n, x, Scratch<Complex>(work.begin(), work.end()));
            }
          }(entries),
          ...);
      const auto again = [&](auto entry, auto maker) {
        if (entry.function == nullptr || maker.function == nullptr || n < 1) {
          return;
        }
        auto table = work;
        auto first = x;
        Integer ifail = 0;
        maker.function(direct, m, n, first.data(), table.data(), &ifail, 1);
        suite.run(entry, direct, m, n, x, Scratch<Complex>(table.begin(), table.end()), Integer(-9), 1);
      };
      again(with_table, passes.second);
      if constexpr (!std::is_same_v<decltype(passes.first), std::nullptr_t>) {
        again(passes.first, passes.second);
      }
    }
  });
  suite.few_cases([&](Case& c) {
    const auto x = c.numbers<Complex>(4);
    const Scratch<Complex> work(16);
    const auto wrong = [&](const char* direct, Integer m, Integer n) {
      (
          [&](auto entry) {
            if constexpr (!requires { entry.function(direct, m, n, nullptr, nullptr, nullptr, 1); }) {
              suite.run_form<1>(entry, direct, m, n, x, work);
            }
          }(entries),
          ...);
    };
    wrong("F", 0, 4);
    wrong("F", 1, 0);
    wrong("X", 1, 4);
    wrong("X", -1, -4);
  });
}

template <class E1, class E2, class E3>
void one_dimension(Suite& suite, E1 classic, E2 core, E3 middle) {
  suite.cases(2.2, [&](Case& c) {
    for (const char* direct : {"F", "b"}) {
      const std::vector<Integer> nd = {1 + c.below(3), c.size, 1 + c.below(3)};
      const Integer n = nd[0] * nd[1] * nd[2];
      const auto x = c.numbers<Complex>(n);
      for (Integer l = 0; l <= 4; ++l) {
        const Integer lwork = n + (l >= 1 && l <= 3 ? nd[std::size_t(l - 1)] : 0) + 15 - c.below(2) * c.below(2);
        const Scratch<Complex> work(room(lwork));
        suite.run_form<1>(classic, direct, Integer(3), l, nd, n, x, work, lwork);
        suite.run_form<1>(core, Integer(0), direct, Integer(3), l, nd, n, x, work, lwork);
        suite.run_form<1>(core, Integer(1), direct, Integer(3), l, nd, n, x, std::vector<Complex>(room(lwork)), lwork);
      }
      suite.run(middle, direct, x, nd[0], nd[1], nd[2], Scratch<Complex>(room(3 * std::int64_t(n) + nd[1])),
                Integer(-9), 1);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto x = c.numbers<Complex>(8);
    const std::vector<Integer> nd = {2, 4};
    const Scratch<Complex> work(40);
    const auto wrong = [&](const char* direct, Integer ndim, Integer l, Integer n, Integer lwork) {
      suite.run_form<1>(classic, direct, ndim, l, nd, n, x, work, lwork);
      suite.run_form<1>(core, Integer(0), direct, ndim, l, nd, n, x, work, lwork);
    };
    wrong("F", 0, 1, 8, 40);
    wrong("F", 2, 0, 8, 40);
    wrong("F", 2, 3, 8, 40);
    wrong("X", 2, 1, 8, 40);
    wrong("F", 2, 1, 9, 40);
    wrong("F", 2, 1, 8, 20);
  });
}

template <class E1, class E2>
void all_dimensions(Suite& suite, E1 classic, E2 core) {
  suite.cases(2.2, [&](Case& c) {
    for (const char* direct : {"F", "b"}) {
      const std::vector<Integer> nd = {1 + c.below(3), c.size, 1 + c.below(3)};
      const Integer n = nd[0] * nd[1] * nd[2];
      const auto x = c.numbers<Complex>(n);
      const Integer lwork = n + 3 * ((c.size > 3 ? c.size : 3) + 5);
      const Scratch<Complex> work(room(lwork));
      suite.run_form<1>(classic, direct, Integer(3), nd, n, x, work, lwork);
      suite.run_form<1>(core, Integer(0), direct, Integer(3), nd, n, x, work, lwork);
      suite.run_form<1>(core, Integer(1), direct, Integer(3), nd, n, x, std::vector<Complex>(room(lwork)), lwork);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto x = c.numbers<Complex>(8);
    const std::vector<Integer> nd = {2, 4};
    const Scratch<Complex> work(40);
    const auto wrong = [&](const char* direct, Integer ndim, Integer n, Integer lwork) {
      suite.run_form<1>(classic, direct, ndim, nd, n, x, work, lwork);
      suite.run_form<1>(core, Integer(0), direct, ndim, nd, n, x, work, lwork);
    };
    wrong("F", 0, 8, 40);
    wrong("X", 2, 8, 40);
    wrong("F", 2, 9, 40);
    wrong("F", 2, 8, 20);
  });
}

/// Passes over a table that the library itself makes.
template <class M, class P, class... E>
void passes(Suite& suite, M maker, P all, E... radix_2_to_5) {
  suite.cases(1.8, [&](Case& c) {
    const Integer length = 1 + c.below(4);
    const Integer blocks = 1 + c.size / 4;
    Integer radix = 2;
    const auto table_of = [&](Integer n) {
      std::vector<Complex> work(2 * room(n));
      std::vector<Complex> x(room(n));
      Integer ifail = 0;
      maker.function("F", x.data(), n, work.data(), &ifail, 1);
      work.resize(room(n));
      return work;
    };
    const auto one = [&](auto entry) {
      const Integer n = radix * blocks * length;
      const auto source = c.numbers<Complex>(n);
      suite.run(entry, length, blocks, source, std::vector<Complex>(room(n)), table_of(n));
      ++radix;
    };
    (one(radix_2_to_5), ...);
    const std::vector<std::vector<Integer>> lists = {{2, 3, 1, 5}, {4, 7}, {31}, {2, 61}, {6}, {2, 2}};
    for (const auto& list : lists) {
      Integer n = std::accumulate(list.begin(), list.end(), Integer(1), std::multiplies<>());
      n += list.size() == 2 && list[1] == 2;
      const auto x = c.numbers<Complex>(n);
      suite.run(all, n, x, Scratch<Complex>(room(n)), table_of(n), Integer(list.size()), list);
    }
  });
}

}  // namespace

void transforms(Suite& suite) {
  real_transforms(suite, ENTRY(QuarnMP_c06faf_), ENTRY(QuarnMP_c06fafn_), ENTRY(QuarnMPX_c06faf_),
                  ENTRY(QuarnMPX_c06fafn_), ENTRY(QuarnMP_c06fbf_), ENTRY(QuarnMP_c06fbfn_), ENTRY(QuarnMPX_c06fbf_),
                  ENTRY(QuarnMPX_c06fbfn_));
  real_passes(suite, ENTRY(QuarnMP_c06eawn_), ENTRY(QuarnMPX_c06eawn_), ENTRY(QuarnMP_c06ebwn_),
              ENTRY(QuarnMPX_c06ebwn_));
  const auto maker = ENTRY(QuarnMP_c06pcqn_);
  const auto maker_x = ENTRY(QuarnMPX_c06pcqn_);
  one_sequence(suite, ENTRY(QuarnMP_c06pcf_), ENTRY(QuarnMP_c06pcfn_), maker, ENTRY(QuarnMP_c06pczn_));
  one_sequence(suite, ENTRY(QuarnMPX_c06pcf_), ENTRY(QuarnMPX_c06pcfn_), maker_x, ENTRY(QuarnMPX_c06pczn_));
  const auto columns = ENTRY(QuarnMP_c06prqn_);
  const auto columns_x = ENTRY(QuarnMPX_c06prqn_);
  const auto rows = ENTRY(QuarnMP_c06psqn_);
  const auto rows_x = ENTRY(QuarnMPX_c06psqn_);
  interleaved(suite, ENTRY(QuarnMP_c06prxn_), std::pair(ENTRY(QuarnMP_c06prwn_), columns), ENTRY(QuarnMP_c06prf_),
              ENTRY(QuarnMP_c06prfn_), columns, ENTRY(QuarnMP_c06przn_));
  interleaved(suite, ENTRY(QuarnMPX_c06prxn_), std::pair(ENTRY(QuarnMPX_c06prwn_), columns_x), ENTRY(QuarnMPX_c06prf_),
              ENTRY(QuarnMPX_c06prfn_), columns_x, ENTRY(QuarnMPX_c06przn_));
  interleaved(suite, ENTRY(QuarnMP_c06psxn_), std::pair(nullptr, rows), ENTRY(QuarnMP_c06psfn_), rows,
              ENTRY(QuarnMP_c06pszn_));
  interleaved(suite, ENTRY(QuarnMPX_c06psxn_), std::pair(nullptr, rows_x), ENTRY(QuarnMPX_c06psfn_), rows_x,
              ENTRY(QuarnMPX_c06pszn_));
  one_dimension(suite, ENTRY(QuarnMP_c06pff_), ENTRY(QuarnMP_c06pffn_), ENTRY(QuarnMP_c06pfzn_));
  one_dimension(suite, ENTRY(QuarnMPX_c06pff_), ENTRY(QuarnMPX_c06pffn_), ENTRY(QuarnMPX_c06pfzn_));
  all_dimensions(suite, ENTRY(QuarnMP_c06pjf_), ENTRY(QuarnMP_c06pjfn_));
  all_dimensions(suite, ENTRY(QuarnMPX_c06pjf_), ENTRY(QuarnMPX_c06pjfn_));
  passes(suite, maker, ENTRY(QuarnMP_c06ncwn_), ENTRY(QuarnMP_c06ncvn_), ENTRY(QuarnMP_c06ncun_),
         ENTRY(QuarnMP_c06nctn_), ENTRY(QuarnMP_c06ncsn_));
  passes(suite, maker_x, ENTRY(QuarnMPX_c06ncwn_), ENTRY(QuarnMPX_c06ncvn_), ENTRY(QuarnMPX_c06ncun_),
         ENTRY(QuarnMPX_c06nctn_), ENTRY(QuarnMPX_c06ncsn_));
}

}  // namespace digest
