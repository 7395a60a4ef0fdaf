// Linear equations, factorisations, eigenvalues, norms.
#include <algorithm>
#include <array>
#include <optional>

#include "cli/repl/fault.h"
#include "cli/repl/functions.h"
#include "cli/system/progress.h"
#include "tesk2mp/proven_spectra.hpp"

namespace cli::repl {

namespace {

// The work is counted in factorisations.
Progress factorising(const Array& a, bool is_real, double factorisations) {
  const double order = double(std::min(a.rows(), a.columns()));
  return Progress::estimated("factorising", factorisations * factorisation_cost(order, !is_real));
}

// Real matrices take the real routines, at a quarter of the cost: body(matrix) for either, without bounds.
template <class Body>
auto with_real_or_complex(const Array& a, double factorisations, const Body& body) {
  const Progress progress = factorising(a, is_real(a), factorisations);
  return is_real(a) ? body(real_array(a)) : body(a);
}

// The same with bounds.
template <class Body>
auto with_bounded(const Known& a, double factorisations, const Body& body) {
  const Progress progress = factorising(a.array(), is_real(a), factorisations);
  return with_matrix(a, body);
}

const Known& known_square(const Arguments& arguments) {
  (void)arguments.square(0);
  return arguments.known(0);
}

/// The second argument as columns of so many numbers; a vector in either direction.
Known right_side(const Arguments& arguments, std::size_t rows) {
  const Array& b = arguments.array(1);
  if (b.rows() == 1 && b.columns() == rows) {
    return {reshaped(elements(b), rows, 1), arguments.known(1).errors};
  }
  if (b.rows() != rows) {
    throw Unfit("right-hand sides of " + std::to_string(rows) + " numbers are needed here, not " + shape(b), 1);
  }
  return arguments.known(1);
}

Knowns solve(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const Known& a = known_square(arguments);
  const std::size_t rows = a.array().rows();
  const Known right = right_side(arguments, rows);
  // Also where A is a number.
  return {rows == 1 ? elementwise("divide", divide, right, a) : operate("\\", a, right)};
}

Knowns det(Evaluation& /*evaluation*/, const Arguments& arguments) {
  return {
      known(with_bounded(known_square(arguments), 3, [](const auto& a) { return as_number(proven::determinant(a)); }))};
}

Known inverse(const Known& given) {
  return with_bounded(given, 8, [](const auto& a) { return known(proven::inverse(a)); });
}

Knowns inv(Evaluation& /*evaluation*/, const Arguments& arguments) { return {inverse(known_square(arguments))}; }

Knowns trace(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const Known& a = known_square(arguments);
  Number sum;
  for (std::size_t i = 0; i < a.array().rows(); ++i) {
    sum = add(sum, element(a, i + i * a.array().rows()));
  }
  return {known(sum)};
}

Progress eigenvalue_progress(const Known& a, bool vectors) {
  return Progress::estimated("eigenvalues", 2 * eigenvalue_cost(double(a.array().rows()), vectors));
}

Knowns eig(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const Known& given = known_square(arguments);
  const Progress progress = eigenvalue_progress(given, false);
  return {with_matrix(given, [](const auto& a) { return known_column(proven::eigenvalues(a)); })};
}

Knowns eigvec(Evaluation& /*evaluation*/, const Arguments& arguments) {
  const Known& given = known_square(arguments);
  const Progress progress = eigenvalue_progress(given, true);
  return with_matrix(given, [](const auto& a) {
    const proven::EigenBounds system = proven::eigen(a);
    return Knowns{known(system.vectors), known_column(system.values)};
  });
}

Knowns svd(Evaluation& /*evaluation*/, const Arguments& arguments) {
  (void)arguments.array(0);
  return {with_bounded(arguments.known(0), 60, [](const auto& a) { return known_column(proven::singular_values(a)); })};
}

Number norm_of(const Known& given, tesk2mp::Norm kind) {
  return with_matrix(given, [&](const auto& a) { return as_number(proven::norm(kind, a)); });
}

Knowns norm(Evaluation& /*evaluation*/, const Arguments& arguments) {
  constexpr tesk2mp::Norm kKinds[] = {tesk2mp::Norm::frobenius, tesk2mp::Norm::one, tesk2mp::Norm::infinity,
                                      tesk2mp::Norm::largest};
  (void)arguments.array(0);
  const std::size_t kind = arguments.count() == 2 ? arguments.choice(1, {"fro", "one", "inf", "max"}) : 0;
  return {known(norm_of(arguments.known(0), kKinds[kind]))};
}

Number condition(const Known& a) {
  return multiply(norm_of(a, tesk2mp::Norm::one), norm_of(inverse(a), tesk2mp::Norm::one));
}

Knowns cond(Evaluation& /*evaluation*/, const Arguments& arguments) {
  return {known(condition(known_square(arguments)))};
}

// The parts of P A = L U.
template <class T>
Values lu_parts(const tesk2mp::Matrix<T>& a) {
  const tesk2mp::LU<T> lu(a);
  const std::size_t rows = a.rows();
  const std::size_t inner = std::min(rows, a.columns());
  Array lower = make_array(rows, inner);
  Array upper = make_array(inner, a.columns());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < rows; ++i) {
      if (i <= j && i < inner) {
        upper(i, j) = lu.factors()(i, j);
      } else if (i > j) {
        lower(i, j) = lu.factors()(i, j);
      }
    }
  }
  std::vector<std::size_t> order(rows);
  for (std::size_t i = 0; i < rows; ++i) {
    order[i] = i;
  }
  for (std::size_t i = 0; i < inner; ++i) {
    lower(i, i) = 1;
    std::swap(order[i], order[std::size_t(lu.pivots()[i])]);
  }
  Array permutation = make_array(rows, rows);
  for (std::size_t i = 0; i < rows; ++i) {
    permutation(i, order[i]) = 1;
  }
  return {lower, upper, permutation};
}

