"""cfft: complex sequences and arrays against the definition, in every written form, and pictures."""

import decimal
import itertools
import os
import random
import tempfile
import unittest
import xml.etree.ElementTree
from decimal import Decimal

from console import DATA, decimals, not_emulated, relative_difference, run, run_json, run_well, transform

APERTURE = os.path.join(DATA, "aperture.mtx")

FOUR = """\
# Fourier transform of 4 complex numbers in standard input
# 20 digits, all proven (worked with 25), by QuarnMPX_c06pcf_
# 0 (abs < 1e-24): no more is known of 1 number that prints as 0
# z_k = 1/sqrt(N) sum_j x_j exp(-2 pi i j k/N), N = 4
k                    real              imaginary  magnitude
0   2.0000000000000000000  0.5000000000000000000  2.0615528
1   0.5000000000000000000  0.0000000000000000000  0.5000000
2  -1.0000000000000000000  0.5000000000000000000  1.1180340
3   0.5000000000000000000  1.0000000000000000000  1.1180340
"""
ARRAY = """\
c1,c2
1.75+0.5i,-0.25+1i
-0.25-0.5i,0.75-1i
"""


def complex_transform(z, digits, backward):
    """The definition, of pairs: forward, or the conjugate of the forward transform of the conjugates."""
    with decimal.localcontext() as context:
        context.prec = digits
        sign = -1 if backward else 1
        of_real = transform([x for x, _ in z], digits)
        of_imaginary = transform([sign * y for _, y in z], digits)
        return [(a - d, sign * (b + c)) for a, b, c, d in zip(*of_real, *of_imaginary)]


def array_transform(z, shape, dimensions, digits, backward):
    """The same along some dimensions, from 0, of an array whose first index varies fastest."""
    for dimension in dimensions:
        stride, extent = 1, shape[dimension]
        for each in shape[:dimension]:
            stride *= each
        for start in range(len(z)):
            if start // stride % extent == 0:
                places = range(start, start + stride * extent, stride)
                for place, value in zip(places, complex_transform([z[p] for p in places], digits, backward)):
                    z[place] = value
    return z


def parts(text):
    """"1-2e3i" as a pair."""
    cut = max(i for i, c in enumerate(text[:-1]) if c in "+-" and (i == 0 or text[i - 1] != "e"))
    return Decimal(text[:cut]), Decimal(text[cut:-1])


def flat(pairs):
    return [part for pair in pairs for part in pair]


