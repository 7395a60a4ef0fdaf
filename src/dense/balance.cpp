// B. N. Parlett, C. Reinsch, Balancing a matrix for calculation of eigenvalues and eigenvectors, Numer. Math. 13
// (1969), as DGEBAL of E. Anderson et al., LAPACK Users' Guide, does it.
#include <algorithm>
#include <initializer_list>

#include "quarn/quarnthread.h"
#include "src/dense/power_of_ten.h"
#include "src/frame/constants.h"
#include "src/kernels/level1.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk {
namespace {

template <class T>
class Balancing {
 public:
  /// Full accuracy: by powers of 10, which round nothing, and as far as exponents reach.
  Balancing(Accuracy accuracy, Integer n, OneBasedMatrix<T> a, QuarnFloat* scale)
      : radix_(accuracy == Accuracy::full ? 10 : 8),
        n_(n),
        a_(a),
        scale_(scale, 1),
        low_(1),
        high_(n),
        smallest_((accuracy == Accuracy::full ? QuarnFloat(1, -kLastExponent) : smallest_number()) / epsilon()),
        leap_limit_(accuracy == Accuracy::full ? QuarnFloat(1, kLeapExponent) : QuarnFloat("inf")) {}

  /// Moves rows with zeros beside the diagonal to the bottom and such columns to the left.
  void permute() {
    while (high_ > 1 && isolate_row()) {
    }
    while (high_ > 1 && isolate_column()) {
    }
  }

  /// Brings the norms of row and column i near each other, by powers of the radix, until a sweep changes nothing.
  void rescale() {
    for (bool changed = true; changed;) {
      changed = false;
      for (Integer i = low_; i <= high_; ++i) {
        QuarnCheckInterrupt();
        changed |= rescale_pair(i);
      }
    }
  }

  void clear_scale() { fill(high_ - low_ + 1, QuarnFloat(1), scale_.from(low_)); }
  Integer low() const { return low_; }
  Integer high() const { return high_; }

 private:
  // Of full accuracy: far enough inside the range for the largest leap of step_while().
  static constexpr int kLastExponent = 800000000;
  static constexpr int kLeapExponent = 60000000;

  bool isolate_row() {
    for (Integer j = high_; j >= 1; --j) {
      if (all_zero_but(j, a_.row(j), 1)) {
        exchange(j, high_);
        --high_;
        return true;
      }
    }
    return false;
  }

  bool isolate_column() {
    for (Integer j = low_; j <= high_; ++j) {
      if (all_zero_but(j, a_.column(j), low_)) {
        exchange(j, low_);
        ++low_;
        return true;
      }
    }
    return false;
  }

  bool all_zero_but(Integer j, OneBasedVector<T> x, Integer first) const {
    QuarnCheckInterrupt();
    for (Integer i = first; i <= high_; ++i) {
      if (i != j && !is_zero(x(i))) {
        return false;
      }
    }
    return true;
  }

  void exchange(Integer j, Integer m) {
    scale_(m) = j;
    if (j != m) {
      swap_vectors(high_, a_.column(j), a_.column(m));
      swap_vectors(n_ - low_ + 1, a_.row(j).from(low_), a_.row(m).from(low_));
    }
  }

  using Values = std::initializer_list<QuarnFloat*>;

  static void step(const QuarnFloat& factor, Values up, Values down) {
    for (QuarnFloat* value : up) {
      *value *= factor;
    }
    for (QuarnFloat* value : down) {
      *value /= factor;
    }
  }

  /// Steps by the radix as long as there is more to do. Norms may be 10^134217726 apart and further: after a hundred
  /// steps, many are taken at a time, by powers of it after which there is still more to do.
  template <class More>
  void step_while(More more, Values up, Values down) const {
    for (int steps = 0; more(); ++steps) {
      step(radix_, up, down);
      if (steps < 100) {
        continue;
      }
      for (QuarnFloat leap = radix_ * radix_; more(); leap = leap < leap_limit_ ? leap * leap : leap) {
        step(leap, up, down);
        if (!more()) {
          step(leap, down, up);
          break;
        }
      }
    }
  }

