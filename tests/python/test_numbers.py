"""Numbers go in and come out with exactly their digits, whatever they are given as."""

import copy
import decimal
import numbers
import os
import pickle
import random
import time
import unittest
from decimal import Decimal
from fractions import Fraction

import numpy
import tesk2mp
from tesk2mp import Complex, Real

SEED = int(os.environ.get("TESK_SEED", time.time()))
print(f"TESK_SEED={SEED}")
RANDOM = random.Random(SEED)


class Price(Decimal):
    """Shows itself with a unit."""

    def __str__(self):
        return super().__str__() + " EUR"


def through(number):
    """The number as the library has it."""
    return tesk2mp.sort([number])[0]


def rounded(exact, digits):
    """A Decimal or Fraction rounded once, half to even, by Python's decimal arithmetic."""
    with decimal.localcontext(decimal.Context(prec=digits, Emax=decimal.MAX_EMAX, Emin=decimal.MIN_EMIN)):
        if isinstance(exact, Fraction):
            return Decimal(exact.numerator) / Decimal(exact.denominator)
        return +Decimal(exact)


class Numbers(unittest.TestCase):
    def test_decimals_keep_every_digit(self):
        for _ in range(300):
            size = RANDOM.randint(1, 80)
            text = "".join(RANDOM.choice("0123456789") for _ in range(size))
            number = Decimal(f"{RANDOM.choice('+-')}{text}E{RANDOM.randint(-400, 400)}")
            with tesk2mp.digits(80):
                self.assertEqual(through(number), number)
            digits = RANDOM.randint(1, 80)
            with tesk2mp.digits(digits):
                self.assertEqual(through(number), rounded(number, digits), (number, digits))

    def test_fractions_are_rounded_once(self):
        for _ in range(300):
            number = Fraction(RANDOM.randint(-(10 ** RANDOM.randint(1, 60)), 10**60), RANDOM.randint(1, 10**40))
            digits = RANDOM.randint(1, 40)
            with decimal.localcontext(decimal.Context(prec=200)):
                nearest = Decimal(number.numerator) / Decimal(number.denominator)
            with tesk2mp.digits(digits):
                self.assertEqual(through(number), rounded(nearest, digits), (number, digits))

    def test_kinds_of_numbers(self):
        big = 7**8000  # longer than Python's own limit for the text of an integer
        rows = [
            (5, "5"),
            (-(10**30), "-1E+30"),
            (True, "1"),
            ("0.1", "0.1"),
            ("-1e-500", "-1E-500"),
            ("Infinity", "Infinity"),
            (Decimal("-0"), "-0"),
            (numpy.int64(-3), "-3"),
            (Fraction(1, 8), "0.125"),
            (Fraction(big, 2 * big), "0.5"),
            (Price("0.1"), "0.1"),
        ]
        for number, text in rows:
            with self.subTest(repr(number)[:40]):
                self.assertEqual(str(through(number)), str(Decimal(text)))
        for nothing in ("nan", Decimal("sNaN"), Decimal("-NaN123")):
            self.assertTrue(through(nothing).is_nan())
        with tesk2mp.digits(7000):
            self.assertEqual(through(big), Decimal(big))

    def test_what_is_no_number(self):
        rows = [
            (0.5, TypeError, "a float is a binary number"),
            (numpy.float64(0.5), TypeError, "a float is a binary number"),
            (1j, TypeError, "not complex"),
            (None, TypeError, "not NoneType"),
            (b"1", TypeError, "not bytes"),
            ("", ValueError, "not a number: ''"),
            ("1,5", ValueError, "not a number: '1,5'"),
            ("nano", ValueError, "not a number: 'nano'"),
            ("--nan", ValueError, "not a number: '--nan'"),
            ("1\0002", ValueError, "not a number: '1\\x002'"),
            ("\ud800", ValueError, "surrogates not allowed"),
            (numpy.array([1, 2]), TypeError, "not ndarray"),
            (tesk2mp.Complex(1, 2), TypeError, "not Complex"),
        ]
        for number, kind, words in rows:
            with self.subTest(repr(number)):
                with self.assertRaises(kind) as caught:
                    tesk2mp.transform_real([1, number])
                self.assertIn(words, str(caught.exception))

    def test_what_is_no_sequence(self):
        endless = []
        endless.append(endless)
        box = numpy.empty(1, dtype=object)
        box[0] = box
        deep = 1
        for _ in range(100000):
            deep = [deep]
        needed, rows, flat = "a sequence is needed, not ", "a matrix is a sequence of rows", "a vector is a sequence of numbers"
        within, ragged, entry = "or one that contains itself", "sequences of 2 and of 1 elements", "an entry is a row, a column"
        for call, argument, kind, words in (
            (tesk2mp.sort, "123", TypeError, needed + "str"),
            (tesk2mp.sort, b"123", TypeError, needed + "bytes"),
            (tesk2mp.sort, {1: 2}, TypeError, needed + "dict"),
            (tesk2mp.norm, {1, 2}, TypeError, needed + "set"),
            (tesk2mp.sort, 5, TypeError, needed + "int"),
            (tesk2mp.inverse, tesk2mp.Complex(1), TypeError, needed + "Complex"),
            (tesk2mp.determinant, ["12", "34"], TypeError, rows),
            (tesk2mp.determinant, [1, 2], TypeError, rows),
            (tesk2mp.determinant, [[[]]], TypeError, rows),
            (tesk2mp.sort, [[1]], TypeError, flat),
            (tesk2mp.determinant, [[1, 2], [3]], ValueError, ragged),
            (tesk2mp.norm, numpy.ma.array([1, 2], mask=[1, 0]), TypeError, "not NoneType"),
            (tesk2mp.norm, [1, range(2)], TypeError, "not range"),
            (tesk2mp.norm, [[], 1], TypeError, needed + "int"),
            *((call, each, ValueError, within) for call in (tesk2mp.transform, tesk2mp.sort, tesk2mp.norm, tesk2mp.lu) for each in (endless, box, deep)),
            (lambda x: tesk2mp.SparseMatrix(2, x), endless, ValueError, entry),
            (lambda x: tesk2mp.SparseMatrix(2, x), [(0, -1, 1)], ValueError, "there is no -1"),
            (lambda x: tesk2mp.SparseMatrix(2, x), [(0, 0.5, 1)], TypeError, "cannot be interpreted as an integer"),
            (tesk2mp.invert, [2**40], ValueError, "more than 32 bits"),
        ):
            with self.subTest(words=words, kind=type(argument)):
                with self.assertRaises(kind) as caught:
                    call(argument)
                self.assertIn(words, str(caught.exception))

    def test_each_sequence_is_gone_through_once(self):
        rows = [[4, 1], [2, 3]]
        for call in (tesk2mp.determinant, tesk2mp.inverse, tesk2mp.norm, tesk2mp.lu, tesk2mp.transform):
            self.assertEqual(call(iter(row) for row in rows), call(rows))
        for call in (tesk2mp.multiply, tesk2mp.solve):
            self.assertEqual(call(iter(rows), iter([1, 2])), call(rows, [1, 2]))
        self.assertEqual(tesk2mp.rearrange(iter([1, 2]), iter([1, 0])), [2, 1])

    def test_arrays_of_any_layout(self):
        square = numpy.array([[1, 2, 3], [4, 5, 6], [7, 8, 10]])
        expected = tesk2mp.solve(square.tolist(), [1, 2, 3])
        for a in (square, numpy.asfortranarray(square), square.astype(object), square.astype(numpy.uint8), square.view(numpy.matrix)):
            self.assertEqual(list(tesk2mp.solve(a, numpy.array([3, 2, 1])[::-1])), expected)
        self.assertEqual(tesk2mp.multiply(square[::2, ::-1], [1, 0, 0]).tolist(), [3, 10])
        with self.assertRaises(TypeError):
            tesk2mp.norm(numpy.array(5))

    def test_arrays_come_back_as_arrays_of_objects(self):
        a = numpy.array([[Decimal(4), 1], [2, Fraction(3)]], dtype=object)
        given = a.copy()
        x = tesk2mp.multiply(a, [1, "0.5"])
        self.assertEqual((type(x), x.dtype, x.shape), (numpy.ndarray, numpy.dtype(object), (2,)))
        self.assertEqual(list(x), [Decimal("4.5"), Decimal("3.5")])
        inverse = tesk2mp.inverse(numpy.array([[2, 0], [0, 4]]))
        self.assertEqual(inverse.shape, (2, 2))
        self.assertIsInstance(inverse[0, 0], Decimal)
        self.assertTrue((a == given).all())
        self.assertIsInstance(tesk2mp.multiply([[1]], numpy.array([1])), list)
        self.assertEqual(tesk2mp.sort(number for number in (3, 1, 2)), [1, 2, 3])

    def test_complex_arithmetic(self):
        z = tesk2mp.Complex("1.5", 2)
        self.assertEqual([z + 1, 1 + z, z - z, 2 - z, -z], [
            tesk2mp.Complex("2.5", 2), tesk2mp.Complex("2.5", 2), 0, tesk2mp.Complex("0.5", -2), tesk2mp.Complex("-1.5", -2),
        ])
        self.assertEqual(z * z.conjugate() / z, z.conjugate())
        self.assertEqual(1 / tesk2mp.Complex(0, 2), tesk2mp.Complex(0, "-0.5"))
        self.assertNotEqual(z, 1)
        self.assertNotEqual(z, "z")
        self.assertEqual(tesk2mp.Complex(1), Decimal(1))
        self.assertEqual(hash(tesk2mp.Complex(1)), hash(1))
        self.assertEqual(len({z, tesk2mp.Complex("1.50", 2)}), 1)
        self.assertEqual(eval(repr(z), {"Complex": tesk2mp.Complex}), z)
        self.assertEqual((numpy.array([1, 2]) + z).tolist(), [1 + z, 2 + z])
        self.assertEqual((z * numpy.array([1, 2])).tolist(), [z, 2 * z])
        self.assertEqual([complex(z), bool(z), bool(z - z), +z], [1.5 + 2j, True, False, z])
        with tesk2mp.digits(50):
            long = tesk2mp.Complex(tesk2mp.pi(), 1)
        for copied in (copy.deepcopy(long), pickle.loads(pickle.dumps(long))):
            self.assertEqual(copied, long)
        self.assertEqual((+long).real, Decimal("3.1415926535897932385"))
        with self.assertRaises(TypeError):
            z + 0.5
        with self.assertRaises(AttributeError):
            z.real = 1

    def test_pickles(self):
        a = tesk2mp.SparseMatrix(3, [(0, 1, "0.1"), (2, 0, -7)], lower_triangle=False)
        z = tesk2mp.SparseMatrix(2, [(1, 0, tesk2mp.Complex("1e-30", 2))], lower_triangle=True)
        for matrix in (a, z):
            copied = pickle.loads(pickle.dumps(matrix))
            self.assertEqual(copied.entries(), matrix.entries())
            self.assertEqual((copied.order, copied.lower_triangle), (matrix.order, matrix.lower_triangle))
        stream = tesk2mp.Random(7)
        stream.take(5)
        self.assertEqual(pickle.loads(pickle.dumps(stream)).take(3), stream.take(3))
        state = tesk2mp.Complex(1, 2).__getstate__()
        for broken in (b"", state[:-1], state + b"\0", b"\x0f" + state[1:]):
            self.assertRaises(ValueError, tesk2mp.Complex.__new__(tesk2mp.Complex).__setstate__, broken)

    def test_objects_without_their_init(self):
        for kind, use in (
            (tesk2mp.Complex, abs),
            (tesk2mp.Complex, lambda empty: tesk2mp.norm([1, empty])),
            (tesk2mp.Random, lambda empty: empty()),
            (tesk2mp.SparseMatrix, lambda empty: empty.order),
            (tesk2mp.SparseMatrix, lambda empty: tesk2mp.solve_iteratively(empty, [1])),
            (tesk2mp.LU, lambda empty: empty.factors),
            (tesk2mp.Cholesky, lambda empty: empty.solve([1])),
        ):
            with self.assertRaisesRegex(TypeError, "__init__ has not been called"):
                use(kind.__new__(kind))


