// Kernels and linear equations: digit for digit what the exports give, and true by their definitions.
#include <doctest/doctest.h>

#include <vector>

#include "interface/samples.h"

using namespace front;
using namespace tesk2mp;

TEST_CASE("results are those of the exports, digit for digit") {
  Samples samples;
  Matrix<Real> a = samples.matrix<Real>(5, 4);
  Matrix<Real> b = samples.matrix<Real>(4, 3);
  std::vector<Real> x = samples.vector<Real>(4);
  const Real alpha = samples.real();
  const Real beta = samples.real();

  std::vector<Real> y = samples.vector<Real>(5);
  std::vector<Real> expected = y;
  QuarnMPX_dgemv_("N", 5, 4, alpha, a.data(), 5, x.data(), 1, beta, expected.data(), 1, 1);
  gemv(Op::none, alpha, a, x, beta, y);
  CHECK(y == expected);

  Matrix<Real> c = samples.matrix<Real>(5, 3);
  Matrix<Real> expected_c = c;
  QuarnMPX_dgemm_("N", "N", 5, 3, 4, alpha, a.data(), 5, b.data(), 4, beta, expected_c.data(), 5, 1, 1);
  gemm(Op::none, Op::none, alpha, a, b, beta, c);
  CHECK(c == expected_c);

  Matrix<Real> factors = a;
  std::vector<Integer> pivots(4);
  Integer info = 0;
  QuarnMPX_dgetrf_(5, 4, factors.data(), 5, pivots.data(), &info);
  const LU lu(a);
  CHECK(lu.factors() == factors);
  for (std::size_t i = 0; i < 4; ++i) {
    CHECK(lu.pivots()[i] == pivots[i] - 1);
  }
  CHECK(norm2(x) == QuarnMP_f06ejf_(4, x.data(), 1));
  CHECK(norm(Norm::frobenius, a) == QuarnMP_f06raf_("F", 5, 4, a.data(), 5, nullptr, 1));

  Real ra = alpha;
  Real rb = beta;
  Real cosine;
  Real sine;
  QuarnMP_f06aaf_(&ra, &rb, &cosine, &sine);
  const Rotation turn = rotation(alpha, beta);
  CHECK(turn.r == ra);
  CHECK(turn.z == rb);
  CHECK(turn.c == cosine);
  CHECK(turn.s == sine);
}

TEST_CASE_TEMPLATE("kernels do what they say", T, Real, Complex) {
  const Digits digits(50);
  Samples samples;
  const std::size_t n = 6;
  const Matrix<T> a = samples.matrix<T>(n, n);
  const std::vector<T> x = samples.vector<T>(n);
  constexpr double kUnits = 1e4;  // n terms, each rounded, divided by diagonals of random matrices

  for (const Triangle triangle : {Triangle::upper, Triangle::lower}) {
    for (const Op op : {Op::none, Op::transpose, Op::conjugate_transpose}) {
      std::vector<T> y = x;
      trmv(triangle, op, Diagonal::unit, a, y);
      trsv(triangle, op, Diagonal::unit, a, y);
      CHECK(distance(Matrix<T>(MatrixView<const T>(y, n, 1)), Matrix<T>(MatrixView<const T>(x, n, 1))) < kUnits);

      Matrix<T> b = samples.matrix<T>(n, 2);
      const Matrix<T> given = b;
      trsm(Side::left, triangle, op, Diagonal::unit, 1, a, b);
      for (std::size_t j = 0; j < 2; ++j) {
        trmv(triangle, op, Diagonal::unit, a, b.view().column(j));
      }
      CHECK(distance(b, given) < kUnits);
    }
  }

  Matrix<T> outer(n, n);
  ger(1, x, x, outer);
  CHECK(outer(1, 2) == x[1] * x[2]);
  CHECK(std::vector<T>{dot(x, x)} == multiply(Matrix<T>(MatrixView<const T>(x, 1, n)), x));
  const std::vector<T> reversed(x.rbegin(), x.rend());
  CHECK(dot(VectorView<const T>(&x[n - 1], n, -1), x) == dot(reversed, x));
  const std::vector<T> cancelling = {T(Real("1e300")), T(1), T(Real("-1e300"))};
  CHECK(dot(cancelling, std::vector<T>{T(1), T(1), T(1)}) == T(1));
  CHECK(dotc(cancelling, std::vector<T>{T(1), T(1), T(1)}) == T(1));
  CHECK(fabs(widen(Matrix<T>{{dotc(x, x)}})(0, 0).re - norm2(x) * norm2(x)) < Real(1, 2 - 50));
  std::vector<T> doubled(n);
  scale(2, x, doubled);
  CHECK(doubled[3] == x[3] + x[3]);
}

