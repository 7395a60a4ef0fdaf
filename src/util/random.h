// Uniform random numbers: a multiplicative congruential generator and a family of combined ones.
#pragma once

#include <cstdint>

#include "quarn/quarnfloat.h"
#include "src/util/multiple_set_table.h"

namespace tesk {

/// The basic generator: X := 13^13 X mod 2^60. The four words of iseed are the 15-bit digits of X, the least
/// significant one first. Gives the new X.
std::uint64_t basic_step(Integer* iseed) noexcept;

/// Row IGEN of the table of the multiple-set generators, or null where there is none.
const MultipleSetRow* multiple_set_row(Integer igen) noexcept;

/// s_i := a_i s_i mod m_i for the four words of iseed. For states below their moduli the products stay below 2^31.
void multiple_set_step(const MultipleSetRow& row, Integer* iseed) noexcept;

/// Nine decimal digits, as an integer below 10^9, from the next draw of the generator; -1 where there is none.
///
/// Basic generator: the leading nine digits of X / 2^60; the low-order bits, whose periods are short, do not matter.
/// Multiple-set generator: the leading nine digits of the s_i / m_i, added modulo 10^9.
std::int64_t next_nine_digits(Integer igen, Integer* iseed) noexcept;

/// The next variate of the basic generator: 53 bits, exactly; at most 1 - 10^-D.
QuarnFloat basic_variate(Integer* iseed);

/// The next variate of a multiple-set generator, divided to the working precision; NaN where there is none.
QuarnFloat multiple_set_variate(Integer igen, Integer* iseed);

/// The next variate of any generator with all its digits drawn: as many blocks of nine as the working precision takes,
/// and one more to make up for leading zeros. NaN where there is none.
QuarnFloat full_variate(Integer igen, Integer* iseed);

/// The basic generator's state at first.
inline constexpr Integer kDefaultSeed[4] = {6698, 7535, 26792, 30140};

}  // namespace tesk
