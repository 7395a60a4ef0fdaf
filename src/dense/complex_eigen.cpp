// The entries of the general complex eigenproblem: ZHSEQR, ZTREVC and ZGEEV of E. Anderson et al., LAPACK Users' Guide.
#include <vector>

#include "src/dense/complex_schur.h"
#include "src/dense/guard_digits.h"
#include "src/dense/householder.h"
#include "src/dense/power_of_ten.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk {
namespace {

using Matrix = OneBasedMatrix<Complex>;

Integer checked_qr(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, Complex* h, Integer ldh,
                   Complex* w, Complex* z, Integer ldz, Complex* work, Integer lwork) {
  const bool wants_schur_form = letter(job) == 'S';
  const bool initialises = letter(compz) == 'I';
  const bool wants_vectors = initialises || letter(compz) == 'V';
  const Integer least = std::max<Integer>(1, n);
  work[0] = Complex(double(least));
  const Integer wrong = first_wrong({{!wants_schur_form && letter(job) != 'E', 1},
                                     {!wants_vectors && letter(compz) != 'N', 2},
                                     {n < 0, 3},
                                     {ilo < 1 || ilo > least, 4},
                                     {ihi < std::min(ilo, n) || ihi > n, 5},
                                     {ldh < least, 7},
                                     {ldz < (wants_vectors ? least : 1), 10},
                                     {lwork < least && lwork != -1, 12}});
  if (wrong != 0 || lwork == -1) {
    return -wrong;
  }
  const Matrix vectors(z, ldz);
  for (Integer j = 1; initialises && j <= n; ++j) {
    fill(n, Complex(), vectors.column(j));
    vectors(j, j) = Complex(1.0);
  }
  return complex_hessenberg_qr(wants_schur_form, n, ilo, ihi, {h, ldh}, {w, 1}, wants_vectors ? n : 0, vectors);
}

/// V := V X, or X, for the k eigenvectors X of the triangular matrix; the largest element of each is 1.
void deliver_vectors(bool transforms, Integer n, Integer k, Matrix x, Matrix v) {
  OwnMatrix<Complex> product(n, transforms ? k : 0);
  if (transforms) {
    exact::multiply_matrices(Op::none, Op::none, n, k, n, Complex(1.0), v, x, Complex(), product.view());
  }
  const Matrix result = transforms ? product.view() : x;
  for (Integer j = 1; j <= k; ++j) {
    scale(n, 1 / magnitude(result(index_of_largest(n, result.column(j)), j)), result.column(j));
    copy(n, result.column(j), v.column(j));
  }
}

Integer checked_vectors(const char* side, const char* howmny, const Integer* select, Integer n, Complex* t, Integer ldt,
                        Complex* vl, Integer ldvl, Complex* vr, Integer ldvr, Integer mm, Integer* m) {
  const bool wants_left = letter(side) == 'L' || letter(side) == 'B';
  const bool wants_right = letter(side) == 'R' || letter(side) == 'B';
  const bool selects = letter(howmny) == 'S';
  const bool transforms = letter(howmny) == 'B';
  std::vector<Integer> rows;
  for (Integer k = 1; k <= n; ++k) {
    if (!selects || select[k - 1] != 0) {
      rows.push_back(k);
    }
  }
  const Integer count = Integer(rows.size());
  *m = count;
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{!wants_left && !wants_right, 1},
                                     {!selects && !transforms && letter(howmny) != 'A', 2},
                                     {n < 0, 4},
                                     {ldt < least, 6},
                                     {ldvl < (wants_left ? least : 1), 8},
                                     {ldvr < (wants_right ? least : 1), 10},
                                     {mm < count, 11}});
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  const Matrix triangle(t, ldt);
  OwnMatrix<Complex> own(n, count);
  const Matrix x = own.view();
  if (wants_right) {
    for (Integer j = 1; j <= count; ++j) {
      triangular_eigenvector(n, triangle, rows[std::size_t(j - 1)], x.column(j));
    }
    deliver_vectors(transforms, n, count, x, {vr, ldvr});
  }
  if (wants_left) {
    for (Integer j = 1; j <= count; ++j) {
      left_triangular_eigenvector(n, triangle, rows[std::size_t(j - 1)], x.column(j));
    }
    deliver_vectors(transforms, n, count, x, {vl, ldvl});
  }
  return 0;
}

/// Columns of Euclidean norm 1 whose largest element is real.
void normalise(Integer n, Matrix v) {
  for (Integer j = 1; j <= n; ++j) {
    const OneBasedVector<Complex> x = v.column(j);
    scale(n, 1 / sqrt(sum_of_squares(n, x)), x);
    Integer largest = 1;
    QuarnFloat size = modulus(x(1));
    for (Integer i = 2; i <= n; ++i) {
      if (QuarnFloat candidate = modulus(x(i)); candidate > size) {
        size = std::move(candidate);
        largest = i;
      }
    }
    Complex turn = conj(x(largest));
    multiply_by(turn, 1 / size);
    scale(n, turn, x);
    x(largest) = Complex(size);
  }
}

