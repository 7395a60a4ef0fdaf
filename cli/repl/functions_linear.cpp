// Linear equations, factorisations, eigenvalues, norms, functions of matrices.
#include <algorithm>
#include <array>
#include <numeric>
#include <optional>

#include "cli/io/result.h"
#include "cli/repl/fault.h"
#include "cli/repl/linear_algebra.h"
#include "tesk2mp/proven_matrix_functions.hpp"
#include "tesk2mp/proven_pseudo_inverse.hpp"

namespace cli::repl {

namespace {

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

Knowns norm(Evaluation& /*evaluation*/, const Arguments& arguments) {
  constexpr tesk2mp::Norm kKinds[] = {tesk2mp::Norm::frobenius, tesk2mp::Norm::one, tesk2mp::Norm::infinity,
                                      tesk2mp::Norm::largest};
  (void)arguments.array(0);
  const std::size_t kind = arguments.count() == 2 ? arguments.choice(1, {"fro", "one", "inf", "max"}) : 0;
  return {
      known(with_matrix(arguments.known(0), [&](const auto& a) { return as_number(proven::norm(kKinds[kind], a)); }))};
}

// A diagonal that is real is exactly so.
Known with_real_diagonal(Known a) {
  for (std::size_t k = 0; !a.is_exact() && k < std::min(a.array().rows(), a.array().columns()); ++k) {
    a.errors[k * (a.array().rows() + 1)].im = QuarnBound();
  }
  return a;
}

Known permutation_of(const std::vector<std::size_t>& order) {
  Array permutation = make_array(order.size(), order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    permutation(i, order[i]) = 1;
  }
  return permutation;
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
      (i > j ? lower : upper)(i, j) = lu.factors()(i, j);
    }
  }
  std::vector<std::size_t> order(rows);
  std::iota(order.begin(), order.end(), 0);
  for (std::size_t i = 0; i < inner; ++i) {
    lower(i, i) = 1;
    std::swap(order[i], order[std::size_t(lu.pivots()[i])]);
  }
  return {lower, upper, permutation_of(order).value};
}

Values estimated_lu(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 1, [](const auto& a) { return lu_parts(a); });
}

Knowns lu(Evaluation& evaluation, const Arguments& arguments) {
  (void)arguments.array(0);
  return proven_or_estimated<estimated_lu>(
      evaluation, arguments, with_bounded(arguments.known(0), 2, [](const auto& a) {
        const auto factors = proven::lu(a);
        return Knowns{known(factors.l), known(factors.u), permutation_of(factors.rows)};
      }));
}

// Only where it is not proven that the matrix is not positive definite.
Values estimated_chol(State& /*state*/, const Arguments& arguments) {
  try {
    return with_real_or_complex(arguments.square(0), 0.5,
                                [](const auto& a) { return Values{as_array(tesk2mp::Cholesky(a).factor())}; });
  } catch (const tesk2mp::NumericalFailure&) {
    throw tesk2mp::NumericalFailure(
        "CHOL", 1, 0, "not proven: whether A is positive definite is not known with " + digits_text(), {});
  }
}

// Numbers that are not known exactly may be mirror images of each other as far as their bounds say.
void require_hermitian(const Arguments& arguments) {
  const Known& a = known_square(arguments);
  require_finite(arguments, true);
  if (const auto found = with_matrix(a, [](const auto& matrix) { return proven::unmirrored_element(matrix); })) {
    throw Unfit(std::string("not ") + (is_real(a) ? "symmetric" : "Hermitian") + ": " +
                    place(found->first, found->second) + " differs from its mirror image",
                0);
  }
}

Knowns chol(Evaluation& evaluation, const Arguments& arguments) {
  require_hermitian(arguments);
  const Known& a = arguments.known(0);
  return proven_or_estimated<estimated_chol>(
      evaluation, arguments,
      {with_real_diagonal(with_bounded(a, 2, [](const auto& matrix) { return known(proven::cholesky(matrix)); }))});
}

Values estimated_scaled_det(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 1, [](const auto& a) {
    const auto scaled = tesk2mp::scaled_determinant(a);
    return Values{number(scaled.mantissa), number(QuarnFloat(scaled.exponent))};
  });
}

