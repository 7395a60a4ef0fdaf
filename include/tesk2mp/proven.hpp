// Results with proven error bounds of the C++ interface, and results that are right to as many digits as are asked for.
// Part of tesk2mp.hpp; proven.h describes methods and costs.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "quarn/bound.h"
#include "quarn/functions.h"
#include "tesk2mp/kernels.hpp"
#include "tesk2mp/proven.h"

namespace tesk2mp::proven {

/// A number with a bound of its distance from the exact one: |value - exact| <= error. An infinite error says that
/// nothing is known.
template <Scalar T>
struct Bounded {
  T value{};
  QuarnBound error = QuarnBound::infinity();
};

/// An eigenvalue or a zero: `count` of them, this one included, are within `error` of `value`, and each of them has
/// such a disc; those of others may reach into it, or be inside. A real one is exactly real.
struct BoundedRoot {
  Complex value{};
  QuarnBound error = QuarnBound::infinity();
  std::size_t count = 1;
  bool is_real = false;
};

/// A matrix of numbers with bounds. Where a number is not finite nothing is known, whatever its bound: functions of
/// such data deliver infinite bounds.
template <Scalar T>
class BoundedMatrix {
 public:
  BoundedMatrix() = default;
  /// Throws InvalidArgument unless both have the same shape and each bound is a number from 0 on or infinity.
  BoundedMatrix(Matrix<T> values, Matrix<Real> errors) : values_(std::move(values)), errors_(std::move(errors)) {
    tesk2mp::detail::require(values_.rows() == errors_.rows() && values_.columns() == errors_.columns(),
                             "BOUNDED_MATRIX", 2, "bounds of ", errors_.rows(), " by ", errors_.columns(), " for ",
                             values_.rows(), " by ", values_.columns(), " numbers");
    for (std::size_t j = 0; j < errors_.columns(); ++j) {
      for (std::size_t i = 0; i < errors_.rows(); ++i) {
        tesk2mp::detail::require(errors_(i, j) >= 0, "BOUNDED_MATRIX", 2, "the bound of element (", i, ", ", j, ") is ",
                                 isnan(errors_(i, j)) ? "not a number" : "negative");
      }
    }
  }

  std::size_t rows() const noexcept { return values_.rows(); }
  std::size_t columns() const noexcept { return values_.columns(); }
  const Matrix<T>& values() const noexcept { return values_; }
  /// The bounds, numbers of nine digits rounded up.
  const Matrix<Real>& errors() const noexcept { return errors_; }
  Bounded<T> operator()(std::size_t i, std::size_t j) const { return {values_(i, j), QuarnBound(errors_(i, j))}; }

 private:
  Matrix<T> values_;
  Matrix<Real> errors_;
};

// Digits that are known ---------------------------------------------------------------------------------------------

/// For an exact number: as many digits as anybody wants.
inline constexpr std::int64_t kAllDigits = std::numeric_limits<std::int64_t>::max();

/// How many significant digits are true: rounded to so many, the number is within 0.51 units of the last of them, the
/// rounding included. 0 or less when not one is.
inline std::int64_t true_digits(const Bounded<Real>& x) {
  if (x.error.is_zero()) {
    return kAllDigits;
  }
  if (!x.error.is_finite() || isnan(x.value) || isinf(x.value)) {
    return 0;
  }
  const std::int64_t exponent = x.value == 0 ? x.error.exponent() : ilogb(x.value);
  return std::max<std::int64_t>(0, exponent - x.error.exponent() - 2);
}

/// Is not even the sign of a number known that may be 0, and is not certainly 0?
inline bool is_unknown_zero(const Bounded<Real>& x) {
  return x.error.is_finite() && !x.error.is_zero() && isfinite(x.value) && x.error.value() >= fabs(x.value);
}

namespace detail {

/// The parts of a result, each with its bound.
template <class Visit>
void for_each_part(const Bounded<Real>& x, const Visit& visit) {
  visit(x);
}
template <class Visit>
void for_each_part(const Bounded<Complex>& z, const Visit& visit) {
  visit(Bounded<Real>{z.value.re, z.error});
  visit(Bounded<Real>{z.value.im, z.error});
}
template <class Visit>
void for_each_part(const BoundedRoot& z, const Visit& visit) {
  visit(Bounded<Real>{z.value.re, z.error});
  visit(Bounded<Real>{z.value.im, z.is_real ? QuarnBound() : z.error});
}
template <class T, class Visit>
void for_each_part(const std::vector<T>& x, const Visit& visit) {
  for (const T& element : x) {
    for_each_part(element, visit);
  }
}
template <class T, class Visit>
void for_each_part(const BoundedMatrix<T>& a, const Visit& visit) {
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      for_each_part(a(i, j), visit);
    }
  }
}

}  // namespace detail

