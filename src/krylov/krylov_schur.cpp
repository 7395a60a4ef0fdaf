// Krylov-Schur iteration: G. W. Stewart, A Krylov-Schur algorithm for large eigenproblems, SIAM J. Matrix Anal. Appl.
// 23 (2001); for Hermitian matrices it is the thick restart of Lanczos' method.
//
// 1. The basis V grows to its most columns: A V = V B + v b^H. Each new vector is made orthogonal to all others.
// 2. B is brought into Schur form, the wanted eigenvalues first; b with it.
// 3. The last columns are cut off, and v taken as the next vector.
#include "src/krylov/krylov_schur.h"

#include <numeric>

#include "quarn/complex.h"
#include "src/dense/schur_form.h"
#include "src/dense/schur_order.h"
#include "src/dense/tridiagonal.h"
#include "src/krylov/basis.h"

namespace tesk {
namespace {

/// How much an eigenvalue is wanted. Of a real matrix the two of a pair are wanted alike.
template <class T>
QuarnFloat preference(Wanted wanted, const Complex& value) {
  const auto height = [&] { return std::is_same_v<T, Complex> ? value.im : fabs(value.im); };
  switch (wanted) {
    case Wanted::largest_size:
      return quarn::abs(value);
    case Wanted::smallest_size:
      return -quarn::abs(value);
    case Wanted::smallest_real:
      return -value.re;
    case Wanted::largest_imaginary:
      return height();
    case Wanted::smallest_imaginary:
      return -height();
    default:
      return value.re;
  }
}

template <class T>
class KrylovSchur {
 public:
  explicit KrylovSchur(const KrylovProblem<T>& problem)
      : problem_(problem),
        most_(std::min(problem.basis, problem.n)),
        v_(problem.n, most_ + 1),
        b_(most_ + 1, most_ + 1),
        s_(most_, most_),
        q_(most_, most_),
        residual_row_(std::size_t(most_)) {
    v_.begin(problem.start);
  }

  KrylovSpace<T> result(KrylovEnd end) {
    const Integer size = end == KrylovEnd::failed ? 0 : whole(problem_.count);
    KrylovSpace<T> space{OwnMatrix<T>(problem_.n, size), OwnMatrix<T>(size, size), size, v_.norm(), products_, end};
    if (size > 0) {
      v_.rotate(size_, size, q_.view());
    }
    copy_matrix(problem_.n, size, v_.view(), space.v.view());
    copy_matrix(size, size, s_.view(), space.s.view());
    return space;
  }

  bool expand(Integer kept) {
    const OneBasedMatrix<T> b = b_.view();
    for (Integer j = kept + 1; j <= most_; ++j) {
      QuarnCheckInterrupt();
      problem_.multiply(v_.vector(j).first(), v_.vector(j + 1).first());
      ++products_;
      size_ = j;
      std::vector<T> parts(static_cast<std::size_t>(j));
      coupling_ = v_.couple(j, parts.data());
      if (!isfinite(coupling_) || (problem_.limit != 0 && v_.norm() > problem_.limit)) {
        return false;
      }
      for (Integer i = 1; i <= j; ++i) {
        b(i, j) = std::move(parts[std::size_t(i) - 1]);
        if (problem_.hermitian) {
          b(j, i) = conjugate(b(i, j));
        } else if (i < j) {
          b(j + 1, i) = T();
        }
      }
      b(j + 1, j) = T(coupling_);
    }
    return true;
  }

  bool decompose() {
    if (!(problem_.hermitian ? diagonalise() : form_ordered_schur())) {
      return false;
    }
    for (Integer i = 1; i <= size_; ++i) {
      residual_row_[std::size_t(i) - 1] = q_.view()(size_, i);
      multiply_by(residual_row_[std::size_t(i) - 1], coupling_);
    }
    return true;
  }

  Integer size() const { return size_; }
  bool is_complete() const { return size_ == problem_.n; }
  bool both_ends() const { return problem_.wanted == Wanted::both_ends; }
  Integer products() const { return products_; }
  Integer whole(Integer rows) {
    return rows < size_ && !problem_.hermitian && !is_zero(s_.view()(rows + 1, rows)) ? rows + 1
                                                                                      : std::min(rows, size_);
  }
  QuarnFloat residual(Integer i) { return size_of(residual_row_[std::size_t(i) - 1]); }
  QuarnFloat bound(Integer i) {
    const QuarnFloat rounding = 10 * epsilon() * v_.norm();
    const QuarnFloat asked = problem_.tol * (problem_.each ? quarn::abs(value(i)) : v_.norm());
    return std::max(asked, rounding);
  }
  QuarnFloat key(Integer i) {
    const QuarnFloat most = preference<T>(problem_.wanted, value(i));
    return both_ends() && i % 2 == 0 ? -most : most;
  }

