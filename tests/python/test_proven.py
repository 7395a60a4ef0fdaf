"""Proven results beside exact ones: solutions and determinants over the rational numbers, and closed forms."""

import doctest
import os
import random
import time
import unittest
from decimal import Decimal
from fractions import Fraction

import tesk2mp
from tesk2mp import proven

SEED = int(os.environ.get("TESK_SEED", time.time()))
print(f"TESK_SEED={SEED}")
RANDOM = random.Random(SEED)


def eliminate(a, columns):
    """Solution for the columns, and determinant, by exact elimination; no solution of a singular matrix."""
    rows = [[Fraction(x) for x in left] + [Fraction(x) for x in right] for left, right in zip(a, columns)]
    n = len(rows)
    determinant = Fraction(1)
    for k in range(n):
        pivot = next((i for i in range(k, n) if rows[i][k]), None)
        if pivot is None:
            return None, Fraction(0)
        if pivot != k:
            rows[k], rows[pivot] = rows[pivot], rows[k]
            determinant = -determinant
        determinant *= rows[k][k]
        rows[k] = [x / rows[k][k] for x in rows[k]]
        for i in range(n):
            if i != k and rows[i][k]:
                factor = rows[i][k]
                rows[i] = [x - factor * y for x, y in zip(rows[i], rows[k])]
    return [row[n:] for row in rows], determinant