/// The true digits of every part of a result: of the one that has fewest. A part of which not even the sign is known
/// counts by how far its bound is below the largest part: it is known to be 0 to so many places.
template <class Result>
std::int64_t fewest_true_digits(const Result& result) {
  std::optional<std::int64_t> largest;
  detail::for_each_part(result, [&](const Bounded<Real>& x) {
    if (x.value != 0 && !isnan(x.value)) {
      largest = std::max(largest.value_or(ilogb(x.value)), std::int64_t(ilogb(x.value)));
    }
  });
  std::int64_t fewest = kAllDigits;
  detail::for_each_part(result, [&](const Bounded<Real>& x) {
    std::int64_t digits = true_digits(x);
    if (digits == 0 && largest && is_unknown_zero(x)) {
      digits = std::max<std::int64_t>(0, *largest - x.error.exponent() - 2);
    }
    fewest = std::min(fewest, digits);
  });
  return fewest;
}

/// The true digits as text, at most `digits` of them: "2.718", "0 (abs < 1e-40)" where the sign is not known, "?" where
/// nothing is.
inline std::string to_text(const Bounded<Real>& x, int digits) {
  if (!x.error.is_finite() || isnan(x.value) || isinf(x.value)) {
    return "?";
  }
  const auto known = int(std::min<std::int64_t>(true_digits(x), digits));
  if (known > 0) {
    const Digits scope(std::max(known, 1));
    return (x.value * Real(1)).to_string();
  }
  if (x.error.value() < fabs(x.value)) {
    return (x.value < 0 ? "-" : "+") + std::string("1e") + std::to_string(ilogb(x.value)) + " (no digit is known)";
  }
  const QuarnBound reach = QuarnBound(x.value) + x.error;
  return "0 (abs < 1e" + std::to_string(reach.exponent() + 1) + ")";
}

/// The value as it is printed: rounded to the working digits, and each part of which not even the sign is known is 0.
inline Real known_value(const Bounded<Real>& x) { return true_digits(x) > 0 ? x.value * Real(1) : Real(); }
inline Complex known_value(const Bounded<Complex>& z) {
  return {known_value(Bounded<Real>{z.value.re, z.error}), known_value(Bounded<Real>{z.value.im, z.error})};
}
inline Complex known_value(const BoundedRoot& z) { return known_value(Bounded<Complex>{z.value, z.error}); }
template <Scalar T>
Matrix<T> known_value(const BoundedMatrix<T>& a) {
  Matrix<T> values(a.rows(), a.columns());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      values(i, j) = known_value(a(i, j));
    }
  }
  return values;
}

// Data ----------------------------------------------------------------------------------------------------------------

/// Numbers that were rounded to the working digits, elements such as 1 / (i + j), each with the bound of that: 0.51
/// units of the last place, as of the gallery's elements, which are rounded from some more digits.
template <MatrixSource A>
BoundedMatrix<Element<A>> rounded(const A& a) {
  using T = Element<A>;
  Matrix<T> values{MatrixView<const T>(a)};
  Matrix<Real> errors(values.rows(), values.columns());
  const auto error = [](const T& x) {
    const auto of_part = [](const Real& part) {
      return QuarnBound::count(102) * QuarnBound::power_of_ten(-2) * QuarnBound(part).half_unit(QuarnDigits());
    };
    if constexpr (tesk2mp::detail::kIsComplex<T>) {
      return hypotenuse(of_part(x.re), of_part(x.im));
    } else {
      return of_part(x);
    }
  };
  for (std::size_t j = 0; j < values.columns(); ++j) {
    for (std::size_t i = 0; i < values.rows(); ++i) {
      errors(i, j) = error(values(i, j)).value();
    }
  }
  return {std::move(values), std::move(errors)};
}

namespace detail {

/// Values and bounds of data for a call; exact data have no bounds.
template <class T>
struct Data {
  template <MatrixSource A>
  explicit Data(const A& a) : values(MatrixView<const T>(a)), errors(Matrix<Real>(0, 0).view()) {
    errors.leading = 0;
  }
  explicit Data(const BoundedMatrix<T>& a) : values(a.values().view()), errors(a.errors().view()) {}

