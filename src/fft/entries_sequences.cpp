// Transforms of many sequences and of arrays: entries, checks in the order of the header.
#include <algorithm>
#include <optional>
#include <utility>

#include "quarn/convolution.h"
#include "src/fft/complex_cores.h"
#include "src/fft/sequences.h"
#include "src/frame/option.h"
#include "src/frame/report.h"
#include "src/frame/working_digits.h"
#include "tesk2mp/transforms.h"

namespace tesk {
namespace {

constexpr Integer kLongest = Integer(1) << 26;

/// A report of a routine without a message buffer of its own, and the checks that the routines share: each says whether
/// the argument is good.
class Checks {
 public:
  Checks(const char* routine, Integer* ifail) : report_(routine, buffer_, ifail) {}

  bool direct(const Option& direct) {
    return direct.is_one_of("FB") || fail(1, " ** %1s is an invalid value of DIRECT.", direct.text());
  }
  bool norm(const Option& norm) {
    return norm.is_one_of("BOF") || fail(2, " ** %1s is an invalid value of NORM.", norm.text());
  }
  bool length(Integer n, Integer least = 1) {
    return (n >= least && n <= kLongest) || fail(3, " ** On entry, N .lt. %ld or .gt. 67108864: N = %16ld.", least, n);
  }
  bool count(Integer m) { return m >= 1 || fail(4, " ** On entry, M .lt. 1: M = %16ld.", m); }
  bool increments(Integer incx, Integer incy) {
    return (incx != 0 && incy != 0) ||
           fail(5, " ** On entry, an increment is 0: INCX = %12ld INCY = %12ld", incx, incy);
  }
  bool sequences(Integer n, Integer least, Integer m, Integer incx, Integer incy) {
    return length(n, least) && count(m) && increments(incx, incy);
  }
  bool type(Integer itype) {
    return (itype >= 1 && itype <= 4) || fail(6, " ** On entry, ITYPE is not 1 to 4: ITYPE = %16ld.", itype);
  }
  std::optional<ArrayShape> shape(Integer ndim, const Integer* nd, Integer naxes, const Integer* axes, Integer least) {
    if (ndim < 1) {
      fail(7, " ** On entry, NDIM .lt. 1: NDIM = %16ld.", ndim);
      return {};
    }
    std::int64_t elements = 1;
    for (Integer l = 0; l < ndim; ++l) {
      if (nd[l] < 1) {
        fail(8, " ** ND(I) .lt. 1: ND(I) = %16ld I = %16ld.", nd[l], l + 1);
        return {};
      }
      elements = std::min<std::int64_t>(elements * nd[l], std::int64_t(kLongest) + 1);
    }
    if (elements > kLongest) {
      fail(10, " ** The product of the ND(I) is above 67108864.");
      return {};
    }
    ArrayShape shape{{nd, nd + ndim}, {}};
    for (Integer i = 0; i < std::max(naxes, least); ++i) {
      const Integer axis = i < naxes ? axes[i] : 0;
      const bool is_used = i < naxes && std::find(axes, axes + i, axis) != axes + i;
      if (axis < 1 || axis > ndim || is_used) {
        fail(9, " ** AXES(I) is not a dimension, or comes twice: AXES(I) = %12ld I = %12ld.", axis, i + 1);
        return {};
      }
      shape.axes.push_back(std::size_t(axis - 1));
    }
    return shape;
  }
  bool kind(const Option& kind, const char* letters) {
    return kind.is_one_of(letters) || fail(11, " ** %1s is an invalid value of KIND.", kind.text());
  }
  bool beta(const QuarnFloat& beta) {
    return fabs(beta) <= 1000000 ||
           fail(13, " ** On entry, BETA is not from -1000000 to 1000000: BETA = %12.4e.", beta);
  }
  bool equal_lengths(const Option& kind, Integer na, Integer nb) {
    return kind.letter() != 'C' || na == nb ||
           fail(12, " ** Circular, but the lengths differ: NA = %16ld NB = %16ld.", na, nb);
  }

