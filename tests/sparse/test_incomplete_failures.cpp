// What the incomplete factorisations refuse, and what is said of factors that have been corrupted between two calls.
#include <doctest/doctest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "sparse/factorisation.h"

using factorisation::Factors;
using support::wide;

namespace {

/// A = (4 1 0; 1 4 1; 0 1 4), or its lower triangle.
template <class T>
Factors<T> sample(bool triangle) {
  entries::Coordinates<T> a{3, {}, {}, {}};
  for (Integer i = 1; i <= 3; ++i) {
    for (Integer j = std::max(1, int(i) - 1); j <= (triangle ? i : std::min<Integer>(3, i + 1)); ++j) {
      a.add(i, j, T(i == j ? 4.0 : 1.0));
    }
  }
  return Factors<T>(a, triangle);
}

template <class T>
struct Row {
  void (*change)(Factors<T>&);
  int ifail, label;  // of the general routine; 0: not for it
  int triangle_label;
  std::string message;  // PIV and ARRAYS stand for names that differ
  std::vector<std::string> values;
  bool about_permutation = false;
};

std::string with(std::string text, const std::string& name, const std::string& value) {
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name)) {
    text.replace(at, name.size(), value);
  }
  return text;
}

template <class T>
constexpr bool kComplex = sizeof(T) == sizeof(Complex);

/// The routine that solves, and the pair that its advice names.
template <class T>
std::string solver(bool triangle) {
  return std::string(triangle ? "F11J" : "F11D") + (kComplex<T> ? "PF" : "BF");
}
template <class T>
std::string advice(bool triangle, bool about_permutation) {
  const std::string family = triangle ? "F11J" : "F11D";
  return std::string("\n    Check that A, IROW, ICOL, ") +
         (triangle ? "IPIV and ISTR" : "IPIVP, IPIVQ, ISTR and IDIAG") +
         "\n    have not been corrupted between calls to " + family + (kComplex<T> ? "NF" : "AF") + " and " + family +
         (kComplex<T> && !about_permutation ? "PF." : "BF.");
}

}  // namespace

