// What stands behind QuarnRealTransform.
#pragma once

#include <vector>

#include "number/fixed/plan.h"
#include "quarn/realtransform.h"

namespace quarn::block {

using RealKind = QuarnRealTransform::Kind;

/// How a kind is computed: by which complex sums, and which of the data go where.
///
/// forward: the spectrum of `period` real numbers, followed for types 2 by turns; inverse: from a spectrum, before
/// which types 3 turn; quarter: type 4 of an even length, turned before and after n / 2 complex sums. In the first two
/// an even period takes period / 2 complex sums, of numbers side by side.
struct Route {
  enum class Form { forward, inverse, quarter };

  Route(RealKind kind_given, Integer length);

  Form form;
  RealKind kind;
  Integer n;
  std::int64_t period;
  bool is_sine;
  bool turned;  // types 2 and 3

  /// The N of the header.
  std::int64_t logical_length() const;
  std::int64_t sums() const { return period % 2 == 0 ? period / 2 : period; }
  Steps steps() const;
  /// forward: where element j of the period comes from, 1 + a place of the data, negative: negated, 0: zero.
  std::int64_t origin(std::int64_t j) const;
};

/// For type 4 of an odd length n: of each class {+-a, 4 n +- a} of odd numbers modulo 8 n one is 8 k + n. Modulo sign,
/// 1 + m for a = 2 m + 1 < 2 n, so that cos(pi (8 k + n) b / (4 n)) is plus or minus cos(pi a b / (4 n)) for odd b.
std::int64_t odd_representative(std::int64_t k, std::int64_t n);

}  // namespace quarn::block

struct QuarnRealTransform::Plan {
  Plan(Kind kind, Integer length, int digit_count);

  /// Real numbers, or the parts of complex ones: 2 k is the real one, 2 k + 1 the imaginary one of number k.
  struct Source {
    const QuarnFloat* real;
    const Complex* spectrum;
    std::ptrdiff_t stride;
    const QuarnFloat& operator[](std::int64_t i) const {
      return real != nullptr ? real[i * stride]
             : i % 2 == 0    ? spectrum[i / 2 * stride].re
                             : spectrum[i / 2 * stride].im;
    }
  };
  struct Target {
    QuarnFloat* real;
    Complex* spectrum;
    std::ptrdiff_t stride;
    QuarnFloat& operator[](std::int64_t i) const {
      return real != nullptr ? real[i * stride]
             : i % 2 == 0    ? spectrum[i / 2 * stride].re
                             : spectrum[i / 2 * stride].im;
    }
  };
  /// y is as it was when storage runs out.
  void run(const Source& x, const Target& y, QuarnDivisor divisor) const;

  quarn::block::Route route;
  int digits;
  quarn::block::Format format;
  quarn::block::DecimalReader reader;
  quarn::block::Sums sums;
  std::vector<quarn::block::DecimalWriter> writers[3];   // for each divisor
  std::vector<quarn::block::DecimalWriter> end_writers;  // for orthogonal results without a partner
  std::vector<std::int64_t> from;                        // forward: Route::origin()
  std::vector<quarn::Limb> turns;                        // exp(-2 pi i k / period), k = 1 .. ; quarter: after the sums
  std::vector<quarn::Limb> quarter_turns;                // exp(-pi i k / (2 n)), k = 1 .. ; quarter: before the sums
  std::vector<quarn::Limb> root_half;                    // sqrt(1/2)

 private:
  template <class Length>
  class Run;

  quarn::block::Survey survey(const Source& x) const;
  void run_to(const Source& x, const Target& y, QuarnDivisor divisor) const;
};
