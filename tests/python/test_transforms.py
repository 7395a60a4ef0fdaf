"""Transforms, convolutions and windows against numpy and SciPy in double precision, and against exact integers."""

import os
import random
import time
import unittest
from decimal import Decimal

import numpy
import scipy.fft
import scipy.signal
import tesk2mp

SEED = int(os.environ.get("TESK_SEED", time.time()))
print(f"TESK_SEED={SEED}")
RANDOM = numpy.random.default_rng(SEED)
NORMS = (None, "backward", "ortho", "forward")


def exact(values):
    """Doubles as what they stand for."""
    if isinstance(values, numpy.ndarray):
        return [exact(each) for each in values]
    if isinstance(values, complex):
        return tesk2mp.Complex(Decimal(values.real), Decimal(values.imag))
    return Decimal(float(values))


def doubles(value):
    if isinstance(value, list):
        return numpy.array([doubles(each) for each in value])
    if isinstance(value, tesk2mp.Complex):
        return complex(value.real, value.imag)
    return float(value)


def reals(*shape):
    return RANDOM.standard_normal(shape)


def complexes(*shape):
    return reals(*shape) + 1j * reals(*shape)


def orthogonal_dst(name, kind, x, axis):
    """SciPy 1.10 scales the first element of types 2 and 3 instead of the last one, which is not orthogonal."""
    n = x.shape[axis]
    matrix = scipy.fft.dst(numpy.eye(n), 2, axis=0) / numpy.sqrt(2 * n)
    matrix[-1] /= numpy.sqrt(2)
    if (name == "dst") != (kind == 2):
        matrix = matrix.T
    return numpy.moveaxis(numpy.tensordot(matrix, x, (1, axis)), 0, axis)


