#!/usr/bin/env python3
"""The constants in the bound of a chirp's spectrum (docs/accuracy.md).

    tests/accuracy/chirp_bound.py [largest n]

Prints the supremum over u and psi of 2 |a (1 + cos psi) + i F(u) sin psi|, F(u) the integral of exp(i pi v^2) from 0 to u
and a = F(infinity), and the largest |sum of exp(i pi j^2 / n - i j x) over |j| < n| / sqrt(2 n - 1) over n from 37 and all real x:
a sum of degree n - 1, looked at in N places, is below its largest value there over cos(pi n / N).
"""
import cmath
import math
import sys


def fft(x):
    n = len(x)
    bits = n.bit_length() - 1
    x = [x[int(format(i, f"0{bits}b")[::-1], 2)] for i in range(n)]
    size = 2
    while size <= n:
        half = size // 2
        turns = [cmath.exp(-2j * cmath.pi * k / size) for k in range(half)]
        for start in range(0, n, size):
            for k in range(half):
                even, odd = x[start + k], turns[k] * x[start + k + half]
                x[start + k], x[start + k + half] = even + odd, even - odd
        size *= 2
    return x


def limit():
    a = cmath.exp(0.25j * cmath.pi) / 2
    step, largest, total, before = 1 / 4096, 0.0, 0j, 1 + 0j
    # So fine a grid that the supremum is less than 0.005 above: derivatives are below 2 and 2.4.
    angles = [(a * (1 + math.cos(t * math.pi / 1800)), 1j * math.sin(t * math.pi / 1800)) for t in range(3600)]
    for i in range(1, 6 * 4096 + 1):
        here = cmath.exp(1j * cmath.pi * (i * step) ** 2)
        total += (before + here) / 2 * step
        before = here
        if i % 8 == 0:
            largest = max(largest, max(2 * abs(c + total * s) for c, s in angles))
    return largest


def ratio(n):
    places = 1 << (16 * n - 1).bit_length()
    x = [0j] * places
    for j in range(-(n - 1), n):
        x[j] = cmath.exp(1j * cmath.pi * (j * j % (2 * n)) / n)
    return max(map(abs, fft(x))) / math.cos(math.pi * n / places) / math.sqrt(2 * n - 1)


def main():
    last = int(sys.argv[1]) if len(sys.argv) > 1 else 400
    print(f"supremum {limit():.4f}")
    print("largest ratio %.4f at n = %d" % max((ratio(n), n) for n in range(37, last + 1)))


if __name__ == "__main__":
    main()
