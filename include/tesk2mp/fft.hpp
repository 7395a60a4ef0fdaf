// Fourier transforms of the C++ interface. Part of tesk2mp.hpp; fft.h has formulas, lengths and accuracy.
#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "quarn/transform.h"
#include "tesk2mp/options.hpp"
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

/// The extents of an array of several dimensions, whose first index varies fastest.
using Shape = std::vector<std::size_t>;

namespace detail {

template <class Transform>
void transform_complex(Transform transform, std::span<Complex> x, Direction direction) {
  const Integer n = count_of(x.size());
  std::vector<Complex> work(2 * x.size());
  call([&](Integer* ifail) { transform(Option(direction), x.data(), &n, work.data(), ifail, 1); }, {4});
}

/// Works on the elements of a matrix whose columns follow each other without gaps: on a copy, when there are gaps.
template <class Work>
void without_gaps(const MatrixView<Complex>& a, const Work& work) {
  if (a.leading() == a.rows() || a.columns() <= 1) {
    return work(a.data());
  }
  Matrix<Complex> copy(a);
  work(copy.data());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    std::copy_n(copy.data() + j * a.rows(), a.rows(), a.data() + j * a.leading());
  }
}

template <class Transform>
void transform_columns(Transform transform, const MatrixView<Complex>& a, Direction direction) {
  const RawMatrix<Complex> raw(a);
  std::vector<Complex> work(2 * a.rows());
  char buffer[200];
  without_gaps(a, [&](Complex* x) {
    call(
        [&](Integer* ifail) {
          transform(Option(direction), raw.columns, raw.rows, x, work.data(), buffer, ifail, 1, sizeof buffer);
        },
        {5});
  });
}

template <class Transform>
void transform_rows(Transform transform, const MatrixView<Complex>& a, Direction direction) {
  const RawMatrix<Complex> raw(a);
  std::vector<Complex> work(a.columns() * (1 + a.rows()));
  without_gaps(a, [&](Complex* x) {
    call([&](Integer* ifail) { transform(Option(direction), &raw.rows, &raw.columns, x, work.data(), ifail, 1); }, {5});
  });
}

/// A shape as the exports take it.
struct RawShape {
  RawShape(const Shape& shape) : dimensions(count_of(shape.size())) {
    for (const std::size_t extent : shape) {
      extents.push_back(count_of(extent));
    }
  }
  Integer dimensions;
  std::vector<Integer> extents;
};

template <class Transform>
void transform_dimension(Transform transform, std::span<Complex> x, const Shape& shape, std::size_t dimension,
                         Direction direction) {
  require(dimension < shape.size(), "C06PFF", 2, "dimension ", dimension, " of ", shape.size());
  const RawShape raw(shape);
  const Integer l = Integer(dimension) + 1;
  const Integer n = count_of(x.size());
  // No extent of a good shape is above N, and that of a bad one is refused before the workspace matters.
  std::vector<Complex> work(x.size() + std::min(shape[dimension], x.size()) + 15);
  const Integer length = count_of(work.size());
  call(
      [&](Integer* ifail) {
        transform(Option(direction), &raw.dimensions, &l, raw.extents.data(), &n, x.data(), work.data(), &length, ifail,
                  1);
      },
      {8});
}

template <class Transform>
void transform_array(Transform transform, std::span<Complex> x, const Shape& shape, Direction direction) {
  const RawShape raw(shape);
  const Integer n = count_of(x.size());
  const std::size_t longest = shape.empty() ? 0 : *std::max_element(shape.begin(), shape.end());
  std::vector<Complex> work(x.size() + 3 * (std::min(longest, x.size()) + 5));
  const Integer length = count_of(work.size());
  call(
      [&](Integer* ifail) {
        transform(Option(direction), &raw.dimensions, raw.extents.data(), &n, x.data(), work.data(), &length, ifail, 1);
      },
      {7});
}

template <class Transform>
void transform_matrix(Transform transform, const MatrixView<Complex>& a, Direction direction) {
  without_gaps(a, [&](Complex* x) {
    transform_array(transform, {x, a.rows() * a.columns()}, {a.rows(), a.columns()}, direction);
  });
}

}  // namespace detail

/// z_k = 1/sqrt(N) sum over j of x_j exp(-2 pi i j k/N) of N >= 1 complex numbers, in place, N with any factors;
/// backward with exp(+2 pi i j k/N), its inverse.
inline void transform(std::span<Complex> x, Direction direction = Direction::forward) {
  detail::transform_complex(QuarnMPX_c06pcf_, x, direction);
}

