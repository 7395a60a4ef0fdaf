// The order of eigenvalues in a Schur form: Z. Bai, J. W. Demmel, On swapping diagonal blocks in real Schur form,
// Linear Algebra Appl. 186 (1993). TREXC and TRSEN of E. Anderson et al., LAPACK Users' Guide.
#include "src/dense/schur_order.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "src/dense/guard_digits.h"
#include "src/dense/norm_estimate.h"
#include "src/dense/qr.h"
#include "src/dense/schur_vectors.h"
#include "src/frame/constants.h"
#include "tesk2mp/schur_forms.h"

namespace tesk {
namespace {

/// A square of at most four rows, with room for that.
template <class T>
struct Small {
  static constexpr Integer kMost = 4;
  std::array<T, std::size_t(kMost) * kMost> store;
  OneBasedMatrix<T> view() { return {store.data(), kMost}; }
};

}  // namespace

template <class T>
bool SchurOrder<T>::move(Integer from, Integer* to) {
  Integer here = start_of(from);
  const Integer size = size_at(here);
  Integer target = start_of(*to);
  if (here < target) {
    // The block comes to stand where the one at the target ends.
    target += size_at(target) - size;
  }
  bool moved = true;
  while (moved && here < target) {
    const Integer next = size_at(here + size);
    moved = exchange(here, size, next);
    here += moved ? next : 0;
  }
  while (moved && here > target) {
    const Integer start = start_of(here - 1);
    moved = exchange(start, here - start, size);
    here = moved ? start : here;
  }
  *to = here;
  return moved;
}

/// The part of `first` rows from row i on changes its place with the `second` rows behind it. A part of two rows may be
/// two blocks, and become so on the way.
template <class T>
bool SchurOrder<T>::exchange(Integer i, Integer first, Integer second) {
  if (first == 0 || second == 0) {
    return true;
  }
  if (first == 2 && size_at(i) == 1) {
    return exchange(i + 1, 1, second) && exchange(i, 1, second);
  }
  if (second == 2 && size_at(i + first) == 1) {
    return exchange(i, first, 1) && exchange(i + 1, first, 1);
  }
  return swap_blocks(i, first, second);
}

template <class T>
bool SchurOrder<T>::swap_blocks(Integer i, Integer p, Integer q) {
  QuarnCheckInterrupt();
  const Integer both = p + q;
  const OneBasedMatrix<T> corner = t_.from(i, i);
  // A11 X - X A22 = A12; the columns of (-X; I) span what A22 belongs to.
  Small<T> basis;
  const OneBasedMatrix<T> v = basis.view();
  for (Integer j = 1; j <= q; ++j) {
    for (Integer k = 1; k <= both; ++k) {
      v(k, j) = k <= p ? corner(k, p + j) : T(k == p + j ? 1.0 : 0.0);
    }
  }
  solve_triangular_sylvester(-1, p, q, corner, corner.from(p + 1, p + 1), v);
  for (Integer j = 1; j <= q; ++j) {
    for (Integer k = 1; k <= p; ++k) {
      v(k, j) = -v(k, j);
    }
  }
  std::array<T, 2> tau;
  for (Integer j = 1; j <= q; ++j) {
    T& factor = tau[std::size_t(j - 1)];
    const OneBasedVector<T> x = v.column(j).from(j);
    factor = make_reflector(both - j + 1, x);
    x(1) = T(1.0);
    if (j < q) {
      reflect_left(both - j + 1, q - j, conjugate(factor), x, v.from(j, j + 1));
    }
  }
  const auto transform = [&](const auto& apply) {
    for (Integer j = 1; j <= q; ++j) {
      apply(j, both - j + 1, tau[std::size_t(j - 1)], v.column(j).from(j));
    }
  };
  // On a copy of the blocks alone first: what ought to be zero has to be small.
  Small<T> trial;
  const OneBasedMatrix<T> d = trial.view();
  QuarnFloat size;
  for (Integer j = 1; j <= both; ++j) {
    for (Integer k = 1; k <= both; ++k) {
      d(k, j) = k > p && j <= p ? T() : corner(k, j);
      size = std::max(size, magnitude(d(k, j)));
    }
  }
  transform([&](Integer j, Integer m, const T& factor, OneBasedVector<T> x) {
    reflect_left(m, both, conjugate(factor), x, d.from(j, 1));
    reflect_right(m, both, factor, x, d.from(1, j));
  });
  const QuarnFloat most = 10 * kBase * epsilon() * size;
  for (Integer j = 1; j <= q; ++j) {
    for (Integer k = q + 1; k <= both; ++k) {
      if (!(magnitude(d(k, j)) <= most)) {
        return false;
      }
    }
  }
  const T upper = corner(1, 1);
  const T lower = corner(both, both);
  transform([&](Integer j, Integer m, const T& factor, OneBasedVector<T> x) {
    const Integer row = i + j - 1;
    reflect_left(m, n_ - i + 1, conjugate(factor), x, t_.from(row, i));
    reflect_right(m, i + both - 1, factor, x, t_.from(1, row));
    reflect_right(m, rows_, factor, x, q_.from(1, row));
  });
  for (Integer j = 1; j <= q; ++j) {
    fill(p, T(), corner.column(j).from(q + 1));
  }
  // The eigenvalues of blocks of one row stay as they are.
  if (q == 1) {
    corner(1, 1) = lower;
  } else {
    standardise(i);
  }
  if (p == 1) {
    corner(both, both) = upper;
  } else {
    standardise(i + q);
  }
  return true;
}

template <>
void SchurOrder<QuarnFloat>::standardise(Integer i) {
  const StandardForm form(t_(i, i), t_(i, i + 1), t_(i + 1, i), t_(i + 1, i + 1));
  if (i + 1 < n_) {
    rotate(n_ - i - 1, t_.row(i).from(i + 2), t_.row(i + 1).from(i + 2), form.cs, form.sn);
  }
  rotate(i - 1, t_.column(i), t_.column(i + 1), form.cs, form.sn);
  rotate(rows_, q_.column(i), q_.column(i + 1), form.cs, form.sn);
}
template <>
void SchurOrder<Complex>::standardise(Integer /*i*/) {}

template class SchurOrder<QuarnFloat>;
template class SchurOrder<Complex>;

namespace {

/// Does the work at more digits, and rounds T and Q.
template <class T, class Work>
Integer with_more_digits(Integer n, OneBasedMatrix<T> t, Integer rows, OneBasedMatrix<T> q, const Work& work) {
  Integer info = 0;
  {
    const WorkingDigits more(guarded_digits(n));
    info = work(SchurOrder<T>(n, t, rows, q));
  }
  round_elements(n, n, t);
  round_elements(rows, n, q);
  return info;
}

template <class T>
Integer checked_exchange(const char* compq, Integer n, T* t, Integer ldt, T* q, Integer ldq, Integer* ifst,
                         Integer* ilst) {
  const bool wants = letter(compq) == 'V';
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{!wants && letter(compq) != 'N', 1},
                                     {n < 0, 2},
                                     {ldt < least, 4},
                                     {ldq < (wants ? least : 1), 6},
                                     {(*ifst < 1 || *ifst > n) && n > 0, 7},
                                     {(*ilst < 1 || *ilst > n) && n > 0, 8}});
  if (wrong != 0 || n <= 1) {
    return -wrong;
  }
  const Integer rows = wants ? n : 0;
  T none{};
  return with_more_digits<T>(n, {t, ldt}, rows, with_storage(rows, OneBasedMatrix<T>(q, ldq), none),
                             [&](SchurOrder<T> order) {
                               *ifst = order.start_of(*ifst);
                               return order.move(*ifst, ilst) ? 0 : 1;
                             });
}

