// Eigenvectors of a Schur form (DTREVC) and condition numbers of its eigenvalues and eigenvectors (DTRSNA): E. Anderson
// et al., LAPACK Users' Guide. The classic entries do not rescale solutions on the way: chains of eight and more equal
// eigenvalues leave the range of exponents. Full accuracy does, and takes matrices of any size.
#include <algorithm>
#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/schur_vectors.h"
#include "src/frame/constants.h"
#include "src/kernels/exact.h"
#include "src/kernels/own_matrix.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/frame.h"
#include "tesk2mp/norms.h"

namespace tesk {
namespace {

/// The blocks of which an eigenvalue is selected; both rows of a pair count.
std::vector<BlockEigenvalue> selected_blocks(Integer n, OneBasedMatrix<QuarnFloat> t, const Integer* select) {
  std::vector<BlockEigenvalue> blocks = block_eigenvalues(n, t);
  if (select != nullptr) {
    std::erase_if(blocks, [&](const BlockEigenvalue& block) {
      return select[block.row - 1] == 0 && (!block.pair || select[block.row] == 0);
    });
  }
  return blocks;
}

Integer columns_of(const std::vector<BlockEigenvalue>& blocks) {
  Integer columns = 0;
  for (const BlockEigenvalue& block : blocks) {
    columns += block.pair ? 2 : 1;
  }
  return columns;
}

/// The divisor that stands in for one too small.
QuarnFloat smallest_divisor(Integer n, OneBasedMatrix<QuarnFloat> t, const BlockEigenvalue& eigenvalue) {
  const QuarnFloat ulp = epsilon() * kBase;
  return std::max(ulp * (fabs(eigenvalue.re) + fabs(eigenvalue.im)),
                  smallest_number() * (QuarnFloat(n) / ulp) * std::max(QuarnFloat(1), fabs(t(1, 1))));
}

/// Stores the vector scaled to largest element 1 into column `column` (a pair: real and imaginary parts into two).
void store(Integer n, OneBasedVector<Complex> x, bool pair, Integer column, OneBasedMatrix<QuarnFloat> v) {
  const QuarnFloat factor = 1 / magnitude(x(index_of_largest(n, x)));
  for (Integer i = 1; i <= n; ++i) {
    v(i, column) = x(i).re * factor;
    if (pair) {
      v(i, column + 1) = x(i).im * factor;
    }
  }
}

/// The same of x, or of V x, where x is zero outside rows first ... last.
void store(Integer n, std::vector<Complex> x, bool pair, bool transforms, Integer column, Integer first, Integer last,
           OneBasedMatrix<QuarnFloat> v) {
  if (transforms) {
    const std::vector<Complex> given = x;
    for (Integer i = 1; i <= n; ++i) {
      Complex sum;
      for (Integer k = first; k <= last; ++k) {
        sum.re += v(i, k) * given[std::size_t(k - 1)].re;
        sum.im += v(i, k) * given[std::size_t(k - 1)].im;
      }
      x[std::size_t(i - 1)] = std::move(sum);
    }
  }
  store(n, OneBasedVector<Complex>(x.data(), 1), pair, column, v);
}

/// Column `column` of V as a complex vector.
std::vector<Complex> stored_vector(Integer n, OneBasedMatrix<QuarnFloat> v, Integer column, bool pair) {
  std::vector<Complex> x;
  for (Integer i = 1; i <= n; ++i) {
    x.emplace_back(v(i, column), pair ? v(i, column + 1) : QuarnFloat());
  }
  return x;
}

QuarnFloat norm2(const std::vector<Complex>& x) {
  QuarnFloat squares;
  for (const Complex& element : x) {
    squares += element.re * element.re + element.im * element.im;
  }
  return sqrt(squares);
}

/// The condition number of a simple eigenvalue: |y^H x| / (|x| |y|).
QuarnFloat eigenvalue_condition(std::vector<Complex> x, std::vector<Complex> y) {
  const auto n = Integer(x.size());
  const Complex product =
      dot(n, OneBasedVector<Complex>(y.data(), 1), OneBasedVector<Complex>(x.data(), 1), Op::conjugate_transpose);
  return QuarnMP_a02abfn_(product.re, product.im) / (norm2(x) * norm2(y));
}

/// Gaussian elimination with row interchange on the columns of (C | I), then 1 / (1-norm of the inverse).
QuarnFloat reciprocal_inverse_norm(Integer n, std::vector<Complex> c, const QuarnFloat& smallest) {
  std::vector<Complex> inverse(std::size_t(n) * std::size_t(n), Complex());
  const OneBasedMatrix<Complex> a(c.data(), n);
  const OneBasedMatrix<Complex> b(inverse.data(), n);
  for (Integer j = 1; j <= n; ++j) {
    b(j, j) = 1.0;
  }
  for (Integer j = 1; j <= n; ++j) {
    QuarnCheckInterrupt();
    const Integer row = j - 1 + index_of_largest(n - j + 1, a.column(j).from(j));
    swap_vectors(n, a.row(j), a.row(row));
    swap_vectors(n, b.row(j), b.row(row));
    if (magnitude(a(j, j)) < smallest) {
      a(j, j) = smallest;
    }
    for (Integer i = 1; i <= n; ++i) {
      if (i == j) {
        continue;
      }
      const Complex factor = -quotient(a(i, j), a(j, j));
      add_multiple(n - j + 1, factor, a.row(j).from(j), a.row(i).from(j));
      add_multiple(n, factor, b.row(j), b.row(i));
    }
    const Complex pivot = quotient(Complex(1.0), a(j, j));
    scale(n, pivot, b.row(j));
    scale(n - j + 1, pivot, a.row(j).from(j));
  }
  return 1 / QuarnMP_f06uaf_("1", n, n, inverse.data(), n, nullptr, 1);
}

/// An estimate of the distance of the eigenvalue from the rest of the spectrum: with a unitary Q whose first column is
/// along the eigenvector x, Q^H T Q - lambda I has the block C below its first row and column; 1 / |C^-1| bounds the
/// smallest singular value of C within a factor n.
QuarnFloat separation(Accuracy accuracy, Integer n, OneBasedMatrix<QuarnFloat> t, const BlockEigenvalue& eigenvalue,
                      const QuarnFloat& smallest) {
  if (n == 1) {
    return fabs(t(1, 1));
  }
  const Complex lambda(eigenvalue.re, eigenvalue.im);
  std::vector<Complex> u = right_eigenvector(accuracy, n, t, eigenvalue, smallest);
  // The reflector I - 2 u u^H / (u^H u) with u = x + phase |x| e1.
  const QuarnFloat norm = norm2(u);
  const QuarnFloat first = modulus(u[0]);
  u[0] = first == 0 ? Complex(norm) : Complex(u[0].re * (1 + norm / first), u[0].im * (1 + norm / first));
  const QuarnFloat length = norm2(u);
  const QuarnFloat factor = 2 / (length * length);
  std::vector<Complex> matrix(std::size_t(n) * std::size_t(n), Complex());
  const OneBasedMatrix<Complex> b(matrix.data(), n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= std::min(n, j + 1); ++i) {
      b(i, j).re = t(i, j);
    }
    b(j, j) = b(j, j) - lambda;
  }
  const OneBasedVector<Complex> uv(u.data(), 1);
  for (Integer j = 1; j <= n; ++j) {
    Complex product = dot(n, uv, b.column(j), Op::conjugate_transpose);
    multiply_by(product, -factor);
    add_multiple(n, product, uv, b.column(j));
  }
  std::vector<Complex> rest;
  for (Integer i = 1; i <= n; ++i) {
    Complex product = dot(n, b.row(i), uv);
    multiply_by(product, -factor);
    for (Integer j = 1; j <= n; ++j) {
      add_product(b(i, j), product, conj(uv(j)));
    }
  }
  for (Integer j = 2; j <= n; ++j) {
    for (Integer i = 2; i <= n; ++i) {
      rest.push_back(b(i, j));
    }
  }
  return reciprocal_inverse_norm(n - 1, std::move(rest), smallest);
}

/// T as it is, or brought near 1 by a power of ten when it is far from it.
class NearOne {
 public:
  NearOne(Accuracy accuracy, Integer n, OneBasedMatrix<QuarnFloat> t) : view_(t) {
    exponent_ = accuracy == Accuracy::full ? far_exponent(n, n, t) : 0;
    if (exponent_ == 0) {
      return;
    }
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        copy_.push_back(t(i, j));
      }
    }
    view_ = {copy_.data(), n};
    multiply_by_power(n, n, view_, -exponent_);
  }

  OneBasedMatrix<QuarnFloat> view() const { return view_; }
  Integer exponent() const { return exponent_; }

 private:
  std::vector<QuarnFloat> copy_;
  OneBasedMatrix<QuarnFloat> view_;
  Integer exponent_ = 0;
};

