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
  Integer nnz = 4;
  std::vector<Integer> irow = {3, 2, 3, 1};
  std::vector<Integer> icol = {1, 2, 1, 1};
  const char* dup = "R";
  int dup_length = 1;
  const char* zero = "K";
  int zero_length = 1;
};

const std::vector<Routine> kRoutines = {{"F11ZAF", false}, {"F11ZBF", true}, {"F11ZNF", false}, {"F11ZPF", true}};

/// Calls the routine; A holds 0, 1, 2, ... in the order given.
Outcome call(const std::string& name, Arguments& x) {
  std::vector<QuarnFloat> reals;
  std::vector<Complex> complexes;
  for (std::size_t k = 0; k < x.irow.size(); ++k) {
    reals.emplace_back(Integer(k));
    complexes.emplace_back(QuarnFloat(0), QuarnFloat(Integer(k)));
  }
  std::vector<Integer> istr(4);
  std::vector<Integer> iwork(7);
  return support::outcome_of([&](char* buffer, Integer* ifail, int length) {
    const auto run = [&](auto core, auto* a) {
      core(x.n, &x.nnz, a, x.irow.data(), x.icol.data(), x.dup, x.zero, istr.data(), iwork.data(), buffer, ifail,
           x.dup_length, x.zero_length, length);
    };
    name == "F11ZAF"   ? run(QuarnMP_f11zafn_, reals.data())
    : name == "F11ZBF" ? run(QuarnMP_f11zbfn_, reals.data())
    : name == "F11ZNF" ? run(QuarnMP_f11znfn_, complexes.data())
                       : run(QuarnMP_f11zpfn_, complexes.data());
  });
}

const std::vector<failures::Row<Arguments>>& rows() {
  static const std::vector<failures::Row<Arguments>> table = {
      {For::all, [](Arguments& x) { x.n = 0; }, 1, 99999, " ** On entry, N .lt. 1: N =" + wide(0) + ".", {wide(0)}},
      {For::all,
       [](Arguments& x) { x.n = INT_MIN, x.nnz = -1, x.dup = "?"; },
       1,
       99999,
       " ** On entry, N .lt. 1: N =" + wide(INT_MIN) + ".",
       {wide(INT_MIN)}},
      {For::all,
       [](Arguments& x) { x.nnz = -1, x.dup = "?", x.zero = "?"; },
       1,
       99998,
       " ** On entry, NNZ .lt. 0: NNZ =" + wide(-1) + ".",
       {wide(-1)}},
      {For::general,
       [](Arguments& x) { x.dup = "keep", x.dup_length = 4, x.zero = "?"; },
       1,
       99997,
       " ** On entry, DUP .ne. 'R', 'S', or 'F': DUP = 'keep'.",
       {"keep"}},
      {For::triangle,
       [](Arguments& x) { x.dup = "F", x.zero = "?"; },
       1,
       99997,
       " ** On entry, DUP .ne. 'R' or 'S': DUP = 'F'.",
       {"F"}},
      {For::triangle,
       [](Arguments& x) { x.dup_length = 0; },
       1,
       99997,
       " ** On entry, DUP .ne. 'R' or 'S': DUP = ''.",
       {""}},
      {For::general,
       [](Arguments& x) { x.zero = "S", x.irow[1] = 0; },
       1,
       99996,
       " ** On entry, ZERO .ne. 'R', 'K', or 'F': ZERO   = 'S'.",
       {"S"}},
      {For::triangle,
       [](Arguments& x) { x.zero = "f", x.irow[1] = 0; },
       1,
       99996,
       " ** On entry, ZERO .ne. 'R' or 'K': ZERO = 'f' .",
       {"f"}},
      {For::all,
       [](Arguments& x) { x.irow[1] = 4, x.icol[1] = 9; },
       2,
       99995,
       " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:\n    I = " + wide(2) + ", IROW(I) = " + wide(4) +
           ", N = " + wide(3) + ".",
       {wide(2), wide(4), wide(3)}},
      {For::all,
       [](Arguments& x) { x.irow[3] = INT_MIN; },
       2,
       99995,
       " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:\n    I = " + wide(4) + ", IROW(I) = " + wide(INT_MIN) +
           ", N = " + wide(3) + ".",
       {wide(4), wide(INT_MIN), wide(3)}},
      // The column of entry 2 comes before the row of entry 3.
      {For::general,
       [](Arguments& x) { x.icol[1] = 4, x.irow[2] = 0; },
       2,
       99994,
       " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. N:\n    I = " + wide(2) + ", ICOL(I) = " + wide(4) +
           ", N = " + wide(3) + ".",
       {wide(2), wide(4), wide(3)}},
      {For::triangle,
       [](Arguments& x) { x.icol[1] = 3, x.irow[2] = 0; },
       2,
       99994,
       " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. IROW(I):\n    I =" + wide(2) + ", ICOL(I) =" + wide(3) +
           ", IROW(I) =" + wide(2) + ".",
       {wide(2), wide(3), wide(2)}},
      {For::general,
       [](Arguments& x) { x.icol[0] = 0, x.dup = "f"; },
       2,
       99994,
       " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. N:\n    I = " + wide(1) + ", ICOL(I) = " + wide(0) +
           ", N = " + wide(3) + ".",
       {wide(1), wide(0), wide(3)}},
      // The zero in row 3, column 1 is a duplicate too: that is seen first.
      {For::general,
       [](Arguments& x) { x.dup = "F", x.zero = "F"; },
       3,
       99993,
       " ** On entry, a duplicate entry has been found in row I and column J:\n    I = " + wide(3) +
           ", J = " + wide(1) + ".",
       {wide(3), wide(1)}},
      {For::general,
       [](Arguments& x) { x.zero = "F"; },
       4,
       99992,
       " ** On entry, a zero entry has been found in row I and column J:\n    I = " + wide(3) + ", J = " + wide(1) +
           ".",
       {wide(3), wide(1)}},
  };
  return table;
}

}  // namespace

