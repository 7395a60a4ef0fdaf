// What the functions of linear algebra share.
#pragma once

#include <algorithm>
#include <optional>
#include <string>

#include "cli/repl/functions.h"
#include "cli/system/progress.h"

namespace cli::repl {

/// Progress of work on one matrix, counted in factorisations.
inline Progress factorising(const Array& a, bool is_real, double factorisations) {
  const double order = double(std::min(a.rows(), a.columns()));
  return Progress::estimated("factorising", factorisations * factorisation_cost(order, !is_real));
}

/// Real matrices take the real routines, at a quarter of the cost: body(matrix) for either, without bounds.
template <class Body>
auto with_real_or_complex(const Array& a, double factorisations, const Body& body) {
  const Progress progress = factorising(a, is_real(a), factorisations);
  return is_real(a) ? body(real_array(a)) : body(a);
}

/// The same with bounds.
template <class Body>
auto with_bounded(const Known& a, double factorisations, const Body& body) {
  const Progress progress = factorising(a.array(), is_real(a), factorisations);
  return with_matrix(a, body);
}

/// The first argument; throws Unfit unless it is a square matrix.
const Known& known_square(const Arguments& arguments);

/// The second argument as columns of so many numbers; a vector in either direction. Throws Unfit.
Known right_side(const Arguments& arguments, std::size_t rows);

/// "element (1, 2)" of indices from 0.
std::string place(std::size_t i, std::size_t j);

/// Throws Unfit unless the first argument is an array, and for its first element that is not finite. Numbers that are
/// not known exactly may be finite; they count as well if `even_unknown`.
void require_finite(const Arguments& arguments, bool even_unknown);

/// Throws Undecided where more digits may bring a proof; hardly where there are many already.
void require_many_digits(const Evaluation& evaluation, const Array& a);

bool is_bounded(const Knowns& values);

/// The results if they have bounds. Otherwise more digits may bring them; where those hardly will, estimates follow.
template <PlainFunction kFunction>
Knowns proven_or_estimated(Evaluation& evaluation, const Arguments& arguments, const Knowns& found) {
  if (is_bounded(found)) {
    return found;
  }
  require_many_digits(evaluation, arguments.array(0));
  return estimated<kFunction>(evaluation, arguments);
}

/// The rank by proof; no value where the working digits do not decide.
std::optional<std::size_t> proven_rank(const Known& a);

// The functions that need the rank. Where it is not proven it is that of the tolerance for roundings, and the
// evaluation says so.
Knowns lstsq(Evaluation& evaluation, const Arguments& arguments);
Knowns pinv(Evaluation& evaluation, const Arguments& arguments);
Knowns null(Evaluation& evaluation, const Arguments& arguments);
Knowns matrix_rank(Evaluation& evaluation, const Arguments& arguments);

}  // namespace cli::repl