/// The eigenvectors of one side, X or V X, whose elements are rounded once.
template <class Vector>
void store_together(Integer n, const std::vector<BlockEigenvalue>& blocks, bool transforms, const Vector& vector,
                    OneBasedMatrix<QuarnFloat> v) {
  const Integer m = columns_of(blocks);
  OwnMatrix<QuarnFloat> own(n, m);
  const OneBasedMatrix<QuarnFloat> x = own.view();
  Integer column = 1;
  for (const BlockEigenvalue& block : blocks) {
    std::vector<Complex> solution = vector(block);
    for (Integer i = 1; i <= n; ++i) {
      Complex& element = solution[std::size_t(i - 1)];
      x(i, column) = std::move(element.re);
      if (block.pair) {
        x(i, column + 1) = std::move(element.im);
      }
    }
    column += block.pair ? 2 : 1;
  }
  OwnMatrix<QuarnFloat> product(n, transforms ? m : 0);
  if (transforms) {
    exact::multiply_matrices(Op::none, Op::none, n, m, n, QuarnFloat(1), v, x, QuarnFloat(), product.view());
  }
  const OneBasedMatrix<QuarnFloat> result = transforms ? product.view() : x;
  column = 1;
  for (const BlockEigenvalue& block : blocks) {
    std::vector<Complex> delivered = stored_vector(n, result, column, block.pair);
    store(n, OneBasedVector<Complex>(delivered.data(), 1), block.pair, column, v);
    column += block.pair ? 2 : 1;
  }
}