class Cfft(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def file(self, name):
        return os.path.join(self.folder, name)

    def test_small_results_whole(self):
        self.assertEqual(run_well("cfft", "-", stdin="1+i\n2\n0\n1\n"), FOUR)
        self.assertEqual(run_well("cfft", "-", stdin="real,imaginary,note\n1,1,a\n2,0,b\n0,0,c\n1,0,d\n"), FOUR)
        self.assertEqual(run_well("cfft", "-", "--column", "2", stdin="0,1+i\n7,2\n7,0\n7,1\n"), FOUR)
        self.assertEqual(run_well("cfft", "-", "--format", "csv", stdin="1,0.5\n0.5+1.5i,1.5-0.5i\n"), ARRAY)

    def test_against_the_definition(self):
        seed = random.randrange(2 ** 32)
        chance = random.Random(seed)
        for shape, dimension, backward in itertools.product(([7], [4, 6], [4, 3, 5]), (None, 0, 1, 2), (False, True)):
            if dimension is not None and dimension >= len(shape):
                continue
            with self.subTest(seed=seed, shape=shape, dimension=dimension, backward=backward):
                count = 1
                for extent in shape:
                    count *= extent
                z = [(Decimal(chance.randrange(-10 ** 30, 10 ** 30)) / 10 ** 28, Decimal(chance.randrange(-99, 99)))
                     for _ in range(count)]
                data = "real,imaginary\n" + "".join(f"{x},{y}\n" for x, y in z)
                arguments = ["--shape", "x".join(map(str, shape)), "--digits", "32"]
                arguments += ["--dim", str(dimension + 1)] if dimension is not None else []
                arguments += ["--backward"] if backward else []
                result = run_json("cfft", "-", *arguments, stdin=data)
                if len(shape) == 1:
                    found = list(zip(decimals(result["real"]), decimals(result["imaginary"])))
                else:
                    found = [parts(cell) for j in range(count // shape[0]) for cell in result[f"c{j + 1}"]]
                dimensions = range(len(shape)) if dimension is None else [dimension]
                expected = array_transform(z, shape, dimensions, 40, backward)
                self.assertLess(relative_difference(flat(found), flat(expected)), Decimal("1e-30"))

    def test_there_and_back_in_every_form(self):
        for name in ("z.csv", "z.json", "z.mtx"):
            for data, shape in (("1\n2\n3\n4-i\n5\n6\n", []), ("1,2,3\n4-i,5,6\n", [])):
                run_well("cfft", "-", "--digits", "40", "--output", self.file(name), stdin=data)
                back = run_well("cfft", "--backward", self.file(name), "--digits", "30", "--format", "mtx", *shape)
                numbers = [line.split() for line in back.splitlines() if not line.startswith("%")][1:]
                self.assertEqual(sorted((round(float(x)), round(float(y))) for x, y in numbers),
                                 [(1, 0), (2, 0), (3, 0), (4, -1), (5, 0), (6, 0)])

    def test_the_classic_entries(self):
        for arguments, routine in (([], "c06pcf"), (["--shape", "2x2"], "c06pjf"), (["--dim", "1"], "c06pff")):
            for classic, prefix in (([], "QuarnMPX_"), (["--classic"], "QuarnMP_")):
                result = run_json("cfft", "-", *arguments, *classic, stdin="1\n2\n3\n4\n")
                self.assertEqual(result["routine"], prefix + routine + "_")

    def test_refusals(self):
        for arguments, data, status, words in (
                (["--shape", "2x"], "1\n2\n", 2, "extents such as 4x6x5"),
                (["--shape", "2x-1"], "1\n2\n", 2, "extents such as 4x6x5"),
                (["--shape", "2000000000"], "1\n2\n", 2, "extents such as 4x6x5"),
                (["--shape", "2x2"], "1\n2\n", 1, "N = the product of the ND(I): N = 2 ND(I) = 4."),
                (["--shape", "3"], "1\n2\n", 1, "N = the product of the ND(I): N = 2 ND(I) = 3."),
                (["--shape", "0x2"], "1\n2\n", 1, "ND(I) .lt. 1: ND(I) = 0 I = 1."),
                (["--dim", "3"], "1,2\n3,4\n", 2, "--dim: 3 is not one of 1 to 2"),
                (["--dim", "-1"], "1,2\n3,4\n", 2, "--dim: -1 is not one of 1 to 2"),
                (["--shape", "2x2x2", "--plot", "x.svg"], "1\n" * 8, 2, "more than two dimensions"),
                ([], "1\ntwo\n", 2, "two"),
        ):
            with self.subTest(arguments=arguments):
                done = run("cfft", "-", *arguments, stdin=data, cwd=self.folder)
                self.assertEqual((done.returncode, done.stdout), (status, ""))
                self.assertIn(words, done.stderr)
        self.assertEqual(os.listdir(self.folder), [])

    @not_emulated
    def test_pictures(self):
        for arguments, words in (
                ([APERTURE], ["Spectrum of the array of 96 x 96 complex numbers", "frequency along dimension 1",
                              "frequency along dimension 2", "magnitude"]),
                ([APERTURE, "--dim", "1", "--backward"], ["Backward transform of", "index in dimension 1"]),
                ([APERTURE, "--dim", "2"], ["index in dimension 1", "frequency along dimension 2"]),
                ([APERTURE, "--shape", "9216"], ["9216 complex numbers", "frequency (cycles per sequence)"]),
        ):
            run_well("cfft", *arguments, "--plot", self.file("a.svg"), "--output", self.file("a.txt"))
            root = xml.etree.ElementTree.parse(self.file("a.svg")).getroot()
            shown = " ".join("".join(text.itertext()).strip() for text in root.iter("{http://www.w3.org/2000/svg}text"))
            for each in words:
                self.assertIn(each, shown)


if __name__ == "__main__":
    unittest.main()
