"""The routines against exact fractions, Python's decimal arithmetic and numpy."""

import cmath
import concurrent.futures
import decimal
import os
import random
import sys
import time
import unittest
import warnings
from decimal import Decimal
from fractions import Fraction

import numpy
import tesk2mp

SEED = int(os.environ.get("TESK_SEED", time.time()))
print(f"TESK_SEED={SEED}")
RANDOM = random.Random(SEED)


def integers(rows, columns):
    return [[RANDOM.randint(-9, 9) for _ in range(columns)] for _ in range(rows)]


def exact(number):
    return Fraction(number) if not isinstance(number, tesk2mp.Complex) else Fraction(number.real)


def determinant_of(matrix):
    """By exact elimination."""
    rows = [[Fraction(number) for number in row] for row in matrix]
    value = Fraction(1)
    for k in range(len(rows)):
        pivot = next((i for i in range(k, len(rows)) if rows[i][k]), None)
        if pivot is None:
            return Fraction(0)
        if pivot != k:
            rows[k], rows[pivot] = rows[pivot], rows[k]
            value = -value
        value *= rows[k][k]
        for i in range(k + 1, len(rows)):
            factor = rows[i][k] / rows[k][k]
            rows[i] = [x - factor * y for x, y in zip(rows[i], rows[k])]
    return value


def doubles(value):
    """Decimals and Complex numbers, however deep, as numpy's doubles."""
    if isinstance(value, list):
        return numpy.array([doubles(each) for each in value])
    if isinstance(value, tesk2mp.Complex):
        return complex(value.real, value.imag)
    return float(value)


class Functions(unittest.TestCase):
    def test_against_decimal(self):
        context = decimal.Context(prec=30)
        rows = [[Decimal(RANDOM.randint(1, 10**9)) / 10**6 for _ in range(3)] for _ in range(2)]
        with tesk2mp.digits(30):
            for ours, theirs in ((tesk2mp.exp, context.exp), (tesk2mp.log, context.ln), (tesk2mp.log10, context.log10)):
                self.assertEqual(ours(rows), [[theirs(x) for x in row] for row in rows])
                self.assertEqual(ours(rows[0][0]), theirs(rows[0][0]))
            self.assertEqual(tesk2mp.sqrt(rows), [[context.sqrt(x) for x in row] for row in rows])
            self.assertEqual(tesk2mp.fmod(rows, 7), [[context.remainder(x, 7) for x in row] for row in rows])
            self.assertEqual(tesk2mp.fmax(2, rows[0]), [max(x, Decimal(2)) for x in rows[0]])

    def test_kinds(self):
        self.assertEqual(tesk2mp.gamma([]), [])
        self.assertEqual(tesk2mp.log([1, -1])[0], 0)
        self.assertIsInstance(tesk2mp.log([1, -1])[0], tesk2mp.Complex)
        self.assertIsInstance(tesk2mp.exp(tesk2mp.Complex(1, 0)), tesk2mp.Complex)
        self.assertTrue(tesk2mp.gamma(-1).is_nan())
        self.assertEqual(tesk2mp.factorial(numpy.array([3, 4])).dtype, object)
        self.assertRaises(TypeError, tesk2mp.cbrt, tesk2mp.Complex(1, 1))
        self.assertRaises(TypeError, tesk2mp.hypot, 1, tesk2mp.Complex(1, 1))
        self.assertRaises(TypeError, tesk2mp.gamma, 0.5)
        self.assertRaises(ValueError, tesk2mp.hypot, [1, 2], [1, 2, 3])