Integer eigen(bool wants_left, bool wants_right, Integer n, Matrix a, Complex* w, Matrix vl, Matrix vr) {
  const bool wants_vectors = wants_left || wants_right;
  OwnMatrix<Complex> own(n, n);
  const Matrix h = own.view();
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      h(i, j) = a(i, j);
      if (!isfinite(h(i, j).re) || !isfinite(h(i, j).im)) {
        return n;
      }
    }
  }
  const OneBasedMatrix<QuarnFloat> numbers = parts(h);
  const Integer exponent = far_exponent(2 * n, n, numbers);
  multiply_by_power(2 * n, n, numbers, -exponent);
  Integer ilo = 1;
  Integer ihi = n;
  Integer info = 0;
  std::vector<QuarnFloat> scale_factors(static_cast<std::size_t>(n));
  QuarnMPX_zgebal_("B", n, h.first(), n, &ilo, &ihi, scale_factors.data(), &info, 1);
  std::vector<Complex> tau(scale_factors.size());
  std::vector<Complex> work(scale_factors.size());
  QuarnMPX_zgehrd_(n, ilo, ihi, h.first(), n, tau.data(), work.data(), n, &info);
  OwnMatrix<Complex> schur_vectors(n, wants_vectors ? n : 0);
  const Matrix z = schur_vectors.view();
  if (wants_vectors) {
    for (Integer j = 1; j <= n; ++j) {
      copy(n, h.column(j), z.column(j));
    }
    QuarnMPX_zunghr_(n, ilo, ihi, z.first(), n, tau.data(), work.data(), n, &info);
  }
  info = complex_hessenberg_qr(wants_vectors, n, ilo, ihi, h, {w, 1}, wants_vectors ? n : 0, z);
  multiply_by_power(2 * n, 1, parts({w, n}), exponent);
  if (info != 0) {
    return info;
  }
  Integer used = 0;
  for (const bool left : {false, true}) {
    if (left ? wants_left : wants_right) {
      const Matrix v = left ? vl : vr;
      for (Integer j = 1; j <= n; ++j) {
        copy(n, z.column(j), v.column(j));
      }
      checked_vectors(left ? "L" : "R", "B", nullptr, n, h.first(), n, v.first(), Integer(v.column_stride()), v.first(),
                      Integer(v.column_stride()), n, &used);
      QuarnMPX_zgebak_("B", left ? "L" : "R", n, ilo, ihi, scale_factors.data(), n, v.first(),
                       Integer(v.column_stride()), &info, 1, 1);
      normalise(n, v);
    }
  }
  return 0;
}

bool is_job(const char* job) { return letter(job) == 'N' || letter(job) == 'V'; }

Integer checked_eigen(const char* jobvl, const char* jobvr, Integer n, Complex* a, Integer lda, Complex* w, Complex* vl,
                      Integer ldvl, Complex* vr, Integer ldvr, Complex* work, Integer lwork) {
  const bool wants_left = letter(jobvl) == 'V';
  const bool wants_right = letter(jobvr) == 'V';
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{!is_job(jobvl), 1},
                                     {!is_job(jobvr), 2},
                                     {n < 0, 3},
                                     {lda < least, 5},
                                     {ldvl < (wants_left ? least : 1), 8},
                                     {ldvr < (wants_right ? least : 1), 10},
                                     {lwork < 2 * least && lwork != -1, 12}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = Complex(double(2 * least));
  if (lwork == -1 || n == 0) {
    return 0;
  }
  Integer info = 0;
  {
    const WorkingDigits more(guarded_digits(n));
    info = eigen(wants_left, wants_right, n, {a, lda}, w, {vl, ldvl}, {vr, ldvr});
  }
  round_elements<Complex>(n, 1, {w, n});
  round_elements<Complex>(n, wants_left ? n : 0, {vl, ldvl});
  round_elements<Complex>(n, wants_right ? n : 0, {vr, ldvr});
  return info;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_zhseqr_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, Complex* h, Integer ldh,
                      Complex* w, Complex* z, Integer ldz, Complex* work, Integer lwork, Integer* info,
                      int /*job_length*/, int /*compz_length*/) {
  *info = tesk::checked_qr(job, compz, n, ilo, ihi, h, ldh, w, z, ldz, work, lwork);
}

void QuarnMPX_ztrevc_(const char* side, const char* howmny, const Integer* select, Integer n, Complex* t, Integer ldt,
                      Complex* vl, Integer ldvl, Complex* vr, Integer ldvr, Integer mm, Integer* m, Complex* /*work*/,
                      QuarnFloat* /*rwork*/, Integer* info, int /*side_length*/, int /*howmny_length*/) {
  *info = tesk::checked_vectors(side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m);
}

void QuarnMPX_zgeev_(const char* jobvl, const char* jobvr, Integer n, Complex* a, Integer lda, Complex* w, Complex* vl,
                     Integer ldvl, Complex* vr, Integer ldvr, Complex* work, Integer lwork, QuarnFloat* /*rwork*/,
                     Integer* info, int /*jobvl_length*/, int /*jobvr_length*/) {
  *info = tesk::checked_eigen(jobvl, jobvr, n, a, lda, w, vl, ldvl, vr, ldvr, work, lwork);
}
}
