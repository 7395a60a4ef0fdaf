// Chosen eigenvalues and eigenvectors: xSTEBZ, xSTEIN, xSYEVX and xHEEVX of E. Anderson et al., LAPACK Users' Guide.
#include <algorithm>
#include <vector>

#include "src/dense/bisection.h"
#include "src/dense/guard_digits.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/tridiagonal.h"
#include "src/frame/constants.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk {
namespace {

bool is_range(const char* range) { return letter(range) == 'A' || letter(range) == 'V' || letter(range) == 'I'; }

Selection selection_of(const char* range, const QuarnFloat& vl, const QuarnFloat& vu, Integer il, Integer iu) {
  const char kind = letter(range);
  return {kind == 'V'   ? Selection::Kind::interval
          : kind == 'I' ? Selection::Kind::indices
                        : Selection::Kind::all,
          vl, vu, il, iu};
}

/// Whether the numbers of a range are wrong, each of its letter alone.
bool wrong_interval(const char* range, const QuarnFloat& vl, const QuarnFloat& vu) {
  return letter(range) == 'V' && !(vl < vu);
}
bool wrong_first(const char* range, Integer n, Integer il) {
  return letter(range) == 'I' && (il < 1 || il > std::max<Integer>(1, n));
}
bool wrong_last(const char* range, Integer n, Integer il, Integer iu) {
  return letter(range) == 'I' && (iu < std::min(n, il) || iu > n);
}

bool all_finite(Integer n, OneBasedVector<QuarnFloat> x) {
  for (Integer i = 1; i <= n; ++i) {
    if (!isfinite(x(i))) {
      return false;
    }
  }
  return true;
}

std::vector<QuarnFloat> multiplied(Integer n, const QuarnFloat* x, Integer exponent) {
  std::vector<QuarnFloat> copy(x, x + std::max<Integer>(0, n));
  copy.resize(std::size_t(std::max<Integer>(1, n)));
  multiply_by_power(n, 1, {copy.data(), 1, 0}, exponent);
  return copy;
}

Integer checked_bisection(const char* range, const char* order, Integer n, const QuarnFloat& vl, const QuarnFloat& vu,
                          Integer il, Integer iu, const QuarnFloat& abstol, QuarnFloat* d, QuarnFloat* e, Integer* m,
                          Integer* nsplit, QuarnFloat* w, Integer* iblock, Integer* isplit) {
  const Integer wrong = first_wrong({{!is_range(range), 1},
                                     {letter(order) != 'B' && letter(order) != 'E', 2},
                                     {n < 0, 3},
                                     {wrong_interval(range, vl, vu), 5},
                                     {wrong_first(range, n, il), 6},
                                     {wrong_last(range, n, il, iu), 7}});
  if (wrong != 0) {
    return -wrong;
  }
  *m = 0;
  *nsplit = 0;
  if (n == 0) {
    return 0;
  }
  if (!all_finite(n, {d, 1}) || !all_finite(n - 1, {e, 1})) {
    return 1;
  }
  const Integer exponent = common_exponent(n, {d, 1}, {e, 1});
  std::vector<QuarnFloat> diagonal = multiplied(n, d, -exponent);
  std::vector<QuarnFloat> beside = multiplied(n - 1, e, -exponent);
  const QuarnFloat power(1, int(-exponent));
  ChosenEigenvalues chosen;
  {
    const WorkingDigits more(guarded_digits(n));
    chosen = bisect(selection_of(range, vl * power, vu * power, il, iu), n, {diagonal.data(), 1}, {beside.data(), 1},
                    abstol * power);
  }
  *m = Integer(chosen.w.size());
  *nsplit = Integer(chosen.split.size());
  std::copy(chosen.split.begin(), chosen.split.end(), isplit);
  std::vector<std::size_t> places = ascending(chosen);
  if (letter(order) == 'B') {
    std::sort(places.begin(), places.end());
  }
  const QuarnFloat back(1, int(exponent));
  for (std::size_t i = 0; i < places.size(); ++i) {
    w[i] = chosen.w[places[i]] * back;
    iblock[i] = chosen.block[places[i]];
  }
  return 0;
}

template <class T>
Integer checked_inverse_iteration(Integer n, QuarnFloat* d, QuarnFloat* e, Integer m, const QuarnFloat* w,
                                  const Integer* iblock, const Integer* isplit, T* z, Integer ldz, Integer* ifail) {
  if (const Integer wrong = first_wrong({{n < 0, 1}, {m < 0 || m > n, 4}}); wrong != 0) {
    return -wrong;
  }
  for (Integer j = 1; j < m; ++j) {
    if (iblock[j] < iblock[j - 1]) {
      return -6;
    }
    if (iblock[j] == iblock[j - 1] && w[j] < w[j - 1]) {
      return -5;
    }
  }
  std::vector<Integer> split;
  for (Integer row = 0; m > 0 && row < n; split.push_back(row)) {
    const Integer last = isplit[split.size()];
    if (last <= row || last > n) {
      return -7;
    }
    row = last;
  }
  if (m > 0 && (iblock[0] < 1 || std::size_t(iblock[m - 1]) > split.size())) {
    return -6;
  }
  if (ldz < std::max<Integer>(1, n)) {
    return -9;
  }
  if (m == 0) {
    return 0;
  }
  std::fill(ifail, ifail + m, 0);
  if (!all_finite(n, {d, 1}) || !all_finite(n - 1, {e, 1})) {
    return m;
  }
  const Integer exponent = common_exponent(n, {d, 1}, {e, 1});
  std::vector<QuarnFloat> diagonal = multiplied(n, d, -exponent);
  std::vector<QuarnFloat> beside = multiplied(n - 1, e, -exponent);
  const ChosenEigenvalues chosen{multiplied(m, w, -exponent), {iblock, iblock + m}, std::move(split)};
  const QuarnFloat known = 5 * epsilon();
  std::vector<Integer> failed;
  {
    const WorkingDigits more(guarded_digits(n));
    failed = inverse_iteration<T>(n, {diagonal.data(), 1}, {beside.data(), 1}, chosen, known, {z, ldz});
  }
  round_elements<T>(n, m, {z, ldz});
  std::copy(failed.begin(), failed.end(), ifail);
  return Integer(failed.size());
}

/// What the drivers are called with, beside the matrix.
struct Wanted {
  bool vectors;
  Selection selection;
  QuarnFloat tolerance;
};

/// Elements beside the diagonal that are as small as what the roundings of the reduction leave become zero: inverse
/// iteration cannot tell apart the vectors of a multiple eigenvalue that they couple. All together that is a fifth of a
/// rounding of the largest element before the guard digits.
void divide(const std::vector<QuarnFloat>& d, std::vector<QuarnFloat>& e) {
  QuarnFloat largest;
  for (std::size_t i = 0; i < d.size(); ++i) {
    largest = std::max(largest, std::max(fabs(d[i]), fabs(e[i])));
  }
  constexpr Integer kRoundings = 100;
  largest *= kRoundings * Integer(d.size()) * epsilon();
  for (QuarnFloat& element : e) {
    if (fabs(element) <= largest) {
      element = 0;
    }
  }
}

/// The eigenvalues that are wanted, with their eigenvectors in the first columns of Z.
template <class T>
struct SelectedEigen {
  std::vector<QuarnFloat> w;
  std::vector<Integer> failed;