TEST_CASE("Hermitian and conjugated kernels") {
  Samples samples;
  const Matrix<Complex> a = samples.matrix<Complex>(4, 3);
  Matrix<Complex> c(4, 4);
  herk(Triangle::lower, Op::none, 1, a, 0, c);
  const Matrix<Complex> expected = multiply(a, adjoint(a));
  CHECK(abs(c(3, 1) - expected(3, 1)) < Real(1, 2 - QuarnDigits()));
  CHECK(c(0, 1) == Complex(0));

  const std::vector<Complex> x = samples.vector<Complex>(4);
  Matrix<Complex> outer(4, 4);
  gerc(1, x, x, outer);
  CHECK(outer(1, 2) == x[1] * conj(x[2]));
  std::vector<Complex> y(4);
  copy(x, y);
  scale(3, y);
  CHECK(y[2] == Complex(x[2].re * 3, x[2].im * 3));
}

TEST_CASE_TEMPLATE("equations, determinants and inverses", T, Real, Complex) {
  const Digits digits(60);
  Samples samples;
  const std::size_t n = 8;
  const Matrix<T> a = samples.matrix<T>(n, n);
  const Matrix<T> b = samples.matrix<T>(n, 3);
  // Beyond n rounding errors of one unit: the growth of factors and the condition of a random matrix of order 8.
  constexpr double kUnits = 1e7;

  const LU<T> lu(a);
  CHECK(distance(multiply(a, lu.solve(b)), b) < kUnits);
  CHECK(distance(multiply(adjoint(a), lu.solve(b, Op::conjugate_transpose)), b) < kUnits);
  CHECK(distance(multiply(a, inverse(a)), Matrix<T>::identity(n)) < kUnits);
  const std::vector<T> one = solve(a, b.view().column(1));
  CHECK(one == lu.solve(b).view().column(1).to_vector());
  CHECK(widen(Matrix<T>{{determinant(a) * determinant(inverse(a)) - T(1)}})(0, 0).re < Real(1, 7 - 60));

  const Matrix<T> positive = multiply(a, adjoint(a));
  for (const Triangle triangle : {Triangle::lower, Triangle::upper}) {
    const Cholesky<T> cholesky(positive, triangle);
    const Matrix<T> factor = cholesky.factor();
    const Matrix<T> square =
        triangle == Triangle::lower ? multiply(factor, adjoint(factor)) : multiply(adjoint(factor), factor);
    CHECK(distance(square, positive) < kUnits);
    CHECK(distance(multiply(positive, cholesky.solve(b)), b) < 1e3 * kUnits);
    CHECK(distance(multiply(positive, cholesky.inverse()), Matrix<T>::identity(n)) < 1e3 * kUnits);
  }
}

TEST_CASE("determinants of integer matrices are exact") {
  CHECK(determinant(Matrix<Real>{{0, 2, 0}, {3, 0, 0}, {0, 0, 5}}) == -30);
  CHECK(determinant(Matrix<Real>{{1, 2}, {2, 4}}) == 0);
  CHECK(LU(Matrix<Real>{{1, 2}, {2, 4}}).singular());
  CHECK(Cholesky(Matrix<Real>{{4, 2}, {2, 3}}).determinant() == 8);
}

TEST_CASE("settings of factorisations change the path and not the result") {
  Samples samples;
  const Matrix<Real> a = samples.matrix<Real>(9, 9);
  const Matrix<Real> factors = LU(a).factors();
  CHECK(set_tuning("F07ADF", Tuning::block_size, 3) == 1);
  CHECK(tuning("F07ADF", Tuning::block_size) == 3);
  CHECK(distance(LU(a).factors(), factors) < 1e4);
  CHECK(set_tuning("F07ADF", Tuning::block_size, 1) == 3);
}

