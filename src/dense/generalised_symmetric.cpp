// A x = lambda B x with A symmetric or Hermitian and B positive definite, and its two relatives: R. S. Martin, J. H.
// Wilkinson, Reduction of the symmetric eigenproblem Ax = lambda Bx and related problems to standard form, Numer. Math.
// 11 (1968), as xSYGST and xSYGV of E. Anderson et al., LAPACK Users' Guide, do it. B = L L^H; of an upper triangle U,
// B = U^H U, L is U^H.
#include <vector>

#include "quarn/functions.h"
#include "src/dense/factorise.h"
#include "src/dense/guard_digits.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/tridiagonal.h"
#include "tesk2mp/generalised.h"

namespace tesk {
namespace {

/// ITYPE of the published routines.
enum Problem : Integer { kAxIsBx = 1, kABxIsX = 2, kBAxIsX = 3 };

/// The lower triangle of a triangle's factor, zeros above it.
template <class T>
OwnMatrix<T> lower_factor(Triangle triangle, Integer n, OneBasedMatrix<T> b) {
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> l = own.view();
  const bool upper = triangle == Triangle::upper;
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = j; i <= n; ++i) {
      l(i, j) = upper ? conjugate(b(j, i)) : b(i, j);
    }
  }
  return own;
}

/// What lies below the diagonal of `lower` into that triangle of A.
template <class T>
void store_triangle(Triangle triangle, Integer n, OneBasedMatrix<T> lower, OneBasedMatrix<T> a) {
  const bool upper = triangle == Triangle::upper;
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = j; i <= n; ++i) {
      if (upper) {
        a(j, i) = conjugate(lower(i, j));
      } else {
        a(i, j) = lower(i, j);
      }
    }
  }
}

/// A := L^-1 A L^-H, or L^H A L, of the Hermitian matrix A in full; the lower triangle counts.
template <class T>
void reduce_to_standard(Problem problem, Integer n, OneBasedMatrix<T> l, OneBasedMatrix<T> a) {
  if (problem == kAxIsBx) {
    exact::solve_triangular_matrix(Side::left, Triangle::lower, Op::none, Diagonal::general, n, n, T(1.0), l, a);
    exact::solve_triangular_matrix(Side::right, Triangle::lower, Op::conjugate_transpose, Diagonal::general, n, n,
                                   T(1.0), l, a);
    return;
  }
  OwnMatrix<T> al(n, n);
  exact::multiply_matrices(Op::none, Op::none, n, n, n, T(1.0), a, l, T(), al.view());
  exact::multiply_matrices(Op::conjugate_transpose, Op::none, n, n, n, T(1.0), l, al.view(), T(), a);
}

/// The eigenvectors of the problem out of those of the standard one.
template <class T>
void transform_back(Problem problem, Integer n, OneBasedMatrix<T> l, OneBasedMatrix<T> y, OneBasedMatrix<T> x) {
  if (problem == kBAxIsX) {
    exact::multiply_matrices(Op::none, Op::none, n, n, n, T(1.0), l, y, T(), x);
    return;
  }
  exact::solve_triangular_matrix(Side::left, Triangle::lower, Op::conjugate_transpose, Diagonal::general, n, n, T(1.0),
                                 l, y);
  for (Integer j = 1; j <= n; ++j) {
    copy(n, y.column(j), x.column(j));
  }
}

template <class T>
Integer checked_reduction(Integer itype, const char* uplo, Integer n, T* a, Integer lda, T* b, Integer ldb) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong(
      {{itype < 1 || itype > 3, 1}, {!is_triangle(uplo), 2}, {n < 0, 3}, {lda < least, 5}, {ldb < least, 7}});
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  const Triangle triangle = triangle_of(uplo);
  OwnMatrix<T> l = lower_factor<T>(triangle, n, {b, ldb});
  OwnMatrix<T> c = hermitian_copy<T>(triangle, n, {a, lda});
  reduce_to_standard(Problem(itype), n, l.view(), c.view());
  for (Integer j = 1; j <= n; ++j) {
    exact::clear_imaginary(c.view()(j, j));
  }
  store_triangle<T>(triangle, n, c.view(), {a, lda});
  return 0;
}

/// The row of the last element that is not finite, 0 when there is none.
template <class T>
Integer last_bad_row(Integer n, OneBasedMatrix<T> full) {
  Integer last = 0;
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      if (!isfinite(magnitude(full(i, j)))) {
        last = std::max(last, i);
      }
    }
  }
  return last;
}

/// One problem, with matrices of its own that are near 1.
template <class T>
class GeneralisedSymmetric {
 public:
  GeneralisedSymmetric(Problem problem, Triangle triangle, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> b)
      : problem_(problem), n_(n), a_(hermitian_copy(triangle, n, a)), b_(hermitian_copy(triangle, n, b)), l_(n, n) {}

