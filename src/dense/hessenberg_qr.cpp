// The QR algorithm on a real upper Hessenberg matrix: Z. Bai, J. Demmel, On a block implementation of Hessenberg
// multishift QR iteration, Int. J. High Speed Comput. 1 (1989), as DHSEQR and DLAHQR of E. Anderson et al., LAPACK
// Users' Guide, do it.
#include "src/dense/hessenberg_qr.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/dense/cluster_shifts.h"
#include "src/dense/multishift_qr.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/reflector.h"
#include "src/dense/schur_vectors.h"
#include "src/dense/tuning.h"
#include "src/frame/constants.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/frame.h"
#include "tesk2mp/norms.h"

namespace tesk {
namespace {

constexpr Integer kMostShifts = Reflector::kLargest - 1;

/// One call of either path. Rows and columns ilo ... ihi are the part that is not yet triangular.
class HessenbergQr {
 public:
  HessenbergQr(Accuracy accuracy, bool wants_schur_form, Integer n, Integer ilo, Integer ihi,
               OneBasedMatrix<QuarnFloat> h, QuarnFloat* wr, QuarnFloat* wi, SchurVectors vectors)
      : accuracy_(accuracy),
        wants_schur_form_(wants_schur_form),
        n_(n),
        ilo_(ilo),
        ihi_(ihi),
        h_(h),
        wr_(wr, 1),
        wi_(wi, 1),
        vectors_(vectors),
        ulp_(epsilon() * kBase),
        smallest_(smallest_number() * (QuarnFloat(ihi - ilo + 1) / ulp_)) {}

  /// Returns INFO: 0, or the index of the eigenvalue that was being sought when the iterations ran out.
  Integer double_shift();
  Integer multishift(Integer shifts, Integer largest_small_block);
  std::int64_t sweeps() const { return sweeps_; }

 private:
  /// The bounds of the sweep on the active block low ... high, and the rows and columns that it changes.
  struct Active {
    Integer low;
    Integer high;
    Integer first;
    Integer last;
  };
  std::int64_t iteration_limit() const;
  bool negligible(Integer k, Integer low, Integer high) const;
  Integer block_start(Integer low, Integer high) const;
  Active active(Integer low, Integer high) const {
    return wants_schur_form_ ? Active{low, high, 1, n_} : Active{low, high, low, high};
  }
  // The shifts for the block that ends in row i.
  Shifts shifts(Integer low, Integer i, std::int64_t iteration);
  Shifts exceptional_shifts(Integer i) const;
  Shifts trailing_shifts(Integer i) const;
  Integer sweep_start(const Shifts& shifts, const Active& block, QuarnFloat* v) const;
  void sweep(const Active& block, Integer start, Integer size, QuarnFloat* v);
  void store_block(Integer low, const Active& whole);
  void take_shifts(Integer first, Integer count);
  void first_column(Integer low, Integer first, Integer count, QuarnFloat* v) const;

