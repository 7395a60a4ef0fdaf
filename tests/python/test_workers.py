"""Programs that share the work: exact sums, numbers as bytes, rows that are shared out, and digits that go along to workers."""

import asyncio
import concurrent.futures
import itertools
import multiprocessing
import os
import pathlib
import pickle
import random
import subprocess
import sys
import threading
import unittest
from decimal import MAX_EMAX, MAX_PREC, MIN_EMIN, Context, Decimal
from fractions import Fraction

import tesk2mp
from tesk2mp import Accumulator, Complex, Real

EXAMPLES = pathlib.Path(__file__).resolve().parent.parent.parent / "examples"


def third(x):
    """What a worker does: at the digits of decimal, of the module, and of its arithmetic."""
    return x / Decimal(3), tesk2mp.solve([[3]], [x])[0], Real(x) / 3


class ExactSums(unittest.TestCase):
    def setUp(self):
        seed = int(os.environ.get("TESK_SEED", random.randrange(10**6)))
        print(f"TESK_SEED={seed}")
        self.random = random.Random(seed)

    def numbers(self, count):
        return [
            Decimal(self.random.randint(-(10**30), 10**30)).scaleb(self.random.randint(-60, 60)) for _ in range(count)
        ]

    def test_any_order_and_any_partition(self):
        x, y = self.numbers(40), self.numbers(40)
        exact = Context(prec=2000)
        expected = Decimal(0)
        for a, b in zip(x, y):
            expected = exact.add(expected, exact.multiply(a, b))
        for digits in (1, 2, 25, 333):
            with tesk2mp.digits(digits):
                whole, pieces = Accumulator(), []
                whole.add_dot(x, y)
                pairs = list(zip(x, y))
                self.random.shuffle(pairs)
                for part in (pairs[:7], pairs[7:8], pairs[8:]):
                    total = Accumulator()
                    for a, b in part:
                        total.add_product(Real(0) + a if digits > 90 else a, b)
                    pieces.append(total)
                self.assertEqual(sum(pieces, Accumulator()), whole)
                self.assertEqual(sum(pickle.loads(pickle.dumps(pieces))), whole)
                self.assertEqual(whole.rounded(), Context(prec=digits).plus(expected))

    def test_terms_have_all_their_digits(self):
        huge = 10**5000 + 1
        total = Accumulator()
        total.add([huge, Decimal("1e-3000"), -(10**5000)])
        total += Real(7)
        self.assertEqual(total.rounded(), 8)
        total.add(-8)
        self.assertEqual(total.rounded(), Decimal("1e-3000"))
        self.assertEqual((Accumulator() + Fraction(1, 4)).rounded(), Decimal("0.25"))
        self.assertEqual(Real(1) + (10**25 + 4), Decimal("1.0000000000000000000e25"))
        self.assertEqual(Real("-1e25") + (10**25 + 4), 4)

    def test_specials(self):
        for terms, expected in ((["inf", 1], "Infinity"), (["inf", "-inf"], "NaN"), (["nan"], "NaN"), ([], "0"), (["-0"], "0")):
            total = Accumulator()
            total.add(terms)
            self.assertEqual(str(total.rounded()), expected)
            self.assertEqual(Accumulator(total.packed()), total)
        total = Accumulator()
        total.add_product("inf", 0)
        self.assertTrue(total.rounded().is_nan())
        root = Accumulator()
        root.add_product(Decimal("3e600000000"), Decimal("3e600000000"))
        self.assertEqual(root.rounded_root(), Decimal("3e600000000"))
        root += -1
        self.assertTrue(Accumulator().rounded_root() == 0 and (Accumulator() + -1).rounded_root().is_nan())

    def test_a_refused_term_leaves_the_sum(self):
        total = Accumulator() + 5
        for wrong in (
            lambda: total.add([1, 2, "x"]),
            lambda: total.add([1, [2]]),
            lambda: total.add(0.5),
            lambda: total.add(Complex(1, 1)),
            lambda: total.add_dot([1, 2], [1]),
            lambda: total.add_product(1, None),
            lambda: total.__iadd__("x"),
            lambda: Accumulator(b""),
            lambda: Accumulator(total.packed() + b"\0"),
            lambda: Accumulator(total.packed()[:-1]),
            lambda: Accumulator("text"),
            lambda: tesk2mp.unpack(b"\x05"),
            lambda: tesk2mp.unpack(tesk2mp.pack([1, 2])[:-1]),
            lambda: tesk2mp.pack([Complex(1)]),
        ):
            with self.assertRaises(tesk2mp.Error):
                wrong()
        self.assertEqual(total.rounded(), 5)
        with self.assertRaises(TypeError):
            hash(total)

    def test_packed_numbers(self):
        numbers = [*self.numbers(20), Decimal("-0"), Decimal("inf"), Decimal("1e-900000000"), 10**400 + 1]
        with tesk2mp.digits(2):
            back = tesk2mp.unpack(tesk2mp.pack(numbers[:5]) + tesk2mp.pack(numbers[5:]))
        self.assertEqual(back, numbers)
        self.assertEqual(tesk2mp.unpack(b""), [])


