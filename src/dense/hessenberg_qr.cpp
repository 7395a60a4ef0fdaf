// The QR algorithm on a real upper Hessenberg matrix: Z. Bai, J. Demmel, On a block implementation of Hessenberg
// multishift QR iteration, Int. J. High Speed Comput. 1 (1989), as DHSEQR and DLAHQR of E. Anderson et al., LAPACK
// Users' Guide, do it.
#include <algorithm>

#include "src/dense/reflector.h"
#include "src/dense/tuning.h"
#include "src/frame/constants.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/kernels.h"
#include "tesk2mp/tesk2mp.h"

namespace tesk {
namespace {

constexpr Integer kMostShifts = Reflector::kLargest - 1;

/// One call of either path. Rows and columns ilo ... ihi are the part that is not yet triangular.
class HessenbergQr {
 public:
  struct Vectors {
    MatrixView<QuarnFloat> z;
    Integer first;
    Integer last;  // below first: no vectors are wanted
  };

  HessenbergQr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, MatrixView<QuarnFloat> h, QuarnFloat* wr,
               QuarnFloat* wi, Vectors vectors)
      : wants_schur_form_(wants_schur_form),
        n_(n),
        ilo_(ilo),
        ihi_(ihi),
        h_(h),
        wr_(wr, 1),
        wi_(wi, 1),
        vectors_(vectors),
        ulp_(QuarnMP_x02ajf_() * QuarnMP_x02bhf_()),
        smallest_(QuarnMP_x02amf_() * (QuarnFloat(ihi - ilo + 1) / ulp_)) {}

  /// Returns INFO: 0, or the index of the eigenvalue that was being sought when the iterations ran out.
  Integer double_shift();
  Integer multishift(Integer shifts, Integer largest_small_block);

 private:
  /// The bounds of the sweep on the active block low ... high, and the rows and columns that it changes.
  struct Active {
    Integer low;
    Integer high;
    Integer first;
    Integer last;
  };
  struct Shifts {
    QuarnFloat h33;
    QuarnFloat h44;
    QuarnFloat h43h34;
  };

  Integer block_start(Integer low, Integer high) const;
  Active active(Integer low, Integer high) const {
    return wants_schur_form_ ? Active{low, high, 1, n_} : Active{low, high, low, high};
  }
  // The shifts for the block that ends in row i.
  Shifts exceptional_shifts(Integer i) const;
  Shifts trailing_shifts(Integer i) const;
  Integer sweep_start(const Shifts& shifts, const Active& block, QuarnFloat* v) const;
  void sweep(const Active& block, Integer start, Integer size, QuarnFloat* v);
  void store_block(Integer low, const Active& whole);
  void take_shifts(Integer first, Integer count);
  void first_column(Integer low, Integer first, Integer count, QuarnFloat* v) const;