Values lu(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 1, [](const auto& a) { return lu_parts(a); });
}

Values estimated_chol(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 0.5,
                              [](const auto& a) { return Values{as_array(tesk2mp::Cholesky(a).factor())}; });
}

// The lower triangle L of A = L L^H, column by column. Nothing where a pivot is perhaps not positive; `refuted` is the
// order of a leading minor that is proven not to be.
std::optional<Known> bounded_cholesky(const Known& a, std::size_t& refuted) {
  const std::size_t n = a.array().rows();
  std::vector<Number> l(n * n);
  Progress progress("factorising", double(n));
  for (std::size_t j = 0; j < n; ++j) {
    progress.advance();
    for (std::size_t i = j; i < n; ++i) {
      Number rest = element(a, i + j * n);
      for (std::size_t k = 0; k < j; ++k) {
        rest = subtract(rest, multiply(l[i + k * n], conjugate(l[j + k * n])));
      }
      if (i > j) {
        l[i + j * n] = divide(rest, l[j + j * n]);
        continue;
      }
      const auto& [pivot, error] = rest.re;
      if (error.is_finite() && pivot + error.value() <= 0) {
        refuted = j + 1;
        return std::nullopt;
      }
      if (!error.is_finite() || !(error.value() < pivot)) {
        return std::nullopt;
      }
      l[j + j * n].re = proven::sqrt(rest.re);
    }
  }
  return known(n, n, l);
}

// Numbers that are not known exactly may be mirror images of each other as far as their bounds say.
bool may_be_zero(const BoundedReal& x) { return !x.error.is_finite() || fabs(x.value) <= x.error.value(); }

void require_hermitian(const Known& a) {
  const std::size_t n = a.array().rows();
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = j; i < n; ++i) {
      const Number lower = element(a, i + j * n);
      const Number upper = element(a, j + i * n);
      const std::string place = "element (" + std::to_string(i + 1) + ", " + std::to_string(j + 1) + ")";
      for (const Number& each : {lower, upper}) {
        if (!isfinite(each.re.value) || !isfinite(each.im.value)) {
          throw Unfit(place + " is not finite", 0);
        }
      }
      if (!may_be_zero(lower.re - upper.re) || !may_be_zero(lower.im + upper.im)) {
        throw Unfit(std::string("not ") + (is_real(a) ? "symmetric" : "Hermitian") + ": " + place +
                        " differs from its mirror image",
                    0);
      }
    }
  }
}

