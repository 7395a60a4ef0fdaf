// Hessenberg-triangular and generalised Schur form: xGGHRD and xHGEQZ of E. Anderson et al., LAPACK Users' Guide.
#include <algorithm>

#include "src/dense/generalised_schur.h"
#include "src/dense/guard_digits.h"
#include "src/dense/power_of_ten.h"
#include "src/kernels/own_matrix.h"
#include "tesk2mp/generalised.h"

namespace tesk {
namespace {

bool is_factor_option(const char* comp) { return letter(comp) == 'N' || letter(comp) == 'I' || letter(comp) == 'V'; }

/// The pencil with the factors that are wanted, those of option I set to the identity.
template <class T>
Pencil<T> pencil_of(Integer n, OneBasedMatrix<T> h, OneBasedMatrix<T> t, const char* compq, OneBasedMatrix<T> q,
                    const char* compz, OneBasedMatrix<T> z, T& none) {
  const Integer q_rows = letter(compq) == 'N' ? 0 : n;
  const Integer z_rows = letter(compz) == 'N' ? 0 : n;
  if (letter(compq) == 'I') {
    set_identity(n, q);
  }
  if (letter(compz) == 'I') {
    set_identity(n, z);
  }
  return {n, h, t, q_rows, with_storage(q_rows, q, none), z_rows, with_storage(z_rows, z, none)};
}

/// Zeros below diagonal k of the columns, -1 the first subdiagonal.
template <class T>
void clear_below(Integer n, Integer k, OneBasedMatrix<T> a) {
  for (Integer j = 1; j - k < n; ++j) {
    fill(n - j + k, T(), a.column(j).from(j - k + 1));
  }
}

template <class T>
void round_pencil(const Pencil<T>& pencil) {
  round_elements(pencil.n, pencil.n, pencil.h);
  round_elements(pencil.n, pencil.n, pencil.t);
  round_elements(pencil.q_rows, pencil.n, pencil.q);
  round_elements(pencil.z_rows, pencil.n, pencil.z);
}

template <class T>
Integer checked_reduction(const char* compq, const char* compz, Integer n, Integer ilo, Integer ihi, T* a, Integer lda,
                          T* b, Integer ldb, T* q, Integer ldq, T* z, Integer ldz) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{!is_factor_option(compq), 1},
                                     {!is_factor_option(compz), 2},
                                     {n < 0, 3},
                                     {ilo < 1, 4},
                                     {ihi > n || ihi < ilo - 1, 5},
                                     {lda < least, 7},
                                     {ldb < least, 9},
                                     {ldq < (letter(compq) == 'N' ? 1 : least), 11},
                                     {ldz < (letter(compz) == 'N' ? 1 : least), 13}});
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  T none{};
  const Pencil<T> pencil = pencil_of<T>(n, {a, lda}, {b, ldb}, compq, {q, ldq}, compz, {z, ldz}, none);
  clear_below(n, 0, pencil.t);
  {
    const WorkingDigits more(guarded_digits(n));
    reduce_pencil(pencil);
  }
  round_pencil(pencil);
  return 0;
}

void store_value(const PencilEigenvalue& each, QuarnFloat* re, QuarnFloat* im, QuarnFloat* beta) {
  const auto at = std::size_t(each.row - 1);
  re[at] = each.alpha.re;
  im[at] = each.alpha.im;
  beta[at] = each.beta;
  if (each.pair) {
    re[at + 1] = each.alpha.re;
    im[at + 1] = -each.alpha.im;
    beta[at + 1] = each.beta;
  }
}
void store_value(const PencilEigenvalue& each, Complex* alpha, Complex* beta) {
  alpha[each.row - 1] = each.alpha;
  beta[each.row - 1] = Complex(each.beta);
}

template <class T>
bool all_finite(Integer n, OneBasedMatrix<T> a) {
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= std::min(n, j + 1); ++i) {
      if (!isfinite(magnitude(a(i, j)))) {
        return false;
      }
    }
  }
  return true;
}

