#include "src/fft/digit_reverse.h"

#include <algorithm>
#include <utility>

namespace tesk {

void c06DigitReverse(QuarnFloat* x, Integer n, const FactorList& factors, QuarnFloat* work) {
  if (factors[0] == 0) {
    return;
  }
  struct Wheel {
    Integer digit;
    Integer size;
    Integer stride;
  };
  // An odometer of nested counting loops; one wheel more than a list has factors stops the carry.
  std::array<Wheel, std::tuple_size_v<FactorList>> wheels{};
  Integer stride = n;
  std::size_t count = 0;
  for (; factors[count] != 0; ++count) {
    stride /= factors[count];
    wheels[count] = {0, factors[count], stride};
  }
  wheels[count] = {0, 2, 0};

  Integer from = 0;
  for (Integer to = 0; to < n; ++to) {
    work[to] = std::move(x[from]);
    Wheel* wheel = wheels.data();
    while (++wheel->digit == wheel->size) {
      from -= (wheel->size - 1) * wheel->stride;
      wheel->digit = 0;
      ++wheel;
    }
    from += wheel->stride;
  }
  std::move(work, work + n, x);
}

}  // namespace tesk
