// K. Braman, R. Byers, R. Mathias, The multishift QR algorithm, part II: aggressive early deflation, SIAM J. Matrix
// Anal. Appl. 23 (2002); xLAQR0 and xLAQR3 of E. Anderson et al., LAPACK Users' Guide.
#include "src/dense/multishift_qr.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "src/dense/bulge_chain.h"
#include "src/dense/qr.h"
#include "src/dense/schur_order.h"
#include "src/dense/schur_vectors.h"
#include "src/frame/constants.h"
#include "tesk2mp/dense.h"

namespace tesk {
namespace {

void reduce_to_hessenberg(Integer n, OneBasedMatrix<QuarnFloat> a, QuarnFloat* tau, QuarnFloat* work) {
  Integer info = 0;
  QuarnMPX_dgehrd_(n, 1, n, a.first(), Integer(a.column_stride()), tau, work, n, &info);
}
void reduce_to_hessenberg(Integer n, OneBasedMatrix<Complex> a, Complex* tau, Complex* work) {
  Integer info = 0;
  QuarnMPX_zgehrd_(n, 1, n, a.first(), Integer(a.column_stride()), tau, work, n, &info);
}

/// Shifts from the blocks of a Schur form, those of the smallest weights first.
std::vector<ShiftPair<QuarnFloat>> shifts_of(Integer n, OneBasedMatrix<QuarnFloat> t,
                                             const std::vector<QuarnFloat>& weights, Integer most) {
  std::vector<BlockEigenvalue> blocks = block_eigenvalues(n, t);
  const auto weight = [&](const BlockEigenvalue& block) {
    const auto row = std::size_t(block.row - 1);
    return block.pair ? std::max(weights[row], weights[row + 1]) : weights[row];
  };
  std::stable_sort(blocks.begin(), blocks.end(), [&](const auto& a, const auto& b) { return weight(a) < weight(b); });
  std::vector<ShiftPair<QuarnFloat>> pairs;
  const BlockEigenvalue* single = nullptr;
  for (const BlockEigenvalue& block : blocks) {
    if (Integer(pairs.size()) == most) {
      break;
    }
    if (block.pair) {
      pairs.push_back({block.re, block.re, -(block.im * block.im)});
    } else if (single == nullptr) {
      single = &block;
    } else {
      pairs.push_back({single->re, block.re, QuarnFloat()});
      single = nullptr;
    }
  }
  if (single != nullptr && Integer(pairs.size()) < most) {
    pairs.push_back({single->re, single->re, QuarnFloat()});
  }
  return pairs;
}
std::vector<ShiftPair<Complex>> shifts_of(Integer n, OneBasedMatrix<Complex> t, const std::vector<QuarnFloat>& weights,
                                          Integer most) {
  std::vector<Integer> rows;
  for (Integer i = 1; i <= n; ++i) {
    rows.push_back(i);
  }
  std::stable_sort(rows.begin(), rows.end(),
                   [&](Integer a, Integer b) { return weights[std::size_t(a - 1)] < weights[std::size_t(b - 1)]; });
  std::vector<ShiftPair<Complex>> pairs;
  for (std::size_t i = 0; i < rows.size() && Integer(pairs.size()) < most; i += 2) {
    const Integer second = rows[std::min(i + 1, rows.size() - 1)];
    pairs.push_back({t(rows[i], rows[i]), t(second, second), Complex()});
  }
  return pairs;
}

template <class T>
class MultishiftQr {
 public:
  MultishiftQr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<T> h, Integer rows,
               OneBasedMatrix<T> z)
      : wants_schur_form_(wants_schur_form), n_(n), ilo_(ilo), ihi_(ihi), h_(h), rows_(rows), z_(z) {
    const Integer order = ihi - ilo + 1;
    bulges_ = std::clamp<Integer>(order / (wants_schur_form ? 32 : 40), kFewestBulges, kMostBulges);
    smallest_ = smallest_number() * (QuarnFloat(order) / ulp_);
  }

