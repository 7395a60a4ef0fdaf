// Exponential, square root, logarithm and real powers of matrices with proven error bounds in the C++ interface. Not
// part of tesk2mp.hpp. Series are summed with bounds of what is left out; a square root is found by Schur's method and
// proven to be near the true one by a fixed point.
#pragma once

#include <cmath>

#include "tesk2mp/matrix_functions.hpp"
#include "tesk2mp/proven_factors.hpp"
#include "tesk2mp/schur_forms.hpp"

namespace tesk2mp::proven {
namespace detail {

template <class T>
QuarnBound row_norm(const BoundedMatrix<T>& a) {
  QuarnBound largest;
  for (std::size_t i = 0; i < a.rows(); ++i) {
    QuarnBound sum;
    for (std::size_t j = 0; j < a.columns(); ++j) {
      sum += QuarnBound(a.values()(i, j)) + a(i, j).error;
    }
    largest = std::max(largest, sum);
  }
  return largest;
}
template <class T>
BoundedMatrix<T> sum(const BoundedMatrix<T>& a, const BoundedMatrix<T>& b) {
  return bounded_matrix<T>(a.rows(), a.columns(), [&](std::size_t i, std::size_t j) { return a(i, j) + b(i, j); });
}
/// Each element may be farther from the true one by that.
template <class T>
BoundedMatrix<T> widened(const BoundedMatrix<T>& a, const QuarnBound& error) {
  return bounded_matrix<T>(a.rows(), a.columns(), [&](std::size_t i, std::size_t j) {
    return Bounded<T>{a.values()(i, j), a(i, j).error + error};
  });
}
inline Bounded<Real> scaled(const Bounded<Real>& x, const Bounded<Real>& factor) { return x * factor; }
inline Bounded<Complex> scaled(const Bounded<Complex>& z, const Bounded<Real>& factor) {
  return z * Bounded<Complex>{Complex(factor.value), factor.error};
}
template <class T>
BoundedMatrix<T> scaled(const BoundedMatrix<T>& a, const Bounded<Real>& factor) {
  return bounded_matrix<T>(a.rows(), a.columns(),
                           [&](std::size_t i, std::size_t j) { return scaled(a(i, j), factor); });
}
inline Real with_exponent(const Real& x, int exponent) { return scalbn(x, exponent); }
inline Complex with_exponent(const Complex& z, int exponent) {
  return {scalbn(z.re, exponent), scalbn(z.im, exponent)};
}

/// Elements that are 0 in A and in every function of A: there is no path of elements from row i to column j.
template <class T>
class ZeroPattern {
 public:
  explicit ZeroPattern(const BoundedMatrix<T>& a) : n_(a.rows()), reached_(n_ * n_) {
    for (std::size_t j = 0; j < n_; ++j) {
      for (std::size_t i = 0; i < n_; ++i) {
        reached_[i + j * n_] = i == j || a.values()(i, j) != T() || !a(i, j).error.is_zero();
      }
    }
    for (std::size_t k = 0; k < n_; ++k) {
      for (std::size_t j = 0; j < n_; ++j) {
        for (std::size_t i = 0; i < n_ && reached_[k + j * n_]; ++i) {
          reached_[i + j * n_] = reached_[i + j * n_] || reached_[i + k * n_];
        }
      }
    }
  }
  /// Rounded to the working digits.
  BoundedMatrix<T> delivered(const BoundedMatrix<T>& f) const {
    return bounded_matrix<T>(n_, n_, [&](std::size_t i, std::size_t j) {
      return reached_[i + j * n_] ? fitted(f(i, j)) : proven::exact(T());
    });
  }

