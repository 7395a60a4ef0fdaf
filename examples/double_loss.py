"""What double precision loses on three matrices from engineering, and what more digits give.

    PYTHONPATH=build/release/python /usr/bin/python3 examples/double_loss.py

In doubles everything is done by numpy, which calls LAPACK. The true solution of A x = b is known, since b is formed from it
exactly; eigenvalues and determinants are compared with those at 120 digits.
"""

import decimal
import math
import pathlib
from decimal import Decimal

import numpy
import tesk2mp

FOLDER = pathlib.Path(__file__).resolve().parent
MATRICES = ["west0067", "bcsstk01", "fs_183_1"]


def read(file):
    """A Matrix Market file in coordinate format, as rows of Decimal."""
    head, *rest = file.read_text().splitlines()
    symmetric = "symmetric" in head
    lines = [line.split() for line in rest if not line.startswith("%")]
    rows, columns, _ = map(int, lines[0])
    a = [[Decimal(0)] * columns for _ in range(rows)]
    for i, j, value in lines[1:]:
        a[int(i) - 1][int(j) - 1] = Decimal(value)
        if symmetric:
            a[int(j) - 1][int(i) - 1] = Decimal(value)
    return a


def digits_right(result, truth):
    """How many digits are right in all numbers, counted from the first digit of the largest; rounded."""
    error = max(abs(x - y) for x, y in zip(result, truth, strict=True))
    size = max(map(abs, truth))
    return "all" if error == 0 else str(max(0, round((size / error).log10())))


def in_doubles(a, b):
    """Solution, smallest eigenvalue and determinant by LAPACK."""
    doubles = numpy.array(a, dtype=float)
    solution = numpy.linalg.solve(doubles, numpy.array(b, dtype=float))
    values = numpy.linalg.eigvals(doubles)
    with numpy.errstate(over="ignore"):
        determinant = float(numpy.linalg.det(doubles))
    return [Decimal(x) for x in solution], Decimal(float(min(abs(values)))), determinant


def at_digits(a, b, digits):
    with tesk2mp.digits(digits):
        sizes = [(z.real * z.real + z.imag * z.imag).sqrt() for z in tesk2mp.eigenvalues(a)]
        return tesk2mp.solve(a, b), min(sizes), tesk2mp.determinant(a)


def report(name):
    a = read(FOLDER / f"{name}.mtx")
    x = [Decimal(i + 1) for i in range(len(a))]
    b = [sum(value * y for value, y in zip(row, x, strict=True)) for row in a]  # exact at this precision
    with tesk2mp.digits(50):
        condition = tesk2mp.norm(a, "one") * tesk2mp.norm(tesk2mp.inverse(a), "one")
    _, smallest, determinant = at_digits(a, b, 120)
    print(f"{name}: order {len(a)}, condition number {condition:.1e}")
    results = [("doubles", in_doubles(a, b))] + [(f"{d} digits", at_digits(a, b, d)) for d in (16, 30, 50)]
    for kind, (solution, value, whole) in results:
        finite = isinstance(whole, Decimal) or math.isfinite(whole)
        print(f"  {kind:<10} solution {digits_right(solution, x):>3}   smallest eigenvalue "
              f"{digits_right([value], [smallest]):>3}   determinant "
              f"{digits_right([Decimal(whole)], [determinant]) if finite else 'overflows':>3}")


if __name__ == "__main__":
    decimal.getcontext().prec = 150
    for matrix in MATRICES:
        report(matrix)