  tesk2mp::detail::RawMatrix<T> values;
  tesk2mp::detail::RawMatrix<Real> errors;
};

template <class A>
struct ElementOf {};
template <MatrixSource A>
struct ElementOf<A> {
  using type = Element<A>;
};
template <class T>
struct ElementOf<BoundedMatrix<T>> {
  using type = T;
};
template <class A>
using ElementOfData = typename ElementOf<A>::type;

}  // namespace detail

/// A matrix: exact, or with bounds of its elements' errors.
template <class A>
concept DataSource = requires {
  typename detail::ElementOfData<A>;
};

// Rank --------------------------------------------------------------------------------------------------------------

/// The rank of a matrix whose elements are taken as the exact numbers that they are; no value where that would take too
/// long, or an element is not finite.
template <MatrixSource A>
std::optional<std::size_t> rank(const A& a) {
  using T = Element<A>;
  const tesk2mp::detail::RawMatrix<T> matrix{MatrixView<const T>(a)};
  Integer found = 0;
  Integer info = 0;
  tesk2mp::detail::pick<T>(QuarnMPX_dproven_rank_, QuarnMPX_zproven_rank_)(matrix.rows, matrix.columns, matrix.data,
                                                                           matrix.leading, &found, &info);
  return info == 0 ? std::optional<std::size_t>(std::size_t(found)) : std::nullopt;
}

/// How many eigenvalues of A x = lambda B x are infinite, the elements of both matrices being taken as the exact
/// numbers that they are; no value where finding that would take too long, or an element is not finite. Throws
/// NumericalFailure where the pencil is singular: det(A - x B) is 0 for every x.
template <MatrixSource A, MatrixSource B>
requires std::same_as<Element<A>, Element<B>> std::optional<std::size_t> infinite_eigenvalues(const A& a, const B& b) {
  using T = Element<A>;
  const char* routine = tesk2mp::detail::name<T>("DPROVEN_INFINITE", "ZPROVEN_INFINITE");
  const tesk2mp::detail::RawMatrix<T> first{MatrixView<const T>(a)};
  const tesk2mp::detail::RawMatrix<T> second{MatrixView<const T>(b)};
  const Integer n = first.rows;
  tesk2mp::detail::require(n == first.columns, routine, 1, "a matrix of ", n, " by ", first.columns, " is not square");
  tesk2mp::detail::require(second.rows == n && second.columns == n, routine, 2, "a matrix of ", second.rows, " by ",
                           second.columns, " beside one of order ", n);
  Integer found = 0;
  Integer info = 0;
  tesk2mp::detail::pick<T>(QuarnMPX_dproven_infinite_, QuarnMPX_zproven_infinite_)(
      n, first.data, first.leading, second.data, second.leading, &found, &info);
  if (info == 2) {
    throw NumericalFailure(routine, 2, 0, "the pencil is singular: det(A - x B) is 0 for every x", {});
  }
  return info == 0 ? std::optional<std::size_t>(std::size_t(found)) : std::nullopt;
}

namespace detail {

template <class A>
void require_finite(const char* routine, const A& a) {
  if constexpr (MatrixSource<A>) {
    const MatrixView<const Element<A>> view(a);
    for (std::size_t j = 0; j < view.columns(); ++j) {
      for (std::size_t i = 0; i < view.rows(); ++i) {
        tesk2mp::detail::require(QuarnBound(view(i, j)).is_finite(), routine, 2, "element (", i, ", ", j,
                                 ") is not finite");
      }
    }
  }
}

/// Has data with bounds an element whose value is not a finite number? Nothing is known of it whatever its bound says,
/// and routines of numbers refuse it; what such an element can reach has infinite bounds.
template <class A>
bool has_unknown_element(const A& a) {
  if constexpr (MatrixSource<A>) {
    return false;
  } else {
    const auto& values = a.values();
    return !std::all_of(values.data(), values.data() + values.rows() * values.columns(),
                        [](const auto& x) { return QuarnBound(x).is_finite(); });
  }
}
/// The same of the triangle that is read of a Hermitian matrix.
template <class A>
bool has_unknown_element(const A& a, Triangle stored) {
  if constexpr (!MatrixSource<A>) {
    for (std::size_t j = 0; j < a.columns(); ++j) {
      for (std::size_t i = 0; i < a.rows(); ++i) {
        if ((stored == Triangle::lower ? i >= j : i <= j) && !QuarnBound(a.values()(i, j)).is_finite()) {
          return true;
        }
      }
    }
  }
  return false;
}
/// Numbers of which nothing is known.
template <class T>
BoundedMatrix<T> unknown_matrix(std::size_t rows, std::size_t columns) {
  Matrix<Real> errors(rows, columns);
  std::fill_n(errors.data(), rows * columns, QuarnBound::infinity().value());
  return {Matrix<T>(rows, columns), std::move(errors)};
}

/// Is an exact square matrix proven to be singular?
template <class A>
bool is_singular(const A& a) {
  if constexpr (MatrixSource<A>) {
    return rank(a).value_or(MatrixView<const Element<A>>(a).rows()) < MatrixView<const Element<A>>(a).rows();
  }
  return false;
}

}  // namespace detail

