#include "src/fft/complex_engine.h"

#include "quarn/transform.h"

namespace tesk {
namespace {

/// No part becomes a negative zero.
void conjugate_all(Complex* x, std::ptrdiff_t count) {
  const QuarnFloat zero;
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    if (x[i].im != zero) {
      x[i].im = -x[i].im;
    }
  }
}

/// target := factor source. The sign of a zero is an accident of the order of operations and is dropped.
void scale(const QuarnFloat& factor, const Complex* source, Complex* target, std::ptrdiff_t count) {
  const QuarnFloat zero;
  const auto scaled = [&](const QuarnFloat& part) { return part == zero ? zero : part * factor; };
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    target[i].re = scaled(source[i].re);
    target[i].im = scaled(source[i].im);
  }
}

/// Do these factors make up n, and is there a pass for each?
bool are_factors_of(Integer n, Integer count, const Integer* factors) {
  Integer rest = n;
  for (Integer i = 0; i < count; ++i) {
    const Integer r = factors[i];
    if (r < 1 || rest % r != 0 || (r > 4 && r % 2 == 0)) {
      return false;
    }
    rest /= r;
  }
  return rest == 1;
}

bool goes_in_blocks(const Engine& engine, Integer n) {
  return engine.in_blocks && engine.constants.accuracy() == Accuracy::full &&
         QuarnTransform::is_supported(n, QuarnDigits());
}

}  // namespace

void transform_forward(const Passes& passes, Integer n, std::ptrdiff_t count, Complex* x, Complex* scratch) {
  const Complex* result = passes(x, scratch);
  scale(1.0 / sqrt(QuarnFloat(n)), result, x, count);
}

Status Engine::prepare(Integer n, Complex* work) const {
  if (n < 1) {
    return Status::bad_argument;
  }
  const ComplexFactors factors = factorize_complex(n, factor_limit);
  if (factors.too_many) {
    return Status::too_many_factors;
  }
  make_table(work, n, factors, constants);
  return Status::ok;
}

Status Engine::transform_prepared(bool backward, Complex* x, const View& view, Complex* work) const {
  if (view.before < 1 || view.n < 1 || view.after < 1) {
    return Status::bad_argument;
  }
  const ComplexFactors factors = factorize_complex(view.n, factor_limit);
  if (factors.too_many) {
    return Status::too_many_factors;
  }
  if (view.n == 1) {
    return Status::ok;
  }
  const std::ptrdiff_t count = std::ptrdiff_t(view.before) * view.n;
  if (goes_in_blocks(*this, view.n)) {
    for (Integer i = 0; i < view.after; ++i) {
      QuarnTransformRows(backward, x + i * count, view.n, view.before, view.before, 1);
    }
    return Status::ok;
  }
  const Passes passes(view.n, view.before, work, factors.count, factors.factor.data(), constants);
  for (Integer i = 0; i < view.after; ++i) {
    Complex* sequences = x + i * count;
    if (backward) {
      conjugate_all(sequences, count);
    }
    transform_forward(passes, view.n, count, sequences, work + view.n);
    if (backward) {
      conjugate_all(sequences, count);
    }
  }
  return Status::ok;
}

Status Engine::transform(bool backward, Complex* x, const View& view, Complex* work) const {
  if (view.before < 1 || view.after < 1) {
    return Status::bad_argument;
  }
  if (view.n > 1 && goes_in_blocks(*this, view.n)) {
    return transform_prepared(backward, x, view, work);
  }
  const Status status = prepare(view.n, work);
  return status == Status::ok ? transform_prepared(backward, x, view, work) : status;
}

void Engine::transform_by(Integer n, Complex* x, Complex* scratch, const Complex* table, Integer count,
                          const Integer* factors) const {
  if (n > 1 && are_factors_of(n, count, factors)) {
    transform_forward(Passes(n, 1, table, count, factors, constants), n, n, x, scratch);
  }
}

}  // namespace tesk
