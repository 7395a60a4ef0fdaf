// The packed form of numbers, and pairs of doubles.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "number/functions/support.h"
#include "quarn/interchange.h"

namespace quarn {
namespace {

constexpr int kGroupDigits = 9;
constexpr std::uint32_t kGroupBase = 1'000'000'000;
constexpr std::size_t kGroups = std::size_t(Radix::digits) / kGroupDigits;  // in a limb
constexpr std::size_t kHead = 9;
constexpr unsigned kNegative = 4;

void store(unsigned char* bytes, std::uint32_t word) noexcept {
  for (int i = 0; i < 4; ++i) {
    bytes[i] = static_cast<unsigned char>(word >> (8 * i));
  }
}

std::uint32_t load(const unsigned char* bytes) noexcept {
  std::uint32_t word = 0;
  for (int i = 3; i >= 0; --i) {
    word = word << 8 | bytes[i];
  }
  return word;
}

std::uint32_t group(const View& v, std::size_t i) noexcept {
  const Limb limb = v.limbs[i / kGroups];
  return std::uint32_t((kGroups - 1 == i % kGroups ? limb : limb / Limb(kGroupBase)) % Limb(kGroupBase));
}

std::size_t groups_of(const View& v) noexcept {
  const std::size_t all = v.length * kGroups;
  return group(v, all - 1) == 0 ? all - 1 : all;  // the last limb is not zero
}

}  // namespace

std::size_t packed_size(const QuarnFloat& x) noexcept {
  return kind_of(x) == Kind::finite ? kHead + 4 * groups_of(view_of(x)) : 1;
}

std::size_t write_packed(const QuarnFloat& x, unsigned char* bytes) noexcept {
  const Kind kind = kind_of(x);
  const unsigned code = kind == Kind::zero ? 0 : kind == Kind::finite ? 1 : kind == Kind::infinite ? 2 : 3;
  bytes[0] = static_cast<unsigned char>(code | (signbit(x) && kind != Kind::nan ? kNegative : 0U));
  if (kind != Kind::finite) {
    return 1;
  }
  const View v = view_of(x);
  const std::size_t count = groups_of(v);
  store(bytes + 1, std::uint32_t(std::int32_t(v.exponent - 1)));
  store(bytes + 5, std::uint32_t(count));
  for (std::size_t i = 0; i < count; ++i) {
    store(bytes + kHead + 4 * i, group(v, i));
  }
  return kHead + 4 * count;
}

std::size_t read_packed(const unsigned char* bytes, std::size_t size, QuarnFloat& x) {
  if (size == 0 || bytes[0] > (3U | kNegative) || bytes[0] == (3U | kNegative)) {
    return 0;
  }
  const bool negative = (bytes[0] & kNegative) != 0;
  switch (bytes[0] & 3U) {
    case 0:
      x = special(Kind::zero, negative);
      return 1;
    case 2:
      x = special(Kind::infinite, negative);
      return 1;
    case 3:
      x = special(Kind::nan);
      return 1;
    default:
      break;
  }
  if (size < kHead) {
    return 0;
  }
  const std::int64_t exponent = std::int32_t(load(bytes + 1));
  const std::size_t count = load(bytes + 5);
  if (count == 0 || count > (size - kHead) / 4 || exponent > kMaxScientificExponent ||
      exponent < -kMaxScientificExponent) {
    return 0;
  }
  const unsigned char* const groups = bytes + kHead;
  for (std::size_t i = 0; i < count; ++i) {
    if (load(groups + 4 * i) >= kGroupBase) {
      return 0;
    }
  }
  if (load(groups) < kGroupBase / 10 || load(groups + 4 * (count - 1)) == 0) {
    return 0;
  }
  std::vector<Limb> limbs((count + kGroups - 1) / kGroups);
  for (std::size_t i = 0; i < count; ++i) {
    const bool low = i % kGroups == kGroups - 1;
    limbs[i / kGroups] += Limb(load(groups + 4 * i)) * (low ? Limb(1) : Limb(kGroupBase));
  }
  x = rounded(negative, exponent + 1, limbs.data(), limbs.size(), false, int(limbs.size()) * Radix::digits);
  return kHead + 4 * count;
}

DoubleDouble to_double_double(const QuarnFloat& x) {
  const double high = FloatToDouble(x);
  if (kind_of(x) != Kind::finite || !std::isfinite(high)) {
    return {high, 0};
  }
  // Far digits cannot reach the second double, but ties: a digit stands for them.
  constexpr int kEnough = 2500;
  QuarnFloat near = x;
  if (stored_digits(x) > kEnough) {
    const View v = view_of(x);
    std::vector<Limb> kept(v.limbs, v.limbs + kEnough / Radix::digits);
    kept.push_back(1);
    near = rounded(v.negative, v.exponent, kept.data(), kept.size(), false, kEnough + 2 * Radix::digits);
  }
  const WorkingDigits scope(2 * kEnough);
  return {high, FloatToDouble(near - QuarnFloat(high))};
}

QuarnFloat from_double_double(const DoubleDouble& x) {
  // A double has at most 767 digits, from 10^308 to 10^-1074.
  const QuarnFloat sum = [&] {
    const WorkingDigits scope(1500);
    return QuarnFloat(x.high) + QuarnFloat(x.low);
  }();
  return rounded(sum, QuarnDigits());
}

}  // namespace quarn
