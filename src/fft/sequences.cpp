#include "src/fft/sequences.h"

#include <algorithm>
#include <utility>

#include "quarn/parallel.h"
#include "quarn/quarnthread.h"

namespace tesk {
namespace {

/// Calls work(first, end) for parts of m sequences of n elements: in several threads where the program allows them and
/// there is enough to do.
template <class Work>
void share(Integer n, Integer m, const Work& work) {
  constexpr std::int64_t kWorthThreads = 8192;
  const Integer parts = std::int64_t(n) * m < kWorthThreads ? 1 : std::min(m, Integer(4 * QuarnThreads()));
  QuarnParallelFor(std::size_t(parts), [&](std::size_t part) {
    const auto first = [&](std::size_t p) { return Integer(std::int64_t(m) * std::int64_t(p) / parts); };
    work(first(part), first(part + 1));
  });
}

}  // namespace

void transform_sequences(bool backward, Integer n, Integer m, const Sequence<const Complex>& x,
                         const Sequence<Complex>& y, QuarnDivisor divisor) {
  if (QuarnTransformRows(backward, n, m, x.first, x.step, x.distance, y.first, y.step, y.distance, divisor)) {
    return;
  }
  share(n, m, [&](Integer first, Integer end) {
    std::vector<Complex> results(static_cast<std::size_t>(n));
    for (Integer j = first; j < end; ++j) {
      QuarnCheckInterrupt();
      transform_long(backward, n, &x.at(0, j), x.step, results.data(), divisor);
      for (Integer i = 0; i < n; ++i) {
        std::swap(y.at(i, j), results[std::size_t(i)]);
      }
    }
  });
}

template <class T, class U>
void transform_sequences(RealKind kind, Integer n, Integer m, const Sequence<const T>& x, const Sequence<U>& y,
                         QuarnDivisor divisor) {
  const auto plan =
      QuarnRealTransform::is_supported(kind, n, QuarnDigits()) ? QuarnRealTransform::kept(kind, n) : nullptr;
  share(n, m, [&](Integer first, Integer end) {
    std::vector<U> results;
    for (Integer j = first; j < end; ++j) {
      QuarnCheckInterrupt();
      if (plan != nullptr) {
        plan->run(&x.at(0, j), x.step, &y.at(0, j), y.step, divisor);
        continue;
      }
      results.resize(kind == RealKind::to_spectrum ? half_of(n) : std::size_t(n));
      transform_long(kind, n, &x.at(0, j), x.step, results.data(), divisor);
      for (std::size_t i = 0; i < results.size(); ++i) {
        std::swap(y.at(std::ptrdiff_t(i), j), results[i]);
      }
    }
  });
}

template void transform_sequences(RealKind, Integer, Integer, const Sequence<const QuarnFloat>&,
                                  const Sequence<Complex>&, QuarnDivisor);
template void transform_sequences(RealKind, Integer, Integer, const Sequence<const Complex>&,
                                  const Sequence<QuarnFloat>&, QuarnDivisor);
template void transform_sequences(RealKind, Integer, Integer, const Sequence<const QuarnFloat>&,
                                  const Sequence<QuarnFloat>&, QuarnDivisor);

}  // namespace tesk
