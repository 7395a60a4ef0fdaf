// Results with proven bounds.
#include <algorithm>

#include "tests/exports/digest/digest.h"

namespace digest {
namespace {

template <class T, class Solve, class Determine, class Decide, class Rank, class Infinite>
void systems(Suite& suite, Solve solve, Determine determine, Decide decide, Rank rank, Infinite infinite) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = n < 1 ? 1 : n;
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto b = c.numbers<T>(ld);
    const std::vector<QuarnFloat> small(std::size_t(ld) * std::size_t(ld), QuarnFloat("1e-3"));
    const std::vector<T> x(std::size_t(ld), T(0));
    const std::vector<QuarnFloat> bounds(std::size_t(ld), QuarnFloat(0));
    for (const Integer given : {Integer(0), ld, Integer(-1)}) {
      suite.run(solve, n, Integer(1), a, ld, small, given, b, ld, small, given, x, ld, bounds, ld, Integer(-99));
      suite.run(determine, n, a, ld, small, given, T(0), QuarnFloat(0), Integer(-99));
    }
    suite.run(rank, n, n, a, ld, Integer(-99), Integer(-99));
    suite.run(infinite, n, a, ld, std::vector<T>(std::size_t(ld) * std::size_t(ld), T(1)), ld, Integer(-99),
              Integer(-99));
    for (const char* triangle : {"U", "l", "X"}) {
      suite.run(decide, triangle, n, a, ld, Integer(-99), 1);
    }
  });
}

template <class T, class Symmetric, class Singular, class Eigenvalues, class Eigen, class Zeros>
void spectra(Suite& suite, Symmetric symmetric, Singular singular, Eigenvalues eigenvalues, Eigen eigen, Zeros zeros) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = n < 1 ? 1 : n;
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto x = c.numbers<T>(std::int64_t(ld) * ld);
    const auto z = c.numbers<Complex>(std::int64_t(ld) * ld);
    const auto w = c.numbers<Complex>(ld);
    auto sizes = c.numbers<QuarnFloat>(ld);
    std::sort(sizes.begin(), sizes.end());
    const std::vector<QuarnFloat> small(std::size_t(ld) * std::size_t(ld), QuarnFloat("1e-3"));
    const std::vector<QuarnFloat> bounds(std::size_t(ld), QuarnFloat(0));
    const std::vector<Integer> counts(std::size_t(ld), 0);
    const auto coefficients = c.numbers<T>(std::int64_t(ld) + 1);
    for (const Integer given : {Integer(0), ld, Integer(-1)}) {
      suite.run(symmetric, "L", n, a, ld, small, given, sizes, x, ld, bounds, bounds, Integer(-99), 1);
      suite.run(singular, n, Integer(1), a, ld, small, given, sizes, x, ld, x, ld, bounds, Integer(-99));
      suite.run(eigenvalues, n, a, ld, small, given, w, z, ld, bounds, counts, Integer(-99));
      suite.run(eigen, n, a, ld, small, given, x, ld, small, Integer(0), w, z, ld, bounds, bounds, counts, counts,
                Integer(-99));
      suite.run(eigen, n, a, ld, small, Integer(0), x, Integer(0), small, given, w, z, ld, bounds, bounds, counts,
                counts, Integer(-99));
    }
    suite.run(zeros, n, coefficients, w, bounds, counts, Integer(-99));
  });
}

}  // namespace

void proven(Suite& suite) {
  systems<QuarnFloat>(suite, ENTRY(QuarnMPX_dproven_solve_), ENTRY(QuarnMPX_dproven_determinant_),
                      ENTRY(QuarnMPX_dproven_definite_), ENTRY(QuarnMPX_dproven_rank_),
                      ENTRY(QuarnMPX_dproven_infinite_));
  systems<Complex>(suite, ENTRY(QuarnMPX_zproven_solve_), ENTRY(QuarnMPX_zproven_determinant_),
                   ENTRY(QuarnMPX_zproven_definite_), ENTRY(QuarnMPX_zproven_rank_), ENTRY(QuarnMPX_zproven_infinite_));
  spectra<QuarnFloat>(suite, ENTRY(QuarnMPX_dproven_symmetric_), ENTRY(QuarnMPX_dproven_singular_),
                      ENTRY(QuarnMPX_dproven_eigenvalues_), ENTRY(QuarnMPX_dproven_eigen_),
                      ENTRY(QuarnMPX_dproven_zeros_));
  spectra<Complex>(suite, ENTRY(QuarnMPX_zproven_symmetric_), ENTRY(QuarnMPX_zproven_singular_),
                   ENTRY(QuarnMPX_zproven_eigenvalues_), ENTRY(QuarnMPX_zproven_eigen_),
                   ENTRY(QuarnMPX_zproven_zeros_));
}

}  // namespace digest