 private:
  template <class... Values>
  bool fail(Integer number, const char* message, const Values&... values) {
    report_.fail(number, 100000 - number, message, values...);
    return false;
  }

  char buffer_[kMessageBufferLength];
  Report report_;
};

QuarnDivisor divisor_of(const Option& norm, bool backward) {
  if (norm.letter() == 'O') {
    return QuarnDivisor::root;
  }
  return (norm.letter() == 'B') == backward ? QuarnDivisor::length : QuarnDivisor::one;
}

/// The kind of a cosine or sine transform; types 2 and 3 are each other's inverses.
RealKind kind_of(RealKind first, Integer itype, bool backward) {
  const Integer type = backward && (itype == 2 || itype == 3) ? 5 - itype : itype;
  return RealKind(int(first) + type - 1);
}

void cosine_or_sine(const char* routine, RealKind first, const Option& direct, const Option& norm, Integer itype,
                    Integer n, Integer m, const QuarnFloat* x, Integer incx, Integer distx, QuarnFloat* y, Integer incy,
                    Integer disty, Integer* ifail) {
  Checks checks(routine, ifail);
  if (checks.direct(direct) && checks.norm(norm) && checks.type(itype) &&
      checks.sequences(n, first == RealKind::dct1 && itype == 1 ? 2 : 1, m, incx, incy)) {
    const bool backward = is_backward(direct);
    transform_sequences(kind_of(first, itype, backward), n, m, Sequence<const QuarnFloat>{x, incx, distx},
                        Sequence<QuarnFloat>{y, incy, disty}, divisor_of(norm, backward));
  }
}

template <class T, class U>
void spectra(const char* routine, RealKind kind, const Option& norm, Integer n, Integer m, const Sequence<const T>& x,
             const Sequence<U>& y, Integer* ifail) {
  Checks checks(routine, ifail);
  if (checks.norm(norm) && checks.sequences(n, 1, m, Integer(x.step), Integer(y.step))) {
    transform_sequences(kind, n, m, x, y, divisor_of(norm, kind == RealKind::from_spectrum));
  }
}

void convolve_one(QuarnConvolution kind, const QuarnFloat* a, Integer na, const QuarnFloat* b, Integer nb,
                  std::vector<QuarnFloat>& z) {
  QuarnConvolve(kind, a, na, b, nb, z.data());
}

/// Each part of a result is one exact sum: that of a linear convolution of both parts of a, one behind the other, with
/// those of b, where products of parts that do not belong together are far apart. A circular one has b twice.
void convolve_one(QuarnConvolution kind, const Complex* a, Integer na, const Complex* b, Integer nb,
                  std::vector<Complex>& z) {
  const bool circular = kind == QuarnConvolution::circular;
  const Integer count = circular ? 2 * nb : nb;
  const Integer apart = na + count - 1;
  std::vector<QuarnFloat> left(std::size_t(apart + na));
  for (Integer i = 0; i < na; ++i) {
    left[std::size_t(i)] = a[i].re;
    left[std::size_t(apart) + std::size_t(i)] = a[i].im;
  }
  for (const bool imaginary : {false, true}) {
    std::vector<QuarnFloat> right(std::size_t(apart + count));
    for (Integer j = 0; j < count; ++j) {
      const Complex& value = b[j % nb];
      right[std::size_t(j)] = imaginary ? value.re : -value.im;
      right[std::size_t(apart) + std::size_t(j)] = imaginary ? value.im : value.re;
    }
    std::vector<QuarnFloat> all(left.size() + right.size() - 1);
    QuarnConvolve(QuarnConvolution::linear, left.data(), Integer(left.size()), right.data(), Integer(right.size()),
                  all.data());
    for (std::size_t k = 0; k < z.size(); ++k) {
      (imaginary ? z[k].im : z[k].re) = std::move(all[std::size_t(apart + (circular ? nb : 0)) + k]);
    }
  }
}

template <class T>
void convolve(const char* routine, const Option& kind, Integer m, Integer na, const T* a, Integer nb, const T* b, T* z,
              Integer* ifail) {
  Checks checks(routine, ifail);
  if (!checks.kind(kind, "LC") || !checks.length(na) || !checks.length(nb) || !checks.count(m) ||
      !checks.equal_lengths(kind, na, nb)) {
    return;
  }
  const bool circular = kind.letter() == 'C';
  std::vector<T> results(std::size_t(circular ? na : na + nb - 1));
  for (std::ptrdiff_t j = 0; j < m; ++j) {
    convolve_one(circular ? QuarnConvolution::circular : QuarnConvolution::linear, a + j * na, na, b + j * nb, nb,
                 results);
    std::swap_ranges(results.begin(), results.end(), z + j * std::ptrdiff_t(results.size()));
  }
}

/// |z|^2, twice where another number stands for the same, of a spectrum with more digits.
void power_spectrum(Integer n, const Sequence<const QuarnFloat>& x, std::vector<QuarnFloat>& power) {
  {
    const WorkingDigits more(QuarnDigits() + 5);
    std::vector<Complex> z(half_of(n));
    transform_sequences(RealKind::to_spectrum, n, 1, x, Sequence<Complex>{z.data(), 1, 0}, QuarnDivisor::length);
    for (std::size_t k = 0; k < z.size(); ++k) {
      power[k] = (k == 0 || 2 * k == std::size_t(n) ? 1 : 2) * (z[k].re * z[k].re + z[k].im * z[k].im);
    }
  }
  for (QuarnFloat& value : power) {
    value += QuarnFloat();
  }
}

}  // namespace
}  // namespace tesk

