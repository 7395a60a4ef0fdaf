#include "src/fft/prime_transform.h"

#include <algorithm>
#include <cstdint>

namespace tesk {
namespace {

double sums_work(Integer r) { return 2.0 * double(r - 1) * double(r - 1); }
double convolution_work(Integer r);

/// Real operations an element of a transform of length n, roughly.
double work(Integer n) {
  const ComplexFactors factors = factorize_complex(n);
  double sum = 0;
  for (Integer i = 0; i < factors.count; ++i) {
    const Integer r = factors.factor[std::size_t(i)];
    switch (r) {
      case 2:
        sum += 5;
        break;
      case 3:
        sum += 9;
        break;
      case 4:
        sum += 8.5;
        break;
      case 5:
        sum += 14;
        break;
      default:
        sum += std::min(sums_work(r), convolution_work(r)) / r;
    }
  }
  return sum;
}

/// The cheapest length of at least n with factors 2, 3 and 5 alone.
Integer smooth_length(Integer n) {
  Integer best = 0;
  double least = 0;
  for (std::int64_t five = 1; five < 2 * n; five *= 5) {
    for (std::int64_t three = five; three < 2 * n; three *= 3) {
      std::int64_t length = three;
      while (length < n) {
        length *= 2;
      }
      const double cost = double(length) * work(Integer(length));
      if (best == 0 || cost < least) {
        best = Integer(length);
        least = cost;
      }
    }
  }
  return best;
}

/// Where to convolve n cyclic elements: n itself, or at least 2 n - 1 elements.
Integer convolution_length(Integer n) {
  if (n > INT32_MAX / 8) {
    return n;
  }
  const Integer padded = smooth_length(2 * n - 1);
  return n * work(n) <= padded * work(padded) ? n : padded;
}

/// Two transforms, and the products between.
double convolution_work(Integer r) {
  const Integer length = convolution_length(r - 1);
  return 2.0 * length * (work(length) + 4);
}

std::uint32_t power(std::uint64_t base, Integer exponent, Integer modulus) {
  std::uint64_t result = 1;
  for (; exponent > 0; exponent /= 2) {
    if (exponent % 2 != 0) {
      result = result * base % std::uint64_t(modulus);
    }
    base = base * base % std::uint64_t(modulus);
  }
  return std::uint32_t(result);
}

/// The smallest generator of the residues mod the prime r.
Integer generator(Integer r) {
  const ComplexFactors factors = factorize_complex(r - 1);
  const auto generates = [&](Integer g) {
    for (Integer i = 0; i < factors.count; ++i) {
      const Integer factor = factors.factor[std::size_t(i)];
      if (power(std::uint64_t(g), (r - 1) / (factor == 4 ? 2 : factor), r) == 1) {
        return false;
      }
    }
    return true;
  };
  Integer g = 2;
  while (!generates(g)) {
    ++g;
  }
  return g;
}

}  // namespace

bool PrimeTransform::pays(Integer r) {
  constexpr double kPreparation = 0.6;  // of a convolution: the transform of the weights, and the table
  return factorize_complex(r).count == 1 && (1 + kPreparation) * convolution_work(r) < sums_work(r);
}

PrimeTransform::PrimeTransform(Integer r, const Complex* roots, std::ptrdiff_t apart, const Constants& constants)
    : powers_(std::size_t(r - 1)) {
  const Integer g = generator(r);
  std::int64_t residue = 1;
  for (Integer& p : powers_) {
    p = Integer(residue);
    residue = residue * g % r;
  }
  const Integer length = convolution_length(r - 1);
  factors_ = factorize_complex(length);
  table_.resize(std::size_t(length));
  a_.resize(std::size_t(length));
  scratch_.resize(std::size_t(length));
  make_table(table_.data(), length, factors_, constants);
  passes_.emplace(length, 1, table_.data(), factors_.count, factors_.factor.data(), constants);

  // w^(g^-q) at q, and where zeros pad the other sequence at q - (r-1) from the end as well.
  const QuarnFloat scale = 1 / QuarnFloat(length);
  for (Integer q = 0; q < r - 1; ++q) {
    const Integer k = powers_[std::size_t(q == 0 ? 0 : r - 1 - q)];
    Complex w = k <= r / 2 ? roots[k * apart] : conj(roots[(r - k) * apart]);
    w.re *= scale;
    w.im *= scale;
    if (length > r - 1 && q > 0) {
      a_[a_.size() - powers_.size() + std::size_t(q)] = w;
    }
    a_[std::size_t(q)] = std::move(w);
  }
  const Complex* weights = transformed();
  weights_.assign(weights, weights + length);
}

void PrimeTransform::operator()(Complex* z) {
  const std::size_t n = powers_.size();
  for (std::size_t q = 0; q < n; ++q) {
    a_[q] = z[powers_[q]];
  }
  std::fill(a_.begin() + std::ptrdiff_t(n), a_.end(), Complex());
  const Complex* spectrum = transformed();
  const Complex sum = spectrum[0];
  // Back by the forward passes: the conjugate of the transform of the conjugates.
  for (std::size_t k = 0; k < a_.size(); ++k) {
    a_[k] = conj(spectrum[k] * weights_[k]);
  }
  const Complex* convolution = transformed();
  for (std::size_t p = 0; p < n; ++p) {
    Complex& target = z[powers_[p == 0 ? 0 : n - p]];
    target.re = z[0].re + convolution[p].re;
    target.im = z[0].im - convolution[p].im;
  }
  z[0] = z[0] + sum;
}

}  // namespace tesk