  /// INFO
  Integer solve() {
    int stalls = 0;
    for (Integer high = ihi_; high >= ilo_;) {
      QuarnCheckInterrupt();
      const Integer low = block_start(high);
      if (high - low + 1 < kSmallBlock || stalls > kPatience) {
        if (const Integer info = finish(low, high); info > 0) {
          return low - 1 + info;
        }
        high = low - 1;
        stalls = 0;
        continue;
      }
      const Integer window = std::min(high - low + 1, 3 * bulges_ + 1);
      const Integer deflated = deflate(low, high, window);
      stalls = deflated > 0 ? 0 : stalls + 1;
      high -= deflated;
      // Many at a time: there may be more.
      if (!shifts_.empty() && 100 * deflated <= kGoodPercentage * window && high - low >= kSmallBlock) {
        BulgeChain<T>(low, high, shifts_, reach(low, high)).chase();
      }
    }
    return 0;
  }

 private:
  static constexpr Integer kSmallBlock = 60;
  static constexpr Integer kFewestBulges = 3;
  static constexpr Integer kMostBulges = 16;
  static constexpr Integer kGoodPercentage = 14;
  // Sweeps without an eigenvalue split off: shifts for multiple eigenvalues are those of the small algorithms.
  static constexpr int kPatience = 6;

  SchurReach<T> reach(Integer low, Integer high) const {
    return {wants_schur_form_ ? 1 : low, wants_schur_form_ ? n_ : high, h_, rows_, z_};
  }

  bool negligible(Integer k) const {
    QuarnFloat size = magnitude(h_(k - 1, k - 1)) + magnitude(h_(k, k));
    if (size == 0) {
      size = magnitude(h_(k - 1, k)) + (k > ilo_ + 1 ? magnitude(h_(k - 1, k - 2)) : QuarnFloat()) +
             (k < ihi_ ? magnitude(h_(k + 1, k)) : QuarnFloat());
    }
    return magnitude(h_(k, k - 1)) <= std::max(ulp_ * size, smallest_);
  }

  /// The first row of the block that ends in row `high`; the element beside it becomes zero.
  Integer block_start(Integer high) const {
    Integer k = high;
    while (k > ilo_ && !negligible(k)) {
      --k;
    }
    if (k > ilo_) {
      h_(k, k - 1) = T();
    }
    return k;
  }

  /// All eigenvalues of the block.
  Integer finish(Integer low, Integer high) {
    const Integer size = high - low + 1;
    if (size == 1) {
      return 0;
    }
    const OneBasedMatrix<T> block = h_.from(low, low);
    OwnMatrix<T> own(size, size);
    const OneBasedMatrix<T> t = own.view();
    copy_matrix(size, size, block, t);
    const bool transforms = wants_schur_form_ || rows_ > 0;
    OwnMatrix<T> vectors(transforms ? size : 0, transforms ? size : 0);
    set_identity(transforms ? size : 0, vectors.view());
    const Integer info = small_qr(transforms, size, t, vectors.view());
    copy_matrix(size, size, t, block);
    if (transforms) {
      reach(low, high).transform(low, low, high, vectors.view());
    }
    return info;
  }

  /// Splits off eigenvalues of the last rows of the block that are good to all digits, and takes those that are not
  /// for the next shifts. Returns how many there were.
  Integer deflate(Integer low, Integer high, Integer size) {
    const Integer first = high - size + 1;
    const OneBasedMatrix<T> window = h_.from(first, first);
    OwnMatrix<T> own(size, size);
    OwnMatrix<T> vectors(size, size);
    const OneBasedMatrix<T> t = own.view();
    const OneBasedMatrix<T> v = vectors.view();
    copy_matrix(size, size, window, t);
    set_identity(size, v);
    if (small_qr(true, size, t, v) != 0) {
      shifts_.clear();
      return 0;
    }
    const T spike = first == low ? T() : h_(first, first - 1);
    const Integer left = undeflated(size, t, v, magnitude(spike));
    std::vector<QuarnFloat> weights;
    for (Integer i = 1; i <= left; ++i) {
      weights.push_back(magnitude(v(1, i)));
    }
    shifts_ = shifts_of(left, t, weights, bulges_);
    if (left == size) {
      return 0;
    }
    if (!is_zero(spike)) {
      restore_hessenberg(size, left, t, v);
      h_(first, first - 1) = left > 0 ? spike * conjugate(v(1, 1)) : T();
    }
    copy_matrix(size, size, t, window);
    reach(low, high).transform(first, first, high, v);
    return size - left;
  }

