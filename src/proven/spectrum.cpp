// S. Gerschgorin, Bull. Acad. Sci. URSS (1931); for a multiple eigenvalue S. M. Rump, Computational error bounds for
// multiple or nearly multiple eigenvalues, Linear Algebra Appl. 324 (2001).
#include "src/proven/spectrum.h"

#include <algorithm>
#include <utility>

#include "quarn/quarnthread.h"

namespace tesk::proven {

Spectrum::Spectrum(Integer n, const Complex* w, const BoundMatrix& e)
    : n_(n),
      centres_(w, w + n),
      alone_(std::size_t(n) + 1, true),
      weights_(std::size_t(n) + 1),
      sizes_(e),
      radii_(std::size_t(n) + 1) {
  for (Integer i = 1; i <= n; ++i) {
    radii_[std::size_t(i)] = radius(i);
  }
}

Spectrum::Spectrum(Integer n, OneBasedMatrix<Complex> m, const Blocks& blocks, const BoundMatrix& e)
    : n_(n), alone_(std::size_t(n) + 1, true), weights_(std::size_t(n) + 1), sizes_(e), radii_(std::size_t(n) + 1) {
  for (Integer i = 1; i <= n; ++i) {
    centres_.push_back(m(i, i));
  }
  std::vector<bool> exact(std::size_t(n) + 1, false);
  for (std::size_t block = 0; block + 1 < blocks.size(); ++block) {
    const Integer first = blocks[block];
    const Integer next = blocks[block + 1];
    if (next - first == 1) {
      continue;
    }
    // With rows of E that are zero the eigenvalues of the triangular block are those of the matrix.
    bool is_exact = true;
    for (Integer i = first; i < next; ++i) {
      alone_[std::size_t(i)] = false;
      for (Integer j = 1; j <= n; ++j) {
        is_exact = is_exact && e(i, j).is_zero();
      }
      for (Integer j = i + 1; j < next; ++j) {
        sizes_(i, j) += QuarnBound(m(i, j));
      }
    }
    for (Integer i = first; i < next; ++i) {
      exact[std::size_t(i)] = is_exact;
    }
    set_weights(first, next);
  }
  for (Integer i = 1; i <= n; ++i) {
    radii_[std::size_t(i)] = exact[std::size_t(i)] ? QuarnBound() : radius(i);
  }
}

QuarnBound Spectrum::radius(Integer i) const {
  QuarnBound sum;
  for (Integer j = 1; j <= n_; ++j) {
    sum += element(i, j);
  }
  return sum;
}

/// Weights 10^-(p tau / 10) of row p of the block. The largest radius is a sum of powers of 10^tau, and convex.
void Spectrum::set_weights(Integer first, Integer next) {
  const Integer order = next - first;
  // Other rows' weights are at most 1.
  std::vector<QuarnBound> others;
  for (Integer i = first; i < next; ++i) {
    QuarnBound sum;
    for (Integer j = 1; j <= n_; ++j) {
      sum += j < first || j >= next ? sizes_(i, j) : QuarnBound();
    }
    others.push_back(sum);
  }
  const auto exponent = [](Integer place, std::int64_t tau) { return -(std::int64_t(place) * tau + 5) / 10; };
  const auto largest = [&](std::int64_t tau) {
    QuarnBound most;
    for (Integer i = 0; i < order; ++i) {
      QuarnBound sum = others[std::size_t(i)] * QuarnBound::power_of_ten(-exponent(i, tau));
      for (Integer j = 0; j < order; ++j) {
        sum += sizes_(first + i, first + j) * QuarnBound::power_of_ten(exponent(j, tau) - exponent(i, tau));
      }
      most = std::max(most, sum);
    }
    return most;
  };
  constexpr std::int64_t kNear = 20;
  std::int64_t low = 0;
  std::int64_t high = 100 * std::int64_t(QuarnDigits()) + 1000;
  while (high - low > kNear) {
    const std::int64_t third = (high - low) / 3;
    if (largest(low + third) < largest(high - third)) {
      high -= third;
    } else {
      low += third;
    }
  }
  std::int64_t best = low;
  QuarnBound least = largest(low);
  for (std::int64_t tau = std::max<std::int64_t>(0, low - kNear); tau <= high + kNear; ++tau) {
    if (const QuarnBound candidate = largest(tau); candidate < least) {
      least = candidate;
      best = tau;
    }
  }
  for (Integer i = 0; i < order; ++i) {
    const Integer row = first + i;
    weights_[std::size_t(row)] = exponent(i, best);
  }
}

std::vector<Disc> Spectrum::discs() const {
  std::vector<Disc> result;
  for (Integer i = 1; i <= n_; ++i) {
    result.push_back({centres_[std::size_t(i - 1)], radii_[std::size_t(i)]});
  }
  return result;
}

QuarnBound Spectrum::distance_of_centres(const Members& members, const Complex& centre) const {
  const auto k = Integer(members.size());
  OwnMatrix<Complex> factors(1, k + 1);
  OwnMatrix<Complex> terms(k + 1, 1);
  OwnMatrix<Complex> sum(1, 1);
  Range range;
  for (Integer i = 1; i <= k + 1; ++i) {
    factors.view()(1, i) = Complex(i <= k ? 1 : -k);
    terms.view()(i, 1) = i <= k ? centres_[members[std::size_t(i - 1)]] : centre;
    range.take(terms.view()(i, 1));
  }
  exact::multiply_matrices(Op::none, Op::none, 1, 1, k + 1, Complex(1.0), factors.view(), terms.view(), Complex(0.0),
                           sum.view());
  return Rounded(QuarnDigits(), range).size(sum.view()(1, 1));
}

QuarnBound Spectrum::mean_error(const Members& members, const Complex& centre) const {
  std::vector<Integer> inside;
  std::vector<Integer> outside;
  for (Integer i = 1; i <= n_; ++i) {
    const bool is_member = std::find(members.begin(), members.end(), std::size_t(i - 1)) != members.end();
    (is_member ? inside : outside).push_back(i);
    // Of an exact block the disc is not that of its weights.
    if (is_member && radii_[std::size_t(i)] < radius(i)) {
      return QuarnBound::infinity();
    }
  }
  // G = D^-1 (M + E) D has an invariant subspace (I; Y), the rows of the set first, where G_21 + G_22 Y =
  // Y (G_11 + G_12 Y): a fixed point Y of this without the diagonals, divided by the gaps between them. Row sums of |Y|
  // of at most 1 keep the eigenvalues of G_11 + G_12 Y within the discs of the set.
  const auto k = std::uint32_t(inside.size());
  constexpr std::uint32_t kOne = 1'000'000'000;
  BoundMatrix over_gap(n_);
  BoundMatrix y(n_);
  for (const Integer i : inside) {
    for (const Integer j : outside) {
      const WorkingDigits scope(std::max(QuarnDigits(), kFewDigits));
      over_gap(j, i) = reciprocal_bound(least_size(centres_[std::size_t(i - 1)] - centres_[std::size_t(j - 1)]));
      y(j, i) = QuarnBound::count(kOne / k) * QuarnBound::power_of_ten(-9);
    }
  }
  BoundMatrix added(n_);  // to the block of the set: G_12 Y
  for (std::uint32_t round = 0; round < k + 2; ++round) {
    bool shrinks = false;
    for (const Integer i : inside) {
      for (const Integer l : inside) {
        added(l, i) = QuarnBound();
        for (const Integer j : outside) {
          added(l, i) += element(l, j) * y(j, i);
        }
      }
      QuarnCheckInterrupt();
    }
    BoundMatrix next(n_);
    for (const Integer i : inside) {
      for (const Integer j : outside) {
        QuarnBound sum = element(j, i);
        for (const Integer l : outside) {
          sum += element(j, l) * y(l, i);
        }
        for (const Integer l : inside) {
          sum += y(j, l) * (element(l, i) + added(l, i));
        }
        next(j, i) = sum * over_gap(j, i);
        if (round == 0 && y(j, i) < next(j, i)) {
          return QuarnBound::infinity();
        }
        shrinks = shrinks || next(j, i) * QuarnBound::count(10) < y(j, i);
        next(j, i) = std::min(next(j, i), y(j, i));
      }
      QuarnCheckInterrupt();
    }
    y = std::move(next);
    if (!shrinks) {
      break;
    }
  }
  // The sum of the eigenvalues is the trace of G_11 + G_12 Y.
  QuarnBound sum = distance_of_centres(members, centre);
  for (const Integer i : inside) {
    sum += element(i, i);
    for (const Integer j : outside) {
      sum += element(i, j) * y(j, i);
    }
  }
  return sum / QuarnBound::count(k);
}

std::vector<QuarnBound> Spectrum::coefficients(Integer i) const {
  const auto place = std::size_t(i);
  std::vector<QuarnBound> z(std::size_t(n_) + 1, QuarnBound::infinity());
  if (!alone_[place] || !radii_[place].is_finite()) {
    return z;
  }
  // (lambda - m(j, j)) z(j) is the rest of row j of (M + E) z, |z(j)| <= 1 = z(i): a larger z(j) than z(i) would put
  // lambda into disc j.
  std::vector<QuarnBound> over_gap(std::size_t(n_) + 1);
  const WorkingDigits scope(std::max(QuarnDigits(), kFewDigits));
  for (Integer j = 1; j <= n_; ++j) {
    if (j == i) {
      continue;
    }
    if (!are_apart(centres_[place - 1], radii_[place], centres_[std::size_t(j - 1)], radii_[std::size_t(j)])) {
      return z;
    }
    const QuarnFloat gap = least_size(centres_[place - 1] - centres_[std::size_t(j - 1)]) - radii_[place].value();
    over_gap[std::size_t(j)] = reciprocal_bound(gap * (1 - QuarnFloat(1, 5 - kFewDigits)));
  }
  for (Integer j = 1; j <= n_; ++j) {
    z[std::size_t(j)] = j == i ? QuarnBound::count(1) : radii_[std::size_t(j)] * over_gap[std::size_t(j)];
  }
  constexpr int kMostRounds = 20;
  for (int round = 0; round < kMostRounds; ++round) {
    bool shrinks = false;
    for (Integer j = 1; j <= n_; ++j) {
      if (j == i) {
        continue;
      }
      QuarnBound sum;
      for (Integer k = 1; k <= n_; ++k) {
        sum += element(j, k) * z[std::size_t(k)];
      }
      const QuarnBound next = sum * over_gap[std::size_t(j)];
      shrinks = shrinks || next * QuarnBound::count(10) < z[std::size_t(j)];
      z[std::size_t(j)] = std::min(z[std::size_t(j)], next);
    }
    if (!shrinks) {
      break;
    }
  }
  for (Integer j = 1; j <= n_; ++j) {
    if (j != i) {
      z[std::size_t(j)] *= QuarnBound::power_of_ten(weights_[std::size_t(j)]);
    }
  }
  return z;
}

}  // namespace tesk::proven
