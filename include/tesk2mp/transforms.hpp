// Transforms of the C++ interface by the names and options that numpy and SciPy have. Part of tesk2mp.hpp; transforms.h
// has formulas, scaling and accuracy.
#pragma once

#include <algorithm>
#include <memory>
#include <numeric>
#include <optional>
#include <span>
#include <vector>

#include "quarn/realtransform.h"
#include "tesk2mp/fft.hpp"
#include "tesk2mp/transforms.h"

namespace tesk2mp {

/// What is divided by N: inverse transforms, both by sqrt(N), forward transforms.
enum class Scaling : char { backward = 'B', orthonormal = 'O', forward = 'F' };

/// An array of any number of dimensions whose last index varies fastest.
template <class T>
struct NdArray {
  std::vector<T> elements;
  Shape shape;
};

/// How one dimension of an array is transformed.
struct Along {
  /// Elements of a sequence (of the real one, where it is a spectrum): it is cut off or continued by zeros. By default
  /// as many as there are, and an even number from a spectrum.
  std::optional<std::size_t> n = std::nullopt;
  /// From 0; -1 is the last dimension, -2 the one before.
  std::ptrdiff_t axis = -1;
  Scaling norm = Scaling::backward;
};

namespace detail {

inline std::size_t axis_of(std::ptrdiff_t axis, const Shape& shape, const char* routine) {
  const auto dimensions = std::ptrdiff_t(shape.size());
  require(axis >= -dimensions && axis < dimensions, routine, 9, "dimension ", int(axis), " of ", int(dimensions));
  return std::size_t(axis < 0 ? axis + dimensions : axis);
}

template <class T>
void check_shape(const NdArray<T>& x, const char* routine) {
  std::size_t count = 1;
  for (const std::size_t extent : x.shape) {
    require(extent > 0 && extent <= std::size_t(std::numeric_limits<Integer>::max()) &&
                count <= std::size_t(std::numeric_limits<Integer>::max()) / extent,
            routine, 8, "an extent is 0, or the array is too large");
    count *= extent;
  }
  require(!x.shape.empty() && count == x.elements.size(), routine, 8, "a shape of ", count, " elements for ",
          x.elements.size());
}

/// The dimensions before, at and behind the one that is transformed.
struct Split {
  Split(const Shape& shape, std::size_t axis) {
    for (std::size_t i = 0; i < shape.size(); ++i) {
      (i < axis ? before : i == axis ? length : behind) *= shape[i];
    }
  }
  std::size_t before = 1;
  std::size_t length = 1;
  std::size_t behind = 1;
};

/// With `length` elements along a dimension: the first ones, or zeros behind.
template <class T>
NdArray<T> resized(const NdArray<T>& x, std::size_t axis, std::size_t length) {
  NdArray<T> made{{}, x.shape};
  made.shape[axis] = length;
  const Split split(x.shape, axis);
  made.elements.resize(split.before * length * split.behind);
  const std::size_t kept = std::min(length, split.length) * split.behind;
  for (std::size_t i = 0; i < split.before; ++i) {
    std::copy_n(&x.elements[i * split.length * split.behind], kept, made.elements.data() + i * length * split.behind);
  }
  return made;
}

/// All sequences of one dimension, which has `given` elements and gets `made` ones, by an export that takes n.
template <class U, class T, class Transform>
NdArray<U> transform_along(const char* routine, const NdArray<T>& x, std::ptrdiff_t axis_number, std::size_t given,
                           std::size_t made, const Transform& transform) {
  const std::size_t axis = axis_of(axis_number, x.shape, routine);
  if (given != x.shape[axis]) {
    return transform_along<U>(routine, resized(x, axis, given), axis_number, given, made, transform);
  }
  NdArray<U> y{{}, x.shape};
  y.shape[axis] = made;
  const Split split(x.shape, axis);
  y.elements.resize(split.before * made * split.behind);
  call([&](Integer* ifail) {
    // Sequences one after the other go in one call, interleaved ones in one for each index before.
    const bool is_last = split.behind == 1;
    for (std::size_t i = 0; i < (is_last ? 1 : split.before); ++i) {
      const Integer step = count_of(split.behind);
      transform(is_last ? count_of(split.before) : step, x.elements.data() + i * given * split.behind, step,
                is_last ? count_of(given) : 1, y.elements.data() + i * made * split.behind, step,
                is_last ? count_of(made) : 1, ifail);
    }
  });
  return y;
}

template <class T>
std::size_t given_length(const char* routine, const NdArray<T>& x, const Along& along) {
  check_shape(x, routine);
  const std::size_t length = along.n.value_or(x.shape[axis_of(along.axis, x.shape, routine)]);
  require(length >= 1, routine, 3, "a sequence of no elements");
  return length;
}

inline NdArray<Complex> complex_along(const NdArray<Complex>& x, const Along& along, Direction direction) {
  const std::size_t n = given_length("FFT", x, along);
  return transform_along<Complex>("FFT", x, along.axis, n, n, [&](Integer m, auto... layout) {
    QuarnMPX_fft_(Option(direction), Option(along.norm), count_of(n), m, layout..., 1, 1);
  });
}

template <class Export>
NdArray<Real> real_along(const char* routine, Export transform, const NdArray<Real>& x, int type, const Along& along,
                         Direction direction) {
  const std::size_t n = given_length(routine, x, along);
  return transform_along<Real>(routine, x, along.axis, n, n, [&](Integer m, auto... layout) {
    transform(Option(direction), Option(along.norm), Integer(type), count_of(n), m, layout..., 1, 1);
  });
}

/// Dimensions as the exports of arrays take them, whose first index varies fastest.
struct RawAxes {
  RawAxes(const Shape& shape, const std::vector<std::ptrdiff_t>& list, const char* routine) {
    for (std::size_t i = shape.size(); i-- > 0;) {
      extents.push_back(count_of(shape[i]));
    }
    const auto add = [&](std::size_t axis) { axes.push_back(Integer(shape.size() - axis)); };
    for (std::size_t i = 0; i < (list.empty() ? shape.size() : list.size()); ++i) {
      add(list.empty() ? i : axis_of(list[i], shape, routine));
    }
  }
  std::vector<Integer> extents;
  std::vector<Integer> axes;
};

inline NdArray<Complex> complex_array(const NdArray<Complex>& x, const std::vector<std::ptrdiff_t>& axes, Scaling norm,
                                      Direction direction) {
  check_shape(x, "FFTN");
  const RawAxes raw(x.shape, axes, "FFTN");
  NdArray<Complex> y{std::vector<Complex>(x.elements.size()), x.shape};
  call([&](Integer* ifail) {
    QuarnMPX_fftn_(Option(direction), Option(norm), count_of(raw.extents.size()), raw.extents.data(),
                   count_of(raw.axes.size()), raw.axes.data(), x.elements.data(), y.elements.data(), ifail, 1, 1);
  });
  return y;
}

template <class T>
NdArray<T> vector_of(std::span<const T> x) {
  return {std::vector<T>(x.begin(), x.end()), {x.size()}};
}

inline std::vector<Complex> as_complex(std::span<const Real> x) {
  std::vector<Complex> z;
  z.reserve(x.size());
  for (const Real& value : x) {
    z.emplace_back(value, Real());
  }
  return z;
}

}  // namespace detail

/// z_k = sum over j of x_j exp(-2 pi i j k / n) along one dimension, and the inverse, whose sums are divided by n.
///
/// @code
/// const tesk2mp::Digits fifty(50);
/// const std::vector<tesk2mp::Real> x(365, 1);
/// const std::vector<tesk2mp::Complex> z = tesk2mp::rfft(x, {.norm = tesk2mp::Scaling::orthonormal});
/// @endcode
inline NdArray<Complex> fft(const NdArray<Complex>& x, const Along& along = {}) {
  return detail::complex_along(x, along, Direction::forward);
}
inline NdArray<Complex> ifft(const NdArray<Complex>& x, const Along& along = {}) {
  return detail::complex_along(x, along, Direction::backward);
}
inline std::vector<Complex> fft(std::span<const Complex> x, const Along& along = {}) {
  return fft(detail::vector_of(x), along).elements;
}
inline std::vector<Complex> ifft(std::span<const Complex> x, const Along& along = {}) {
  return ifft(detail::vector_of(x), along).elements;
}
inline std::vector<Complex> fft(std::span<const Real> x, const Along& along = {}) {
  return fft(detail::as_complex(x), along);
}

/// Of real sequences the numbers 0 ... n/2 of the spectrum; the others are their conjugates.
inline NdArray<Complex> rfft(const NdArray<Real>& x, const Along& along = {}) {
  const std::size_t n = detail::given_length("RFFT", x, along);
  return detail::transform_along<Complex>("RFFT", x, along.axis, n, n / 2 + 1, [&](Integer m, auto... layout) {
    QuarnMPX_rfft_(detail::Option(along.norm), detail::count_of(n), m, layout..., 1);
  });
}
inline std::vector<Complex> rfft(std::span<const Real> x, const Along& along = {}) {
  return rfft(detail::vector_of(x), along).elements;
}

/// The inverse of rfft(). Without along.n, 2 (h - 1) numbers from h of the spectrum.
inline NdArray<Real> irfft(const NdArray<Complex>& x, const Along& along = {}) {
  detail::check_shape(x, "IRFFT");
  const std::size_t half = x.shape[detail::axis_of(along.axis, x.shape, "IRFFT")];
  const std::size_t n = along.n.value_or(2 * (half - 1));
  detail::require(n >= 1, "IRFFT", 3, "a sequence of no elements");
  return detail::transform_along<Real>("IRFFT", x, along.axis, n / 2 + 1, n, [&](Integer m, auto... layout) {
    QuarnMPX_irfft_(detail::Option(along.norm), detail::count_of(n), m, layout..., 1);
  });
}
inline std::vector<Real> irfft(std::span<const Complex> x, const Along& along = {}) {
  return irfft(detail::vector_of(x), along).elements;
}

/// Cosine and sine transforms of types 1 to 4, and their inverses.
inline NdArray<Real> dct(const NdArray<Real>& x, int type = 2, const Along& along = {}) {
  return detail::real_along("DCT", QuarnMPX_dct_, x, type, along, Direction::forward);
}
inline NdArray<Real> idct(const NdArray<Real>& x, int type = 2, const Along& along = {}) {
  return detail::real_along("DCT", QuarnMPX_dct_, x, type, along, Direction::backward);
}
inline NdArray<Real> dst(const NdArray<Real>& x, int type = 2, const Along& along = {}) {
  return detail::real_along("DST", QuarnMPX_dst_, x, type, along, Direction::forward);
}
inline NdArray<Real> idst(const NdArray<Real>& x, int type = 2, const Along& along = {}) {
  return detail::real_along("DST", QuarnMPX_dst_, x, type, along, Direction::backward);
}
inline std::vector<Real> dct(std::span<const Real> x, int type = 2, const Along& along = {}) {
  return dct(detail::vector_of(x), type, along).elements;
}
inline std::vector<Real> idct(std::span<const Real> x, int type = 2, const Along& along = {}) {
  return idct(detail::vector_of(x), type, along).elements;
}
inline std::vector<Real> dst(std::span<const Real> x, int type = 2, const Along& along = {}) {
  return dst(detail::vector_of(x), type, along).elements;
}
inline std::vector<Real> idst(std::span<const Real> x, int type = 2, const Along& along = {}) {
  return idst(detail::vector_of(x), type, along).elements;
}

namespace detail {

inline QuarnDivisor divisor_of(Scaling norm, bool inverse) {
  if (norm == Scaling::orthonormal) {
    return QuarnDivisor::root;
  }
  return (norm == Scaling::backward) == inverse ? QuarnDivisor::length : QuarnDivisor::one;
}

inline QuarnRealTransform real_plan(const char* routine, QuarnRealTransform::Kind kind, std::size_t length) {
  const Integer n = count_of(length);
  require(QuarnRealTransform::is_supported(kind, n, QuarnDigits()), routine, 3, "a transform plan of length ", length,
          " at ", QuarnDigits(), " digits");
  return QuarnRealTransform(kind, n);
}

/// A cosine or sine transform of some type and its inverse.
class TypedPlan {
 public:
  using Kind = QuarnRealTransform::Kind;

