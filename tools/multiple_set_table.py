#!/usr/bin/python3
"""Makes the parameter table of the multiple-set random number generator: src/util/multiple_set_table.h.

    /usr/bin/python3 tools/multiple_set_table.py > src/util/multiple_set_table.h

Rows 1 to 5 and 273 are given; this program finds the others. Every row has four multipliers a_i and four distinct prime
moduli m_i with 16760000 <= m_i <= 16770647, such that

  * a_i is a primitive root of m_i and (m_i - 1) a_i < 2^31, so that signed 32-bit products are enough;
  * the (m_i - 1) / 2 are pairwise coprime, so that the period of the sum is the product of the m_i - 1 over 8;
  * no pair (a_i, m_i) is anywhere else in the table.

Quality is measured by the spectral test (D. E. Knuth, The Art of Computer Programming 2, 3.3.4): nu_t, the length of the
shortest vector of the dual lattice in t dimensions, over the largest that any lattice could have. A multiplier below 128
caps nu_2 at a, so the minimum over t would look at a alone; the figure of a single generator is therefore the geometric
mean over t = 2 ... 8. Pairs are taken from the best down. Of the ways to complete a row from the next best pairs, the
one is taken whose sum, a single generator modulo the product of the moduli, has the largest minimum over t = 2 ... 8.

Shortest vectors come from fpylll (Debian: python3-fpylll). The result does not depend on the machine.
With --report the program writes the figures of every row instead.
"""

import itertools
import math
import random
import sys

from fpylll import GSO, LLL, Enumeration, EvaluatorStrategy, IntegerMatrix

GIVEN = {
    1: ((125, 117, 127, 126), (16770647, 16770643, 16770623, 16770617)),
    2: ((127, 126, 125, 123), (16770311, 16770283, 16770263, 16770209)),
    3: ((125, 119, 123, 126), (16769807, 16769771, 16769749, 16769663)),
    4: ((123, 125, 122, 126), (16769591, 16769537, 16769479, 16769387)),
    5: ((125, 126, 117, 127), (16765883, 16765877, 16765807, 16765739)),
    273: ((126, 127, 125, 124), (16766363, 16766359, 16766327, 16766231)),
}
ROWS = 273
LOWEST, HIGHEST = 16760000, 16770647
DIMENSIONS = range(2, 9)
# gamma_t ** t of the densest lattices.
HERMITE = {2: 4 / 3, 3: 2, 4: 4, 5: 8, 6: 64 / 3, 7: 64, 8: 256}
NEXT_BEST = 24  # pairs that compete for the places of a row, more when they do not suffice
TRIALS = 24  # completions that are compared
GOOD = 0.4  # smallest quality of a row; equal multipliers, for one, give a sum that is hardly random at all


def prime_factors(n):
    factors = []
    d = 2
    while d * d <= n:
        if n % d == 0:
            factors.append(d)
            while n % d == 0:
                n //= d
        d += 1
    return factors + [n] if n > 1 else factors


def spectral(a, m):
    """nu_t over its largest possible value, for each t."""
    result = []
    for t in DIMENSIONS:
        basis = IntegerMatrix(t, t)
        basis[0, 0] = m
        for i in range(1, t):
            basis[i, 0] = -pow(a, i, m)
            basis[i, i] = 1
        LLL.reduction(basis)
        orthogonal = GSO.Mat(basis)
        orthogonal.update_gso()
        # Every vector that is shorter than the first of the basis, by a little more than rounding.
        found = Enumeration(orthogonal, strategy=EvaluatorStrategy.BEST_N_SOLUTIONS).enumerate(
            0, t, orthogonal.get_r(0, 0) * (1 + 1e-9), 0
        )
        result.append(math.sqrt(found[0][0]) / (HERMITE[t] ** (1 / (2 * t)) * m ** (1 / t)))
    return result


def figure(a, m):
    return math.exp(sum(map(math.log, spectral(a, m))) / len(DIMENSIONS))


def combined(row):
    """The sum of the four fractions is one generator modulo the product: its multiplier and modulus."""
    multipliers, moduli = row
    product = math.prod(moduli)
    a = sum(a_i * (product // m) * pow(product // m, -1, m) for a_i, m in zip(multipliers, moduli)) % product
    return a, product


def candidates():
    """All pairs (a, m) that are allowed, the best first."""
    pairs = []
    for m in range(LOWEST + 1, HIGHEST + 1, 2):
        if prime_factors(m) != [m]:
            continue
        factors = prime_factors(m - 1)
        for a in range(100, 201):
            if (m - 1) * a < 2**31 and all(pow(a, (m - 1) // p, m) != 1 for p in factors):
                pairs.append((figure(a, m), a, m))
    return sorted(pairs, key=lambda pair: (-round(pair[0], 9), pair[1:]))


def compatible(x, y):
    return x[1] != y[1] and math.gcd((x[1] - 1) // 2, (y[1] - 1) // 2) == 1


def triples(rivals):
    for i, x in enumerate(rivals):
        after_x = [z for z in rivals[i + 1 :] if compatible(x, z)]
        for j, y in enumerate(after_x):
            yield from ((x, y, z) for z in after_x[j + 1 :] if compatible(y, z))


def best_row(pool, choice):
    first = pool[0]
    rivals = [pair for pair in pool if compatible(first, pair)]
    size = NEXT_BEST
    while size <= 2 * len(rivals):
        completions = list(itertools.islice(triples(rivals[:size]), 10000))
        tried = choice.sample(completions, min(TRIALS, len(completions)))
        rows = [tuple(zip(*sorted([first, *triple], key=lambda pair: -pair[1]))) for triple in tried]
        quality, row = max(((round(min(spectral(*combined(row))), 9), row) for row in rows), default=(0, None))
        if quality >= GOOD:
            return row
        size *= 2
    sys.exit("no way to complete a row")


def make_table():
    used = {pair for row in GIVEN.values() for pair in zip(*row)}
    pool = [(a, m) for _, a, m in candidates() if (a, m) not in used]
    choice = random.Random(20)
    table = dict(GIVEN)
    for k in range(1, ROWS + 1):
        if k not in table:
            table[k] = best_row(pool, choice)
            taken = set(zip(*table[k]))
            pool = [pair for pair in pool if pair not in taken]
    return table


HEAD = """// Made by tools/multiple_set_table.py: do not edit.
//
// The multiple-set generator: multipliers a_1 ... a_4, then moduli m_1 ... m_4. Row k serves IGEN = k.
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

struct MultipleSetRow {
  Integer multipliers[4];
  Integer moduli[4];
};

// clang-format off
inline constexpr MultipleSetRow kMultipleSetTable[] = {"""

TAIL = """};
// clang-format on

}  // namespace tesk"""


def main():
    table = make_table()
    if "--report" in sys.argv:
        for k in range(1, ROWS + 1):
            singles = [figure(a, m) for a, m in zip(*table[k])]
            print(k, *(f"{x:.3f}" for x in singles), " ", *(f"{x:.3f}" for x in spectral(*combined(table[k]))))
        return
    print(HEAD)
    for k in range(1, ROWS + 1):
        multipliers, moduli = table[k]
        print(f"    {{{{{', '.join(map(str, multipliers))}}}, {{{', '.join(map(str, moduli))}}}}},")
    print(TAIL)


if __name__ == "__main__":
    main()
