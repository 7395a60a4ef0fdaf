// Eigenvalues of general matrices and pencils, with approximate eigenvectors X: bounds by Gerschgorin's discs of
// (B X)^-1 A X. Where discs overlap, an invariant subspace for each set of eigenvalues takes the place of eigenvectors.
#include <algorithm>
#include <utility>

#include "src/dense/householder.h"
#include "src/proven/block_diagonal.h"
#include "src/proven/distinct.h"
#include "src/proven/rank.h"
#include "src/proven/spectrum.h"
#include "tesk2mp/proven_spectra.h"

namespace tesk::proven {
namespace {

using Matrix = OneBasedMatrix<Complex>;

template <class T>
Integer checked_eigenvalues(Integer n, T* a, Integer lda, QuarnFloat* aerror, Integer ldaerror, Complex* w, Complex* x,
                            Integer ldx, QuarnFloat* error, Integer* count) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong =
      first_wrong({{n < 0, 1}, {lda < least, 3}, {ldaerror != 0 && ldaerror < least, 5}, {ldx < least, 8}});
  if (wrong != 0) {
    return -wrong;
  }
  const Pencil<T> pencil{n, {a, lda}, {aerror, ldaerror}, {a, lda}, {nullptr, 0}, false};
  auto discs = std::vector<Disc>(std::size_t(n));
  for (Integer j = 0; j < n; ++j) {
    discs[std::size_t(j)].value = w[j];
  }
  if (const auto bounds = distance_from_diagonal(pencil, {x, ldx}, w)) {
    discs = Spectrum(n, w, *bounds).discs();
  }
  resolve(discs, std::is_same_v<T, QuarnFloat>);
  return deliver(std::move(discs), w, error, count);
}

/// Eigenvalues, with vectors and their bounds.
struct Enclosure {
  explicit Enclosure(Integer n) : discs(std::size_t(n)), of_vectors(std::size_t(n), QuarnBound::infinity()) {}

  QuarnBound largest_error() const {
    QuarnBound largest;
    for (const Disc& disc : discs) {
      largest = std::max(largest, disc.error);
    }
    return largest;
  }
  bool are_apart() const {
    return std::all_of(discs.begin(), discs.end(),
                       [](const Disc& disc) { return disc.count == 1 && disc.error.is_finite(); });
  }