  Accuracy accuracy_;
  bool wants_schur_form_;
  Integer n_;
  Integer ilo_;
  Integer ihi_;
  OneBasedMatrix<QuarnFloat> h_;
  OneBasedVector<QuarnFloat> wr_;
  OneBasedVector<QuarnFloat> wi_;
  SchurVectors vectors_;
  QuarnFloat ulp_;
  QuarnFloat smallest_;
  ClusterShifts cluster_;
  std::int64_t sweeps_ = 0;
};

/// The published 30 sweeps a row are shared by all eigenvalues. A defective eigenvalue may need a number of sweeps that
/// grows with the digits.
std::int64_t HessenbergQr::iteration_limit() const {
  const std::int64_t published = std::int64_t(30) * (ihi_ - ilo_ + 1);
  return accuracy_ == Accuracy::full ? published + published * QuarnDigits() / 8 : published;
}

/// Whether h(k, k - 1) is as good as zero beside its two neighbours on the diagonal.
bool HessenbergQr::negligible(Integer k, Integer low, Integer high) const {
  const QuarnFloat element = fabs(h_(k, k - 1));
  QuarnFloat size = fabs(h_(k - 1, k - 1)) + fabs(h_(k, k));
  if (size == 0) {
    size = QuarnMP_f06rmf_("1", high - low + 1, &h_(low, low), Integer(h_.column_stride()), nullptr, 1);
  }
  if (element <= std::max(ulp_ * size, smallest_)) {
    return true;
  }
  if (accuracy_ == Accuracy::classic) {
    return false;
  }
  // The eigenvalues of the blocks above and below may be pairs with a small diagonal: b^2 = -h(i, i + 1) h(i + 1, i).
  // Four units of them are what a sweep's own roundings leave.
  QuarnFloat squared_size;
  if (k < high) {
    squared_size = fabs(h_(k, k + 1) * h_(k + 1, k));
  }
  if (k - 1 > low) {
    squared_size = std::max(squared_size, fabs(h_(k - 2, k - 1) * h_(k - 1, k - 2)));
  }
  const QuarnFloat units = element / (4 * ulp_);
  return units * units <= squared_size;
}

/// The first row of the block that ends in row `high`: below it stands the first negligible subdiagonal element,
/// which is set to zero.
Integer HessenbergQr::block_start(Integer low, Integer high) const {
  Integer k = high;
  while (k > low && !negligible(k, low, high)) {
    --k;
  }
  if (k > ilo_) {
    h_(k, k - 1) = 0;
  }
  return k;
}

Shifts HessenbergQr::exceptional_shifts(Integer i) const {
  const QuarnFloat s = fabs(h_(i, i - 1)) + fabs(h_(i - 1, i - 2));
  const QuarnFloat h44 = QuarnFloat(0.75) * s + h_(i, i);
  return {h44, h44, QuarnFloat(-0.4375) * s * s};
}

Shifts HessenbergQr::trailing_shifts(Integer i) const {
  Shifts shift{h_(i - 1, i - 1), h_(i, i), h_(i, i - 1) * h_(i - 1, i)};
  const QuarnFloat half_difference = (shift.h33 - shift.h44) * QuarnFloat(0.5);
  const QuarnFloat discriminant = half_difference * half_difference + shift.h43h34;
  if (discriminant > 0) {
    // Real shifts: the one nearer to the last diagonal element is used twice.
    const QuarnFloat average = QuarnFloat(0.5) * (shift.h33 + shift.h44);
    const QuarnFloat outer = with_sign(sqrt(discriminant), average) + average;
    if (fabs(shift.h33) > fabs(shift.h44)) {
      shift.h44 = (shift.h33 * shift.h44 - shift.h43h34) / outer;
    } else {
      shift.h44 = outer;
    }
    shift.h33 = shift.h44;
    shift.h43h34 = 0;
  }
  return shift;
}

Shifts HessenbergQr::shifts(Integer low, Integer i, std::int64_t iteration) {
  if ((iteration == 10 || iteration == 20) && !cluster_.found()) {
    return exceptional_shifts(i);
  }
  const Shifts usual = trailing_shifts(i);
  return accuracy_ == Accuracy::full ? cluster_.improve(h_, low, i, usual) : usual;
}

/// Looks for two consecutive small subdiagonal elements; returns the row where the sweep starts and its first vector.
Integer HessenbergQr::sweep_start(const Shifts& shifts, const Active& block, QuarnFloat* v) const {
  for (Integer m = block.high - 2;; --m) {
    const QuarnFloat h44s = shifts.h44 - h_(m, m);
    const QuarnFloat h33s = shifts.h33 - h_(m, m);
    v[0] = (h33s * h44s - shifts.h43h34) / h_(m + 1, m) + h_(m, m + 1);
    v[1] = h_(m + 1, m + 1) - h_(m, m) - h33s - h44s;
    v[2] = h_(m + 2, m + 1);
    const QuarnFloat s = fabs(v[0]) + fabs(v[1]) + fabs(v[2]);
    for (int i = 0; i < 3; ++i) {
      v[i] /= s;
    }
    if (m == block.low) {
      return m;
    }
    const QuarnFloat size = fabs(v[0]) * (fabs(h_(m - 1, m - 1)) + fabs(h_(m, m)) + fabs(h_(m + 1, m + 1)));
    if (fabs(h_(m, m - 1)) * (fabs(v[1]) + fabs(v[2])) <= ulp_ * size) {
      return m;
    }
  }
}

/// Chases the bulge of a sweep with `size` - 1 shifts down the block.
void HessenbergQr::sweep(const Active& block, Integer start, Integer size, QuarnFloat* v) {
  ++sweeps_;
  for (Integer k = start; k < block.high; ++k) {
    QuarnCheckInterrupt();
    const Integer nr = std::min(size, block.high - k + 1);
    if (k > start) {
      for (Integer i = 0; i < nr; ++i) {
        v[i] = h_(k + i, k - 1);
      }
    }
    const Reflector reflector(nr, v);
    if (k > start) {
      h_(k, k - 1) = reflector.beta();
      for (Integer i = 1; i < nr; ++i) {
        h_(k + i, k - 1) = 0;
      }
    } else if (start > block.low) {
      h_(k, k - 1) = -h_(k, k - 1);
    }
    for (Integer j = k; j <= block.last; ++j) {
      reflector.apply(h_.column(j).from(k));
    }
    for (Integer i = block.first; i <= std::min(k + nr, block.high); ++i) {
      reflector.apply(h_.row(i).from(k));
    }
    for (Integer i = vectors_.first; i <= vectors_.last; ++i) {
      reflector.apply(vectors_.z.row(i).from(k));
    }
  }
}

/// Reads the eigenvalues of the 1 by 1 or 2 by 2 block in rows low ... whole.high.
void HessenbergQr::store_block(Integer low, const Active& whole) {
  const Integer i = whole.high;
  if (low == i) {
    wr_(i) = h_(i, i);
    wi_(i) = 0;
    return;
  }
  const StandardForm form(h_(i - 1, i - 1), h_(i - 1, i), h_(i, i - 1), h_(i, i));
  wr_(i - 1) = h_(i - 1, i - 1);
  wr_(i) = h_(i, i);
  wi_(i - 1) = h_(i, i - 1) == 0 ? QuarnFloat(0) : sqrt(fabs(h_(i - 1, i))) * sqrt(fabs(h_(i, i - 1)));
  wi_(i) = h_(i, i - 1) == 0 ? QuarnFloat(0) : -wi_(i - 1);
  if (wants_schur_form_) {
    rotate(n_ - i, h_.row(i - 1).from(i + 1), h_.row(i).from(i + 1), form.cs, form.sn);
    rotate(i - 2, h_.column(i - 1), h_.column(i), form.cs, form.sn);
  }
  if (vectors_.first <= vectors_.last) {
    rotate(vectors_.last - vectors_.first + 1, vectors_.z.column(i - 1).from(vectors_.first),
           vectors_.z.column(i).from(vectors_.first), form.cs, form.sn);
  }
}

Integer HessenbergQr::double_shift() {
  if (n_ == 0) {
    return 0;
  }
  if (ilo_ == ihi_) {
    store_block(ilo_, active(ilo_, ihi_));
    return 0;
  }
  std::int64_t left = iteration_limit();
  for (Integer i = ihi_; i >= ilo_;) {
    Integer low = ilo_;
    std::int64_t iteration = 0;
    for (;; ++iteration) {
      low = block_start(low, i);
      if (low >= i - 1) {
        break;
      }
      if (iteration >= left) {
        return i;
      }
      const Active block = active(low, i);
      QuarnFloat v[3];
      const Integer start = sweep_start(shifts(low, i, iteration), block, v);
      sweep(block, start, 3, v);
    }
    store_block(low, active(low, i));
    left -= iteration;
    i = low - 1;
  }
  return 0;
}

/// The shifts of a multishift sweep: the eigenvalues of the trailing block, into their places in wr and wi.
void HessenbergQr::take_shifts(Integer first, Integer count) {
  QuarnFloat copy[kMostShifts * kMostShifts];
  const OneBasedMatrix<QuarnFloat> s(copy, count);
  for (Integer j = 1; j <= count; ++j) {
    tesk::copy(count, h_.from(first, first).column(j), s.column(j));
  }
  const Integer failed =
      HessenbergQr(Accuracy::classic, false, count, 1, count, s, &wr_(first), &wi_(first), {s, 1, 0}).double_shift();
  for (Integer i = 1; i <= failed; ++i) {
    wr_(first + i - 1) = s(i, i);
    wi_(first + i - 1) = 0;
  }
}

/// The first column of the product of the shifted matrices, scaled, in v(1) ... v(count + 1).
void HessenbergQr::first_column(Integer low, Integer first, Integer count, QuarnFloat* v) const {
  const OneBasedMatrix<QuarnFloat> block = h_.from(low, low);
  Integer used = 1;
  v[0] = 1;
  // y := block(1 ... rows, 1 ... rows - 1) x + beta y
  const auto multiply = [&](Integer rows, const QuarnFloat* x, const QuarnFloat& beta, QuarnFloat* y) {
    for (Integer i = 1; i <= rows; ++i) {
      QuarnFloat sum = beta * y[i - 1];
      for (Integer j = std::max<Integer>(1, i - 1); j < rows; ++j) {
        sum += block(i, j) * x[j - 1];
      }
      y[i - 1] = std::move(sum);
    }
  };
  const auto largest = [](Integer n, QuarnFloat* x) {
    return fabs(x[index_of_largest(n, OneBasedVector<QuarnFloat>(x, 1)) - 1]);
  };
  for (Integer j = first; j < first + count; ++j) {
    if (wi_(j) < 0) {
      continue;  // the second of a pair: done with the first
    }
    QuarnFloat w[Reflector::kLargest];
    std::copy(v, v + used, w);
    if (wi_(j) == 0) {
      multiply(used + 1, w, -wr_(j), v);
      used += 1;
    } else {
      multiply(used + 1, v, -2 * wr_(j), w);
      const QuarnFloat scale_by = 1 / std::max(largest(used + 1, w), smallest_);
      scale(used + 1, scale_by, OneBasedVector<QuarnFloat>(w, 1));
      const QuarnFloat size = QuarnMP_a02abfn_(wr_(j), wi_(j));
      multiply(used + 2, w, scale_by * size * size, v);
      used += 2;
    }
    const QuarnFloat size = largest(used, v);
    if (size == 0) {
      std::fill(v, v + used, QuarnFloat(0));
      v[0] = 1;
    } else {
      scale(used, 1 / std::max(size, smallest_), OneBasedVector<QuarnFloat>(v, 1));
    }
  }
}

Integer HessenbergQr::multishift(Integer shifts, Integer largest_small_block) {
  std::int64_t left = iteration_limit();
  for (Integer i = ihi_; i >= ilo_;) {
    Integer low = ilo_;
    std::int64_t iteration = 0;
    for (;; ++iteration) {
      low = block_start(low, i);
      if (low > i - largest_small_block) {
        break;
      }
      if (iteration >= left) {
        return i;
      }
      const Integer first = i - shifts + 1;
      if (iteration == 20 || iteration == 30) {
        for (Integer j = first; j <= i; ++j) {
          wr_(j) = QuarnFloat(1.5) * (fabs(h_(j, j - 1)) + fabs(h_(j, j)));
          wi_(j) = 0;
        }
      } else {
        take_shifts(first, shifts);
      }
      QuarnFloat v[Reflector::kLargest];
      first_column(low, first, shifts, v);
      sweep(active(low, i), low, shifts + 1, v);
    }
    HessenbergQr rest = *this;
    rest.ilo_ = low;
    rest.ihi_ = i;
    rest.sweeps_ = 0;
    const Integer info = rest.double_shift();
    sweeps_ += rest.sweeps_;
    if (info > 0) {
      return info;
    }
    left -= iteration;
    i = low - 1;
  }
  return 0;
}

/// The last row of the Hessenberg matrix that holds a NaN or an infinity between ilo and ihi, otherwise 0.
Integer last_bad_row(Integer ilo, Integer ihi, OneBasedMatrix<QuarnFloat> h) {
  for (Integer i = ihi; i >= ilo; --i) {
    for (Integer j = std::max(ilo, i - 1); j <= ihi; ++j) {
      if (!isfinite(h(i, j))) {
        return i;
      }
    }
  }
  return 0;
}

/// Reads the eigenvalues of rows ilo ... ihi of a Schur form.
void read_eigenvalues(Integer ilo, Integer ihi, OneBasedMatrix<QuarnFloat> h, QuarnFloat* wr, QuarnFloat* wi) {
  for (BlockEigenvalue& value : block_eigenvalues(ihi - ilo + 1, h.from(ilo, ilo))) {
    const Integer at = ilo + value.row - 2;
    if (value.pair) {
      wr[at + 1] = value.re;
      wi[at + 1] = -value.im;
    }
    wr[at] = std::move(value.re);
    wi[at] = std::move(value.im);
  }
}

}  // namespace

QrOutcome hessenberg_qr(Accuracy accuracy, bool wants_schur_form, Integer n, Integer ilo, Integer ihi,
                        OneBasedMatrix<QuarnFloat> h, QuarnFloat* wr, QuarnFloat* wi, SchurVectors vectors) {
  for (Integer i = 1; i <= n; ++i) {
    if (i < ilo || i > ihi) {
      wr[i - 1] = h(i, i);
      wi[i - 1] = 0;
    }
  }
  if (n == 0) {
    return {};
  }
  if (ilo == ihi) {
    wr[ilo - 1] = h(ilo, ilo);
    wi[ilo - 1] = 0;
    return {};
  }
  // What stands below the first subdiagonal is not part of the matrix.
  for (Integer j = ilo; j <= ihi - 2; ++j) {
    fill(n - j - 1, QuarnFloat(), h.column(j).from(j + 2));
  }
  const Integer order = ihi - ilo + 1;
  const Integer whole = wants_schur_form ? n : order;
  const OneBasedMatrix<QuarnFloat> part = wants_schur_form ? h : h.from(ilo, ilo);
  Integer exponent = 0;
  if (accuracy == Accuracy::full) {
    // Sweeps would not make numbers of NaN, and the limit is far away.
    if (const Integer bad = last_bad_row(ilo, ihi, h); bad != 0) {
      return {bad, 0};
    }
    exponent = far_exponent(order, order, h.from(ilo, ilo));
    multiply_by_power(whole, whole, part, -exponent);
  }
  const Integer wanted_shifts = tuning_value(kShifts, "F08PEF");
  const Integer wanted_block = tuning_value(kLargestSmallBlock, "F08PEF");
  HessenbergQr qr(accuracy, wants_schur_form, n, ilo, ihi, h, wr, wi, vectors);
  const Integer block = std::max<Integer>(3, wanted_block);
  const bool small = wanted_shifts <= 2 || wanted_shifts > order || wanted_block >= order;
  Integer info = 0;
  if (small && accuracy == Accuracy::full && order >= fewest_for_multishift(wants_schur_form)) {
    const Integer rows = std::max<Integer>(0, vectors.last - vectors.first + 1);
    info =
        multishift_qr(wants_schur_form, n, ilo, ihi, h, rows, rows > 0 ? vectors.z.from(vectors.first, 1) : vectors.z);
    read_eigenvalues(ilo, ihi, h, wr, wi);
  } else {
    info = small ? qr.double_shift() : qr.multishift(std::min({wanted_shifts, block, kMostShifts}), block);
  }
  multiply_by_power(whole, whole, part, exponent);
  multiply_by_power(order, 1, {wr + ilo - 1, order}, exponent);
  multiply_by_power(order, 1, {wi + ilo - 1, order}, exponent);
  return {info, qr.sweeps()};
}

Integer small_qr(bool wants_schur_form, Integer n, OneBasedMatrix<QuarnFloat> h, OneBasedMatrix<QuarnFloat> z) {
  std::vector<QuarnFloat> wr(static_cast<std::size_t>(n));
  std::vector<QuarnFloat> wi(wr.size());
  const SchurVectors vectors{z, 1, wants_schur_form ? n : 0};
  const Integer info =
      HessenbergQr(Accuracy::full, wants_schur_form, n, 1, n, h, wr.data(), wi.data(), vectors).double_shift();
  for (Integer j = 1; !wants_schur_form && j <= n; ++j) {
    const auto at = std::size_t(j - 1);
    h(j, j) = wr[at];
    if (j < n) {
      const bool pair = wi[at] > 0;
      h(j + 1, j) = pair ? wi[at] : QuarnFloat();
      h(j, j + 1) = pair ? -wi[at] : QuarnFloat();
    }
  }
  return info;
}

Integer double_shift_qr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<QuarnFloat> h,
                        QuarnFloat* wr, QuarnFloat* wi, SchurVectors vectors) {
  return HessenbergQr(Accuracy::classic, wants_schur_form, n, ilo, ihi, h, wr, wi, vectors).double_shift();
}

}  // namespace tesk