void checked_vectors(Accuracy accuracy, const char* side, const char* howmny, const Integer* select, Integer n,
                     QuarnFloat* t, Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm,
                     Integer* m, Integer* info) {
  const bool both = letter(side) == 'B';
  const bool right = both || letter(side) == 'R';
  const bool left = both || letter(side) == 'L';
  const char how = letter(howmny);
  const Integer least = std::max<Integer>(1, n);
  *info = -first_wrong({{!right && !left, 1},
                        {how != 'A' && how != 'B' && how != 'S', 2},
                        {n < 0, 4},
                        {ldt < least, 6},
                        {ldvl < (left ? least : 1), 8},
                        {ldvr < (right ? least : 1), 10}});
  if (*info != 0) {
    return;
  }
  const NearOne near(accuracy, n, {t, ldt});
  const OneBasedMatrix<QuarnFloat> tv = near.view();
  const std::vector<BlockEigenvalue> blocks = selected_blocks(n, tv, how == 'S' ? select : nullptr);
  *m = columns_of(blocks);
  if (mm < *m) {
    *info = -11;
    return;
  }
  if (accuracy == Accuracy::full) {
    if (right) {
      store_together(n, blocks, how == 'B',
                     [&](const BlockEigenvalue& block) {
                       return right_eigenvector(accuracy, n, tv, block, smallest_divisor(n, tv, block));
                     },
                     {vr, ldvr});
    }
    if (left) {
      store_together(n, blocks, how == 'B',
                     [&](const BlockEigenvalue& block) {
                       return left_eigenvector(accuracy, n, tv, block, smallest_divisor(n, tv, block));
                     },
                     {vl, ldvl});
    }
    return;
  }
  // With V x in place of x the columns that a vector needs must still stand: right ones are made from the last to the
  // first, left ones from the first to the last.
  if (right) {
    Integer column = *m + 1;
    for (auto block = blocks.rbegin(); block != blocks.rend(); ++block) {
      column -= block->pair ? 2 : 1;
      store(n, right_eigenvector(accuracy, n, tv, *block, smallest_divisor(n, tv, *block)), block->pair, how == 'B',
            column, 1, block->row + (block->pair ? 1 : 0), {vr, ldvr});
    }
  }
  if (left) {
    Integer column = 1;
    for (const BlockEigenvalue& block : blocks) {
      store(n, left_eigenvector(accuracy, n, tv, block, smallest_divisor(n, tv, block)), block.pair, how == 'B', column,
            block.row, n, {vl, ldvl});
      column += block.pair ? 2 : 1;
    }
  }
}