class Linear(unittest.TestCase):
    def regular(self, order):
        while True:
            matrix = integers(order, order)
            if determinant_of(matrix):
                return matrix

    def test_equations_against_fractions(self):
        for order in (1, 2, 5, 8):
            a = self.regular(order)
            x = [Fraction(RANDOM.randint(-99, 99), 8) for _ in range(order)]
            b = [sum(p * q for p, q in zip(row, x)) for row in a]
            with tesk2mp.digits(60):
                self.assertEqual(tesk2mp.multiply(a, x), b)  # eighths are exact in decimal
                for found, expected in zip(tesk2mp.solve(a, b), x):
                    self.assertLess(abs(exact(found) - expected), Fraction(1, 10**45))
                self.assertLess(abs(exact(tesk2mp.determinant(a)) - determinant_of(a)), Fraction(1, 10**45))
                identity = tesk2mp.multiply(a, tesk2mp.inverse(a))
            for i, row in enumerate(identity):
                for j, element in enumerate(row):
                    self.assertLess(abs(exact(element) - (i == j)), Fraction(1, 10**45))

    def test_complex_equations(self):
        i = tesk2mp.Complex(0, 1)
        a = [[2, i], [-i, 3]]
        with tesk2mp.digits(30):
            x = tesk2mp.solve(a, [[1, i], [2, 0]])
            self.assertEqual(numpy.abs(doubles(tesk2mp.multiply(a, x)) - [[1, 1j], [2, 0]]).max() < 1e-15, True)
            self.assertEqual(tesk2mp.determinant(a), tesk2mp.Complex(5))
            factor = tesk2mp.cholesky(a)
        self.assertTrue(numpy.allclose(doubles(factor), numpy.linalg.cholesky([[2, 1j], [-1j, 3]])))

    def test_norms_against_numpy(self):
        a = integers(4, 3)
        for kind, order in (("one", 1), ("infinity", numpy.inf), ("frobenius", "fro")):
            self.assertAlmostEqual(float(tesk2mp.norm(a, kind)), numpy.linalg.norm(numpy.array(a), order))
        self.assertEqual(tesk2mp.norm([3, -4]), 5)
        self.assertEqual([tesk2mp.norm([3, -4], kind) for kind in ("largest", "one", "infinity")], [4, 7, 4])

    def test_lu(self):
        a = self.regular(5)
        factors, pivots = tesk2mp.lu(a)
        packed = doubles(factors)
        product = (numpy.tril(packed, -1) + numpy.eye(5)) @ numpy.triu(packed)
        for row, other in reversed(list(enumerate(pivots))):
            product[[row, other]] = product[[other, row]]
        self.assertTrue(numpy.allclose(product, a))

    def test_incomplete_factors(self):
        rows = [[5, 1, 0, 2], [1, 6, 1, 0], [0, 1, 7, 1], [2, 0, 1, 8]]
        entries = [(i, j, rows[i][j]) for i in range(4) for j in range(4) if rows[i][j]]
        for kind in (1, tesk2mp.Complex(0, 1)):
            above, below = (1, 1) if kind == 1 else (kind, tesk2mp.Complex(0, -1))
            a = tesk2mp.SparseMatrix(4, [(i, j, value * (1 if i == j else above if i < j else below)) for i, j, value in entries])
            for search in ("none", "rows", "columns", "both", "least_fill"):
                factors = tesk2mp.IncompleteLU(a, drop_tolerance=0, search=search)
                self.assertEqual(factors.corrected_pivots, 0)
                self.assertEqual(sorted(factors.row_order), [0, 1, 2, 3])
                for op in ("none", "conjugate_transpose"):
                    x = factors.solve([1, 2, 3, 4], op=op)
                    back = a.multiply(x, transpose=op != "none")
                    self.assertTrue(all(abs(complex(u - v)) < 1e-15 for u, v in zip(back, [1, 2, 3, 4])))
            x = tesk2mp.IncompleteCholesky(a, drop_tolerance=0, search="least_fill").solve([1, 2, 3, 4])
            self.assertTrue(all(abs(complex(u - v)) < 1e-15 for u, v in zip(a.multiply(x), [1, 2, 3, 4])))
        a = tesk2mp.SparseMatrix(4, entries)
        plain = tesk2mp.solve_iteratively(a, [1, 2, 3, 4], tolerance="1e-15")
        for factors in (tesk2mp.IncompleteLU(a), tesk2mp.IncompleteCholesky(a, shift="0.01"), tesk2mp.IncompleteLU(a, level=1).solve):
            x, _, iterations = tesk2mp.solve_iteratively(a, [1, 2, 3, 4], factors, tolerance="1e-15")
            self.assertLessEqual(iterations, plain[2])
            self.assertTrue(all(abs(u - v) < Decimal("1e-13") for u, v in zip(x, plain[0])))
        with self.assertRaises(tesk2mp.InvalidArgument):
            tesk2mp.IncompleteLU(a, drop_tolerance=-1)
        with self.assertRaises(TypeError):
            tesk2mp.solve_iteratively(a, [1, 2, 3, 4], tesk2mp.IncompleteLU(tesk2mp.SparseMatrix(1, [(0, 0, tesk2mp.Complex(1, 1))])))

    def test_sparse_products(self):
        entries = [(RANDOM.randrange(6), RANDOM.randrange(6), RANDOM.randint(-9, 9)) for _ in range(20)]
        dense = numpy.zeros((6, 6), dtype=int)
        for row, column, value in entries:
            dense[row, column] += value
        x = [RANDOM.randint(-9, 9) for _ in range(6)]
        matrix = tesk2mp.SparseMatrix(6, iter(entries))
        self.assertEqual(matrix.order, 6)
        self.assertEqual(matrix.multiply(x), (dense @ x).tolist())
        self.assertEqual(matrix.multiply(x, transpose=True), (dense.T @ x).tolist())
        again = tesk2mp.SparseMatrix(6, entries)
        again.add(0, 5, 0)
        self.assertEqual(len(again.canonicalise(zeros="keep").entries()), len({entry[:2] for entry in entries} | {(0, 5)}))
        again.add(0, 5, 1)
        with self.assertRaises(tesk2mp.InvalidArgument):
            again.canonicalise("fail")
        with self.assertRaises(TypeError):
            again.add(0, 0, tesk2mp.Complex(1))
        self.assertEqual((again.lower_triangle, matrix.multiply(x)), (False, (dense @ x).tolist()))
        self.assertEqual(matrix.canonicalise().multiply(x), (dense @ x).tolist())
        self.assertEqual([entry[:2] for entry in matrix.entries()], [tuple(place) for place in numpy.argwhere(dense)])
        hermitian = tesk2mp.SparseMatrix(2, [(1, 0, tesk2mp.Complex(0, 1))], lower_triangle=True)
        self.assertEqual(hermitian.multiply([1, 1]), [tesk2mp.Complex(0, -1), tesk2mp.Complex(0, 1)])