Knowns scaled_det(Evaluation& evaluation, const Arguments& arguments) {
  return proven_or_estimated<estimated_scaled_det>(
      evaluation, arguments, with_bounded(known_square(arguments), 3, [](const auto& a) {
        const auto scaled = proven::scaled_determinant(a);
        return Knowns{known(as_number(scaled.mantissa)), Known(number(QuarnFloat(Integer(scaled.exponent))))};
      }));
}

Values estimated_qr(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 3, [](const auto& a) {
    const tesk2mp::QR factors(a);
    return Values{as_array(factors.q()), as_array(factors.r())};
  });
}

// Proven where the columns, or the first of them, are independent.
Knowns qr(Evaluation& evaluation, const Arguments& arguments) {
  (void)arguments.array(0);
  return proven_or_estimated<estimated_qr>(evaluation, arguments,
                                           with_bounded(arguments.known(0), 6, [](const auto& a) {
                                             const auto factors = proven::qr(a);
                                             return Knowns{known(factors.q), with_real_diagonal(known(factors.r))};
                                           }));
}

Values estimated_svdvec(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 60, [](const auto& a) {
    const auto system = tesk2mp::svd(a);
    return Values{as_array(system.u), column(system.values), as_array(system.v)};
  });
}

// Proven where the singular values are apart from each other and from 0.
Knowns svdvec(Evaluation& evaluation, const Arguments& arguments) {
  (void)arguments.array(0);
  return proven_or_estimated<estimated_svdvec>(
      evaluation, arguments, with_bounded(arguments.known(0), 200, [](const auto& a) {
        const auto system = proven::singular_system(a);
        return Knowns{known(system.u), known_column(system.values), known(system.v)};
      }));
}

Progress matrix_function_progress(const Array& a, double factorisations) {
  return Progress::estimated("matrix function", factorisations * factorisation_cost(double(a.rows()), !is_real(a)));
}

// A real matrix without a real result has a complex one.
template <class Body>
Values matrix_function(const Array& a, double factorisations, const Body& body) {
  const Progress progress = matrix_function_progress(a, factorisations);
  if (is_real(a)) {
    try {
      return {as_array(body(real_array(a)))};
    } catch (const tesk2mp::NumericalFailure&) {
      return {body(a)};
    }
  }
  return {body(a)};
}

Values estimated_expm(State& /*state*/, const Arguments& arguments) {
  return matrix_function(arguments.square(0), 60, [](const auto& a) { return tesk2mp::expm(a); });
}

Values estimated_sqrtm(State& /*state*/, const Arguments& arguments) {
  return matrix_function(arguments.square(0), 60, [](const auto& a) { return tesk2mp::sqrtm(a); });
}

Values estimated_logm(State& /*state*/, const Arguments& arguments) {
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

/// body(matrix), in so many factorisations.
template <PlainFunction kFunction, class Body>
Knowns proven_matrix_function(Evaluation& evaluation, const Arguments& arguments, double factorisations,
                              const Body& body) {
  const Known& a = known_square(arguments);
  Knowns found;
  {
    const Progress progress = matrix_function_progress(a.array(), factorisations);
    found = {with_matrix(a, [&](const auto& matrix) { return known(body(matrix)); })};
  }
  return proven_or_estimated<kFunction>(evaluation, arguments, found);
}

Knowns expm(Evaluation& evaluation, const Arguments& arguments) {
  return proven_matrix_function<estimated_expm>(evaluation, arguments, 300,
                                                [](const auto& a) { return proven::exponential(a); });
}

Knowns sqrtm(Evaluation& evaluation, const Arguments& arguments) {
  return proven_matrix_function<estimated_sqrtm>(evaluation, arguments, 200,
                                                 [](const auto& a) { return proven::square_root(a); });
}

Knowns logm(Evaluation& evaluation, const Arguments& arguments) {
  return proven_matrix_function<estimated_logm>(evaluation, arguments, 600,
                                                [](const auto& a) { return proven::logarithm(a); });
}

// Whole powers are products.
Knowns powm(Evaluation& evaluation, const Arguments& arguments) {
  constexpr Integer kLargest = 1'000'000;
  const Known& a = known_square(arguments);
  const Complex power = arguments.number(1);
  const Number exponent = element(arguments.known(1), 0);
  if (exponent.is_real() && exponent.is_exact() && is_whole_number(power.re) && fabs(power.re) <= kLargest) {
    return {operate("^", a, arguments.known(1))};
  }
  if (!exponent.is_real() || !isfinite(power.re)) {
    return estimated<estimated_powm>(evaluation, arguments);
  }
  return proven_matrix_function<estimated_powm>(evaluation, arguments, 900,
                                                [&](const auto& matrix) { return proven::power(matrix, exponent.re); });
}

Number condition(const Known& a) {
  return with_bounded(a, 8, [](const auto& matrix) { return as_number(proven::condition(matrix)); });
}

Knowns cond(Evaluation& /*evaluation*/, const Arguments& arguments) {
  return {known(condition(known_square(arguments)))};
}

Values estimated_rcond(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 2,
                              [](const auto& a) { return Values{number(tesk2mp::reciprocal_condition(a))}; });
}