  TypedPlan(const char* routine, Kind first, std::size_t length, int type) : routine_(routine) {
    require(type >= 1 && type <= 4, routine, 6, "On entry, ITYPE is not 1 to 4: ITYPE = ", type, ".");
    const auto kind = [first](int number) { return Kind(int(first) + number - 1); };
    forward_ = std::make_shared<const QuarnRealTransform>(real_plan(routine, kind(type), length));
    inverse_ = type == 1 || type == 4
                   ? forward_
                   : std::make_shared<const QuarnRealTransform>(real_plan(routine, kind(5 - type), length));
  }
  const QuarnRealTransform& forward() const { return *forward_; }
  std::vector<Real> run(std::span<const Real> x, Scaling norm, bool inverse) const {
    const auto n = std::size_t(forward_->length());
    require(x.size() == n, routine_, 3, "a sequence of ", x.size(), " numbers for a plan of length ", n);
    std::vector<Real> y(n);
    (inverse ? inverse_ : forward_)->run(x.data(), 1, y.data(), 1, divisor_of(norm, inverse));
    return y;
  }

 private:
  const char* routine_;
  std::shared_ptr<const QuarnRealTransform> forward_;
  std::shared_ptr<const QuarnRealTransform> inverse_;
};

}  // namespace detail

/// The tables of rfft() and irfft() for n numbers at the working digits: made once, for many calls, by several threads
/// at once too. Results have the plan's digits, whatever the working digits of a call. Throws InvalidArgument unless n
/// is 1 ... 2^24 and the digits at most 1100, and for data of another length.
///
/// @code
/// const tesk2mp::SpectrumPlan plan(365);
/// const std::vector<tesk2mp::Complex> z = plan.rfft(std::vector<tesk2mp::Real>(365, 1));
/// @endcode
class SpectrumPlan {
 public:
  explicit SpectrumPlan(std::size_t length)
      : forward_(detail::real_plan("RFFT", QuarnRealTransform::Kind::to_spectrum, length)),
        inverse_(detail::real_plan("IRFFT", QuarnRealTransform::Kind::from_spectrum, length)) {}

