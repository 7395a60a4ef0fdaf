// A x = lambda B x with general matrices: xGGEV of E. Anderson et al., LAPACK Users' Guide.
#include <algorithm>
#include <vector>

#include "src/dense/generalised_schur.h"
#include "src/dense/guard_digits.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/qr.h"
#include "src/dense/schur_order.h"
#include "src/frame/constants.h"
#include "tesk2mp/generalised.h"

namespace tesk {
namespace {

template <class T>
class GeneralisedEigen {
 public:
  GeneralisedEigen(Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> b, bool wants_left, bool wants_right)
      : n_(n),
        h_(n, n),
        t_(n, n),
        q_(n, wants_left ? n : 0),
        z_(n, wants_right ? n : 0),
        left_(wants_left),
        right_(wants_right) {
    copy_matrix(n, n, a, h_.view());
    copy_matrix(n, n, b, t_.view());
  }

  bool finite() {
    for (const OneBasedMatrix<T>& matrix : {h_.view(), t_.view()}) {
      for (Integer j = 1; j <= n_; ++j) {
        for (Integer i = 1; i <= n_; ++i) {
          if (!isfinite(magnitude(matrix(i, j)))) {
            return false;
          }
        }
      }
    }
    return true;
  }

  /// INFO of the iteration. Where alpha and beta are both roundings in units of the working digits, they are zero.
  Integer solve(const QuarnFloat& roundoff) {
    const Integer rows = kParts<T> * n_;
    const OneBasedMatrix<T> h = h_.view();
    const OneBasedMatrix<T> t = t_.view();
    h_exponent_ = far_exponent(rows, n_, parts(h));
    t_exponent_ = far_exponent(rows, n_, parts(t));
    multiply_by_power(rows, n_, parts(h), -h_exponent_);
    multiply_by_power(rows, n_, parts(t), -t_exponent_);
    const QuarnFloat small_alpha = roundoff * n_ * largest_sum(h);
    const QuarnFloat small_beta = roundoff * n_ * largest_sum(t);
    std::vector<T> tau(static_cast<std::size_t>(n_));
    factorise_qr(n_, n_, t, tau.data());
    apply_reflectors(Side::left, Op::conjugate_transpose, n_, n_, n_, t, tau.data(), h);
    if (left_) {
      copy_matrix(n_, n_, t, q_.view());
      form_q(n_, n_, n_, q_.view(), tau.data());
    }
    for (Integer j = 1; j <= n_; ++j) {
      fill(n_ - j, T(), t.column(j).from(std::min(n_, j + 1)));
      if (right_) {
        z_.view()(j, j) = T(1.0);
      }
    }
    T none;
    const Pencil<T> pencil{n_,
                           h,
                           t,
                           left_ ? n_ : 0,
                           with_storage(left_ ? n_ : 0, q_.view(), none),
                           right_ ? n_ : 0,
                           with_storage(right_ ? n_ : 0, z_.view(), none)};
    reduce_pencil(pencil);
    const Integer info = qz(left_ || right_, pencil);
    eigenvalues_ = pencil_eigenvalues(n_, h, t);
    for (PencilEigenvalue& each : eigenvalues_) {
      if (magnitude(each.alpha) <= small_alpha && fabs(each.beta) <= small_beta) {
        each.alpha = Complex();
        each.beta = 0;
      }
    }
    return info;
  }

  /// lambda = alpha / beta with the powers of ten; a pair as two.
  template <class Take>
  void deliver_values(const Take& take) const {
    for (const PencilEigenvalue& each : eigenvalues_) {
      Complex alpha = each.alpha;
      multiply_by(alpha, QuarnFloat(1, int(h_exponent_)));
      const QuarnFloat beta = each.beta * QuarnFloat(1, int(t_exponent_));
      take(each.row, alpha, beta);
      if (each.pair) {
        take(each.row + 1, conj(alpha), beta);
      }
    }
  }

  /// Eigenvectors as columns, of real pencils the real and the imaginary part of a pair's first one in its two columns;
  /// |re| + |im| of the largest element is 1.
  void deliver_vectors(bool left, OneBasedMatrix<T> v) {
    const OneBasedMatrix<T> h = h_.view();
    const OneBasedMatrix<T> t = t_.view();
    OwnMatrix<T> own(n_, n_);
    const OneBasedMatrix<T> x = own.view();
    const PencilSizes sizes{largest_element(n_, h), largest_element(n_, t)};
    for (const PencilEigenvalue& each : eigenvalues_) {
      const std::vector<Complex> vector =
          left ? left_pencil_vector(n_, h, t, sizes, each) : right_pencil_vector(n_, h, t, sizes, each);
      for (Integer i = 1; i <= n_; ++i) {
        store(vector[std::size_t(i - 1)], each, i, x);
      }
    }
    exact::multiply_matrices(Op::none, Op::none, n_, n_, n_, T(1.0), left ? q_.view() : z_.view(), x, T(), v);
    for (const PencilEigenvalue& each : eigenvalues_) {
      const Integer columns = each.pair ? 2 : 1;
      QuarnFloat largest;
      for (Integer i = 1; i <= n_; ++i) {
        QuarnFloat size = magnitude(v(i, each.row));
        size = each.pair ? size + magnitude(v(i, each.row + 1)) : size;
        largest = std::max(largest, size);
      }
      for (Integer j = each.row; largest > 0 && j < each.row + columns; ++j) {
        scale(n_, 1 / largest, v.column(j));
      }
    }
  }