Knowns rcond(Evaluation& evaluation, const Arguments& arguments) {
  const Known& a = known_square(arguments);
  const auto rank = arguments.are_exact() ? proven_rank(a) : std::nullopt;
  if (size(a.array()) == 0 || (arguments.are_exact() && !rank)) {
    return estimated<estimated_rcond>(evaluation, arguments);
  }
  if (rank && *rank < a.array().rows()) {
    return {Known(number(QuarnFloat()))};
  }
  return proven_or_estimated<estimated_rcond>(evaluation, arguments, {known(divide({proven::exact(1)}, condition(a)))});
}

constexpr auto kLinearFunctions = std::to_array<Function>({
    {"solve", "A, b", "x", "the solution of A x = b, for a vector or each column (also A \\ b)", 2, 2, solve},
    {"lu", "A", "L, U, P", "factors with P A = L U", 1, 1, lu},
    {"chol", "A", "L", "lower triangle with A = L L', A Hermitian and positive definite", 1, 1, chol},
    {"qr", "A", "Q, R", "factors with A = Q R, Q with orthonormal columns", 1, 1, qr},
    {"lstsq", "A, b", "x", "the shortest x of least norm(A x - b), A of any shape and rank", 2, 2, lstsq},
    {"pinv", "A", "B", "pseudo-inverse", 1, 1, pinv},
    {"null", "A", "V", "orthonormal columns that A takes to zero", 1, 1, null},
    {"matrix_rank", "A", "r", "rank of a matrix", 1, 1, matrix_rank},
    {"det", "A", "y", "determinant", 1, 1, det},
    {"scaled_det", "A", "d, e", "determinant d 10^e, however large or small", 1, 1, scaled_det},
    {"inv", "A", "B", "inverse", 1, 1, inv},
    {"trace", "A", "y", "sum of the diagonal", 1, 1, trace},
    {"eig", "A", "x", "eigenvalues", 1, 1, eig},
    {"eigvec", "A", "V, x", "eigenvectors, as columns, with the eigenvalues", 1, 1, eigvec},
    {"svd", "A", "s", "singular values, the largest first", 1, 1, svd},
    {"svdvec", "A", "U, s, V", "A = U diag(s) V' with orthonormal columns", 1, 1, svdvec},
    {"expm", "A", "B", "exponential of a matrix", 1, 1, expm},
    {"sqrtm", "A", "B", "principal square root of a matrix", 1, 1, sqrtm},
    {"logm", "A", "B", "principal logarithm of a matrix", 1, 1, logm},
    {"powm", "A, p", "B", "a real power of a matrix", 2, 2, powm},
    {"norm", "A [, \"one\"]", "y", "norm: \"fro\" (root of the sum of squares, default), \"one\", \"inf\" or \"max\"",
     1, 2, norm},
    {"cond", "A", "y", "condition number in the one norm", 1, 1, cond},
    {"rcond", "A", "y", "1 / cond(A), 0 of a singular matrix", 1, 1, rcond},
});

}  // namespace

std::span<const Function> linear_functions() { return kLinearFunctions; }

}  // namespace cli::repl