  bool rescale_pair(Integer i) {
    QuarnFloat c;
    QuarnFloat r;
    for (Integer j = low_; j <= high_; ++j) {
      if (j != i) {
        c += magnitude(a_(j, i));
        r += magnitude(a_(i, j));
      }
    }
    // NaN and infinity cannot be levelled.
    if (c == 0 || r == 0 || !isfinite(c + r)) {
      return false;
    }
    QuarnFloat ca = magnitude(a_(index_of_largest(high_, a_.column(i)), i));
    QuarnFloat ra = magnitude(a_(i, low_ - 1 + index_of_largest(n_ - low_ + 1, a_.row(i).from(low_))));
    QuarnFloat f = 1;
    QuarnFloat g = r / radix_;
    const QuarnFloat s = c + r;
    step_while(
        [&] {
          return c < g && std::max({f, c, ca}) < scale_largest_ && std::min({r, g, ra}) > scale_smallest_;
        },
        {&f, &c, &ca}, {&r, &g, &ra});
    g = c / radix_;
    step_while(
        [&] {
          return g >= r && std::max(r, ra) < scale_largest_ && std::min({f, c, g, ca}) > scale_smallest_;
        },
        {&r, &ra}, {&f, &c, &g, &ca});
    if (c + r >= QuarnFloat(0.95) * s || (f < 1 && scale_(i) < 1 && f * scale_(i) <= smallest_) ||
        (f > 1 && scale_(i) > 1 && scale_(i) >= 1 / (smallest_ * f))) {
      return false;
    }
    scale_(i) *= f;
    scale(n_ - low_ + 1, 1 / f, a_.row(i).from(low_));
    scale(high_, f, a_.column(i));
    return true;
  }

  int radix_;
  Integer n_;
  OneBasedMatrix<T> a_;
  OneBasedVector<QuarnFloat> scale_;
  Integer low_;
  Integer high_;
  QuarnFloat smallest_;
  QuarnFloat leap_limit_;
  QuarnFloat scale_smallest_ = smallest_ * radix_;
  QuarnFloat scale_largest_ = 1 / scale_smallest_;
};

template <class T>
void checked_balancing(Accuracy accuracy, const char* job, Integer n, T* a, Integer lda, Integer* ilo, Integer* ihi,
                       QuarnFloat* scale, Integer* info) {
  const char what = letter(job);
  const bool permutes = what == 'P' || what == 'B';
  const bool scales = what == 'S' || what == 'B';
  *info = -first_wrong({{!permutes && !scales && what != 'N', 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}});
  if (*info != 0) {
    return;
  }
  const OneBasedMatrix<T> view(a, lda);
  const OneBasedMatrix<QuarnFloat> numbers = parts(view);
  const Integer exponent = accuracy == Accuracy::full ? far_exponent(kParts<T> * n, n, numbers) : 0;
  multiply_by_power(kParts<T> * n, n, numbers, -exponent);
  Balancing<T> balancing(accuracy, n, view, scale);
  if (permutes && n > 0) {
    balancing.permute();
  }
  balancing.clear_scale();
  if (scales) {
    balancing.rescale();
  }
  multiply_by_power(kParts<T> * n, n, numbers, exponent);
  *ilo = balancing.low();
  *ihi = balancing.high();
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMP_f08nhf_(const char* job, Integer n, QuarnFloat* a, Integer lda, Integer* ilo, Integer* ihi,
                     QuarnFloat* scale, Integer* info, int /*job_length*/) {
  tesk::checked_balancing(tesk::Accuracy::classic, job, n, a, lda, ilo, ihi, scale, info);
}

void QuarnMPX_f08nhf_(const char* job, Integer n, QuarnFloat* a, Integer lda, Integer* ilo, Integer* ihi,
                      QuarnFloat* scale, Integer* info, int /*job_length*/) {
  tesk::checked_balancing(tesk::Accuracy::full, job, n, a, lda, ilo, ihi, scale, info);
}

void QuarnMPX_zgebal_(const char* job, Integer n, Complex* a, Integer lda, Integer* ilo, Integer* ihi,
                      QuarnFloat* scale, Integer* info, int /*job_length*/) {
  tesk::checked_balancing(tesk::Accuracy::full, job, n, a, lda, ilo, ihi, scale, info);
}
}
