// Storage runs out at the first, second, ... allocation of a product: the result is untouched each time.
#include <doctest/doctest.h>

#include "exact/samples.h"
#include "support/failing_new.h"

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
      for (long k = 1;; ++k) {
        bool failed = false;
        support::allocations.fail(k, false);
        try {
          QuarnMatrixProduct(n, n, n, weight, std::as_const(a).view(), std::as_const(b).view(), one, c.view());
        } catch (const std::bad_alloc&) {
          failed = true;
        }
        support::allocations.stop_failing();
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