  std::size_t length() const { return std::size_t(forward_.length()); }
  int digits() const { return forward_.digits(); }

  std::vector<Complex> rfft(std::span<const Real> x, Scaling norm = Scaling::backward) const {
    detail::require(x.size() == length(), "RFFT", 3, "a sequence of ", x.size(), " numbers for a plan of length ",
                    length());
    std::vector<Complex> z(length() / 2 + 1);
    forward_.run(x.data(), 1, z.data(), 1, detail::divisor_of(norm, false));
    return z;
  }
  /// Of n/2 + 1 numbers.
  std::vector<Real> irfft(std::span<const Complex> z, Scaling norm = Scaling::backward) const {
    detail::require(z.size() == length() / 2 + 1, "IRFFT", 3, "a spectrum of ", z.size(),
                    " numbers for a plan of length ", length());
    std::vector<Real> x(length());
    inverse_.run(z.data(), 1, x.data(), 1, detail::divisor_of(norm, true));
    return x;
  }

 private:
  QuarnRealTransform forward_;
  QuarnRealTransform inverse_;
};

/// The tables of dct() and idct() of one type, as SpectrumPlan. n is at least 2 for type 1, and N (dct in transforms.h)
/// at most 2^24.
class CosinePlan {
 public:
  explicit CosinePlan(std::size_t length, int type = 2)
      : plan_("DCT", QuarnRealTransform::Kind::dct1, length, type), type_(type) {}

