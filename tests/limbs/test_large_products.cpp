// Long products: schoolbook, Karatsuba and transform products against a naive one and against each other.
#include <cfenv>

#include "number/limbs/multiply.h"
#include "tests/limbs/coefficients.h"

using namespace quarn;
using support::Limbs;

namespace {

template <class R>
Limbs<R> by_dispatch(const Limbs<R>& a, const Limbs<R>& b) {
  Limbs<R> out(a.size() + b.size(), 7);
  multiply<R>(out.data(), a.data(), a.size(), b.data(), b.size());
  return out;
}

}  // namespace

TEST_CASE("transform lengths are the next of m 2^k") {
  CHECK(transform_length(1, 20) == 1);
  CHECK(transform_length(17, 20) == 18);
  CHECK(transform_length(1000, 20) == 1024);
  CHECK(transform_length(1025, 20) == 1152);
  CHECK(transform_length(1153, 20) == 1280);
  CHECK(transform_length(1281, 20) == 1536);
  CHECK(transform_length(1537, 20) == 1792);
  // With no power of two above 2^4 the lengths end at 9 * 2^4.
  CHECK(transform_length(17, 4) == 18);
  CHECK(transform_length(113, 4) == 144);
  CHECK(transform_length(145, 4) == 0);
}

TEST_CASE_TEMPLATE("products of every kind and length agree with the naive product", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 400; ++i) {
    const support::AnyKernel kernel(random);
    const std::size_t na = std::size_t(random.between(1, 90));
    const std::size_t nb = random.once_in(3) ? na : std::size_t(random.between(1, 60));
    const auto a = support::extreme_limbs<R>(random, na);
    const auto b = support::extreme_limbs<R>(random, nb);
    const auto expected = support::naive_product<R>(a, b);
    CAPTURE(na);
    CAPTURE(nb);
    Limbs<R> out(na + nb, 7);
    REQUIRE(multiply_transform<R>(out.data(), a.data(), na, b.data(), nb));
    CHECK(out == expected);
    const auto size = [&random] { return std::size_t(random.between(4, 30)); };
    const support::LowThresholds<R> low({size(), size(), size() + 8, size() + 8, 2, 2, 0});
    CHECK(by_dispatch<R>(a, b) == expected);
  }
}

TEST_CASE_TEMPLATE("a square is the product of equal operands", R, TESK_ALL_RADICES) {
  support::Random random;
  for (std::size_t n = 1; n < 70; ++n) {
    const support::AnyKernel kernel(random);
    const auto a = support::extreme_limbs<R>(random, n);
    const auto expected = support::naive_product<R>(a, a);
    CAPTURE(n);
    Limbs<R> out(2 * n, 7);
    const support::LowThresholds<R> low({4, 5, 40, 50, 2, 2, 0});
    square<R>(out.data(), a.data(), n);
    CHECK(out == expected);
    REQUIRE(multiply_transform<R>(out.data(), a.data(), n, a.data(), n));
    CHECK(out == expected);
  }
}

TEST_CASE_TEMPLATE("nothing changes where one algorithm takes over from another", R, quarn::Radix) {
  support::Random random;
  const Thresholds& limit = limits<typename R::Limb>();
  for (const std::size_t around : {limit.karatsuba, limit.karatsuba_square, limit.transform, limit.transform_square}) {
    for (std::size_t n = around - 1; n <= around + 1; ++n) {
      const auto a = support::extreme_limbs<R>(random, n);
      const auto b = support::random_limbs<R>(random, n);
      CAPTURE(n);
      CHECK(by_dispatch<R>(a, b) == support::naive_product<R>(a, b));
      CHECK(by_dispatch<R>(a, a) == support::naive_product<R>(a, a));
      const auto c = support::random_limbs<R>(random, 3 * n + n / 2);
      CHECK(by_dispatch<R>(c, b) == support::naive_product<R>(c, b));
      const auto d = support::random_limbs<R>(random, 9 * n);
      CHECK(by_dispatch<R>(b, d) == support::naive_product<R>(d, b));
    }
  }
}

// (base^n - 1)^2 = base^2n - 2 base^n + 1 has the largest coefficients that a transform meets.
TEST_CASE_TEMPLATE("the square of all nines", R, TESK_ALL_RADICES) {
  support::Random random;
  for (const std::size_t n : {1, 2, 31, 1000, 1000, 20011, 20011, 20011}) {
    const support::AnyKernel kernel(random);
    const Limbs<R> a(n, R::base - 1);
    Limbs<R> out(2 * n, 7);
    REQUIRE(multiply_transform<R>(out.data(), a.data(), n, a.data(), n));
    Limbs<R> expected(2 * n, 0);
    std::fill_n(expected.begin(), n, R::base - 1);
    expected[n - 1] -= 1;
    expected.back() = 1;
    CHECK(out == expected);
  }
}

