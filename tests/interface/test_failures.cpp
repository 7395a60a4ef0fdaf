// What the C++ interface refuses: the right exception with routine, code, text and values, and not a byte printed.
#include <doctest/doctest.h>

#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "support/standard_output.h"
#include "tesk2mp/tesk2mp.hpp"

namespace {

using namespace tesk2mp;

struct Row {
  std::string routine;
  Integer code;
  Integer label;
  std::string what;
  std::vector<std::string> values;
  std::function<void()> call;
};

std::string text_of(const Value& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    return std::to_string(*integer);
  }
  if (const auto* real = std::get_if<Real>(&value)) {
    return real->to_string();
  }
  return std::get<std::string>(value);
}

/// Each call throws Failure as its row says, and standard output stays empty.
template <class Failure>
void check_all(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    CAPTURE(row.what);
    std::optional<Failure> thrown;
    const std::string printed = support::printed_by([&] {
      try {
        row.call();
      } catch (const Failure& failure) {
        thrown = failure;
      }
    });
    CHECK(printed.empty());
    REQUIRE(thrown);
    CHECK(thrown->routine() == row.routine);
    CHECK(thrown->code() == row.code);
    CHECK(thrown->label() == row.label);
    CHECK(thrown->what() == row.routine + ": " + row.what);
    std::vector<std::string> values;
    for (const Value& value : thrown->values()) {
      values.push_back(text_of(value));
    }
    CHECK(values == row.values);
  }
}

const Matrix<Real> kTall(3, 2);
const Matrix<Complex> kTallComplex(3, 2);
const Matrix<Real> kSingular = {{1, 2}, {2, 4}};

constexpr std::size_t kHalf = std::numeric_limits<std::size_t>::max() / 2;

std::vector<Real> reals(std::size_t n) { return std::vector<Real>(n, Real(1)); }

}  // namespace

TEST_CASE("refusals of the library itself come with its own words") {
  check_all<InvalidArgument>({
      {"C06FAF",
       3,
       99999,
       "On entry, N .le. 1: N = 1.",
       {"1"},
       [] {
         std::vector<Real> x(1);
         transform_real(x);
       }},
      {"C06FBF",
       1,
       99998,
       "At least one prime factor of N is greater than 19. N = 46.",
       {"46"},
       [] {
         std::vector<Real> x(46);
         transform_hermitian(x);
       }},
      {"C06FAF", 3, 99999, "On entry, N .le. 1: N = 0.", {"0"}, [] { classic::transform_real({}); }},
      {"M01EAF",
       2,
       99996,
       "IRANK(M1:M2) does not contain a permutation of the integers M1 to M2. IRANK(I) contains an out-of-range "
       "value: I = 2, IRANK(I) = 4.",
       {"2", "4"},
       [] {
         std::vector<Real> x = reals(3);
         rearrange(x, std::vector<Integer>{0, 3, 1});
       }},
      {"M01ZAF",
       3,
       99995,
       "IPERM(M1:M2) does not contain a permutation of the integers M1 to M2. IPERM contains a repeated value: 2.",
       {"2"},
       [] {
         (void)invert(std::vector<Integer>{1, 1, 0});
       }},
      {"M01ZAF",
       2,
       99996,
       "IPERM(M1:M2) does not contain a permutation of the integers M1 to M2. IPERM(I) contains an out-of-range "
       "value: I = 1, IPERM(I) = 0.",
       {"1", "0"},
       [] {
         (void)invert(std::vector<Integer>{2147483647, 1});
       }},
      {"F11ZAF",
       3,
       99993,
       "On entry, a duplicate entry has been found in row I and column J: I = 2, J = 1.",
       {"2", "1"},
       [] {
         SparseMatrix<Real> a(3);
         a.add(1, 0, 5);
         a.add(1, 0, 6);
         a.canonicalise(Duplicates::fail);
       }},
      {"F11ZNF",
       4,
       99992,
       "On entry, a zero entry has been found in row I and column J: I = 3, J = 3.",
       {"3", "3"},
       [] {
         SparseMatrix<Complex> a(3);
         a.add(2, 2, Complex(0));
         a.canonicalise(Duplicates::sum, Zeros::fail);
       }},
      {"C02ALF", 1, 99999, "On entry, E .eq. 0.0.", {}, [] { (void)quartic_zeros(0, 1, 2, 3, 4); }},
  });
  check_all<NumericalFailure>({
      {"C02ALF",
       2,
       99998,
       "The companion matrix H cannot be formed without overflow.",
       {},
       [] { (void)quartic_zeros(Real(1, -600000000), Real(1, 600000000), 2, 3, 4); }},
      {"C02ALF",
       2,
       99998,
       "The companion matrix H cannot be formed without overflow.",
       {},
       [] { (void)quartic_zeros(1, Real("nan"), 2, 3, 4); }},
  });
}

