#include "src/fft/sequences.h"

#include <utility>

#include "quarn/quarnthread.h"

namespace tesk {

void transform_sequences(bool backward, Integer n, Integer m, const Sequence<const Complex>& x,
                         const Sequence<Complex>& y, QuarnDivisor divisor) {
  const bool is_supported = QuarnTransform::is_supported(n, QuarnDigits());
  std::vector<Complex> results(static_cast<std::size_t>(n));
  for (Integer j = 0; j < m; ++j) {
    QuarnCheckInterrupt();
    if (is_supported) {
      for (Integer i = 0; i < n; ++i) {
        results[std::size_t(i)] = x.at(i, j);
      }
      QuarnTransformRows(backward, results.data(), n, 1, 1, n, divisor);
    } else {
      transform_long(backward, n, &x.at(0, j), x.step, results.data(), divisor);
    }
    for (Integer i = 0; i < n; ++i) {
      std::swap(y.at(i, j), results[std::size_t(i)]);
    }
  }
}

template <class T, class U>
void transform_sequences(RealKind kind, Integer n, Integer m, const Sequence<const T>& x, const Sequence<U>& y,
                         QuarnDivisor divisor) {
  const auto plan =
      QuarnRealTransform::is_supported(kind, n, QuarnDigits()) ? QuarnRealTransform::kept(kind, n) : nullptr;
  std::vector<U> results(kind == RealKind::to_spectrum ? half_of(n) : std::size_t(n));
  for (Integer j = 0; j < m; ++j) {
    QuarnCheckInterrupt();
    if (plan != nullptr) {
      plan->run(&x.at(0, j), x.step, results.data(), 1, divisor);
    } else {
      transform_long(kind, n, &x.at(0, j), x.step, results.data(), divisor);
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
      std::swap(y.at(std::ptrdiff_t(i), j), results[i]);
    }
  }
}

template void transform_sequences(RealKind, Integer, Integer, const Sequence<const QuarnFloat>&,
                                  const Sequence<Complex>&, QuarnDivisor);
template void transform_sequences(RealKind, Integer, Integer, const Sequence<const Complex>&,
                                  const Sequence<QuarnFloat>&, QuarnDivisor);
template void transform_sequences(RealKind, Integer, Integer, const Sequence<const QuarnFloat>&,
                                  const Sequence<QuarnFloat>&, QuarnDivisor);

}  // namespace tesk