  /// Of a Hermitian matrix that is given in full, near 1, and is destroyed.
  SelectedEigen(Wanted wanted, Integer n, OneBasedMatrix<T> full, OneBasedMatrix<T> z) {
    if (wanted.selection.kind == Selection::Kind::all && !(wanted.tolerance > 0)) {
      w.resize(std::size_t(n));
      unsolved = hermitian_eigen(wanted.vectors, Triangle::lower, n, full, w.data());
      for (Integer j = 1; wanted.vectors && unsolved == 0 && j <= n; ++j) {
        copy(n, full.column(j), z.column(j));
      }
      return;
    }
    std::vector<QuarnFloat> d(static_cast<std::size_t>(n));
    std::vector<QuarnFloat> e(d.size());
    std::vector<T> tau(d.size());
    tridiagonalise<T>(n, full, {d.data(), 1}, {e.data(), 1}, {tau.data(), 1});
    divide(d, e);
    const ChosenEigenvalues chosen = bisect(wanted.selection, n, {d.data(), 1}, {e.data(), 1}, wanted.tolerance);
    const Integer m = Integer(chosen.w.size());
    const std::vector<std::size_t> places = ascending(chosen);
    for (const std::size_t place : places) {
      w.push_back(chosen.w[place]);
    }
    if (!wanted.vectors || m == 0) {
      return;
    }
    OwnMatrix<T> own(n, m);
    const std::vector<Integer> not_found =
        inverse_iteration<T>(n, {d.data(), 1}, {e.data(), 1}, chosen, 5 * epsilon(), own.view());
    if (n > 1) {
      apply_reflectors(Side::left, Op::none, n - 1, m, n - 1, full.from(2, 1), tau.data(), own.view().from(2, 1));
    }
    for (std::size_t j = 0; j < places.size(); ++j) {
      const Integer place = Integer(places[j]) + 1;
      copy(n, own.view().column(place), z.column(Integer(j) + 1));
      if (std::find(not_found.begin(), not_found.end(), place) != not_found.end()) {
        failed.push_back(Integer(j) + 1);
      }
    }
  }

