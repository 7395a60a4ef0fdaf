// What all entries of the complex transforms have in common.
#pragma once

#include <cstddef>

#include "src/fft/complex_passes.h"

namespace tesk {

/// Complex data as an array [after][n][before], the last index varying fastest, to be transformed along n.
struct View {
  Integer before;
  Integer n;
  Integer after;
};

/// How an internal call ended: what the entries without checks of their own give back as fail code.
enum class Status : Integer { ok = 0, too_many_factors = 1, bad_argument = 2 };

/// What an entry hands in: its constants. A test also hands in a smaller limit of factors.
struct Engine {
  Constants constants;
  Integer factor_limit = kTooManyFactors;
  // The companions leave what they can to the number library, which rounds each result once.
  bool in_blocks = true;

  bool accepts(Integer n) const { return !factorize_complex(n, factor_limit).too_many; }

  /// Puts the table for n into work[0 .. n). Length 1 has the table 1.
  Status prepare(Integer n, Complex* work) const;

  /// Transforms by the table in work[0 .. n), with work[n .. n + before n) as scratch. Backward, the conjugate of the
  /// forward transform of the conjugates. Length 1 is left as it is.
  Status transform_prepared(bool backward, Complex* x, const View& view, Complex* work) const;

  /// The forward transform by a table and factors that a caller has made; nothing where they do not make up n.
  void transform_by(Integer n, Complex* x, Complex* scratch, const Complex* table, Integer count,
                    const Integer* factors) const;

  /// Prepares and transforms.
  Status transform(bool backward, Complex* x, const View& view, Complex* work) const;
};

inline constexpr Engine kClassicEngine{Constants(Accuracy::classic)};
inline constexpr Engine kFullEngine{Constants(Accuracy::full)};

/// Makes the passes over `count` numbers, n elements in each sequence, and scales by 1/sqrt(n).
void transform_forward(const Passes& passes, Integer n, std::ptrdiff_t count, Complex* x, Complex* scratch);

}  // namespace tesk
