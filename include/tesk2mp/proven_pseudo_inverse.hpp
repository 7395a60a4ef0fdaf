// Pseudo-inverses, null spaces, condition numbers, singular vectors and determinants with proven error bounds in the
// C++ interface: made of factors and solutions. Not part of tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

#include "tesk2mp/least_squares.hpp"
#include "tesk2mp/proven_complex.hpp"
#include "tesk2mp/proven_exact.hpp"
#include "tesk2mp/proven_factors.hpp"
#include "tesk2mp/proven_spectra.hpp"

namespace tesk2mp::proven {

// Pseudo-inverses ---------------------------------------------------------------------------------------------------

namespace detail {

/// The pseudo-inverse of a matrix whose columns are independent for all data within the bounds, which is part of the
/// proof.
template <class T>
BoundedMatrix<T> left_inverse(const BoundedMatrix<T>& a) {
  const std::size_t m = a.rows();
  const std::size_t n = a.columns();
  const auto augmented = bounded_matrix<T>(m + n, m + n, [&](std::size_t i, std::size_t j) {
    if (i < m && j >= m) {
      return a(i, j - m);
    }
    if (i >= m && j < m) {
      return Bounded<T>{conjugate_of(a.values()(j, i - m)), a(j, i - m).error};
    }
    return proven::exact(T(i == j && i < m ? 1 : 0));
  });
  Matrix<T> right(m + n, m);
  for (std::size_t i = 0; i < m; ++i) {
    right(i, i) = T(1);
  }
  return block(proven::solve(augmented, right), m, 0, n, m);
}

/// Columns of an exact matrix of that rank that are a basis of its range, in ascending order: those that a pivoted QR
/// factorisation takes first. None where they are not proven to be independent.
template <class T>
std::optional<std::vector<std::size_t>> basic_columns(const Matrix<T>& a, std::size_t rank) {
  const PivotedQR<T> near(a);
  std::vector<std::size_t> chosen;
  for (std::size_t j = 0; j < rank; ++j) {
    chosen.push_back(std::size_t(near.order()[j]));
  }
  std::sort(chosen.begin(), chosen.end());
  Matrix<T> columns(a.rows(), rank);
  for (std::size_t j = 0; j < rank; ++j) {
    std::copy_n(a.data() + chosen[j] * a.rows(), a.rows(), columns.data() + j * a.rows());
  }
  return proven::rank(columns) == rank ? std::optional(std::move(chosen)) : std::nullopt;
}

/// A = C F: C has the basic columns of A, F is C^+ A, with the unit matrix in the basic columns.
template <class T>
struct FullRank {
  std::vector<std::size_t> basic;
  BoundedMatrix<T> inverse;  // C^+
  BoundedMatrix<T> f;
};

template <class T>
std::optional<FullRank<T>> full_rank_factors(const Matrix<T>& a, std::size_t rank) {
  const auto basic = basic_columns(a, rank);
  if (!basic) {
    return std::nullopt;
  }
  Matrix<T> columns(a.rows(), rank);
  for (std::size_t j = 0; j < rank; ++j) {
    std::copy_n(a.data() + (*basic)[j] * a.rows(), a.rows(), columns.data() + j * a.rows());
  }
  FullRank<T> result{*basic, proven::least_squares(columns, Matrix<T>::identity(a.rows())), {}};
  const BoundedMatrix<T> product = proven::multiply(result.inverse, a);
  result.f = bounded_matrix<T>(rank, a.columns(), [&](std::size_t i, std::size_t j) {
    const bool is_basic = std::binary_search(basic->begin(), basic->end(), j);
    return is_basic ? proven::exact(T((*basic)[i] == j ? 1 : 0)) : product(i, j);
  });
  return result;
}

template <class T>
BoundedMatrix<T> pseudo_inverse_of(const Matrix<T>& a) {
  const std::optional<std::size_t> rank = proven::rank(a);
  const std::size_t m = a.rows();
  const std::size_t n = a.columns();
  if (rank && *rank == 0) {
    return bounded(Matrix<T>(n, m));
  }
  if (rank && *rank == n) {
    return proven::least_squares(a, Matrix<T>::identity(m));
  }
  if (rank && *rank == m) {
    const Matrix<T> turned = adjoint(a);
    return adjoint(proven::least_squares(turned, Matrix<T>::identity(n)));
  }
  const auto factors = rank ? full_rank_factors(a, *rank) : std::nullopt;
  if (!factors) {
    return unknown_matrix<T>(n, m);
  }
  const BoundedMatrix<T> turned = adjoint(factors->f);
  return proven::multiply(turned, proven::solve(proven::multiply(factors->f, turned), factors->inverse));
}
template <class T>
BoundedMatrix<T> pseudo_inverse_of(const BoundedMatrix<T>& a) {
  if (a.rows() == a.columns()) {
    return proven::inverse(a);
  }
  return a.rows() > a.columns() ? left_inverse(a) : adjoint(left_inverse(adjoint(a)));
}

/// Rows and columns that are not exactly 0, of a whose A^+ has zeros in their places.
struct Support {
  std::vector<std::size_t> rows;
  std::vector<std::size_t> columns;