TEST_CASE("every failure of the sorting routines: code, label, message, buffer") {
  failures::check(rows(), kRoutines, call, [](const Routine&, const auto& row) { return row.label; });
}

TEST_CASE("a zero that fails leaves merged entries behind, a duplicate that fails sorted ones") {
  Arguments arguments;
  arguments.zero = "F";
  call("F11ZAF", arguments);
  CHECK(arguments.nnz == 3);
  CHECK(std::vector<Integer>(arguments.irow.begin(), arguments.irow.begin() + 3) == std::vector<Integer>{1, 2, 3});
  arguments = Arguments();
  arguments.dup = "F";
  call("F11ZAF", arguments);
  CHECK(arguments.nnz == 4);
  CHECK(arguments.irow == std::vector<Integer>{1, 2, 3, 3});
}

TEST_CASE("classic forms: by address, with lengths in the order of the options") {
  Integer n = 1;
  Integer nnz = 0;
  Integer istr[2];
  Integer iwork[1];
  const auto run = [&](auto routine, auto* a, const char* dup, int dup_length, const char* zero, int zero_length) {
    Integer ifail = 1;
    routine(&n, &nnz, a, nullptr, nullptr, dup, zero, istr, iwork, &ifail, dup_length, zero_length);
    return ifail;
  };
  QuarnFloat* reals = nullptr;
  Complex* complexes = nullptr;
  for (const char* letter : {"R", "r"}) {
    CHECK(run(QuarnMP_f11zaf_, reals, letter, 1, letter, 1) == 0);
    CHECK(run(QuarnMP_f11znf_, complexes, letter, 1, letter, 1) == 0);
    CHECK(run(QuarnMP_f11zpf_, complexes, letter, 1, letter, 1) == 0);
  }
  CHECK(run(QuarnMP_f11zaf_, reals, "R", 0, "R", 1) == 1);
  CHECK(run(QuarnMP_f11znf_, complexes, "R", 1, "R", 0) == 1);
  CHECK(run(QuarnMP_f11zpf_, complexes, "R", 1, "F", 1) == 1);
  CHECK(istr[0] == 1);
  CHECK(istr[1] == 1);
}
