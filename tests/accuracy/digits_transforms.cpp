// Transforms.
#include "digits.h"

namespace accuracy {
namespace {

using RealTransform = void (*)(QuarnFloat*, Integer*, QuarnFloat*, Integer*);

Computation transform(RealTransform entry) {
  return [entry](Data& data) {
    Vector x = data.reals(360);
    Vector work(x.size());
    Integer n = Integer(x.size());
    Integer ifail = 1;
    entry(x.data(), &n, work.data(), &ifail);
    return x;
  };
}

using ComplexTransform = decltype(&QuarnMP_c06pcf_);

Computation complex_transform(ComplexTransform entry, Integer n) {
  return [entry, n](Data& data) {
    ComplexVector x = data.complexes(std::size_t(n));
    ComplexVector work(2 * x.size());
    Integer ifail = 1;
    entry("F", x.data(), &n, work.data(), &ifail, 1);
    return gathered(x);
  };
}

using DimensionalTransform = decltype(&QuarnMP_c06pjf_);

Computation dimensional_transform(DimensionalTransform entry) {
  return [entry](Data& data) {
    const std::array<Integer, 3> nd = {6, 10, 6};
    const Integer ndim = 3;
    const Integer n = 360;
    const Integer lwork = n + 3 * (10 + 5);
    ComplexVector x = data.complexes(std::size_t(n));
    ComplexVector work(std::size_t(lwork), Complex(0));
    Integer ifail = 1;
    entry("F", &ndim, nd.data(), &n, x.data(), work.data(), &lwork, &ifail, 1);
    return gathered(x);
  };
}

/// Between 360 reals and their spectrum.
template <class Export>
Computation spectrum(Export entry) {
  return [entry](Data& data) {
    Vector reals = data.reals(360);
    ComplexVector numbers = data.complexes(181);
    Integer ifail = 1;
    if constexpr (std::is_same_v<Export, decltype(&QuarnMPX_rfft_)>) {
      entry("O", 360, 1, reals.data(), 1, 0, numbers.data(), 1, 0, &ifail, 1);
      return gathered(numbers);
    } else {
      entry("O", 360, 1, numbers.data(), 1, 0, reals.data(), 1, 0, &ifail, 1);
      return gathered(reals);
    }
  };
}

Computation typed_transform(decltype(&QuarnMPX_dct_) entry, Integer type) {
  return [entry, type](Data& data) {
    const Vector x = data.reals(360);
    Vector y(360);
    Integer ifail = 1;
    entry("F", "O", type, 360, 1, x.data(), 1, 0, y.data(), 1, 0, &ifail, 1, 1);
    return gathered(y);
  };
}

Vector array_transform(Data& data) {
  const Integer nd[] = {6, 10, 6};
  const Integer axes[] = {1, 2, 3};
  const ComplexVector x = data.complexes(360);
  ComplexVector y(360);
  Integer ifail = 1;
  QuarnMPX_fftn_("F", "O", 3, nd, 3, axes, x.data(), y.data(), &ifail, 1, 1);
  return gathered(y);
}

Vector convolution(Data& data) {
  const Vector a = data.reals(100);
  const Vector b = data.reals(80);
  Vector z(179);
  Integer ifail = 1;
  QuarnMPX_convolve_("L", 1, 100, a.data(), 80, b.data(), z.data(), &ifail, 1);
  return gathered(z);
}

}  // namespace

std::vector<Case> transform_cases() {
  return {
      {"c06faf", "real Fourier transform, N = 360", transform(QuarnMPX_c06faf_), transform(QuarnMP_c06faf_)},
      {"c06fbf", "and its inverse", transform(QuarnMPX_c06fbf_), transform(QuarnMP_c06fbf_)},
      {"c06pcf", "complex Fourier transform, N = 360", complex_transform(QuarnMPX_c06pcf_, 360),
       complex_transform(QuarnMP_c06pcf_, 360)},
      {"c06pcf", "of a large prime, N = 1009", complex_transform(QuarnMPX_c06pcf_, 1009),
       complex_transform(QuarnMP_c06pcf_, 1009)},
      {"c06pjf", "all dimensions of 6 by 10 by 6", dimensional_transform(QuarnMPX_c06pjf_),
       dimensional_transform(QuarnMP_c06pjf_)},
      {"rfft", "spectrum of 360 reals", spectrum(QuarnMPX_rfft_), {}},
      {"irfft", "and its inverse", spectrum(QuarnMPX_irfft_), {}},
      {"dct", "cosine transform of type 1, N = 360", typed_transform(QuarnMPX_dct_, 1), {}},
      {"dct", "of type 2", typed_transform(QuarnMPX_dct_, 2), {}},
      {"dct", "of type 4", typed_transform(QuarnMPX_dct_, 4), {}},
      {"dst", "sine transform of type 3, N = 360", typed_transform(QuarnMPX_dst_, 3), {}},
      {"fftn", "all dimensions of 6 by 10 by 6", array_transform, {}},
      {"convolve", "convolution of 100 and 80 reals", convolution, {}},
  };
}

}  // namespace accuracy
