#include <doctest/doctest.h>

#include <climits>
#include <string>
#include <vector>

#include "quarn/quarnfloat.h"
#include "sparse/failure_rows.h"
#include "support/outcome.h"
#include "tesk2mp/sparse.h"

using failures::For;
using failures::Routine;
using support::Outcome;
using support::wide;

namespace {

struct Arguments {
  Integer n = 3;
  Integer nnz = 3;
  std::vector<Integer> irow = {1, 2, 3};
  std::vector<Integer> icol = {1, 1, 3};
  const char* check = "C";
  int check_length = 1;
  const char* trans = "N";
  int trans_length = 1;
};

const std::vector<Routine> kRoutines = {{"F11XAF", false}, {"F11XNF", false}, {"F11XEF", true}, {"F11XSF", true}};

/// Calls the routine; y must come back untouched.
Outcome call(const std::string& name, const Arguments& x) {
  std::vector<QuarnFloat> reals(4, 5);
  std::vector<Complex> complexes(4, Complex(5, 5));
  std::vector<QuarnFloat> real_y(3, 9);
  std::vector<Complex> complex_y(3, Complex(9, 9));
  const Outcome outcome = support::outcome_of([&](char* buffer, Integer* ifail, int length) {
    const auto general = [&](auto core, auto& a, auto& y) {
      core(x.trans, x.n, x.nnz, a.data(), x.irow.data(), x.icol.data(), x.check, a.data(), y.data(), buffer, ifail,
           x.trans_length, x.check_length, length);
    };
    const auto symmetric = [&](auto core, auto& a, auto& y) {
      core(x.n, x.nnz, a.data(), x.irow.data(), x.icol.data(), x.check, a.data(), y.data(), buffer, ifail,
           x.check_length, length);
    };
    name == "F11XAF"   ? general(QuarnMP_f11xafn_, reals, real_y)
    : name == "F11XNF" ? general(QuarnMP_f11xnfn_, complexes, complex_y)
    : name == "F11XEF" ? symmetric(QuarnMP_f11xefn_, reals, real_y)
                       : symmetric(QuarnMP_f11xsfn_, complexes, complex_y);
  });
  CHECK(real_y == std::vector<QuarnFloat>(3, 9));
  CHECK(complex_y == std::vector<Complex>(3, Complex(9, 9)));
  return outcome;
}

/// Labels are those of the general routines; the others have one message less after the first.
const std::vector<failures::Row<Arguments>>& rows() {
  static const std::vector<failures::Row<Arguments>> table = {
      {For::all,
       [](Arguments& x) { x.check = "X", x.trans = "X", x.n = 0; },
       1,
       99999,
       " ** On entry, CHECK .ne. 'C' or 'N': CHECK = 'X'.",
       {"X"}},
      {For::all,
       [](Arguments& x) { x.check_length = 0, x.nnz = -1; },
       1,
       99999,
       " ** On entry, CHECK .ne. 'C' or 'N': CHECK = ''.",
       {""}},
      {For::general,
       [](Arguments& x) { x.trans = "C"; },
       1,
       99998,
       " ** On entry, TRANS .ne. 'N' or 'T': TRANS = 'C'.",
       {"C"}},
      {For::general,
       [](Arguments& x) { x.trans = "conjugate", x.trans_length = 9, x.check = "n", x.n = 0; },
       1,
       99998,
       " ** On entry, TRANS .ne. 'N' or 'T': TRANS = 'conjugate'.",
       {"conjugate"}},
      {For::all,
       [](Arguments& x) { x.n = 0, x.nnz = 0, x.trans = "X"; },
       2,
       99997,
       " ** On entry, N .lt. 1: N =" + wide(0) + ".",
       {wide(0)}},
      {For::all,
       [](Arguments& x) { x.n = INT_MIN, x.nnz = INT_MAX; },
       2,
       99997,
       " ** On entry, N .lt. 1: N =" + wide(INT_MIN) + ".",
       {wide(INT_MIN)}},
      {For::all,
       [](Arguments& x) { x.nnz = 0, x.irow[0] = 9; },
       2,
       99996,
       " ** On entry, NNZ .lt. 1: NNZ =" + wide(0) + ".",
       {wide(0)}},
      {For::general,
       [](Arguments& x) { x.nnz = 10, x.irow[0] = 9, x.trans = "X"; },
       2,
       99995,
       " ** On entry, NNZ .gt. N**2:\n    NNZ =" + wide(10) + " N =" + wide(3) + ".",
       {wide(10), wide(3)}},
      {For::general,
       [](Arguments& x) { x.n = 46340, x.nnz = 2147395601; },
       2,
       99995,
       " ** On entry, NNZ .gt. N**2:\n    NNZ =" + wide(2147395601) + " N =" + wide(46340) + ".",
       {wide(2147395601), wide(46340)}},
      {For::triangle,
       [](Arguments& x) { x.nnz = 7; },
       2,
       99995,
       " ** On entry, NNZ .gt. N*(N+1)/2:\n    NNZ =" + wide(7) + " N =" + wide(3) + ".",
       {wide(7), wide(3)}},
      {For::all,
       [](Arguments& x) { x.irow[1] = 4, x.trans = "X"; },
       3,
       99994,
       " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:\n    I = " + wide(2) + ", IROW(I) = " + wide(4) +
           ", N = " + wide(3) + ".",
       {wide(2), wide(4), wide(3)}},
      {For::all,
       [](Arguments& x) { x.n = INT_MAX, x.nnz = INT_MAX, x.irow[0] = 0; },
       3,
       99994,
       " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:\n    I = " + wide(1) + ", IROW(I) = " + wide(0) +
           ", N = " + wide(INT_MAX) + ".",
       {wide(1), wide(0), wide(INT_MAX)}},
      {For::general,
       [](Arguments& x) { x.icol[2] = -1; },
       3,
       99993,
       " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. N:\n    I = " + wide(3) + ", ICOL(I) = " + wide(-1) +
           ", N = " + wide(3) + ".",
       {wide(3), wide(-1), wide(3)}},
      {For::triangle,
       [](Arguments& x) { x.icol[1] = 3; },
       3,
       99993,
       " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. IROW(I):\n    I =" + wide(2) + ", ICOL(I) =" + wide(3) +
           ", IROW(I) =" + wide(2) + ".",
       {wide(2), wide(3), wide(2)}},
      {For::all,
       [](Arguments& x) { x.irow[1] = 3, x.icol[1] = 3, x.icol[2] = 2; },
       3,
       99992,
       " ** On entry, A(I) is out of order:\n    I =" + wide(3) + ".",
       {wide(3)}},
      {For::all,
       [](Arguments& x) { x.irow[1] = 1, x.irow[2] = 99; },
       3,
       99991,
       " ** On entry, the location (IROW(I), ICOL(I)) is a duplicate:\n    I =" + wide(2) + ".",
       {wide(2)}},
  };
  return table;
}

}  // namespace

TEST_CASE("every failure of the products: code, label, message, buffer, and y untouched") {
  failures::check(rows(), kRoutines, call, [](const Routine& routine, const auto& row) {
    return routine.triangle && row.label < 99998 ? row.label + 1 : row.label;
  });
}