/// `beta_at`: the number of the argument beta. Values: alphar, alphai, beta, or alpha, beta.
template <class T, class... Values>
Integer checked_qz(const char* job, const char* compq, const char* compz, Integer n, Integer ilo, Integer ihi, T* h,
                   Integer ldh, T* t, Integer ldt, T* q, Integer ldq, T* z, Integer ldz, T* work, Integer lwork,
                   Integer beta_at, Values*... values) {
  const bool wants_schur_form = letter(job) == 'S';
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{!wants_schur_form && letter(job) != 'E', 1},
                                     {!is_factor_option(compq), 2},
                                     {!is_factor_option(compz), 3},
                                     {n < 0, 4},
                                     {ilo < 1, 5},
                                     {ihi > n || ihi < ilo - 1, 6},
                                     {ldh < least, 8},
                                     {ldt < least, 10},
                                     {ldq < (letter(compq) == 'N' ? 1 : least), beta_at + 2},
                                     {ldz < (letter(compz) == 'N' ? 1 : least), beta_at + 4},
                                     {lwork < least && lwork != -1, beta_at + 6}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1 || n == 0) {
    return 0;
  }
  T none{};
  const Pencil<T> pencil = pencil_of<T>(n, {h, ldh}, {t, ldt}, compq, {q, ldq}, compz, {z, ldz}, none);
  clear_below(n, -1, pencil.h);
  clear_below(n, 0, pencil.t);
  if (!all_finite(n, pencil.h) || !all_finite(n, pencil.t)) {
    return n + 1;
  }
  const Integer rows = kParts<T> * n;
  const Integer h_exponent = far_exponent(rows, n, parts(pencil.h));
  const Integer t_exponent = far_exponent(rows, n, parts(pencil.t));
  multiply_by_power(rows, n, parts(pencil.h), -h_exponent);
  multiply_by_power(rows, n, parts(pencil.t), -t_exponent);
  Integer info = 0;
  {
    const WorkingDigits more(guarded_digits(n));
    info = qz(wants_schur_form, pencil);
  }
  round_pencil(pencil);
  for (PencilEigenvalue& each : pencil_eigenvalues(n, pencil.h, pencil.t)) {
    multiply_by(each.alpha, QuarnFloat(1, int(h_exponent)));
    each.beta *= QuarnFloat(1, int(t_exponent));
    store_value(each, values...);
  }
  multiply_by_power(rows, n, parts(pencil.h), h_exponent);
  multiply_by_power(rows, n, parts(pencil.t), t_exponent);
  return info;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgghrd_(const char* compq, const char* compz, Integer n, Integer ilo, Integer ihi, QuarnFloat* a,
                      Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat* q, Integer ldq, QuarnFloat* z, Integer ldz,
                      Integer* info, int /*compq_length*/, int /*compz_length*/) {
  *info = tesk::checked_reduction(compq, compz, n, ilo, ihi, a, lda, b, ldb, q, ldq, z, ldz);
}

void QuarnMPX_zgghrd_(const char* compq, const char* compz, Integer n, Integer ilo, Integer ihi, Complex* a,
                      Integer lda, Complex* b, Integer ldb, Complex* q, Integer ldq, Complex* z, Integer ldz,
                      Integer* info, int /*compq_length*/, int /*compz_length*/) {
  *info = tesk::checked_reduction(compq, compz, n, ilo, ihi, a, lda, b, ldb, q, ldq, z, ldz);
}

void QuarnMPX_dhgeqz_(const char* job, const char* compq, const char* compz, Integer n, Integer ilo, Integer ihi,
                      QuarnFloat* h, Integer ldh, QuarnFloat* t, Integer ldt, QuarnFloat* alphar, QuarnFloat* alphai,
                      QuarnFloat* beta, QuarnFloat* q, Integer ldq, QuarnFloat* z, Integer ldz, QuarnFloat* work,
                      Integer lwork, Integer* info, int /*job_length*/, int /*compq_length*/, int /*compz_length*/) {
  constexpr Integer kBetaAt = 13;
  *info = tesk::checked_qz(job, compq, compz, n, ilo, ihi, h, ldh, t, ldt, q, ldq, z, ldz, work, lwork, kBetaAt, alphar,
                           alphai, beta);
}

void QuarnMPX_zhgeqz_(const char* job, const char* compq, const char* compz, Integer n, Integer ilo, Integer ihi,
                      Complex* h, Integer ldh, Complex* t, Integer ldt, Complex* alpha, Complex* beta, Complex* q,
                      Integer ldq, Complex* z, Integer ldz, Complex* work, Integer lwork, QuarnFloat* /*rwork*/,
                      Integer* info, int /*job_length*/, int /*compq_length*/, int /*compz_length*/) {
  constexpr Integer kBetaAt = 12;
  *info = tesk::checked_qz(job, compq, compz, n, ilo, ihi, h, ldh, t, ldt, q, ldq, z, ldz, work, lwork, kBetaAt, alpha,
                           beta);
}
}
