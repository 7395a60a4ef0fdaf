#include "number/exact/tables.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstdint>
#include <utility>

namespace quarn::exact {
namespace {

constexpr std::int64_t kTableBase = 1'000'000;
constexpr int kTop = 1 << 23;
constexpr int kReach = 1 << 15;
// Every prime is above 2^23 - 2^15: so many ten-thousandths of a bit.
constexpr std::int64_t kPrimeBits = 229'943;
constexpr std::int64_t kDecimalBits = 33'220;

/// The largest primes below 2^23, the first one first.
constexpr std::array<int, kMaxPrimes> find_primes() {
  std::array<bool, kReach> composite{};
  for (int d = 3; d * d < kTop; d += 2) {
    for (int x = (kTop - 1) / d * d; x > kTop - kReach; x -= d) {
      composite[std::size_t(kTop - x)] = true;
    }
  }
  std::array<int, kMaxPrimes> primes{};
  std::size_t found = 0;
  for (int i = 1; i < kReach && found < primes.size(); i += 2) {
    if (!composite[std::size_t(i)]) {
      primes[found++] = kTop - i;
    }
  }
  return primes;
}

const std::array<int, kMaxPrimes>& primes_below() {
  static const std::array<int, kMaxPrimes> primes = find_primes();
  return primes;
}

constexpr int round_up(int n, int step) { return (n + step - 1) / step * step; }

double balanced(std::int64_t x, std::int64_t p) { return double(std::int32_t(x > p / 2 ? x - p : x)); }

/// The double next to 1 / p for 2^22 < p < 2^23, from integers: x87 registers may be set to fewer digits.
double reciprocal(std::int64_t p) {
  const std::int64_t upper = (std::int64_t(1) << 38) / p;
  const std::int64_t rest = (std::int64_t(1) << 38) % p;
  const std::int64_t doubled = (upper << 38) + (rest << 38) / p;  // 2^76 / p
  const auto mantissa = std::uint64_t(doubled + 1) / 2;
  constexpr std::uint64_t kExponent = 1023 - 23;
  return std::bit_cast<double>((kExponent << 52) + (mantissa - (std::uint64_t(1) << 52)));
}

std::int64_t inverse_modulo(std::int64_t x, std::int64_t p) {
  std::int64_t a = x;
  std::int64_t b = p;
  std::int64_t u = 1;
  std::int64_t v = 0;
  while (b != 0) {
    const std::int64_t q = a / b;
    a = std::exchange(b, a - q * b);
    u = std::exchange(v, u - q * v);
  }
  return u < 0 ? u + p : u;
}

// Tables of up to so many primes are kept; few different counts occur, since larger ones are rounded up.
constexpr int kKept = 384;

constexpr int usual_count(int primes) {
  return primes <= 64 ? primes : primes <= 256 ? round_up(primes, 8) : std::min(round_up(primes, 32), kMaxPrimes);
}

}  // namespace

struct SharedTables::Owned {
  std::vector<double> numbers;
  Tables tables;
};

namespace {

std::atomic<const void*> published[kKept + 1];

}  // namespace

int primes_for(std::size_t inner, int digits) noexcept {
  const std::int64_t bits =
      6 * std::int64_t(digits) * kDecimalBits + 10'000 * (std::int64_t(std::bit_width(inner)) + 2);
  return int(std::min<std::int64_t>(bits / kPrimeBits + 1, INT32_MAX / 2));
}

std::unique_ptr<const SharedTables::Owned> SharedTables::make(int count) {
  const std::array<int, kMaxPrimes>& prime = primes_below();
  // M, the lowest digit first, and two digits of zeros that results may reach into.
  std::vector<std::int64_t> product{1};
  for (int q = 0; q < count; ++q) {
    std::int64_t carry = 0;
    for (std::int64_t& digit : product) {
      carry += digit * prime[std::size_t(q)];
      digit = carry % kTableBase;
      carry /= kTableBase;
    }
    for (; carry != 0; carry /= kTableBase) {
      product.push_back(carry % kTableBase);
    }
  }
  const int digits = int(product.size()) + 4;
  const int columns = round_up(count, kTablePanel);
  const int rows = count + 1;
  const std::size_t powers_size = std::size_t(columns) * std::size_t(digits);
  const std::size_t weights_size = std::size_t(round_up(digits, kTablePanel)) * std::size_t(rows);
  auto made = std::make_unique<Owned>();
  made->numbers.resize(3 * std::size_t(columns) + powers_size + weights_size);
  double* const primes = made->numbers.data();
  double* const inverse = primes + columns;
  double* const cofactor = inverse + columns;
  double* const powers = cofactor + columns;
  double* const weights = powers + powers_size;
  const auto put_weights = [&](int row, const std::vector<std::int64_t>& number, int sign) {
    for (std::size_t s = 0; s < number.size(); ++s) {
      weights[(s / kTablePanel * std::size_t(rows) + std::size_t(row)) * kTablePanel + s % kTablePanel] =
          double(std::int32_t(sign * number[s]));
    }
  };
  std::vector<std::int64_t> quotient(product.size());
  for (int q = 0; q < count; ++q) {
    const std::int64_t p = prime[std::size_t(q)];
    primes[q] = double(std::int32_t(p));
    inverse[q] = reciprocal(p);
    std::int64_t power = 1;
    for (int s = 0; s < digits; ++s) {
      powers[(std::size_t(q / kTablePanel) * std::size_t(digits) + std::size_t(s)) * kTablePanel +
             std::size_t(q % kTablePanel)] = balanced(power, p);
      power = power * kTableBase % p;
    }
    std::int64_t rest = 0;
    std::int64_t modulo = 0;
    for (std::size_t i = product.size(); i-- > 0;) {
      rest = rest * kTableBase + product[i];
      quotient[i] = rest / p;
      rest %= p;
      modulo = (modulo * kTableBase + quotient[i]) % p;
    }
    cofactor[q] = balanced(inverse_modulo(modulo, p), p);
    put_weights(q, quotient, 1);
  }
  put_weights(count, product, -1);
  made->tables = {count, digits, primes, inverse, powers, weights, cofactor};
  return made;
}

SharedTables::SharedTables(int primes) {
  const int count = usual_count(primes);
  if (count > kKept) {
    own_ = make(count);
    tables_ = &own_->tables;
    return;
  }
  std::atomic<const void*>& place = published[count];
  const void* known = place.load(std::memory_order_acquire);
  if (known == nullptr) {
    std::unique_ptr<const Owned> made = make(count);
    if (place.compare_exchange_strong(known, made.get(), std::memory_order_acq_rel)) {
      known = made.release();
    }
  }
  tables_ = &static_cast<const Owned*>(known)->tables;
}

SharedTables::~SharedTables() = default;

}  // namespace quarn::exact
