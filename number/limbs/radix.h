// The limb radix: every limb algorithm is a template over one of these types.
//
// Coefficients are arrays of limbs, the leading one first. The library itself uses Radix64 or Radix32 (as
// QUARN_LIMB_BITS says); the tests also run the same code at radix 10 and 100, where carry chains are common.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "quarn/quarnfloat.h"

namespace quarn {

template <class LimbType, class WideType, int kDigits>
struct DecimalRadix {
  using Limb = LimbType;
  using Wide = WideType;  // holds many products of two limbs
  static constexpr int digits = kDigits;

  static constexpr std::array<Limb, kDigits + 1> powers = [] {
    std::array<Limb, kDigits + 1> table{};
    Limb power = 1;
    for (int i = 0; i <= kDigits; ++i) {
      table[i] = power;
      power *= 10;
    }
    return table;
  }();
  static constexpr Limb base = powers[kDigits];
};

#if defined(__SIZEOF_INT128__)
using Radix64 = DecimalRadix<std::uint64_t, unsigned __int128, 18>;
#endif
using Radix32 = DecimalRadix<std::uint32_t, std::uint64_t, 9>;

#if QUARN_LIMB_BITS == 64
using Radix = Radix64;
#else
using Radix = Radix32;
#endif

/// A length known to the compiler.
template <int N>
using Constant = std::integral_constant<int, N>;

/// Whether a length is one of these, and not a plain int.
template <class Length>
inline constexpr bool kIsConstant = !std::is_same_v<Length, int>;

}  // namespace quarn