TEST_CASE("row weights undo the scaling of equations") {
  const Matrix<Real> a = {{Real(1, 30), Real(2, 30)}, {3, -1}};
  CHECK(LU(a).pivots()[0] == 0);
  CHECK(LU<Real>::row_weighted(a).pivots()[0] == 1);
  const std::vector<Real> x = LU<Real>::row_weighted(a).solve(std::vector<Real>{Real(5, 30), 1});
  CHECK(x == std::vector<Real>{1, 2});
  // Row numbers are numbers of the working precision.
  const Digits one(1);
  CHECK(LU<Real>::row_weighted(Matrix<Real>::identity(9)).pivots()[8] == 8);
  CHECK_THROWS_AS(LU<Real>::row_weighted(Matrix<Real>::identity(11)), InvalidArgument);
}

TEST_CASE_TEMPLATE("refined solutions", T, Real, Complex) {
  const Matrix<T> a = {{3, 1}, {1, 2}};
  const LU factors(a);
  const Refined<T> both = refine(a, factors, Matrix<T>{{7, 4}, {9, 3}});
  CHECK(both.converged);
  CHECK(both.x == Matrix<T>{{1, 1}, {4, 1}});
  CHECK(both.forward_errors.at(1) < Real(1, -18));
  CHECK(both.backward_errors.at(0) == 0);
  CHECK(refine(a, factors, std::vector<T>{7, 9}, Op::transpose).x == Matrix<T>{{1}, {4}});
  CHECK_THROWS_AS((void)refine(Matrix<T>(3, 3), factors, std::vector<T>{7, 9}), InvalidArgument);
}

TEST_CASE_TEMPLATE("QR and least squares", T, Real, Complex) {
  const Matrix<T> a = {{1, 2}, {3, 4}, {5, 6}};
  const QR<T> qr(a);
  const Matrix<T> back = multiply(qr.q(), qr.r());
  Matrix<T> padded(3, 2);
  for (std::size_t j = 0; j < 2; ++j) {
    for (std::size_t i = 0; i < 3; ++i) {
      CHECK(norm2(std::vector<Complex>{Complex(back(i, j)) - Complex(a(i, j))}) < Real(1, -18));
      padded(i, j) = i < 2 ? qr.r()(i, j) : T(0);
    }
  }
  const Matrix<T> again = qr.multiply(Side::left, Op::none, padded);
  CHECK(norm2(std::vector<Complex>{Complex(again(2, 1)) - Complex(6)}) < Real(1, -18));
  const std::vector<T> x = least_squares(a, std::vector<T>{3, 7, 12});
  // The residual (1, -2, 1) / 6 is orthogonal to both columns.
  const std::vector<T> fitted = multiply(a, x);
  CHECK(norm2(std::vector<Complex>{Complex(fitted[1]) - Complex(Real(22) / 3)}) < Real(1, -18));
  CHECK(least_squares(Matrix<T>{{1, 1}}, Matrix<T>{{2}}).rows() == 2);
  CHECK_THROWS_AS((void)least_squares(Matrix<T>{{1, 1}, {0, 0}}, Matrix<T>{{2}, {1}}), NumericalFailure);
  CHECK_THROWS_AS((void)least_squares(a, Matrix<T>(2, 1)), InvalidArgument);
  CHECK_THROWS_AS((void)qr.multiply(Side::right, Op::none, a), InvalidArgument);
}

