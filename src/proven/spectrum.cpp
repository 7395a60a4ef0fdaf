// S. Gerschgorin, Bull. Acad. Sci. URSS (1931); for a multiple eigenvalue S. M. Rump, Computational error bounds for
// multiple or nearly multiple eigenvalues, Linear Algebra Appl. 324 (2001).
#include "src/proven/spectrum.h"

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
    if (!is_exact) {
      set_weights(first, next);
    }
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