TEST_CASE_TEMPLATE("each corrupted array is reported with advice", T, QuarnFloat, Complex) {
  // The factors of A start at entry 8 of the arrays, those of its triangle at entry 6.
  const std::vector<Row<T>> rows = {
      {[](Factors<T>& f) { f.istr[0] = 1; },
       3,
       99996,
       99997,
       " ** On entry, NNZ .lt. 1: NNZ =" + wide(0) + ".",
       {wide(0)}},
      {[](Factors<T>& f) { f.istr[1] = f.istr[0]; },
       3,
       99990,
       99991,
       " ** On entry, ISTR(I) is not where row I starts:\n    I =" + wide(2) + ", ISTR(I) =START.",
       {wide(2), "START"}},
      {[](Factors<T>& f) { f.istr[3] = f.la + 2; },
       3,
       99990,
       99991,
       " ** On entry, ISTR(I) is not where row I starts:\n    I =" + wide(4) + ", ISTR(I) =BEYOND.",
       {wide(4), "BEYOND"}},
      {[](Factors<T>& f) { f.irow[std::size_t(f.nnz) + 1] = 4; },
       3,
       99994,
       99995,
       " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:\n    I = SECOND, IROW(I) = " + wide(4) + ", N = " + wide(3) +
           ".",
       {"SECOND", wide(4), wide(3)}},
      {[](Factors<T>& f) { f.icol[std::size_t(f.nnz) + 1] = 0; }, 3, 99993, 99994, "COLUMN", {}},
      {[](Factors<T>& f) { f.irow[std::size_t(f.nnz)] = 3; },
       3,
       99992,
       99993,
       " ** On entry, A(I) is out of order:\n    I =SECOND.",
       {"SECOND"}},
      {[](Factors<T>& f) {
         f.icol[std::size_t(f.nnz) + 2] = f.icol[std::size_t(f.nnz) + 1] = 1,
                                     f.irow[std::size_t(f.nnz) + 2] = f.irow[std::size_t(f.nnz) + 1] = 2;
       },
       3,
       99991,
       99992,
       " ** On entry, the location (IROW(I), ICOL(I)) is a duplicate:\n    I =THIRD.",
       {"THIRD"}},
      {[](Factors<T>& f) { ++f.idiag[1]; },
       3,
       99989,
       0,
       " ** On entry, IDIAG(I) is not the place of the pivot of row I:\n    I =" + wide(2) + ", IDIAG(I) =" + wide(12) +
           ".",
       {wide(2), wide(12)}},
      {[](Factors<T>& f) { f.idiag[2] = -7; },
       3,
       99989,
       0,
       " ** On entry, IDIAG(I) is not the place of the pivot of row I:\n    I =" + wide(3) + ", IDIAG(I) =" + wide(-7) +
           ".",
       {wide(3), wide(-7)}},
      {[](Factors<T>& f) {
         f.icol[std::size_t(f.nnz) + 2] = 1, f.icol[std::size_t(f.nnz) + 1] = 0, f.icol[std::size_t(f.nnz) + 1] = 1,
                                     f.irow[std::size_t(f.nnz) + 2] = 3, --f.istr[2];
       },
       3,
       0,
       99990,
       " ** On entry, row I of the factors does not end in its pivot:\n    I =" + wide(2) + ".",
       {wide(2)}},
      {[](Factors<T>& f) { f.a[std::size_t(f.nnz)] = T(0.0); },
       3,
       99988,
       99989,
       " ** On entry, the pivot of row I of the factors is zero:\n    I =" + wide(1) + ".",
       {wide(1)}},
      {[](Factors<T>& f) { f.ipivp[1] = 4; },
       3,
       99987,
       99988,
       " ** On entry, PIV(I) .lt. 1 or PIV(I) .gt. N:\n    I =" + wide(2) + ", PIV(I) =" + wide(4) + ".",
       {wide(2), wide(4)},
       true},
      {[](Factors<T>& f) { f.ipivp[2] = 1; },
       3,
       99986,
       99987,
       " ** On entry, PIV(I) is a repeated value:\n    I =" + wide(3) + ", PIV(I) =" + wide(1) + ".",
       {wide(3), wide(1)},
       true},
      {[](Factors<T>& f) { f.ipivq[0] = 0; },
       3,
       99985,
       0,
       " ** On entry, IPIVQ(I) .lt. 1 or IPIVQ(I) .gt. N:\n    I =" + wide(1) + ", IPIVQ(I) =" + wide(0) + ".",
       {wide(1), wide(0)},
       true},
      {[](Factors<T>& f) { f.ipivq[1] = 1; },
       3,
       99984,
       0,
       " ** On entry, IPIVQ(I) is a repeated value:\n    I =" + wide(2) + ", IPIVQ(I) =" + wide(1) + ".",
       {wide(2), wide(1)},
       true}};
  for (const bool triangle : {false, true}) {
    for (const Row<T>& row : rows) {
      const int label = triangle ? row.triangle_label : row.label;
      if (label == 0) {
        continue;
      }
      Factors<T> factors = sample<T>(triangle);
      REQUIRE(factors.factorise().ifail == 0);
      const Integer start = factors.istr[0];
      row.change(factors);
      const auto shown = [&](std::string text) {
        const Integer second = start + 1;
        text = text != "COLUMN" ? text
               : triangle
                   ? " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. IROW(I):\n    I =SECOND, ICOL(I) =" + wide(0) +
                         ", IROW(I) =" + wide(2) + "."
                   : " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. N:\n    I = SECOND, ICOL(I) = " + wide(0) +
                         ", N = " + wide(3) + ".";
        text = with(with(with(text, "SECOND", wide(second)), "THIRD", wide(second + 1)), "START", wide(start));
        return with(text, "BEYOND", wide(factors.la + 2));
      };
      std::string message = shown(row.message);
      for (std::size_t at = message.find(" PIV("); at != std::string::npos; at = message.find(" PIV(")) {
        message.replace(at, 4, triangle ? " IPIV" : " IPIVP");
      }
      std::vector<std::string> values;
      for (const std::string& value : row.values) {
        values.push_back(shown(value));
      }
      if (row.message == "COLUMN") {
        values = {wide(start + 1), wide(0), wide(triangle ? 2 : 3)};
      }
      std::vector<T> y(3, T(1.0)), x(3, T(7.0));
      const support::Outcome outcome = factors.solve("N", y, x);
      CHECK(outcome.ifail == row.ifail);
      CHECK(outcome.console == message + advice<T>(triangle, row.about_permutation));
      CHECK(outcome.buffer == support::buffer_text(solver<T>(triangle), row.ifail, label, values));
      CHECK(factors.solve("N", y, x, "C", true).console == outcome.console);
      CHECK(x == std::vector<T>(3, T(7.0)));
    }
  }
}