class Kernels(unittest.TestCase):
    """Integers, so that results are exact; complex ones as pairs."""

    def setUp(self):
        self.real = numpy.array(integers(4, 4), dtype=object)
        self.complex = self.real + 1j * numpy.array(integers(4, 4), dtype=object)

    @staticmethod
    def given(array):
        """What the library is given for numpy's array."""
        return numpy.vectorize(
            lambda z: tesk2mp.Complex(int(z.real), int(z.imag)) if isinstance(z, complex) else z, otypes=[object]
        )(array).tolist()

    OPS = {"none": lambda a: a, "transpose": lambda a: a.T, "conjugate_transpose": lambda a: a.T.conj()}

    def test_products(self):
        for a in (self.real, self.complex):
            p, (x, y) = self.given(a), self.given(a[:2])
            for op_a, first in self.OPS.items():
                one = tesk2mp.multiply(p, x, op_a, alpha=2, beta=-3, c=y)
                self.assertTrue((doubles(one) == 2 * first(a) @ a[0] - 3 * a[1]).all())
                for op_b, second in self.OPS.items():
                    many = tesk2mp.multiply(p, p, op_a, op_b, alpha=2, beta=-3, c=p)
                    self.assertTrue((doubles(many) == 2 * first(a) @ second(a) - 3 * a).all())
        self.assertTrue((doubles(tesk2mp.multiply(self.given(self.complex), self.real[0])) == self.complex @ self.real[0]).all())
        self.assertTrue((doubles(tesk2mp.multiply([[1]], [1], alpha=tesk2mp.Complex(0, 1))) == [1j]).all())
        self.assertEqual(tesk2mp.multiply([[1]], [1], beta="nan"), [1])
        self.assertEqual(tesk2mp.multiply([[], []], [], beta=3, c=[1, 2]), [3, 6])

    def test_triangles(self):
        for a in (self.real, self.complex):
            p, (x, _), b = self.given(a), self.given(a[:2]), self.given(a[:, :3])
            for triangle, part in (("upper", numpy.triu), ("lower", numpy.tril)):
                for unit in (False, True):
                    factor = part(a, 0) if not unit else part(a, 1 if triangle == "upper" else -1) + numpy.eye(4, dtype=object)
                    for op, changed in self.OPS.items():
                        options = dict(triangle=triangle, op=op, unit=unit)
                        y = tesk2mp.triangular_multiply(p, x, **options)
                        self.assertTrue((doubles(y) == changed(factor) @ a[0]).all())
                        z = tesk2mp.triangular_multiply(p, b, **options)
                        self.assertTrue((doubles(z) == changed(factor) @ a[:, :3]).all())
                        if unit:  # exact both ways
                            self.assertEqual(tesk2mp.triangular_solve(p, y, **options), x)
                            self.assertEqual(tesk2mp.triangular_solve(p, z, **options), b)
                            right = tesk2mp.triangular_solve(p, self.given(a[:2] @ changed(factor)), side="right", **options)
                            self.assertEqual(right, self.given(a[:2]))

    def test_updates_and_vectors(self):
        for a in (self.real, self.complex):
            p, (x, y) = self.given(a), self.given(a[:2])
            for conjugate in (False, True):
                other = a[1].conj() if conjugate else a[1]
                self.assertTrue((doubles(tesk2mp.outer(x, y, conjugate)) == numpy.outer(a[0], other)).all())
                self.assertTrue((doubles(tesk2mp.outer(x, y, conjugate, 2, p)) == 2 * numpy.outer(a[0], other) + a).all())
                self.assertEqual(doubles(tesk2mp.dot(y, x, conjugate)), other @ a[0])
            self.assertTrue((doubles(tesk2mp.scale(tesk2mp.Complex(0, 2), x)) == 2j * a[0]).all())
            hermitian = a @ a.T.conj()
            for triangle, part in (("upper", numpy.triu), ("lower", numpy.tril)):
                self.assertTrue((doubles(tesk2mp.hermitian_product(p, triangle=triangle)) == part(hermitian)).all())
            added = tesk2mp.hermitian_product(p, "conjugate_transpose", alpha=2, beta=3, c=self.given(hermitian))
            self.assertTrue((numpy.tril(doubles(added)) == numpy.tril(2 * a.T.conj() @ a + 3 * hermitian)).all())
            self.assertEqual(tesk2mp.hessenberg_norm(p, "one"), tesk2mp.norm(self.given(numpy.triu(a, -1)), "one"))
        c, s, r, _ = tesk2mp.rotation(5, -12)
        self.assertEqual([round(c * 5 - s * 12, 15), round(c * 12 + s * 5, 15), abs(r)], [r, 0, 13])

    def test_factors_that_are_kept(self):
        for a in (self.real + 50 * numpy.eye(4, dtype=object), self.complex + 50 * numpy.eye(4, dtype=object)):
            p, (x, y) = self.given(a), self.given(a[:2])
            positive = self.given(a @ a.T.conj())
            for op, changed in self.OPS.items():
                found = doubles(tesk2mp.LU(p).solve(x, op))
                self.assertTrue(numpy.allclose(changed(a).astype(complex) @ found, a[0].astype(complex)))
            kept = tesk2mp.LU(p)
            self.assertEqual((kept.factors, kept.pivots), tesk2mp.lu(p))
            self.assertEqual((kept.solve(y), kept.determinant(), kept.inverse()), (tesk2mp.solve(p, y), tesk2mp.determinant(p), tesk2mp.inverse(p)))
            for triangle in ("lower", "upper"):
                factors = tesk2mp.Cholesky(positive, triangle)
                self.assertEqual(factors.factor, tesk2mp.cholesky(positive, triangle))
                with tesk2mp.digits(40):
                    rest = doubles(tesk2mp.multiply(positive, tesk2mp.Cholesky(positive, triangle).solve(x))) - doubles(x)
                self.assertLess(numpy.abs(rest).max(), 1e-25)
            self.assertTrue(numpy.allclose(doubles(factors.inverse()) @ doubles(positive), numpy.eye(4)))
            determinant = tesk2mp.determinant(positive)
            self.assertAlmostEqual(abs(doubles(determinant) / doubles(factors.determinant())), 1)
        self.assertEqual([tesk2mp.LU([[1, 2], [2, 4]]).singular, tesk2mp.LU([[1, 2], [2, 4]]).determinant()], [True, 0])
        badly_scaled = [["1e30", "2e30"], [3, -1]]
        self.assertEqual([tesk2mp.LU(badly_scaled, weighted).pivots[0] for weighted in (False, True)], [0, 1])
        for call in (lambda: tesk2mp.LU([[tesk2mp.Complex(1)]], True), lambda: tesk2mp.LU([[1]]).solve([tesk2mp.Complex(1)])):
            with self.assertRaises(TypeError):
                call()

    def test_what_does_not_fit(self):
        for call, kind in (
            (lambda: tesk2mp.multiply([[1]], [1], op_b="transpose"), ValueError),
            (lambda: tesk2mp.multiply([[1]], [1], c=[1, 2]), tesk2mp.InvalidArgument),
            (lambda: tesk2mp.multiply([[1]], [1], c=[[1]]), TypeError),
            (lambda: tesk2mp.multiply([[1]], [1], alpha=0.5), TypeError),
            (lambda: tesk2mp.multiply([[1]], [1], alpha=[1]), TypeError),
            (lambda: tesk2mp.triangular_solve([[1]], [1], side="right"), TypeError),
            (lambda: tesk2mp.triangular_multiply([[1, 2]], [1]), tesk2mp.InvalidArgument),
            (lambda: tesk2mp.outer([1], [1, 2], a=[[1]]), tesk2mp.InvalidArgument),
            (lambda: tesk2mp.hermitian_product([[1]], "transpose"), tesk2mp.InvalidArgument),
            (lambda: tesk2mp.dot([1], [1, 2]), tesk2mp.InvalidArgument),
            (lambda: tesk2mp.dot([], [1]), tesk2mp.InvalidArgument),
            (lambda: tesk2mp.tuning("C06FAF", "block_size"), tesk2mp.InvalidArgument),
        ):
            with self.assertRaises(kind):
                call()


