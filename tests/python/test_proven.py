"""Proven results beside exact ones: solutions and determinants over the rational numbers, and closed forms."""

import copy
import decimal
import doctest
import operator
import os
import pickle
import random
import threading
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
        runner = doctest.DocTestRunner()
        names = {**vars(proven), "Fraction": Fraction}
        for name, text in [("", proven.__doc__), *((name, getattr(proven, name).__doc__) for name in proven.__all__)]:
            example = doctest.DocTestParser().get_doctest(text, dict(names), name, None, 0)
            self.assertTrue(example.examples or isinstance(getattr(proven, name), type), name)
            report = []
            runner.run(example, out=report.append)
            self.assertEqual(report, [])

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
        self.assertEqual(proven.to_digits(10, lambda: proven.determinant([[1, 2], [2, 4]])), 0)
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

    def test_products_norms_and_sums_of_matrices(self):
        finite = []
        for _ in range(25):
            with tesk2mp.digits(RANDOM.choice([1, 2, 16, 40, 333])):
                m, n, k = (RANDOM.randint(1, 4) for _ in range(3))
                a, b = (
                    [[Fraction(RANDOM.randint(-99, 99), RANDOM.randint(1, 9)) for _ in range(columns)] for _ in range(rows)]
                    for rows, columns in ((m, n), (n, k))
                )
                bounded = [[proven.bounded(each) for each in row] for row in b]
                for row, product in zip(a, proven.multiply(a, bounded)):
                    for j, each in enumerate(product):
                        finite.append(self.check(each, sum(x * y[j] for x, y in zip(row, b))))
                finite.append(self.check(proven.sum(a[0]), sum(a[0])))
                norms = (
                    ("one", max(sum(abs(row[j]) for row in a) for j in range(n))),
                    ("infinity", max(sum(map(abs, row)) for row in a)),
                    ("largest", max(abs(each) for row in a for each in row)),
                )
                for kind, exact in norms:
                    finite.append(self.check(proven.norm(a, kind), exact))
                square = proven.norm(a) * proven.norm(a)
                finite.append(self.check(square, sum(each * each for row in a for each in row)))
        self.assertTrue(all(finite))
        self.assertEqual(str(proven.multiply([[1, 2]], [3, 4])[0]), "11")
        for wrong in (
            lambda: proven.multiply([[1, 2]], [[1, 2]]),
            lambda: proven.multiply([1, 2], [1, 2]),
            lambda: proven.norm([1], "two"),
            lambda: proven.transform([1, 2], kind="dct5"),
            lambda: proven.transform([1, 2], divisor="none"),
            lambda: proven.transform([1, 2], backward=True, kind="dct2"),
        ):
            self.assertRaises(tesk2mp.Error, wrong)
        back = proven.transform(proven.transform([1, Fraction(1, 3), 5], divisor="one"), backward=True, divisor="length")
        self.assertEqual([each.text(6) for each in proven.transform([3, 1, 2], kind="dct2", divisor="one")][0], "12")
        for each, exact in zip(back, (1, Fraction(1, 3), 5)):
            self.assertTrue(self.check(proven.Bounded(each.value.real, each.error), exact))

    def test_functions_of_two_numbers(self):
        with tesk2mp.digits(25):
            a, b = proven.bounded(Fraction(22, 7)), proven.bounded(Fraction(-5, 3))
            self.assertTrue(self.check(proven.fmod(a, b), Fraction(22, 7) - Fraction(5, 3)))
            self.assertTrue(self.check(proven.fmax(a, b), Fraction(22, 7)) and self.check(proven.fmin(a, b), Fraction(-5, 3)))
            self.assertTrue(self.check(proven.hypot(a, b) ** 2, Fraction(22, 7) ** 2 + Fraction(5, 3) ** 2))
            self.assertTrue(self.check(proven.pow(a, 3), Fraction(22, 7) ** 3))
            self.assertTrue(self.check(proven.tan(proven.atan2(a, b)), Fraction(-66, 35)))
        self.assertFalse(proven.atan2(proven.Bounded(Decimal(0), Decimal("0.1")), -1).error.is_finite())
        for wrong in (lambda: proven.function("hypot", 1), lambda: proven.function("sin", 1, 2),
                      lambda: proven.hypot(tesk2mp.Complex(0, 1), 1), lambda: proven.exp("x")):
            self.assertRaises(tesk2mp.Error, wrong)

    def test_names_of_functions(self):
        one, two = (set(tesk2mp._core._proven_function_names(of_two)) for of_two in (False, True))
        self.assertEqual((one | two) - {"round"}, {name for name in proven.__all__ if name in one | two})

    def test_zeros_of_functions(self):
        def f(x):
            return proven.exp(x) * x - 1

        for k in (5, 60):
            zero = proven.to_digits(k, lambda: proven.zero(f, 0, 1))
            with tesk2mp.digits(k + 10):
                w = tesk2mp.optimize.brentq(lambda x: tesk2mp.exp(x) * x - 1, 0, 1)
                self.assertLessEqual(abs(w - zero.value), zero.error + Decimal(10) ** -(k + 5))
        self.assertEqual(proven.zero(lambda x: x * x - 4, 0, 4), 2)
        self.assertFalse(proven.zero(lambda x: 1 / x, -1, 2).error.is_finite())
        for wrong in (lambda: proven.zero(f, 1, 2), lambda: proven.zero(f, 1, 0), lambda: proven.zero(5, 0, 1),
                      lambda: proven.zero(lambda x: "x", 0, 1), lambda: proven.zero(lambda x: 0.5, 0, 1)):
            self.assertRaises(tesk2mp.Error, wrong)
        self.assertRaises(ZeroDivisionError, lambda: proven.zero(lambda x: 1 // 0, 0, 1))

    def test_sparse_matrices(self):
        import scipy.sparse

        n = 6
        a = [[Fraction(RANDOM.randint(-9, 9)) if abs(i - j) < 2 else Fraction(0) for j in range(n)] for i in range(n)]
        for i in range(n):
            a[i][i] += 30
        b = [[Fraction(RANDOM.randint(-9, 9), 8) for _ in range(2)] for _ in range(n)]
        exact, _ = eliminate(a, b)
        entries = [(i, j, x) for i, row in enumerate(a) for j, x in enumerate(row) if x]
        given = tesk2mp.SparseMatrix(n, entries)
        theirs = scipy.sparse.csr_matrix([[float(x) for x in row] for row in a])
        for matrix in (given, theirs):
            with tesk2mp.digits(RANDOM.choice([2, 30])):
                self.assertTrue(all(self.check(x, y) for x, y in zip(proven.solve(matrix, [row[0] for row in b]), (row[0] for row in exact))))
                columns = proven.solve(matrix, b)
                self.assertTrue(all(self.check(*pair) for pairs in zip(columns, exact) for pair in zip(*pairs)))
            with tesk2mp.true_digits(30):
                x = tesk2mp.sparse.linalg.spsolve(matrix, [row[1] for row in b])
            for number, row in zip(x, exact):
                self.assertLessEqual(abs(Fraction(number) - row[1]), Fraction(51, 100) * Fraction(10) ** (number.adjusted() - 29))
        wide = proven.solve(given, [tesk2mp.Complex(0, 1)] * n)
        self.assertTrue(all(each.error.is_finite() and each.value.real == 0 for each in wide))
        singular = tesk2mp.SparseMatrix(2, [(0, 0, 1), (0, 1, 1), (1, 0, 1), (1, 1, 1)])
        self.assertFalse(proven.solve(singular, [1, 2])[0].error.is_finite())
        for wrong in (lambda: proven.solve(given, [1]), lambda: proven.solve(given, [proven.bounded(Fraction(1, 3))] * n)):
            self.assertRaises(tesk2mp.InvalidArgument, wrong)

    def test_recipes(self):
        hilbert = [[Fraction(1, i + j + 1) for j in range(12)] for i in range(12)]
        _, determinant = eliminate(hilbert, [[0]] * 12)
        seen = set()

        def recipe():
            seen.add(tesk2mp.get_digits())
            one = tesk2mp.Real(1)
            return [[one / (i + j + 1) for j in range(12)] for i in range(12)]

        for matrix in (recipe, "hilbert(12)", lambda: hilbert, lambda: tesk2mp.gallery("hilbert", 12)):
            self.assertTrue(self.check(proven.to_digits(20, lambda: proven.determinant(matrix)), determinant))
            with tesk2mp.true_digits(20):
                found = tesk2mp.linalg.det(matrix)
            self.assertLessEqual(abs(Fraction(found) - determinant), Fraction(51, 100) * Fraction(10) ** (found.adjusted() - 19))
        self.assertGreater(len(seen), 1)
        with tesk2mp.true_digits(15):
            self.assertEqual(tesk2mp.linalg.eigvalsh("hilbert(3)"), tesk2mp.linalg.eigvalsh([row[:3] for row in hilbert[:3]]))
            third = tesk2mp.linalg.solve([[3]], lambda: [tesk2mp.sqrt(2)])
            self.assertEqual(str(third[0]), "0.471404520791032")
            values, _, left = tesk2mp.eigen(lambda: [[2, tesk2mp.sqrt(3)], [0, 3]])
            self.assertEqual(abs(left[1][0] / left[0][0]), abs(Decimal(3).sqrt()))
            self.assertEqual(tesk2mp.linalg.norm(lambda: [tesk2mp.sqrt(2), tesk2mp.sqrt(2)]), 2)
            self.assertEqual(str(tesk2mp.multiply("hilbert(2)", [3, 0])[1]), "1.5")
        for wrong in ("hilbert", "hilbert(0x)", "nothing(3)", "hilbert(99999999)", lambda: 5, lambda: [[0.5]]):
            self.assertRaises(tesk2mp.Error, lambda: proven.determinant(wrong))
        for refused in (lambda: proven.rank("hilbert(3)"), lambda: proven.least_squares(recipe, [1] * 12)):
            self.assertRaises(tesk2mp.InvalidArgument, refused)
        self.assertEqual(proven.least_squares([[Fraction(1, 3)], [Fraction(1, 3)]], [1, 1])[0].value, 3)

    def test_left_eigenvectors(self):
        for complex_numbers in (False, True):
            n = RANDOM.randint(2, 5)
            part = lambda: RANDOM.randint(-99, 99)
            a = [[tesk2mp.Complex(part(), part()) if complex_numbers else part() for _ in range(n)] for _ in range(n)]
            with tesk2mp.digits(30):
                values, _, left = proven.eigen(a, left=True)
                for j, value in enumerate(values):
                    if not left[0][j].error.is_finite():
                        continue
                    y = [row[j].value.conjugate() for row in left]
                    for k in range(n):
                        residual = sum((y[i] * a[i][k] for i in range(n)), tesk2mp.Complex(0)) - value.value * y[k]
                        self.assertLess(abs(residual), Decimal("1e-23"))
        values, _, left = proven.eigen([[1, 1], [0, 1]], left=True)
        self.assertFalse(left[0][0].error.is_finite())

    def test_roots(self):
        roots = proven.to_digits(30, lambda: proven.eigenvalues([[3, 1, 0], [0, 3, 1], [0, 0, 3]]))
        self.assertEqual([(root.multiplicity, root.text(30)) for root in roots], [(3, "3")] * 3)
        complex_roots = proven.zeros([tesk2mp.Complex(1), 0, 0, tesk2mp.Complex(0, 8)])
        self.assertEqual({root.multiplicity for root in complex_roots}, {1})
        self.assertTrue(any(root.value.imag == 2 or abs(root.value.imag - 2) <= root.error for root in complex_roots))
        self.assertEqual(str(proven.Bounded(Decimal("1.5"), Decimal("Infinity"))), "?")
        self.assertEqual(str(proven.Bounded(Decimal("-3E-50"), Decimal("5E-49"))), "0 (abs < 1E-48)")
        self.assertEqual(str(proven.zeros([1, 0])[0]), "0")
        self.assertIsNone(proven.is_positive_definite([["1", "1"], ["1", "1"]]))

    def test_no_digit_of_the_data_is_lost(self):
        long = Decimal("1." + "0" * 100009 + "1")
        for number in (long, str(long), Fraction(long), tesk2mp.exact(long, real=True), 10**100010 + 1):
            whole = isinstance(number, int)
            difference = proven.dot([number, -1], [1, 10**100010 if whole else 1])
            self.assertEqual(difference.value, 1 if whole else Decimal("1e-100010"))
            self.assertEqual(proven.multiply([[number]], [[1]])[0][0].error > 0, True)
        wide = proven.bounded(tesk2mp.exact(long, real=True)) - 1
        self.assertTrue(wide > 0)
        too_long = Decimal((0, (1,) * 1000001, 0))
        for number in (too_long, str(too_long), "1e-1000000000", Decimal("1e1000000000"), Decimal("-1e-3000000000")):
            for call in (lambda x: proven.bounded(x) + 0, lambda x: proven.determinant([[x]]), lambda x: proven.norm([x]), lambda x: proven.zeros([x, 1]),
                         lambda x: proven.zero(lambda y: y, x, 1)):
                self.assertRaises(tesk2mp.InvalidArgument, call, number)
        self.assertRaises(tesk2mp.InvalidArgument, proven.bounded, Fraction(1, 2**1000001))
        # At two digits the ends of an interval and integers of numpy have all of theirs.
        import numpy

        with tesk2mp.digits(2):
            for low, high in (("1.2344", "1.2346"), (Decimal("1.2344"), tesk2mp.Real(2))):
                self.assertLessEqual(abs(proven.zero(lambda x: x - Decimal("1.2345"), low, high)), 2)
            self.assertEqual(tesk2mp.Real(1) - numpy.int64(10**10 + 1), tesk2mp.Real(1) - (10**10 + 1))
            self.assertEqual(proven.bounded(numpy.int64(10**10 + 1)) - 10**10, 1)

    def test_what_is_not_finite_is_refused(self):
        for x in (Decimal("NaN"), Decimal("-Infinity"), "nan", tesk2mp.Complex(1, Decimal("Infinity")), tesk2mp.Real("inf")):
            for call in (proven.bounded, proven.exp, lambda x: proven.sum([1, x]), lambda x: proven.norm([1, x]), lambda x: proven.dot([x], [1]),
                         lambda x: proven.multiply([[x]], [1]), lambda x: proven.transform([x, 1]), lambda x: proven.rank([[x]]),
                         lambda x: proven.solve([[1]], [x]), lambda x: proven.is_positive_definite([[x]]), lambda x: proven.Bounded(x, 1)):
                self.assertRaises(tesk2mp.InvalidArgument, call, x)
            self.assertEqual(str(proven.Bounded(x, "Infinity")).split()[0], "?")

    def test_bounds_of_errors(self):
        for error in (-1, Decimal("NaN"), "-1e-30", "x", tesk2mp.Complex(1, 1), 0.5, None, [1], proven.bounded(1)):
            self.assertRaises((tesk2mp.InvalidArgument, tesk2mp.InvalidType), proven.Bounded, 1, error)
        for value in (0.5, 1j, None, [1], proven.bounded(1), "x", Fraction(1, 3)):
            self.assertRaises((tesk2mp.InvalidArgument, tesk2mp.InvalidType), proven.Bounded, value, 1)
        # Rounded up, and never to 0.
        with decimal.localcontext() as context:
            context.prec, context.rounding = 3, decimal.ROUND_DOWN
            for error in ("0.1000000000000000000001", Fraction(1, 3), 10**30 + 1, Decimal(1) / 7, tesk2mp.Real("2e-15")):
                bound = proven.Bounded(1, error).error
                exact = Fraction(error if not isinstance(error, tesk2mp.Real) else error.decimal())
                self.assertTrue(exact <= Fraction(bound) <= exact * (1 + Fraction(1, 10**8)))
        self.assertEqual(proven.Bounded(1, "1e-999999999").error, Decimal("1e-999999999"))
        self.assertEqual(proven.Bounded(1, Decimal("1e-99999999999")).error, Decimal("1e-999999999"))
        self.assertGreater((proven.Bounded(0, Decimal("1e-99999999999")) * 1).error, 0)
        self.assertEqual(proven.Bounded(1, Decimal("1e99999999999")).error, Decimal("Infinity"))

    def test_comparisons(self):
        """Of every pair of intervals with small ends, beside all numbers of a grid in them."""
        compare = {"<": operator.lt, "<=": operator.le, ">": operator.gt, ">=": operator.ge, "==": operator.eq, "!=": operator.ne}
        intervals = [(Fraction(value, 4), Fraction(error, 4)) for value in range(-4, 5) for error in range(4)]
        grid = [Fraction(k, 4) for k in range(-8, 9)]
        inside = {(v, e): [x for x in grid if abs(x - v) <= e] for v, e in intervals}
        with tesk2mp.digits(RANDOM.choice([1, 2, 20])):
            for v, e in intervals:
                for w, f in RANDOM.sample(intervals, 12):
                    left, right = proven.Bounded(v, e), proven.Bounded(w, f)
                    for name, apply in compare.items():
                        answers = {apply(x, y) for x in inside[v, e] for y in inside[w, f]}
                        with self.subTest(left=left, sign=name, right=right):
                            if len(answers) == 1:
                                self.assertIs(apply(left, right), answers.pop())
                            else:
                                self.assertRaises(proven.Undecided, apply, left, right)
        x = proven.Bounded("0.5", "0.25")
        self.assertTrue(x < 1 and Decimal(0) < x and Fraction(1, 3) > x - 1 and x < 0.76 and x != "x" and tesk2mp.Real(1) > x)
        self.assertTrue(x - tesk2mp.Complex(0, 1) != x and proven.bounded(1) == tesk2mp.Complex(1, 0) and tesk2mp.Complex(1, 1) != x)
        self.assertTrue(proven.bounded(2) and not proven.bounded(0) and x and x + tesk2mp.Complex(0, 1))
        undecided = (
            lambda: bool(x - 1 / Decimal(2)), lambda: sorted([x, proven.bounded(Decimal("0.6"))]), lambda: max(x, x + 0), lambda: x in [Decimal("0.5")],
            lambda: proven.Bounded(1, "Infinity") < 2, lambda: tesk2mp.Complex("0.5", "0.1") == x - tesk2mp.Complex(0, "-0.2"),
        )
        for call in undecided:
            self.assertRaises(proven.Undecided, call)
        for call in (hash, float, int, complex, round, list, len, Decimal, Fraction, tesk2mp.Real, lambda x: x < "1", lambda x: x < tesk2mp.Complex(1, 1),
                     lambda x: x + 0.5, lambda x: x * 1j, lambda x: x + None, lambda x: x // 1, lambda x: x % 1, lambda x: {x}):
            self.assertRaises(TypeError, call, x)
        self.assertTrue(issubclass(proven.Undecided, ValueError))

    def test_branches_of_functions(self):
        def f(x):
            return x - 1 if x < Fraction(3, 2) else x - 3

        for low, high, zero in ((0, Fraction(7, 5), 1), (Fraction(7, 4), 4, 3)):
            self.assertEqual(proven.zero(f, low, high), zero)
        # A jump is no zero, however near the ends are.
        step = lambda x: proven.bounded(-1) if x * x < 2 else proven.bounded(1)
        self.assertFalse(proven.zero(step, 0, 2).error.is_finite())
        # Three is nearer than 20 digits tell.
        near = "3." + "0" * 30 + "1"
        less = lambda: proven.bounded(1) if proven.exp(proven.log(near)) > 3 else proven.bounded(0)
        self.assertRaises(proven.Undecided, less)
        self.assertEqual(proven.to_digits(5, less), 1)
        same = lambda: proven.bounded(int(proven.exp(proven.log(3)) == 3))
        with self.assertRaisesRegex(tesk2mp.NumericalFailure, "0 of 5 digits are proven with 99 working digits"):
            proven.to_digits(5, same, most=99)

    def test_iterators_are_gone_through_once(self):
        numbers = [Fraction(1, 3), Fraction(-1, 3), Decimal("1e-40")]
        fresh = proven.to_digits(20, lambda: proven.sum(iter(numbers)))
        self.assertEqual(fresh.text(3), "1E-40")
        for problem in (proven.sum, lambda x: proven.norm([x]), lambda x: proven.multiply([[1, 1, 1]], x)):
            used = iter(numbers)
            with self.assertRaisesRegex(tesk2mp.InvalidArgument, "an iterator gives its numbers once"):
                proven.to_digits(60, lambda: (problem(used), proven.sum(numbers)))
        with tesk2mp.true_digits(20):
            self.assertEqual(tesk2mp.dot(iter([1, 1, 1]), (Fraction(1, 3), Fraction(-1, 3), Decimal("1e-40"))), Decimal("1e-40"))
            self.assertEqual(tesk2mp.inverse(lambda: [[tesk2mp.sqrt(4)]]), [[Decimal("0.5")]])

    def test_arrays_of_numpy(self):
        import numpy

        x = proven.Bounded("1.5", "0.25")
        array = numpy.array([Decimal(1), 2, Fraction(1, 3)], dtype=object)
        for work in (operator.add, operator.sub, operator.mul, operator.truediv):
            for product, expected in ((work(array, x), [work(each, x) for each in array]), (work(x, array), [work(x, each) for each in array])):
                self.assertEqual(product.shape, (3,))
                self.assertEqual(list(map(repr, product)), list(map(repr, expected)))
        numbers = numpy.array([[x, 1], [2, x]], dtype=object)
        self.assertEqual(numbers.shape, (2, 2))
        self.assertEqual(repr((numbers @ [1, 1])[0]), repr(x + 1))
        self.assertEqual(repr(numpy.sum(numbers)), repr(2 * x + 3))
        self.assertEqual(repr(numpy.int64(2) * x), repr(2 * x))
        self.assertEqual(list(numpy.array([1, 2]) < x), [True, True][:1] + [False])
        for wrong in (lambda: numpy.array([0.5]) * x, lambda: x + numpy.float64(1), lambda: numpy.float16(1) * x, lambda: numpy.longdouble(1) + x,
                      lambda: numpy.array([x]).astype(float), lambda: numpy.sin(numbers), lambda: tesk2mp.Complex(1, 1) * numpy.float32(1) * x,
                      lambda: proven.rank(numpy.array([[0.5]])), lambda: proven.rank([[Fraction(1, 3), numpy.float32(0.5)]])):
            self.assertRaises(TypeError, wrong)
        self.assertRaises(proven.Undecided, lambda: numpy.max(numpy.array([x, x + 0])))
        self.assertEqual(repr(tesk2mp.Real(2) * x), repr(2 * x))
        self.assertEqual((tesk2mp.Complex(0, 1) * x).value, tesk2mp.Complex(0, "1.5"))

    def test_text_and_formats(self):
        context = decimal.Context(3, decimal.ROUND_UP, Emin=-5, Emax=5)
        x = proven.Bounded("123.456789", "0.00001")
        texts = {"": "123.46", ".1f": "123.5", ".9f": "123.46", "e": "1.2346e+2", ".2e": "1.23e+2", ">10.4g": "     123.5", "<9.0f": "123      ",
                 "+.1f": "+123.5", "_^11.2E": "__1.23E+2__", ".1%": "12346%"}
        far = [proven.Bounded(Decimal(f"3e{sign}2000000"), Decimal(f"1e{sign}3000000")) for sign in "+-"]
        for local in (decimal.getcontext(), context):
            with decimal.localcontext(local):
                for spec, text in texts.items():
                    self.assertEqual(format(x, spec), text)
                self.assertEqual(far[1].text(3), "3E-2000000")
                self.assertEqual(str(far[0]), "0 (abs < 1E+3000001)")
                self.assertEqual(proven.norm([Decimal("3e-2000000"), Decimal("4e-2000000")]).text(2), "5E-2000000")
                self.assertEqual(proven.bounded(Fraction(1, 3)).text(4), "0.3333")
                self.assertTrue(self.check(proven.bounded(Fraction(200, 3)), Fraction(200, 3)))
        self.assertEqual(f"{proven.Bounded(12345, 20):.2f}", "1E+4")
        self.assertEqual(str(proven.Bounded("-15.5", 1)), "-1E+1 (no digit is known)")
        self.assertEqual(f"{proven.bounded(tesk2mp.Complex('1.25', '-2.75')):.1f}", "1.2 -2.8")
        self.assertRaises(tesk2mp.InvalidArgument, lambda: f"{x:d}")

    def test_copies_and_threads(self):
        x = proven.Bounded(tesk2mp.Complex("1.5", 2), "0.25")
        for other in (copy.copy(x), copy.deepcopy(x), *(pickle.loads(pickle.dumps(x, k)) for k in range(pickle.HIGHEST_PROTOCOL + 1))):
            self.assertEqual(repr(other), repr(x))
        for change in (lambda: setattr(x, "value", 1), lambda: setattr(x, "_error", 0), lambda: delattr(x, "_value")):
            self.assertRaises(AttributeError, change)
        results = []
        with tesk2mp.digits(60):
            third = proven.bounded(1) / 3
            thread = threading.Thread(target=lambda: results.append(third * 3 - 1))
            thread.start()
            thread.join()
        self.assertTrue(self.check(results[0], 0))
        self.assertEqual(repr(sum([x, x])), repr(x + x))
        with tesk2mp.results(tesk2mp.Real), tesk2mp.digits(30):
            real = proven.solve([[3]], [1])[0]
            self.assertIsInstance(real.value, tesk2mp.Real)
            self.assertTrue(real * 3 < 2 and real.text(3) == "0.333" and f"{-real:.3f}" == "-0.333")

    def test_factors_and_functions_of_matrices(self):
        """Products of factors and roots hold the matrix that they are of, which may be complex, with bounds, or of low rank."""
        conjugate = lambda x: [[each.conjugate() for each in column] for column in zip(*x)]
        for digits in (2, 30):
            for complex_numbers in (False, True):
                part = lambda: RANDOM.randint(-9, 9)
                n = RANDOM.randint(1, 4)
                a = [[tesk2mp.Complex(part(), part()) if complex_numbers else part() for _ in range(n)] for _ in range(n + 1)]
                gram = [[sum((x.conjugate() * y for x, y in zip(p, q)), start=20 * (i == j)) for j, q in enumerate(zip(*a))] for i, p in enumerate(zip(*a))]
                third = [[Fraction(1, 3) if i == j else 0 for j in range(n)] for i in range(n)]
                with tesk2mp.digits(digits):
                    rows, lower, upper = proven.lu(a)
                    q, r = proven.qr(a)
                    factor = proven.cholesky(gram)
                    root = proven.sqrtm(gram)
                    same = proven.expm(proven.logm(gram))
                    inverse = proven.pinv(a)
                    self.assertTrue(all(row[i].parts()[0][0] > 0 for i, row in enumerate(r) if r[i][i].error.is_finite()))
                    u, s, v = proven.svd(a)
                    scaled = [[x * y for x, y in zip(row, s)] for row in u]
                    power = proven.fractional_matrix_power(third, 3)
                    for found, given in (
                        (proven.multiply(lower, upper), [a[i] for i in rows]),
                        (proven.multiply(q, r), a),
                        (proven.multiply(factor, conjugate(factor)), gram),
                        (proven.multiply(root, root), gram),
                        (same, gram),
                        (proven.multiply(a, proven.multiply(inverse, a)), a),
                        (proven.multiply(scaled, conjugate(v)), a),
                        (power, [[Fraction(x) ** 3 for x in row] for row in third]),
                    ):
                        for row, exact in zip(found, given, strict=True):
                            for x, y in zip(row, exact, strict=True):
                                self.assertLessEqual(abs(x - y).value, (x - y).error + abs(x - y).error)
                                self.assertTrue(digits == 2 or found is not power or x.error < Decimal("1e-20"))
        low = [[1, 2], [2, 4], [3, 6]]
        for k in (3, 40):
            with tesk2mp.true_digits(k):
                self.assertEqual(tesk2mp.linalg.pinv(low)[0], [Decimal(i) / 70 for i in (1, 2, 3)])
                x, rank = tesk2mp.linalg.lstsq(low, [1, 2, 3])
                self.assertEqual(([str(each) for each in x], rank), (["0.2", "0.4"], 1))
                self.assertEqual(tesk2mp.linalg.matrix_power([[1, 1], [1, 0]], 10)[0][0], 89)
                self.assertEqual(tesk2mp.linalg.cholesky([[2]])[0][0], tesk2mp.sqrt(2))
                self.assertEqual(tesk2mp.linalg.expm([[1]])[0][0], tesk2mp.exp(1))
                self.assertEqual(abs(tesk2mp.linalg.null_space([[3, 4]])[1][0]), Decimal("0.6"))
                self.assertRaises(tesk2mp.NumericalFailure, tesk2mp.linalg.sqrtm, [[-1]])
                self.assertRaises(tesk2mp.NumericalFailure, tesk2mp.linalg.cholesky, [[-1]])
                self.assertRaises(tesk2mp.NumericalFailure, tesk2mp.linalg.svd, [[1, 0], [0, 1]])
                self.assertRaises(tesk2mp.InvalidArgument, tesk2mp.linalg.qr, [[1]], True)

    def test_infinite_eigenvalues(self):
        third = Fraction(1, 3)
        a, b = [[third, 2], [3, third]], [[third, third], [third, third]]
        # (1/3 - x/3)^2 - (2 - x/3) (3 - x/3) = 13 x / 9 - 53 / 9
        self.assertEqual(proven.infinite_eigenvalues(a, b), 1)
        root, = proven.to_digits(30, lambda: proven.finite_eigenvalues(a, b))
        self.assertLessEqual(abs(Fraction(root.value.real) - Fraction(53, 13)), Fraction(root.error))
        self.assertTrue(root.is_real)
        self.assertEqual(proven.infinite_eigenvalues([[tesk2mp.Complex(0, 1)]], [[0]]), 1)
        for singular in (([[0]], [[0]]), ([[1, 1], [1, 1]], [[2, 2], [2, 2]])):
            for call in (proven.infinite_eigenvalues, proven.finite_eigenvalues):
                self.assertRaises(tesk2mp.NumericalFailure, call, *singular)
        with tesk2mp.true_digits(5):
            self.assertEqual(tesk2mp.eigenvalues([[2]], [[4]])[0].real, Decimal("0.5"))
            infinity = tesk2mp.Complex("inf", 0)
            found = [tesk2mp.Complex("4.0769", 0), infinity]
            self.assertEqual(tesk2mp.eigenvalues(a, b), found)
            self.assertEqual(tesk2mp.eigenvalues(lambda: a, lambda: b), found)
            self.assertEqual(tesk2mp.eigenvalues([[1, 0], [0, 1]], [[0, 1], [0, 0]]), [infinity] * 2)
            self.assertRaises(tesk2mp.NumericalFailure, tesk2mp.eigenvalues, [[1, 1], [1, 1]], [[2, 2], [2, 2]])
            # Not exact: quotients beside Complex numbers, and numbers of a function.
            self.assertEqual(tesk2mp.eigenvalues([[tesk2mp.Complex(0, 1)]], [[third]]), [tesk2mp.Complex(0, 3)])
            self.assertEqual(tesk2mp.eigenvalues(lambda: [[tesk2mp.sqrt(2)]], [[2]])[0].real, Decimal("0.70711"))
        self.assertRaises(tesk2mp.InvalidArgument, proven.infinite_eigenvalues, [[1, 2]], [[1, 2]])

    def test_nothing_of_nothing(self):
        self.assertEqual((proven.sum([]), proven.dot([], []), proven.norm([]), proven.determinant([])), (0, 0, 0, 1))
        for call in (proven.inverse, proven.eigenvalues, proven.singular_values, proven.transform, lambda a: proven.solve(a, a)):
            self.assertEqual(call([]), [])

    def test_sparse_matrices_of_scipy_are_exact(self):
        import numpy
        import scipy.sparse

        places = ([0, 0, 0, 1], [0, 0, 0, 1])
        for kind in (float, complex, numpy.longdouble):
            values = numpy.array([1, 2.0**-300, 2.0**-900, 3], dtype=kind)
            matrix = scipy.sparse.coo_matrix((values, places), shape=(2, 2))
            exact = Fraction(1) + Fraction(1, 2**300) + Fraction(1, 2**900)
            x = proven.to_digits(700, lambda: proven.solve(matrix, [1, 3]))
            self.assertLessEqual(abs(Fraction(getattr(x[0].value, "real", x[0].value)) - 1 / exact), Fraction(x[0].error))


if __name__ == "__main__":
    unittest.main()
