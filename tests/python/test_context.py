"""The working digits belong to the thread or task, and callbacks compute with enough of Python's own."""

import asyncio
import contextvars
import copy
import decimal
import pickle
import threading
import unittest
from concurrent.futures import ThreadPoolExecutor
from decimal import Decimal
from fractions import Fraction

import tesk2mp

# 1/7 to so many digits, by Python's arithmetic.
SEVENTHS = {n: decimal.Context(prec=n).divide(Decimal(1), Decimal(7)) for n in (5, 17, 20, 33, 40, 60, 77, 90, 111)}


def seventh():
    return tesk2mp.solve([[7]], [1])[0]


class Contexts(unittest.TestCase):
    def test_threads(self):
        """8 threads with digits of their own, 10^4 times, by blocks, by the keyword and by a shared decorator."""
        start = threading.Barrier(8)
        wrong = []

        def work(digits):
            decorated = tesk2mp.digits(digits)(seventh)
            start.wait()
            for turn in range(1250):
                with tesk2mp.digits(digits):
                    found = [seventh(), tesk2mp.solve([[7]], [1], digits=111)[0], seventh(), decorated()]
                found += [seventh(), tesk2mp.Complex(1) / 7]
                expected = [SEVENTHS[n] for n in (digits, 111, digits, digits, 20)]
                if found[:-1] != expected or found[-1].real != SEVENTHS[20] or decimal.getcontext().prec != 28:
                    wrong.append((digits, turn, found))

        threads = [threading.Thread(target=work, args=(n,)) for n in (5, 17, 33, 40, 60, 77, 90, 111)]
        with tesk2mp.digits(60):
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
            self.assertEqual(seventh(), SEVENTHS[60])
        self.assertEqual(wrong, [])
        self.assertEqual((tesk2mp.get_digits(), decimal.getcontext().prec), (20, 28))

    def test_new_threads(self):
        with tesk2mp.digits(40), ThreadPoolExecutor(1) as pool:
            self.assertEqual(pool.submit(tesk2mp.get_digits).result(), 20)
            self.assertEqual(pool.submit(contextvars.copy_context().run, seventh).result(), SEVENTHS[40])

    def test_tasks(self):
        @tesk2mp.digits(33)
        async def decorated():
            await asyncio.sleep(0)
            return seventh()

        async def work(digits):
            with tesk2mp.digits(digits):
                found = []
                for _ in range(20):
                    await asyncio.sleep(0)
                    found.append(seventh())
                tesk2mp.set_digits(5)
                await asyncio.sleep(0)
                return [*found, seventh()]

        async def everything():
            with tesk2mp.digits(40):
                results = await asyncio.gather(*(work(n) for n in (17, 60, 90)), decorated(), asyncio.to_thread(seventh))
                return results, seventh()

        results, last = asyncio.run(everything())
        for digits, found in zip((17, 60, 90), results):
            self.assertEqual(found, [SEVENTHS[digits]] * 20 + [SEVENTHS[5]])
        self.assertEqual(results[3:], [SEVENTHS[33], SEVENTHS[40]])
        self.assertEqual((last, seventh()), (SEVENTHS[40], SEVENTHS[20]))

    def test_failures_restore(self):
        for count in (0, 1000001, "forty"):
            with self.assertRaises((TypeError, ValueError)):
                with tesk2mp.digits(count):
                    self.fail("entered")
        with self.assertRaises(ZeroDivisionError):
            with tesk2mp.digits(5), tesk2mp.results(tesk2mp.Real):
                raise ZeroDivisionError
        with self.assertRaises(tesk2mp.NumericalFailure):
            tesk2mp.inverse([[0]], digits=40)
        self.assertEqual((seventh(), decimal.getcontext().prec), (SEVENTHS[20], 28))
        with self.assertRaises(TypeError):
            tesk2mp.digits(5)(lambda: (yield))
        with self.assertRaises(TypeError):
            tesk2mp.results(float)

    def test_scopes_are_objects(self):
        scope = pickle.loads(pickle.dumps(tesk2mp.digits(40)))
        with scope, scope, copy.copy(scope):
            self.assertEqual((seventh(), decimal.getcontext().prec), (SEVENTHS[40], 40))
        self.assertEqual((repr(scope), repr(tesk2mp.results(Decimal))), ("digits(40)", "results(Decimal)"))