class Iterative(unittest.TestCase):
    def setUp(self):
        entries = [(i, i, RANDOM.randint(40, 60)) for i in range(12)] + [(i, (i + 1) % 12, RANDOM.randint(-9, 9)) for i in range(12)]
        self.matrix = tesk2mp.SparseMatrix(12, entries)
        self.b = [RANDOM.randint(-9, 9) for _ in range(12)]

    def check(self, *arguments, **options):
        with tesk2mp.digits(40):
            x, residual, iterations = tesk2mp.solve_iteratively(*arguments, tolerance="1e-30", **options)
            rest = [p - q for p, q in zip(self.b, self.matrix.multiply(x))]
        self.assertLess(max(map(abs, rest)), Decimal("1e-27"))
        self.assertLess(max(abs(p - q) for p, q in zip(rest, residual)), Decimal("1e-27"))
        return x, iterations

    def test_a_solution_that_its_size_excuses_is_warned_of(self):
        with tesk2mp.digits(30):
            rows = [[Decimal(1) / 3, Decimal(1) / 7, Decimal(1) / 9], [Decimal(1) / 11, Decimal(-1) / 13, Decimal(1) / 17]]
            rows.append([x + y for x, y in zip(*rows, strict=True)])
            a = tesk2mp.SparseMatrix(3, [(i, j, rows[i][j]) for i in range(3) for j in range(3)])
            with self.assertWarnsRegex(RuntimeWarning, "small beside"):
                tesk2mp.solve_iteratively(a, [1, 2, 1], tolerance="1e-20")
            with self.assertRaises(RuntimeWarning), warnings.catch_warnings():
                warnings.simplefilter("error")
                tesk2mp.solve_iteratively(a, [1, 2, 1], tolerance="1e-20")

    def test_methods(self):
        for method in ("rgmres", "cgs", "bicgstab", "tfqmr", "fgmres", "idrs"):
            self.check(self.matrix, self.b, method=method)

    def test_symmetric_methods(self):
        entries = [(i, j, 4 if i == j else -1) for i in range(9) for j in range(9) if abs(i - j) <= 1]
        matrix = tesk2mp.SparseMatrix(9, entries)
        b = list(range(1, 10))
        for method in ("cg", "minres", "symmlq"):
            with tesk2mp.digits(40):
                x, _, _ = tesk2mp.solve_iteratively(matrix, b, tolerance="1e-30", method=method)
                self.assertLess(max(abs(p - q) for p, q in zip(b, matrix.multiply(x))), Decimal("1e-27"))

    def test_functions(self):
        x, _ = self.check(self.matrix.multiply, self.b, preconditioner=lambda r: [each / 50 for each in r])
        _, iterations = self.check(self.matrix, self.b, guess=x)
        self.assertLessEqual(iterations, 1)

    def test_criteria_and_monitor(self):
        back = tesk2mp.SparseMatrix(12, [(column, row, value) for row, column, value in self.matrix.entries()])
        for norm in ("one", "two", "infinity"):
            self.check(self.matrix, self.b, norm=norm, criterion="residual", weights=[1] * 12)
        self.check(self.matrix.multiply, self.b, criterion="residual", transpose=back.multiply)
        self.check(self.matrix.multiply, self.b, criterion="residual", matrix_norm=80)
        with self.assertRaisesRegex(ValueError, "products with the transpose"):
            self.check(self.matrix.multiply, self.b, criterion="residual")
        seen = []

        def look(iterations, x, residual):
            seen.append(iterations)
            rest = [p - q for p, q in zip(self.b, self.matrix.multiply(x))]
            self.assertLess(max(abs(p - q) for p, q in zip(rest, residual)), Decimal("1e-15"))
            return iterations == 2

        _, _, iterations = tesk2mp.solve_iteratively(self.matrix, self.b, monitor=look)
        self.assertEqual((seen, iterations), ([1, 2], 2))
        with self.assertRaisesRegex(ZeroDivisionError, "division by zero"):
            tesk2mp.solve_iteratively(self.matrix, self.b, monitor=lambda *state: 1 / 0)

    def test_calls_in_calls(self):
        def with_fewer_digits(x):
            with tesk2mp.digits(12):
                tesk2mp.solve_iteratively(self.matrix, self.b)
            return self.matrix.multiply(x)

        with tesk2mp.digits(40):
            alone = tesk2mp.solve_iteratively(self.matrix, self.b)
            self.assertEqual(tesk2mp.solve_iteratively(with_fewer_digits, self.b), alone)
            interval = sys.getswitchinterval()
            self.addCleanup(sys.setswitchinterval, interval)
            sys.setswitchinterval(1e-6)
            with concurrent.futures.ThreadPoolExecutor(4, initializer=tesk2mp.set_digits, initargs=(40,)) as pool:
                calls = [
                    pool.submit(tesk2mp.solve_iteratively, product, self.b, lambda r: [each for each in r])
                    for product in 3 * [lambda x: self.matrix.multiply(x), self.matrix]
                ]
                expected = tesk2mp.solve_iteratively(self.matrix, self.b, lambda r: r)
                self.assertEqual([call.result() for call in calls], 6 * [expected])

    def test_what_goes_wrong(self):
        with self.assertRaises(tesk2mp.NumericalFailure) as caught:
            tesk2mp.solve_iteratively(self.matrix, self.b, most_iterations=1)
        self.assertEqual((caught.exception.routine, caught.exception.code), ("F11BEF", 8))
        with self.assertRaisesRegex(ZeroDivisionError, "division by zero"):
            tesk2mp.solve_iteratively(lambda x: 1 / 0, self.b)
        with self.assertRaisesRegex(ValueError, "the function gave 3 numbers for 12"):
            tesk2mp.solve_iteratively(lambda x: x[:3], self.b)
        with self.assertRaises(TypeError):
            tesk2mp.solve_iteratively([[1]], self.b)