  std::size_t length() const { return std::size_t(plan_.forward().length()); }
  int digits() const { return plan_.forward().digits(); }
  int type() const { return type_; }

  std::vector<Real> dct(std::span<const Real> x, Scaling norm = Scaling::backward) const {
    return plan_.run(x, norm, false);
  }
  std::vector<Real> idct(std::span<const Real> x, Scaling norm = Scaling::backward) const {
    return plan_.run(x, norm, true);
  }

 private:
  detail::TypedPlan plan_;
  int type_;
};

/// The tables of dst() and idst() of one type.
class SinePlan {
 public:
  explicit SinePlan(std::size_t length, int type = 2)
      : plan_("DST", QuarnRealTransform::Kind::dst1, length, type), type_(type) {}

  std::size_t length() const { return std::size_t(plan_.forward().length()); }
  int digits() const { return plan_.forward().digits(); }
  int type() const { return type_; }

  std::vector<Real> dst(std::span<const Real> x, Scaling norm = Scaling::backward) const {
    return plan_.run(x, norm, false);
  }
  std::vector<Real> idst(std::span<const Real> x, Scaling norm = Scaling::backward) const {
    return plan_.run(x, norm, true);
  }

 private:
  detail::TypedPlan plan_;
  int type_;
};

/// Along the dimensions that are listed, all of them by default; each result is rounded once.
inline NdArray<Complex> fftn(const NdArray<Complex>& x, const std::vector<std::ptrdiff_t>& axes = {},
                             Scaling norm = Scaling::backward) {
  return detail::complex_array(x, axes, norm, Direction::forward);
}
inline NdArray<Complex> ifftn(const NdArray<Complex>& x, const std::vector<std::ptrdiff_t>& axes = {},
                              Scaling norm = Scaling::backward) {
  return detail::complex_array(x, axes, norm, Direction::backward);
}

/// Of a real array, with the numbers 0 ... n/2 along the last dimension of the list.
inline NdArray<Complex> rfftn(const NdArray<Real>& x, const std::vector<std::ptrdiff_t>& axes = {},
                              Scaling norm = Scaling::backward) {
  detail::check_shape(x, "RFFTN");
  const detail::RawAxes raw(x.shape, axes, "RFFTN");
  NdArray<Complex> y{{}, x.shape};
  std::size_t& last = y.shape[x.shape.size() - std::size_t(raw.axes.back())];
  y.elements.resize(x.elements.size() / last * (last / 2 + 1));
  last = last / 2 + 1;
  detail::call([&](Integer* ifail) {
    QuarnMPX_rfftn_(detail::Option(norm), detail::count_of(raw.extents.size()), raw.extents.data(),
                    detail::count_of(raw.axes.size()), raw.axes.data(), x.elements.data(), y.elements.data(), ifail, 1);
  });
  return y;
}

/// The inverse of rfftn(), with n elements along the last dimension of the list: an even number by default.
inline NdArray<Real> irfftn(const NdArray<Complex>& x, const std::vector<std::ptrdiff_t>& axes = {},
                            Scaling norm = Scaling::backward, std::optional<std::size_t> n = std::nullopt) {
  detail::check_shape(x, "IRFFTN");
  const std::size_t axis = axes.empty() ? x.shape.size() - 1 : detail::axis_of(axes.back(), x.shape, "IRFFTN");
  const std::size_t length = n.value_or(2 * (x.shape[axis] - 1));
  detail::require(length >= 1, "IRFFTN", 3, "a sequence of no elements");
  if (length / 2 + 1 != x.shape[axis]) {
    return irfftn(detail::resized(x, axis, length / 2 + 1), axes, norm, length);
  }
  NdArray<Real> y{{}, x.shape};
  y.shape[axis] = length;
  y.elements.resize(x.elements.size() / x.shape[axis] * length);
  const detail::RawAxes raw(y.shape, axes, "IRFFTN");
  detail::call([&](Integer* ifail) {
    QuarnMPX_irfftn_(detail::Option(norm), detail::count_of(raw.extents.size()), raw.extents.data(),
                     detail::count_of(raw.axes.size()), raw.axes.data(), x.elements.data(), y.elements.data(), ifail,
                     1);
  });
  return y;
}

/// Which results of a convolution: all na + nb - 1, as many as the longer sequence has from the middle, those to which
/// all of the shorter sequence contributes.
enum class Results { full, same, valid };

/// sum over i of a_i b_(k-i), each an exact sum that is rounded once.
template <class T>
std::vector<T> convolve(const std::vector<T>& a, const std::vector<T>& b, Results results = Results::full) {
  detail::require(!a.empty() && !b.empty(), "CONVOLVE", 3, "a sequence of no elements");
  std::vector<T> z(a.size() + b.size() - 1);
  detail::call([&](Integer* ifail) {
    detail::pick<T>(QuarnMPX_convolve_, QuarnMPX_zconvolve_)("L", 1, detail::count_of(a.size()), a.data(),
                                                             detail::count_of(b.size()), b.data(), z.data(), ifail, 1);
  });
  const std::size_t shorter = std::min(a.size(), b.size());
  const std::size_t longer = std::max(a.size(), b.size());
  if (results == Results::full) {
    return z;
  }
  const bool same = results == Results::same;
  const auto first = z.begin() + std::ptrdiff_t(same ? (shorter - 1) / 2 : shorter - 1);
  return std::vector<T>(first, first + std::ptrdiff_t(same ? longer : longer - shorter + 1));
}

/// sum over i of a_i b_((k-i) mod n), of n elements each.
template <class T>
std::vector<T> circular_convolve(const std::vector<T>& a, const std::vector<T>& b) {
  std::vector<T> z(a.size());
  detail::call([&](Integer* ifail) {
    detail::pick<T>(QuarnMPX_convolve_, QuarnMPX_zconvolve_)("C", 1, detail::count_of(a.size()), a.data(),
                                                             detail::count_of(b.size()), b.data(), z.data(), ifail, 1);
  });
  return z;
}

/// sum over i of a_(k+i) conj(b_i): k = 1 - nb ... na - 1 in full.
template <class T>
std::vector<T> correlate(const std::vector<T>& a, const std::vector<T>& b, Results results = Results::valid) {
  std::vector<T> reversed(b.rbegin(), b.rend());
  if constexpr (detail::kIsComplex<T>) {
    for (T& value : reversed) {
      value = conj(value);
    }
  }
  return convolve(a, reversed, results);
}

/// p_k, k = 0 ... n/2, whose sum is the mean of the squares.
inline std::vector<Real> power_spectrum(std::span<const Real> x) {
  detail::require(!x.empty(), "POWER_SPECTRUM", 3, "a sequence of no elements");
  std::vector<Real> p(x.size() / 2 + 1);
  detail::call([&](Integer* ifail) {
    QuarnMPX_power_spectrum_(detail::count_of(x.size()), 1, x.data(), 1, 0, p.data(), 1, 0, ifail);
  });
  return p;
}

enum class WindowKind : char { hann = 'H', hamming = 'M', blackman = 'B', kaiser = 'K', ones = 'R' };

/// n numbers, symmetric, or the first n of n + 1 symmetric ones; beta of the Kaiser window.
inline std::vector<Real> window(WindowKind kind, std::size_t n, bool periodic = false, const Real& beta = 0) {
  std::vector<Real> w(n);
  detail::call([&](Integer* ifail) {
    QuarnMPX_window_(detail::Option(kind), detail::count_of(n), periodic ? 1 : 0, beta, w.data(), ifail, 1);
  });
  return w;
}

/// The frequencies of fft() of n samples that are `step` apart, in cycles: 0, 1, ..., then the negative ones, over n
/// step.
inline std::vector<Real> fftfreq(std::size_t n, const Real& step = 1) {
  std::vector<Real> f;
  for (std::size_t k = 0; k < n; ++k) {
    const auto index = std::int64_t(k);
    f.push_back(Real(2 * k < n ? index : index - std::int64_t(n)) / (step * std::int64_t(n)));
  }
  return f;
}
/// Those of rfft().
inline std::vector<Real> rfftfreq(std::size_t n, const Real& step = 1) {
  std::vector<Real> f;
  for (std::size_t k = 0; n > 0 && 2 * k <= n; ++k) {
    f.push_back(Real(std::int64_t(k)) / (step * std::int64_t(n)));
  }
  return f;
}

/// With frequency 0 in the middle, along the dimensions that are listed, all of them by default; and back.
template <class T>
NdArray<T> fftshift(NdArray<T> x, const std::vector<std::ptrdiff_t>& axes = {}, bool inverse = false) {
  detail::check_shape(x, "FFTSHIFT");
  for (std::size_t i = 0; i < (axes.empty() ? x.shape.size() : axes.size()); ++i) {
    const std::size_t axis = axes.empty() ? i : detail::axis_of(axes[i], x.shape, "FFTSHIFT");
    const detail::Split split(x.shape, axis);
    const std::size_t first = (inverse ? split.length : split.length + 1) / 2 * split.behind;
    for (std::size_t j = 0; j < split.before; ++j) {
      const auto begin = x.elements.begin() + std::ptrdiff_t(j * split.length * split.behind);
      std::rotate(begin, begin + std::ptrdiff_t(first), begin + std::ptrdiff_t(split.length * split.behind));
    }
  }
  return x;
}
template <class T>
NdArray<T> ifftshift(NdArray<T> x, const std::vector<std::ptrdiff_t>& axes = {}) {
  return fftshift(std::move(x), axes, true);
}

/// The smallest 2^a 3^b 5^c from n on, which is cheap to transform.
inline std::size_t next_fast_len(std::size_t n) {
  const Integer length = QuarnMPX_next_fast_len_(detail::count_of(n));
  detail::require(length > 0, "NEXT_FAST_LEN", 3, "there is no such length of 31 bits");
  return std::size_t(length);
}

}  // namespace tesk2mp