Knowns chol(Evaluation& evaluation, const Arguments& arguments) {
  constexpr std::size_t kLargestProven = 60;
  const Known& a = known_square(arguments);
  require_hermitian(a);
  const bool is_provable = a.array().rows() <= kLargestProven;
  std::size_t refuted = 0;
  if (is_provable) {
    if (const std::optional<Known> found = bounded_cholesky(a, refuted)) {
      return {*found};
    }
    if (refuted == 0 && !evaluation.is_last) {
      throw Undecided();
    }
  }
  Knowns plain = estimated<estimated_chol>(evaluation, arguments);
  if (refuted != 0) {
    throw Unfit("the leading minor of order " + std::to_string(refuted) + " is not positive");
  }
  return plain;
}

Values scaled_det(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 1, [](const auto& a) {
    const auto scaled = tesk2mp::scaled_determinant(a);
    return Values{number(scaled.mantissa), number(QuarnFloat(scaled.exponent))};
  });
}

Values qr(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 3, [](const auto& a) {
    const tesk2mp::QR factors(a);
    return Values{as_array(factors.q()), as_array(factors.r())};
  });
}

Values estimated_lstsq(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  const Array right = right_side(arguments, a.rows()).array();
  if (is_real(a) && is_real(right)) {
    return {as_array(tesk2mp::minimum_norm(real_array(a), real_array(right)).x)};
  }
  return {tesk2mp::minimum_norm(a, right).x};
}

// No value where the working digits do not decide.
auto proven_rank(const Array& a) { return is_real(a) ? proven::rank(real_array(a)) : proven::rank(a); }

// Proven where the columns are independent.
Knowns lstsq(Evaluation& evaluation, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  const Array b = right_side(arguments, a.rows()).array();
  const bool is_independent =
      arguments.are_exact() && a.columns() > 0 && a.rows() >= a.columns() && proven_rank(a) == a.columns();
  if (!is_independent) {
    return estimated<estimated_lstsq>(evaluation, arguments);
  }
  return {is_real(a) && is_real(b) ? known(proven::least_squares(real_array(a), real_array(b)))
                                   : known(proven::least_squares(a, b))};
}

Values estimated_pinv(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 4,
                              [](const auto& a) { return Values{as_array(tesk2mp::pseudo_inverse(a))}; });
}

// Of a matrix whose columns are independent.
Known left_inverse(const Array& a) {
  const RealArray one = RealArray::identity(a.rows());
  return is_real(a) ? known(proven::least_squares(real_array(a), one))
                    : known(proven::least_squares(a, complex_array(one)));
}

// Proven where the columns or the rows are independent.
Knowns pinv(Evaluation& evaluation, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  const auto rank = arguments.are_exact() && size(a) > 0 ? proven_rank(a) : std::nullopt;
  if (rank && *rank == a.columns()) {
    return {left_inverse(a)};
  }
  if (rank && *rank == a.rows()) {
    return {conjugate_transpose(left_inverse(conjugate_transpose(a)))};
  }
  return estimated<estimated_pinv>(evaluation, arguments);
}

Values null(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 3,
                              [](const auto& a) { return Values{as_array(tesk2mp::null_space(a))}; });
}

Values estimated_rank(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 3,
                              [](const auto& a) { return Values{number(QuarnFloat(tesk2mp::matrix_rank(a)))}; });
}

Knowns matrix_rank(Evaluation& evaluation, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  const auto rank = arguments.are_exact() ? proven_rank(a) : std::nullopt;
  return rank ? Knowns{Known(number(QuarnFloat(*rank)))} : estimated<estimated_rank>(evaluation, arguments);
}

Values svdvec(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 60, [](const auto& a) {
    const auto system = tesk2mp::svd(a);
    return Values{as_array(system.u), column(system.values), as_array(system.v)};
  });
}

// A real matrix without a real result has a complex one.
template <class Body>
Values matrix_function(const Array& a, double factorisations, const Body& body) {
  const Progress progress =
      Progress::estimated("matrix function", factorisations * factorisation_cost(double(a.rows()), !is_real(a)));
  if (is_real(a)) {
    try {
      return {as_array(body(real_array(a)))};
    } catch (const tesk2mp::NumericalFailure&) {
      return {body(a)};
    }
  }
  return {body(a)};
}

Values expm(State& /*state*/, const Arguments& arguments) {
  return matrix_function(arguments.square(0), 60, [](const auto& a) { return tesk2mp::expm(a); });
}

Values sqrtm(State& /*state*/, const Arguments& arguments) {
  return matrix_function(arguments.square(0), 60, [](const auto& a) { return tesk2mp::sqrtm(a); });
}