void checked_conditions(Accuracy accuracy, const char* job, const char* howmny, const Integer* select, Integer n,
                        QuarnFloat* t, Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr,
                        QuarnFloat* s, QuarnFloat* sep, Integer mm, Integer* m, Integer ldwork, Integer* info) {
  const bool both = letter(job) == 'B';
  const bool of_values = both || letter(job) == 'E';
  const bool of_vectors = both || letter(job) == 'V';
  const char how = letter(howmny);
  const Integer least = std::max<Integer>(1, n);
  *info = -first_wrong({{!of_values && !of_vectors, 1},
                        {how != 'A' && how != 'S', 2},
                        {n < 0, 4},
                        {ldt < least, 6},
                        {ldvl < (of_values ? least : 1), 8},
                        {ldvr < (of_values ? least : 1), 10}});
  if (*info != 0) {
    return;
  }
  const NearOne near(accuracy, n, {t, ldt});
  const OneBasedMatrix<QuarnFloat> tv = near.view();
  const std::vector<BlockEigenvalue> blocks = selected_blocks(n, tv, how == 'S' ? select : nullptr);
  *m = columns_of(blocks);
  *info = -first_wrong({{mm < *m, 13}, {ldwork < (of_vectors ? least : 1), 16}});
  if (*info != 0) {
    return;
  }
  Integer column = 1;
  for (const BlockEigenvalue& block : blocks) {
    const Integer columns = block.pair ? 2 : 1;
    QuarnFloat condition;
    QuarnFloat distance;
    if (of_values) {
      condition = eigenvalue_condition(stored_vector(n, {vr, ldvr}, column, block.pair),
                                       stored_vector(n, {vl, ldvl}, column, block.pair));
    }
    if (of_vectors) {
      distance = separation(accuracy, n, tv, block, smallest_divisor(n, tv, block));
    }
    for (Integer k = column; k < column + columns; ++k) {
      if (of_values) {
        s[k - 1] = condition;
      }
      if (of_vectors) {
        sep[k - 1] = distance;
      }
    }
    column += columns;
  }
  if (of_vectors) {
    multiply_by_power(*m, 1, {sep, std::max<Integer>(1, *m)}, near.exponent());
  }
}

}  // namespace
}  // namespace tesk

using tesk::Accuracy;

extern "C" {

void QuarnMP_f08qkf_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt,
                     QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm, Integer* m,
                     QuarnFloat* /*work*/, Integer* info, int /*side_length*/, int /*howmny_length*/) {
  tesk::checked_vectors(Accuracy::classic, side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, info);
}

void QuarnMPX_f08qkf_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt,
                      QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm, Integer* m,
                      QuarnFloat* /*work*/, Integer* info, int /*side_length*/, int /*howmny_length*/) {
  tesk::checked_vectors(Accuracy::full, side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, info);
}

void QuarnMP_f08qlf_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt,
                     QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* s, QuarnFloat* sep,
                     Integer mm, Integer* m, QuarnFloat* /*work*/, Integer ldwork, Integer* /*iwork*/, Integer* info,
                     int /*job_length*/, int /*howmny_length*/) {
  tesk::checked_conditions(Accuracy::classic, job, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, s, sep, mm, m, ldwork,
                           info);
}

void QuarnMPX_f08qlf_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt,
                      QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* s, QuarnFloat* sep,
                      Integer mm, Integer* m, QuarnFloat* /*work*/, Integer ldwork, Integer* /*iwork*/, Integer* info,
                      int /*job_length*/, int /*howmny_length*/) {
  tesk::checked_conditions(Accuracy::full, job, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, s, sep, mm, m, ldwork,
                           info);
}
}
