#include "src/fft/passes.h"

#include <cstdint>
#include <vector>

#include "src/fft/even_radix.h"
#include "src/fft/general_radix.h"
#include "src/fft/odd_radix.h"
#include "src/frame/check_points.h"

namespace tesk {
namespace {

struct Pass {
  QuarnFloat* x;
  Integer n;
  Integer m;  // length of a sub-block
  Constants constants;
};

/// Twiddles depend on j alone, so that each is evaluated once and serves all blocks.
template <Direction direction, class Radix>
void run(const Pass& pass, const Radix& radix, const Circle& circle) {
  const Integer r = radix.size();
  const Integer m = pass.m;
  const Integer length = r * m;
  CheckPoints check_points;
  const auto for_each_block = [&](const auto& butterfly) {
    for (QuarnFloat* block = pass.x; block != pass.x + pass.n; block += length) {
      check_points.pass(r);
      butterfly(block);
    }
  };
  for_each_block([&](QuarnFloat* block) { radix.template first<direction>(Slots(block, m, 0)); });
  const Twiddles twiddles(circle, length, std::int64_t(m - 1) / 2 * (r - 1));
  std::vector<Complex> w(static_cast<std::size_t>(r));
  for (Integer j = 1; j < m - j; ++j) {
    for (Integer q = 1; q < r; ++q) {
      w[q] = twiddles.rotation(j * q);
    }
    for_each_block([&](QuarnFloat* block) { radix.template inner<direction>(Slots(block, m, j), w.data()); });
  }
  if (m % 2 == 0) {
    for_each_block([&](QuarnFloat* block) { radix.template middle<direction>(Slots(block, m, m / 2)); });
  }
}

template <Direction direction>
void run(const Pass& pass, Integer r, const Circle& circle) {
  switch (r) {
    case 2:
      return run<direction>(pass, EvenRadix<2>(pass.constants, circle), circle);
    case 4:
      return run<direction>(pass, EvenRadix<4>(pass.constants, circle), circle);
    case 8:
      return run<direction>(pass, EvenRadix<8>(pass.constants, circle), circle);
    default:
      return r % 2 == 1 && r <= kLargestPrime ? run<direction>(pass, OddRadix(r, pass.constants, circle), circle)
                                              : run<direction>(pass, GeneralRadix(r, circle), circle);
  }
}

/// Walks the list from its first radix; sub-blocks grow forward from length 1 and shrink backward from length n.
template <Direction direction>
void walk(QuarnFloat* x, Integer n, const Integer* radices, const Constants& constants) {
  if (n <= 1) {
    return;
  }
  const Circle circle(constants);
  Integer done = 1;  // product of the radices so far, a divisor of n
  for (; *radices >= 1 && *radices <= GeneralRadix::kLargest && n / done % *radices == 0; ++radices) {
    if (*radices == 1) {
      continue;
    }
    const Integer m = direction == Direction::forward ? done : n / done / *radices;
    run<direction>({x, n, m, constants}, *radices, circle);
    done *= *radices;
  }
}

}  // namespace

void forward_passes(QuarnFloat* x, Integer n, const Integer* radices, const Constants& constants) {
  walk<Direction::forward>(x, n, radices, constants);
}

void backward_passes(QuarnFloat* x, Integer n, const Integer* radices, const Constants& constants) {
  walk<Direction::backward>(x, n, radices, constants);
}

}  // namespace tesk