 private:
  std::size_t n_;
  std::vector<bool> reached_;
};

template <class A>
BoundedMatrix<ElementOfData<A>> square_data(const char* routine, const A& a) {
  require_finite(routine, a);
  BoundedMatrix<ElementOfData<A>> given = bounded(a);
  tesk2mp::detail::require(given.rows() == given.columns(), routine, 2, "a matrix of ", given.rows(), " by ",
                           given.columns(), " is not square");
  return given;
}

/// The real parts of what is known to be real.
template <class T>
BoundedMatrix<T> as_elements(const BoundedMatrix<Complex>& a) {
  if constexpr (tesk2mp::detail::kIsComplex<T>) {
    return a;
  } else {
    return bounded_matrix<Real>(a.rows(), a.columns(), [&](std::size_t i, std::size_t j) { return real(a(i, j)); });
  }
}

/// The sum of B^j / j!, ||B|| < 1, and of what is left out from j = k on: at most ||B||^k / k! / (1 - ||B||).
template <class T>
BoundedMatrix<T> exponential_series(const BoundedMatrix<T>& b) {
  const QuarnBound norm = row_norm(b);
  BoundedMatrix<T> total = identity<T>(b.rows());
  BoundedMatrix<T> term = total;
  QuarnBound rest = norm;  // ||B||^k / k!
  for (std::uint32_t k = 1; !rest.is_zero() && rest.exponent() >= -std::int64_t(QuarnDigits()) - 3; ++k) {
    term = scaled(proven::multiply(term, b), proven::exact(Real(1)) / proven::exact(Real(double(k))));
    total = sum(total, term);
    rest *= norm / QuarnBound::count(k + 1);
  }
  return widened(total, rest * over_one_minus(norm));
}

}  // namespace detail

// Exponential -------------------------------------------------------------------------------------------------------

/// exp(A): the series of 10^-k A, to the power of 10 k times (N. J. Higham, Functions of Matrices, section 10.3).
/// Powers grow more than the result where A is far from normal, and cost digits. The bounds are infinite where the
/// digits do not suffice, or norm(A) is 10^9 and more.
template <DataSource A>
BoundedMatrix<detail::ElementOfData<A>> exponential(const A& a) {
  using T = detail::ElementOfData<A>;
  const BoundedMatrix<T> given = detail::square_data(tesk2mp::detail::name<T>("DEXPM", "ZEXPM"), a);
  const std::size_t n = given.rows();
  const QuarnBound norm = detail::row_norm(given);
  if (norm.is_zero()) {
    return detail::identity<T>(n);
  }
  constexpr std::int64_t kFarthest = 9;
  if (!norm.is_finite() || norm.exponent() >= kFarthest) {
    return detail::unknown_matrix<T>(n, n);
  }
  // So small that terms and powers cost alike.
  const int small = 2 + int(std::sqrt(double(QuarnDigits())) / 3);
  const int steps = int(std::max<std::int64_t>(0, norm.exponent() + small));
  BoundedMatrix<T> power;
  {
    const Digits scope(QuarnDigits() + detail::kDigitsOfProducts + steps);
    power = detail::exponential_series(detail::bounded_matrix<T>(n, n, [&](std::size_t i, std::size_t j) {
      return Bounded<T>{detail::with_exponent(given.values()(i, j), -steps),
                        given(i, j).error * QuarnBound::power_of_ten(-steps)};
    }));
    for (int step = 0; step < steps; ++step) {
      const BoundedMatrix<T> square = proven::multiply(power, power);
      const BoundedMatrix<T> fifth = proven::multiply(proven::multiply(square, square), power);
      power = proven::multiply(fifth, fifth);
    }
  }
  return detail::ZeroPattern<T>(given).delivered(power);
}

// Square roots and logarithms ---------------------------------------------------------------------------------------

namespace detail {

/// Approximately the square root of the upper triangle of a matrix, upper triangular: A. Bjorck, S. Hammarling, Linear
/// Algebra Appl. 52/53 (1983).
inline Matrix<Complex> triangular_root(const Matrix<Complex>& a) {
  const std::size_t n = a.rows();
  Matrix<Complex> r(n, n);
  for (std::size_t j = 0; j < n; ++j) {
    r(j, j) = quarn::sqrt(a(j, j));
    for (std::size_t i = j; i-- > 0;) {
      Complex rest = a(i, j);
      for (std::size_t k = i + 1; k < j; ++k) {
        rest = rest - r(i, k) * r(k, j);
      }
      r(i, j) = rest / (r(i, i) + r(j, j));
    }
  }
  return r;
}

/// Bounds of |X| where R X + X R = F, R upper triangular, bounds of |F| given: (r_ii + r_jj) x_ij is f_ij less terms
/// with elements of X below and to the left.
class SylvesterBounds {
 public:
  explicit SylvesterBounds(const Matrix<Complex>& r)
      : sizes_(r), over_(r.rows(), r.rows(), [&](std::size_t i, std::size_t j) {
          return one() / least_size(proven::exact(r(i, i)) + proven::exact(r(j, j)));
        }) {}

  BoundGrid solved(BoundGrid f) const {
    const std::size_t n = f.rows();
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t i = n; i-- > 0;) {
        QuarnBound& x = f(i, j);
        for (std::size_t k = i + 1; k < n; ++k) {
          x += sizes_(i, k) * f(k, j);
        }
        for (std::size_t k = 0; k < j; ++k) {
          x += f(i, k) * sizes_(k, j);
        }
        x = x.is_zero() ? x : x * over_(i, j);
      }
    }
    return f;
  }