  template <class T>
  explicit Support(const BoundedMatrix<T>& a) {
    std::vector<bool> has_row(a.rows());
    for (std::size_t j = 0; j < a.columns(); ++j) {
      bool has_column = false;
      for (std::size_t i = 0; i < a.rows(); ++i) {
        const bool is_zero = a.values()(i, j) == T() && a.errors()(i, j) == 0;
        has_row[i] = has_row[i] || !is_zero;
        has_column = has_column || !is_zero;
      }
      if (has_column) {
        columns.push_back(j);
      }
    }
    for (std::size_t i = 0; i < a.rows(); ++i) {
      if (has_row[i]) {
        rows.push_back(i);
      }
    }
  }

  template <class T>
  Matrix<T> part_of(const Matrix<T>& a) const {
    Matrix<T> part(rows.size(), columns.size());
    for (std::size_t j = 0; j < columns.size(); ++j) {
      for (std::size_t i = 0; i < rows.size(); ++i) {
        part(i, j) = a(rows[i], columns[j]);
      }
    }
    return part;
  }
  template <class T>
  BoundedMatrix<T> part_of(const BoundedMatrix<T>& a) const {
    return {part_of(a.values()), part_of(a.errors())};
  }
};

template <class Data>
auto pseudo_inverse_of_support(const Data& a) {
  using T = ElementOfData<Data>;
  const Support support(bounded(a));
  if (support.rows.size() == a.rows() && support.columns.size() == a.columns()) {
    return pseudo_inverse_of(a);
  }
  BoundedMatrix<T> whole = bounded(Matrix<T>(a.columns(), a.rows()));
  if (support.rows.empty()) {
    return whole;
  }
  const BoundedMatrix<T> inner = pseudo_inverse_of(support.part_of(a));
  Matrix<T> values = whole.values();
  Matrix<Real> errors = whole.errors();
  for (std::size_t i = 0; i < support.rows.size(); ++i) {
    for (std::size_t j = 0; j < support.columns.size(); ++j) {
      values(support.columns[j], support.rows[i]) = inner.values()(j, i);
      errors(support.columns[j], support.rows[i]) = inner.errors()(j, i);
    }
  }
  return BoundedMatrix<T>(std::move(values), std::move(errors));
}

}  // namespace detail

/// The Moore-Penrose inverse. Of an exact matrix of any rank, which is proven first: with A = C F, C columns of A that
/// are a basis of its range, F = C^+ A, it is F^H (F F^H)^-1 C^+ (A. Ben-Israel, T. N. E. Greville, Generalized
/// Inverses, section 1.6). Of data with bounds where rows or columns are independent for all of them. Elsewhere, and
/// where the digits do not suffice, the bounds are infinite. Rows and columns of exact zeros have exact zeros there.
template <DataSource A>
BoundedMatrix<detail::ElementOfData<A>> pseudo_inverse(const A& a) {
  using T = detail::ElementOfData<A>;
  detail::require_finite("PROVEN::PSEUDO_INVERSE", a);
  BoundedMatrix<T> found;
  {
    const Digits scope(QuarnDigits() + detail::kDigitsOfProducts);
    if constexpr (MatrixSource<A>) {
      found = detail::pseudo_inverse_of_support(Matrix<T>{MatrixView<const T>(a)});
    } else {
      found = detail::pseudo_inverse_of_support(a);
    }
  }
  return detail::fitted(found);
}

/// For each column b of B the x of least norm(b - A x), and of several such x the one of least norm: A^+ B.
template <DataSource A, DataSource B>
requires std::same_as<detail::ElementOfData<A>, detail::ElementOfData<B>> BoundedMatrix<detail::ElementOfData<A>>
minimum_norm(const A& a, const B& b) {
  if constexpr (MatrixSource<A> && MatrixSource<B>) {
    const MatrixView<const Element<A>> given(a);
    if (given.columns() > 0 && given.rows() >= given.columns() && proven::rank(a) == given.columns()) {
      return proven::least_squares(a, b);
    }
  }
  BoundedMatrix<detail::ElementOfData<A>> x;
  {
    const Digits scope(QuarnDigits() + detail::kDigitsOfProducts);
    x = proven::multiply(proven::pseudo_inverse(a), b);
  }
  return detail::fitted(x);
}

namespace detail {

/// A = C F where the rows of A, no more than there are columns, are independent for all data within the bounds; C are
/// the columns that a pivoted QR factorisation takes first, F = C^-1 A. Nothing where that is not proven.
template <class T>
struct RowBasis {
  std::vector<std::size_t> basic;
  BoundedMatrix<T> f;
};

template <class T>
std::optional<RowBasis<T>> row_basis(const BoundedMatrix<T>& a) {
  const std::size_t m = a.rows();
  const PivotedQR<T> near(a.values());
  RowBasis<T> found;
  for (std::size_t j = 0; j < m; ++j) {
    found.basic.push_back(std::size_t(near.order()[j]));
  }
  std::sort(found.basic.begin(), found.basic.end());
  const auto columns = bounded_matrix<T>(m, m, [&](std::size_t i, std::size_t j) { return a(i, found.basic[j]); });
  found.f = proven::solve(columns, a);
  return is_known(found.f) ? std::optional(std::move(found)) : std::nullopt;
}

}  // namespace detail

/// The rank that the matrix has for all data within the bounds, where that is proven: that of the rows and columns that
/// are not exactly 0, as many as there are of either.
template <Scalar T>
std::optional<std::size_t> rank(const BoundedMatrix<T>& a) {
  const detail::Support support(a);
  const std::size_t full = std::min(support.rows.size(), support.columns.size());
  const Digits scope(QuarnDigits() + detail::kDigitsOfProducts);
  const BoundedMatrix<T> part = support.part_of(a);
  const bool is_proven =
      full == 0 || detail::row_basis(part.rows() <= part.columns() ? part : detail::adjoint(part)).has_value();
  return is_proven ? std::optional(full) : std::nullopt;
}

namespace detail {

/// An orthonormal basis of the x with A x = 0 where A = C F, C the basic columns of A, F with the unit matrix in these.
template <class T>
BoundedMatrix<T> null_basis(const std::vector<std::size_t>& basic, const BoundedMatrix<T>& f) {
  const std::size_t n = f.columns();
  std::vector<std::size_t> free;
  for (std::size_t j = 0; j < n; ++j) {
    if (!std::binary_search(basic.begin(), basic.end(), j)) {
      free.push_back(j);
    }
  }
  return proven::qr(bounded_matrix<T>(n, free.size(),
                                      [&](std::size_t i, std::size_t j) {
                                        const auto at = std::lower_bound(basic.begin(), basic.end(), i);
                                        if (at == basic.end() || *at != i) {
                                          return proven::exact(T(free[j] == i ? 1 : 0));
                                        }
                                        return -f(std::size_t(at - basic.begin()), free[j]);
                                      }))
      .q;
}

template <class T>
BoundedMatrix<T> null_space_of(const Matrix<T>& a) {
  const std::size_t n = a.columns();
  const std::optional<std::size_t> rank = proven::rank(a);
  if (!rank || *rank == n) {
    return unknown_matrix<T>(n, n - rank.value_or(0));
  }
  if (*rank == 0) {
    return identity<T>(n);
  }
  const auto factors = full_rank_factors(a, *rank);
  return factors ? null_basis(factors->basic, factors->f) : unknown_matrix<T>(n, n - *rank);
}
template <class T>
BoundedMatrix<T> null_space_of(const BoundedMatrix<T>& a) {
  const std::size_t n = a.columns();
  Support support(a);
  if (support.rows.empty()) {
    return identity<T>(n);
  }
  if (support.rows.size() >= n) {
    return unknown_matrix<T>(n, proven::rank(a) == n ? 0 : n);
  }
  support.columns.resize(n);
  std::iota(support.columns.begin(), support.columns.end(), 0);
  const auto found = row_basis(support.part_of(a));
  return found ? null_basis(found->basic, found->f) : unknown_matrix<T>(n, n);
}

}  // namespace detail

/// An orthonormal basis of the x with A x = 0, n rows, n - rank columns: Q of the QR factorisation of the vectors with
/// 1 in one of the columns that are not basic (those that a pivoted QR factorisation takes last), 0 in the others of
/// these, in ascending order. Of data with bounds where rows or columns are independent for all of them. The bounds are
/// infinite where rank or digits are not known, n columns of them where that is the rank.
template <DataSource A>
BoundedMatrix<detail::ElementOfData<A>> null_space(const A& a) {
  using T = detail::ElementOfData<A>;
  detail::require_finite("PROVEN::NULL_SPACE", a);
  BoundedMatrix<T> basis;
  {
    const Digits scope(QuarnDigits() + detail::kDigitsOfProducts);
    if constexpr (MatrixSource<A>) {
      basis = detail::null_space_of(Matrix<T>{MatrixView<const T>(a)});
    } else {
      basis = detail::null_space_of(a);
    }
  }
  return detail::fitted(basis);
}

// Condition, singular vectors, determinants -------------------------------------------------------------------------

/// norm(A) norm(A^-1). Throws NumericalFailure when an exact A is proven to be singular.
template <DataSource A>
Bounded<Real> condition(const A& a, Norm kind = Norm::one) {
  return proven::norm(kind, a) * proven::norm(kind, proven::inverse(a));
}

/// A = U diag(values) V^H with orthonormal columns, m by k, n by k, k = min(m, n); the values descend.
template <Scalar T>
struct SingularBounds {
  BoundedMatrix<T> u;
  std::vector<Bounded<Real>> values;
  BoundedMatrix<T> v;
};

/// Singular values and vectors, of which each pair is known up to a common factor of modulus 1. Vectors whose values
/// are not apart from others and 0 at the working digits have infinite bounds. (u, v) / sqrt(2) is an eigenvector of [0
/// A; A^H 0] whose eigenvalue is the singular value (G. H. Golub, C. F. Van Loan, Matrix Computations, section 8.6).
template <DataSource A>
SingularBounds<detail::ElementOfData<A>> singular_system(const A& a) {
  using T = detail::ElementOfData<A>;
  detail::require_finite("PROVEN::SINGULAR_SYSTEM", a);
  const BoundedMatrix<T> given = detail::bounded(a);
  const std::size_t m = given.rows();
  const std::size_t n = given.columns();
  const std::size_t inner = std::min(m, n);
  SingularBounds<T> result;
  {
    const Digits scope(QuarnDigits() + detail::kDigitsOfProducts);
    const auto system =
        proven::symmetric_eigen(detail::bounded_matrix<T>(m + n, m + n, [&](std::size_t i, std::size_t j) {
          if (i < m && j >= m) {
            return given(i, j - m);
          }
          if (i >= m && j < m) {
            return Bounded<T>{detail::conjugate_of(given.values()(j, i - m)), given(j, i - m).error};
          }
          return proven::exact(T());
        }));
    const Bounded<T> scale = proven::sqrt(proven::exact(T(2)));
    const auto vectors = [&](std::size_t first, std::size_t count) {
      return detail::bounded_matrix<T>(
          count, inner, [&](std::size_t i, std::size_t j) { return system.vectors(first + i, m + n - 1 - j) * scale; });
    };
    result.u = vectors(0, m);
    result.v = vectors(m, n);
    for (std::size_t j = 0; j < inner; ++j) {
      result.values.push_back(system.values[m + n - 1 - j]);
    }
  }
  result.u = detail::fitted(result.u);
  result.v = detail::fitted(result.v);
  for (Bounded<Real>& value : result.values) {
    value = detail::fitted(value);
  }
  return result;
}

/// mantissa 10^exponent.
template <Scalar T>
struct ScaledBound {
  Bounded<T> mantissa;
  std::int64_t exponent = 0;
};

/// The determinant with the exponent of its larger part taken out, which is exact.
template <DataSource A>
ScaledBound<detail::ElementOfData<A>> scaled_determinant(const A& a) {
  using T = detail::ElementOfData<A>;
  const Bounded<T> found = proven::determinant(a);
  const QuarnBound size = std::max(QuarnBound(Complex(found.value).re), QuarnBound(Complex(found.value).im));
  if (size.is_zero() || !size.is_finite() || !found.error.is_finite()) {
    return {found, 0};
  }
  const Complex value(found.value);
  const std::int64_t exponent =
      std::max(value.re == 0 ? ilogb(value.im) : ilogb(value.re), value.im == 0 ? ilogb(value.re) : ilogb(value.im));
  const auto shifted = [&](const Real& x) { return scalbn(x, -int(exponent)); };
  Bounded<T> mantissa{T(), found.error * QuarnBound::power_of_ten(-exponent)};
  if constexpr (tesk2mp::detail::kIsComplex<T>) {
    mantissa.value = T(shifted(value.re), shifted(value.im));
  } else {
    mantissa.value = shifted(value.re);
  }
  return {std::move(mantissa), exponent};
}

}  // namespace tesk2mp::proven
