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
  if (QuarnTransform::is_supported(n, QuarnDigits())) {
    // So many at once that a copy is still in the cache, or enough work for several threads.
    const Integer block = std::max<Integer>(1, (QuarnThreads() > 1 ? 65536 : 1024) / n);
    for (Integer first = 0; first < m; first += std::min(block, m - first)) {
      const Integer count = std::min(block, m - first);
      for (Integer j = first; j < first + count && x.first != y.first; ++j) {
        for (Integer i = 0; i < n; ++i) {
          y.at(i, j) = x.at(i, j);
        }
      }
      QuarnTransformRows(backward, &y.at(0, first), n, y.step, count, y.distance, divisor);
    }
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
    std::vector<U> results(kind == RealKind::to_spectrum ? half_of(n) : std::size_t(n));
    for (Integer j = first; j < end; ++j) {
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
  });
}

template void transform_sequences(RealKind, Integer, Integer, const Sequence<const QuarnFloat>&,
                                  const Sequence<Complex>&, QuarnDivisor);
template void transform_sequences(RealKind, Integer, Integer, const Sequence<const Complex>&,
                                  const Sequence<QuarnFloat>&, QuarnDivisor);
template void transform_sequences(RealKind, Integer, Integer, const Sequence<const QuarnFloat>&,
                                  const Sequence<QuarnFloat>&, QuarnDivisor);

}  // namespace tesk
