#include "src/fft/complex_factors.h"

namespace tesk {
namespace {

class Search {
 public:
  Search(Integer n, Integer limit) : rest_(n), limit_(limit) {}

  Integer rest() const { return rest_; }

  void take_out(Integer divisor) {
    while (!found_.too_many && rest_ % divisor == 0) {
      take(divisor);
    }
  }

  /// Takes what is left over, a prime or 1.
  ComplexFactors end() {
    if (!found_.too_many && (rest_ > 1 || found_.count == 0)) {
      take(rest_);
    }
    return found_;
  }

 private:
  void take(Integer factor) {
    ++found_.count;
    found_.too_many = found_.count >= limit_;
    if (!found_.too_many) {
      found_.factor[std::size_t(found_.count - 1)] = factor;
      rest_ /= factor;
    }
  }

  Integer rest_;
  Integer limit_;
  ComplexFactors found_;
};

}  // namespace

ComplexFactors factorize_complex(Integer n, Integer limit) {
  Search search(n, limit);
  if (n > 1) {
    for (const Integer divisor : {5, 4, 2, 3}) {
      search.take_out(divisor);
    }
    // Prime to 2 and 3: 7, 11, 13, 17, 19, 23, 25, ...
    Integer step = 4;
    for (Integer divisor = 7; divisor <= search.rest() / divisor; divisor += step, step = 6 - step) {
      search.take_out(divisor);
    }
  }
  return search.end();
}

}  // namespace tesk
