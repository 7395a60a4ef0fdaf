"""Reports of long calls, blocks with proven digits, factors that are kept in files."""

import contextlib
import copy
import fractions
import os
import pickle
import random
import signal
import threading
import time
import unittest
from decimal import ROUND_UP, Decimal, localcontext

import numpy
import tesk2mp
from tesk2mp import Complex, linalg, proven

SEED = int(os.environ.get("TESK_SEED", time.time()))
print(f"TESK_SEED={SEED}")


def matrix(n, seed=1):
    source = random.Random(seed)
    return [[source.randint(-99, 99) for _ in range(n)] for _ in range(n)]


class Bar:
    def __init__(self):
        self.n = 0

    def update(self, n):
        self.n += n


class Reports(unittest.TestCase):
    def test_seconds(self):
        told = []
        a = matrix(120)
        expected = tesk2mp.eigenvalues(a, digits=100)
        begin = time.monotonic()
        self.assertEqual(tesk2mp.eigenvalues(a, digits=100, progress=told.append), expected)
        taken = time.monotonic() - begin
        self.assertEqual(told, sorted(told))
        self.assertGreaterEqual(told[0], 0)
        self.assertLessEqual(told[-1], taken)
        self.assertLessEqual(len(told), taken / 0.1 + 2)
        bar = Bar()
        with tesk2mp.progress(bar):
            linalg.det(a)
            linalg.inv(a)
        self.assertGreater(bar.n, 0)
        self.assertLess(bar.n, time.monotonic() - begin)

    def test_iterations(self):
        n = 60
        entries = [(i, j, 4 if i == j else -1) for i in range(n) for j in (i - 1, i, i + 1) if 0 <= j < n]
        a = tesk2mp.SparseMatrix(n, entries)
        bar = Bar()
        _, _, iterations = tesk2mp.solve_iteratively(a, [1] * n, progress=bar)
        self.assertEqual(bar.n, iterations)
        told, seen = [], []
        with tesk2mp.progress(told.append):
            tesk2mp.solve_iteratively(a, [1] * n, monitor=lambda count, x, residual: seen.append(count))
        self.assertGreater(len(seen), 1)
        self.assertGreaterEqual(len(told), 1)

    def test_exception_ends_the_call(self):
        def stop(_):
            raise LookupError("enough")

        a = matrix(200)
        handler = signal.getsignal(signal.SIGINT)
        for _ in range(3):
            with self.assertRaises(LookupError):
                tesk2mp.eigenvalues(a, digits=300, progress=stop)
        self.assertIs(signal.getsignal(signal.SIGINT), handler)
        time.sleep(0.05)
        self.assertEqual(tesk2mp.solve([[2]], [1], progress=lambda _: None), [Decimal("0.5")])
        with self.assertRaises(LookupError):
            tesk2mp.solve([[2]], [1], progress=stop)

    def test_in_threads(self):
        """A report belongs to the thread; what it calls has the caller's digits and is not reported."""
        digits, others = [], []

        def report(_):
            digits.append(tesk2mp.get_digits())
            tesk2mp.solve([[3]], [1])

        def other():
            tesk2mp.determinant(matrix(40))
            others.append(tesk2mp.get_digits())

        with tesk2mp.digits(33), tesk2mp.progress(report):
            thread = threading.Thread(target=other)
            thread.start()
            tesk2mp.determinant(matrix(40))
            thread.join()
        self.assertEqual(set(digits), {33})
        self.assertEqual(others, [20])

    def test_what_is_no_report(self):
        with self.assertRaises(tesk2mp.InvalidType):
            tesk2mp.progress(3)
        # A monitor that is given by position
        a = tesk2mp.SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
        given = (a, [1, 2], None, "rgmres", 0, 0, 10, None, None, "preconditioned_residual", "infinity", None, 0, 0)
        counts, told = [], []
        tesk2mp.solve_iteratively(*given, lambda count, x, residual: counts.append(count), progress=told.append)
        self.assertTrue(counts and told)
        _, _, iterations = tesk2mp.solve_iteratively(*given, None, progress=told.append)
        self.assertEqual(told[-1], iterations)
        with self.assertRaises(tesk2mp.InvalidType):
            tesk2mp.solve([[1]], [1], progress="x")


