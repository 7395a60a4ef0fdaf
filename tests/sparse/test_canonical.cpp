#include <doctest/doctest.h>

#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "sparse/entries.h"
#include "support/digits.h"
#include "support/outcome.h"
#include "tesk2mp/sparse.h"

using entries::Coordinates;
using entries::value_of;

namespace {

template <class Value>
using Core = void (*)(Integer, Integer*, Value*, Integer*, Integer*, const char*, const char*, Integer*, Integer*,
                      char*, Integer*, int, int, int);

template <class Value>
struct Routine {
  Core<Value> core;
  bool triangle;
  bool exact;  // sums are rounded once
};

template <class Value>
std::vector<Routine<Value>> routines() {
  if constexpr (std::is_same_v<Value, Complex>) {
    return {{QuarnMP_f11znfn_, false, false},
            {QuarnMP_f11zpfn_, true, false},
            {QuarnMPX_f11znfn_, false, true},
            {QuarnMPX_f11zpfn_, true, true}};
  } else {
    return {{QuarnMP_f11zafn_, false, false},
            {QuarnMP_f11zbfn_, true, false},
            {QuarnMPX_f11zafn_, false, true},
            {QuarnMPX_f11zbfn_, true, true}};
  }
}

struct Result {
  Integer ifail;
  std::vector<Integer> istr;
};

/// Runs a routine on the matrix; every integer array has its documented length and a guard behind it.
template <class Value>
Result canonicalize(const Routine<Value>& routine, Coordinates<Value>& matrix, const char* dup, const char* zero) {
  constexpr Integer kGuard = -77;
  Integer nnz = matrix.nnz();
  std::vector<Integer> istr(std::size_t(matrix.n) + 2, kGuard);
  std::vector<Integer> iwork(std::size_t(matrix.n) + std::size_t(nnz) + 1, kGuard);
  matrix.irow.push_back(kGuard);
  matrix.icol.push_back(kGuard);
  const support::Outcome outcome = support::outcome_of([&](char* buffer, Integer* ifail, int length) {
    routine.core(matrix.n, &nnz, matrix.a.data(), matrix.irow.data(), matrix.icol.data(), dup, zero, istr.data(),
                 iwork.data(), buffer, ifail, 1, 1, length);
  });
  CHECK(matrix.irow.back() == kGuard);
  CHECK(matrix.icol.back() == kGuard);
  CHECK(istr.back() == kGuard);
  CHECK(iwork.back() == kGuard);
  matrix.a.resize(std::size_t(nnz));
  matrix.irow.resize(std::size_t(nnz));
  matrix.icol.resize(std::size_t(nnz));
  istr.pop_back();
  return {outcome.ifail, istr};
}

/// What a routine has to make of the matrix, from a map.
template <class Value>
struct Oracle {
  Coordinates<Value> matrix;
  Integer ifail = 0;

  Oracle(const Coordinates<Value>& given, bool exact, char dup, char zero) {
    std::map<std::pair<Integer, Integer>, std::vector<Value>> places;
    for (std::size_t k = 0; k < given.a.size(); ++k) {
      places[{given.irow[k], given.icol[k]}].push_back(given.a[k]);
    }
    matrix.n = given.n;
    bool has_zero = false;
    bool has_duplicate = false;
    for (const auto& [place, values] : places) {
      has_duplicate = has_duplicate || values.size() > 1;
      Value value = values.front();
      {
        const support::Digits scope(exact ? 200 : QuarnDigits());
        for (std::size_t i = 1; dup == 'S' && i < values.size(); ++i) {
          value = value + values[i];
        }
      }
      value = value + Value();  // rounds
      const bool is_zero = value == value_of<Value>(0, 0);
      has_zero = has_zero || is_zero;
      if (!is_zero || zero != 'R') {
        matrix.add(place.first, place.second, value);
      }
    }
    ifail = dup == 'F' && has_duplicate ? 3 : zero == 'F' && has_zero ? 4 : 0;
  }
};

template <class Value>
void check_row_starts(const Coordinates<Value>& matrix, const std::vector<Integer>& istr) {
  REQUIRE(istr.front() == 1);
  REQUIRE(istr.back() == matrix.nnz() + 1);
  for (Integer i = 1; i <= matrix.n; ++i) {
    for (Integer k = istr[std::size_t(i) - 1]; k < istr[std::size_t(i)]; ++k) {
      CHECK(matrix.irow[std::size_t(k) - 1] == i);
    }
  }
}

template <class Value>
Coordinates<Value> random_matrix(support::Random& random, bool triangle) {
  Coordinates<Value> matrix;
  matrix.n = Integer(random.between(1, 12));
  const int parts = random.once_in(2) ? 1 : 9;
  const auto part = [&] { return int(random.between(-parts, parts)); };
  for (std::int64_t k = random.between(0, 40); k > 0; --k) {
    auto row = Integer(random.between(1, matrix.n));
    auto column = Integer(random.between(1, matrix.n));
    if (triangle && column > row) {
      std::swap(row, column);
    }
    const int re = part();
    matrix.add(row, column, value_of<Value>(re, part()));
    if (random.once_in(3)) {  // hides the others at the working digits, until it is taken off again
      matrix.a.back() = matrix.a.back() * Value(QuarnFloat(1, 30));
    }
  }
  return matrix;
}

char upper(char letter) { return char(letter & ~0x20); }

}  // namespace