class Eigen(unittest.TestCase):
    def test_against_numpy(self):
        a = integers(6, 6)
        with tesk2mp.digits(40):
            values, right, left = tesk2mp.eigen(a)
            alone = tesk2mp.eigenvalues(a)
            t, z, schur_values = tesk2mp.schur(a)
            h, q = tesk2mp.hessenberg(a)
        expected = numpy.linalg.eigvals(numpy.array(a, dtype=float))
        for found in (values, alone, schur_values):
            distances = numpy.abs(doubles(found)[:, None] - expected[None, :])
            self.assertLess(distances.min(axis=0).max(), 1e-6)
            self.assertLess(distances.min(axis=1).max(), 1e-6)
        matrix, v, w, d = numpy.array(a), doubles(right), doubles(left), numpy.diag(doubles(values))
        self.assertLess(numpy.abs(matrix @ v - v @ d).max(), 1e-12)
        self.assertLess(numpy.abs(w.conj().T @ matrix - d @ w.conj().T).max(), 1e-12)
        for middle, vectors in ((t, z), (h, q)):
            middle, vectors = doubles(middle), doubles(vectors)
            self.assertLess(numpy.abs(vectors @ middle @ vectors.T - matrix).max(), 1e-12)

    def test_balance_and_hessenberg(self):
        a = [[1, "1e9", 0], ["1e-9", 2, 3], [0, 0, 4]]
        matrix, low, high, scale = tesk2mp.balance(a)
        self.assertEqual((low, high, scale[2]), (0, 2, 3))
        self.assertEqual(tesk2mp.scale(scale[1] / scale[0], [a[0][1]]), [matrix[0][1]])
        self.assertEqual(tesk2mp.balance(a, "none")[0], [[Decimal(each) for each in row] for row in a])
        h, _ = tesk2mp.hessenberg(integers(5, 5))
        with tesk2mp.digits(40):
            expected = tesk2mp.eigenvalues(h)
            distances = numpy.abs(doubles(tesk2mp.hessenberg_eigenvalues(h))[:, None] - doubles(expected)[None, :])
        self.assertLess(distances.min(axis=0).max(), 1e-6)

    def test_conditions(self):
        values, value, vector = tesk2mp.eigen_conditions([[1, 0], [0, 3]])
        self.assertEqual([value, doubles(vector).round(12).tolist()], [[1, 1], [2, 2]])
        self.assertEqual(sorted(each.real for each in values), [1, 3])

    def test_quartic(self):
        with tesk2mp.digits(50):
            zeros = tesk2mp.quartic_zeros(2, -20, 70, -100, 48)  # 2 (z-1)(z-2)(z-3)(z-4)
        found = sorted(zero.real for zero, _ in zeros)
        for zero, expected in zip(found, (1, 2, 3, 4)):
            self.assertLess(abs(zero - expected), Decimal("1e-44"))
        self.assertTrue(all(0 < error < Decimal("1e-44") for _, error in zeros))


