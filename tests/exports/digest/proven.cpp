// Results with proven bounds.
#include "tests/exports/digest/digest.h"

namespace digest {
namespace {

template <class T, class Solve, class Determine, class Decide>
void systems(Suite& suite, Solve solve, Determine determine, Decide decide) {
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
    for (const char* triangle : {"U", "l", "X"}) {
      suite.run(decide, triangle, n, a, ld, Integer(-99), 1);
    }
  });
}

}  // namespace

void proven(Suite& suite) {
  systems<QuarnFloat>(suite, ENTRY(QuarnMPX_dproven_solve_), ENTRY(QuarnMPX_dproven_determinant_),
                      ENTRY(QuarnMPX_dproven_definite_));
  systems<Complex>(suite, ENTRY(QuarnMPX_zproven_solve_), ENTRY(QuarnMPX_zproven_determinant_),
                   ENTRY(QuarnMPX_zproven_definite_));
}

}  // namespace digest
