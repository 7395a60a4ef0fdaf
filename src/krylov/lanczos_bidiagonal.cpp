// Lanczos bidiagonalisation with thick restart: J. Baglama, L. Reichel, Augmented implicitly restarted Lanczos
// bidiagonalization methods, SIAM J. Sci. Comput. 27 (2005).
//
// 1. The bases grow: A V = U B with B upper triangular, A^H U = V B^H + v b^H. Each vector is made orthogonal to all
//    others of its kind.
// 2. B = X diag(s) Y^H, the wanted singular values first.
// 3. U X and V Y are cut, and v taken as the next vector.
#include "src/krylov/lanczos_bidiagonal.h"

#include "src/dense/qr.h"
#include "src/krylov/basis.h"
#include "tesk2mp/singular_values.h"

namespace tesk {
namespace {

Integer dense_svd(Integer n, OneBasedMatrix<QuarnFloat> a, QuarnFloat* s, OneBasedMatrix<QuarnFloat> u,
                  OneBasedMatrix<QuarnFloat> vt) {
  std::vector<QuarnFloat> work(static_cast<std::size_t>(6 * n));
  Integer info = 0;
  QuarnMPX_dgesvd_("S", "S", n, n, a.first(), n, s, u.first(), n, vt.first(), n, work.data(), Integer(work.size()),
                   &info, 1, 1);
  return info;
}
Integer dense_svd(Integer n, OneBasedMatrix<Complex> a, QuarnFloat* s, OneBasedMatrix<Complex> u,
                  OneBasedMatrix<Complex> vt) {
  std::vector<Complex> work(static_cast<std::size_t>(6 * n));
  Integer info = 0;
  QuarnMPX_zgesvd_("S", "S", n, n, a.first(), n, s, u.first(), n, vt.first(), n, work.data(), Integer(work.size()),
                   nullptr, &info, 1, 1);
  return info;
}

template <class T>
class LanczosBidiagonal {
 public:
  explicit LanczosBidiagonal(const SingularProblem<T>& problem)
      : problem_(problem),
        most_(std::min(problem.basis, problem.n)),
        u_(problem.m, most_),
        v_(problem.n, most_ + 1),
        b_(most_, most_),
        x_(most_, most_),
        y_(most_, most_),
        values_(std::size_t(most_)) {
    v_.begin(problem.start);
  }

  SingularSpace<T> result(KrylovEnd end) {
    const Integer count = end == KrylovEnd::failed ? 0 : problem_.count;
    SingularSpace<T> space{OwnMatrix<T>(problem_.m, count), OwnMatrix<T>(problem_.n, count), u_.norm(), products_, end};
    if (count > 0) {
      rotate(count);
      copy_matrix(problem_.m, count, u_.view(), space.u.view());
      copy_matrix(problem_.n, count, v_.view(), space.v.view());
    }
    return space;
  }

  bool expand(Integer kept) {
    const OneBasedMatrix<T> b = b_.view();
    for (Integer j = kept + 1; j <= most_; ++j) {
      QuarnCheckInterrupt();
      size_ = j;
      std::vector<T> parts(static_cast<std::size_t>(j));
      problem_.multiply(v_.vector(j).first(), u_.vector(j).first());
      QuarnFloat size = u_.orthogonalise(j, parts.data());
      if (!isfinite(size)) {
        return false;
      }
      if (size == 0) {
        u_.take_random(j);
      }
      for (Integer i = 1; i < j; ++i) {
        b(i, j) = std::move(parts[std::size_t(i) - 1]);
        b(j, i) = T();
      }
      b(j, j) = T(std::move(size));
      problem_.multiply_adjoint(u_.vector(j).first(), v_.vector(j + 1).first());
      products_ += 2;
      coupling_ = v_.couple(j, nullptr);
      if (!isfinite(coupling_)) {
        return false;
      }
    }
    return true;
  }

  bool decompose() {
    OwnMatrix<T> square(size_, size_);
    OwnMatrix<T> left(size_, size_);
    OwnMatrix<T> right(size_, size_);
    copy_matrix(size_, size_, b_.view(), square.view());
    std::vector<QuarnFloat> values(static_cast<std::size_t>(size_));
    if (dense_svd(size_, square.view(), values.data(), left.view(), right.view()) != 0) {
      return false;
    }
    for (Integer j = 1; j <= size_; ++j) {
      const Integer from = problem_.smallest ? size_ + 1 - j : j;
      values_[std::size_t(j) - 1] = values[std::size_t(from) - 1];
      copy(size_, left.view().column(from), x_.view().column(j));
      for (Integer i = 1; i <= size_; ++i) {
        y_.view()(i, j) = conjugate(right.view()(from, i));
      }
    }
    return true;
  }

  Integer size() const { return size_; }
  bool is_complete() const { return size_ == problem_.n; }
  bool both_ends() const { return false; }
  Integer products() const { return products_; }
  Integer whole(Integer count) const { return std::min(count, size_); }
  QuarnFloat residual(Integer i) { return coupling_ * size_of(x_.view()(size_, i)); }
  QuarnFloat bound(Integer /*i*/) { return std::max(problem_.tol, 10 * epsilon()) * u_.norm(); }
  QuarnFloat key(Integer i) const {
    const QuarnFloat& value = values_[std::size_t(i) - 1];
    return problem_.smallest ? -value : value;
  }

  void restart(Integer kept, bool fresh) {
    rotate(kept);
    for (Integer j = 1; j <= kept; ++j) {
      fill(kept, T(), b_.view().column(j));
      b_.view()(j, j) = T(values_[std::size_t(j) - 1]);
    }
    v_.resume(size_, kept, fresh);
  }

 private:
  void rotate(Integer kept) {
    u_.rotate(size_, kept, x_.view());
    v_.rotate(size_, kept, y_.view());
  }

  const SingularProblem<T>& problem_;
  Integer most_;
  Basis<T> u_;
  Basis<T> v_;
  OwnMatrix<T> b_;
  OwnMatrix<T> x_;
  OwnMatrix<T> y_;
  std::vector<QuarnFloat> values_;
  QuarnFloat coupling_;
  Integer size_ = 0;
  Integer products_ = 0;
};

}  // namespace

template <class T>
SingularSpace<T> lanczos_bidiagonal(const SingularProblem<T>& problem) {
  LanczosBidiagonal<T> process(problem);
  const KrylovEnd end = thick_restart(process, problem.count, problem.most);
  return process.result(end);
}

template SingularSpace<QuarnFloat> lanczos_bidiagonal(const SingularProblem<QuarnFloat>&);
template SingularSpace<Complex> lanczos_bidiagonal(const SingularProblem<Complex>&);

}  // namespace tesk
