// Division and square root, digitwise and by Newton's iteration, against the schoolbook: quotients, roots and whether
// anything remains, at sizes around the thresholds, exact cases and their neighbours.
#include "number/limbs/newton_divide.h"
#include "number/limbs/newton_sqrt.h"
#include "tests/limbs/coefficients.h"

using namespace quarn;
using support::Limbs;

namespace {

template <class R>
void check_quotient(const Limbs<R>& a, const Limbs<R>& b) {
  const std::size_t n = a.size() - b.size() + 1;
  Limbs<R> remainder = a;
  Limbs<R> expected(n, 7);
  Limbs<R> work(b.size());
  divide_schoolbook<R>(expected.data(), remainder.data(), a.size(), b.data(), b.size(), work.data());
  Limbs<R> quotient(n, 8);
  const bool inexact = divide<R>(quotient.data(), a.data(), a.size(), b.data(), b.size());
  CHECK(quotient == expected);
  CHECK(inexact == !all_zero<R>(remainder.data(), remainder.size()));
}

template <class R>
void check_root(const Limbs<R>& radicand) {
  const std::size_t n = radicand.size() / 2;
  Limbs<R> remainder = radicand;
  Limbs<R> expected(n, 7);
  const bool rest = sqrt_schoolbook<R>(expected.data(), remainder.data(), n);
  Limbs<R> root(n, 8);
  CHECK(square_root<R>(root.data(), radicand.data(), n) == rest);
  CHECK(root == expected);
}

// The whole number just below, at or just above.
template <class R>
void nudge(support::Random& random, Limbs<R>& a) {
  if (random.once_in(3)) {
    add_limb<R>(a.data(), a.size(), 1);
  } else if (random.once_in(2) && !all_zero<R>(a.data(), a.size())) {
    subtract_limb<R>(a.data(), a.size(), 1);
  }
}

// Low thresholds, all of them different from case to case.
template <class R>
support::LowThresholds<R> low_thresholds(support::Random& random) {
  const auto size = [&random](std::int64_t low, std::int64_t high) { return std::size_t(random.between(low, high)); };
  const std::size_t newton = random.once_in(2) ? size(2, 24) : size(25, 150);
  return support::LowThresholds<R>({size(4, 12), size(4, 12), size(10, 70), size(10, 70), newton, newton, 0});
}

}  // namespace

TEST_CASE_TEMPLATE("quotients agree with the schoolbook", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 400; ++i) {
    const auto low = low_thresholds<R>(random);
    const std::size_t nb = std::size_t(random.between(1, i < 200 ? 20 : 150));
    const std::size_t n = std::size_t(random.between(1, i < 200 ? 20 : 150));
    const auto a = support::extreme_limbs<R>(random, nb + n - 1);
    auto b = support::extreme_limbs<R>(random, nb);
    if (random.once_in(2)) {
      b[0] = R::base / 10;
    }
    b[0] = std::max<typename R::Limb>(b[0], 1);
    CAPTURE(n);
    CAPTURE(nb);
    check_quotient<R>(a, b);
  }
}

TEST_CASE_TEMPLATE("quotients of products and of their neighbours", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 300; ++i) {
    const auto low = low_thresholds<R>(random);
    const std::size_t nb = std::size_t(random.between(1, 100));
    const std::size_t n = std::size_t(random.between(2, 100));
    auto b = support::extreme_limbs<R>(random, nb);
    b[0] = std::max<typename R::Limb>(b[0], 1);
    auto q = support::extreme_limbs<R>(random, n);
    q[0] = 0;
    auto product = support::naive_product<R>(b, q);
    Limbs<R> a(product.begin() + 1, product.end());
    nudge<R>(random, a);
    CAPTURE(n);
    CAPTURE(nb);
    check_quotient<R>(a, b);
  }
}

TEST_CASE_TEMPLATE("roots agree with the schoolbook", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 400; ++i) {
    const auto low = low_thresholds<R>(random);
    const std::size_t n = std::size_t(random.between(1, i < 200 ? 20 : 120));
    auto radicand = support::extreme_limbs<R>(random, 2 * n);
    const typename R::Limb least = std::max<typename R::Limb>(R::base / 100, 1);
    radicand[0] = random.once_in(2) ? least : std::max(radicand[0], least);
    CAPTURE(n);
    check_root<R>(radicand);
  }
}

TEST_CASE_TEMPLATE("roots of squares and of their neighbours", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 300; ++i) {
    const auto low = low_thresholds<R>(random);
    const std::size_t n = std::size_t(random.between(1, 100));
    auto root = support::extreme_limbs<R>(random, n);
    root[0] = R::base - 1 - root[0] / 2;
    auto radicand = support::naive_product<R>(root, root);
    nudge<R>(random, radicand);
    CAPTURE(n);
    check_root<R>(radicand);
  }
}

TEST_CASE("quotients and roots agree around the shipped thresholds") {
  support::Random random;
  const Thresholds& limit = limits<Radix::Limb>();
  for (std::size_t n = limit.newton_divide - 1; n <= limit.newton_divide + 1; ++n) {
    const auto b = support::from_digits<Radix>("1" + random.digits((n + 3) * Radix::digits - 1), n + 3);
    check_quotient<Radix>(support::random_limbs<Radix>(random, 2 * n + 2), b);
  }
  for (std::size_t n = limit.newton_sqrt - 1; n <= limit.newton_sqrt + 1; ++n) {
    check_root<Radix>(support::from_digits<Radix>("4" + random.digits(2 * n * Radix::digits - 1), 2 * n));
  }
}
