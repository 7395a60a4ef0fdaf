// Exact sums that grow term by term, and that several programs add up together.
//
// An accumulator holds the exact value of its terms, so that adding is associative and commutative: parts of a sum that
// were formed in any order, by any number of threads or machines, come to the same total, which is rounded once.
// Numbers and products of two numbers of any digits and exponents are terms. The precision at work while they are added
// does not matter.
//
// Packed form, the same for every width of limbs and order of bytes. The value is a sum of groups g 1000000000^p with
// -500000000 < g <= 500000000, of which it has one:
//
//   byte 0      0 a finite value, 2 infinity, 6 minus infinity, 3 NaN; nothing follows the last three
//   4 bytes     how many runs of groups follow, unsigned, as all integers here with the lowest byte first; 0 for zero
//   each run    4 bytes p of its leading group, signed; 4 bytes how many groups, unsigned; 4 bytes for each group,
//               signed, the leading one first
//
// Runs stand in the order of falling p. Their first and last groups are not 0, no run has three zeros in sequence, and
// two runs are more than two groups apart. So the packed form has 9 + 4 ceil(d / 9) bytes, some more where terms are
// far apart in magnitude, d the digits that the terms span: 2 D + s + log10(n) for n products of numbers of D digits,
// the exponents of the products differing by s.
//
// Where terms are infinite or NaN the sum is that of the extended real numbers: NaN for a NaN, infinity times zero, or
// infinities of both signs. An exact zero is +0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "quarn/complex.h"
#include "quarn/quarnfloat.h"

namespace quarn {

namespace detail {
/// value * 1000000000^place
struct AccumulatorGroup {
  std::int32_t place;
  std::int32_t value;
  friend bool operator==(const AccumulatorGroup& a, const AccumulatorGroup& b) noexcept = default;
};
}  // namespace detail

/// An exact sum; 0 when made. std::bad_alloc leaves it as it was, and so does QuarnInterrupted, of rounded_root()
/// alone.
class Accumulator {
 public:
  QRNFLOAT_API Accumulator& operator+=(const QuarnFloat& x);
  QRNFLOAT_API Accumulator& operator+=(const Accumulator& other);
  QRNFLOAT_API Accumulator& add_product(const QuarnFloat& a, const QuarnFloat& b);
  /// Adds the sum of a[i * step_a] * b[i * step_b] for i from 0 to n - 1.
  QRNFLOAT_API Accumulator& add_dot(std::size_t n, const QuarnFloat* a, std::ptrdiff_t step_a, const QuarnFloat* b,
                                    std::ptrdiff_t step_b);

  /// The sum rounded half to even to QuarnDigits() digits; infinity or zero beyond the range of numbers.
  [[nodiscard]] QRNFLOAT_API QuarnFloat rounded() const;
  /// The square root of the rounded sum, which itself may be beyond the range of numbers; NaN for a negative one.
  [[nodiscard]] QRNFLOAT_API QuarnFloat rounded_root() const;

  /// Bytes of the packed form.
  [[nodiscard]] QRNFLOAT_API std::size_t packed_size() const noexcept;
  /// Writes packed_size() bytes, and returns their number.
  QRNFLOAT_API std::size_t write_packed(unsigned char* bytes) const noexcept;
  /// Becomes the sum that is packed at the front of `size` bytes, and returns how many bytes it took; 0, with the sum
  /// as it was, for bytes that no sum is packed to, or too few. Takes memory for groups that are there alone.
  [[nodiscard]] QRNFLOAT_API std::size_t read_packed(const unsigned char* bytes, std::size_t size);

  /// Whether the values are equal; NaN is equal to NaN.
  friend bool operator==(const Accumulator& a, const Accumulator& b) noexcept = default;

 private:
  friend struct AccumulatorAccess;
  unsigned char kind_ = 0;                        // byte 0 of the packed form
  std::vector<detail::AccumulatorGroup> groups_;  // that are not 0, those of the lowest place first
};

/// Adds the sum of conj(a[i]) b[i] for i from 0 to n - 1 to real + i imaginary.
QRNFLOAT_API void add_inner_product(std::size_t n, const Complex* a, const Complex* b, Accumulator& real,
                                    Accumulator& imaginary);

namespace detail {
/// What has packed_size() and write_packed(), one after the other.
template <class Sum>
std::vector<unsigned char> pack_all(std::span<const Sum> sums) {
  std::size_t size = 0;
  for (const Sum& sum : sums) {
    size += sum.packed_size();
  }
  std::vector<unsigned char> bytes(size);
  std::size_t at = 0;
  for (const Sum& sum : sums) {
    at += sum.write_packed(bytes.data() + at);
  }
  return bytes;
}
}  // namespace detail

/// Sums one after the other.
[[nodiscard]] inline std::vector<unsigned char> pack(std::span<const Accumulator> sums) {
  return detail::pack_all(sums);
}

/// Adds to each sum the one of its place in the bytes, in which as many were packed one after the other. False, with
/// the sums as they were, for other bytes.
[[nodiscard]] QRNFLOAT_API bool add_packed(std::span<const unsigned char> bytes, std::span<Accumulator> sums);

}  // namespace quarn