  Integer solve(bool wants_vectors, Triangle triangle, OneBasedMatrix<T> a, OneBasedMatrix<T> b, QuarnFloat* w) {
    if (last_bad_row(n_, a_.view()) != 0) {
      return n_;
    }
    if (const Integer bad = last_bad_row(n_, b_.view()); bad != 0) {
      return n_ + bad;
    }
    const Integer rows = kParts<T> * n_;
    const OneBasedMatrix<QuarnFloat> a_numbers = parts(a_.view());
    const OneBasedMatrix<QuarnFloat> b_numbers = parts(b_.view());
    const Integer a_exponent = far_exponent(rows, n_, a_numbers);
    const Integer half = far_exponent(rows, n_, b_numbers) / 2;
    multiply_by_power(rows, n_, a_numbers, -a_exponent);
    multiply_by_power(rows, n_, b_numbers, -2 * half);
    const int digits = guarded_digits(n_);
    Integer info = factorise(digits);
    if (info != 0) {
      return n_ + info;
    }
    // What the factor of an ill-conditioned B takes away is added before.
    const int lost = std::min(digits_lost(), QuarnDigits());
    if (lost > 0 && (info = factorise(digits + lost)) != 0) {
      return n_ + info;
    }
    info = solve_standard(digits + std::max(lost, 0), wants_vectors, a, w);
    if (info != 0) {
      round_elements<QuarnFloat>(n_, 1, {w, n_});
      return info;
    }
    const Integer w_exponent = a_exponent + (problem_ == kAxIsBx ? -2 : 2) * half;
    multiply_by_power(n_, 1, {w, n_}, w_exponent);
    multiply_by_power(rows, n_, parts(l_.view()), half);
    if (wants_vectors) {
      multiply_by_power(rows, n_, parts(a), problem_ == kBAxIsX ? half : -half);
    }
    round_elements<QuarnFloat>(n_, 1, {w, n_});
    round_elements<T>(n_, n_, l_.view());
    round_elements<T>(n_, wants_vectors ? n_ : 0, a);
    store_triangle(triangle, n_, l_.view(), b);
    return 0;
  }

 private:
  Integer factorise(int digits) {
    const WorkingDigits more(digits);
    const OneBasedMatrix<T> l = l_.view();
    for (Integer j = 1; j <= n_; ++j) {
      fill(j - 1, T(), l.column(j));
      copy(n_ - j + 1, b_.view().column(j).from(j), l.column(j).from(j));
    }
    return factorise_cholesky(n_, l);
  }

  /// The exponent of the square of the largest ratio on the diagonal of L.
  int digits_lost() {
    QuarnFloat largest = magnitude(l_.view()(1, 1));
    QuarnFloat smallest = largest;
    for (Integer j = 2; j <= n_; ++j) {
      const QuarnFloat size = magnitude(l_.view()(j, j));
      largest = std::max(largest, size);
      smallest = std::min(smallest, size);
    }
    const std::int64_t powers = std::int64_t(ilogb(largest)) - ilogb(smallest);
    return int(std::min<std::int64_t>(2 * powers, QuarnDigits()));
  }

  Integer solve_standard(int digits, bool wants_vectors, OneBasedMatrix<T> x, QuarnFloat* w) {
    const WorkingDigits more(digits);
    reduce_to_standard(problem_, n_, l_.view(), a_.view());
    const Integer info = hermitian_eigen(wants_vectors, Triangle::lower, n_, a_.view(), w);
    if (info == 0 && wants_vectors) {
      transform_back(problem_, n_, l_.view(), a_.view(), x);
    }
    return info;
  }

  Problem problem_;
  Integer n_;
  OwnMatrix<T> a_;
  OwnMatrix<T> b_;
  OwnMatrix<T> l_;
};

template <class T>
Integer checked_eigen(Integer itype, const char* jobz, const char* uplo, Integer n, T* a, Integer lda, T* b,
                      Integer ldb, QuarnFloat* w, T* work, Integer lwork, Integer least) {
  const Integer order = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{itype < 1 || itype > 3, 1},
                                     {letter(jobz) != 'N' && letter(jobz) != 'V', 2},
                                     {!is_triangle(uplo), 3},
                                     {n < 0, 4},
                                     {lda < order, 6},
                                     {ldb < order, 8},
                                     {lwork < least && lwork != -1, 11}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1 || n == 0) {
    return 0;
  }
  const Triangle triangle = triangle_of(uplo);
  return GeneralisedSymmetric<T>(Problem(itype), triangle, n, {a, lda}, {b, ldb})
      .solve(letter(jobz) == 'V', triangle, {a, lda}, {b, ldb}, w);
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dsygst_(Integer itype, const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* b,
                      Integer ldb, Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_reduction(itype, uplo, n, a, lda, b, ldb);
}

void QuarnMPX_zhegst_(Integer itype, const char* uplo, Integer n, Complex* a, Integer lda, Complex* b, Integer ldb,
                      Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_reduction(itype, uplo, n, a, lda, b, ldb);
}

void QuarnMPX_dsygv_(Integer itype, const char* jobz, const char* uplo, Integer n, QuarnFloat* a, Integer lda,
                     QuarnFloat* b, Integer ldb, QuarnFloat* w, QuarnFloat* work, Integer lwork, Integer* info,
                     int /*jobz_length*/, int /*uplo_length*/) {
  *info = tesk::checked_eigen(itype, jobz, uplo, n, a, lda, b, ldb, w, work, lwork, std::max<Integer>(1, 3 * n - 1));
}

void QuarnMPX_zhegv_(Integer itype, const char* jobz, const char* uplo, Integer n, Complex* a, Integer lda, Complex* b,
                     Integer ldb, QuarnFloat* w, Complex* work, Integer lwork, QuarnFloat* /*rwork*/, Integer* info,
                     int /*jobz_length*/, int /*uplo_length*/) {
  *info = tesk::checked_eigen(itype, jobz, uplo, n, a, lda, b, ldb, w, work, lwork, std::max<Integer>(1, 2 * n - 1));
}
}
