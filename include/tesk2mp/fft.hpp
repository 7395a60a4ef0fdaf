// Fourier transforms of the front door. Part of tesk2mp.hpp; fft.h has formulas, lengths and accuracy.
#pragma once

#include <span>
#include <vector>

#include "tesk2mp/views.hpp"

namespace tesk2mp {
namespace detail {

template <class Transform>
void transform_in_place(Transform transform, std::span<Real> x) {
  Integer n = count_of(x.size());
  std::vector<Real> work(x.size());
  call([&](Integer* ifail) { transform(x.data(), &n, work.data(), ifail); }, {4});
}

}  // namespace detail

/// z_k = 1/sqrt(N) sum over j of x_j exp(-2 pi i j k/N) of N reals, in place, in half-complex storage: x[k] becomes
/// Re z_k for k <= N/2 and x[N-k] becomes Im z_k for 0 < k < N/2. N is at least 2 and has at most 20 prime factors,
/// none above 19; other lengths throw InvalidArgument and leave x alone.
inline void transform_real(std::span<Real> x) { detail::transform_in_place(QuarnMPX_c06faf_, x); }

/// The inverse of transform_real(), from half-complex storage to reals.
inline void transform_hermitian(std::span<Real> x) { detail::transform_in_place(QuarnMPX_c06fbf_, x); }

/// All N numbers z_0 ... z_(N-1) that half-complex storage stands for.
inline std::vector<Complex> expand_hermitian(std::span<const Real> x) {
  const std::size_t n = x.size();
  std::vector<Complex> z(n);
  for (std::size_t k = 0; 2 * k <= n && k < n; ++k) {
    const bool real = k == 0 || 2 * k == n;
    z[k] = Complex(x[k], real ? Real(0) : x[n - k]);
    if (!real) {
      z[n - k] = conj(z[k]);
    }
  }
  return z;
}

/// The spectrum z_0 ... z_(N-1) of N reals.
///
/// @code
/// const tesk2mp::Digits digits(40);
/// const std::vector<tesk2mp::Complex> z = tesk2mp::spectrum(std::vector<tesk2mp::Real>{1, 2, 3, 5, 8, 13});
/// @endcode
inline std::vector<Complex> spectrum(std::span<const Real> x) {
  std::vector<Real> half(x.begin(), x.end());
  transform_real(half);
  return expand_hermitian(half);
}

enum class Direction : char { forward = 'F', backward = 'B' };

namespace detail {

template <class Transform>
void transform_complex(Transform transform, std::span<Complex> x, Direction direction) {
  const Integer n = count_of(x.size());
  std::vector<Complex> work(2 * x.size());
  call([&](Integer* ifail) { transform(Option(direction), x.data(), &n, work.data(), ifail, 1); }, {4});
}

}  // namespace detail

/// z_k = 1/sqrt(N) sum over j of x_j exp(-2 pi i j k/N) of N >= 1 complex numbers, in place, N with any factors;
/// backward with exp(+2 pi i j k/N), its inverse.
inline void transform(std::span<Complex> x, Direction direction = Direction::forward) {
  detail::transform_complex(QuarnMPX_c06pcf_, x, direction);
}

/// The entries that carry their constants as doubles, for results that are to stay what they always were: some 16
/// digits of them are true at any working precision.
namespace classic {

inline void transform_real(std::span<Real> x) { detail::transform_in_place(QuarnMP_c06faf_, x); }
inline void transform_hermitian(std::span<Real> x) { detail::transform_in_place(QuarnMP_c06fbf_, x); }
inline void transform(std::span<Complex> x, Direction direction = Direction::forward) {
  detail::transform_complex(QuarnMP_c06pcf_, x, direction);
}

}  // namespace classic
}  // namespace tesk2mp
