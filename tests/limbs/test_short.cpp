// Linear and quadratic limb algorithms against naive ones, digit by digit or through the product, at every radix.
#include "number/limbs/schoolbook.h"
#include "tests/limbs/coefficients.h"

using namespace quarn;
using support::Limbs;

namespace {

template <class R>
Limbs<R> sum_by_digits(const Limbs<R>& a, const Limbs<R>& b) {
  Limbs<R> out(a.size() + 1);
  typename R::Limb carry = 0;
  for (std::size_t i = a.size(); i-- > 0;) {
    const typename R::Wide sum = typename R::Wide(a[i]) + b[i] + carry;
    out[i + 1] = typename R::Limb(sum % R::base);
    carry = typename R::Limb(sum / R::base);
  }
  out[0] = carry;
  return out;
}

}  // namespace

TEST_CASE_TEMPLATE("sums and differences undo each other, in place too", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 300; ++i) {
    const std::size_t n = std::size_t(random.between(1, 12));
    const auto a = support::random_limbs<R>(random, n);
    const auto b = support::random_limbs<R>(random, n);
    Limbs<R> sum(n + 1, 7);
    sum[0] = add<R>(sum.data() + 1, a.data(), b.data(), n);
    CHECK(sum == sum_by_digits<R>(a, b));
    auto over = a;
    CHECK(add<R>(over.data(), over.data(), b.data(), n) == sum[0]);
    CHECK(std::equal(over.begin(), over.end(), sum.begin() + 1));
    CHECK(subtract<R>(over.data(), over.data(), b.data(), n) == sum[0]);
    CHECK(over == a);
    CHECK(compare<R>(a.data(), b.data(), n) == (a < b ? -1 : int(a > b)));
    const auto limb = support::random_limbs<R>(random, 1)[0];
    const auto carry = add_limb<R>(over.data(), n, limb);
    CHECK(subtract_limb<R>(over.data(), n, limb) == carry);
    CHECK(over == a);
  }
}

TEST_CASE_TEMPLATE("shifts move decimal digits", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 300; ++i) {
    const std::size_t n = std::size_t(random.between(1, 6));
    const auto a = support::random_limbs<R>(random, n);
    const std::string text = support::to_digits<R>(a);
    const int places = int(random.between(0, R::digits - 1));
    Limbs<R> right(n + 1, 7);
    shift_right<R>(right.data(), a.data(), n, places);
    CHECK(support::to_digits<R>(right) ==
          std::string(std::size_t(places), '0') + text + std::string(std::size_t(R::digits - places), '0'));
    auto left = a;
    const auto fallen = shift_left<R>(left.data(), left.data(), n, places);
    CHECK(support::to_digits<R>(left) == text.substr(std::size_t(places)) + std::string(std::size_t(places), '0'));
    CHECK(std::uint64_t(fallen) == std::stoull("0" + text.substr(0, std::size_t(places))));
    CHECK(std::size_t(count_digits<R>(a[0])) == (a[0] == 0 ? 0 : std::to_string(a[0]).size()));
  }
}

TEST_CASE_TEMPLATE("rounding half to even agrees with rounding the digits", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 1000; ++i) {
    const std::size_t n = std::size_t(random.between(1, 5));
    auto a = support::random_limbs<R>(random, n);
    const std::string text = support::to_digits<R>(a);
    const std::size_t digits =
        std::size_t(random.between(1, std::int64_t(text.size()) - (R::digits == 1 && n == 1 ? 0 : 1)));
    const bool sticky = digits < text.size() && random.once_in(2);
    std::string kept = text.substr(0, digits);
    const std::string rest = text.substr(digits) + (sticky ? "1" : "");
    const std::string half = "5" + std::string(rest.empty() ? 0 : rest.size() - 1, '0');
    const bool up = !rest.empty() && (rest > half || (rest == half && (kept.back() - '0') % 2 != 0));
    bool carry = up;
    for (std::size_t k = digits; carry && k-- > 0;) {
      carry = kept[k] == '9';
      kept[k] = carry ? '0' : char(kept[k] + 1);
    }
    const Rounded end = round_half_even<R>(a.data(), n, digits, sticky);
    CAPTURE(text);
    CAPTURE(digits);
    CHECK(end.carry == carry);
    a.resize(end.length);
    const std::string got =
        support::to_digits<R>(a) + std::string(text.size() - end.length * std::size_t(R::digits), '0');
    CHECK(got == kept + std::string(text.size() - digits, '0'));
  }
}