TEST_CASE("shapes that do not fit are refused before a routine is called") {
  static std::vector<Real> three = reals(3);
  static Matrix<Real> a = kTall;
  static std::vector<Complex> complex_three(3);
  check_all<InvalidArgument>({
      {"F06PAF/DGEMV",
       7,
       0,
       "a vector of 3 elements where 2 are needed",
       {"3", "2"},
       [] { gemv(Op::none, 1, kTall, three, 0, three); }},
      {"F06PAF/DGEMV",
       10,
       0,
       "a vector of 3 elements where 2 are needed",
       {"3", "2"},
       [] { gemv(Op::transpose, 1, kTall, three, 0, three); }},
      {"F06SAF/ZGEMV",
       7,
       0,
       "a vector of 3 elements where 2 are needed",
       {"3", "2"},
       [] { gemv(Op::none, 1, kTallComplex, complex_three, 0, complex_three); }},
      {"F06PFF/DTRMV",
       4,
       0,
       "a matrix of 3 by 2 is not square",
       {"3", "2"},
       [] { trmv(Triangle::upper, Op::none, Diagonal::unit, kTall, three); }},
      {"F06SJF/ZTRSV",
       4,
       0,
       "a matrix of 3 by 2 is not square",
       {"3", "2"},
       [] { trsv(Triangle::upper, Op::none, Diagonal::unit, kTallComplex, complex_three); }},
      {"F06PJF/DTRSV",
       7,
       0,
       "a vector of 3 elements where 2 are needed",
       {"3", "2"},
       [] { trsv(Triangle::lower, Op::none, Diagonal::unit, kSingular, three); }},
      {"F06PMF/DGER", 6, 0, "a vector of 3 elements where 2 are needed", {"3", "2"}, [] { ger(1, three, three, a); }},
      {"F06SNF/ZGERC",
       6,
       0,
       "a vector of 3 elements where 2 are needed",
       {"3", "2"},
       [] {
         Matrix<Complex> c = kTallComplex;
         gerc(1, complex_three, complex_three, c);
       }},
      {"F06YAF/DGEMM", 9, 0, "op(B) has 3 rows, op(A) has 2 columns", {"3", "2"}, [] { (void)multiply(kTall, kTall); }},
      {"F06ZAF/ZGEMM",
       12,
       0,
       "a matrix of 3 by 2 where 3 by 3 is needed",
       {"3", "2", "3", "3"},
       [] {
         Matrix<Complex> c = kTallComplex;
         gemm(Op::none, Op::conjugate_transpose, 1, kTallComplex, kTallComplex, 0, c);
       }},
      {"F06YJF/DTRSM",
       8,
       0,
       "a matrix of 3 by 2 where 3 by 3 is needed",
       {"3", "2", "3", "3"},
       [] { trsm(Side::left, Triangle::upper, Op::none, Diagonal::unit, 1, kTall, a); }},
      {"F06ZPF/ZHERK",
       2,
       0,
       "the plain transpose makes no Hermitian matrix",
       {},
       [] {
         Matrix<Complex> c(2, 2);
         herk(Triangle::upper, Op::transpose, 1, kTallComplex, 0, c);
       }},
      {"F06RMF", 2, 0, "a matrix of 3 by 2 is not square", {"3", "2"}, [] { (void)hessenberg_norm(Norm::one, kTall); }},
      {"F06FDF", 5, 0, "a vector of 3 elements where 2 are needed", {"3", "2"}, [] { scale(2, reals(2), three); }},
      {"F06JJF/ZCOPY",
       4,
       0,
       "a vector of 3 elements where 1 are needed",
       {"3", "1"},
       [] { copy(std::vector<Complex>(1), complex_three); }},
      {"F07ADF/DGETRF",
       1,
       0,
       "a right-hand side of 3 rows for 2 equations",
       {"3", "2"},
       [] { (void)solve(kSingular, three); }},
      {"ZDETERMINANT", 1, 0, "a matrix of 3 by 2 is not square", {"3", "2"}, [] { (void)determinant(kTallComplex); }},
      {"DPOTRF", 2, 0, "a matrix of 3 by 2 is not square", {"3", "2"}, [] { (void)Cholesky(kTall); }},
      {"F08NHF/DGEBAL", 3, 0, "a matrix of 3 by 2 is not square", {"3", "2"}, [] { (void)eigenvalues(kTall); }},
      {"F08NEF/DGEHRD", 4, 0, "a matrix of 3 by 2 is not square", {"3", "2"}, [] { (void)schur(kTall); }},
      {"M01EAF",
       4,
       0,
       "2 ranks for 3 values",
       {"2", "3"},
       [] {
         rearrange(three, std::vector<Integer>{0, 1});
       }},
      {"F11ZAF", 4, 0, "row 3 of a matrix of order 3", {"3", "3"}, [] { SparseMatrix<Real>(3).add(3, 0, 1); }},
      {"F11ZPF",
       5,
       0,
       "column 2 in row 1 of the lower triangle of order 3",
       {"2", "1", "3"},
       [] { SparseMatrix<Complex>(3, Storage::lower_triangle).add(1, 2, Complex(1)); }},
      {"F11ZAF", 1, 0, "a sparse matrix of order 0", {"0"}, [] { SparseMatrix<Real>(0); }},
      {"F11XAF",
       8,
       0,
       "a vector of 3 elements where 2 are needed",
       {"3", "2"},
       [] { (void)SparseMatrix<Real>(2).multiply(three); }},
      {"F11XNF",
       1,
       0,
       "the plain transpose of a complex sparse matrix",
       {},
       [] { (void)SparseMatrix<Complex>(3).multiply(complex_three, Op::transpose); }},
      {"G05KAF", 1, 0, "generators are 0 to 273, not 274", {"274"}, [] { Random random(274); }},
      {"G05KAF",
       2,
       0,
       "16770647 cannot be part of a seed of generator 5",
       {"16770647", "5"},
       [] {
         Random random(5, {1, 2, 16770647, 3});
       }},
      {"G05KAF",
       2,
       0,
       "a seed of zeros gives nothing but zeros",
       {},
       [] {
         Random random(0, {0, 0, 0, 0});
       }},
      {"QuarnSetDigits", 1, 0, "digits are 1 to 1000000, not 0", {"0"}, [] { const Digits none(0); }},
      {"MatrixView",
       4,
       0,
       "columns that start 2 elements apart cannot have 3 rows",
       {"2", "3"},
       [] { MatrixView<Real>(three.data(), 3, 1, 2); }},
      {"MatrixView",
       1,
       0,
       "3 elements are no matrix of 2 by 2",
       {"3", "2", "2"},
       [] { MatrixView<Real>(std::span<Real>(three), 2, 2); }},
      {"MatrixView::block",
       2,
       0,
       "columns 1 and 2 more, of 2",
       {"1", "2", "2"},
       [] { (void)kTall.view().block(0, 1, 3, 2); }},
      {"MatrixView::row", 1, 0, "row 3 of 3", {"3", "3"}, [] { (void)kTall.view().row(3); }},
      {"F06PAF/DGEMV",
       7,
       0,
       "a vector of 3 elements where 2 are needed",
       {"3", "2"},
       [] { (void)dot(reals(2), three); }},
      {"F08PEF/DHSEQR",
       10,
       0,
       "a matrix of 3 by 2 where 2 by 2 is needed",
       {"3", "2", "2", "2"},
       [] {
         (void)schur({kSingular, kTall});
       }},
      {"F08QKF/DTREVC",
       5,
       0,
       "a matrix of 2 by 2 where 1 by 1 is needed",
       {"2", "2", "1", "1"},
       [] {
         (void)eigen({kSingular, kSingular, {1}});
       }},
      {"F07ZAZ", 1, 0, "no setting 9", {"9"}, [] { (void)tuning("F07ADF", Tuning(9)); }},
      {"DPOTRF", 1, 0, "a triangle is upper or lower", {}, [] { (void)Cholesky(kSingular, Triangle('D')); }},
      {"F08NHF/DGEBAL", 1, 0, "no such balancing", {}, [] { (void)balance(kSingular, Balancing('Q')); }},
      {"F11BDF",
       1,
       0,
       "no such method",
       {},
       [] {
         SolverOptions options;
         options.method = Method(99);
         (void)solve_iteratively(SparseMatrix<Real>(2), reals(2), options);
       }},
      {"F07ZAZ", 2, 0, "no settings of a routine C06FAF", {}, [] { (void)tuning("C06FAF", Tuning::block_size); }},
      {"Matrix",
       1,
       0,
       std::to_string(kHalf) + " rows of 4 elements are too many",
       {std::to_string(kHalf), "4"},
       [] { Matrix<Real>(kHalf, 4); }},
      {"VectorView",
       3,
       0,
       "the elements of a vector cannot lie 0 places apart",
       {},
       [] { VectorView<Real>(three.data(), 3, 0); }},
  });
}

