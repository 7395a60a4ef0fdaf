// E. Anderson et al., LAPACK Users' Guide: xGTTRF, xGTTRS, xPTTRF, xPTTRS.
#include "quarn/quarnthread.h"
#include "src/frame/check_points.h"
#include "src/kernels/level2.h"
#include "tesk2mp/structured.h"

namespace tesk {
namespace {

/// Elimination with interchanges of neighbouring rows; returns INFO.
template <class T>
Integer factorise(Integer n, T* below, T* diagonal, T* above, T* second, Integer* ipiv) {
  if (n < 0) {
    return -1;
  }
  const OneBasedVector<T> dl(below, 1);
  const OneBasedVector<T> d(diagonal, 1);
  const OneBasedVector<T> du(above, 1);
  const OneBasedVector<T> du2(second, 1);
  CheckPoints check_points;
  for (Integer i = 1; i <= n; ++i) {
    ipiv[i - 1] = i;
  }
  for (Integer i = 1; i < n; ++i) {
    check_points.pass(4);
    const bool next = i < n - 1;  // there is a row behind the two
    if (next) {
      du2(i) = T();
    }
    if (magnitude(d(i)) >= magnitude(dl(i))) {
      if (!is_zero(d(i))) {
        dl(i) = quotient(dl(i), d(i));
        subtract_product(d(i + 1), dl(i), du(i));
      }
      continue;
    }
    const T factor = quotient(d(i), dl(i));
    d(i) = std::exchange(dl(i), factor);
    T former = std::exchange(du(i), d(i + 1));
    subtract_product(former, factor, d(i + 1));
    d(i + 1) = std::move(former);
    if (next) {
      du2(i) = du(i + 1);
      du(i + 1) = -(factor * du(i + 1));
    }
    ipiv[i - 1] = i + 1;
  }
  for (Integer i = 1; i <= n; ++i) {
    if (is_zero(d(i))) {
      return i;
    }
  }
  return 0;
}

/// One right-hand side.
template <class T>
void solve_column(Op op, Integer n, OneBasedVector<T> dl, OneBasedVector<T> d, OneBasedVector<T> du,
                  OneBasedVector<T> du2, const Integer* ipiv, OneBasedVector<T> x) {
  CheckPoints check_points;
  if (op == Op::none) {
    for (Integer i = 1; i < n; ++i) {
      check_points.pass(2);
      if (ipiv[i - 1] != i) {
        std::swap(x(i), x(i + 1));
      }
      subtract_product(x(i + 1), dl(i), x(i));
    }
    for (Integer i = n; i >= 1; --i) {
      check_points.pass(3);
      if (i < n) {
        subtract_product(x(i), du(i), x(i + 1));
      }
      if (i < n - 1) {
        subtract_product(x(i), du2(i), x(i + 2));
      }
      x(i) = quotient(x(i), d(i));
    }
    return;
  }
  for (Integer i = 1; i <= n; ++i) {
    check_points.pass(3);
    if (i > 1) {
      subtract_product(x(i), op, du(i - 1), x(i - 1));
    }
    if (i > 2) {
      subtract_product(x(i), op, du2(i - 2), x(i - 2));
    }
    x(i) = quotient(x(i), apply(op, d(i)));
  }
  for (Integer i = n - 1; i >= 1; --i) {
    check_points.pass(2);
    subtract_product(x(i), op, dl(i), x(i + 1));
    if (ipiv[i - 1] != i) {
      std::swap(x(i), x(i + 1));
    }
  }
}

template <class T>
Integer solve(const char* trans, Integer n, Integer nrhs, T* dl, T* d, T* du, T* du2, const Integer* ipiv, T* b,
              Integer ldb) {
  const Integer wrong =
      first_wrong({{!is_op(trans), 1}, {n < 0, 2}, {nrhs < 0, 3}, {ldb < std::max<Integer>(1, n), 10}});
  if (wrong != 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> right(b, ldb);
  for (Integer j = 1; j <= nrhs; ++j) {
    solve_column<T>(op_of(trans), n, {dl, 1}, {d, 1}, {du, 1}, {du2, 1}, ipiv, right.column(j));
  }
  return 0;
}

QuarnFloat over(const QuarnFloat& x, const QuarnFloat& d) { return x / d; }
Complex over(const Complex& x, const QuarnFloat& d) { return {x.re / d, x.im / d}; }
QuarnFloat real_product(const QuarnFloat& x, const QuarnFloat& y) { return x * y; }
QuarnFloat real_product(const Complex& x, const Complex& y) { return x.re * y.re + x.im * y.im; }

/// L D L^H of a positive definite matrix; returns INFO.
template <class T>
Integer factorise_definite(Integer n, QuarnFloat* d, T* e) {
  if (n < 0) {
    return -1;
  }
  CheckPoints check_points;
  for (Integer i = 0; i < n; ++i) {
    check_points.pass(4);
    if (!(d[i] > 0)) {
      return i + 1;
    }
    if (i + 1 < n) {
      const T beside = e[i];
      e[i] = over(beside, d[i]);
      d[i + 1] -= real_product(e[i], beside);
    }
  }
  return 0;
}

/// With e below the diagonal of L, or above that of U = L^H.
template <class T>
void solve_definite(Triangle stored, Integer n, Integer nrhs, const QuarnFloat* d, const T* e, OneBasedMatrix<T> b) {
  const Op down = stored == Triangle::lower ? Op::none : Op::conjugate_transpose;
  const Op up = stored == Triangle::lower ? Op::conjugate_transpose : Op::none;
  CheckPoints check_points;
  for (Integer j = 1; j <= nrhs; ++j) {
    const OneBasedVector<T> x = b.column(j);
    for (Integer i = 2; i <= n; ++i) {
      check_points.pass(2);
      subtract_product(x(i), down, e[i - 2], x(i - 1));
    }
    for (Integer i = n; i >= 1; --i) {
      check_points.pass(2);
      x(i) = over(x(i), d[i - 1]);
      if (i < n) {
        subtract_product(x(i), up, e[i - 1], x(i + 1));
      }
    }
  }
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgttrf_(Integer n, QuarnFloat* dl, QuarnFloat* d, QuarnFloat* du, QuarnFloat* du2, Integer* ipiv,
                      Integer* info) {
  *info = tesk::factorise(n, dl, d, du, du2, ipiv);
}

void QuarnMPX_zgttrf_(Integer n, Complex* dl, Complex* d, Complex* du, Complex* du2, Integer* ipiv, Integer* info) {
  *info = tesk::factorise(n, dl, d, du, du2, ipiv);
}

void QuarnMPX_dgttrs_(const char* trans, Integer n, Integer nrhs, QuarnFloat* dl, QuarnFloat* d, QuarnFloat* du,
                      QuarnFloat* du2, Integer* ipiv, QuarnFloat* b, Integer ldb, Integer* info, int /*trans_length*/) {
  *info = tesk::solve(trans, n, nrhs, dl, d, du, du2, ipiv, b, ldb);
}

void QuarnMPX_zgttrs_(const char* trans, Integer n, Integer nrhs, Complex* dl, Complex* d, Complex* du, Complex* du2,
                      Integer* ipiv, Complex* b, Integer ldb, Integer* info, int /*trans_length*/) {
  *info = tesk::solve(trans, n, nrhs, dl, d, du, du2, ipiv, b, ldb);
}

void QuarnMPX_dpttrf_(Integer n, QuarnFloat* d, QuarnFloat* e, Integer* info) {
  *info = tesk::factorise_definite(n, d, e);
}

void QuarnMPX_zpttrf_(Integer n, QuarnFloat* d, Complex* e, Integer* info) {
  *info = tesk::factorise_definite(n, d, e);
}

void QuarnMPX_dpttrs_(Integer n, Integer nrhs, QuarnFloat* d, QuarnFloat* e, QuarnFloat* b, Integer ldb,
                      Integer* info) {
  const Integer wrong = tesk::first_wrong({{n < 0, 1}, {nrhs < 0, 2}, {ldb < std::max<Integer>(1, n), 6}});
  *info = -wrong;
  if (wrong == 0) {
    tesk::solve_definite<QuarnFloat>(tesk::Triangle::lower, n, nrhs, d, e, {b, ldb});
  }
}

void QuarnMPX_zpttrs_(const char* uplo, Integer n, Integer nrhs, QuarnFloat* d, Complex* e, Complex* b, Integer ldb,
                      Integer* info, int /*uplo_length*/) {
  const Integer wrong =
      tesk::first_wrong({{!tesk::is_triangle(uplo), 1}, {n < 0, 2}, {nrhs < 0, 3}, {ldb < std::max<Integer>(1, n), 7}});
  *info = -wrong;
  if (wrong == 0) {
    tesk::solve_definite<Complex>(tesk::triangle_of(uplo), n, nrhs, d, e, {b, ldb});
  }
}
}