class Ranks:
    """Threads in place of programs, which meet at every message."""

    def __init__(self, count):
        self.count = count
        self.barrier = threading.Barrier(count, timeout=60)
        self.messages = [None] * count

    def allgather(self, rank, message):
        self.messages[rank] = message
        self.barrier.wait()
        everything = list(self.messages)
        self.barrier.wait()
        return everything

    def run(self, work):
        with concurrent.futures.ThreadPoolExecutor(self.count) as pool:
            return [each.result() for each in [pool.submit(work, rank) for rank in range(self.count)]]


class SharedRows(unittest.TestCase):
    def solve(self, count, method, number, criterion, digits=30):
        """A tridiagonal system whose rows `count` threads have, with Jacobi's preconditioner."""
        order = 12
        ranks = Ranks(count)

        def work(rank):
            first, last = order * rank // count, order * (rank + 1) // count

            def multiply(x):
                whole = [each for part in ranks.allgather(rank, x) for each in part]
                return [
                    (i + 3) * whole[i] - (whole[i - 1] if i > 0 else 0) - (whole[i + 1] if i + 1 < order else 0)
                    for i in range(first, last)
                ]

            def exchange(message):
                everything = ranks.allgather(rank, message)
                return b"".join(everything) if rank % 2 else everything

            with tesk2mp.digits(digits), tesk2mp.results(Real):
                return tesk2mp.solve_iteratively(
                    multiply,
                    [number] * (last - first),
                    lambda x: [each / (i + 3) for i, each in enumerate(x, first)],
                    method=method,
                    criterion=criterion,
                    transpose=multiply,
                    norm="two",
                    weights=[1 + i % 3 for i in range(first, last)],
                    tolerance="1e-20",
                    rows=order,
                    first_row=first,
                    exchange=exchange,
                )

        parts = ranks.run(work)
        self.assertEqual(len({iterations for _, _, iterations in parts}), 1)
        return [repr(each) for x, _, _ in parts for each in x], parts[0][2]

    def test_digits_do_not_depend_on_the_partition(self):
        for method, number in itertools.product(("cg", "rgmres", "bicgstab"), (1, Complex(1, -1))):
            for criterion in ("preconditioned_residual", "residual"):
                with self.subTest(f"{method} {number} {criterion}"):
                    alone = self.solve(1, method, number, criterion)
                    for count in (2, 5):
                        self.assertEqual(self.solve(count, method, number, criterion), alone)

    def test_what_is_refused(self):
        def identity(x):
            return x

        shared = {"rows": 4, "first_row": 0, "method": "cg"}
        for options, wrong in (
            ({**shared, "exchange": lambda message: None}, tesk2mp.InvalidType),
            ({**shared, "exchange": lambda message: [1]}, tesk2mp.InvalidType),
            ({**shared, "exchange": lambda message: b""}, tesk2mp.InvalidArgument),
            ({**shared, "exchange": lambda message: message + b"\x07"}, tesk2mp.InvalidArgument),
            ({**shared, "exchange": lambda message: message[:-1]}, tesk2mp.InvalidArgument),
            ({**shared, "exchange": 5}, tesk2mp.InvalidType),
            (shared, tesk2mp.InvalidArgument),
            ({"exchange": identity}, tesk2mp.InvalidArgument),
            ({**shared, "rows": 2, "first_row": 1, "exchange": identity}, tesk2mp.InvalidArgument),
            ({**shared, "first_row": -1, "exchange": identity}, tesk2mp.InvalidArgument),
            ({**shared, "exchange": lambda message: 1 // 0}, ZeroDivisionError),
        ):
            with self.assertRaises(wrong, msg=options):
                tesk2mp.solve_iteratively(identity, [1, 2], **options)


class Digits(unittest.TestCase):
    expected = (Decimal(1) / 3, Decimal("0." + 33 * "3"), Decimal("0." + 33 * "3"))

    def carried(self):
        with tesk2mp.digits(33):
            return tesk2mp.with_digits(third)

    def check(self, results):
        for at_decimals, solved, real in results:
            self.assertEqual((str(at_decimals), str(solved), str(real)), (3 * ("0." + 33 * "3",)))

    def test_here_and_in_threads(self):
        function = self.carried()
        self.check([function(Decimal(1)), pickle.loads(pickle.dumps(function))(Decimal(1))])
        with concurrent.futures.ThreadPoolExecutor(2) as pool, tesk2mp.digits(5):
            self.check(pool.map(function, 4 * [Decimal(1)]))
            self.assertEqual(tesk2mp.get_digits(), 5)
        self.assertIn("third", repr(function))

        async def task():
            return third(Decimal(1))

        with tesk2mp.digits(33):
            task = tesk2mp.with_digits(task)
        self.check([asyncio.run(task())])

    def test_spawned_processes(self):
        spawn = multiprocessing.get_context("spawn")
        with concurrent.futures.ProcessPoolExecutor(1, mp_context=spawn) as pool:
            self.check(pool.map(self.carried(), [Decimal(1)]))
            with tesk2mp.digits(7):
                self.assertEqual(pool.submit(tesk2mp.with_digits(tesk2mp.solve), [[3]], [1]).result(), [Decimal("0.3333333")])
                # Without it they are those of a new process.
                self.assertEqual(str(pool.submit(third, Decimal(1)).result()[1]), "0." + 20 * "3")
        with spawn.Pool(1, initializer=tesk2mp.set_digits, initargs=(9,)) as pool:
            self.assertEqual(str(pool.apply(third, [Decimal(1)])[1]), "0." + 9 * "3")

    def test_kind_of_results_and_proofs(self):
        with tesk2mp.results(Real), tesk2mp.true_digits(12):
            function = tesk2mp.with_digits(tesk2mp.determinant)
        hilbert = [[Fraction(1, i + j + 1) for j in range(2)] for i in range(2)]
        self.assertEqual(repr(pickle.loads(pickle.dumps(function))(hilbert)), "Real('0.0833333333333')")

    def test_joblib(self):
        import joblib

        with tesk2mp.digits(33):
            self.check(joblib.Parallel(2)(joblib.delayed(tesk2mp.with_digits(third))(Decimal(1)) for _ in range(3)))

    def test_dask(self):
        done = subprocess.run(
            [sys.executable, EXAMPLES / "dask_sweep.py", "31"], capture_output=True, text=True, check=False, timeout=300
        )
        self.assertEqual(done.returncode, 0, done.stderr)
        lines = done.stdout.splitlines()
        self.assertEqual(lines[0].split(), ["0", "0.5", "(31", "digits)"])
        # The energy at g = 1/10, as tables of this oscillator have it.
        self.assertEqual(lines[5].split()[1][:18], "0.5591463271835195")
        self.assertEqual([line.endswith("(31 digits)") for line in lines], 6 * [True])

    def test_what_is_refused(self):
        def numbers():
            yield 1

        for wrong in (5, numbers):
            with self.assertRaises(tesk2mp.InvalidType):
                tesk2mp.with_digits(wrong)


if __name__ == "__main__":
    unittest.main()
