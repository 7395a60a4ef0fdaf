"""Failures are exceptions with all that the library says, and neither standard stream gets a byte."""

import inspect
import itertools
import pickle
import subprocess
import sys
import unittest

import tesk2mp
from tesk2mp import Complex, Real

ROWS = [
    (lambda: tesk2mp.spectrum([1]), "InvalidArgument", "C06FAF", 3, 99999, " ** On entry, N .le. 1: N =               1.", (1,)),
    (
        lambda: tesk2mp.transform_hermitian(range(46)),
        "InvalidArgument",
        "C06FBF",
        1,
        99998,
        " ** At least one prime factor of N is greater than 19.\n    N =              46.",
        (46,),
    ),
    (
        lambda: tesk2mp.invert([0, 0]),
        "InvalidArgument",
        "M01ZAF",
        3,
        99995,
        " ** IPERM(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
        "    IPERM contains a repeated value:               1.",
        (1,),
    ),
    (lambda: tesk2mp.quartic_zeros(0, 1, 1, 1, 1), "InvalidArgument", "C02ALF", 1, 99999, " ** On entry, E .eq. 0.0.", ()),
    (
        lambda: tesk2mp.multiply([[1, 2]], [1]),
        "InvalidArgument",
        "F06PAF/DGEMV",
        7,
        0,
        "a vector of 1 elements where 2 are needed",
        (1, 2),
    ),
    (
        lambda: tesk2mp.eigenvalues([[1, 2]]),
        "InvalidArgument",
        "F08NHF/DGEBAL",
        3,
        0,
        "a matrix of 1 by 2 is not square",
        (1, 2),
    ),
    (
        lambda: tesk2mp.solve([[1, 2], [2, 4]], [1, 1]),
        "NumericalFailure",
        "F07ADF/DGETRF",
        2,
        0,
        "U(2, 2) is exactly zero: the matrix is singular",
        (2, 2),
    ),
    (
        lambda: tesk2mp.cholesky([[-1]]),
        "NumericalFailure",
        "DPOTRF",
        1,
        0,
        "the leading minor of order 1 is not positive",
        (1,),
    ),
    (lambda: tesk2mp.SparseMatrix(2, [(2, 0, 1)]), "InvalidArgument", "F11ZAF", 4, 0, "row 2 of a matrix of order 2", (2, 2)),
    (lambda: tesk2mp.Random(274), "InvalidArgument", "G05KAF", 1, 0, "generators are 0 to 273, not 274", (274,)),
]


class Huge:
    """An integer that no index is."""

    def __index__(self):
        return 10**30


ENDLESS = []
ENDLESS.append(ENDLESS)
HOSTILE = [
    *(None, 1.5, float("nan"), "x", "nan", b"1", object(), Huge(), 10**30, 2**31, -1, 0),
    *({1: 2}, [], [[]], [[], []], [None], ["x"], ["nan"], ENDLESS, [[1, 2], [3]], [[1, 2]], [0], [[0]], [[0, 0], [0, 0]]),
    *([["nan", "inf"], ["1", "2"]], Complex(1, 2), [Complex(1, 2)], Real.__new__(Real), [Complex.__new__(Complex)]),
]


def provoke():
    """Lets everything fail that can."""
    for call, *_ in ROWS:
        try:
            call()
        except tesk2mp.Error:
            continue
        raise AssertionError("nothing failed")


class Failures(unittest.TestCase):
    def test_exceptions(self):
        for call, kind, routine, code, label, text, values in ROWS:
            with self.subTest(routine + text):
                with self.assertRaises(tesk2mp.Error) as caught:
                    call()
                error = caught.exception
                self.assertEqual(type(error).__name__, kind)
                self.assertEqual((error.routine, error.code, error.label), (routine, code, label))
                self.assertEqual((error.text, error.values), (text, values))
                copied = pickle.loads(pickle.dumps(error))  # as from a pool of processes
                self.assertEqual((str(copied), vars(copied)), (str(error), vars(error)))
                self.assertEqual(str(error), f"{routine}: {' '.join(text.removeprefix(' ** ').split())}")
        self.assertTrue(issubclass(tesk2mp.InvalidArgument, ValueError))
        self.assertTrue(issubclass(tesk2mp.NumericalFailure, ArithmeticError))

    def test_hostile_arguments(self):
        """What the package is given ends in a result or in an exception of its own."""
        for name in sorted(set(tesk2mp.__all__) - {"Error", "InvalidArgument", "InvalidType", "NumericalFailure", "set_threads"}):
            function = getattr(tesk2mp, name)
            if inspect.isfunction(function):
                parameters = inspect.signature(function).parameters.values()
                count = sum(each.default is each.empty and each.kind is each.POSITIONAL_OR_KEYWORD for each in parameters)
            else:
                count = {"SparseMatrix": 2, "get_digits": 0}.get(name, 1)
            with self.subTest(name):
                every = itertools.product(HOSTILE, repeat=count) if count < 3 else zip(*[HOSTILE] * count)
                for arguments in every:
                    try:
                        function(*arguments)
                    except (tesk2mp.Error, MemoryError):
                        continue
                    except TypeError:
                        self.assertIn(name, ("digits", "results"))  # classes of Python
        with self.assertRaisesRegex(tesk2mp.InvalidType, "a number is needed, not a sequence"):
            tesk2mp.scale([], [])

    def test_memory_ends(self):
        program = """
import resource, tesk2mp
a = [[i * j % 97 + (i == j) * 50 for j in range(40)] for i in range(40)]
before = tesk2mp.inverse(a)
used = int(open("/proc/self/statm").read().split()[0]) * resource.getpagesize()
resource.setrlimit(resource.RLIMIT_AS, (used + 2**25, resource.RLIM_INFINITY))
failures = 0
for call in (
    lambda: tesk2mp.Random(1).take(10**7),
    lambda: tesk2mp.window("hann", 2**24),
    lambda: tesk2mp.outer(range(3000), range(3000)),
    lambda: tesk2mp.fft(range(2**20), digits=60),
    lambda: tesk2mp.inverse(a, digits=10**5),
    lambda: tesk2mp.digits(10**5)(tesk2mp.proven.solve)(a, a[0]),
):
    try:
        call()
    except MemoryError:
        failures += 1
    assert tesk2mp.inverse(a) == before and tesk2mp.get_digits() == 20
print(failures)
"""
        done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(int(done.stdout), 6)

    def test_silence(self):
        done = subprocess.run(
            [sys.executable, __file__, "provoke"], stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False
        )
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))

    def test_options(self):
        for call in (lambda: tesk2mp.norm([[1]], "two"), lambda: tesk2mp.cholesky([[1]], "middle")):
            with self.assertRaisesRegex(ValueError, "is one of '.*', not '"):
                call()


if __name__ == "__main__":
    if sys.argv[1:] == ["provoke"]:
        provoke()
    else:
        unittest.main()