class ProvenBlocks(unittest.TestCase):
    def test_digits_are_true(self):
        n = 12
        hilbert = [[fractions.Fraction(1, i + j + 1) for j in range(n)] for i in range(n)]
        with tesk2mp.digits(120):
            reference = tesk2mp.inverse([[Decimal(1) / (i + j + 1) for j in range(n)] for i in range(n)])
            determinant = tesk2mp.determinant([[Decimal(1) / (i + j + 1) for j in range(n)] for i in range(n)])
            smallest = tesk2mp.symmetric_eigenvalues(
                [[Decimal(1) / (i + j + 1) for j in range(n)] for i in range(n)]
            )[0]
        for k in (1, 7, 40):
            with tesk2mp.true_digits(k):
                self.assertEqual(tesk2mp.get_digits(), k)
                inverse = linalg.inv(hilbert)
                found = [linalg.det(hilbert), linalg.eigvalsh(hilbert)[0]]
            pairs = [(inverse[i][j], reference[i][j]) for i in range(n) for j in range(n)]
            for one, other in [*pairs, *zip(found, (determinant, smallest))]:
                with tesk2mp.digits(130):
                    self.assertLessEqual(len(one.normalize().as_tuple().digits), k)
                    self.assertLessEqual(abs(one - other), Decimal("1.02") * Decimal((0, (1,), other.adjusted() - k + 1)))
        self.assertEqual(tesk2mp.get_digits(), 20)

    def test_long_numbers_are_not_rounded_on_their_way(self):
        one = "1." + "0" * 60 + "1"
        with tesk2mp.true_digits(5):
            self.assertEqual(tesk2mp.solve([[one, 1], [1, 1]], [1, 0])[0], Decimal("1E+61"))
            self.assertEqual(tesk2mp.solve(iter([iter([one, 1]), (1, 1)]), iter([1, 0]))[0], Decimal("1E+61"))
            self.assertEqual(tesk2mp.determinant([[Decimal(one), 1], [1, 1]]), Decimal("1E-61"))

    def test_far_and_long_numbers(self):
        with tesk2mp.true_digits(20), localcontext() as context:
            context.Emax, context.Emin, context.rounding = 999, -999, ROUND_UP
            self.assertEqual(tesk2mp.determinant([["1e-2000000"]]), Decimal("1e-2000000"))
            self.assertEqual(tesk2mp.determinant([["1e2000000"]]), Decimal("1e2000000"))
            self.assertEqual(tesk2mp.solve([[3]], [1])[0], Decimal("0." + "3" * 20))
            self.assertEqual(tesk2mp.solve([[10**5000]], [1])[0], Decimal("1e-5000"))
        # The sine of what is left of the number would be another.
        for call in (lambda: tesk2mp.sin("100000.5"), lambda: tesk2mp.sin(fractions.Fraction(1, 3))):
            with tesk2mp.true_digits(5), self.assertRaises(tesk2mp.InvalidArgument):
                call()
        with tesk2mp.true_digits(5):
            self.assertEqual(tesk2mp.sin(Decimal("100.50")), tesk2mp.sin("100.5", digits=5))
            self.assertEqual(tesk2mp.log10(10**30), 30)
        for rows in ([[1], [2, 3]], [[1, 2]]):
            with tesk2mp.true_digits(9), self.assertRaises(tesk2mp.InvalidArgument):
                tesk2mp.symmetric_eigenvalues(rows, triangle="upper")
        with tesk2mp.true_digits(9), self.assertRaises(tesk2mp.InvalidArgument):
            tesk2mp.symmetric_eigenvalues([[1, 2], [2, 1]], triangle="uper")

    def test_kinds_of_results(self):
        with tesk2mp.true_digits(25):
            array = linalg.solve(numpy.array([[4, 1], [2, 3]]), [1, 2])
            self.assertIsInstance(array, numpy.ndarray)
            self.assertEqual(list(array), [Decimal("0.1"), Decimal("0.6")])
            roots = linalg.eigvals([[0, 1], [-1, 0]])
            self.assertEqual({(z.real, z.imag) for z in roots}, {(0, 1), (0, -1)})
            self.assertEqual(tesk2mp.solve([[Complex(0, 1)]], [1])[0], Complex(0, -1))
            self.assertEqual(
                linalg.eigvalsh([[2, Complex(0, 1)], [5, 2]], lower=False), linalg.eigvalsh([[2, 9], [Complex(0, -1), 2]])
            )
            with tesk2mp.results(tesk2mp.Real):
                self.assertIsInstance(tesk2mp.determinant([[3]]), tesk2mp.Real)
                self.assertEqual(str(tesk2mp.solve([[3]], [1], digits=4)[0]), "0." + "3" * 25)
            self.assertEqual(tesk2mp.sin(1), tesk2mp.sin(1, digits=25))

    def test_fits_vectors_pencils_and_zeros(self):
        third = fractions.Fraction(1, 3)
        k = 30
        with tesk2mp.true_digits(k):
            fit, rank = linalg.lstsq([[1, third], [1, 2], [1, 3]], ["0.1", 2, 4])
            pencil = tesk2mp.symmetric_eigenvalues([[2, 1], [1, third]], b=[[1, 0], [0, 3]])
            roots = tesk2mp.eigenvalues([[2, 1], [1, third]], [[1, 0], [0, 3]])
            values, right, left = tesk2mp.eigen([[third, 1], [2, 5]])
            zeros = tesk2mp.polynomial_zeros([third, 0, 0, -2])
            self.assertEqual(linalg.matrix_rank([[third, 2 * third], [1, 2]]), 1)
            self.assertEqual(tesk2mp.solve([[2]], [third]), [Decimal("0.1" + "6" * 28 + "7")])
            self.assertEqual(tesk2mp.convolve(["1e30", 1, "-1e30"], [1, 1, 1], "valid"), [1])
        # By hand: the normal equations; 3 x^2 - 19/3 x - 1/3 = 0 of the pencil; x^2 - 16/3 x - 1/3 = 0.
        exact = [fractions.Fraction(-249, 490), fractions.Fraction(1401, 980)]
        self.assertEqual(rank, 2)
        with tesk2mp.digits(60), localcontext() as context:
            context.prec = 60
            half = Decimal(19) / 18
            root = (half * half + Decimal(1) / 9).sqrt()
            exact_values = [(Decimal(8) / 3) - (Decimal(67) / 9).sqrt(), (Decimal(8) / 3) + (Decimal(67) / 9).sqrt()]
            pairs = [
                *zip(fit, (Decimal(each.numerator) / each.denominator for each in exact)),
                *zip(pencil, (half - root, half + root)),
                *zip((each.real for each in roots), (half + root, half - root)),
                *zip((each.real for each in values), exact_values),
                (zeros[2][0].real, Decimal(6) ** (Decimal(1) / 3)),
            ]
            for one, other in pairs:
                self.assertLessEqual(abs(one - other), Decimal("0.51") * Decimal((0, (1,), other.adjusted() - k + 1)))
            for zero, error in zeros:
                self.assertLess(error, Decimal("1e-28"))
                self.assertLess(abs(zero * zero * zero - 6), Decimal("1e-28"))
            for j, value in enumerate(values):
                x, y = [row[j].real for row in right], [row[j].real for row in left]
                self.assertLess(abs(x[0] / 3 + x[1] - value.real * x[0]), Decimal("1e-28"))
                self.assertLess(abs(y[0] + 5 * y[1] - value.real * y[1]), Decimal("1e-28"))
                self.assertLess(abs(x[0] * x[0] + x[1] * x[1] - 1), Decimal("1e-28"))
        for call in (lambda: linalg.eig([[1, 1], [0, 1]]), lambda: linalg.eigh([[1, 0], [0, 1]])):
            with tesk2mp.true_digits(9), self.assertRaises(tesk2mp.NumericalFailure):
                call()

    def test_what_has_no_proof_is_refused(self):
        lu = tesk2mp.LU([[2]])
        sparse = tesk2mp.SparseMatrix(1, [(0, 0, 2)])
        factors = tesk2mp.IncompleteLU(sparse)
        plan = tesk2mp.TransformPlan(3)
        calls = (
            lambda: tesk2mp.transform([1, 2]),
            lambda: tesk2mp.fft([1, 2], norm="none"),
            lambda: tesk2mp.fft([[1, 2], [3]]),
            lambda: tesk2mp.fft([], 3),
            lambda: tesk2mp.fftn([1, 2], axes=[1]),
            lambda: tesk2mp.dct([1, 2], type=5),
            lambda: tesk2mp.sqrt(2, 1),
            lambda: tesk2mp.pi(classic=True),
            lambda: tesk2mp.pow([tesk2mp.Complex(1, 1)], [2]),
            lambda: tesk2mp.multiply([[1]], [1], alpha=2),
            lambda: tesk2mp.multiply([[1]], [1], "other"),
            lambda: tesk2mp.LU([[2]]),
            lambda: lu.solve([1]),
            lambda: tesk2mp.IncompleteLU(sparse),
            lambda: factors.solve([1]),
            lambda: sparse.multiply([1]),
            lambda: plan.transform([1, 2, 3]),
            lambda: linalg.solve([[2]], [1], assume_a="pos"),
            lambda: tesk2mp.eigen([[2]], [[1]]),
            lambda: tesk2mp.outer([1], [2]),
            lambda: tesk2mp.matrix_rank([[1]], "0.1"),
            lambda: tesk2mp.polynomial_zeros([fractions.Fraction(1, 3), "1e999999"]),
            lambda: tesk2mp.symmetric_eigenvalues([[2]], indices=(0, 0)),
        )
        for call in calls:
            with tesk2mp.true_digits(9), self.assertRaises(tesk2mp.InvalidArgument):
                call()
        with tesk2mp.true_digits(9), self.assertRaises(tesk2mp.NumericalFailure):
            with tesk2mp.true_digits(9, most=40):
                tesk2mp.solve([[1, 1], [1, 1]], [1, 2])
        for count, most in ((0, 9), (9, 8)):
            with self.assertRaises(tesk2mp.InvalidArgument):
                tesk2mp.true_digits(count, most)
        self.assertEqual(lu.solve([1]), [Decimal("0.5")])
        self.assertEqual(proven.true_digits(proven.solve([[4]], [1])), 18)

    def check_digits(self, found, fine, k):
        """Each part of what was found is within 0.51 units of its digit k of the finer result, or 0 beside the largest part."""

        def leaves(x):
            if isinstance(x, list):
                return [part for each in x for part in leaves(each)]
            return [Decimal(x.real), Decimal(x.imag)]

        pairs = list(zip(leaves(found), leaves(fine), strict=True))
        with localcontext() as context:
            context.prec = 200
            largest = max(abs(each) for _, each in pairs)
            for one, other in pairs:
                at = (largest if one == 0 or not other else other).adjusted()
                self.assertLessEqual(abs(one - other), Decimal("0.51") * Decimal((0, (1,), at - k + 1)), (one, other))
                self.assertLessEqual(len(one.normalize().as_tuple().digits), k)

    def test_transforms(self):
        from tesk2mp import _bounded_transforms

        generator = random.Random(SEED)
        for _ in range(60):
            name = generator.choice(list(_bounded_transforms.PROOFS))
            shape = [generator.randint(2, 5) for _ in range(generator.randint(1, 3))]
            real = name in ("rfft", "rfftn", "dct", "idct", "dst", "idst") or generator.random() < 0.5
            part = lambda: Decimal(generator.randint(-(10**40), 10**40)).scaleb(-30)
            number = lambda: part() if real else Complex(part(), part())
            array = lambda shape: [array(shape[1:]) for _ in range(shape[0])] if shape else number()
            given, options = array(shape), {"norm": generator.choice([None, "ortho", "forward"])}
            if name.endswith("n"):
                options["axes"] = generator.sample(range(len(shape)), generator.randint(1, len(shape)))
            else:
                options |= {"axis": generator.randint(-len(shape), len(shape) - 1), "n": generator.choice([None, 2, 4, 7])}
                if name[-2:] in ("ct", "st"):
                    options["type"] = generator.randint(1, 4)
            k = generator.choice([1, 2, 20, 60])
            with self.subTest(name=name, shape=shape, options=options, k=k):
                with tesk2mp.digits(120):
                    fine = getattr(tesk2mp, name)(given, **options)
                with tesk2mp.true_digits(k):
                    self.check_digits(getattr(tesk2mp, name)(given, **options), fine, k)
        with tesk2mp.true_digits(30):
            halves = tesk2mp.fft.ifft(numpy.array([1, fractions.Fraction(1, 3)], dtype=object))
            self.assertEqual([str(z.real) for z in halves], ["0." + "6" * 29 + "7", "0." + "3" * 30])
            self.assertIsInstance(halves, numpy.ndarray)
            self.assertEqual(tesk2mp.fft(lambda: [1, tesk2mp.sqrt(2)])[1].real, 1 - tesk2mp.sqrt(2, digits=40).quantize(Decimal("1e-29")))

    def test_conditions_and_long_products(self):
        """What takes several proven steps is not rounded between them."""
        a = [[2, 1], [1, 3]]
        with tesk2mp.digits(60):
            fine = [linalg.cond(a), linalg.cond(a, 1), linalg.cond(a, "fro"), linalg.multi_dot([a] * 9)[0][0]]
        generator = random.Random(SEED)
        for k in (1, 2, 5, 30):
            with tesk2mp.true_digits(k):
                found = [linalg.cond(a), linalg.cond(a, 1), linalg.cond(a, "fro"), linalg.multi_dot([a] * 9)[0][0]]
                for one, other in zip(found, fine):
                    self.check_digits([one], [other], k)
                self.assertEqual(linalg.matmul([1, 2], a), linalg.multi_dot([[1, 2], a]))
                self.assertIsInstance(linalg.multi_dot([numpy.array(a), a]), numpy.ndarray)
                self.assertEqual(linalg.multi_dot([[1, 2], a, [1, 1]]), linalg.multi_dot([[1, 2], linalg.matmul(a, [1, 1])]))
            # Functions of complex numbers, and of real ones with complex values.
            for name in ("exp", "log", "sqrt", "tan", "acos", "gamma", "erf", "pow"):
                for _ in range(8):
                    part = lambda: Decimal(generator.randint(-(10**k) + 1, 10**k - 1)).scaleb(1 - k)
                    given = [Complex(part(), part()) if generator.random() < 0.7 else part()]
                    given += [Decimal("0.5")] if name == "pow" else []
                    if given[0] == 0 or (k == 1 and not given[0].imag) or (name == "gamma" and given[0] == int(given[0].real)):
                        continue
                    with tesk2mp.digits(k + 40):
                        fine_value = getattr(tesk2mp, name)(*given)
                    with self.subTest(name=name, given=given, k=k), tesk2mp.true_digits(k):
                        self.check_digits(getattr(tesk2mp, name)(*given), fine_value, k)
            with tesk2mp.true_digits(k), tesk2mp.digits(1):
                self.assertEqual(len(tesk2mp.exp(1).as_tuple().digits), k)