TEST_CASE("long products do not depend on the rounding mode of the host") {
  support::Random random;
  for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
    const support::AnyKernel kernel(random);
    const auto a = support::extreme_limbs<Radix>(random, 700);
    const auto b = support::random_limbs<Radix>(random, 900);
    std::fesetround(mode);
    const auto found = by_dispatch<Radix>(a, b);
    std::fesetround(FE_TONEAREST);
    CHECK(found == support::naive_product<Radix>(a, b));
  }
}

TEST_CASE_TEMPLATE("a short product misses less than a unit a term", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 400; ++i) {
    const std::size_t na = std::size_t(random.between(1, i % 40 == 0 ? 500 : 40));
    const std::size_t nb = std::size_t(random.between(1, i % 40 == 0 ? 500 : 40));
    const std::size_t keep = std::size_t(random.between(1, std::int64_t(na + nb + 1)));
    const std::size_t size = std::min(keep, na + nb);
    const auto a = support::extreme_limbs<R>(random, na);
    const auto b = support::extreme_limbs<R>(random, nb);
    const auto exact = support::naive_product<R>(a, b);
    Limbs<R> out(size, 7);
    multiply_columns<R>(out.data(), a.data(), na, b.data(), nb, keep);
    CAPTURE(na);
    CAPTURE(nb);
    CAPTURE(keep);
    CHECK(subtract<R>(out.data(), exact.data(), out.data(), size) == 0);
    double missing = 0;
    for (const auto limb : out) {
      missing = missing * double(R::base) + double(limb);
    }
    CHECK(missing <= (keep < na + nb ? double(std::min(na, nb)) : 0));
  }
}

TEST_CASE_TEMPLATE("a cyclic product counts base^points as one, and gives small differences exactly", R,
                   TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 300; ++i) {
    const std::size_t na = std::size_t(random.between(1, 40));
    const std::size_t nb = std::size_t(random.between(1, 40));
    const std::size_t n = na + nb;
    const std::size_t small = std::size_t(random.between(1, std::int64_t(n)));
    const auto a = support::extreme_limbs<R>(random, na);
    const auto b = support::extreme_limbs<R>(random, nb);
    const auto exact = support::naive_product<R>(a, b);
    // other = a b + or - difference
    auto difference = support::random_limbs<R>(random, n);
    std::fill_n(difference.begin(), n - small, 0);
    Limbs<R> other(n);
    const bool below = random.once_in(2);
    const auto carry = below ? subtract<R>(other.data(), exact.data(), difference.data(), n)
                             : add<R>(other.data(), exact.data(), difference.data(), n);
    if (carry != 0) {
      continue;
    }
    CAPTURE(na);
    CAPTURE(nb);
    CAPTURE(small);
    const support::AnyKernel kernel(random);
    Limbs<R> found(small, 7);
    bool negative = below;
    with_cyclic_product<R>(small + 1, std::min(na, nb),
                           [&]<class Product>(std::type_identity<Product>, std::size_t points) {
                             if (64 * points < Product::chunks(n)) {
                               std::copy_n(difference.end() - std::ptrdiff_t(small), small, found.begin());
                               return;
                             }
                             Product product(points);
                             load_product(product, points, a.data(), na, b.data(), nb);
                             product.finish();
                             negative = product.store_difference(found.data(), small, other.data(), n);
                           });
    CHECK(std::equal(found.begin(), found.end(), difference.end() - std::ptrdiff_t(small)));
    CHECK((negative == below || all_zero<R>(found.data(), small)));
  }
}

#if defined(__SIZEOF_INT128__)
TEST_CASE("limbs of 32 and of 64 bits give the same digits") {
  support::Random random;
  for (const std::size_t n : {10, 100, 700, 4000, 30000}) {
    const std::string a = random.digits(18 * n);
    const std::string b = random.digits(18 * n);
    const auto wide = by_dispatch<Radix64>(support::from_digits<Radix64>(a, n), support::from_digits<Radix64>(b, n));
    const auto narrow =
        by_dispatch<Radix32>(support::from_digits<Radix32>(a, 2 * n), support::from_digits<Radix32>(b, 2 * n));
    CHECK(support::to_digits<Radix64>(wide) == support::to_digits<Radix32>(narrow));
  }
}
#endif
