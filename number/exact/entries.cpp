// The public functions of quarn/exact.h.
#include "number/exact/product.h"
#include "quarn/exact.h"

namespace quarn::exact {
namespace {

bool is_zero(const QuarnFloat& x) { return kind_of(x) == Kind::zero; }

/// C := beta C or zero.
void scale(std::size_t rows, std::size_t columns, const Weights& weights, QuarnFloat* c, std::ptrdiff_t c_row,
           std::ptrdiff_t c_column, unsigned parts) {
  const auto element = [&](std::size_t i, std::size_t j) {
    return c + std::ptrdiff_t(i) * c_row + std::ptrdiff_t(j) * c_column;
  };
  std::vector<QuarnFloat> aside;
  if (weights.beta[0] != nullptr) {
    const Rounder rounder;
    aside.resize(rows * columns << parts);
    for (std::size_t j = 0; j < columns; ++j) {
      for (std::size_t i = 0; i < rows; ++i) {
        const QuarnFloat* const old = element(i, j);
        for (unsigned part = 0; part <= parts; ++part) {
          Row row{};
          row.others[row.more++] = {old + part, weights.beta[0], false};
          if (weights.beta[1] != nullptr) {
            row.others[row.more++] = {old + (1 - part), weights.beta[1], part == 0};
          }
          rounded_total(aside[((i + j * rows) << parts) + part], row, rounder, true);
        }
      }
    }
  }
  for (std::size_t j = 0; j < columns; ++j) {
    for (std::size_t i = 0; i < rows; ++i) {
      for (unsigned part = 0; part <= parts; ++part) {
        element(i, j)[part] = aside.empty() ? QuarnFloat() : std::move(aside[((i + j * rows) << parts) + part]);
      }
    }
  }
}

}  // namespace
}  // namespace quarn::exact

void QuarnMatrixProduct(std::size_t m, std::size_t n, std::size_t k, const QuarnFloat& alpha,
                        QuarnMatrix<const QuarnFloat> a, QuarnMatrix<const QuarnFloat> b, const QuarnFloat& beta,
                        QuarnMatrix<QuarnFloat> c) {
  using namespace quarn::exact;
  if (m == 0 || n == 0) {
    return;
  }
  Weights weights;
  weights.alpha[0] = &alpha;
  weights.beta[0] = is_zero(beta) ? nullptr : &beta;
  if (k == 0 || is_zero(alpha)) {
    return scale(m, n, weights, c.first, c.row, c.column, 0);
  }
  const PlainRounding rounding;
  const Grid left{a.first, a.row, a.column, 0, false};
  const Grid right{b.first, b.row, b.column, 0, false};
  Product(m, n, k, left, right, weights, c.first, c.row, c.column, 0).run();
}

void QuarnMatrixProduct(std::size_t m, std::size_t n, std::size_t k, const Complex& alpha, QuarnMatrix<const Complex> a,
                        QuarnMatrix<const Complex> b, const Complex& beta, QuarnMatrix<Complex> c, unsigned how) {
  using namespace quarn::exact;
  if (m == 0 || n == 0) {
    return;
  }
  static_assert(sizeof(Complex) == 2 * sizeof(QuarnFloat));
  const auto numbers = [](auto* first) { return first != nullptr ? &first->re : nullptr; };
  Weights weights;
  weights.alpha[0] = &alpha.re;
  weights.alpha[1] = is_zero(alpha.im) ? nullptr : &alpha.im;
  const bool forget = is_zero(beta.re) && is_zero(beta.im);
  weights.beta[0] = forget ? nullptr : &beta.re;
  weights.beta[1] = is_zero(beta.im) ? nullptr : &beta.im;
  if (k == 0 || (is_zero(alpha.re) && is_zero(alpha.im))) {
    return scale(m, n, weights, numbers(c.first), 2 * c.row, 2 * c.column, 1);
  }
  const PlainRounding rounding;
  const Grid left{numbers(a.first), 2 * a.row, 2 * a.column, 1, (how & QuarnConjugateA) != 0};
  const Grid right{numbers(b.first), 2 * b.row, 2 * b.column, 1, (how & QuarnConjugateB) != 0};
  Product(m, 2 * n, 2 * k, left, right, weights, numbers(c.first), 2 * c.row, 2 * c.column, 1).run();
}

QuarnFloat QuarnDot(std::size_t n, const QuarnFloat* a, std::ptrdiff_t step_a, const QuarnFloat* b,
                    std::ptrdiff_t step_b) {
  using namespace quarn::exact;
  const Row row{{a, 0, step_a, 0, false}, {b, step_b, 0, 0, false}, 0, 0, n};
  QuarnFloat result;
  rounded_total(result, row, Rounder(), false);
  return result;
}