 private:
  BoundGrid sizes_;
  BoundGrid over_;
};

/// Are all eigenvalues of R + X in the open right half-plane, R upper triangular, for all X within the bounds? Those of
/// R are, and none crosses the imaginary axis: |(R - i y)^-1| is at most the inverse M of the comparison matrix with
/// the real parts on its diagonal, and M |X| v < v for a positive v.
inline bool is_in_right_half(const Matrix<Complex>& r, const BoundGrid& x) {
  const std::size_t n = r.rows();
  const BoundGrid sizes(r);
  const auto solved = [&](BoundGrid f) {
    for (std::size_t i = n; i-- > 0;) {
      const QuarnBound least = r(i, i).re > 0 ? least_size(proven::exact(r(i, i).re)) : QuarnBound();
      for (std::size_t k = i + 1; k < n; ++k) {
        f(i, 0) += sizes(i, k) * f(k, 0);
      }
      f(i, 0) = f(i, 0) / least;
    }
    return f;
  };
  const BoundGrid v = solved(BoundGrid(n, 1, [](std::size_t, std::size_t) { return one(); }));
  const BoundGrid image = solved(x * v);
  for (std::size_t i = 0; i < n; ++i) {
    if (!v(i, 0).is_finite() || !(image(i, 0) < v(i, 0))) {
      return false;
    }
  }
  return true;
}

/// The principal square root of a matrix that is nearly upper triangular. R + X with R^2 near B is a root where R X + X
/// R = B - R^2 - X^2; the X within bounds that this maps into themselves have a solution by Brouwer's theorem (N. J.
/// Higham, Functions of Matrices, chapter 6, for the equation). No value where the digits do not suffice or there is no
/// such root.
inline std::optional<BoundedMatrix<Complex>> nearly_triangular_root(const BoundedMatrix<Complex>& b) {
  constexpr int kMostRounds = 8;
  const Matrix<Complex> r = triangular_root(b.values());
  const BoundGrid rest = residual(b, r, r);
  const SylvesterBounds equation(r);
  BoundGrid x = equation.solved(rest);
  for (int round = 0; round < kMostRounds; ++round) {
    // A tenth more, so that the next one fits in.
    const BoundGrid wider(x.rows(), x.columns(),
                          [&](std::size_t i, std::size_t j) { return x(i, j) * decimal(11, 1); });
    x = equation.solved(rest + wider * wider);
    bool fits = true;
    for (std::size_t j = 0; j < x.columns(); ++j) {
      for (std::size_t i = 0; i < x.rows(); ++i) {
        fits = fits && x(i, j).is_finite() && x(i, j) <= wider(i, j);
      }
    }
    if (fits) {
      if (!is_in_right_half(r, wider)) {
        return std::nullopt;
      }
      return bounded_matrix<Complex>(r.rows(), r.rows(), [&](std::size_t i, std::size_t j) {
        return Bounded<Complex>{r(i, j), wider(i, j)};
      });
    }
  }
  return std::nullopt;
}

/// Q^-1 A Q, nearly upper triangular, with Q near the Schur vectors of A.
class SchurFrame {
 public:
  template <class T>
  explicit SchurFrame(const BoundedMatrix<T>& a) : q_(complex_schur(a.values()).z), inverse_(proven::inverse(q_)) {
    const auto given = bounded_matrix<Complex>(a.rows(), a.rows(), [&](std::size_t i, std::size_t j) {
      return Bounded<Complex>{Complex(a.values()(i, j)), a(i, j).error};
    });
    inside_ = proven::multiply(inverse_, proven::multiply(given, q_));
  }
  const BoundedMatrix<Complex>& inside() const { return inside_; }
  BoundedMatrix<Complex> outside(const BoundedMatrix<Complex>& f) const {
    return proven::multiply(q_, proven::multiply(f, inverse_));
  }

 private:
  Matrix<Complex> q_;
  BoundedMatrix<Complex> inverse_;
  BoundedMatrix<Complex> inside_;
};

/// work(frame) with more digits, delivered at the working ones; unknown where it gives none.
template <class T, class Work>
BoundedMatrix<T> in_frame(const BoundedMatrix<T>& a, int more, const Work& work) {
  std::optional<BoundedMatrix<Complex>> found;
  if (!has_unknown_element(a)) {
    const Digits scope(QuarnDigits() + more + kDigitsOfProducts + int(a.rows()) / 2);
    const SchurFrame frame(a);
    found = work(frame.inside());
    if (found) {
      found = frame.outside(*found);
    }
  }
  return found ? ZeroPattern<T>(a).delivered(as_elements<T>(*found)) : unknown_matrix<T>(a.rows(), a.rows());
}