class Transforms(unittest.TestCase):
    def agree(self, ours, theirs):
        ours = doubles(ours)
        self.assertEqual(ours.shape, theirs.shape)
        numpy.testing.assert_allclose(ours, theirs, rtol=1e-12, atol=1e-12)

    def test_one_axis(self):
        for name, make in (("fft", complexes), ("ifft", complexes), ("rfft", reals), ("irfft", complexes)):
            for norm in NORMS:
                for shape, axis in (((12,), -1), ((7,), 0), ((3, 4, 5), 1), ((4, 3), 0), ((2, 6), -1)):
                    for n in (None, 3, 9):
                        x = make(*shape)
                        with self.subTest(name=name, norm=norm, shape=shape, n=n):
                            ours = getattr(tesk2mp, name)(exact(x), n=n, axis=axis, norm=norm)
                            self.agree(ours, getattr(scipy.fft, name)(x, n=n, axis=axis, norm=norm))

    def test_cosines_and_sines(self):
        for name in ("dct", "idct", "dst", "idst"):
            for kind in (1, 2, 3, 4):
                for norm in NORMS:
                    for shape, axis in (((8,), -1), ((9,), 0), ((3, 4), 0), ((2, 5), -1)):
                        x = reals(*shape)
                        with self.subTest(name=name, kind=kind, norm=norm, shape=shape):
                            ours = getattr(tesk2mp, name)(exact(x), kind, axis=axis, norm=norm)
                            if norm == "ortho" and name.endswith("dst") and kind in (2, 3):
                                theirs = orthogonal_dst(name, kind, x, axis)
                            else:
                                theirs = getattr(scipy.fft, name)(x, kind, axis=axis, norm=norm)
                            self.agree(ours, theirs)

    def test_plans(self):
        x = exact(reals(12))
        with tesk2mp.digits(40):
            plans = {
                tesk2mp.SpectrumPlan(12): ("rfft",),
                tesk2mp.CosinePlan(12, type=3): ("dct", "idct"),
                tesk2mp.SinePlan(12): ("dst", "idst"),
            }
            expected = {name: getattr(tesk2mp, name) for names in plans.values() for name in names}
            kinds = {"dct": (3,), "idct": (3,)}
            expected = {name: function(x, *kinds.get(name, ()), norm="ortho") for name, function in expected.items()}
        for plan, names in plans.items():
            self.assertEqual((plan.length, plan.digits), (12, 40))
            for name in names:
                self.assertEqual(getattr(plan, name)(x, norm="ortho"), expected[name])
            with self.assertRaises(tesk2mp.InvalidArgument):
                getattr(plan, names[0])(x[1:])
        self.assertEqual(tesk2mp.SpectrumPlan(5, digits=30).digits, 30)
        for bad in ((0,), (8, 5), (8, 0)):
            with self.assertRaises(tesk2mp.InvalidArgument):
                tesk2mp.CosinePlan(*bad)

    def test_arrays(self):
        for norm in NORMS:
            for axes in (None, [0], [2, 0], [-1, 1]):
                for name, make in (("fftn", complexes), ("ifftn", complexes), ("rfftn", reals)):
                    x = make(3, 4, 5)
                    with self.subTest(name=name, norm=norm, axes=axes):
                        ours = getattr(tesk2mp, name)(exact(x), axes=axes, norm=norm)
                        self.agree(ours, getattr(scipy.fft, name)(x, axes=axes, norm=norm))
                x = reals(3, 4, 5)
                last = x.shape[-1 if axes is None else axes[-1]]
                back = tesk2mp.irfftn(tesk2mp.rfftn(exact(x), axes=axes, norm=norm), last, axes=axes, norm=norm)
                self.agree(back, x)

    def test_convolutions(self):
        for lengths in ((5, 3), (3, 6), (70, 60), (4, 4)):
            for mode in ("full", "same", "valid"):
                for make in (reals, complexes):
                    a, b = make(lengths[0]), make(lengths[1])
                    with self.subTest(lengths=lengths, mode=mode):
                        self.agree(tesk2mp.convolve(exact(a), exact(b), mode), numpy.convolve(a, b, mode))
                        if mode == "full" or (mode == "valid" and lengths[0] >= lengths[1]):
                            self.agree(tesk2mp.correlate(exact(a), exact(b), mode), numpy.correlate(a, b, mode))
        whole = random.Random(SEED)
        a = [whole.randrange(-(10**30), 10**30) for _ in range(200)]
        b = [whole.randrange(-(10**30), 10**30) for _ in range(300)]
        with tesk2mp.digits(70):
            ours = tesk2mp.convolve(a, b)
        theirs = [sum(a[i] * b[k - i] for i in range(max(0, k - 299), min(k, 199) + 1)) for k in range(499)]
        self.assertEqual([int(value) for value in ours], theirs)
        x, y = reals(6), reals(6)
        self.agree(tesk2mp.circular_convolve(exact(x), exact(y)), numpy.fft.irfft(numpy.fft.rfft(x) * numpy.fft.rfft(y)))

    def test_axes_and_windows(self):
        for n in (1, 2, 7, 8):
            self.agree(tesk2mp.fftfreq(n, "0.25"), numpy.fft.fftfreq(n, 0.25))
            self.agree(tesk2mp.rfftfreq(n), numpy.fft.rfftfreq(n))
            for periodic in (False, True):
                for name, theirs in (("hann",) * 2, ("hamming",) * 2, ("blackman",) * 2, ("boxcar",) * 2,
                                     ("kaiser", ("kaiser", 8.5))):
                    ours = tesk2mp.window(name, n, periodic, Decimal("8.5"))
                    self.agree(ours, scipy.signal.get_window(theirs, n, fftbins=periodic))
            x = reals(n)
            self.agree(tesk2mp.power_spectrum(exact(x)),
                       scipy.signal.periodogram(x, fs=1, detrend=False, scaling="spectrum")[1])
        for shape in ((5,), (4,), (3, 4)):
            x = reals(*shape)
            self.agree(tesk2mp.fftshift(exact(x)), numpy.fft.fftshift(x))
            self.agree(tesk2mp.ifftshift(exact(x)), numpy.fft.ifftshift(x))
            self.agree(tesk2mp.fftshift(exact(x), axes=[0]), numpy.fft.fftshift(x, axes=[0]))
        for n in (1, 7, 1025, 99991):
            self.assertEqual(tesk2mp.next_fast_len(n), scipy.fft.next_fast_len(n, real=True))

    def test_refusals(self):
        for call in (
            lambda: tesk2mp.fft([]),
            lambda: tesk2mp.fft([1], n=0),
            lambda: tesk2mp.fft([1], axis=1),
            lambda: tesk2mp.irfft([1]),
            lambda: tesk2mp.dct([1], 1),
            lambda: tesk2mp.dct([1, 2], 5),
            lambda: tesk2mp.fftn([[1]], axes=[0, 0]),
            lambda: tesk2mp.convolve([], [1]),
            lambda: tesk2mp.window("kaiser", 3, beta=10**7),
        ):
            self.assertRaises(tesk2mp.InvalidArgument, call)
        self.assertRaises(ValueError, lambda: tesk2mp.fft([1], norm="none"))
        self.assertRaises(ValueError, lambda: tesk2mp.convolve([1], [1], "some"))
        self.assertRaises(ValueError, lambda: tesk2mp.circular_convolve([1], [1, 2]))
        self.assertRaises(TypeError, lambda: tesk2mp.rfft([tesk2mp.Complex(1, 1)]))

    def test_arrays_of_numpy(self):
        x = numpy.array([[Decimal(1), Decimal(2)], [Decimal(3), Decimal(4)]], dtype=object)
        z = tesk2mp.fftn(x)
        self.assertEqual(z.shape, (2, 2))
        self.assertEqual(z[0, 0], tesk2mp.Complex(10, 0))


if __name__ == "__main__":
    unittest.main()