class Sequences(unittest.TestCase):
    def test_spectrum_against_numpy(self):
        for n in (2, 7, 12, 30):
            x = [RANDOM.randint(-99, 99) for _ in range(n)]
            expected = numpy.fft.fft(x) / numpy.sqrt(n)
            self.assertLess(numpy.abs(doubles(tesk2mp.spectrum(x)) - expected).max(), 1e-12)
            self.assertEqual(tesk2mp.expand_hermitian(tesk2mp.transform_real(x)), tesk2mp.spectrum(x))
            with tesk2mp.digits(60):
                back = tesk2mp.transform_hermitian(tesk2mp.transform_real(x))
                self.assertLess(max(abs(p - q) for p, q in zip(back, x)), Decimal("1e-55"))

    def test_complex_transforms_against_numpy(self):
        for shape in ((1,), (13,), (3, 4), (2, 1, 5), (2, 3, 2, 2)):
            parts = numpy.array([RANDOM.randint(-99, 99) for _ in range(2 * numpy.prod(shape))]).reshape(2, *shape)
            doubles_in = parts[0] + 1j * parts[1]
            x = numpy.vectorize(lambda re, im: tesk2mp.Complex(int(re), int(im)), otypes=[object])(*parts)
            for axis in (None, *range(-len(shape), len(shape))):
                with self.subTest(shape=shape, axis=axis):
                    axes = range(len(shape)) if axis is None else [axis]
                    z = tesk2mp.transform(x.tolist(), axis=axis)
                    expected = numpy.fft.fftn(doubles_in, axes=axes, norm="ortho")
                    self.assertLess(numpy.abs(doubles(z) - expected).max(), 1e-11)
                    back = tesk2mp.transform(z, True, axis)
                    self.assertLess(numpy.abs(doubles(back) - doubles_in).max(), 1e-11)
                    again = tesk2mp.transform(x, axis=axis)
                    self.assertEqual((again.shape, again.tolist()), (shape, z))
                    self.assertEqual(tesk2mp.transform(iter(x.tolist()), axis=axis), z)

    def test_transforms_refuse(self):
        for x, axis, error, text in (
            ([[1, 2], [3]], None, ValueError, "sequences of 2 and of 1 elements side by side"),
            ([[], [1]], None, ValueError, "sequences of 0 and of 1 elements side by side"),
            ([[1, 2], 3], None, TypeError, "a sequence is needed, not int"),
            ([1, [2]], None, TypeError, "a number is a Decimal, an int, a Fraction or text, not list"),
            (1, None, TypeError, "a sequence is needed, not int"),
            ([[1, 2]], 2, IndexError, "axis 2 of 2"),
            ([[1, 2]], -3, IndexError, "axis -3 of 2"),
            ([[]], None, tesk2mp.InvalidArgument, "C06PJF: ND(I) .lt. 1: ND(I) = 0 I = 1."),
        ):
            with self.subTest(x=x, axis=axis), self.assertRaises(error) as caught:
                tesk2mp.transform(x, axis=axis)
            self.assertEqual(str(caught.exception), text)

    def test_classic_complex_constants(self):
        for x, axis in (([1, 2, 4], None), ([[1], [2], [4]], 0), ([[1, 2, 4], [1, 1, 1]], None)):
            with tesk2mp.digits(50):
                full, classic = (tesk2mp.transform(x, axis=axis, classic=old) for old in (False, True))
                pairs = zip(numpy.ravel(full), numpy.ravel(classic))
                difference = max(abs(p - q) for p, q in pairs)
            self.assertTrue(Decimal("1e-20") < difference < Decimal("1e-14"), difference)

    def test_classic_constants(self):
        with tesk2mp.digits(50):
            full = tesk2mp.transform_real([1, 2, 4])
            classic = tesk2mp.transform_real([1, 2, 4], classic=True)
        difference = max(abs(p - q) for p, q in zip(full, classic))
        self.assertTrue(Decimal("1e-20") < difference < Decimal("1e-14"), difference)

    def test_roots_against_decimal(self):
        for digits in (5, 28, 200):
            context = decimal.Context(prec=digits)
            with tesk2mp.digits(digits):
                for number in (2, Decimal("0.5"), RANDOM.randint(3, 10**9)):
                    self.assertEqual(tesk2mp.sqrt(number), context.sqrt(context.create_decimal(number)))
        with tesk2mp.digits(50):
            for wrong in (tesk2mp.sqrt("0.5", classic=True) - tesk2mp.sqrt("0.5"), tesk2mp.pi(True) - tesk2mp.pi()):
                self.assertTrue(Decimal("1e-20") < abs(wrong) < Decimal("1e-14"), wrong)
            self.assertEqual(tesk2mp.machine_precision(), Decimal("1e-50"))
            for classic in (False, True):
                self.assertTrue(tesk2mp.sqrt(Decimal("NaN"), classic).is_nan())
            nan = Decimal("NaN")
            self.assertTrue(tesk2mp.sqrt(tesk2mp.Complex(nan, 1)).imag.is_nan())
            for k in range(5):  # wherever it stands
                values = [nan if i == k else Decimal(i) for i in range(5)]
                self.assertTrue(tesk2mp.norm(values).is_nan())
                self.assertTrue(tesk2mp.sort(values)[-1].is_nan())
                self.assertEqual(tesk2mp.sort(values)[:4], [Decimal(i) for i in range(5) if i != k])
                with self.assertRaises(tesk2mp.InvalidArgument):
                    tesk2mp.eigenvalues([values] + [[1] * 5] * 4)
        root = tesk2mp.sqrt(tesk2mp.Complex(3, 4))
        self.assertAlmostEqual(complex(root.real, root.imag), cmath.sqrt(3 + 4j))

    def test_ranking(self):
        values = [RANDOM.randint(0, 9) for _ in range(50)]
        ranks = tesk2mp.rank(values)
        order = sorted(range(50), key=lambda k: values[k])
        self.assertEqual([ranks[k] for k in order], list(range(50)))
        self.assertEqual(tesk2mp.invert(ranks), order)
        self.assertEqual(tesk2mp.rearrange(values, ranks), sorted(values))
        self.assertEqual(tesk2mp.sort(values, descending=True), sorted(values, reverse=True))

    def test_random_numbers(self):
        for generator in (0, 1, 273):
            stream = tesk2mp.Random(generator)
            with tesk2mp.digits(40):
                numbers = stream.take(2000)
            self.assertTrue(all(0 <= number < 1 for number in numbers))
            # The mean of 2000 uniform numbers has a standard deviation of 0.0065.
            self.assertLess(abs(sum(numbers) / 2000 - Decimal("0.5")), Decimal("0.04"))
            self.assertEqual(stream.generator, generator)
        with tesk2mp.digits(40):
            self.assertEqual(tesk2mp.Random().classic(), tesk2mp.Random().classic())
            self.assertNotEqual(tesk2mp.Random().classic(), tesk2mp.Random()())


if __name__ == "__main__":
    unittest.main()
