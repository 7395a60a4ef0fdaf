// Scalars, ranking, sorting and random numbers of the C++ interface. Part of tesk2mp.hpp. Indices count from 0.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "quarn/quarnthread.h"
#include "tesk2mp/views.hpp"

namespace tesk2mp {

// Constants and complex scalars -------------------------------------------------------------------------------------

inline Real pi() { return QuarnMPX_x01aaf_(); }
/// 10 to the power -digits, the relative distance of neighbouring numbers.
inline Real machine_precision() { return QuarnMP_x02ajf_(); }
/// The smallest and the largest number of the model, 10 to the power -134217726 and 134217726.
inline Real smallest_number() { return QuarnMP_x02akf_(); }
inline Real largest_number() { return QuarnMP_x02alf_(); }

/// 10, in which the numbers of the model are written.
inline Integer model_base() { return QuarnMP_x02bhf_(); }

/// The smallest number whose reciprocal is a number of the model too.
inline Real safe_range() { return QuarnMP_x02amf_(); }

/// The principal square root; both parts of it are NaN when either of z is. This and abs() are templates so that they
/// give way to the functions of quarn/complex.h where both are visible.
template <Scalar Z = Complex>
[[nodiscard]] Complex sqrt(const Z& number) {
  const Complex& z = number;
  if (isnan(z.re) || isnan(z.im)) {
    return {z.re + z.im, z.re + z.im};
  }
  Complex root;
  QuarnMPX_a02aafn_(z.re, z.im, &root.re, &root.im);
  return root;
}
/// The modulus, without overflow unless it overflows itself.
template <Scalar Z = Complex>
[[nodiscard]] Real abs(const Z& number) {
  const Complex& z = number;
  return QuarnMP_a02abfn_(z.re, z.im);
}
/// x / y, without overflow unless it overflows itself.
inline Complex quotient(const Complex& x, const Complex& y) {
  Complex z;
  QuarnMP_a02acfn_(x.re, x.im, y.re, y.im, &z.re, &z.im);
  return z;
}

namespace classic {

/// Prints the library's account of itself to the console.
inline void print_details() { QuarnMP_a00aafn_(); }

inline Real pi() { return QuarnMP_x01aaf_(); }
inline Complex sqrt(const Complex& z) {
  Complex root;
  QuarnMP_a02aafn_(z.re, z.im, &root.re, &root.im);
  return root;
}

}  // namespace classic

// Ranking and sorting -----------------------------------------------------------------------------------------------

enum class Order : char { ascending = 'A', descending = 'D' };

namespace detail {

/// Permutations as the library has them count from 1.
inline std::vector<Integer> shifted(std::span<const Integer> indices, Integer shift) {
  std::vector<Integer> result(indices.begin(), indices.end());
  for (Integer& index : result) {
    // An index at the end of the range stays out of any permutation.
    index = index == std::numeric_limits<Integer>::max() ? 0 : index + shift;
  }
  return result;
}

inline const Integer kFirst = 1;

}  // namespace detail

/// The rank of each value, from 0: where it stands once they are sorted. Equal values keep their order; NaN
/// comes last in either order.
inline std::vector<Integer> rank(std::span<const Real> values, Order order = Order::ascending) {
  const Integer last = detail::count_of(values.size());
  std::vector<Integer> ranks(values.size());
  if (last > 0) {
    detail::call([&](Integer* ifail) {
      QuarnMPX_m01daf_(values.data(), &detail::kFirst, &last, detail::Option(order), ranks.data(), ifail, 1);
    });
  }
  return detail::shifted(ranks, -1);
}

/// Moves values[i] to values[ranks[i]] for every i, in place. Throws InvalidArgument unless the ranks are a permutation
/// of 0 ... N-1; after a rank that occurs twice the values are in some other order.
template <Scalar T>
void rearrange(std::span<T> values, std::span<const Integer> ranks) {
  const Integer last = detail::count_of(values.size());
  detail::require(values.size() == ranks.size(), detail::kIsComplex<T> ? "M01EDF" : "M01EAF", 4, ranks.size(),
                  " ranks for ", values.size(), " values");
  std::vector<Integer> from_one = detail::shifted(ranks, 1);
  if (last > 0) {
    detail::call([&](Integer* ifail) {
      detail::pick<T>(QuarnMP_m01eaf_, QuarnMP_m01edf_)(values.data(), &detail::kFirst, &last, from_one.data(), ifail);
    });
  }
}
template <Scalar T>
void rearrange(std::vector<T>& values, std::span<const Integer> ranks) {
  rearrange(std::span<T>(values), ranks);
}

/// The permutation q with q[p[i]] = i. Throws InvalidArgument unless p is a permutation of 0 ... N-1.
inline std::vector<Integer> invert(std::span<const Integer> permutation) {
  const Integer last = detail::count_of(permutation.size());
  std::vector<Integer> inverse = detail::shifted(permutation, 1);
  if (last > 0) {
    detail::call([&](Integer* ifail) { QuarnMP_m01zaf_(inverse.data(), &detail::kFirst, &last, ifail); });
  }
  return detail::shifted(inverse, -1);
}

/// Sorts the values in place. Equal values keep their order; NaN comes last in either order.
///
/// @code
/// std::vector<tesk2mp::Real> x = {3, 1, 2};
/// tesk2mp::sort(x, tesk2mp::Order::descending);
/// @endcode
inline void sort(std::span<Real> values, Order order = Order::ascending) { rearrange(values, rank(values, order)); }

// Random numbers ----------------------------------------------------------------------------------------------------

/// A stream of uniform random numbers on [0, 1). random.h documents what the generators are and are not good for.
///
/// @code
/// tesk2mp::Random random(7);     // generator 7 of 0 ... 273
/// tesk2mp::Real u = random();    // random to its last digit
/// auto bookmark = random.state();
/// @endcode
class Random {
 public:
  using State = std::array<Integer, 4>;

