// Storage runs out at the first, second, ... allocation of a product: the result is untouched each time.
#include <doctest/doctest.h>

#include <cstdlib>
#include <new>

#include "exact/samples.h"

namespace {

long left = -1;  // allocations that still succeed; negative: all

void* allocate(std::size_t size, std::size_t alignment) {
  if (left == 0) {
    throw std::bad_alloc();
  }
  left -= left > 0 ? 1 : 0;
  void* const made = std::aligned_alloc(alignment, (size + alignment) / alignment * alignment);
  if (made == nullptr) {
    throw std::bad_alloc();
  }
  return made;
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size, 16); }
void* operator new(std::size_t size, std::align_val_t alignment) { return allocate(size, std::size_t(alignment)); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }

TEST_CASE("a product that runs out of storage leaves its result alone") {
  const exact_test::Restore restore;
  support::Random random;
  long failures = 0;
  for (const int digits : {50, 200}) {
    for (const double alpha : {1.0, 2.5}) {
      const std::size_t n = digits == 50 ? 40 : 12;
      exact_test::Sample a(random, n, n, digits, 3);
      exact_test::Sample b(random, n, n, digits, 3);
      exact_test::Sample c(random, n, n, digits, 3);
      a.at(1, 1) = QuarnFloat("1e5000");
      const std::vector<QuarnFloat> before = c.storage;
      const QuarnFloat weight(alpha);
      const QuarnFloat one(1);
      for (long allowed = 0;; ++allowed) {
        bool failed = false;
        left = allowed;
        try {
          QuarnMatrixProduct(n, n, n, weight, std::as_const(a).view(), std::as_const(b).view(), one, c.view());
        } catch (const std::bad_alloc&) {
          failed = true;
        }
        left = -1;
        if (!failed) {
          break;
        }
        ++failures;
        REQUIRE(c.storage == before);
      }
      CHECK(c.storage != before);
    }
  }
  CHECK(failures > 10);
}