class KeptFactors(unittest.TestCase):
    def test_round_trips(self):
        a, c = matrix(7), [[Complex(x, y) for x, y in zip(*rows)] for rows in zip(matrix(7), matrix(7, 2))]
        definite = [[sum(x * y for x, y in zip(p, q)) + 10000 * (i == j) for j, q in enumerate(a)] for i, p in enumerate(a)]
        with tesk2mp.digits(60):
            kept = [
                tesk2mp.LU(a),
                tesk2mp.LU(c),
                tesk2mp.LU(a, row_weighted=True),
                tesk2mp.Cholesky(definite),
                tesk2mp.Cholesky(definite, "upper"),
            ]
            for one in kept:
                for other in (pickle.loads(pickle.dumps(one)), pickle.loads(pickle.dumps(one, 0)), copy.copy(one), copy.deepcopy(one)):
                    self.assertIs(type(other), type(one))
                    self.assertEqual(other.solve(range(7)), one.solve(range(7)))
                    self.assertEqual(other.inverse(), one.inverse())
                    self.assertEqual(other.determinant(), one.determinant())
        with self.assertRaises(tesk2mp.NumericalFailure):
            pickle.loads(pickle.dumps(tesk2mp.LU([[1, 1], [1, 1]]))).solve([1, 2])
        wide = pickle.loads(pickle.dumps(tesk2mp.LU([[1, 2, 3], [4, 5, 7]])))
        self.assertEqual(wide.factors, tesk2mp.LU([[1, 2, 3], [4, 5, 7]]).factors)
        empty = pickle.loads(pickle.dumps(tesk2mp.LU([])))
        self.assertEqual(empty.factors, [])

    def test_broken_states(self):
        good = tesk2mp.LU([[1, 2], [3, 4]]).__reduce_ex__(2)[2]
        (kind, rows, columns, values), pivots = good
        broken = [
            ((kind, rows, columns, values), [0, 5]),
            ((kind, rows, columns, values), [0, -1]),
            ((kind, rows, columns, values), [0]),
            ((kind, 2**40, 2**40, values), pivots),
            ((kind, rows, columns, values[:-1]), pivots),
            ((True, rows, columns, values), pivots),
        ]
        for state in broken:
            fresh = tesk2mp.LU.__new__(tesk2mp.LU)
            with self.assertRaises((ValueError, tesk2mp.Error)):
                fresh.__setstate__(state)
            with contextlib.suppress(TypeError, ValueError, tesk2mp.Error):
                fresh.solve([1, 2])
        self.assertEqual(tesk2mp.LU([[1, 2], [3, 4]]).solve([3, 7]), [1, 1])


if __name__ == "__main__":
    unittest.main()