  void restart(Integer kept, bool fresh) {
    v_.rotate(size_, kept, q_.view());
    const OneBasedMatrix<T> b = b_.view();
    for (Integer j = 1; j <= kept; ++j) {
      copy(kept, s_.view().column(j), b.column(j));
      // Above the last row the adjoint comes from the next product.
      b(kept + 1, j) = fresh ? T() : residual_row_[std::size_t(j) - 1];
    }
    v_.resume(size_, kept, fresh);
  }

 private:
  Complex value(Integer row) {
    if (problem_.hermitian) {
      return Complex(s_.view()(row, row));
    }
    const Integer first = row > 1 && !is_zero(s_.view()(row, row - 1)) ? row - 1 : row;
    const bool pair = first < size_ && !is_zero(s_.view()(first + 1, first));
    return block_value(s_.view(), first, pair ? 2 : 1);
  }

  bool diagonalise() {
    OwnMatrix<T> vectors(size_, size_);
    copy_matrix(size_, size_, b_.view(), vectors.view());
    std::vector<QuarnFloat> values(static_cast<std::size_t>(size_));
    if (hermitian_eigen<T>(true, Triangle::lower, size_, vectors.view(), values.data()) != 0) {
      return false;
    }
    std::vector<Integer> order(values.size());
    std::iota(order.begin(), order.end(), 0);
    const auto most = [&](Integer i) { return preference<T>(problem_.wanted, Complex(values[std::size_t(i)])); };
    std::stable_sort(order.begin(), order.end(), [&](Integer i, Integer j) { return most(i) > most(j); });
    if (both_ends()) {
      const std::vector<Integer> descending = order;
      for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = i % 2 == 0 ? descending[i / 2] : descending[descending.size() - 1 - i / 2];
      }
    }
    for (Integer j = 1; j <= size_; ++j) {
      const Integer from = order[std::size_t(j) - 1];
      fill(size_, T(), s_.view().column(j));
      s_.view()(j, j) = T(values[std::size_t(from)]);
      copy(size_, vectors.view().column(from + 1), q_.view().column(j));
    }
    return true;
  }

  bool form_ordered_schur() {
    OwnMatrix<T> form(size_, size_);
    OwnMatrix<T> vectors(size_, size_);
    copy_matrix(size_, size_, b_.view(), form.view());
    // Squares of its elements are formed on the way.
    const OneBasedMatrix<QuarnFloat> numbers = parts(form.view());
    const Integer rows = kParts<T> * size_;
    const Integer exponent = far_exponent(rows, size_, numbers);
    multiply_by_power(rows, size_, numbers, -exponent);
    if (form_schur(size_, form.view(), vectors.view()) != 0) {
      return false;
    }
    SchurOrder<T> order(size_, form.view(), size_, vectors.view());
    const auto most = [&](Integer i) {
      return preference<T>(problem_.wanted, block_value(form.view(), i, order.size_at(i)));
    };
    for (Integer place = 1; place <= size_; place += order.size_at(place)) {
      Integer best = place;
      QuarnFloat best_key = most(place);
      for (Integer i = place + order.size_at(place); i <= size_; i += order.size_at(i)) {
        QuarnFloat candidate = most(i);
        if (candidate > best_key) {
          best = i;
          best_key = std::move(candidate);
        }
      }
      Integer to = place;
      if (best != place) {
        order.move(best, &to);  // as near as it comes: eigenvalues that cannot be exchanged are equal but for rounding
      }
    }
    multiply_by_power(rows, size_, numbers, exponent);
    copy_matrix(size_, size_, form.view(), s_.view());
    copy_matrix(size_, size_, vectors.view(), q_.view());
    return true;
  }

  const KrylovProblem<T>& problem_;
  Integer most_;
  Basis<T> v_;
  OwnMatrix<T> b_;
  OwnMatrix<T> s_;  // the form of B
  OwnMatrix<T> q_;
  std::vector<T> residual_row_;  // b^H Q
  QuarnFloat coupling_;
  Integer size_ = 0;
  Integer products_ = 0;
};

}  // namespace

template <class T>
KrylovSpace<T> krylov_schur(const KrylovProblem<T>& problem) {
  KrylovSchur<T> process(problem);
  const KrylovEnd end = thick_restart(process, problem.count, problem.most);
  return process.result(end);
}

template KrylovSpace<QuarnFloat> krylov_schur(const KrylovProblem<QuarnFloat>&);
template KrylovSpace<Complex> krylov_schur(const KrylovProblem<Complex>&);

}  // namespace tesk
