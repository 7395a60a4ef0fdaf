// Storage runs out at the first, second, ... allocation of a product: the result is untouched each time.
#include <doctest/doctest.h>

#include "exact/samples.h"
#include "quarn/accumulator.h"
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

TEST_CASE("a sum that runs out of storage keeps its value") {
  const exact_test::Restore restore;
  const QuarnFloat terms[] = {QuarnFloat("1e7000"), QuarnFloat("-2.5"), QuarnFloat("3e-9000")};
  const quarn::Complex pairs[] = {{terms[0], terms[1]}, {terms[2], terms[1]}};
  quarn::Accumulator real;
  quarn::Accumulator imaginary;
  real += terms[1];
  quarn::Accumulator packed_one;
  packed_one.add_dot(3, terms, 1, terms, 1);
  const std::vector<unsigned char> bytes = quarn::pack({&packed_one, 1});
  const quarn::Accumulator before = real;
  long failures = 0;
  for (int kind = 0; kind < 5; ++kind) {
    for (long k = 1;; ++k) {
      quarn::Accumulator sum = before;
      bool failed = false;
      support::allocations.fail(k, false);
      try {
        switch (kind) {
          case 0:
            sum += terms[0];
            break;
          case 1:
            sum.add_dot(3, terms, 1, terms, 1);
            break;
          case 2:
            quarn::add_inner_product(2, pairs, pairs, sum, imaginary);
            break;
          case 3:
            (void)sum.read_packed(bytes.data(), bytes.size());
            break;
          default:
            (void)quarn::add_packed(bytes, {&sum, 1});
        }
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      support::allocations.stop_failing();
      if (!failed) {
        CHECK(!(sum == before));
        break;
      }
      ++failures;
      REQUIRE(sum == before);
    }
  }
  CHECK(failures > 10);
}