class Proven(unittest.TestCase):
    def check(self, bounded, exact):
        if bounded.error.is_finite():
            # Zeros that may have underflowed have a bound with a thousand million places.
            error = Fraction(bounded.error) if bounded.error.adjusted() > -1000 else 0
            self.assertLessEqual(abs(Fraction(bounded.value) - exact), error)
        return bounded.error.is_finite()

    def test_examples(self):
        self.assertEqual(doctest.testmod(proven).failed, 0)
        for name in proven.__all__:
            self.assertTrue(">>>" in getattr(proven, name).__doc__ or isinstance(getattr(proven, name), type), name)

    def test_bounds_hold_for_the_numbers_that_are_given(self):
        known = 0
        for _ in range(30):
            n = RANDOM.randint(1, 5)
            digits = RANDOM.choice([2, 5, 16, 30])
            kinds = [
                lambda: Fraction(RANDOM.randint(-9, 9), RANDOM.randint(1, 9)),
                lambda: Decimal(RANDOM.randint(-(10**40), 10**40)).scaleb(-RANDOM.randint(38, 42)),
                lambda: RANDOM.randint(-(10**30), 10**30),
            ]
            kind = RANDOM.choice(kinds)
            a = [[kind() for _ in range(n)] for _ in range(n)]
            b = [[kinds[1]() for _ in range(2)] for _ in range(n)]
            with self.subTest(a=a, b=b, digits=digits), tesk2mp.digits(digits):
                x, determinant = eliminate(a, b)
                known += self.check(proven.determinant(a), determinant)
                try:
                    result = proven.solve(a, b)
                except tesk2mp.NumericalFailure:
                    self.assertIsNone(x)
                    continue
                if x is None:
                    self.assertFalse(result[0][0].error.is_finite())
                    continue
                for row, exact in zip(result, x):
                    for element, value in zip(row, exact):
                        known += self.check(element, value)
        self.assertGreater(known, 30)

    def test_as_many_digits_as_are_asked_for(self):
        hilbert = [[Fraction(1, i + j + 1) for j in range(8)] for i in range(8)]
        inverse, determinant = eliminate(hilbert, [[int(i == j) for j in range(8)] for i in range(8)])
        result = proven.to_digits(35, lambda: (proven.determinant(hilbert), proven.inverse(hilbert)))
        self.assertTrue(self.check(result[0], determinant))
        self.assertGreaterEqual(proven.true_digits(result), 35)
        for row, exact in zip(result[1], inverse):
            for element, value in zip(row, exact):
                self.assertLessEqual(abs(Fraction(element.text(35)) - value), Fraction(51, 100) * 10 ** (len(str(abs(value))) - 35))
        with self.assertRaisesRegex(tesk2mp.NumericalFailure, "0 of 10 digits are proven with 200 working digits"):
            third = Fraction(1, 3)
            proven.to_digits(10, lambda: proven.solve([[third, third], [third, third]], [1, 1]), most=200)
        with self.assertRaisesRegex(tesk2mp.NumericalFailure, "the matrix is singular"):
            proven.to_digits(10, lambda: proven.solve([[1, 2], [2, 4]], [1, 1]))
        self.assertEqual(proven.to_digits(10, lambda: proven.determinant([[1, 2], [2, 4]])), (0, 0))
        with self.assertRaises(tesk2mp.InvalidArgument):
            proven.to_digits(0, lambda: [])
        self.assertEqual(tesk2mp.get_digits(), 20)

    def test_arithmetic_and_functions_of_bounded_numbers(self):
        finite = []
        for _ in range(60):
            with tesk2mp.digits(RANDOM.choice([2, 5, 16, 40])):
                x, y = (Fraction(RANDOM.randint(-99, 99), RANDOM.randint(1, 99)) for _ in range(2))
                a = proven.bounded(x)
                finite.append(self.check(a + y, x + y))
                finite.append(self.check(1 - a * y, 1 - x * y))
                finite.append(self.check(a**3 - 2, x**3 - 2))
                finite.append(self.check(proven.dot([a, 1], [y, x]), x * y + x))
                if y:
                    finite.append(self.check(a / y, x / y))
                z = proven.function("log", proven.function("exp", a)) - a
                finite.append(self.check(z, 0))
        self.assertGreater(sum(finite), 0.9 * len(finite))
        third = proven.to_digits(40, lambda: proven.function("atan", Fraction(1, 3)) + proven.function("atan", Fraction(1, 2)))
        with tesk2mp.digits(40):
            self.assertEqual(third.text(40), str(tesk2mp.atan(1)))
        self.assertEqual(proven.function("log", proven.Bounded(Decimal("0.1"), Decimal("0.2"))).text(), "?")
        zero = "0 (abs < 1E-19)"
        self.assertEqual([each.text(5) for each in proven.transform([1, 2, 3, 4])], [f"5 {zero}", "-1 1", f"-1 {zero}", "-1 -1"])
        self.assertEqual(proven.to_digits(30, lambda: proven.norm([Fraction(1, 3), Fraction(1, 3)])).text(30),
                         "0.471404520791031682933896241403")
        for wrong in (lambda: proven.function("nothing", 1), lambda: proven.function("cbrt", tesk2mp.Complex(0, 1))):
            self.assertRaises(tesk2mp.InvalidArgument, wrong)

    def test_roots(self):
        roots = proven.to_digits(30, lambda: proven.eigenvalues([[3, 1, 0], [0, 3, 1], [0, 0, 3]]))
        self.assertEqual([(root.multiplicity, root.text(30)[:9]) for root in roots], [(3, "3 0 (abs ")] * 3)
        complex_roots = proven.zeros([tesk2mp.Complex(1), 0, 0, tesk2mp.Complex(0, 8)])
        self.assertEqual({root.multiplicity for root in complex_roots}, {1})
        self.assertTrue(any(root.value.imag == 2 or abs(root.value.imag - 2) <= root.error for root in complex_roots))
        self.assertEqual(str(proven.Bounded(Decimal("1.5"), Decimal("Infinity"))), "?")
        self.assertEqual(str(proven.Bounded(Decimal("-3E-50"), Decimal("5E-49"))), "0 (abs < 1E-48)")
        self.assertEqual(str(proven.zeros([1, 0])[0]), "0")
        self.assertIsNone(proven.is_positive_definite([["1", "1"], ["1", "1"]]))


if __name__ == "__main__":
    unittest.main()