/// Eigenvalues of a Schur form.
void read_values(Integer n, OneBasedMatrix<QuarnFloat> t, QuarnFloat* wr, QuarnFloat* wi) {
  for (const BlockEigenvalue& value : block_eigenvalues(n, t)) {
    const auto at = std::size_t(value.row - 1);
    wr[at] = value.re;
    wi[at] = value.im;
    if (value.pair) {
      wr[at + 1] = value.re;
      wi[at + 1] = -value.im;
    }
  }
}
void read_values(Integer n, OneBasedMatrix<Complex> t, Complex* w) {
  for (Integer i = 1; i <= n; ++i) {
    w[i - 1] = t(i, i);
  }
}

/// 1 / sqrt(1 + |X|^2) of the solution X of T11 X - X T22 = T12: a lower bound of the reciprocal condition number of
/// the mean of the m selected eigenvalues.
template <class T>
QuarnFloat mean_condition(Integer n, Integer m, OneBasedMatrix<T> t) {
  OwnMatrix<T> own(m, n - m);
  const OneBasedMatrix<T> x = own.view();
  copy_matrix(m, n - m, t.from(1, m + 1), x);
  solve_triangular_sylvester(-1, m, n - m, t, t.from(m + 1, m + 1), x);
  QuarnFloat squares = 1;
  for (Integer j = 1; j <= n - m; ++j) {
    squares += sum_of_squares(m, x.column(j));
  }
  return 1 / sqrt(squares);
}