  bool wants_schur_form_;
  Integer n_;
  Integer ilo_;
  Integer ihi_;
  MatrixView<QuarnFloat> h_;
  VectorView<QuarnFloat> wr_;
  VectorView<QuarnFloat> wi_;
  Vectors vectors_;
  QuarnFloat ulp_;
  QuarnFloat smallest_;
};

/// The first row of the block that ends in row `high`: below it stands the first negligible subdiagonal element,
/// which is set to zero.
Integer HessenbergQr::block_start(Integer low, Integer high) const {
  Integer k = high;
  for (; k > low; --k) {
    QuarnFloat size = fabs(h_(k - 1, k - 1)) + fabs(h_(k, k));
    if (size == 0) {
      size = QuarnMP_f06rmf_("1", high - low + 1, &h_(low, low), Integer(h_.column_stride()), nullptr, 1);
    }
    if (fabs(h_(k, k - 1)) <= std::max(ulp_ * size, smallest_)) {
      break;
    }
  }
  if (k > ilo_) {
    h_(k, k - 1) = 0;
  }
  return k;
}

HessenbergQr::Shifts HessenbergQr::exceptional_shifts(Integer i) const {
  const QuarnFloat s = fabs(h_(i, i - 1)) + fabs(h_(i - 1, i - 2));
  const QuarnFloat h44 = QuarnFloat(0.75) * s + h_(i, i);
  return {h44, h44, QuarnFloat(-0.4375) * s * s};
}

HessenbergQr::Shifts HessenbergQr::trailing_shifts(Integer i) const {
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
  for (Integer k = start; k < block.high; ++k) {
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
  Integer left = 30 * (ihi_ - ilo_ + 1);
  for (Integer i = ihi_; i >= ilo_;) {
    Integer low = ilo_;
    Integer iteration = 0;
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
      const bool exceptional = iteration == 10 || iteration == 20;
      const Integer start = sweep_start(exceptional ? exceptional_shifts(i) : trailing_shifts(i), block, v);
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
  const MatrixView<QuarnFloat> s(copy, count);
  for (Integer j = 1; j <= count; ++j) {
    tesk::copy(count, h_.from(first, first).column(j), s.column(j));
  }
  const Integer failed = HessenbergQr(false, count, 1, count, s, &wr_(first), &wi_(first), {s, 1, 0}).double_shift();
  for (Integer i = 1; i <= failed; ++i) {
    wr_(first + i - 1) = s(i, i);
    wi_(first + i - 1) = 0;
  }
}

/// The first column of the product of the shifted matrices, scaled, in v(1) ... v(count + 1).
void HessenbergQr::first_column(Integer low, Integer first, Integer count, QuarnFloat* v) const {
  const MatrixView<QuarnFloat> block = h_.from(low, low);
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
    return fabs(x[index_of_largest(n, VectorView<QuarnFloat>(x, 1)) - 1]);
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
      scale(used + 1, scale_by, VectorView<QuarnFloat>(w, 1));
      const QuarnFloat size = QuarnMP_a02abfn_(wr_(j), wi_(j));
      multiply(used + 2, w, scale_by * size * size, v);
      used += 2;
    }
    const QuarnFloat size = largest(used, v);
    if (size == 0) {
      std::fill(v, v + used, QuarnFloat(0));
      v[0] = 1;
    } else {
      scale(used, 1 / std::max(size, smallest_), VectorView<QuarnFloat>(v, 1));
    }
  }
}

Integer HessenbergQr::multishift(Integer shifts, Integer largest_small_block) {
  Integer left = 30 * (ihi_ - ilo_ + 1);
  for (Integer i = ihi_; i >= ilo_;) {
    Integer low = ilo_;
    Integer iteration = 0;
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
    if (const Integer info = rest.double_shift(); info > 0) {
      return info;
    }
    left -= iteration;
    i = low - 1;
  }
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMP_f08pez_(unsigned wantt, unsigned wantz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h, Integer ldh,
                     QuarnFloat* wr, QuarnFloat* wi, Integer iloz, Integer ihiz, QuarnFloat* z, Integer ldz,
                     Integer* info) {
  *info = tesk::HessenbergQr(wantt != 0, n, ilo, ihi, {h, ldh}, wr, wi, {{z, ldz}, iloz, wantz != 0 ? ihiz : iloz - 1})
              .double_shift();
}

void QuarnMP_f08pef_ENTRY(int /*selector*/, const char* job, const char* compz, Integer n, Integer ilo, Integer ihi,
                          QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz,
                          QuarnFloat* work, Integer lwork, Integer* info, int /*job_length*/, int /*compz_length*/) {
  using namespace tesk;
  const bool wants_schur_form = letter(job) == 'S';
  const bool initialises = letter(compz) == 'I';
  const bool wants_vectors = initialises || letter(compz) == 'V';
  const Integer least = std::max<Integer>(1, n);
  work[0] = least;
  *info = -first_wrong({{!wants_schur_form && letter(job) != 'E', 1},
                        {!wants_vectors && letter(compz) != 'N', 2},
                        {n < 0, 3},
                        {ilo < 1 || ilo > least, 4},
                        {ihi < std::min(ilo, n) || ihi > n, 5},
                        {ldh < least, 7},
                        {ldz < (wants_vectors ? least : 1), 11},
                        {lwork < least && lwork != -1, 13}});
  if (*info != 0 || lwork == -1) {
    return;
  }
  const MatrixView<QuarnFloat> hv(h, ldh);
  const MatrixView<QuarnFloat> zv(z, ldz);
  if (initialises) {
    for (Integer j = 1; j <= n; ++j) {
      fill(n, QuarnFloat(), zv.column(j));
      zv(j, j) = 1;
    }
  }
  for (Integer i = 1; i <= n; ++i) {
    if (i < ilo || i > ihi) {
      wr[i - 1] = hv(i, i);
      wi[i - 1] = 0;
    }
  }
  if (n == 0) {
    return;
  }
  if (ilo == ihi) {
    wr[ilo - 1] = hv(ilo, ilo);
    wi[ilo - 1] = 0;
    return;
  }
  // What stands below the first subdiagonal is not part of the matrix.
  for (Integer j = ilo; j <= ihi - 2; ++j) {
    fill(n - j - 1, QuarnFloat(), hv.column(j).from(j + 2));
  }
  const Integer order = ihi - ilo + 1;
  const Integer wanted_shifts = tuning_value(kShifts, "F08PEF");
  const Integer wanted_block = tuning_value(kLargestSmallBlock, "F08PEF");
  HessenbergQr qr(wants_schur_form, n, ilo, ihi, hv, wr, wi, {zv, 1, wants_vectors ? n : 0});
  if (wanted_shifts <= 2 || wanted_shifts > order || wanted_block >= order) {
    *info = qr.double_shift();
    return;
  }
  const Integer block = std::max<Integer>(3, wanted_block);
  *info = qr.multishift(std::min({wanted_shifts, block, kMostShifts}), block);
}
}