// Linear equations --------------------------------------------------------------------------------------------------

/// The solution of A x = b for each column of b, with |x - exact| bounded, for all A and b within their bounds. Where
/// the working digits do not suffice the bounds are infinite. Throws NumericalFailure when an exact A is proven to be
/// singular, InvalidArgument when an element of exact data is not finite.
///
/// @code
/// const tesk2mp::Matrix<tesk2mp::Real> a = {{2, 1}, {1, 3}};
/// const auto x = tesk2mp::proven::solve(a, std::vector<tesk2mp::Real>{3, 5});  // 4/5, 7/5
/// const bool proven = x[0].error.is_finite();
/// @endcode
template <DataSource A, DataSource B>
BoundedMatrix<detail::ElementOfData<A>> solve(const A& a, const B& b) {
  using T = detail::ElementOfData<A>;
  const char* routine = tesk2mp::detail::name<T>("DPROVEN_SOLVE", "ZPROVEN_SOLVE");
  detail::require_finite(routine, a);
  detail::require_finite(routine, b);
  const detail::Data<T> matrix(a);
  const detail::Data<T> right(b);
  const Integer n = matrix.values.rows;
  tesk2mp::detail::require(n == matrix.values.columns, routine, 1, "a matrix of ", n, " by ", matrix.values.columns,
                           " is not square");
  tesk2mp::detail::require(right.values.rows == n, routine, 2, "a right-hand side of ", right.values.rows, " rows for ",
                           n, " equations");
  Matrix<T> x(std::size_t(n), std::size_t(right.values.columns));
  Matrix<Real> errors(x.rows(), x.columns());
  const tesk2mp::detail::RawMatrix<T> solution{x.view()};
  const tesk2mp::detail::RawMatrix<Real> bounds{errors.view()};
  Integer info = 0;
  tesk2mp::detail::pick<T>(QuarnMPX_dproven_solve_, QuarnMPX_zproven_solve_)(
      n, right.values.columns, matrix.values.data, matrix.values.leading, matrix.errors.data, matrix.errors.leading,
      right.values.data, right.values.leading, right.errors.data, right.errors.leading, solution.data, solution.leading,
      bounds.data, bounds.leading, &info);
  if (info == 1 && detail::is_singular(a)) {
    throw NumericalFailure(routine, 1, 0, "the matrix is singular: its rank is less than " + std::to_string(n), {n});
  }
  return {std::move(x), std::move(errors)};
}
/// The same for a vector b, whose elements are exact.
template <DataSource A, VectorSource B>
std::vector<Bounded<detail::ElementOfData<A>>> solve(const A& a, const B& b) {
  using T = detail::ElementOfData<A>;
  const std::vector<T> column = VectorView<const T>(b).to_vector();
  const BoundedMatrix<T> x =
      proven::solve(a, MatrixView<const T>(column.data(), column.size(), 1, std::max<std::size_t>(1, column.size())));
  std::vector<Bounded<T>> result;
  for (std::size_t i = 0; i < x.rows(); ++i) {
    result.push_back(x(i, 0));
  }
  return result;
}

/// The inverse of A.
template <DataSource A>
BoundedMatrix<detail::ElementOfData<A>> inverse(const A& a) {
  using T = detail::ElementOfData<A>;
  return proven::solve(a, Matrix<T>::identity(std::size_t(detail::Data<T>(a).values.rows)));
}

/// The determinant; of an exact matrix that is proven to be singular 0, exactly. Throws InvalidArgument when an element
/// of an exact matrix is not finite.
template <DataSource A>
Bounded<detail::ElementOfData<A>> determinant(const A& a) {
  using T = detail::ElementOfData<A>;
  detail::require_finite(tesk2mp::detail::name<T>("DPROVEN_DETERMINANT", "ZPROVEN_DETERMINANT"), a);
  const detail::Data<T> matrix(a);
  tesk2mp::detail::require(matrix.values.rows == matrix.values.columns,
                           tesk2mp::detail::name<T>("DPROVEN_DETERMINANT", "ZPROVEN_DETERMINANT"), 1, "a matrix of ",
                           matrix.values.rows, " by ", matrix.values.columns, " is not square");
  T value{};
  Real error;
  Integer info = 0;
  tesk2mp::detail::pick<T>(QuarnMPX_dproven_determinant_, QuarnMPX_zproven_determinant_)(
      matrix.values.rows, matrix.values.data, matrix.values.leading, matrix.errors.data, matrix.errors.leading, &value,
      &error, &info);
  if (info == 1 && detail::is_singular(a)) {
    return {T{}, QuarnBound()};
  }
  return {std::move(value), QuarnBound(error)};
}