class Digits(unittest.TestCase):
    def test_formats_of_complex_numbers(self):
        z = Complex("1.23456", "-2")
        for spec, text in ((".2f", "1.23-2.00j"), ("", "1.23456-2j"), ("+.1e", "+1.2e+0-2.0e+0j"), (">14.1f", "      1.2-2.0j"),
                           ("_^12.0f", "____1-2j____"), ("12.1f", "    1.2-2.0j")):
            self.assertEqual(format(z, spec), text)
        for wrong in ("x", "=5", ".2f "):
            with self.assertRaises(tesk2mp.InvalidArgument):
                format(z, wrong)
        self.assertIsInstance(z, numbers.Number)
        self.assertIsInstance(Real(1), numbers.Number)

    def test_wrong_arguments_are_named(self):
        for call, words in (
            (lambda: tesk2mp.sin(), "sin(): missing a required argument: 'x'"),
            (lambda: tesk2mp.sin(1, 2), "sin(): too many positional arguments"),
            (lambda: tesk2mp.solve([[1]], [1], c=2), "solve(): got an unexpected keyword argument 'c'"),
            (lambda: tesk2mp.norm([1], 5), "norm("),
        ):
            with self.assertRaises(tesk2mp.InvalidType) as caught:
                call()
            self.assertIn(words, str(caught.exception))

    def test_blocks_nest_and_come_back(self):
        self.assertEqual(tesk2mp.get_digits(), 20)
        block = tesk2mp.digits(30)
        with block:
            with tesk2mp.digits(7), block:
                self.assertEqual(tesk2mp.get_digits(), 30)
            self.assertEqual(tesk2mp.get_digits(), 30)
            with self.assertRaises(tesk2mp.InvalidArgument):
                with tesk2mp.digits(50):
                    tesk2mp.spectrum([1])
            self.assertEqual(tesk2mp.get_digits(), 30)
            for wrong in (0, -1, 1000001):
                with self.assertRaisesRegex(tesk2mp.InvalidArgument, f"digits are 1 to 1000000, not {wrong}"):
                    with tesk2mp.digits(wrong):
                        self.fail("entered")
            self.assertEqual(tesk2mp.get_digits(), 30)
        self.assertEqual(tesk2mp.get_digits(), 20)


if __name__ == "__main__":
    unittest.main()