TEST_CASE_TEMPLATE("wrong arguments are refused in their order", T, QuarnFloat, Complex) {
  for (const bool triangle : {false, true}) {
    const auto refused = [&](int ifail, int label, const std::string& message, auto change) {
      Factors<T> factors = sample<T>(triangle);
      change(factors);
      const Factors<T> before = factors;
      const support::Outcome outcome = factors.factorise();
      CHECK(outcome.ifail == ifail);
      CHECK(outcome.console == message);
      const std::string name = std::string(triangle ? "F11J" : "F11D") + (kComplex<T> ? "NF" : "AF");
      char head[32];
      std::snprintf(head, sizeof head, "%s %5d %5d", name.c_str(), ifail, label);
      CHECK(outcome.buffer.starts_with(head));
      CHECK(factors.a == before.a);
      CHECK(factors.irow == before.irow);
      CHECK(factors.istr == before.istr);
      CHECK(factors.npivm == before.npivm);
    };
    refused(1, 99999, " ** On entry, N .lt. 1: N =" + wide(0) + ".", [](auto& f) { f.n = 0, f.search = "X"; });
    refused(1, 99998, " ** On entry, NNZ .lt. 1: NNZ =" + wide(0) + ".", [](auto& f) { f.nnz = 0; });
    refused(1, 99997,
            std::string(" ** On entry, NNZ .gt. ") + (triangle ? "N*(N+1)/2" : "N**2") + ":\n    NNZ =" + wide(10) +
                " N =" + wide(3) + ".",
            [](auto& f) { f.nnz = 10; });
    refused(2, 99994, " ** On entry, A(I) is out of order:\n    I =" + wide(2) + ".", [](auto& f) { f.irow[0] = 3; });
    refused(1, 99992,
            std::string(" ** On entry, PSTRAT .ne. ") + (triangle ? "'N', 'D' or 'M'" : "'N', 'R', 'C', 'B' or 'M'") +
                ": PSTRAT = 'X'.",
            [](auto& f) { f.search = "X", f.modified = "X"; });
    refused(1, 99991,
            std::string(" ** On entry, ") + (triangle ? "MIC" : "MILU") +
                " .ne. 'N' or 'M': " + (triangle ? "MIC" : "MILU") + " = 'X'.",
            [](auto& f) { f.modified = "X", f.lfill = -1, f.dtol = -1; });
    refused(1, 99990, " ** On entry, DTOL .lt. 0 or not finite: DTOL = -1.0000e+00.",
            [](auto& f) { f.lfill = -1, f.dtol = -1; });
    if (triangle) {
      refused(1, 99988, " ** On entry, DSCALE .lt. 0 or not finite: DSCALE =         nan.",
              [](auto& f) { f.dscale = QuarnFloat("nan"); });
    }
    const Integer entries = triangle ? 5 : 7;
    refused(3, 99989,
            " ** On entry, LA is too small for the factors: LA =" + wide(2 * entries - 1) +
                ",\n    NNZ + NNZC =" + wide(2 * entries) + ".",
            [&](auto& f) { f.la = 2 * entries - 1; });

    const Factors<T> factors = sample<T>(triangle);
    std::vector<T> x(3);
    CHECK(factors.solve("N", x, x, "X").console == " ** On entry, CHECK .ne. 'C' or 'N': CHECK = 'X'.");
    if (!triangle) {
      CHECK(factors.solve("X", x, x, "X").console == " ** On entry, TRANS .ne. 'N' or 'T': TRANS = 'X'.");
    }
    Factors<T> empty = factors;
    empty.n = 0;
    const support::Outcome outcome = empty.solve("N", x, x);
    CHECK(outcome.ifail == 2);
    CHECK(outcome.console == " ** On entry, N .lt. 1: N =" + wide(0) + ".");
  }
}
