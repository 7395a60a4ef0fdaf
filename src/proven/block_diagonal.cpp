// C. A. Bavely, G. W. Stewart, An algorithm for computing reducing subspaces by block diagonalization, SIAM J. Numer.
// Anal. 16 (1979): the Schur form is made block diagonal from the top, and a block takes up the nearest of the other
// eigenvalues as long as the transformation has large elements.
#include "src/proven/block_diagonal.h"

#include "src/dense/complex_schur.h"
#include "src/dense/lu_solve.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/schur_order.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk::proven {
namespace {

using Matrix = OneBasedMatrix<Complex>;

class Diagonaliser {
 public:
  Diagonaliser(Integer n, Matrix t, Matrix x) : n_(n), t_(t), x_(x), most_(1, QuarnDigits() / 3 + 1) {}

  Blocks run() {
    Blocks blocks{1};
    for (Integer first = 1; first <= n_;) {
      Integer order = 1;
      while (first + order <= n_ && !separate(first, order)) {
        take_nearest(first, order);
      }
      first += order;
      blocks.push_back(first);
    }
    return blocks;
  }

 private:
  /// Makes what is right of the block zero, unless that takes large elements.
  bool separate(Integer first, Integer order) {
    QuarnCheckInterrupt();
    const Integer next = first + order;
    const Integer rest = n_ - next + 1;
    OwnMatrix<Complex> own(order, rest);
    const Matrix y = own.view();
    for (Integer j = 1; j <= rest; ++j) {
      for (Integer i = 1; i <= order; ++i) {
        y(i, j) = -t_(first + i - 1, next + j - 1);
      }
    }
    if (solve_triangular_sylvester(-1, order, rest, t_.from(first, first), t_.from(next, next), y)) {
      return false;
    }
    for (Integer j = 1; j <= rest; ++j) {
      for (Integer i = 1; i <= order; ++i) {
        if (!(magnitude(y(i, j)) <= most_)) {
          return false;
        }
      }
    }
    exact::multiply_matrices(Op::none, Op::none, n_, rest, order, Complex(1.0), x_.from(1, first), y, Complex(1.0),
                             x_.from(1, next));
    for (Integer j = next; j <= n_; ++j) {
      for (Integer i = first; i < next; ++i) {
        t_(i, j) = Complex();
      }
    }
    return true;
  }

  /// Moves the eigenvalue that is nearest to the mean of the block to its end. Where eigenvalues on the way are too
  /// close to be passed they are taken up as well.
  void take_nearest(Integer first, Integer& order) {
    Complex mean;
    for (Integer i = first; i < first + order; ++i) {
      mean = mean + t_(i, i);
    }
    multiply_by(mean, QuarnFloat(1) / order);
    const Integer next = first + order;
    Integer nearest = next;
    QuarnFloat least = modulus(t_(next, next) - mean);
    for (Integer i = next + 1; i <= n_; ++i) {
      if (QuarnFloat distance = modulus(t_(i, i) - mean); distance < least) {
        least = std::move(distance);
        nearest = i;
      }
    }
    Integer place = next;
    SchurOrder<Complex>(n_, t_, n_, x_).move(nearest, &place);
    order = place - first + 1;
  }

  Integer n_;
  Matrix t_;
  Matrix x_;
  QuarnFloat most_;
};

/// Columns of norm 1 where a block is one column, of sizes near 1 elsewhere. What M is multiplied by is exact.
void normalise(Integer n, Matrix x, Matrix m, const Blocks& blocks) {
  for (std::size_t block = 0; block + 1 < blocks.size(); ++block) {
    const Integer first = blocks[block];
    const Integer next = blocks[block + 1];
    for (Integer j = first; j < next; ++j) {
      const QuarnFloat size = sqrt(sum_of_squares(n, x.column(j)));
      if (!(size > 0)) {
        continue;
      }
      if (next - first == 1) {
        scale(n, 1 / size, x.column(j));
        continue;
      }
      const int exponent = -int(QuarnBound(size).exponent());
      const auto multiply = [](Complex& z, int by) { multiply_by_power(2, 1, parts(Matrix(&z, 1)), by); };
      for (Integer i = 1; i <= n; ++i) {
        multiply(x(i, j), exponent);
      }
      for (Integer i = first; i < next; ++i) {
        if (i != j) {
          multiply(m(i, j), exponent);
          multiply(m(j, i), -exponent);
        }
      }
    }
  }
}

}  // namespace

std::optional<BlockForm> block_diagonal_form(const Pencil<Complex>& pencil, bool scaled) {
  const Integer n = pencil.n;
  BlockForm form(n);
  const Matrix t = form.m.view();
  const Matrix x = form.x.view();
  for (Integer j = 1; j <= n; ++j) {
    copy(n, pencil.a.column(j), t.column(j));
  }
  if (pencil.has_b) {
    Factors<Complex> factors(n, pencil.b);
    if (factors.is_singular()) {
      return {};
    }
    solve_factored(Op::none, n, n, factors.view(), factors.pivots(), t);
  }
  const OneBasedMatrix<QuarnFloat> numbers = parts(t);
  const Integer exponent = far_exponent(2 * n, n, numbers);
  multiply_by_power(2 * n, n, numbers, -exponent);
  const char* const job = scaled ? "B" : "P";
  Integer ilo = 1;
  Integer ihi = n;
  Integer info = 0;
  std::vector<QuarnFloat> factors(std::size_t(n) + 1);
  QuarnMPX_zgebal_(job, n, t.first(), n, &ilo, &ihi, factors.data(), &info, 1);
  std::vector<Complex> tau(factors.size());
  std::vector<Complex> work(factors.size());
  QuarnMPX_zgehrd_(n, ilo, ihi, t.first(), n, tau.data(), work.data(), n, &info);
  for (Integer j = 1; j <= n; ++j) {
    copy(n, t.column(j), x.column(j));
  }
  QuarnMPX_zunghr_(n, ilo, ihi, x.first(), n, tau.data(), work.data(), n, &info);
  if (complex_hessenberg_qr(true, n, ilo, ihi, t, {work.data(), 1}, n, x) != 0) {
    return {};
  }
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = j + 1; i <= n; ++i) {
      t(i, j) = Complex();
    }
  }
  form.blocks = Diagonaliser(n, t, x).run();
  QuarnMPX_zgebak_(job, "R", n, ilo, ihi, factors.data(), n, x.first(), n, &info, 1, 1);
  multiply_by_power(2 * n, n, numbers, exponent);
  normalise(n, x, t, form.blocks);
  return form;
}

}  // namespace tesk::proven