  Integer unsolved = 0;
};

template <class T>
Integer selected_eigen(Wanted wanted, Triangle triangle, Integer n, OneBasedMatrix<T> a, Integer* m, QuarnFloat* w,
                       OneBasedMatrix<T> z, Integer* ifail) {
  *m = 0;
  OwnMatrix<T> own = hermitian_copy(triangle, n, a);
  const OneBasedMatrix<QuarnFloat> numbers = parts(own.view());
  const Integer rows = n * kParts<T>;
  for (Integer j = 1; j <= n; ++j) {
    if (!all_finite(rows, numbers.column(j))) {
      return n;
    }
  }
  const Integer exponent = far_exponent(rows, n, numbers);
  multiply_by_power(rows, n, numbers, -exponent);
  const QuarnFloat power(1, int(-exponent));
  for (QuarnFloat* number : {&wanted.selection.low, &wanted.selection.high, &wanted.tolerance}) {
    *number *= power;
  }
  std::vector<Integer> failed;
  {
    const WorkingDigits more(guarded_digits(n));
    SelectedEigen<T> found(wanted, n, own.view(), z);
    if (found.unsolved != 0) {
      return found.unsolved;
    }
    *m = Integer(found.w.size());
    std::move(found.w.begin(), found.w.end(), w);
    multiply_by_power(*m, 1, {w, n}, exponent);
    failed = std::move(found.failed);
  }
  round_elements<QuarnFloat>(*m, 1, {w, n});
  if (wanted.vectors) {
    round_elements<T>(n, *m, z);
    std::fill(ifail, ifail + *m, 0);
    std::copy(failed.begin(), failed.end(), ifail);
  }
  return Integer(failed.size());
}

template <class T>
Integer checked_selected_eigen(const char* jobz, const char* range, const char* uplo, Integer n, T* a, Integer lda,
                               const QuarnFloat& vl, const QuarnFloat& vu, Integer il, Integer iu,
                               const QuarnFloat& abstol, Integer* m, QuarnFloat* w, T* z, Integer ldz, T* work,
                               Integer lwork, Integer least, Integer* ifail) {
  const bool wants_vectors = letter(jobz) == 'V';
  const Integer order = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{letter(jobz) != 'N' && !wants_vectors, 1},
                                     {!is_range(range), 2},
                                     {!is_triangle(uplo), 3},
                                     {n < 0, 4},
                                     {lda < order, 6},
                                     {n > 0 && wrong_interval(range, vl, vu), 8},
                                     {wrong_first(range, n, il), 9},
                                     {wrong_last(range, n, il, iu), 10},
                                     {ldz < (wants_vectors ? order : 1), 15},
                                     {lwork < least && lwork != -1, 17}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1) {
    return 0;
  }
  *m = 0;
  return n == 0 ? 0
                : selected_eigen<T>({wants_vectors, selection_of(range, vl, vu, il, iu), abstol}, triangle_of(uplo), n,
                                    {a, lda}, m, w, {z, ldz}, ifail);
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dstebz_(const char* range, const char* order, Integer n, QuarnFloat vl, QuarnFloat vu, Integer il,
                      Integer iu, QuarnFloat abstol, QuarnFloat* d, QuarnFloat* e, Integer* m, Integer* nsplit,
                      QuarnFloat* w, Integer* iblock, Integer* isplit, QuarnFloat* /*work*/, Integer* /*iwork*/,
                      Integer* info, int /*range_length*/, int /*order_length*/) {
  *info = tesk::checked_bisection(range, order, n, vl, vu, il, iu, abstol, d, e, m, nsplit, w, iblock, isplit);
}

void QuarnMPX_dstein_(Integer n, QuarnFloat* d, QuarnFloat* e, Integer m, QuarnFloat* w, Integer* iblock,
                      Integer* isplit, QuarnFloat* z, Integer ldz, QuarnFloat* /*work*/, Integer* /*iwork*/,
                      Integer* ifail, Integer* info) {
  *info = tesk::checked_inverse_iteration(n, d, e, m, w, iblock, isplit, z, ldz, ifail);
}

void QuarnMPX_zstein_(Integer n, QuarnFloat* d, QuarnFloat* e, Integer m, QuarnFloat* w, Integer* iblock,
                      Integer* isplit, Complex* z, Integer ldz, QuarnFloat* /*work*/, Integer* /*iwork*/,
                      Integer* ifail, Integer* info) {
  *info = tesk::checked_inverse_iteration(n, d, e, m, w, iblock, isplit, z, ldz, ifail);
}

void QuarnMPX_dsyevx_(const char* jobz, const char* range, const char* uplo, Integer n, QuarnFloat* a, Integer lda,
                      QuarnFloat vl, QuarnFloat vu, Integer il, Integer iu, QuarnFloat abstol, Integer* m,
                      QuarnFloat* w, QuarnFloat* z, Integer ldz, QuarnFloat* work, Integer lwork, Integer* /*iwork*/,
                      Integer* ifail, Integer* info, int /*jobz_length*/, int /*range_length*/, int /*uplo_length*/) {
  *info = tesk::checked_selected_eigen(jobz, range, uplo, n, a, lda, vl, vu, il, iu, abstol, m, w, z, ldz, work, lwork,
                                       std::max<Integer>(1, 8 * n), ifail);
}

void QuarnMPX_zheevx_(const char* jobz, const char* range, const char* uplo, Integer n, Complex* a, Integer lda,
                      QuarnFloat vl, QuarnFloat vu, Integer il, Integer iu, QuarnFloat abstol, Integer* m,
                      QuarnFloat* w, Complex* z, Integer ldz, Complex* work, Integer lwork, QuarnFloat* /*rwork*/,
                      Integer* /*iwork*/, Integer* ifail, Integer* info, int /*jobz_length*/, int /*range_length*/,
                      int /*uplo_length*/) {
  *info = tesk::checked_selected_eigen(jobz, range, uplo, n, a, lda, vl, vu, il, iu, abstol, m, w, z, ldz, work, lwork,
                                       std::max<Integer>(1, 2 * n), ifail);
}
}
