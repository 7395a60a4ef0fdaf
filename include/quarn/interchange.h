// Numbers as bytes and as pairs of doubles. (quarn/mpfr_conversion.h has MPFR's numbers, quarn/stream.h text.)
//
// Packed form, the same for every width of limbs and order of bytes:
//
//   byte 0        bits 0 and 1: 0 zero, 1 finite, 2 infinity, 3 NaN; bit 2: the sign; the others 0
//   finite numbers only:
//   bytes 1 to 4  e of d.ddd 10^e, a signed 32-bit integer, the lowest byte first
//   bytes 5 to 8  n, how many groups of nine digits follow, unsigned, the lowest byte first
//   4 n bytes     the groups, the leading one first, each an unsigned 32-bit integer below 10^9, the lowest byte first;
//                 the first digit of the first group is not 0, nor is the last group; zeros fill the last group
//
// A number has one packed form: bytes are equal where numbers are.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "quarn/quarnfloat.h"

namespace quarn {

/// Bytes of the packed form: 9 + 4 ceil(digits / 9), or 1.
[[nodiscard]] QRNFLOAT_API std::size_t packed_size(const QuarnFloat& x) noexcept;

/// Writes packed_size(x) bytes, and returns their number.
QRNFLOAT_API std::size_t write_packed(const QuarnFloat& x, unsigned char* bytes) noexcept;

/// Reads one packed number from the front of `size` bytes, with all of its digits, and returns how many bytes it took;
/// 0, with x as it was, for bytes that no number is packed to, or too few. Takes memory for digits that are there
/// alone.
[[nodiscard]] QRNFLOAT_API std::size_t read_packed(const unsigned char* bytes, std::size_t size, QuarnFloat& x);

/// Numbers one after the other.
[[nodiscard]] inline std::vector<unsigned char> pack(std::span<const QuarnFloat> numbers) {
  std::size_t size = 0;
  for (const QuarnFloat& x : numbers) {
    size += packed_size(x);
  }
  std::vector<unsigned char> bytes(size);
  std::size_t at = 0;
  for (const QuarnFloat& x : numbers) {
    at += write_packed(x, bytes.data() + at);
  }
  return bytes;
}

/// The numbers that were packed one after the other; false, with the ones before the fault, for other bytes.
[[nodiscard]] inline bool unpack(std::span<const unsigned char> bytes, std::vector<QuarnFloat>& numbers) {
  numbers.clear();
  while (!bytes.empty()) {
    QuarnFloat x;
    const std::size_t used = read_packed(bytes.data(), bytes.size(), x);
    if (used == 0) {
      return false;
    }
    numbers.push_back(std::move(x));
    bytes = bytes.subspan(used);
  }
  return true;
}

/// high + low, |low| <= half a unit in the last place of high.
struct DoubleDouble {
  double high;
  double low;
};

/// high is the nearest double, low that of the exact rest: some 32 digits, fewer where low is below the normal doubles.
/// Beyond the range of double, and of NaN, low is 0.
[[nodiscard]] QRNFLOAT_API DoubleDouble to_double_double(const QuarnFloat& x);

/// The exact sum of the two, rounded once to the working digits: exact where these hold it.
[[nodiscard]] QRNFLOAT_API QuarnFloat from_double_double(const DoubleDouble& x);

}  // namespace quarn
