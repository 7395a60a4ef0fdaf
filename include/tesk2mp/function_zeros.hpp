// Zeros of a function in the C++ interface. Part of tesk2mp.hpp; function_zeros.h documents the methods.
#pragma once

#include <array>
#include <limits>
#include <utility>

#include "tesk2mp/views.hpp"

namespace tesk2mp {

/// The ends of an interval at which a function has different signs, and its values there. Both ends are the zero where
/// one was met.
struct Bracket {
  Real a;
  Real fa;
  Real b;
  Real fb;
};

/// A zero: the function changes its sign between x and other, which are neighbours or as near as was asked for, and x
/// has the smaller value.
struct FunctionZero {
  Real x;
  Real value;
  Real other;
  int evaluations = 0;
};

namespace detail {

inline Real infinity(int sign) { return sign < 0 ? -Real("inf") : Real("inf"); }

/// Answers requests for values until there are none; step(request) makes one call.
template <class F, class Step>
int answer(const F& f, Integer request, const Real& x, Real& fx, const Step& step) {
  int evaluations = 0;
  while (step(&request), request == 1) {
    fx = f(x);
    ++evaluations;
  }
  return evaluations;
}

template <class F>
FunctionZero refined(const F& f, Integer request, Bracket& ends, const Real& tolerance, int evaluations) {
  std::array<Real, 16> work;
  evaluations += answer(f, request, ends.a, ends.fa, [&](Integer* asked) {
    call(
        [&](Integer* ifail) {
          QuarnMPX_dzeroin_(asked, &ends.a, &ends.fa, &ends.b, &ends.fb, &tolerance, work.data(), ifail);
        },
        {3, 4});
  });
  return {std::move(ends.a), std::move(ends.fa), std::move(ends.b), evaluations};
}

template <class F>
std::pair<Bracket, int> bracketed(const F& f, Real start, const Real& step, const Real& low, const Real& high) {
  Bracket ends{std::move(start), {}, {}, {}};
  std::array<Real, 16> work;
  const int evaluations = answer(f, 0, ends.a, ends.fa, [&](Integer* asked) {
    call(
        [&](Integer* ifail) {
          QuarnMPX_dbrack_(asked, &ends.a, &ends.fa, &ends.b, &ends.fb, &step, &low, &high, work.data(), ifail);
        },
        {2, 3});
  });
  return {std::move(ends), evaluations};
}

/// A tenth of x, or of 1.
inline Real first_step(const Real& x) { return x == 0 ? Real(1) / 10 : fabs(x) / 10; }

}  // namespace detail

/// An interval around `start`, between the bounds, at whose ends f has different signs. Throws NumericalFailure when
/// there is none after 200 doublings of the step, or f is not a number somewhere. What f throws passes through.
template <class F>
Bracket bracket_zero(const F& f, const Real& start, const Real& step, const Real& low = detail::infinity(-1),
                     const Real& high = detail::infinity(1)) {
  return detail::bracketed(f, start, step, low, high).first;
}
template <class F>
Bracket bracket_zero(const F& f, const Real& start) {
  return bracket_zero(f, start, detail::first_step(start));
}

/// The zero of f between a and b, where it has different signs, to the last working digit or within the tolerance.
/// Throws InvalidArgument when the signs agree, NumericalFailure when f is not a number somewhere, or changes its sign
/// at a pole. What f throws passes through.
///
/// @code
/// const auto zero = tesk2mp::find_zero([](const tesk2mp::Real& x) { return x * x - 2; }, 1, 2);  // 1.4142...
/// @endcode
template <class F>
FunctionZero find_zero(const F& f, const Real& a, const Real& b, const Real& tolerance = Real(0)) {
  Bracket ends{a, {}, b, {}};
  return detail::refined(f, 0, ends, tolerance, 0);
}
/// A zero near `start`, of an interval that bracket_zero() finds.
template <class F>
FunctionZero find_zero_near(const F& f, const Real& start, const Real& step, const Real& tolerance = Real(0)) {
  auto [ends, evaluations] = detail::bracketed(f, start, step, detail::infinity(-1), detail::infinity(1));
  if (ends.a == ends.b) {
    return {ends.a, ends.fa, ends.b, evaluations};
  }
  return detail::refined(f, -1, ends, tolerance, evaluations);
}
template <class F>
FunctionZero find_zero_near(const F& f, const Real& start) {
  return find_zero_near(f, start, detail::first_step(start));
}

}  // namespace tesk2mp