using tesk::Checks;
using tesk::Option;
using tesk::RealKind;
using tesk::Sequence;

extern "C" {

void QuarnMPX_fft_(const char* direct, const char* norm, Integer n, Integer m, const Complex* x, Integer incx,
                   Integer distx, Complex* y, Integer incy, Integer disty, Integer* ifail, int direct_length,
                   int norm_length) {
  const Option direction(direct, direct_length);
  const Option scaling(norm, norm_length);
  Checks checks("FFT", ifail);
  if (checks.direct(direction) && checks.norm(scaling) && checks.sequences(n, 1, m, incx, incy)) {
    const bool backward = tesk::is_backward(direction);
    tesk::transform_sequences(backward, n, m, {x, incx, distx}, {y, incy, disty}, tesk::divisor_of(scaling, backward));
  }
}

void QuarnMPX_rfft_(const char* norm, Integer n, Integer m, const QuarnFloat* x, Integer incx, Integer distx,
                    Complex* y, Integer incy, Integer disty, Integer* ifail, int norm_length) {
  tesk::spectra("RFFT", RealKind::to_spectrum, Option(norm, norm_length), n, m,
                Sequence<const QuarnFloat>{x, incx, distx}, Sequence<Complex>{y, incy, disty}, ifail);
}

void QuarnMPX_irfft_(const char* norm, Integer n, Integer m, const Complex* x, Integer incx, Integer distx,
                     QuarnFloat* y, Integer incy, Integer disty, Integer* ifail, int norm_length) {
  tesk::spectra("IRFFT", RealKind::from_spectrum, Option(norm, norm_length), n, m,
                Sequence<const Complex>{x, incx, distx}, Sequence<QuarnFloat>{y, incy, disty}, ifail);
}

void QuarnMPX_dct_(const char* direct, const char* norm, Integer itype, Integer n, Integer m, const QuarnFloat* x,
                   Integer incx, Integer distx, QuarnFloat* y, Integer incy, Integer disty, Integer* ifail,
                   int direct_length, int norm_length) {
  tesk::cosine_or_sine("DCT", RealKind::dct1, Option(direct, direct_length), Option(norm, norm_length), itype, n, m, x,
                       incx, distx, y, incy, disty, ifail);
}

void QuarnMPX_dst_(const char* direct, const char* norm, Integer itype, Integer n, Integer m, const QuarnFloat* x,
                   Integer incx, Integer distx, QuarnFloat* y, Integer incy, Integer disty, Integer* ifail,
                   int direct_length, int norm_length) {
  tesk::cosine_or_sine("DST", RealKind::dst1, Option(direct, direct_length), Option(norm, norm_length), itype, n, m, x,
                       incx, distx, y, incy, disty, ifail);
}

void QuarnMPX_fftn_(const char* direct, const char* norm, Integer ndim, const Integer* nd, Integer naxes,
                    const Integer* axes, const Complex* x, Complex* y, Integer* ifail, int direct_length,
                    int norm_length) {
  const Option direction(direct, direct_length);
  const Option scaling(norm, norm_length);
  Checks checks("FFTN", ifail);
  if (!checks.direct(direction) || !checks.norm(scaling)) {
    return;
  }
  if (const auto shape = checks.shape(ndim, nd, naxes, axes, 0)) {
    const bool backward = tesk::is_backward(direction);
    tesk::transform_array(backward, *shape, x, y, tesk::divisor_of(scaling, backward));
  }
}

void QuarnMPX_rfftn_(const char* norm, Integer ndim, const Integer* nd, Integer naxes, const Integer* axes,
                     const QuarnFloat* x, Complex* y, Integer* ifail, int norm_length) {
  const Option scaling(norm, norm_length);
  Checks checks("RFFTN", ifail);
  if (!checks.norm(scaling)) {
    return;
  }
  if (const auto shape = checks.shape(ndim, nd, naxes, axes, 1)) {
    tesk::transform_array(*shape, x, y, tesk::divisor_of(scaling, false));
  }
}

void QuarnMPX_irfftn_(const char* norm, Integer ndim, const Integer* nd, Integer naxes, const Integer* axes,
                      const Complex* x, QuarnFloat* y, Integer* ifail, int norm_length) {
  const Option scaling(norm, norm_length);
  Checks checks("IRFFTN", ifail);
  if (!checks.norm(scaling)) {
    return;
  }
  if (const auto shape = checks.shape(ndim, nd, naxes, axes, 1)) {
    tesk::transform_array(*shape, x, y, tesk::divisor_of(scaling, true));
  }
}

void QuarnMPX_convolve_(const char* kind, Integer m, Integer na, const QuarnFloat* a, Integer nb, const QuarnFloat* b,
                        QuarnFloat* z, Integer* ifail, int kind_length) {
  tesk::convolve("CONVOLVE", Option(kind, kind_length), m, na, a, nb, b, z, ifail);
}

void QuarnMPX_zconvolve_(const char* kind, Integer m, Integer na, const Complex* a, Integer nb, const Complex* b,
                         Complex* z, Integer* ifail, int kind_length) {
  tesk::convolve("ZCONVOLVE", Option(kind, kind_length), m, na, a, nb, b, z, ifail);
}

void QuarnMPX_window_(const char* kind, Integer n, Integer periodic, QuarnFloat beta, QuarnFloat* w, Integer* ifail,
                      int kind_length) {
  const Option option(kind, kind_length);
  Checks checks("WINDOW", ifail);
  if (checks.kind(option, "HMBKR") && checks.length(n) && checks.beta(beta)) {
    std::vector<QuarnFloat> values = tesk::window(tesk::Window(option.letter()), n, periodic != 0, beta);
    std::swap_ranges(values.begin(), values.end(), w);
  }
}

void QuarnMPX_power_spectrum_(Integer n, Integer m, const QuarnFloat* x, Integer incx, Integer distx, QuarnFloat* y,
                              Integer incy, Integer disty, Integer* ifail) {
  Checks checks("POWER_SPECTRUM", ifail);
  if (!checks.sequences(n, 1, m, incx, incy)) {
    return;
  }
  std::vector<QuarnFloat> power(tesk::half_of(n));
  for (std::ptrdiff_t j = 0; j < m; ++j) {
    tesk::power_spectrum(n, {x + j * distx, incx, 0}, power);
    for (std::size_t k = 0; k < power.size(); ++k) {
      std::swap(y[std::ptrdiff_t(k) * incy + j * disty], power[k]);
    }
  }
}

Integer QuarnMPX_next_fast_len_(Integer n) { return QuarnFastLength(n); }
}
