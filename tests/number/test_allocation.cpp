// At everyday precision no operation allocates: malloc and operator new are counted.
#include <doctest/doctest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "quarn/quarnfloat.h"
#include "support/random.h"

namespace {

long allocations = 0;

}  // namespace

extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

namespace {

std::vector<QuarnFloat> random_numbers(support::Random& random, std::size_t count, int digits) {
  std::vector<QuarnFloat> numbers;
  for (std::size_t i = 0; i < count; ++i) {
    numbers.emplace_back("1." + random.digits(std::size_t(digits) - 1) + "e" + std::to_string(random.between(-9, 9)));
  }
  return numbers;
}

}  // namespace

TEST_CASE("the counter counts") {
  const long before = allocations;
  std::vector<QuarnFloat>* const kept = new std::vector<QuarnFloat>(3);
  CHECK(allocations > before);
  delete kept;
}

TEST_CASE("no allocation in arithmetic and comparison at up to 100 digits") {
  support::Random random;
  for (const int digits : {1, 17, 18, 20, 36, 50, 90, 100}) {
    QuarnSetDigits(digits);
    const auto a = random_numbers(random, 50, digits);
    const auto b = random_numbers(random, 50, digits);
    QuarnFloat sum;
    int order = 0;
    const long before = allocations;
    for (std::size_t i = 0; i < a.size(); ++i) {
      // The last pairs also take the slow path: ties, equal operands, exact results.
      const QuarnFloat& x = a[i];
      const QuarnFloat& y = i < 40 ? b[i] : a[i];
      sum = sum + x * y;
      sum = sum - x / y;
      sum += sqrt(y * y);
      sum *= x - y;
      order += QuarnCompare(x, y) + int(x < y) + int(sum == x);
    }
    CHECK(allocations == before);
    CHECK(order > -1000);
  }
  QuarnSetDigits(20);
}

TEST_CASE("long numbers recycle their storage") {
  support::Random random;
  QuarnSetDigits(1000);
  const auto a = random_numbers(random, 4, 1000);
  QuarnFloat x;
  long after_first_rounds = 0;
  for (int i = 0; i < 20; ++i) {
    x = a[0] * a[1] + a[2] / a[3] - x;
    if (i == 3) {
      after_first_rounds = allocations;
    }
  }
  CHECK(allocations == after_first_rounds);
  QuarnSetDigits(20);
}