class Callbacks(unittest.TestCase):
    MATRIX = [[4, 1, 0], [2, 5, 1], [0, -1, 3]]

    def product(self, x):
        """Rounded at every step as Python's context says."""
        return [sum((a * b for a, b in zip(row, x)), Decimal(0)) for row in self.MATRIX]

    def test_contexts_do_not_grow(self):
        seventh()
        variables = len(contextvars.copy_context())
        for turn in range(20):
            with tesk2mp.digits(20 + turn), tesk2mp.results(tesk2mp.Real):
                tesk2mp.solve([[7]], [1], digits=30)
        self.assertLessEqual(len(contextvars.copy_context()), variables + 3)

    def test_guard_digits(self):
        for method in ("rgmres", "bicgstab", "tfqmr"):
            with self.subTest(method):
                x, _, _ = tesk2mp.solve_iteratively(self.product, [1, 2, 3], method=method, tolerance="1e-56", digits=60)
                exact = tesk2mp.solve(self.MATRIX, [1, 2, 3], digits=80)
                with tesk2mp.digits(80):
                    self.assertLess(max(abs(a - b) for a, b in zip(x, exact)), Decimal("1e-54"))
        self.assertEqual(decimal.getcontext().prec, 28)

    def test_digits_inside(self):
        """A callback has the routine's digits, others if it asks for them, and the routine keeps its own."""
        seen = []

        def product(x):
            seen.append((seventh(), decimal.getcontext().prec >= 70, tesk2mp.solve([[7]], [1], digits=5)[0]))
            tesk2mp.set_digits(60)
            return self.product(x)

        with tesk2mp.digits(60):
            x, residual, _ = tesk2mp.solve_iteratively(product, [1, 2, 3], tolerance="1e-50")
            self.assertEqual(seventh(), SEVENTHS[60])
        self.assertEqual(set(seen), {(SEVENTHS[60], True, SEVENTHS[5])})

        def failing(_):
            raise LookupError("the caller's own")

        with self.assertRaises(LookupError):
            tesk2mp.solve_iteratively(failing, [1, 2, 3], digits=60)
        self.assertEqual((decimal.getcontext().prec, seventh()), (28, SEVENTHS[20]))

    def test_tolerances_that_are_negative(self):
        from tesk2mp.sparse import linalg

        a = tesk2mp.SparseMatrix(2, [(0, 0, 2), (1, 1, 1)])
        for name in ("gmres", "fgmres", "cgs", "bicgstab", "idrs", "tfqmr", "cg", "minres"):
            method = getattr(linalg, name)
            for rtol in (-1, "-1e-9", tesk2mp.Real(-1), Fraction(-1, 3), "nan", tesk2mp.Real("nan")):
                with self.assertRaisesRegex(ValueError, "the tolerance is a number from 0 on, not (-[0-9]|NaN|nan)"):
                    method(a, [1, 2], rtol=rtol)
            for rtol in (0, "1e-9", Fraction(1, 3), tesk2mp.Real("0.01")):
                self.assertEqual(method(a, [1, 2], rtol=rtol)[1], 0)

    def test_few_digits_inside(self):
        """Below 10 digits the solvers have 10, and so has the module in what they call, until that returns or raises."""
        from tesk2mp.sparse.linalg import LinearOperator, cg, gmres, minres

        rows = range(20)
        seen = set()

        def product(x):
            seen.add(tesk2mp.machine_precision())
            x = [tesk2mp.Real(number) for number in x]
            return [3 * x[i] - (x[i - 1] if i > 0 else 0) - (x[i + 1] if i < 19 else 0) for i in rows]

        def failing(_):
            raise LookupError("the caller's own")

        for digits in (1, 2, 9):
            with tesk2mp.digits(digits):
                before = (tesk2mp.get_digits(), decimal.getcontext().prec)
                for method in (cg, minres, gmres):
                    x = method(LinearOperator((20, 20), product, product), [1] * 20, rtol="0.01")[0]
                    with decimal.localcontext(prec=30):
                        residual = [3 * x[i] - sum(x[k] for k in (i - 1, i + 1) if k in rows) - 1 for i in rows]
                    self.assertLess(max(map(abs, residual)), Decimal(digits == 1) / 2 + Decimal("0.1"))
                    with self.assertRaises(LookupError):
                        method(LinearOperator((20, 20), failing, failing), [1] * 20)
                    self.assertEqual((tesk2mp.get_digits(), decimal.getcontext().prec), before)
        with tesk2mp.digits(10):
            self.assertEqual(seen, {tesk2mp.machine_precision()})


class Routines(unittest.TestCase):
    def test_functions_are_pythons(self):
        import inspect

        for name in tesk2mp.__all__:
            value = getattr(tesk2mp, name)
            if inspect.isfunction(value):
                with self.subTest(name):
                    self.assertIs(pickle.loads(pickle.dumps(value)), value)
                    self.assertIs(copy.deepcopy(value), value)
                    self.assertEqual((value.__name__, value.__module__.partition(".")[0]), (name, "tesk2mp"))
        self.assertEqual(str(inspect.signature(tesk2mp.norm)), "(a, kind='frobenius', *, digits=None)")
        self.assertEqual(tesk2mp.sin(1, digits=5), Decimal("0.84147"))


if __name__ == "__main__":
    unittest.main()