TEST_CASE("mathematics that fails says where") {
  check_all<NumericalFailure>({
      {"F07ADF/DGETRF",
       2,
       0,
       "U(2, 2) is exactly zero: the matrix is singular",
       {"2", "2"},
       [] { (void)solve(kSingular, reals(2)); }},
      {"F07ADF/DGETRF",
       2,
       0,
       "U(2, 2) is exactly zero: the matrix is singular",
       {"2", "2"},
       [] { (void)inverse(kSingular); }},
      {"F07ADG", 2, 0, "no pivot of step 2 is large enough", {"2"}, [] { (void)LU<Real>::row_weighted(kSingular); }},
      {"DPOTRF",
       2,
       0,
       "the leading minor of order 2 is not positive",
       {"2"},
       [] {
         (void)Cholesky(Matrix<Real>{{1, 2}, {2, 1}});
       }},
  });
}

TEST_CASE("after a failure the library is as it was") {
  std::vector<Real> one(1);
  CHECK_THROWS_AS(transform_real(one), InvalidArgument);
  CHECK(QuarnMPX_failure_handler(nullptr) == nullptr);
  {
    const Digits thirty(30);
    CHECK_THROWS_AS(Digits(1000001), InvalidArgument);
    CHECK(QuarnDigits() == 30);
  }
  CHECK(QuarnDigits() == 20);
}