/// Is a symmetric or Hermitian matrix, of which one triangle is read, positive definite? No value where the working
/// digits do not decide.
template <MatrixSource A>
std::optional<bool> is_positive_definite(const A& a, Triangle triangle = Triangle::lower) {
  using T = Element<A>;
  const tesk2mp::detail::RawMatrix<T> matrix{MatrixView<const T>(a)};
  tesk2mp::detail::require(matrix.rows == matrix.columns,
                           tesk2mp::detail::name<T>("DPROVEN_DEFINITE", "ZPROVEN_DEFINITE"), 2, "a matrix of ",
                           matrix.rows, " by ", matrix.columns, " is not square");
  Integer info = 0;
  tesk2mp::detail::pick<T>(QuarnMPX_dproven_definite_, QuarnMPX_zproven_definite_)(
      tesk2mp::detail::Option(triangle), matrix.rows, matrix.data, matrix.leading, &info, 1);
  return info == 2 ? std::nullopt : std::optional<bool>(info == 0);
}

// As many digits as are asked for -----------------------------------------------------------------------------------

namespace detail {

/// The working digits of a search for k true ones, each time as many more as what is known says.
class DigitSearch {
 public:
  /// spare: more than k that are worth while at each step
  DigitSearch(int k, int first, int most, int spare)
      : wanted_(k), spare_(spare), most_(most), working_(std::min(first, most)) {}

  int working() const noexcept { return working_; }
  bool is_at_end() const noexcept { return working_ >= most_; }
  /// `known` digits are true with the present working digits.
  void raise(std::int64_t known) {
    // Where some digits are known the loss is known too; of k-fold roots k more digits of work bring one. Where more
    // digits of work have brought none, nothing is known of what will.
    std::int64_t next = 2 * std::int64_t(working_) + 2 * spare_;
    if (known > 0 && known != known_before_) {
      const std::int64_t missing = wanted_ - known + spare_;
      const bool seen = known_before_ > 0 && known > known_before_;
      const std::int64_t rate =
          seen ? (working_ - working_before_ + known - known_before_ - 1) / (known - known_before_) : 1;
      next = std::min(next + missing, working_ + std::max<std::int64_t>(rate, 1) * missing);
    }
    known_before_ = known;
    working_before_ = working_;
    working_ = int(std::min<std::int64_t>(next, most_));
  }

 private:
  int wanted_;
  int spare_;
  int most_;
  int working_;
  int working_before_ = 0;
  std::int64_t known_before_ = 0;
};

}  // namespace detail

/// Calls problem(), which computes at the working digits and returns a Bounded number, a vector or a matrix of them,
/// with more and more working digits until k digits of every part are true. Data that the problem holds are exact; what
/// it computes anew, as a function of the digits, needs bounds of its own, as rounded() makes them. Throws
/// NumericalFailure when `most` working digits do not suffice, which says how many digits are known.
///
/// @code
/// using namespace tesk2mp;
/// const auto d = proven::to_digits(40, [] { return proven::determinant(proven::rounded(hilbert(20))); });
/// @endcode
template <class Problem>
auto to_digits(int k, const Problem& problem, int most = 100'000) {
  constexpr int kMargin = 5;
  tesk2mp::detail::require(k >= 1, "TO_DIGITS", 1, k, " digits are less than one");
  tesk2mp::detail::require(most >= k, "TO_DIGITS", 2, "at most ", most, " working digits for ", k, " true ones");
  for (detail::DigitSearch search(k, k + kMargin, most, kMargin);;) {
    std::int64_t known = 0;
    {
      const Digits scope(search.working());
      auto result = problem();
      known = fewest_true_digits(result);
      if (known >= k) {
        return result;
      }
    }
    if (search.is_at_end()) {
      throw NumericalFailure("TO_DIGITS", 1, 0,
                             std::to_string(known) + " of " + std::to_string(k) + " digits are proven with " +
                                 std::to_string(most) + " working digits",
                             {known, std::int64_t(k), std::int64_t(most)});
    }
    search.raise(known);
  }
}

}  // namespace tesk2mp::proven