TEST_CASE_TEMPLATE("factors with pivoting and from the right, rank, null space and pseudo-inverse", T, Real, Complex) {
  const Digits digits(40);
  Samples samples;
  const Matrix<T> left = samples.matrix<T>(6, 2);
  const Matrix<T> right = samples.matrix<T>(2, 5);
  Matrix<T> a(6, 5);  // of rank 2
  gemm(Op::none, Op::none, T(1), left, right, T(0), a);
  constexpr double kUnits = 1e5;
  CHECK(matrix_rank(a) == 2);
  CHECK(matrix_rank(left) == 2);
  CHECK(matrix_rank(Matrix<T>(3, 0)) == 0);
  CHECK(matrix_rank(Matrix<T>{{T(1), T(0)}, {T(0), T(Real("1e-10"))}}, Real("1e-5")) == 1);

  const PivotedQR<T> pivoted(a);
  Matrix<T> ordered(6, 5);
  for (std::size_t j = 0; j < 5; ++j) {
    for (std::size_t i = 0; i < 6; ++i) {
      ordered(i, j) = a(i, std::size_t(pivoted.order()[j]));
    }
  }
  Matrix<T> product(6, 5);
  gemm(Op::none, Op::none, T(1), pivoted.q(), pivoted.r(), T(0), product);
  CHECK(distance(product, ordered) < kUnits);
  const LQ<T> lq(a);
  gemm(Op::none, Op::none, T(1), lq.l(), lq.q(), T(0), product);
  CHECK(distance(product, a) < kUnits);
  CHECK(distance(lq.multiply(Side::right, Op::conjugate_transpose, lq.multiply(Side::right, Op::none, a)), a) < kUnits);

  const Matrix<T> basis = null_space(a);
  REQUIRE(basis.columns() == 3);
  Matrix<T> image(6, 3);
  gemm(Op::none, Op::none, T(1), a, basis, T(0), image);
  CHECK(distance(image, Matrix<T>(6, 3)) < kUnits);
  Matrix<T> gram(3, 3);
  gemm(Op::conjugate_transpose, Op::none, T(1), basis, basis, T(0), gram);
  CHECK(distance(gram, Matrix<T>::identity(3)) < kUnits);

  // The four equations of Penrose.
  const Matrix<T> inverse = pseudo_inverse(a);
  Matrix<T> ab(6, 6);
  Matrix<T> ba(5, 5);
  Matrix<T> back(6, 5);
  Matrix<T> again(5, 6);
  gemm(Op::none, Op::none, T(1), a, inverse, T(0), ab);
  gemm(Op::none, Op::none, T(1), inverse, a, T(0), ba);
  gemm(Op::none, Op::none, T(1), ab, a, T(0), back);
  gemm(Op::none, Op::none, T(1), ba, inverse, T(0), again);
  CHECK(distance(back, a) < kUnits);
  CHECK(distance(again, inverse) < kUnits);
  for (const Matrix<T>& projection : {ab, ba}) {
    Matrix<T> adjoint(projection.rows(), projection.rows());
    gemm(Op::conjugate_transpose, Op::none, T(1), projection, Matrix<T>::identity(projection.rows()), T(0), adjoint);
    CHECK(distance(projection, adjoint) < kUnits);
  }
  CHECK_THROWS_AS((void)minimum_norm(a, Matrix<T>(5, 1)), InvalidArgument);
}

TEST_CASE("least squares with constraints and with errors of unequal size") {
  using Numbers = std::vector<Real>;
  const Matrix<Real> unit = Matrix<Real>::identity(2);
  CHECK(constrained_least_squares(unit, Numbers{10, 5}, Matrix<Real>{{3, 4}}, Numbers{25}) == Numbers{7, 1});
  CHECK_THROWS_AS((void)constrained_least_squares(unit, Numbers{1, 5}, Matrix<Real>{{0, 0}}, Numbers{2}),
                  NumericalFailure);
  CHECK_THROWS_AS((void)constrained_least_squares(unit, Numbers{1}, Matrix<Real>{{0, 0}}, Numbers{2}), InvalidArgument);
  const GaussMarkov<Real> found = gauss_markov(Matrix<Real>{{1}, {1}}, Matrix<Real>{{1, 0}, {0, 2}}, Numbers{0, 5});
  CHECK(found.x == Numbers{1});
  CHECK(found.y == Numbers{-1, 2});
  CHECK_THROWS_AS((void)gauss_markov(Matrix<Real>{{0}, {0}}, unit, Numbers{0, 5}), NumericalFailure);
  CHECK_THROWS_AS((void)gauss_markov(unit, unit, Numbers{0}), InvalidArgument);
}