/// Each column of a matrix as a sequence of its own; each row.
inline void transform_columns(const MatrixView<Complex>& a, Direction direction = Direction::forward) {
  detail::transform_columns(QuarnMPX_c06psfn_, a, direction);
}
inline void transform_rows(const MatrixView<Complex>& a, Direction direction = Direction::forward) {
  detail::transform_rows(QuarnMPX_c06prf_, a, direction);
}

/// One dimension of an array, from 0. The extents multiply to the number of elements, and none is 0; another shape
/// throws InvalidArgument and leaves x alone.
inline void transform_dimension(std::span<Complex> x, const Shape& shape, std::size_t dimension,
                                Direction direction = Direction::forward) {
  detail::transform_dimension(QuarnMPX_c06pff_, x, shape, dimension, direction);
}

/// All dimensions of an array; both of a matrix.
///
/// @code
/// std::vector<tesk2mp::Complex> x(4 * 6 * 5, 1);
/// tesk2mp::transform(x, {4, 6, 5});
/// @endcode
inline void transform(std::span<Complex> x, const Shape& shape, Direction direction = Direction::forward) {
  detail::transform_array(QuarnMPX_c06pjf_, x, shape, direction);
}
inline void transform(const MatrixView<Complex>& a, Direction direction = Direction::forward) {
  detail::transform_matrix(QuarnMPX_c06pjf_, a, direction);
}

/// What transforms of one length at one number of digits have in common, made once and kept: transform() above keeps
/// the last few of these for each thread and makes them again after that. A plan may be used by several threads at
/// once.
///
/// @code
/// const tesk2mp::TransformPlan plan(1024);
/// plan.transform(x);
/// plan.transform(x, tesk2mp::Direction::backward);
/// @endcode
class TransformPlan {
 public:
  /// For the working digits. Throws InvalidArgument unless the length is 1 ... 2^24 and the digits at most 1100.
  explicit TransformPlan(std::size_t length) : plan_(supported(length)) {}

  std::size_t length() const { return std::size_t(plan_.length()); }
  /// What results are rounded to, whatever the working digits of a call.
  int digits() const { return plan_.digits(); }

  /// The same as transform() of one sequence. Throws InvalidArgument, and leaves x alone, when x has another length.
  void transform(std::span<Complex> x, Direction direction = Direction::forward) const {
    detail::require(x.size() == length(), "C06PCF", 2, "a sequence of ", x.size(), " numbers for a plan of length ",
                    length());
    direction == Direction::forward ? plan_.forward(x.data()) : plan_.backward(x.data());
  }

 private:
  static Integer supported(std::size_t length) {
    const Integer n = detail::count_of(length);
    detail::require(QuarnTransform::is_supported(n, QuarnDigits()), "C06PCF", 3, "a transform plan of length ", length,
                    " at ", QuarnDigits(), " digits");
    return n;
  }

  QuarnTransform plan_;
};

/// The classic entries, whose constants are doubles: some 16 digits of their results are true at any working precision.
namespace classic {

inline void transform_real(std::span<Real> x) { detail::transform_in_place(QuarnMP_c06faf_, x); }
inline void transform_hermitian(std::span<Real> x) { detail::transform_in_place(QuarnMP_c06fbf_, x); }
inline void transform(std::span<Complex> x, Direction direction = Direction::forward) {
  detail::transform_complex(QuarnMP_c06pcf_, x, direction);
}
inline void transform_columns(const MatrixView<Complex>& a, Direction direction = Direction::forward) {
  detail::transform_columns(QuarnMP_c06psfn_, a, direction);
}
inline void transform_rows(const MatrixView<Complex>& a, Direction direction = Direction::forward) {
  detail::transform_rows(QuarnMP_c06prf_, a, direction);
}
inline void transform_dimension(std::span<Complex> x, const Shape& shape, std::size_t dimension,
                                Direction direction = Direction::forward) {
  detail::transform_dimension(QuarnMP_c06pff_, x, shape, dimension, direction);
}
inline void transform(std::span<Complex> x, const Shape& shape, Direction direction = Direction::forward) {
  detail::transform_array(QuarnMP_c06pjf_, x, shape, direction);
}
inline void transform(const MatrixView<Complex>& a, Direction direction = Direction::forward) {
  detail::transform_matrix(QuarnMP_c06pjf_, a, direction);
}

}  // namespace classic
}  // namespace tesk2mp