 private:
  /// The largest sum of magnitudes in a column.
  QuarnFloat largest_sum(OneBasedMatrix<T> a) const {
    QuarnFloat largest;
    for (Integer j = 1; j <= n_; ++j) {
      QuarnFloat sum;
      for (Integer i = 1; i <= n_; ++i) {
        sum += magnitude(a(i, j));
      }
      largest = std::max(largest, sum);
    }
    return largest;
  }

  static void store(const Complex& element, const PencilEigenvalue& /*eigenvalue*/, Integer i,
                    OneBasedMatrix<Complex> x, Integer j) {
    x(i, j) = element;
  }
  static void store(const Complex& element, const PencilEigenvalue& eigenvalue, Integer i, OneBasedMatrix<QuarnFloat> x,
                    Integer j) {
    x(i, j) = element.re;
    if (eigenvalue.pair) {
      x(i, j + 1) = element.im;
    }
  }
  static void store(const Complex& element, const PencilEigenvalue& eigenvalue, Integer i, OneBasedMatrix<T> x) {
    store(element, eigenvalue, i, x, eigenvalue.row);
  }

  Integer n_;
  OwnMatrix<T> h_;
  OwnMatrix<T> t_;
  OwnMatrix<T> q_;
  OwnMatrix<T> z_;
  bool left_;
  bool right_;
  Integer h_exponent_ = 0;
  Integer t_exponent_ = 0;
  std::vector<PencilEigenvalue> eigenvalues_;
};

bool is_pencil_job(const char* job) { return letter(job) == 'N' || letter(job) == 'V'; }

/// Where the arguments stand behind beta, and how long the workspace is.
struct Places {
  Integer ldvl;
  Integer least;
};

template <class T, class Take>
Integer checked_eigen(const Places& places, const char* jobvl, const char* jobvr, Integer n, T* a, Integer lda, T* b,
                      Integer ldb, T* vl, Integer ldvl, T* vr, Integer ldvr, T* work, Integer lwork, const Take& take) {
  const bool wants_left = letter(jobvl) == 'V';
  const bool wants_right = letter(jobvr) == 'V';
  const Integer order = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{!is_pencil_job(jobvl), 1},
                                     {!is_pencil_job(jobvr), 2},
                                     {n < 0, 3},
                                     {lda < order, 5},
                                     {ldb < order, 7},
                                     {ldvl < (wants_left ? order : 1), places.ldvl},
                                     {ldvr < (wants_right ? order : 1), places.ldvl + 2},
                                     {lwork < places.least && lwork != -1, places.ldvl + 4}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(places.least));
  if (lwork == -1 || n == 0) {
    return 0;
  }
  Integer info = 0;
  const QuarnFloat roundoff = epsilon();
  {
    const WorkingDigits more(guarded_digits(n));
    GeneralisedEigen<T> problem(n, {a, lda}, {b, ldb}, wants_left, wants_right);
    if (!problem.finite()) {
      return n + 1;
    }
    info = problem.solve(roundoff);
    problem.deliver_values(take);
    if (info == 0 && wants_left) {
      problem.deliver_vectors(true, {vl, ldvl});
    }
    if (info == 0 && wants_right) {
      problem.deliver_vectors(false, {vr, ldvr});
    }
  }
  round_elements<T>(n, wants_left && info == 0 ? n : 0, {vl, ldvl});
  round_elements<T>(n, wants_right && info == 0 ? n : 0, {vr, ldvr});
  return info;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dggev_(const char* jobvl, const char* jobvr, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* b,
                     Integer ldb, QuarnFloat* alphar, QuarnFloat* alphai, QuarnFloat* beta, QuarnFloat* vl,
                     Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* work, Integer lwork, Integer* info,
                     int /*jobvl_length*/, int /*jobvr_length*/) {
  *info = tesk::checked_eigen<QuarnFloat>({12, std::max<Integer>(1, 8 * n)}, jobvl, jobvr, n, a, lda, b, ldb, vl, ldvl,
                                          vr, ldvr, work, lwork,
                                          [&](Integer j, const Complex& numerator, const QuarnFloat& denominator) {
                                            alphar[j - 1] = numerator.re;
                                            alphai[j - 1] = numerator.im;
                                            beta[j - 1] = denominator;
                                          });
  for (QuarnFloat* each : {alphar, alphai, beta}) {
    tesk::round_elements<QuarnFloat>(*info >= 0 && *info <= n && lwork != -1 ? n : 0, 1, {each, n});
  }
}

void QuarnMPX_zggev_(const char* jobvl, const char* jobvr, Integer n, Complex* a, Integer lda, Complex* b, Integer ldb,
                     Complex* alpha, Complex* beta, Complex* vl, Integer ldvl, Complex* vr, Integer ldvr, Complex* work,
                     Integer lwork, QuarnFloat* /*rwork*/, Integer* info, int /*jobvl_length*/, int /*jobvr_length*/) {
  *info = tesk::checked_eigen<Complex>({11, std::max<Integer>(1, 2 * n)}, jobvl, jobvr, n, a, lda, b, ldb, vl, ldvl, vr,
                                       ldvr, work, lwork,
                                       [&](Integer j, const Complex& numerator, const QuarnFloat& denominator) {
                                         alpha[j - 1] = numerator;
                                         beta[j - 1] = Complex(denominator);
                                       });
  for (Complex* each : {alpha, beta}) {
    tesk::round_elements<Complex>(*info >= 0 && *info <= n && lwork != -1 ? n : 0, 1, {each, n});
  }
}
}
