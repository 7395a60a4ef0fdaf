// Linear equations, factorisations, eigenvalues, norms.
#include <algorithm>
#include <array>

#include "cli/repl/functions.h"
#include "cli/system/progress.h"

namespace cli::repl {

namespace {

using Values = std::vector<Value>;

// Real matrices take the real routines, at a quarter of the cost: body(matrix) for either. The work is told in
// factorisations.
template <class Body>
auto with_real_or_complex(const Array& a, double factorisations, const Body& body) {
  const double order = double(std::min(a.rows(), a.columns()));
  const Progress progress = Progress::estimated("factorising", factorisations * factorisation_cost(order, !is_real(a)));
  return is_real(a) ? body(real_array(a)) : body(a);
}

/// The second argument as columns of so many numbers; a vector in either direction.
Array right_side(const Arguments& arguments, std::size_t rows) {
  const Array& b = arguments.array(1);
  Array right = b.rows() == 1 && b.columns() == rows ? reshaped(elements(b), rows, 1) : b;
  if (right.rows() != rows) {
    throw Unfit("right-hand sides of " + std::to_string(rows) + " numbers are needed here, not " + shape(b), 1);
  }
  return right;
}

Values solve(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.square(0);
  return {operate("\\", a, right_side(arguments, a.rows()))};
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

Values chol(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 0.5,
                              [](const auto& a) { return Values{as_array(tesk2mp::Cholesky(a).factor())}; });
}

Values det(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 1,
                              [](const auto& a) { return Values{number(tesk2mp::determinant(a))}; });
}

Values scaled_det(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 1, [](const auto& a) {
    const auto scaled = tesk2mp::scaled_determinant(a);
    return Values{number(scaled.mantissa), number(QuarnFloat(scaled.exponent))};
  });
}

Values inv(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 4,
                              [](const auto& a) { return Values{as_array(tesk2mp::inverse(a))}; });
}

Values qr(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 3, [](const auto& a) {
    const tesk2mp::QR factors(a);
    return Values{as_array(factors.q()), as_array(factors.r())};
  });
}

Values lstsq(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.array(0);
  const Array right = right_side(arguments, a.rows());
  if (is_real(a) && is_real(right)) {
    return {as_array(tesk2mp::minimum_norm(real_array(a), real_array(right)).x)};
  }
  return {tesk2mp::minimum_norm(a, right).x};
}

Values pinv(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 4,
                              [](const auto& a) { return Values{as_array(tesk2mp::pseudo_inverse(a))}; });
}

Values null(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 3,
                              [](const auto& a) { return Values{as_array(tesk2mp::null_space(a))}; });
}

Values matrix_rank(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 3,
                              [](const auto& a) { return Values{number(QuarnFloat(tesk2mp::matrix_rank(a)))}; });
}

Values trace(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.square(0);
  Complex sum(0);
  for (std::size_t i = 0; i < a.rows(); ++i) {
    sum = sum + a(i, i);
  }
  return {number(sum)};
}

Progress eigenvalue_progress(const Array& a, bool vectors) {
  return Progress::estimated("eigenvalues", eigenvalue_cost(double(a.rows()), vectors));
}

Values eig(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.square(0);
  const Progress progress = eigenvalue_progress(a, false);
  return {column(is_real(a) ? tesk2mp::eigenvalues(real_array(a)) : tesk2mp::eigenvalues(a))};
}

Values eigvec(State& /*state*/, const Arguments& arguments) {
  const Array& a = arguments.square(0);
  const Progress progress = eigenvalue_progress(a, true);
  const tesk2mp::EigenSystem system = is_real(a) ? tesk2mp::eigen(real_array(a)) : tesk2mp::eigen(a);
  return {system.right, column(system.values)};
}

Values svd(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 8,
                              [](const auto& a) { return Values{column(tesk2mp::singular_values(a))}; });
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

Values powm(State& /*state*/, const Arguments& arguments) {
  const Complex power = arguments.number(1);
  if (power.im != 0) {
    throw Unfit("a real number is needed here", 1);
  }
  return matrix_function(arguments.square(0), 180,
                         [&](const auto& a) { return tesk2mp::fractional_matrix_power(a, power.re); });
}

QuarnFloat norm_of(const Array& a, std::size_t kind) {
  constexpr tesk2mp::Norm kKinds[] = {tesk2mp::Norm::frobenius, tesk2mp::Norm::one, tesk2mp::Norm::infinity,
                                      tesk2mp::Norm::largest};
  return with_real_or_complex(a, 0, [&](const auto& matrix) { return tesk2mp::norm(kKinds[kind], matrix); });
}

Values norm(State& /*state*/, const Arguments& arguments) {
  const std::size_t kind = arguments.count() == 2 ? arguments.choice(1, {"fro", "one", "inf", "max"}) : 0;
  return {number(norm_of(arguments.array(0), kind))};
}

Values cond(State& /*state*/, const Arguments& arguments) {
  constexpr std::size_t kOne = 1;
  const Array& a = arguments.square(0);
  const Array inverse = operate("\\", a, complex_array(RealArray::identity(a.rows())));
  return {number(norm_of(a, kOne) * norm_of(inverse, kOne))};
}

Values rcond(State& /*state*/, const Arguments& arguments) {
  return with_real_or_complex(arguments.square(0), 2,
                              [](const auto& a) { return Values{number(tesk2mp::reciprocal_condition(a))}; });
}

constexpr auto kLinearFunctions = std::to_array<Function>({
    {"solve", "A, b", "x", "the solution of A x = b, for a vector or each column (also A \\ b)", 2, 2, solve},
    {"lu", "A", "L, U, P", "factors with P A = L U", 1, 1, lu},
    {"chol", "A", "L", "lower triangle with A = L L', A positive definite", 1, 1, chol},
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
    {"rcond", "A", "y", "an estimate of 1 / cond(A) at a quarter of its cost", 1, 1, rcond},
});

}  // namespace

std::span<const Function> linear_functions() { return kLinearFunctions; }

}  // namespace cli::repl