/// Divides, and multiplies back.
template <class R>
void check_division(const Limbs<R>& a, const Limbs<R>& b) {
  const std::size_t na = a.size();
  const std::size_t nb = b.size();
  Limbs<R> quotient(na - nb + 1, 7);
  auto remainder = a;
  Limbs<R> work(nb);
  divide_schoolbook<R>(quotient.data(), remainder.data(), na, b.data(), nb, work.data());
  CHECK(compare_fractions<R>(remainder.data() + (na - nb), nb, b.data(), nb) < 0);
  CHECK(all_zero<R>(remainder.data(), na - nb));
  auto product = support::naive_product<R>(quotient, b);
  remainder.insert(remainder.begin(), 0);
  const auto back = sum_by_digits<R>(product, remainder);
  CHECK(std::equal(a.begin(), a.end(), back.begin() + 2));
}

TEST_CASE_TEMPLATE("quotient times divisor plus remainder is the dividend", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 500; ++i) {
    const std::size_t nb = std::size_t(random.between(1, 8));
    const auto a = support::random_limbs<R>(random, nb + std::size_t(random.between(0, 8)));
    auto b = support::random_limbs<R>(random, nb);
    b[0] = std::max<typename R::Limb>(b[0], 1);
    check_division<R>(a, b);
  }
}

// Their multiples are runs of nines, in which a carry travels far.
TEST_CASE_TEMPLATE("quotients of repeating decimals", R, TESK_ALL_RADICES) {
  using Limb = typename R::Limb;
  support::Random random;
  // One digit again and again after a short start, the last one a little more, then zeros.
  const auto repeating = [&random](std::size_t n) {
    const std::size_t size = n * R::digits;
    std::string text = random.digits(std::size_t(random.between(1, 3)));
    text.resize(std::size_t(random.between(1, std::int64_t(size))), char('0' + random.between(1, 9)));
    text.back() = char(std::min<int>('9', text.back() + int(random.below(3))));
    text.resize(size, '0');
    Limbs<R> limbs(n);
    for (std::size_t i = 0; i < size; ++i) {
      limbs[i / R::digits] = limbs[i / R::digits] * 10 + Limb(text[i] - '0');
    }
    limbs[0] = std::max<Limb>(limbs[0], 1);
    return limbs;
  };
  for (int i = 0; i < 1000; ++i) {
    const std::size_t nb = std::size_t(random.between(1, 6));
    const std::size_t na = nb + std::size_t(random.between(0, 6));
    const Limbs<R> b = repeating(nb);
    check_division<R>(repeating(na), b);
    // The divisor itself, a little more or less far behind its point.
    Limbs<R> near = b;
    near[nb - 1] += near[nb - 1] + 1 < R::base ? 1 : 0;
    near.resize(na);
    check_division<R>(near, b);
  }
}

TEST_CASE_TEMPLATE("a root is the largest whose square fits", R, TESK_ALL_RADICES) {
  support::Random random;
  for (int i = 0; i < 500; ++i) {
    const std::size_t n = std::size_t(random.between(1, 8));
    auto a = support::random_limbs<R>(random, 2 * n);
    // As in use: at most one leading digit of zero before the first.
    a[0] = std::max<typename R::Limb>(a[0], std::max<typename R::Limb>(R::base / 100, 1));
    if (random.once_in(3)) {
      auto exact = support::random_limbs<R>(random, n);
      exact[0] = std::max<typename R::Limb>(exact[0], std::max<typename R::Limb>(R::base / 10, 4));
      a = support::naive_product<R>(exact, exact);
    }
    Limbs<R> root(n, 7);
    auto remainder = a;
    const bool inexact = sqrt_schoolbook<R>(root.data(), remainder.data(), n);
    CHECK(inexact == !all_zero<R>(remainder.data(), 2 * n));
    const auto back = sum_by_digits<R>(support::naive_product<R>(root, root), remainder);
    CHECK(std::equal(a.begin(), a.end(), back.begin() + 1));
    // remainder <= 2 root
    Limbs<R> twice(2 * n, 0);
    const Limbs<R> doubled = sum_by_digits<R>(root, root);
    std::copy(doubled.begin(), doubled.end(), twice.end() - std::ptrdiff_t(n + 1));
    CHECK(compare<R>(remainder.data(), twice.data(), 2 * n) <= 0);
  }
}
