// Sylvester equations of Schur forms by halves: I. Jonsson, B. Kagstrom, Recursive blocked algorithms for solving
// triangular systems, part I, ACM Trans. Math. Softw. 28 (2002). TRSYL of E. Anderson et al., LAPACK Users' Guide.
#include <algorithm>
#include <array>
#include <utility>

#include "src/dense/qr.h"
#include "src/dense/schur_order.h"
#include "src/frame/constants.h"
#include "src/kernels/exact.h"
#include "tesk2mp/schur_forms.h"

namespace tesk {
namespace {

template <class T>
class Sylvester {
 public:
  Sylvester(int sign, const QuarnFloat& smallest) : sign_(sign), smallest_(smallest) {}

  void solve(Integer m, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> b, OneBasedMatrix<T> c) {
    if (m == 0 || n == 0) {
      return;
    }
    const Integer above = half_of_form(m, a);
    const Integer left = half_of_form(n, b);
    if (above > 0 && (m >= n || left == 0)) {
      const Integer below = m - above;
      const OneBasedMatrix<T> last = c.from(above + 1, 1);
      solve(below, n, a.from(above + 1, above + 1), b, last);
      exact::multiply_matrices(Op::none, Op::none, above, n, below, T(-1.0), a.from(1, above + 1), last, T(1.0), c);
      return solve(above, n, a, b, c);
    }
    if (left > 0) {
      const OneBasedMatrix<T> right = c.from(1, left + 1);
      solve(m, left, a, b, c);
      exact::multiply_matrices(Op::none, Op::none, m, n - left, left, T(double(-sign_)), c, b.from(1, left + 1), T(1.0),
                               right);
      return solve(m, n - left, a, b.from(left + 1, left + 1), right);
    }
    QuarnCheckInterrupt();
    solve_block(m, n, a, b, c);
  }
  bool replaced() const { return replaced_; }

 private:
  static constexpr Integer kMost = 4;

  /// A system of at most four equations, by elimination with complete pivoting.
  void solve_block(Integer m, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> b, OneBasedMatrix<T> c) {
    std::array<T, std::size_t(kMost) * kMost> store;
    std::array<T, kMost> right;
    std::array<Integer, kMost> unknown{1, 2, 3, 4};
    const OneBasedMatrix<T> s(store.data(), kMost);
    const OneBasedVector<T> x(right.data(), 1);
    const Integer count = m * n;
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= m; ++i) {
        const Integer row = i + (j - 1) * m;
        x(row) = c(i, j);
        for (Integer k = 1; k <= m; ++k) {
          s(row, k + (j - 1) * m) = a(i, k);
        }
        for (Integer k = 1; k <= n; ++k) {
          T& element = s(row, i + (k - 1) * m);
          element = sign_ > 0 ? element + b(k, j) : element - b(k, j);
        }
      }
    }
    for (Integer k = 1; k <= count; ++k) {
      eliminate(k, count, s, x, unknown);
    }
    std::array<T, kMost> solution;
    for (Integer k = count; k >= 1; --k) {
      T value = x(k);
      for (Integer j = k + 1; j <= count; ++j) {
        subtract_product(value, s(k, j), x(j));
      }
      x(k) = quotient(value, s(k, k));
      solution[std::size_t(unknown[std::size_t(k - 1)] - 1)] = x(k);
    }
    for (Integer k = 0; k < count; ++k) {
      c(k % m + 1, k / m + 1) = std::move(solution[std::size_t(k)]);
    }
  }

  void eliminate(Integer k, Integer count, OneBasedMatrix<T> s, OneBasedVector<T> x,
                 std::array<Integer, kMost>& unknown) {
    Integer row = k;
    Integer column = k;
    QuarnFloat largest = magnitude(s(k, k));
    for (Integer j = k; j <= count; ++j) {
      for (Integer i = k; i <= count; ++i) {
        if (QuarnFloat size = magnitude(s(i, j)); size > largest) {
          largest = std::move(size);
          row = i;
          column = j;
        }
      }
    }
    swap_vectors(count, s.row(k), s.row(row));
    std::swap(x(k), x(row));
    swap_vectors(count, s.column(k), s.column(column));
    std::swap(unknown[std::size_t(k - 1)], unknown[std::size_t(column - 1)]);
    if (magnitude(s(k, k)) < smallest_) {
      s(k, k) = T(smallest_);
      replaced_ = true;
    }
    for (Integer i = k + 1; i <= count; ++i) {
      const T factor = quotient(s(i, k), s(k, k));
      subtract_product(x(i), factor, x(k));
      for (Integer j = k + 1; j <= count; ++j) {
        subtract_product(s(i, j), factor, s(k, j));
      }
    }
  }