  /// Blocks of the Schur form whose element of the spike is not negligible, moved to the top: their rows.
  Integer undeflated(Integer size, OneBasedMatrix<T> t, OneBasedMatrix<T> v, const QuarnFloat& spike) const {
    SchurOrder<T> order(size, t, size, v);
    const auto negligible_within = [&](Integer row, Integer rows, const QuarnFloat& factor) {
      QuarnFloat scale = magnitude(t(row, row));
      QuarnFloat element = magnitude(v(1, row));
      if (rows == 2) {
        scale += sqrt(magnitude(t(row + 1, row))) * sqrt(magnitude(t(row, row + 1)));
        element = std::max(element, magnitude(v(1, row + 1)));
      }
      if (scale == 0) {
        scale = spike;
      }
      return spike * element <= factor * std::max(ulp_ * scale, smallest_);
    };
    // An exchange changes elements of the spike, but not by orders of magnitude: when none is near, none is looked for.
    const QuarnFloat near(1, 4);
    Integer left = size;
    for (Integer kept = 0; left > kept;) {
      const Integer row = order.start_of(left);
      const Integer rows = left - row + 1;
      if (negligible_within(row, rows, QuarnFloat(1))) {
        left -= rows;
        continue;
      }
      bool any = false;
      for (Integer i = kept + 1; i < row && !any; i += order.size_at(i)) {
        any = negligible_within(i, order.size_at(i), near);
      }
      Integer to = kept + 1;
      if (!any || !order.move(row, &to)) {
        break;
      }
      kept += rows;
    }
    return left;
  }

  /// The first `left` rows and columns of T, with the spike beside them, to Hessenberg form again.
  void restore_hessenberg(Integer size, Integer left, OneBasedMatrix<T> t, OneBasedMatrix<T> v) const {
    if (left < 2) {
      return;
    }
    std::vector<T> x(static_cast<std::size_t>(left));
    const OneBasedVector<T> reflector(x.data(), 1);
    for (Integer i = 1; i <= left; ++i) {
      reflector(i) = conjugate(v(1, i));
    }
    const T tau = make_reflector(left, reflector);
    reflector(1) = T(1.0);
    reflect_left(left, size, conjugate(tau), reflector, t);
    reflect_right(left, left, tau, reflector, t);
    reflect_right(left, size, tau, reflector, v);
    std::vector<T> taus(x.size());
    reduce_to_hessenberg(left, t, taus.data(), x.data());
    // The reflectors that brought it there, one after the other, in the other columns and in V.
    for (Integer k = 1; k < left; ++k) {
      const OneBasedVector<T> stored = t.column(k).from(k + 1);
      copy(left - k, stored, reflector);
      reflector(1) = T(1.0);
      fill(left - k - 1, T(), stored.from(2));
      reflect_left(left - k, size - left, conjugate(taus[std::size_t(k - 1)]), reflector, t.from(k + 1, left + 1));
      reflect_right(left - k, size, taus[std::size_t(k - 1)], reflector, v.from(1, k + 1));
    }
  }

  bool wants_schur_form_;
  Integer n_;
  Integer ilo_;
  Integer ihi_;
  OneBasedMatrix<T> h_;
  Integer rows_;
  OneBasedMatrix<T> z_;
  Integer bulges_ = 0;
  std::vector<ShiftPair<T>> shifts_;
  QuarnFloat ulp_ = epsilon() * kBase;
  QuarnFloat smallest_;
};

}  // namespace

template <class T>
Integer multishift_qr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<T> h, Integer rows,
                      OneBasedMatrix<T> z) {
  return MultishiftQr<T>(wants_schur_form, n, ilo, ihi, h, rows, z).solve();
}
template Integer multishift_qr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<QuarnFloat> h,
                               Integer rows, OneBasedMatrix<QuarnFloat> z);
template Integer multishift_qr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<Complex> h,
                               Integer rows, OneBasedMatrix<Complex> z);

}  // namespace tesk
