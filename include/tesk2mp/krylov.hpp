// Some eigenvalues, some singular values and least squares of large matrices, which are sparse or known by their
// products alone, in the C++ interface. Part of tesk2mp.hpp; krylov.h documents methods, sources and cost.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <exception>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tesk2mp/solve_sparse.hpp"

namespace tesk2mp {

/// Which eigenvalues of a symmetric or Hermitian matrix are wanted; both_ends: the larger ones first.
enum class Extreme { largest_magnitude, smallest_magnitude, largest, smallest, both_ends };

/// Which eigenvalues of a general matrix are wanted. Imaginary parts count without their sign when the matrix is real.
enum class Dominant {
  largest_magnitude,
  smallest_magnitude,
  largest_real,
  smallest_real,
  largest_imaginary,
  smallest_imaginary
};

/// Writes the product of a matrix and x to y, which does not overlap x; x has as many elements as the matrix has
/// columns, y as many as it has rows. Called at some digits more than the caller's, which are the working digits then.
template <Scalar T>
using Product = std::function<void(std::span<const T> x, std::span<T> y)>;

/// Options of eigsh(), eigs() and svds() for k values of a matrix of order n, or with n the smaller dimension.
template <Scalar T>
struct KrylovOptions {
  bool vectors = true;
  Real tolerance = 0;     ///< largest residual divided by the norm of A, 0 ... 1; 0: the machine precision
  std::size_t basis = 0;  ///< vectors of the Krylov space, k + 2 ... n, or n; 0: max(2 k + 2, 20 + digits / 4), or n
  Integer most_products = 0;  ///< after which the next restart gives up, >= 1; 0: 20 n, at least 10,000
  std::vector<T> start;       ///< n elements, finite and not all 0; empty: random numbers, the same ones in each call
};

/// Options of eigsh().
template <Scalar T>
struct HermitianEigenOptions : KrylovOptions<T> {
  Extreme which = Extreme::largest_magnitude;  ///< with sigma of 1 / (lambda - sigma): largest_magnitude is the nearest
  std::optional<Real> sigma;                   ///< shift, finite: finds the eigenvalues near this number
};

/// Options of eigs().
template <Scalar T>
struct EigenOptions : KrylovOptions<T> {
  Dominant which = Dominant::largest_magnitude;  ///< with sigma of 1 / (lambda - sigma), as with eigsh()
  std::optional<T> sigma;                        ///< shift, finite
};

/// k eigenvalues of a symmetric or Hermitian matrix of order n.
template <Scalar T>
struct HermitianEigenpairs {
  std::vector<Real> values;     ///< ascending
  Matrix<T> vectors;            ///< n by k, orthonormal columns; 0 by 0 without options.vectors
  std::vector<Real> residuals;  ///< the norms of A v - lambda v, for values and vectors as returned
  Integer products = 0;         ///< that were formed
};

/// k eigenvalues of a general matrix of order n, or k + 1 where a real matrix has two conjugates that would be parted.
struct Eigenpairs {
  std::vector<Complex> values;  ///< the most wanted first
  Matrix<Complex> vectors;      ///< n rows, columns of length 1; 0 by 0 without options.vectors
  std::vector<Real> residuals;  ///< the norms of A v - lambda v, for values and vectors as returned
  Integer products = 0;         ///< that were formed
};

/// NumericalFailure 1 of eigsh(), eigs(), svds() and lsmr(); `result` is the best there was.
template <class Result>
class NotConverged : public NumericalFailure {
 public:
  NotConverged(const char* routine, Result found)
      : NumericalFailure(routine, 1, 0, "the iteration did not converge", {}), result(std::move(found)) {}

  Result result;
};

namespace detail {

/// The operator that the exports call, made of functions on spans. An exception of one of them is kept for rethrow(),
/// since not every system lets it pass through the library: from then on products are NaN, which ends the routine.
template <Scalar T>
struct OperatorContext {
  std::size_t rows;
  std::size_t columns;
  Product<T> product;
  Product<T> adjoint;
  Product<T> solve;
  std::exception_ptr thrown = {};

