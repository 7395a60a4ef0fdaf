"""Numbers go in and come out with exactly their digits, whatever they are given as."""

import decimal
import os
import random
import time
import unittest
from decimal import Decimal
from fractions import Fraction

import numpy
import tesk2mp

SEED = int(os.environ.get("TESK_SEED", time.time()))
print(f"TESK_SEED={SEED}")
RANDOM = random.Random(SEED)


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
        ]
        for number, text in rows:
            with self.subTest(repr(number)[:40]):
                self.assertEqual(str(through(number)), str(Decimal(text)))
        self.assertTrue(through("nan").is_nan())
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
            (tesk2mp.Complex(1, 2), TypeError, "not Complex"),
        ]
        for number, kind, words in rows:
            with self.subTest(repr(number)):
                with self.assertRaises(kind) as caught:
                    tesk2mp.transform_real([1, number])
                self.assertIn(words, str(caught.exception))

    def test_what_is_no_sequence(self):
        for call in (
            lambda: tesk2mp.sort("123"),
            lambda: tesk2mp.sort(5),
            lambda: tesk2mp.determinant([1, 2]),
            lambda: tesk2mp.determinant(["12", "34"]),
            lambda: tesk2mp.inverse(tesk2mp.Complex(1)),
        ):
            with self.assertRaisesRegex(TypeError, "a sequence is needed"):
                call()
        with self.assertRaisesRegex(ValueError, "row 1 of the matrix has 1 elements, row 0 has 2"):
            tesk2mp.determinant([[1, 2], [3]])

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
        with self.assertRaises(TypeError):
            z + 0.5
        with self.assertRaises(AttributeError):
            z.real = 1


class Digits(unittest.TestCase):
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
