// Which argument a kernel finds wrong. All arrays are null pointers: a refused call touches nothing, nor does one on
// an empty matrix.
#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "src/frame/failure.h"
#include "src/kernels/entries.h"

namespace {

QuarnFloat* const kReals = nullptr;
Complex* const kComplex = nullptr;

/// The option letters and the integers of a call, in the order of its arguments.
struct Arguments {
  const char* letters;
  const Integer* integers;

  const char* option(int i) const { return letters + i; }
  Integer operator[](int i) const { return integers[i]; }
};

// A family of kernels has one list of arguments.

void matrix_vector(const Arguments& v) {
  QuarnMP_f06paf_(v.option(0), v[0], v[1], 1, kReals, v[2], kReals, v[3], 1, kReals, v[4], 1);
  QuarnMP_f06saf_(v.option(0), v[0], v[1], Complex(1), kComplex, v[2], kComplex, v[3], Complex(1), kComplex, v[4], 1);
}

void triangular(const Arguments& v) {
  QuarnMP_f06pff_(v.option(0), v.option(1), v.option(2), v[0], kReals, v[1], kReals, v[2], 1, 1, 1);
  QuarnMP_f06sff_(v.option(0), v.option(1), v.option(2), v[0], kComplex, v[1], kComplex, v[2], 1, 1, 1);
  QuarnMP_f06pjf_(v.option(0), v.option(1), v.option(2), v[0], kReals, v[1], kReals, v[2], 1, 1, 1);
  QuarnMP_f06sjf_(v.option(0), v.option(1), v.option(2), v[0], kComplex, v[1], kComplex, v[2], 1, 1, 1);
}

void rank_one(const Arguments& v) {
  QuarnMP_f06pmf_(v[0], v[1], 1, kReals, v[2], kReals, v[3], kReals, v[4]);
  QuarnMP_f06smf_(v[0], v[1], Complex(1), kComplex, v[2], kComplex, v[3], kComplex, v[4]);
  QuarnMP_f06snf_(v[0], v[1], Complex(1), kComplex, v[2], kComplex, v[3], kComplex, v[4]);
}

void matrix_matrix(const Arguments& v) {
  QuarnMP_f06yaf_(v.option(0), v.option(1), v[0], v[1], v[2], 1, kReals, v[3], kReals, v[4], 1, kReals, v[5], 1, 1);
  QuarnMP_f06zaf_(v.option(0), v.option(1), v[0], v[1], v[2], Complex(1), kComplex, v[3], kComplex, v[4], Complex(1),
                  kComplex, v[5], 1, 1);
}

void triangular_matrix(const Arguments& v) {
  QuarnMP_f06yjf_(v.option(0), v.option(1), v.option(2), v.option(3), v[0], v[1], 1, kReals, v[2], kReals, v[3], 1, 1,
                  1, 1);
  QuarnMP_f06zjf_(v.option(0), v.option(1), v.option(2), v.option(3), v[0], v[1], Complex(1), kComplex, v[2], kComplex,
                  v[3], 1, 1, 1, 1);
}

void hermitian(const Arguments& v) {
  QuarnMP_f06zpf_(v.option(0), v.option(1), v[0], v[1], 1, kComplex, v[2], 1, kComplex, v[3], 1, 1);
}

struct Row {
  Integer position;  // of the wrong argument, 0 for none
  const char* letters;
  std::vector<Integer> integers;
};

struct Family {
  void (*call)(const Arguments&);
  std::vector<std::string> routines;
  std::vector<Row> rows;
};

/// In the first rows everything from the wrong argument on is wrong; the others tell leading dimensions apart.
const std::vector<Family>& families() {
  static const std::vector<Family> list = {
      {matrix_vector,
       {"F06PAF/DGEMV ", "F06SAF/ZGEMV "},
       {{1, "X", {-1, -1, 0, 0, 0}},
        {2, "N", {-1, -1, 0, 0, 0}},
        {3, "n", {0, -1, 0, 0, 0}},
        {6, "T", {0, 0, 0, 0, 0}},
        {8, "t", {0, 0, 1, 0, 0}},
        {11, "C", {0, 0, 1, 1, 0}},
        {0, "c", {0, 5, 1, -1, -1}},
        {6, "T", {3, 0, 2, 1, 1}},
        {0, "N", {3, 0, 3, 1, 1}}}},
      {triangular,
       {"F06PFF/DTRMV ", "F06SFF/ZTRMV ", "F06PJF/DTRSV ", "F06SJF/ZTRSV "},
       {{1, "QQQ", {-1, -1, 0}},
        {2, "UXX", {-1, -1, 0}},
        {3, "uNT", {-1, -1, 0}},
        {4, "LnU", {-1, -1, 0}},
        {6, "lTu", {0, 0, 0}},
        {8, "UtN", {0, 1, 0}},
        {0, "UCn", {0, 1, -1}},
        {6, "Ucn", {3, 2, 1}}}},
      {rank_one,
       {"F06PMF/DGER  ", "F06SMF/ZGERU ", "F06SNF/ZGERC "},
       {{1, "", {-1, -1, 0, 0, -1}},
        {2, "", {0, -1, 0, 0, -1}},
        {5, "", {0, 0, 0, 0, 0}},
        {7, "", {0, 0, 1, 0, 0}},
        {9, "", {0, 0, 1, 1, 0}},
        {0, "", {0, 5, -1, -1, 1}},
        {9, "", {3, 0, 1, 1, 2}}}},
      {matrix_matrix,
       {"F06YAF/DGEMM ", "F06ZAF/ZGEMM "},
       {{1, "XX", {-1, -1, -1, 0, 0, 0}},
        {2, "NX", {-1, -1, -1, 0, 0, 0}},
        {3, "nC", {-1, -1, -1, 0, 0, 0}},
        {4, "Cn", {0, -1, -1, 0, 0, 0}},
        {5, "cT", {0, 0, -1, 0, 0, 0}},
        {8, "Tt", {0, 0, 0, 0, 0, 0}},
        {10, "tc", {0, 0, 0, 1, 0, 0}},
        {13, "NN", {0, 0, 0, 1, 1, 0}},
        {0, "NN", {0, 0, 0, 1, 1, 1}},
        {8, "nT", {3, 0, 2, 2, 2, 3}},
        {0, "nT", {3, 0, 2, 3, 1, 3}},
        {8, "Cn", {0, 3, 2, 1, 2, 1}},
        {10, "cN", {0, 3, 2, 2, 1, 1}},
        {10, "Tt", {0, 3, 2, 2, 2, 1}},
        {0, "TC", {0, 3, 2, 2, 3, 1}}}},
      {triangular_matrix,
       {"F06YJF/DTRSM ", "F06ZJF/ZTRSM "},
       {{1, "UXXX", {-1, -1, 0, 0}},
        {2, "LXXX", {-1, -1, 0, 0}},
        {3, "lUXX", {-1, -1, 0, 0}},
        {4, "RuNX", {-1, -1, 0, 0}},
        {5, "rLnU", {-1, -1, 0, 0}},
        {6, "llTu", {0, -1, 0, 0}},
        {9, "lltN", {0, 0, 0, 0}},
        {11, "llCn", {0, 0, 1, 0}},
        {0, "llcn", {0, 3, 1, 1}},
        {9, "LUNN", {3, 0, 2, 3}},
        {9, "RUNN", {0, 3, 2, 1}},
        {11, "RUNN", {3, 0, 1, 2}},
        {0, "RUNN", {3, 0, 1, 3}}}},
      {hermitian,
       {"F06ZPF/ZHERK "},
       {{1, "XT", {-1, -1, 0, 0}},
        {2, "UT", {-1, -1, 0, 0}},
        {2, "ut", {0, 0, 1, 1}},
        {3, "Ln", {-1, -1, 0, 0}},
        {4, "lC", {0, -1, 0, 0}},
        {7, "Uc", {0, 0, 0, 0}},
        {10, "UN", {0, 0, 1, 0}},
        {0, "UN", {0, 3, 1, 1}},
        {7, "UC", {0, 3, 2, 1}},
        {7, "LN", {3, 0, 2, 3}},
        {10, "LC", {3, 0, 1, 2}}}},
  };
  return list;
}

}  // namespace

TEST_CASE("the first wrong argument of a kernel is reported by its position, a right call prints nothing") {
  std::vector<std::string> told;
  const QuarnFailureHandler handler = {
      [](const QuarnFailure* failure, void* list) {
        static_cast<std::vector<std::string>*>(list)->push_back(failure->routine + std::to_string(failure->number));
      },
      &told};
  const QuarnFailureHandler* const former = QuarnMPX_failure_handler(&handler);
  for (const Family& family : families()) {
    for (const Row& row : family.rows) {
      CAPTURE(family.routines.front());
      CAPTURE(row.letters);
      CAPTURE(row.position);
      std::vector<std::string> expected;
      for (const std::string& routine : family.routines) {
        if (row.position != 0) {
          expected.push_back(routine + std::to_string(row.position));
        }
      }
      told.clear();
      family.call({row.letters, row.integers.data()});
      CHECK(told == expected);
    }
  }
  QuarnMPX_failure_handler(former);
}