TEST_CASE_TEMPLATE("every pair of options against a map, and again on its own result", Value, QuarnFloat, Complex) {
  support::Random random;
  for (int round = 0; round < 60; ++round) {
    for (const Routine<Value>& routine : routines<Value>()) {
      const Coordinates<Value> given = random_matrix<Value>(random, routine.triangle);
      for (const char* dup : {"R", "S", "F", "r", "s", "f"}) {
        for (const char* zero : {"R", "K", "F", "r", "k", "f"}) {
          if (routine.triangle && (upper(*dup) == 'F' || upper(*zero) == 'F')) {
            continue;
          }
          CAPTURE(round);
          CAPTURE(std::string(dup) + zero);
          const Oracle<Value> oracle(given, routine.exact, upper(*dup), upper(*zero));
          Coordinates<Value> matrix = given;
          const Result result = canonicalize(routine, matrix, dup, zero);
          CHECK(result.ifail == oracle.ifail);
          check_row_starts(matrix, result.istr);
          if (oracle.ifail == 3) {
            CHECK(matrix.nnz() == given.nnz());
            continue;
          }
          CHECK(matrix == oracle.matrix);
          const Coordinates<Value> once = matrix;
          const Result again = canonicalize(routine, matrix, dup, zero);
          CHECK(again.ifail == result.ifail);
          CHECK(again.istr == result.istr);
          CHECK(matrix == once);
        }
      }
    }
  }
}

TEST_CASE("duplicates: the first given survives, or all are added, in the order given or exactly") {
  const Routine<QuarnFloat> routine = routines<QuarnFloat>()[0];
  Coordinates<QuarnFloat> given;
  given.n = 3;
  given.add(3, 1, QuarnFloat("1e30"));
  given.add(2, 2, 5);
  given.add(3, 1, 1);
  given.add(1, 3, 7);
  given.add(3, 1, QuarnFloat("-1e30"));
  // At 20 digits the 1 is lost between the two large values, and the sum is zero.
  Coordinates<QuarnFloat> matrix = given;
  canonicalize(routine, matrix, "S", "K");
  CHECK(matrix.a == std::vector<QuarnFloat>{7, 5, 0});
  matrix = given;
  canonicalize(routine, matrix, "S", "R");
  CHECK(matrix.a == std::vector<QuarnFloat>{7, 5});
  matrix = given;
  canonicalize(routine, matrix, "R", "R");
  CHECK(matrix.a == std::vector<QuarnFloat>{7, 5, QuarnFloat("1e30")});
  matrix = given;
  canonicalize(routines<QuarnFloat>()[2], matrix, "S", "R");
  CHECK(matrix.a == std::vector<QuarnFloat>{7, 5, 1});
}

TEST_CASE("nothing stored, and one row or column") {
  const Routine<QuarnFloat> routine = routines<QuarnFloat>()[0];
  Coordinates<QuarnFloat> matrix;
  matrix.n = 4;
  const Result result = canonicalize(routine, matrix, "F", "F");
  CHECK(result.ifail == 0);
  CHECK(result.istr == std::vector<Integer>{1, 1, 1, 1, 1});

  for (const bool row : {true, false}) {
    Coordinates<QuarnFloat> line;
    line.n = 9;
    for (const Integer k : {5, 9, 1, 7, 3}) {
      line.add(row ? 4 : k, row ? k : 4, k);
    }
    canonicalize(routine, line, "F", "F");
    CHECK(line.a == std::vector<QuarnFloat>{1, 3, 5, 7, 9});
  }
}

TEST_CASE("NaN and the smallest number are not zero, -0 is") {
  Coordinates<Complex> matrix;
  matrix.n = 2;
  matrix.add(2, 2, Complex(QuarnFloat(0), QuarnFloat("nan")));
  matrix.add(2, 1, Complex(QuarnFloat("-0"), QuarnFloat("0")));
  matrix.add(1, 2, Complex(QuarnFloat(0), QuarnFloat("1e-999999999")));
  canonicalize(routines<Complex>()[0], matrix, "F", "R");
  CHECK(matrix.icol == std::vector<Integer>{2, 2});
  CHECK(isnan(matrix.a[1].im));
}