TEST_CASE_TEMPLATE("determinants beyond the numbers, condition numbers, scales", T, Real, Complex) {
  const T huge(Real(5, 600000000));
  const Matrix<T> large = {{huge, T(0)}, {T(0), huge}};
  const ScaledDeterminant<T> scaled = scaled_determinant(large);
  CHECK(scaled.mantissa == T(Real("2.5")));
  CHECK(scaled.exponent == 1200000001);
  CHECK(!scaled.nearly_singular);
  CHECK_THROWS_AS((void)determinant(large), NumericalFailure);
  CHECK(scaled_determinant(Matrix<T>{{T(1), T(1)}, {T(1), T(1)}}).nearly_singular);
  CHECK(reciprocal_condition(Matrix<T>{{T(2), T(0)}, {T(0), T(2)}}, Norm::infinity) == 1);
  CHECK_THROWS_AS((void)reciprocal_condition(Matrix<T>{{T(Real("inf"))}}), InvalidArgument);
  CHECK(reciprocal_condition(Matrix<T>{{T(1), T(0)}, {T(0), T(4)}}) == Real("0.25"));
  CHECK_THROWS_AS((void)reciprocal_condition(large, Norm::frobenius), InvalidArgument);
  CHECK(equilibrate(Matrix<T>{{T(4)}}).rows[0] == Real("0.25"));
  CHECK(equilibrate(Matrix<T>{{T(4)}}, true).rows[0] == Real("0.1"));
  CHECK_THROWS_AS((void)equilibrate(Matrix<T>{{T(0)}}), NumericalFailure);
  const auto solved = solve_scaled(Triangle::upper, Op::none, Diagonal::general, Matrix<T>{{T(Real(1, -600000000))}},
                                   std::vector<T>{huge});
  CHECK(solved.scale < 1);
  CHECK(solved.x[0] * T(Real(1, -600000000)) == huge * T(solved.scale));
  const Cholesky<T> definite(Matrix<T>{{T(4), T(0)}, {T(0), T(1)}}, Triangle::upper);
  CHECK(definite.reciprocal_condition(4) == Real("0.25"));
  CHECK(definite.inverse() == Matrix<T>{{T(Real("0.25")), T(0)}, {T(0), T(1)}});
}

TEST_CASE_TEMPLATE("symmetric indefinite, band and tridiagonal systems", T, Real, Complex) {
  using Numbers = std::vector<T>;
  const Matrix<T> columns = {{T(6)}, {T(8)}};
  const Matrix<T> indefinite = {{T(0), T(2)}, {T(2), T(0)}};
  CHECK(solve_symmetric(indefinite, Numbers{T(6), T(8)}) == Numbers{T(4), T(3)});
  CHECK(solve_symmetric(indefinite, columns, Triangle::upper, Symmetry::symmetric) == Matrix<T>{{T(4)}, {T(3)}});
  CHECK_THROWS_AS((void)solve_symmetric(Matrix<T>(2, 2), columns), NumericalFailure);
  CHECK_THROWS_AS((void)solve_symmetric(indefinite, Numbers{T(1)}), InvalidArgument);
  CHECK_THROWS_AS((void)solve_symmetric(Matrix<T>(2, 3), columns), InvalidArgument);

  const Matrix<T> diagonals = {{T(0), T(1)}, {T(2), T(3)}, {T(4), T(0)}};  // of (2 1; 4 3)
  const BandLU<T> band(1, 1, diagonals);
  CHECK(band.solve(Numbers{T(4), T(10)}) == Numbers{T(1), T(2)});
  CHECK(band.solve(Numbers{T(10), T(7)}, Op::transpose) == Numbers{T(1), T(2)});
  CHECK_THROWS_AS(BandLU<T>(1, 0, diagonals), InvalidArgument);
  CHECK_THROWS_AS((void)solve_banded(0, 0, Matrix<T>(1, 2), columns), NumericalFailure);

  const TridiagonalLU<T> tridiagonal({T(4)}, {T(2), T(3)}, {T(1)});
  CHECK(tridiagonal.solve(Numbers{T(4), T(10)}) == Numbers{T(1), T(2)});
  CHECK(tridiagonal.solve(Numbers{T(10), T(7)}, Op::conjugate_transpose) == Numbers{T(1), T(2)});
  CHECK_THROWS_AS(TridiagonalLU<T>({}, {T(2), T(3)}, {T(1)}), InvalidArgument);
  CHECK_THROWS_AS((void)solve_tridiagonal(Numbers{}, Numbers{T(0)}, Numbers{}, Numbers{T(1)}), NumericalFailure);
  const std::vector<Real> positive = {4, 5};
  CHECK(solve_definite_tridiagonal(positive, Numbers{T(2)}, Numbers{T(8), T(12)}) == Numbers{T(1), T(2)});
  CHECK_THROWS_AS((void)solve_definite_tridiagonal(positive, Numbers{T(5)}, Numbers{T(8), T(12)}), NumericalFailure);
  CHECK_THROWS_AS((void)solve_definite_tridiagonal(positive, Numbers{}, Numbers{T(8), T(12)}), InvalidArgument);
}
