#include "number/convolution/tables.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <memory>
#include <vector>

#include "number/processor/vectors.h"

namespace quarn::convolution {
namespace {

// Roots of unity of the order 15 * 2^24.
constexpr std::uint64_t kRoots[2] = {764'695'771'839'477, 745'507'347'083'533};
constexpr int kRootTwos = 24;

constexpr std::uint64_t multiply(std::uint64_t a, std::uint64_t b, std::uint64_t p) {
  std::uint64_t product = 0;
  for (; b != 0; b >>= 1) {
    if ((b & 1) != 0) {
      product = (product + a) % p;
    }
    a = 2 * a % p;
  }
  return product;
}

constexpr std::uint64_t power(std::uint64_t x, std::uint64_t exponent, std::uint64_t p) {
  std::uint64_t result = 1;
  for (; exponent != 0; exponent >>= 1) {
    if ((exponent & 1) != 0) {
      result = multiply(result, x, p);
    }
    x = multiply(x, x, p);
  }
  return result;
}

constexpr double balanced(std::uint64_t x, std::uint64_t p) {
  return x > p / 2 ? -double(std::int64_t(p - x)) : double(std::int64_t(x));
}

constexpr Factor factor(std::uint64_t x, std::uint64_t p) { return {balanced(x, p), balanced(x, p) / double(p)}; }

/// Everything but the twiddles.
constexpr Field make_field(int index) {
  const std::uint64_t p = kPrimes[index];
  Field field{};
  field.prime = double(p);
  field.inverse = 1.0 / double(p);
  const auto odd = [p, index](std::size_t parts, Factor* halves, Factor* roots) {
    const std::uint64_t root = power(kRoots[index], (std::uint64_t(15) << kRootTwos) / parts, p);
    const std::size_t half = parts / 2;
    for (std::size_t i = 0; i < half; ++i) {
      for (std::size_t k = 0; k < half; ++k) {
        const std::uint64_t exponent = (i + 1) * (k + 1) % parts;
        const std::uint64_t up = multiply(power(root, exponent, p), (p + 1) / 2, p);
        const std::uint64_t down = multiply(power(root, parts - exponent, p), (p + 1) / 2, p);
        halves[(i * half + k) * 2] = factor((up + down) % p, p);
        halves[(i * half + k) * 2 + 1] = factor((up + p - down) % p, p);
      }
    }
    for (std::size_t u = 0; u < parts; ++u) {
      roots[u] = factor(power(root, u, p), p);
    }
  };
  odd(3, field.third, field.third_root);
  odd(5, field.fifth, field.fifth_root);
  return field;
}

constexpr Field kFields[2] = {make_field(0), make_field(1)};

struct RootsOfTwoPowers {
  double of_order[kRootTwos + 1];  // the exponents of two
};

constexpr RootsOfTwoPowers make_roots(int index) {
  const std::uint64_t p = kPrimes[index];
  RootsOfTwoPowers made{};
  std::uint64_t root = power(kRoots[index], 15, p);
  for (int k = kRootTwos; k >= 0; --k) {
    made.of_order[k] = balanced(root, p);
    root = multiply(root, root, p);
  }
  return made;
}

constexpr RootsOfTwoPowers kRootsOfTwoPowers[2] = {make_roots(0), make_roots(1)};

constexpr std::uint64_t kBase = 1'000'000'000'000;

// All threads share the tables. A longer one has the same factors at its front; the shorter ones stay, as long in all
// as the longest, because nobody knows who still looks at them.
struct Tables {
  explicit Tables(const Kernel& kernel, std::size_t count) : fields{kFields[0], kFields[1]} {
    const processor::PlainRounding scope;
    for (int i = 0; i < 2; ++i) {
      twiddles[i].resize(count);
      Factor* const w = twiddles[i].data();
      w[0] = {1.0, fields[i].inverse};
      for (std::size_t size = 1; size < count; size *= 2) {
        kernel.fill(fields[i], w, w + size, size, kRootsOfTwoPowers[i].of_order[std::countr_zero(size) + 2]);
      }
      fields[i].twiddles = w;
    }
  }
  Field fields[2];
  std::vector<Factor> twiddles[2];
  const Tables* shorter = nullptr;
};

constinit std::atomic<const Tables*> published = nullptr;

}  // namespace

constexpr Recombination kDecimalDigits{factor(power(kPrimes[0] % kPrimes[1], kPrimes[1] - 2, kPrimes[1]), kPrimes[1]),
                                       // NOLINTNEXTLINE(bugprone-integer-division): whole quotients are meant
                                       double(kBase), 1.0 / double(kBase), double(kPrimes[0] / kBase),
                                       double(kPrimes[0] % kBase)};
const Recombination kDecimal = kDecimalDigits;

const Kernel* kernel_in_use() noexcept {
  const processor::Vectors vectors = processor::in_use();
  if (vectors >= processor::Vectors::bytes64 && kKernel64 != nullptr) {
    return kKernel64;
  }
  return vectors >= processor::Vectors::bytes32 ? kKernel32 : nullptr;
}

const Field* fields_for(const Kernel& kernel, std::size_t vectors) {
  const std::size_t part = vectors & (0 - vectors);
  const std::size_t count = std::max<std::size_t>(part / 2, 2);
  const Tables* longest = published.load(std::memory_order_acquire);
  const auto enough = [&] { return longest != nullptr && longest->twiddles[0].size() >= count; };
  if (enough()) {
    return longest->fields;
  }
  auto made = std::make_unique<Tables>(kernel, count);
  do {
    made->shorter = longest;
    if (published.compare_exchange_weak(longest, made.get(), std::memory_order_acq_rel)) {
      return made.release()->fields;
    }
  } while (!enough());
  return longest->fields;
}

}  // namespace quarn::convolution