/// An estimate of the smallest singular value of X -> T11 X - X T22.
template <class T>
QuarnFloat separation(Integer n, Integer m, OneBasedMatrix<T> t) {
  const Integer rest = n - m;
  OwnMatrix<T> first(m, m);
  OwnMatrix<T> second(rest, rest);
  const auto mirror = [](Integer order, OneBasedMatrix<T> a, OneBasedMatrix<T> b) {
    copy_matrix(order, order, a.antitransposed(order), b);
    for (Integer j = 1; j <= order; ++j) {
      conjugate_vector(order, b.column(j));
    }
  };
  mirror(m, t, first.view());
  mirror(rest, t.from(m + 1, m + 1), second.view());
  const QuarnFloat inverse = estimated_one_norm<T>(m * rest, [&](Op op, OneBasedVector<T> x) {
    const OneBasedMatrix<T> c(x.first(), m);
    if (op == Op::none) {
      solve_triangular_sylvester(-1, m, rest, t, t.from(m + 1, m + 1), c);
    } else {
      solve_triangular_sylvester(-1, m, rest, first.view(), second.view(), c.reversed(m, rest));
    }
    return true;
  });
  return 1 / inverse;
}

template <class T>
QuarnFloat one_norm_of_form(Integer n, OneBasedMatrix<T> t) {
  QuarnFloat largest;
  for (Integer j = 1; j <= n; ++j) {
    QuarnFloat sum;
    for (Integer i = 1; i <= std::min(n, j + 1); ++i) {
      sum += far_modulus(t(i, j));
    }
    largest = std::max(largest, sum);
  }
  return largest;
}

template <class T, class... Values>
Integer checked_selection(const char* job, const char* compq, const Integer* select, Integer n, T* t, Integer ldt, T* q,
                          Integer ldq, Integer* m, QuarnFloat* s, QuarnFloat* sep, Values*... w) {
  const bool wants_mean = letter(job) == 'E' || letter(job) == 'B';
  const bool wants_gap = letter(job) == 'V' || letter(job) == 'B';
  const bool wants = letter(compq) == 'V';
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{!wants_mean && !wants_gap && letter(job) != 'N', 1},
                                     {!wants && letter(compq) != 'N', 2},
                                     {n < 0, 4},
                                     {ldt < least, 6},
                                     {ldq < (wants ? least : 1), 8}});
  if (wrong != 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> form(t, ldt);
  const Integer rows = wants ? n : 0;
  T none{};
  *m = 0;
  const Integer info =
      with_more_digits<T>(n, form, rows, with_storage(rows, OneBasedMatrix<T>(q, ldq), none), [&](SchurOrder<T> order) {
        // Blocks that have not been moved stand where they were, but that those before them have gone on.
        for (Integer k = 1; k <= n;) {
          const Integer size = order.size_at(k);
          if (select[k - 1] != 0 || (size == 2 && select[k] != 0)) {
            Integer to = *m + 1;
            if (!order.move(k, &to)) {
              return 1;
            }
            *m += size;
          }
          k += size;
        }
        return 0;
      });
  read_values(n, form, w...);
  const bool proper = *m > 0 && *m < n;
  if (wants_mean) {
    *s = info != 0 ? QuarnFloat() : proper ? mean_condition(n, *m, form) : QuarnFloat(1);
  }
  if (wants_gap) {
    *sep = info != 0 ? QuarnFloat() : proper ? separation(n, *m, form) : one_norm_of_form(n, form);
  }
  return info;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dtrexc_(const char* compq, Integer n, QuarnFloat* t, Integer ldt, QuarnFloat* q, Integer ldq,
                      Integer* ifst, Integer* ilst, QuarnFloat* /*work*/, Integer* info, int /*compq_length*/) {
  *info = tesk::checked_exchange(compq, n, t, ldt, q, ldq, ifst, ilst);
}

void QuarnMPX_ztrexc_(const char* compq, Integer n, Complex* t, Integer ldt, Complex* q, Integer ldq, Integer ifst,
                      Integer ilst, Integer* info, int /*compq_length*/) {
  *info = tesk::checked_exchange(compq, n, t, ldt, q, ldq, &ifst, &ilst);
}

void QuarnMPX_dtrsen_(const char* job, const char* compq, const Integer* select, Integer n, QuarnFloat* t, Integer ldt,
                      QuarnFloat* q, Integer ldq, QuarnFloat* wr, QuarnFloat* wi, Integer* m, QuarnFloat* s,
                      QuarnFloat* sep, QuarnFloat* /*work*/, Integer /*lwork*/, Integer* /*iwork*/, Integer /*liwork*/,
                      Integer* info, int /*job_length*/, int /*compq_length*/) {
  *info = tesk::checked_selection(job, compq, select, n, t, ldt, q, ldq, m, s, sep, wr, wi);
}

void QuarnMPX_ztrsen_(const char* job, const char* compq, const Integer* select, Integer n, Complex* t, Integer ldt,
                      Complex* q, Integer ldq, Complex* w, Integer* m, QuarnFloat* s, QuarnFloat* sep,
                      Complex* /*work*/, Integer /*lwork*/, Integer* info, int /*job_length*/, int /*compq_length*/) {
  *info = tesk::checked_selection(job, compq, select, n, t, ldt, q, ldq, m, s, sep, w);
}
}
