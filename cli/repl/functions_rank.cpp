// Functions that need the rank of a matrix. Where it is not proven it is that of the tolerance for roundings.
#include <algorithm>

#include "cli/io/number_text.h"
#include "cli/io/result.h"
#include "cli/repl/fault.h"
#include "cli/repl/linear_algebra.h"
#include "tesk2mp/proven_pseudo_inverse.hpp"

namespace cli::repl {

std::optional<std::size_t> proven_rank(const Known& a) {
  if (a.is_exact()) {
    return is_real(a) ? proven::rank(real_array(a.array())) : proven::rank(a.array());
  }
  return with_bounded(a, 12, [](const auto& matrix) { return proven::rank(matrix); });
}

namespace {

/// An estimate, and the rank that it takes the first argument to have.
struct RankedEstimate {
  Array values;
  std::size_t rank = 0;
};
using RankedFunction = RankedEstimate (*)(const Arguments& arguments);

/// proven_or_estimated(), where an estimate of another rank than the proven one, or without numbers, is none.
template <RankedFunction kFunction>
Knowns proven_or_ranked(Evaluation& evaluation, const Arguments& arguments, const Knowns& found) {
  if (is_bounded(found)) {
    return found;
  }
  const Array& a = arguments.array(0);
  require_many_digits(evaluation, a);
  const std::optional<std::size_t> rank = proven_rank(arguments.known(0));
  const RankedEstimate estimate = kFunction(arguments);
  const Complex* const values = estimate.values.data();
  const bool is_finite =
      std::all_of(values, values + size(estimate.values), [](const Complex& z) { return isfinite(z); });
  if (!is_finite || (rank && *rank != estimate.rank)) {
    if (!evaluation.is_last) {
      throw Undecided();
    }
    throw tesk2mp::NumericalFailure("RANK", 1, 0,
                                    std::string(evaluation.name) + " is not known with " + digits_text() +
                                        (rank ? "; the rank is " + std::to_string(*rank) + ", proven" : ""),
                                    {});
  }
  evaluation.unproven = no_proof_found(evaluation.name);
  if (!rank) {
    evaluation.unproven.taken = std::string(evaluation.name) + " takes the rank to be " +
                                std::to_string(estimate.rank) + ", by the tolerance " +
                                brief(tesk2mp::detail::rank_tolerance(a.rows(), a.columns()));
  }
  return {Known(estimate.values)};
}

template <class Found>
RankedEstimate ranked(const Found& found) {
  return {as_array(found.x), found.rank};
}

RankedEstimate estimated_lstsq(const Arguments& arguments) {
  const Array& a = arguments.array(0);
  const Array right = right_side(arguments, a.rows()).array();
  if (is_real(a) && is_real(right)) {
    return ranked(tesk2mp::minimum_norm(real_array(a), real_array(right)));
  }
  return ranked(tesk2mp::minimum_norm(a, right));
}

RankedEstimate estimated_pinv(const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 4, [](const auto& a) {
    return ranked(tesk2mp::minimum_norm(a, std::decay_t<decltype(a)>::identity(a.rows())));
  });
}

RankedEstimate estimated_null(const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 3, [](const auto& a) {
    const auto basis = tesk2mp::null_space(a);
    return RankedEstimate{as_array(basis), a.columns() - basis.columns()};
  });
}

RankedEstimate estimated_rank(const Arguments& arguments) {
  return with_real_or_complex(arguments.array(0), 3, [](const auto& a) {
    const std::size_t rank = tesk2mp::matrix_rank(a);
    return RankedEstimate{number(QuarnFloat(rank)), rank};
  });
}

}  // namespace

Knowns lstsq(Evaluation& evaluation, const Arguments& arguments) {
  const Known& a = arguments.known(0);
  require_finite(arguments, false);
  const Known b = right_side(arguments, arguments.array(0).rows());
  const Progress progress = factorising(a.array(), is_real(a) && is_real(b), 12);
  const auto solved = [](const auto& matrix, const auto& right) { return known(proven::minimum_norm(matrix, right)); };
  const bool both_exact = a.is_exact() && b.is_exact();
  const bool both_real = is_real(a) && is_real(b);
  return proven_or_ranked<estimated_lstsq>(
      evaluation, arguments,
      {both_exact ? (both_real ? solved(real_array(a.array()), real_array(b.array())) : solved(a.array(), b.array()))
       : a.is_exact()
           ? (both_real ? solved(real_array(a.array()), real_bounds(b)) : solved(a.array(), complex_bounds(b)))
       : both_real ? solved(real_bounds(a), real_bounds(b))
                   : solved(complex_bounds(a), complex_bounds(b))});
}

Knowns pinv(Evaluation& evaluation, const Arguments& arguments) {
  require_finite(arguments, false);
  return proven_or_ranked<estimated_pinv>(
      evaluation, arguments,
      {with_bounded(arguments.known(0), 12, [](const auto& a) { return known(proven::pseudo_inverse(a)); })});
}

Knowns null(Evaluation& evaluation, const Arguments& arguments) {
  require_finite(arguments, false);
  return proven_or_ranked<estimated_null>(
      evaluation, arguments,
      {with_bounded(arguments.known(0), 12, [](const auto& a) { return known(proven::null_space(a)); })});
}

Knowns matrix_rank(Evaluation& evaluation, const Arguments& arguments) {
  require_finite(arguments, false);
  const auto rank = proven_rank(arguments.known(0));
  return rank ? Knowns{Known(number(QuarnFloat(*rank)))}
              : proven_or_ranked<estimated_rank>(evaluation, arguments, {known(Number{BoundedReal(), BoundedReal()})});
}

}  // namespace cli::repl
