"""Numbers of the package behave as Python's do, and numpy computes with them."""

import copy
import math
import os
import pickle
import random
import time
import unittest
from decimal import MAX_EMAX, MIN_EMIN, Context, Decimal
from fractions import Fraction

import numpy
import tesk2mp
from tesk2mp import Complex, Real, exact

SEED = int(os.environ.get("TESK_SEED", time.time()))
print(f"TESK_SEED={SEED}")
RANDOM = random.Random(SEED)


def some_decimal(digits=40):
    return Decimal(RANDOM.randint(-(10**digits), 10**digits) or 1).scaleb(-RANDOM.randint(0, 2 * digits))


class Reals(unittest.TestCase):
    def test_arithmetic(self):
        """Every operator rounds the exact result once, whatever digits and class the operands have."""
        for _ in range(400):
            a, b, digits = some_decimal(), some_decimal(), RANDOM.randint(1, 50)
            python = Context(prec=digits, Emax=MAX_EMAX, Emin=MIN_EMIN)
            with tesk2mp.digits(60):
                x, y = Real(a), Real(b)
            with tesk2mp.digits(digits):
                for right in (y, b):
                    self.assertEqual((x + right).decimal(), python.add(a, b))
                    self.assertEqual((x - right).decimal(), python.subtract(a, b))
                    self.assertEqual((x * right).decimal(), python.multiply(a, b))
                    self.assertEqual((x / right).decimal(), python.divide(a, b))
                self.assertEqual(((a - y).decimal(), (a / y).decimal()), (python.subtract(a, b), python.divide(a, b)))
                self.assertEqual((+x).decimal(), python.plus(a))
                whole = int(a), int(b) or 1
                self.assertEqual(int(Real(7) // -2), -4)
                with tesk2mp.digits(200):
                    self.assertEqual(divmod(Real(whole[0]), Real(whole[1])), divmod(*whole))
            self.assertEqual(((x < y), (x == y), (x >= b), x == a), (a < b, a == b, a >= b, True))
            self.assertEqual((hash(x), Decimal(str(x)), float(x), bool(x)), (hash(a), a, float(a), bool(a)))

    def test_other_kinds(self):
        x = Real("2.5")
        self.assertEqual((x == 2.5, x == Fraction(5, 2), x == "2.5", x == Complex("2.5"), x != None), (True, True, False, True, True))
        self.assertEqual((x + 1, 1 - x, Fraction(1, 2) * x), (Decimal("3.5"), Decimal("-1.5"), Decimal("1.25")))
        self.assertEqual((x + Complex(0, 1), Complex(0, 1) * x), (Complex("2.5", 1), Complex(0, "2.5")))
        self.assertEqual({x: 1}[Decimal("2.5")], 1)
        self.assertEqual((x**2, 2 ** Real(3), Real(-8) ** 2), (Decimal("6.25"), 8, 64))
        self.assertIsInstance(Real(-2) ** Real("0.5"), Complex)
        for other in (0.5, numpy.float64(0.5), "1", None, [1], 1j):
            with self.assertRaises(TypeError):
                x + other
            with self.assertRaises(TypeError):
                other * x
        with self.assertRaises(TypeError):
            x < Complex(1)
        self.assertEqual((f"{x:>8.2f}", f"{x:e}", f"{x}", repr(x)), ("    2.50", "2.5e+0", "2.5", "Real('2.5')"))
        self.assertEqual((round(x), round(-x), round(Real("0.125"), 2), math.floor(-x), math.trunc(-x), int(x)), (2, -2, Decimal("0.12"), -3, -2, 2))
        self.assertEqual(x.as_integer_ratio(), (5, 2))
        for again in (pickle.loads(pickle.dumps(x)), copy.copy(x), copy.deepcopy(x)):
            self.assertEqual((type(again), again), (Real, x))
        nan = Real("nan")
        self.assertEqual((nan == nan, nan.is_nan(), Real("inf").is_finite(), Real(1) / 0), (False, True, False, Decimal("Infinity")))
        for call in (lambda: int(Real("inf")), lambda: round(nan), lambda: Real.__new__(Real) + 1):
            with self.assertRaises((ValueError, OverflowError, TypeError)):
                call()

    def test_numpy(self):
        a = numpy.array([Real("0.5"), Real("0.25")], dtype=object)
        for ufunc in (numpy.sin, numpy.arcsin, numpy.exp, numpy.log, numpy.sqrt, numpy.arctan, numpy.cbrt, numpy.log1p):
            name = ufunc.__name__.replace("arc", "a")
            with self.subTest(name):
                expected = [Real(y) for y in getattr(tesk2mp, name)(["0.5", "0.25"])]
                self.assertEqual(list(ufunc(a)), expected)
                self.assertEqual((type(ufunc(a[0])), ufunc(a[0])), (Real, expected[0]))
        self.assertEqual(list(a + a * 2), [Decimal("1.5"), Decimal("0.75")])
        self.assertEqual((a @ a, a.sum(), a.max(), numpy.abs(-a)[0]), (Decimal("0.3125"), Decimal("0.75"), a[0], a[0]))
        self.assertEqual(list(numpy.arctan2(a, a[::-1])), [tesk2mp.atan2("0.5", "0.25"), tesk2mp.atan2("0.25", "0.5")])
        self.assertEqual(numpy.sin(Complex(0, 1)), tesk2mp.sin(Complex(0, 1)))
        self.assertEqual(list(numpy.sort(a)), [a[1], a[0]])
        self.assertEqual((numpy.floor(-a[0]), numpy.rint(a[0])), (-1, 0))

    def test_results(self):
        with tesk2mp.results(Real):
            x = tesk2mp.solve([[3, Complex(0, 1)], [0, 1]], [1, 0])[0].real
            self.assertEqual((type(x), type(tesk2mp.sin(1)), type(tesk2mp.Random(1)())), (Real, Real, Real))
            with tesk2mp.results(Decimal):
                self.assertIs(type(tesk2mp.sin(1)), Decimal)
            self.assertEqual(type(tesk2mp.eigenvalues(numpy.array([[x, 1], [2, 3]], dtype=object))[0].imag), Real)
        self.assertIs(type(tesk2mp.sin(Real(1))), Decimal)

    def test_exact(self):
        for _ in range(200):
            x = RANDOM.uniform(-1, 1) * 2.0 ** RANDOM.randint(-1070, 1000)
            self.assertEqual(exact(x), Decimal(x))
            self.assertEqual(exact(x, real=True).decimal(), Decimal(x))
            self.assertEqual(exact(numpy.float32(math.sin(x))), Decimal(float(numpy.float32(math.sin(x)))))
        z = exact(numpy.array([[0.1 + 0.3j]]))
        self.assertEqual((z.shape, z.dtype, z[0, 0].real, z[0, 0].imag), ((1, 1), object, Decimal(0.1), Decimal(0.3)))
        self.assertEqual(exact(numpy.longdouble(2) ** -16000), Fraction(1, 2**16000))
        self.assertTrue(exact(float("nan")).is_nan() and exact(numpy.float16("-inf")) == Decimal("-Infinity"))
        self.assertEqual((exact(Fraction(-3, 40)), exact(numpy.int8(-3))), (Decimal("-0.075"), -3))
        with self.assertRaises(tesk2mp.InvalidArgument):
            exact(Fraction(1, 3))
        with self.assertRaises(tesk2mp.InvalidType):
            exact([None])

    def test_classes(self):
        with tesk2mp.digits(30):
            plans = tesk2mp.TransformPlan(8), tesk2mp.SpectrumPlan(8), tesk2mp.CosinePlan(8, 3), tesk2mp.SinePlan(8, 1)
        for plan in plans:
            for again in (pickle.loads(pickle.dumps(plan)), copy.deepcopy(plan), eval(repr(plan), vars(tesk2mp))):
                self.assertEqual((repr(again), again.digits), (repr(plan), 30))
        self.assertEqual(repr(plans[2]), "CosinePlan(8, 3, 30)")
        self.assertEqual(pickle.loads(pickle.dumps(plans[1])).rfft(range(8)), plans[1].rfft(range(8)))
        source = tesk2mp.Random(3)
        source()
        self.assertEqual(eval(repr(source), vars(tesk2mp))(), source())
        a = [[4, 1], [1, 3]]
        matrix = tesk2mp.SparseMatrix(2, [(0, 1, "0.5")] * 30)
        shown = [(tesk2mp.LU(a), "<LU of 2 by 2>"), (tesk2mp.LU([[0]]), "<LU of 1 by 1, singular>")]
        shown += [(tesk2mp.Cholesky(a), "<Cholesky of order 2>"), (matrix, "<SparseMatrix of order 2, 30 entries>")]
        for thing, text in shown:
            self.assertEqual(repr(thing), text)
            self.assertIn("<td>", thing._repr_html_())
        self.assertEqual(matrix._repr_html_().count("<tr>"), 21)


if __name__ == "__main__":
    unittest.main()
