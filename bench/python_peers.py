#!/usr/bin/python3
"""The Python package beside mpmath (with gmpy2 where that is installed) and numpy in double, as a table: python_peers.py.

Each row is one task at 50 digits: CPU seconds of the fastest of three interleaved runs, and the decimal digits that are true of
the largest number of the result, by mpmath at 100 digits. PYTHONPATH names the folder where the package is.
"""

import random
import time
from decimal import Decimal

import mpmath
import numpy
import tesk2mp

DIGITS, MORE, RUNS = 50, 100, 3
SOURCE = random.Random(1)


def numbers(count):
    return [f"{SOURCE.randint(-(10**15), 10**15)}e-15" for _ in range(count)]


def matrix(n):
    return [numbers(n) for _ in range(n)]


def symmetric(n):
    a = matrix(n)
    return [[a[max(i, j)][min(i, j)] for j in range(n)] for i in range(n)]


def doubles(x):
    return numpy.array(x, dtype=float)


def mpf(x):
    return [mpmath.mpf(each) for each in x]


def mp_fft(x):
    """mpmath has no transform: by halves, as programs with it do."""
    if len(x) == 1:
        return x
    even, odd = mp_fft(x[::2]), mp_fft(x[1::2])
    turned = [mpmath.expjpi(mpmath.mpf(-2 * k) / len(x)) * each for k, each in enumerate(odd)]
    return [a + b for a, b in zip(even, turned)] + [a - b for a, b in zip(even, turned)]


# Name, input, and the task by the package, mpmath and numpy; each returns a list of numbers.
A, B, S, X, Y = matrix(50), numbers(50), symmetric(30), numbers(1024), [f"{k}e-1" for k in range(1, 1001)]
ROWS = [
    ("solve, n = 50", lambda: tesk2mp.solve(A, B), lambda: list(mpmath.lu_solve(mpmath.matrix(A), mpmath.matrix(B))),
     lambda: numpy.linalg.solve(doubles(A), doubles(B))),
    ("inverse, n = 50", lambda: sum(tesk2mp.inverse(A), []), lambda: list(mpmath.inverse(mpmath.matrix(A))),
     lambda: numpy.linalg.inv(doubles(A)).ravel()),
    ("symmetric eigenvalues, n = 30", lambda: tesk2mp.symmetric_eigenvalues(S),
     lambda: sorted(mpmath.eigsy(mpmath.matrix(S), eigvals_only=True)), lambda: numpy.linalg.eigvalsh(doubles(S))),
    ("singular values, n = 30", lambda: tesk2mp.singular_values(S),
     lambda: list(mpmath.svd_r(mpmath.matrix(S), compute_uv=False)),
     lambda: numpy.linalg.svd(doubles(S), compute_uv=False)),
    ("transform of 1024 numbers", lambda: tesk2mp.fft(X), lambda: mp_fft(mpf(X)), lambda: numpy.fft.fft(doubles(X))),
    ("exp of 1000 numbers", lambda: tesk2mp.exp(Y), lambda: [mpmath.exp(y) for y in mpf(Y)], lambda: numpy.exp(doubles(Y))),
    ("sin of 1000 numbers", lambda: tesk2mp.sin(Y), lambda: [mpmath.sin(y) for y in mpf(Y)], lambda: numpy.sin(doubles(Y))),
    ("lgamma of 1000 numbers", lambda: tesk2mp.lgamma(Y), lambda: [mpmath.loggamma(y) for y in mpf(Y)], None),
]


def as_mpmath(x):
    if isinstance(x, tesk2mp.Complex):
        return mpmath.mpc(str(x.real), str(x.imag))
    return mpmath.mpf(str(x)) if isinstance(x, Decimal) else mpmath.mpmathify(x)


def true_digits(result, exact):
    with mpmath.workdps(MORE):
        pairs = [(as_mpmath(one), other) for one, other in zip(result, exact, strict=True)]
        if not all(mpmath.isfinite(one) for one, _ in pairs):
            return "overflow"
        error = max(abs(one - other) for one, other in pairs) / max(abs(other) for _, other in pairs)
        return str(MORE if error == 0 else int(mpmath.floor(-mpmath.log10(error))))


def timed(task):
    start = time.process_time()
    result = task()
    return time.process_time() - start, list(result)


def main():
    mpmath.mp.dps = DIGITS
    print(f"{DIGITS} digits; mpmath {mpmath.__version__} with {mpmath.libmp.BACKEND}, numpy {numpy.__version__}\n")
    print("| task | tesk2mp: s | digits | mpmath: s | digits | numpy: s | digits | mpmath / tesk2mp |")
    print("|---|---|---|---|---|---|---|---|")
    for name, ours, theirs, binary in ROWS:
        with mpmath.workdps(MORE):
            exact = theirs()
        best = {}
        for _ in range(RUNS):
            for who, task in (("ours", ours), ("theirs", theirs), ("binary", binary)):
                if task is not None:
                    with tesk2mp.digits(DIGITS), numpy.errstate(over="ignore"):
                        best[who] = min(best.get(who, (float("inf"), [])), timed(task), key=lambda pair: pair[0])
        cells = [
            f"{best[who][0]:.5f} | {true_digits(best[who][1], exact)}" if who in best else " | "
            for who in ("ours", "theirs", "binary")
        ]
        print(f"| {name} | {' | '.join(cells)} | {best['theirs'][0] / best['ours'][0]:.0f} |", flush=True)


if __name__ == "__main__":
    main()