  static void form(void* context, Integer what, const T* x, T* y) noexcept {
    auto& self = *static_cast<OperatorContext*>(context);
    const bool adjoint = what == 1;
    const std::size_t from = adjoint ? self.rows : self.columns;
    const std::size_t to = adjoint ? self.columns : self.rows;
    if (!self.thrown) {
      try {
        (what == 2 ? self.solve : adjoint ? self.adjoint : self.product)(std::span<const T>(x, from), {y, to});
        return;
      } catch (...) {
        self.thrown = std::current_exception();
      }
    }
    std::fill_n(y, to, T(Real("nan")));
  }
  void rethrow() const {
    if (thrown) {
      std::rethrow_exception(thrown);
    }
  }
};

/// `given`, unless it is 0; then `times` n, at least `least` and at most the largest Integer.
inline Integer limit_of(Integer given, std::size_t n, std::size_t times, std::size_t least) {
  constexpr std::size_t kLargest = std::numeric_limits<Integer>::max();
  return given != 0 ? given : n > kLargest / times ? Integer(kLargest) : Integer(std::max(least, times * n));
}
inline Integer most_products(Integer given, std::size_t n) { return limit_of(given, n, 20, 10'000); }
inline Integer most_iterations(Integer given, std::size_t n) { return limit_of(given, n, 10, 1000); }

template <class Options>
void require_krylov(const char* routine, std::size_t n, std::size_t k, const Options& options, bool can_solve) {
  require(n >= 1, routine, 2, "a matrix of order 0");
  require(k >= 1 && k <= n, routine, 3, k, " eigenvalues of a matrix of order ", n);
  require(!options.sigma || can_solve, routine, 4, "sigma without solutions of A - sigma I");
  require(options.start.empty() || options.start.size() == n, routine, 10, "a start vector of ", options.start.size(),
          " elements");
}

/// The letters that the exports take for an enumerator.
template <class Which, std::size_t kCount>
const char* letters_of(const char* routine, Which which, const char* const (&letters)[kCount]) {
  require(std::size_t(which) < kCount, routine, 1, "no such choice of eigenvalues: ", std::int64_t(which));
  return letters[std::size_t(which)];
}

/// Null, which stands for the default, where it is empty.
template <class T>
const T* data_or_null(const std::vector<T>& x) {
  return x.empty() ? nullptr : x.data();
}
/// Null where vectors are not wanted.
template <class T>
T* data_or_null(Matrix<T>& vectors, bool wanted) {
  return wanted ? vectors.data() : nullptr;
}

/// Throws what INFO of an export reports, illegal arguments by this text and not finite products by that one; otherwise
/// returns the result.
template <class Result>
Result reported(const char* routine, Integer info, Result result, const char* illegal, const char* failed) {
  require(info >= 0, routine, -info, illegal);
  if (info > 1) {
    throw NumericalFailure(routine, info, 0, failed, {});
  }
  if (info == 1) {
    throw NotConverged<Result>(routine, std::move(result));
  }
  return result;
}

/// The same of the exports for eigenvalues and singular values.
template <class Result>
Result reported(const char* routine, Integer info, Result result) {
  return reported(routine, info, std::move(result),
                  info == -4    ? "sigma is not finite"
                  : info == -7  ? "a basis that is neither n nor larger than k + 1"
                  : info == -8  ? "a tolerance outside 0 ... 1"
                  : info == -10 ? "a start vector that is zero or not finite"
                                : "a wrong number",
                  "a product with the matrix is not finite, a projection has no values, or sigma is an eigenvalue");
}

/// Calls an export for eigenvalues, whose last arguments, from W to NPROD, are `results`; returns INFO.
template <class T, class Export, class Options, class... Results>
Integer call_for_eigenvalues(Export function, const char* which, std::size_t k, const Options& options,
                             OperatorContext<T>& context, Results... results) {
  const std::size_t n = context.rows;
  Integer info = 0;
  function(which, count_of(n), count_of(k), options.sigma ? &*options.sigma : nullptr, OperatorContext<T>::form,
           &context, count_of(options.basis), options.tolerance, most_products(options.most_products, n),
           data_or_null(options.start), results..., &info, 2);
  context.rethrow();
  return info;
}

/// (A - sigma I)^-1 x of a whole matrix that the caller keeps, by complete factors; they are made again when there are
/// more working digits than they have.
template <Scalar T, class Shift>
Product<T> shifted_solve(const SparseMatrix<T>& a, const Shift& sigma) {
  struct State {
    int digits = 0;
    std::function<void(std::span<const T>, std::span<T>)> factors;
  };
  return [&a, sigma, state = std::make_shared<State>()](std::span<const T> x, std::span<T> y) {
    if (state->digits < QuarnDigits()) {
      SparseMatrix<T> shifted = a;
      for (std::size_t i = 0; i < a.order(); ++i) {
        shifted.add(i, i, T(-sigma));
      }
      shifted.canonicalise(Duplicates::sum, Zeros::keep);
      state->factors = regular_factors(shifted);
      state->digits = QuarnDigits();
    }
    state->factors(x, y);
  };
}

}  // namespace detail

/// k eigenvalues, 1 <= k <= n, of a symmetric or Hermitian matrix of order n that is known by its products; with
/// options.sigma `solve` is (A - sigma I)^-1. Throws InvalidArgument; NotConverged when options.most_products were not
/// enough or residuals are larger than asked for; NumericalFailure 2 when a product is not finite or sigma is an
/// eigenvalue; and what the functions throw. Cost: a product and 4 n options.basis multiply-adds for each vector of the
/// Krylov space.
///
/// @code
/// const auto top = tesk2mp::eigsh<tesk2mp::Real>(n, product, 3).values;
/// @endcode
template <Scalar T>
HermitianEigenpairs<T> eigsh(std::size_t n, const std::type_identity_t<Product<T>>& product, std::size_t k,
                             const HermitianEigenOptions<T>& options = {},
                             const std::type_identity_t<Product<T>>& solve = {}) {
  const char* const routine = detail::name<T>("DEIGSH", "ZEIGSH");
  detail::require_krylov(routine, n, k, options, bool(solve));
  constexpr const char* kWhich[] = {"LM", "SM", "LA", "SA", "BE"};
  detail::OperatorContext<T> context{n, n, product, {}, solve};
  HermitianEigenpairs<T> pairs{std::vector<Real>(k), Matrix<T>(options.vectors ? n : 0, options.vectors ? k : 0),
                               std::vector<Real>(k)};
  const Integer info = detail::call_for_eigenvalues(
      detail::pick<T>(QuarnMPX_deigsh_, QuarnMPX_zeigsh_), detail::letters_of(routine, options.which, kWhich), k,
      options, context, pairs.values.data(), detail::data_or_null(pairs.vectors, options.vectors), detail::count_of(n),
      pairs.residuals.data(), &pairs.products);
  return detail::reported(routine, info, std::move(pairs));
}

/// The same of a sparse matrix, which is Hermitian: a triangle, or a whole matrix that is_hermitian(). With
/// options.sigma its complete factors are made; NumericalFailure of SPARSE_LU when sigma is an eigenvalue.
template <Scalar T>
HermitianEigenpairs<T> eigsh(const SparseMatrix<T>& a, std::size_t k, const HermitianEigenOptions<T>& options = {}) {
  const SparseMatrix<T> matrix = whole(a);
  detail::require(a.storage() == Storage::lower_triangle || is_hermitian(matrix), detail::name<T>("DEIGSH", "ZEIGSH"),
                  5, "a matrix that is not its own adjoint");
  const Product<T> product = [&matrix](std::span<const T> x, std::span<T> y) { matrix.multiply(x, y); };
  return eigsh<T>(a.order(), product, k, options,
                  options.sigma ? detail::shifted_solve<T>(matrix, *options.sigma) : Product<T>());
}

/// k eigenvalues, 1 <= k <= n, of a general matrix of order n that is known by its products, one more where a real
/// matrix has two conjugates that would be parted; with options.sigma `solve` is (A - sigma I)^-1. Failures and cost
/// are those of eigsh().
template <Scalar T>
Eigenpairs eigs(std::size_t n, const std::type_identity_t<Product<T>>& product, std::size_t k,
                const EigenOptions<T>& options = {}, const std::type_identity_t<Product<T>>& solve = {}) {
  const char* const routine = detail::name<T>("DEIGS", "ZEIGS");
  detail::require_krylov(routine, n, k, options, bool(solve));
  constexpr const char* kWhich[] = {"LM", "SM", "LR", "SR", "LI", "SI"};
  detail::OperatorContext<T> context{n, n, product, {}, solve};
  Eigenpairs pairs{std::vector<Complex>(k + 1), Matrix<Complex>(options.vectors ? n : 0, options.vectors ? k + 1 : 0),
                   std::vector<Real>(k + 1)};
  Integer found = 0;
  const Integer info = detail::call_for_eigenvalues(
      detail::pick<T>(QuarnMPX_deigs_, QuarnMPX_zeigs_), detail::letters_of(routine, options.which, kWhich), k, options,
      context, pairs.values.data(), detail::data_or_null(pairs.vectors, options.vectors), detail::count_of(n),
      pairs.residuals.data(), &found, &pairs.products);
  if (info == 0 || info == 1) {
    pairs.values.resize(std::size_t(found));
    pairs.residuals.resize(std::size_t(found));
    if (options.vectors && std::size_t(found) == k) {
      pairs.vectors = Matrix<Complex>(pairs.vectors.view().block(0, 0, n, k));
    }
  }
  return detail::reported(routine, info, std::move(pairs));
}

/// The same of a sparse matrix. With options.sigma its complete factors are made; NumericalFailure of SPARSE_LU when
/// sigma is an eigenvalue.
template <Scalar T>
Eigenpairs eigs(const SparseMatrix<T>& a, std::size_t k, const EigenOptions<T>& options = {}) {
  const SparseMatrix<T> matrix = whole(a);
  const Product<T> product = [&matrix](std::span<const T> x, std::span<T> y) { matrix.multiply(x, y); };
  return eigs<T>(a.order(), product, k, options,
                 options.sigma ? detail::shifted_solve<T>(matrix, *options.sigma) : Product<T>());
}

/// An m by n sparse matrix as a list of entries, real or complex. Indices count from 0.
template <Scalar T>
class SparseRectangle {
 public:
  using value_type = T;

  SparseRectangle(std::size_t rows, std::size_t columns)
      : rows_(rows), columns_(columns), square_(std::max(rows, columns)) {
    detail::require(rows >= 1 && columns >= 1, detail::name<T>("F11XAF", "F11XNF"), 2, "a sparse matrix of ", rows,
                    " by ", columns);
  }

  /// One more entry; those of the same place add up.
  void add(std::size_t row, std::size_t column, T value) {
    const char* const routine = detail::name<T>("F11XAF", "F11XNF");
    detail::require(row < rows_, routine, 5, "row ", row, " of a matrix of ", rows_, " rows");
    detail::require(column < columns_, routine, 6, "column ", column, " of a matrix of ", columns_, " columns");
    square_.add(row, column, std::move(value));
  }

  std::size_t rows() const { return rows_; }
  std::size_t columns() const { return columns_; }
  std::size_t entries() const { return square_.entries(); }
  /// The square matrix of order max(rows, columns) with zeros below this one or beside it.
  const SparseMatrix<T>& square() const { return square_; }

  /// y := A x, or A^H x, with one rounding of each element.
  void multiply(std::span<const T> x, std::span<T> y, bool adjoint = false) const {
    const char* const routine = detail::name<T>("F11XAF", "F11XNF");
    detail::require_length(routine, 8, detail::count_of(x.size()), detail::count_of(adjoint ? rows_ : columns_));
    detail::require_length(routine, 9, detail::count_of(y.size()), detail::count_of(adjoint ? columns_ : rows_));
    std::vector<T> longer(x.begin(), x.end());
    longer.resize(square_.order());
    std::vector<T> image = square_.multiply(longer, adjoint ? Op::conjugate_transpose : Op::none);
    std::move(image.begin(), image.begin() + std::ptrdiff_t(y.size()), y.begin());
  }

 private:
  std::size_t rows_;
  std::size_t columns_;
  SparseMatrix<T> square_;
};

/// Options of svds(); `start` has as many elements as there are columns, or rows when these are fewer.
template <Scalar T>
struct SingularOptions : KrylovOptions<T> {
  bool smallest = false;  ///< instead of the largest singular values
};

/// k singular values of an m by n matrix.
template <Scalar T>
struct SingularTriplets {
  Matrix<T> u;                  ///< m by k, orthonormal columns; 0 rows and columns without options.vectors, as v
  std::vector<Real> values;     ///< descending
  Matrix<T> v;                  ///< n by k, orthonormal columns
  std::vector<Real> residuals;  ///< the larger of the norms of A v - s u and A^H u - s v, as returned
  Integer products = 0;         ///< that were formed
};

/// k singular values, 1 <= k <= min(rows, columns), of a matrix that is known by its products and those of its adjoint.
/// Failures are those of eigsh(). Cost: two products and 4 (rows + columns) options.basis multiply-adds for each pair
/// of vectors of the Krylov spaces.
template <Scalar T>
SingularTriplets<T> svds(std::size_t rows, std::size_t columns, const std::type_identity_t<Product<T>>& product,
                         const std::type_identity_t<Product<T>>& adjoint, std::size_t k,
                         const SingularOptions<T>& options = {}) {
  const char* const routine = detail::name<T>("DSVDS", "ZSVDS");
  const std::size_t few = std::min(rows, columns);
  detail::require(few >= 1, routine, rows < 1 ? 2 : 3, "a matrix of ", rows, " by ", columns);
  detail::require(k >= 1 && k <= few, routine, 4, k, " singular values of a matrix of ", rows, " by ", columns);
  detail::require(options.start.empty() || options.start.size() == few, routine, 10, "a start vector of ",
                  options.start.size(), " elements");
  detail::OperatorContext<T> context{rows, columns, product, adjoint, {}};
  const std::size_t wanted = options.vectors ? k : 0;
  SingularTriplets<T> found{Matrix<T>(rows, wanted), std::vector<Real>(k), Matrix<T>(columns, wanted),
                            std::vector<Real>(k)};
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dsvds_, QuarnMPX_zsvds_)(
      options.smallest ? "SM" : "LM", detail::count_of(rows), detail::count_of(columns), detail::count_of(k),
      detail::OperatorContext<T>::form, &context, detail::count_of(options.basis), options.tolerance,
      detail::most_products(options.most_products, few), detail::data_or_null(options.start), found.values.data(),
      detail::data_or_null(found.u, options.vectors), detail::count_of(rows),
      detail::data_or_null(found.v, options.vectors), detail::count_of(columns), found.residuals.data(),
      &found.products, &info, 2);
  context.rethrow();
  return detail::reported(routine, info, std::move(found));
}

/// The same of a sparse matrix.
template <Scalar T>
SingularTriplets<T> svds(const SparseRectangle<T>& a, std::size_t k, const SingularOptions<T>& options = {}) {
  return svds<T>(
      a.rows(), a.columns(), [&a](std::span<const T> x, std::span<T> y) { a.multiply(x, y); },
      [&a](std::span<const T> x, std::span<T> y) { a.multiply(x, y, true); }, k, options);
}
template <Scalar T>
SingularTriplets<T> svds(const SparseMatrix<T>& a, std::size_t k, const SingularOptions<T>& options = {}) {
  return svds<T>(
      a.order(), a.order(), [&a](std::span<const T> x, std::span<T> y) { a.multiply(x, y); },
      [&a](std::span<const T> x, std::span<T> y) { a.multiply(x, y, Op::conjugate_transpose); }, k, options);
}

/// Options of lsmr() for an m by n matrix.
struct LsmrOptions {
  Real damp = 0;                ///< the damping, finite and >= 0
  Real atol = 0;                ///< relative error of A, 0 <= atol < 1; 0: the machine precision, at most 10^-8
  Real btol = 0;                ///< relative error of b, likewise
  Real largest_condition = 0;   ///< ends where the condition number seems to be larger, >= 0; 0: never
  Integer most_iterations = 0;  ///< >= 1; 0: 10 min(m, n), at least 1000
};

/// Why an iteration ended: A x = b, or the least squares problem, is solved within the tolerances; the condition number
/// is larger than was allowed; most_iterations is reached, which only the result of NotConverged reports.
enum class LsmrStop { solved = 1, least_squares = 2, condition = 3, exhausted = 7 };

/// What lsmr() returns; A and the residual r are those with the damping: (A; damp I), (b - A x; -damp x).
template <Scalar T>
struct LsmrSolution {
  std::vector<T> x;
  LsmrStop stop = LsmrStop::solved;
  Integer iterations = 0;
  Real residual_norm;  ///< of r, for x as returned
  Real gradient_norm;  ///< of A^H r, for x as returned
  Real matrix_norm;    ///< an estimate of the Frobenius norm of A, from below for few iterations
  Real condition;      ///< an estimate of the condition number of A, from below
};

/// The x that minimises ||b - A x||^2 + damp^2 ||x||^2, for a matrix of b.size() rows that is known by its products and
/// those of its adjoint. Throws InvalidArgument; NotConverged when options.most_iterations were not enough;
/// NumericalFailure 2 when a product is not finite; and what the functions throw. Cost: two products and
/// 3 b.size() + 7 columns multiply-adds for each iteration.
template <Scalar T>
LsmrSolution<T> lsmr(std::size_t columns, const std::type_identity_t<Product<T>>& product,
                     const std::type_identity_t<Product<T>>& adjoint, std::span<const std::type_identity_t<T>> b,
                     const LsmrOptions& options = {}) {
  const char* const routine = detail::name<T>("DLSMR", "ZLSMR");
  const std::size_t rows = b.size();
  detail::require(rows >= 1 && columns >= 1, routine, rows < 1 ? 1 : 2, "a matrix of ", rows, " by ", columns);
  detail::OperatorContext<T> context{rows, columns, product, adjoint, {}};
  LsmrSolution<T> solution;
  solution.x.resize(columns);
  Integer stop = 1;
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dlsmr_, QuarnMPX_zlsmr_)(
      detail::count_of(rows), detail::count_of(columns), detail::OperatorContext<T>::form, &context, b.data(),
      options.damp, options.atol, options.btol, options.largest_condition,
      detail::most_iterations(options.most_iterations, std::min(rows, columns)), solution.x.data(),
      &solution.residual_norm, &solution.gradient_norm, &solution.matrix_norm, &solution.condition,
      &solution.iterations, &stop, &info);
  context.rethrow();
  solution.stop = LsmrStop(stop);
  return detail::reported(routine, info, std::move(solution),
                          info == -6 ? "a damping that is negative or not finite" : "a wrong number",
                          "a product with the matrix is not finite");
}
/// The same of a sparse matrix.
template <Scalar T>
LsmrSolution<T> lsmr(const SparseRectangle<T>& a, std::span<const std::type_identity_t<T>> b,
                     const LsmrOptions& options = {}) {
  detail::require_length(detail::name<T>("DLSMR", "ZLSMR"), 5, detail::count_of(b.size()), detail::count_of(a.rows()));
  return lsmr<T>(
      a.columns(), [&a](std::span<const T> x, std::span<T> y) { a.multiply(x, y); },
      [&a](std::span<const T> x, std::span<T> y) { a.multiply(x, y, true); }, b, options);
}

}  // namespace tesk2mp
