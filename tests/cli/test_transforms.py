"""dct, dst, convolve, and what fft has beside the transform: windows, scales, ranges, any length."""

import os
import random
import tempfile
import unittest
from decimal import Decimal, getcontext, localcontext

from console import SUNSPOTS, decimals, not_emulated, pi, relative_difference, run, run_json, run_well, transform, untrue

SEED = int(os.environ.get("TESK_SEED", random.randrange(10**6)))
print(f"TESK_SEED={SEED}")


def cosine(angle):
    """By its series, at the digits of the context."""
    term, total, k = Decimal(1), Decimal(1), 0
    while abs(term) > Decimal(10) ** -getcontext().prec:
        k += 2
        term *= -angle * angle / (k * (k - 1))
        total += term
    return total


def type_two(x):
    """2 sum x_j cos(pi k (2j+1)/(2n))."""
    n = len(x)
    return [2 * sum(x[j] * cosine(pi() * (k * (2 * j + 1) % (4 * n)) / (2 * n)) for j in range(n)) for k in range(n)]


class Transforms(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def file(self, name, text=None):
        path = os.path.join(self.folder.name, name)
        if text is not None:
            with open(path, "w", encoding="utf-8") as out:
                out.write(text)
        return path

    def test_lengths_with_large_factors(self):
        generator = random.Random(SEED)
        for n in (1, 23, 46, 73):
            texts = [str(generator.randrange(10**9)) for _ in range(n)]
            for digits in (20, 50):
                result = run_json("fft", "-", "--digits", str(digits), stdin="\n".join(texts))
                real, imaginary = transform(decimals(texts), digits + 12)
                error = relative_difference(decimals(result["real"] + result["imaginary"]), real + imaginary)
                self.assertLess(error, Decimal(10) ** (1 - digits))
            spectrum = self.file("s.csv", run_well("fft", "-", "--digits", "40", "--format", "csv", stdin="\n".join(texts)))
            back = run_json("fft", "--inverse", spectrum, "--digits", "30")["value"]
            self.assertLess(relative_difference(decimals(back), decimals(texts)), Decimal("1e-29"))

    def test_every_digit_is_true(self):
        generator = random.Random(SEED)
        for digits in (1, 2, 7, 20):
            n = generator.randint(1, 12)
            texts = [f"{generator.randint(-10**30, 10**30)}e{generator.randint(-50, 5)}" for _ in range(n)]
            real, imaginary = transform(decimals(texts), 150)
            with localcontext() as context:
                context.prec = 150
                cosines = type_two(decimals(texts))
            for arguments, expected in (
                (["fft", "-"], {"real": real, "imaginary": imaginary}),
                (["cfft", "-"], {"real": real, "imaginary": imaginary}),
                (["dct", "-"], {"value": cosines}),
            ):
                shown = run_json(*arguments, "--digits", str(digits), stdin="\n".join(texts))
                for name, values in expected.items():
                    errors = shown.get("error") or [None] * n
                    for text, exact, error in zip(shown[name], values, errors, strict=True):
                        self.assertIsNone(untrue(text, exact, digits, error), arguments)
        # Zeros are exact, frequencies and periods rounded once, and columns speak each for itself.
        zeros = run_json("fft", "-", "--proven", stdin="0\n0\n0\n")
        self.assertEqual((zeros["real"], zeros["error"]), (["0"] * 3, ["0"] * 3))
        self.assertEqual(run_json("fft", "-", "--digits", "2", stdin="\n".join(map(str, range(149))))["frequency"][74], "0.5")
        two = run_well("fft", "-", "--column", "a", "--column", "b", stdin="a,b\n1,0\n2,1e-30\n4,5\n")
        self.assertEqual([two.count(text) for text in ("\n# 20 digits, all proven", "\n# z_k = ", "\n# a: periods", "\n# b: periods")], [1] * 4)
        # Bounds of errors are passed over, and said to be, unless there is nothing else.
        with_errors = "k,value,error\n0,1,9\n1,3,9\n"
        self.assertEqual(run_json("fft", "-", stdin=with_errors)["real"][0], "2.8284271247461900976")
        self.assertIn("of 'value' (column 2 of 3, bounds of errors passed over) in", run_well("fft", "-", stdin=with_errors))
        self.assertIn("of 'error' (column 2 of 2) in", run_well("dct", "-", stdin="k,error\n0,1\n1,3\n"))
        # What the working digits of the data would have lost.
        self.assertEqual(run_json("convolve", self.file("a", "1e30\n1\n-1e30\n"), self.file("b", "1\n1\n1\n"),
                                  "--digits", "2", "--mode", "valid")["value"], ["1"])

    def test_cosines_and_sines(self):
        generator = random.Random(SEED)
        texts = [str(generator.randrange(-999, 999)) for _ in range(9)]
        with localcontext() as context:
            context.prec = 70
            expected = type_two(decimals(texts))
            signed = [value * (-1) ** j for j, value in enumerate(decimals(texts))]
            cosines = run_json("dct", "-", "--digits", "40", stdin="\n".join(texts))["value"]
            sines = run_json("dst", "-", "--digits", "40", stdin="\n".join(texts))["value"]
            self.assertLess(relative_difference(decimals(cosines), expected), Decimal("1e-39"))
            self.assertLess(relative_difference(decimals(sines), type_two(signed)[::-1]), Decimal("1e-39"))
        for command in ("dct", "dst"):
            for kind in "1234":
                for norm in ("backward", "ortho", "forward"):
                    options = ["--type", kind, "--norm", norm]
                    there = run_well(command, "-", *options, "--digits", "40", "--format", "csv", stdin="\n".join(texts))
                    back = run_json(command, "-", *options, "--inverse", "--digits", "30", stdin=there)["value"]
                    self.assertLess(relative_difference(decimals(back), decimals(texts)), Decimal("1e-29"))

    def test_convolutions(self):
        generator = random.Random(SEED)
        a = [generator.randrange(-(10**30), 10**30) for _ in range(70)]
        b = [generator.randrange(-(10**30), 10**30) for _ in range(60)]
        first, second = self.file("a", "\n".join(map(str, a))), self.file("b", "\n".join(map(str, b)))
        full = [sum(a[i] * b[k - i] for i in range(max(0, k - 59), min(k, 69) + 1)) for k in range(129)]
        for mode, part in (("full", full), ("same", full[29:99]), ("valid", full[59:70])):
            result = run_json("convolve", first, second, "--mode", mode, "--digits", "70")
            self.assertEqual([int(value) for value in decimals(result["value"])], part)
            self.assertEqual(result["k"][0], full.index(part[0]))
        correlation = run_json("convolve", first, second, "--correlate", "--digits", "70")
        at = correlation["k"].index(2)
        self.assertEqual(int(Decimal(correlation["value"][at])), sum(a[2 + i] * b[i] for i in range(60)))
        circular = run_json("convolve", second, second, "--mode", "circular", "--correlate", "--digits", "70")["value"]
        self.assertEqual([int(value) for value in decimals(circular)],
                         [sum(b[(k + i) % 60] * b[i] for i in range(60)) for k in range(60)])
        done = run("convolve", first, second, "--mode", "circular")
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn("the lengths differ", done.stderr)

    def test_windows_scales_and_ranges(self):
        whole = run_well("fft", SUNSPOTS, "--digits", "20").split("\n")
        part = run_well("fft", SUNSPOTS, "--digits", "20", "--from", "0.088", "--to", "0.101").split("\n")
        rows = [line.split() for line in part if line and line[0] != "#"][1:]
        self.assertEqual([row[0] for row in rows], ["26", "27", "28", "29"])
        self.assertTrue({tuple(row) for row in rows} <= {tuple(line.split()) for line in whole})
        decibels = run_well("fft", SUNSPOTS, "--scale", "db", "--window", "hann")
        table = [line.split() for line in decibels.split("\n") if line and line[0] != "#"][1:]
        largest = max(Decimal(row[4]) for row in table)
        self.assertEqual((largest, [row[0] for row in table if Decimal(row[4]) == largest]), (0, ["26"]))
        # x - mean = -1, 1, -1, 1 by 0, 1/2, 1, 1/2
        windowed = run_json("fft", "-", "--window", "hann", stdin="1\n3\n1\n3\n")
        self.assertEqual(windowed["real"], ["0", "0.5", "-1", "0.5"])
        # z_0 and z_(N/2) are real, which is no lack of digits.
        thirds = run_well("fft", "-", "--window", "hann", stdin="1\n0\n1e-30\n.7\n")
        self.assertNotIn("no more is known", thirds)

    def test_notes_and_refusals(self):
        self.assertIn("'t' is not evenly spaced", run_well("fft", "-", stdin="t,x\n0,1\n1,2\n3,4\n"))
        self.assertNotIn("evenly", run_well("fft", "-", stdin="t,x\n0,1\n1,2\n2,4\n"))
        for arguments, complaint in ((("--beta", "x"), "'x' is not a number"), (("--to", "-1"), "no frequency"),
                                     (("--axis", "period", "--to", "0.1"), "no period"),
                                     (("--window", "round"), "--window")):
            done = run("fft", SUNSPOTS, *arguments)
            self.assertEqual((done.returncode, done.stdout), (2, ""))
            self.assertIn(complaint, done.stderr)
        done = run("dct", "-", "--type", "1", stdin="1\n")
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertEqual(run_json("fft", "-", "--shape", "2x2", stdin="1\n2\n3\n4\n")["shape"], "2 x 2")
        self.assertEqual(run_well("fft", "-", "--complex", stdin="1+i\n2\n"), run_well("cfft", "-", stdin="1+i\n2\n"))

    @not_emulated
    def test_pictures(self):
        for arguments in (("fft", SUNSPOTS, "--scale", "log"), ("fft", SUNSPOTS, "--scale", "db", "--axis", "period"),
                          ("dct", SUNSPOTS), ("dst", SUNSPOTS, "--type", "4"), ("convolve", SUNSPOTS, SUNSPOTS)):
            picture = self.file("a.svg")
            run_well(*arguments, "--plot", picture, "--output", self.file("a.txt"))
            with open(picture, encoding="utf-8") as drawn:
                self.assertIn("<path", drawn.read())


if __name__ == "__main__":
    unittest.main()
