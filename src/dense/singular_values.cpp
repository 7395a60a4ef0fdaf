// Singular value decompositions: G. H. Golub, W. Kahan, Calculating the singular values and pseudo-inverse of a matrix,
// SIAM J. Numer. Anal. 2 (1965); E. Anderson et al., LAPACK Users' Guide: xGESVD, xGEJSV.
#include "tesk2mp/singular_values.h"

#include "src/dense/bidiagonal.h"
#include "src/dense/guard_digits.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/rotation_sweeps.h"
#include "src/dense/tridiagonal.h"

namespace tesk {
namespace {

/// How many columns of the factors are wanted, 0 for none.
struct Columns {
  Integer u;
  Integer v;
};

/// A = U diag(s) V^H of an m by n matrix, m >= n: U with `wanted.u` columns (0, n ... m), V with wanted.v (0 or n).
template <class T>
Integer tall_svd(Integer m, Integer n, OneBasedMatrix<T> a, QuarnFloat* s, const Columns& wanted, OneBasedMatrix<T> u,
                 OneBasedMatrix<T> v) {
  OwnMatrix<T> right(n, n);
  std::vector<QuarnFloat> beside(static_cast<std::size_t>(n));
  std::vector<T> tauq(beside.size());
  std::vector<T> taup(beside.size());
  const OneBasedVector<QuarnFloat> d(s, 1);
  const OneBasedVector<QuarnFloat> e(beside.data(), 1);
  bidiagonalise(m, n, a, right.view(), d, e, tauq.data(), taup.data());
  if (wanted.u > 0) {
    for (Integer j = 1; j <= wanted.u; ++j) {
      fill(m, T(), u.column(j));
      u(j, j) = T(1.0);
    }
    apply_reflectors(Side::left, Op::none, m, wanted.u, n, a, tauq.data(), u);
  }
  if (wanted.v > 0) {
    form_q(n, right.view(), taup.data(), v);
  }
  return bidiagonal_qr(n, d, e, wanted.u > 0 ? m : 0, u, wanted.v > 0 ? n : 0, v);
}

/// A copy of A, or of its adjoint when that is tall, scaled into the common range.
template <class T>
class TallCopy {
 public:
  TallCopy(Integer m, Integer n, OneBasedMatrix<T> a)
      : tall_(m >= n), rows_(std::max(m, n)), columns_(std::min(m, n)), own_(rows_, columns_) {
    if (tall_) {
      copy_matrix(m, n, a, own_.view());
    } else {
      copy_adjoint(m, n, a, own_.view());
    }
    if (rows_ > 0 && columns_ > 0) {
      const OneBasedMatrix<QuarnFloat> numbers = parts(own_.view());
      const Integer count = rows_ * kParts<T>;
      for (Integer j = 1; j <= columns_; ++j) {
        for (Integer i = 1; i <= count; ++i) {
          finite_ = finite_ && isfinite(numbers(i, j));
        }
      }
      exponent_ = far_exponent(count, columns_, numbers);
      multiply_by_power(count, columns_, numbers, -exponent_);
    }
  }
  bool tall() const { return tall_; }
  bool finite() const { return finite_; }
  Integer rows() const { return rows_; }
  Integer columns() const { return columns_; }
  OneBasedMatrix<T> view() { return own_.view(); }
  void unscale(QuarnFloat* s) const { multiply_by_power(columns_, 1, {s, std::max<Integer>(1, columns_)}, exponent_); }