/// log(B) = 2^k log(B^(1/2^k)), and log(I + Y) = 2 artanh(Z), Z = Y (2 I + Y)^-1, ||Z|| < 1, by its series; from Z^m on
/// is left out at most ||Z||^m / m / (1 - ||Z||^2), m odd.
inline std::optional<BoundedMatrix<Complex>> nearly_triangular_logarithm(BoundedMatrix<Complex> b, int small) {
  constexpr int kMostRoots = 200;
  const std::size_t n = b.rows();
  const BoundedMatrix<Complex> minus_one = scaled(identity<Complex>(n), proven::exact(Real(-1)));
  Real factor(2);
  BoundedMatrix<Complex> y = sum(b, minus_one);
  for (int roots = 0; roots == 0 || !(row_norm(y) < QuarnBound::power_of_ten(-small)); ++roots) {
    const auto root = roots < kMostRoots ? nearly_triangular_root(b) : std::nullopt;
    if (!root) {
      return std::nullopt;
    }
    b = *root;
    y = sum(b, minus_one);
    factor = factor * 2;
  }
  const BoundedMatrix<Complex> two = scaled(identity<Complex>(n), proven::exact(Real(2)));
  const BoundedMatrix<Complex> z = proven::solve(sum(two, y), y);  // they commute
  const BoundedMatrix<Complex> square = proven::multiply(z, z);
  const QuarnBound norm = row_norm(z);
  if (!(norm < QuarnBound::power_of_ten(-1))) {
    return std::nullopt;
  }
  BoundedMatrix<Complex> power = z;
  BoundedMatrix<Complex> total = z;
  QuarnBound rest = norm * norm * norm;
  std::uint32_t m = 3;
  for (; !rest.is_zero() && rest.exponent() >= -std::int64_t(QuarnDigits()) - 3; m += 2) {
    power = proven::multiply(power, square);
    total = sum(total, scaled(power, proven::exact(Real(1)) / proven::exact(Real(double(m)))));
    rest *= norm * norm;
  }
  return scaled(widened(total, rest / QuarnBound::count(m) * over_one_minus(norm * norm)), proven::exact(factor));
}

}  // namespace detail

/// The principal square root, whose eigenvalues are in the open right half-plane; of a real matrix a real one. The
/// bounds are infinite where the digits do not suffice, and where there is none: eigenvalues that are 0 or negative.
template <DataSource A>
BoundedMatrix<detail::ElementOfData<A>> square_root(const A& a) {
  using T = detail::ElementOfData<A>;
  const auto given = detail::square_data(tesk2mp::detail::name<T>("DSQRTM", "ZSQRTM"), a);
  return detail::in_frame(given, 0, [](const auto& inside) { return detail::nearly_triangular_root(inside); });
}

/// The principal logarithm, whose eigenvalues have imaginary parts between -pi and pi, under the same conditions (N. J.
/// Higham, Functions of Matrices, sections 11.2 and 11.5).
template <DataSource A>
BoundedMatrix<detail::ElementOfData<A>> logarithm(const A& a) {
  using T = detail::ElementOfData<A>;
  const auto given = detail::square_data(tesk2mp::detail::name<T>("DLOGM", "ZLOGM"), a);
  // So small that terms and roots cost alike.
  const int small = 1 + int(std::sqrt(double(QuarnDigits()) / 20));
  return detail::in_frame(given, 2 * small,
                          [&](const auto& inside) { return detail::nearly_triangular_logarithm(inside, small); });
}

/// exp(p log(A)), for any real p, under the same conditions.
template <DataSource A>
BoundedMatrix<detail::ElementOfData<A>> power(const A& a, const Bounded<Real>& p) {
  using T = detail::ElementOfData<A>;
  const auto given = detail::square_data(tesk2mp::detail::name<T>("DPOWM", "ZPOWM"), a);
  BoundedMatrix<T> found;
  {
    const Digits scope(QuarnDigits() + detail::kDigitsOfProducts);
    found = proven::exponential(detail::scaled(proven::logarithm(given), p));
  }
  return detail::fitted(found);
}
template <DataSource A>
BoundedMatrix<detail::ElementOfData<A>> power(const A& a, const Real& p) {
  return proven::power(a, proven::exact(p));
}

}  // namespace tesk2mp::proven