  /// Generator 0 with the library's default seed, another one with the seed 1, 2, 3, 4.
  explicit Random(Integer generator = 0) : generator_(generator), state_{1, 2, 3, 4} {
    require_generator();
    if (generator == 0) {
      QuarnMP_g05kbx_(&generator_, state_.data());
    }
  }
  /// The state of generator 0: four numbers below 32768, not all 0. Of the others: four numbers from 1, to start with
  /// below 16760000; those of a stream that has moved on may be larger, up to the largest modulus.
  Random(Integer generator, const State& state) : generator_(generator), state_(state) {
    require_generator();
    for (const Integer word : state) {
      detail::require(generator == 0 ? word >= 0 && word < 32768 : word >= 1 && word < kLargestModulus, kRoutine, 2,
                      word, " cannot be part of a seed of generator ", generator);
    }
    detail::require(state != State{}, kRoutine, 2, "a seed of zeros gives nothing but zeros");
  }

  /// The next number, random to the last working digit.
  Real operator()() { return QuarnMPX_g05kafn_(generator_, state_.data()); }
  /// The next number of the classic stream: some 16 digits of it are random with generator 0, 28 with the others.
  Real classic() { return QuarnMP_g05kafn_(generator_, state_.data()); }
  /// Some numbers at once.
  std::vector<Real> take(std::size_t count) {
    std::vector<Real> numbers(count);
    for (Real& number : numbers) {
      QuarnCheckInterrupt();
      number = (*this)();
    }
    return numbers;
  }

  Integer generator() const { return generator_; }
  /// All there is of the stream: Random(generator, state) goes on where this one stands.
  const State& state() const { return state_; }

 private:
  static constexpr const char* kRoutine = "G05KAF";
  static constexpr Integer kLargestModulus = 16770647;

  void require_generator() const {
    detail::require(generator_ >= 0 && generator_ <= 273, kRoutine, 1, "generators are 0 to 273, not ", generator_);
  }

  Integer generator_;
  State state_;
};

}  // namespace tesk2mp