 private:
  bool tall_;
  Integer rows_;
  Integer columns_;
  OwnMatrix<T> own_;
  bool finite_ = true;
  Integer exponent_ = 0;
};

/// to := the columns of x, rounded to the digits of the moment, or their adjoints as rows.
template <class T>
void deliver(bool as_rows, Integer rows, Integer columns, OneBasedMatrix<T> x, OneBasedMatrix<T> to) {
  if (as_rows) {
    copy_adjoint(rows, columns, x, to);
  } else {
    copy_matrix(rows, columns, x, to);
  }
  round_elements(as_rows ? columns : rows, as_rows ? rows : columns, to);
}

bool is_svd_job(const char* job) {
  const char c = letter(job);
  return c == 'A' || c == 'S' || c == 'O' || c == 'N';
}

template <class T>
Integer checked_svd(const char* jobu, const char* jobvt, Integer m, Integer n, T* a, Integer lda, QuarnFloat* s, T* u,
                    Integer ldu, T* vt, Integer ldvt, T* work, Integer lwork, Integer least) {
  const char job_u = letter(jobu);
  const char job_v = letter(jobvt);
  const Integer few = std::min(m, n);
  const Integer rows_of_vt = job_v == 'A' ? n : job_v == 'S' ? few : 1;
  const Integer wrong = first_wrong({{!is_svd_job(jobu), 1},
                                     {!is_svd_job(jobvt) || (job_u == 'O' && job_v == 'O'), 2},
                                     {m < 0, 3},
                                     {n < 0, 4},
                                     {lda < std::max<Integer>(1, m), 6},
                                     {ldu < (job_u == 'A' || job_u == 'S' ? std::max<Integer>(1, m) : 1), 9},
                                     {ldvt < std::max<Integer>(1, rows_of_vt), 11},
                                     {lwork < least && lwork != -1, 13}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1) {
    return 0;
  }
  const Integer columns_u = job_u == 'A' ? m : job_u == 'N' ? 0 : few;
  const Integer columns_v = job_v == 'A' ? n : job_v == 'N' ? 0 : few;
  const bool tall = m >= n;
  const Columns wanted{tall ? columns_u : columns_v, tall ? columns_v : columns_u};
  const Integer many = std::max(m, n);
  OwnMatrix<T> long_factor(many, wanted.u);
  OwnMatrix<T> short_factor(few, wanted.v);
  Integer info = 0;
  {
    const WorkingDigits more(guarded_digits(many));
    TallCopy<T> copy(m, n, {a, lda});
    if (!copy.finite()) {
      return std::max<Integer>(1, few);
    }
    info = tall_svd(many, few, copy.view(), s, wanted, long_factor.view(), short_factor.view());
    copy.unscale(s);
  }
  if (few == 0) {
    // No singular values: the factors are units.
    for (Integer j = 1; j <= wanted.u; ++j) {
      long_factor.view()(j, j) = T(1.0);
    }
  }
  round_elements<QuarnFloat>(few, 1, {s, std::max<Integer>(1, few)});
  const OneBasedMatrix<T> u_factor = tall ? long_factor.view() : short_factor.view();
  const OneBasedMatrix<T> v_factor = tall ? short_factor.view() : long_factor.view();
  const OneBasedMatrix<T> given(a, lda);
  deliver(false, m, columns_u, u_factor, job_u == 'O' ? given : OneBasedMatrix<T>(u, ldu));
  deliver(true, n, columns_v, v_factor, job_v == 'O' ? given : OneBasedMatrix<T>(vt, ldvt));
  return info;
}

/// Whether the option's letter is among those.
bool is_one_of(const char* option, const char* letters) {
  for (; *letters != 0; ++letters) {
    if (letter(option) == *letters) {
      return true;
    }
  }
  return false;
}

template <class T>
Integer checked_jacobi(const char* joba, const char* jobu, const char* jobv, const char* jobr, const char* jobt,
                       const char* jobp, Integer m, Integer n, T* a, Integer lda, QuarnFloat* s, T* u, Integer ldu,
                       T* v, Integer ldv, bool short_work, bool short_rwork, Integer* iwork) {
  const bool wants_u = letter(jobu) == 'U';
  const bool wants_v = is_one_of(jobv, "VJ");
  const Integer wrong = first_wrong({{!is_one_of(joba, "CEFGAR"), 1},
                                     {!is_one_of(jobu, "UNW"), 2},
                                     {!is_one_of(jobv, "VJNW"), 3},
                                     {!is_one_of(jobr, "NR"), 4},
                                     {!is_one_of(jobt, "TN"), 5},
                                     {!is_one_of(jobp, "PN"), 6},
                                     {m < 0, 7},
                                     {n < 0 || n > m, 8},
                                     {lda < std::max<Integer>(1, m), 10},
                                     {ldu < (wants_u ? std::max<Integer>(1, m) : 1), 13},
                                     {ldv < (wants_v ? std::max<Integer>(1, n) : 1), 15},
                                     {short_work, 17},
                                     {short_rwork, 19}});
  if (wrong != 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> left(u, ldu);
  const OneBasedMatrix<T> right(v, ldv);
  Integer info = 0;
  {
    const WorkingDigits more(guarded_digits(m));
    TallCopy<T> copy(m, n, {a, lda});
    if (!copy.finite()) {
      return std::max<Integer>(1, n);
    }
    info = jacobi_svd(m, n, copy.view(), s, wants_u, left, wants_v, right);
    copy.unscale(s);
  }
  round_elements<QuarnFloat>(n, 1, {s, std::max<Integer>(1, n)});
  round_elements(m, wants_u ? n : 0, left);
  round_elements(n, wants_v ? n : 0, right);
  iwork[0] = Integer(std::count_if(s, s + n, [](const QuarnFloat& value) { return value != 0; }));
  iwork[1] = iwork[0];
  iwork[2] = 0;
  return info;
}

constexpr Integer kJacobiWork = 7;

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgesvd_(const char* jobu, const char* jobvt, Integer m, Integer n, QuarnFloat* a, Integer lda,
                      QuarnFloat* s, QuarnFloat* u, Integer ldu, QuarnFloat* vt, Integer ldvt, QuarnFloat* work,
                      Integer lwork, Integer* info, int /*jobu_length*/, int /*jobvt_length*/) {
  const Integer few = std::min(m, n);
  *info = tesk::checked_svd(jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork,
                            std::max<Integer>({1, 3 * few + std::max(m, n), 5 * few}));
}

void QuarnMPX_zgesvd_(const char* jobu, const char* jobvt, Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* s,
                      Complex* u, Integer ldu, Complex* vt, Integer ldvt, Complex* work, Integer lwork,
                      QuarnFloat* /*rwork*/, Integer* info, int /*jobu_length*/, int /*jobvt_length*/) {
  *info = tesk::checked_svd(jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork,
                            std::max<Integer>(1, 2 * std::min(m, n) + std::max(m, n)));
}

void QuarnMPX_dgejsv_(const char* joba, const char* jobu, const char* jobv, const char* jobr, const char* jobt,
                      const char* jobp, Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* sva,
                      QuarnFloat* u, Integer ldu, QuarnFloat* v, Integer ldv, QuarnFloat* work, Integer lwork,
                      Integer* iwork, Integer* info, int /*joba_length*/, int /*jobu_length*/, int /*jobv_length*/,
                      int /*jobr_length*/, int /*jobt_length*/, int /*jobp_length*/) {
  *info = tesk::checked_jacobi(joba, jobu, jobv, jobr, jobt, jobp, m, n, a, lda, sva, u, ldu, v, ldv,
                               lwork < tesk::kJacobiWork, false, iwork);
  if (*info >= 0) {
    work[0] = work[1] = 1;
  }
}

void QuarnMPX_zgejsv_(const char* joba, const char* jobu, const char* jobv, const char* jobr, const char* jobt,
                      const char* jobp, Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* sva, Complex* u,
                      Integer ldu, Complex* v, Integer ldv, Complex* cwork, Integer lwork, QuarnFloat* rwork,
                      Integer lrwork, Integer* iwork, Integer* info, int /*joba_length*/, int /*jobu_length*/,
                      int /*jobv_length*/, int /*jobr_length*/, int /*jobt_length*/, int /*jobp_length*/) {
  *info = tesk::checked_jacobi(joba, jobu, jobv, jobr, jobt, jobp, m, n, a, lda, sva, u, ldu, v, ldv, lwork < 2,
                               lrwork < tesk::kJacobiWork, iwork);
  if (*info >= 0) {
    cwork[0] = cwork[1] = Complex(1.0);
    rwork[0] = rwork[1] = 1;
  }
}
}