  std::vector<Disc> discs;
  std::vector<Members> sets;  // connected discs
  std::vector<QuarnBound> of_vectors;
};

/// A bound of the distance of column i of X, whose elements have these sizes, from an eigenvector of norm 1, whose
/// coefficients of the other columns are within `coefficients`.
QuarnBound vector_error(Integer n, Integer i, Matrix x, const BoundMatrix& sizes,
                        const std::vector<QuarnBound>& coefficients) {
  std::vector<QuarnBound> errors;
  QuarnBound squares;
  Range range;
  for (Integer k = 1; k <= n; ++k) {
    QuarnBound error;
    for (Integer j = 1; j <= n; ++j) {
      error += j == i ? QuarnBound() : sizes(k, j) * coefficients[std::size_t(j)];
    }
    errors.push_back(error);
    squares += error * error;
    range.take(x(k, i));
  }
  // |u - x| <= (|v - x| + h |x|) / (1 - h) for u = v / |v|, where h bounds ||v| - 1|.
  const QuarnBound norm = defect(n, 1, x.from(1, i), range) + sqrt(squares);
  const QuarnBound stretch = over_one_minus(norm);
  QuarnBound largest;
  for (Integer k = 1; k <= n; ++k) {
    largest = std::max(largest, (errors[std::size_t(k - 1)] + norm * sizes(k, i)) * stretch);
  }
  return largest;
}

Enclosure enclosure(Integer n, const Spectrum& spectrum, Matrix x, bool pairs, bool wants_vectors) {
  Enclosure result(n);
  result.discs = spectrum.discs();
  BoundMatrix sizes(wants_vectors ? n : 0);
  for (Integer j = 1; wants_vectors && j <= n; ++j) {
    for (Integer k = 1; k <= n; ++k) {
      sizes(k, j) = QuarnBound(x(k, j));
    }
  }
  for (Integer i = 1; wants_vectors && i <= n; ++i) {
    const auto coefficients = spectrum.coefficients(i);
    if (std::all_of(coefficients.begin() + 1, coefficients.end(), [](const auto& z) { return z.is_finite(); })) {
      result.of_vectors[std::size_t(i - 1)] = vector_error(n, i, x, sizes, coefficients);
    }
    QuarnCheckInterrupt();
  }
  result.sets = resolve(result.discs, pairs);
  return result;
}

/// Where an exact matrix has as many distinct eigenvalues as there are connected sets, those of each set are equal: to
/// their mean.
void find_equal(Enclosure& found, const Spectrum& spectrum, const Pencil<Complex>& pencil, bool pairs) {
  const bool are_close = std::any_of(found.discs.begin(), found.discs.end(),
                                     [](const Disc& disc) { return disc.count > 1 && !disc.error.is_zero(); });
  if (!are_close || !pencil.of_a.is_zero() || pencil.has_b || !found.largest_error().is_finite()) {
    return;
  }
  QuarnBound radius;
  for (const Disc& disc : found.discs) {
    radius = std::max(radius, QuarnBound(disc.value) + disc.error);
  }
  if (!distinct_eigenvalues(pencil.n, pencil.a, pairs, radius, Integer(found.sets.size()))) {
    return;
  }
  std::vector<Disc> roots;
  for (const Members& members : found.sets) {
    Disc& root = roots.emplace_back(found.discs[members[0]]);
    root.equal = true;
    if (root.count > 1) {
      root.error = std::min(root.error, spectrum.mean_error(members, root.value));
    }
  }
  if (pairs) {
    make_real(roots);
  }
  for (std::size_t k = 0; k < roots.size(); ++k) {
    for (const std::size_t i : found.sets[k]) {
      found.discs[i] = roots[k];
    }
  }
}

/// An exact singular matrix has the eigenvalue 0. Where one set of discs alone can hold it, a set of one eigenvalue or
/// of equal ones, it is that.
template <class T>
void find_zero(Enclosure& found, const Pencil<T>& pencil) {
  const Members* only = nullptr;
  for (const Members& members : found.sets) {
    const Disc& disc = found.discs[members[0]];
    if (are_apart(disc.value, disc.error, Complex(), QuarnBound())) {
      continue;
    }
    if (only != nullptr || (disc.count > 1 && !disc.equal)) {
      return;
    }
    only = &members;
  }
  if (only == nullptr || !pencil.of_a.is_zero() || !found.discs[(*only)[0]].error.is_finite()) {
    return;
  }
  if (const auto rank = exact_rank(pencil.n, pencil.n, pencil.a); rank && *rank < pencil.n) {
    for (const std::size_t i : *only) {
      found.discs[i].value = Complex();
      found.discs[i].error = QuarnBound();
    }
  }
}

/// Columns of norm 1.
void normalise(Integer n, Matrix x) {
  for (Integer j = 1; j <= n; ++j) {
    if (const QuarnFloat size = sqrt(sum_of_squares(n, x.column(j))); size > 0) {
      scale(n, 1 / size, x.column(j));
    }
  }
}

/// By invariant subspaces of B^-1 A, scaled or not, at twice the digits: of a double eigenvalue half of them are left.
void improve_by_subspaces(Enclosure& known, const Pencil<Complex>& pencil, Matrix x, bool pairs, bool wants_vectors,
                          bool scaled) {
  const WorkingDigits scope(2 * QuarnDigits());
  auto form = block_diagonal_form(pencil, scaled);
  if (!form) {
    return;
  }
  const Integer n = pencil.n;
  const auto bounds = distance_from_blocks(pencil, form->x.view(), form->m.view(), form->blocks);
  if (!bounds) {
    return;
  }
  const Spectrum spectrum(n, form->m.view(), form->blocks, *bounds);
  Enclosure found = enclosure(n, spectrum, form->x.view(), pairs, wants_vectors);
  find_equal(found, spectrum, pencil, pairs);
  if (found.largest_error() < known.largest_error()) {
    known = std::move(found);
    for (Integer j = 1; j <= n; ++j) {
      copy(n, form->x.view().column(j), x.column(j));
    }
  }
}

void improve(Enclosure& known, const Pencil<Complex>& pencil, Matrix x, bool pairs, bool wants_vectors) {
  improve_by_subspaces(known, pencil, x, pairs, wants_vectors, true);
  // Where B^-1 A has zeros, roundings stand in their places: scaled by those, it has no digits left.
  if (pencil.has_b && !known.are_apart()) {
    improve_by_subspaces(known, pencil, x, pairs, wants_vectors, false);
  }
}

template <class T>
Integer checked_eigen(Integer n, T* a, Integer lda, QuarnFloat* aerror, Integer ldaerror, T* b, Integer ldb,
                      QuarnFloat* berror, Integer ldberror, Complex* w, Complex* x, Integer ldx, QuarnFloat* error,
                      QuarnFloat* xerror, Integer* count, Integer* distinct) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{n < 0, 1},
                                     {lda < least, 3},
                                     {ldaerror != 0 && ldaerror < least, 5},
                                     {ldb != 0 && ldb < least, 7},
                                     {ldberror != 0 && ldberror < least, 9},
                                     {ldx < least, 12}});
  if (wrong != 0) {
    return -wrong;
  }
  constexpr bool kPairs = std::is_same_v<T, QuarnFloat>;
  const bool has_b = ldb != 0;
  const Pencil<T> pencil{n,    {a, lda}, {aerror, ldaerror}, {has_b ? b : a, has_b ? ldb : lda}, {berror, ldberror},
                         has_b};
  const Matrix vectors(x, ldx);
  const bool wants_vectors = xerror != nullptr;
  Range range;
  range.take(n, n, pencil.a);
  range.take(n, n, pencil.b);
  Enclosure known(n);
  for (Integer j = 0; j < n; ++j) {
    known.discs[std::size_t(j)].value = w[j];
  }
  if (range.is_finite()) {
    normalise(n, vectors);
    if (const auto bounds = distance_from_diagonal(pencil, vectors, w)) {
      known = enclosure(n, Spectrum(n, w, *bounds), vectors, kPairs, wants_vectors);
    }
    if (!known.are_apart()) {
      if constexpr (kPairs) {
        ComplexPencil same(pencil);
        improve(known, same.view(), vectors, true, wants_vectors);
      } else {
        improve(known, pencil, vectors, false, wants_vectors);
      }
    }
    find_zero(known, pencil);
  }
  for (Integer j = 0; wants_vectors && j < n; ++j) {
    xerror[j] = known.of_vectors[std::size_t(j)].value();
  }
  return deliver(std::move(known.discs), w, error, count, distinct);
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_eigenvalues_(Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                   Complex* w, Complex* x, Integer ldx, QuarnFloat* error, Integer* count,
                                   Integer* info) {
  *info = tesk::proven::checked_eigenvalues(n, a, lda, aerror, ldaerror, w, x, ldx, error, count);
}
void QuarnMPX_zproven_eigenvalues_(Integer n, Complex* a, Integer lda, QuarnFloat* aerror, Integer ldaerror, Complex* w,
                                   Complex* x, Integer ldx, QuarnFloat* error, Integer* count, Integer* info) {
  *info = tesk::proven::checked_eigenvalues(n, a, lda, aerror, ldaerror, w, x, ldx, error, count);
}

void QuarnMPX_dproven_eigen_(Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror, Integer ldaerror, QuarnFloat* b,
                             Integer ldb, QuarnFloat* berror, Integer ldberror, Complex* w, Complex* x, Integer ldx,
                             QuarnFloat* error, QuarnFloat* xerror, Integer* count, Integer* distinct, Integer* info) {
  *info = tesk::proven::checked_eigen(n, a, lda, aerror, ldaerror, b, ldb, berror, ldberror, w, x, ldx, error, xerror,
                                      count, distinct);
}
void QuarnMPX_zproven_eigen_(Integer n, Complex* a, Integer lda, QuarnFloat* aerror, Integer ldaerror, Complex* b,
                             Integer ldb, QuarnFloat* berror, Integer ldberror, Complex* w, Complex* x, Integer ldx,
                             QuarnFloat* error, QuarnFloat* xerror, Integer* count, Integer* distinct, Integer* info) {
  *info = tesk::proven::checked_eigen(n, a, lda, aerror, ldaerror, b, ldb, berror, ldberror, w, x, ldx, error, xerror,
                                      count, distinct);
}
}