Values logm(State& /*state*/, const Arguments& arguments) {
  return matrix_function(arguments.square(0), 120, [](const auto& a) { return tesk2mp::logm(a); });
}

Values estimated_powm(State& /*state*/, const Arguments& arguments) {
  const Complex power = arguments.number(1);
  if (power.im != 0) {
    throw Unfit("a real number is needed here", 1);
  }
  return matrix_function(arguments.square(0), 180,
                         [&](const auto& a) { return tesk2mp::fractional_matrix_power(a, power.re); });
}

// Whole powers are products, and proven.
Knowns powm(Evaluation& evaluation, const Arguments& arguments) {
  constexpr Integer kLargest = 1'000'000;
  const Known& a = known_square(arguments);
  const Complex power = arguments.number(1);
  const bool is_whole = is_real(power) && is_whole_number(power.re) && fabs(power.re) <= kLargest;
  return is_whole && arguments.known(1).is_exact() ? Knowns{operate("^", a, arguments.known(1))}
                                                   : estimated<estimated_powm>(evaluation, arguments);
}

Values estimated_rcond(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 2,
                              [](const auto& a) { return Values{number(tesk2mp::reciprocal_condition(a))}; });
}

Knowns rcond(Evaluation& evaluation, const Arguments& arguments) {
  const Known& a = known_square(arguments);
  const auto rank = arguments.are_exact() && size(a.array()) > 0 ? proven_rank(a.array()) : std::nullopt;
  if (!rank) {
    return estimated<estimated_rcond>(evaluation, arguments);
  }
  return {*rank < a.array().rows() ? Known(number(QuarnFloat())) : known(divide({proven::exact(1)}, condition(a)))};
}

constexpr auto kLinearFunctions = std::to_array<Function>({
    {"solve", "A, b", "x", "the solution of A x = b, for a vector or each column (also A \\ b)", 2, 2, solve},
    {"lu", "A", "L, U, P", "factors with P A = L U", 1, 1, estimated<lu>},
    {"chol", "A", "L", "lower triangle with A = L L', A Hermitian and positive definite", 1, 1, chol},
    {"qr", "A", "Q, R", "factors with A = Q R, Q with orthonormal columns", 1, 1, estimated<qr>},
    {"lstsq", "A, b", "x", "the shortest x of least norm(A x - b), A of any shape and rank", 2, 2, lstsq},
    {"pinv", "A", "B", "pseudo-inverse", 1, 1, pinv},
    {"null", "A", "V", "orthonormal columns that A takes to zero", 1, 1, estimated<null>},
    {"matrix_rank", "A", "r", "rank of a matrix", 1, 1, matrix_rank},
    {"det", "A", "y", "determinant", 1, 1, det},
    {"scaled_det", "A", "d, e", "determinant d 10^e, however large or small", 1, 1, estimated<scaled_det>},
    {"inv", "A", "B", "inverse", 1, 1, inv},
    {"trace", "A", "y", "sum of the diagonal", 1, 1, trace},
    {"eig", "A", "x", "eigenvalues", 1, 1, eig},
    {"eigvec", "A", "V, x", "eigenvectors, as columns, with the eigenvalues", 1, 1, eigvec},
    {"svd", "A", "s", "singular values, the largest first", 1, 1, svd},
    {"svdvec", "A", "U, s, V", "A = U diag(s) V' with orthonormal columns", 1, 1, estimated<svdvec>},
    {"expm", "A", "B", "exponential of a matrix", 1, 1, estimated<expm>},
    {"sqrtm", "A", "B", "principal square root of a matrix", 1, 1, estimated<sqrtm>},
    {"logm", "A", "B", "principal logarithm of a matrix", 1, 1, estimated<logm>},
    {"powm", "A, p", "B", "a real power of a matrix", 2, 2, powm},
    {"norm", "A [, \"one\"]", "y", "norm: \"fro\" (root of the sum of squares, default), \"one\", \"inf\" or \"max\"",
     1, 2, norm},
    {"cond", "A", "y", "condition number in the one norm", 1, 1, cond},
    {"rcond", "A", "y", "1 / cond(A), 0 of a singular matrix", 1, 1, rcond},
});

}  // namespace

std::span<const Function> linear_functions() { return kLinearFunctions; }

}  // namespace cli::repl