  int sign_;
  const QuarnFloat& smallest_;
  bool replaced_ = false;
};

/// op(A) in the order that makes it a Schur form again, where op is not none: rows and columns backward.
template <class T>
OneBasedMatrix<T> form_of(Op op, Integer n, OneBasedMatrix<T> a, OwnMatrix<T>& own) {
  if (op == Op::none) {
    return a;
  }
  const OneBasedMatrix<T> mirrored = a.antitransposed(n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      own.view()(i, j) = op == Op::conjugate_transpose ? conjugate(mirrored(i, j)) : mirrored(i, j);
    }
  }
  return own.view();
}

template <class T>
bool is_sylvester_op(const char* option) {
  return is_adjoint_option<T>(option) || (letter(option) == 'C' && adjoint_letter<T>() == 'T');
}

template <class T>
Integer checked(const char* trana, const char* tranb, Integer isgn, Integer m, Integer n, const T* a, Integer lda,
                const T* b, Integer ldb, T* c, Integer ldc, QuarnFloat* scale) {
  const Integer wrong = first_wrong({{!is_sylvester_op<T>(trana), 1},
                                     {!is_sylvester_op<T>(tranb), 2},
                                     {isgn != 1 && isgn != -1, 3},
                                     {m < 0, 4},
                                     {n < 0, 5},
                                     {lda < std::max<Integer>(1, m), 7},
                                     {ldb < std::max<Integer>(1, n), 9},
                                     {ldc < std::max<Integer>(1, m), 11}});
  if (wrong != 0) {
    return -wrong;
  }
  *scale = 1;
  if (m == 0 || n == 0) {
    return 0;
  }
  const Op op_a = adjoint_option_of(trana);
  const Op op_b = adjoint_option_of(tranb);
  OwnMatrix<T> own_a(op_a == Op::none ? 0 : m, m);
  OwnMatrix<T> own_b(op_b == Op::none ? 0 : n, n);
  const OneBasedMatrix<T> left = form_of(op_a, m, OneBasedMatrix<T>(const_cast<T*>(a), lda), own_a);
  const OneBasedMatrix<T> right = form_of(op_b, n, OneBasedMatrix<T>(const_cast<T*>(b), ldb), own_b);
  OneBasedMatrix<T> x(c, ldc);
  x = op_a == Op::none ? x : x.rows_reversed(m);
  x = op_b == Op::none ? x : x.columns_reversed(n);
  return solve_triangular_sylvester(isgn, m, n, left, right, x) ? 1 : 0;
}

}  // namespace

template <class T>
bool solve_triangular_sylvester(int sign, Integer m, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> b,
                                OneBasedMatrix<T> c) {
  const QuarnFloat largest = std::max(largest_element(m, a), largest_element(n, b));
  const QuarnFloat smallest = largest == 0 ? smallest_number() : epsilon() * largest;
  Sylvester<T> equations(sign, smallest);
  equations.solve(m, n, a, b, c);
  return equations.replaced();
}

template bool solve_triangular_sylvester(int, Integer, Integer, OneBasedMatrix<QuarnFloat>, OneBasedMatrix<QuarnFloat>,
                                         OneBasedMatrix<QuarnFloat>);
template bool solve_triangular_sylvester(int, Integer, Integer, OneBasedMatrix<Complex>, OneBasedMatrix<Complex>,
                                         OneBasedMatrix<Complex>);

}  // namespace tesk

extern "C" {

void QuarnMPX_dtrsyl_(const char* trana, const char* tranb, Integer isgn, Integer m, Integer n, const QuarnFloat* a,
                      Integer lda, const QuarnFloat* b, Integer ldb, QuarnFloat* c, Integer ldc, QuarnFloat* scale,
                      Integer* info, int /*trana_length*/, int /*tranb_length*/) {
  *info = tesk::checked(trana, tranb, isgn, m, n, a, lda, b, ldb, c, ldc, scale);
}

void QuarnMPX_ztrsyl_(const char* trana, const char* tranb, Integer isgn, Integer m, Integer n, const Complex* a,
                      Integer lda, const Complex* b, Integer ldb, Complex* c, Integer ldc, QuarnFloat* scale,
                      Integer* info, int /*trana_length*/, int /*tranb_length*/) {
  *info = tesk::checked(trana, tranb, isgn, m, n, a, lda, b, ldb, c, ldc, scale);
}
}
