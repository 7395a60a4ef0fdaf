"""What successful runs print: values against an independent transform, the three formats, pictures."""

import csv
import io
import json
import os
import random
import tempfile
import unittest
import xml.etree.ElementTree
from decimal import Decimal, localcontext

from console import SUNSPOTS, decimals, not_emulated, pi, relative_difference, run_json, run_well, transform

FOUR = "1\n2\n3\n5\n"

FOUR_AS_TEXT = """\
# Fourier transform of 4 values in standard input
# 6 digits, all proven (worked with 11), by QuarnMPX_rfft_
# periods in units of sample; highest peaks at 4 (k = 1)
# z_k = 1/sqrt(N) sum_j x_j exp(-2 pi i j k/N), N = 4; z_(N-k) is the conjugate of z_k
k  period      real  imaginary  magnitude
0       -   5.50000    0.00000    5.50000
1   4.000  -1.00000    1.50000    1.80278
2   2.000  -1.50000    0.00000    1.50000
"""

FOUR_AS_CSV = """\
k,frequency,real,imaginary,magnitude,error
0,0,5.5,0,5.5,6.3737744e-11
1,0.25,-1,1.5,1.80278,8.83883477e-11
2,0.5,-1.5,0,1.5,6.3737744e-11
3,-0.25,-1,-1.5,1.80278,8.83883477e-11
"""

FOUR_AS_JSON = {
    "input": "-", "routine": "QuarnMPX_rfft_", "digits": 6, "n": 4, "unit": "sample", "proven": True,
    "working_digits": 11, "k": [0, 1, 2, 3],
    "frequency": ["0", "0.25", "0.5", "-0.25"], "real": ["5.5", "-1", "-1.5", "-1"],
    "imaginary": ["0", "1.5", "0", "-1.5"], "magnitude": ["5.5", "1.80278", "1.5", "1.80278"],
    "error": ["6.3737744e-11", "8.83883477e-11", "6.3737744e-11", "8.83883477e-11"],
}

FOUR_BACK = """\
# Real sequence of 4 values from the spectrum in standard input
# 6 digits, all proven (worked with 11), by QuarnMPX_irfft_
# x_j = 1/sqrt(N) sum_k z_k exp(+2 pi i j k/N), N = 4
sample    value
     0  1.00000
     1  2.00000
     2  3.00000
     3  5.00000
"""

BANNER = """\
 *** Start of Tesk Library implementation details ***

 Implementation title: Generalised Base Version
            Precision: FORTRAN double precision
         Product code: Tesk MP, dynamic library tesk2mp
                 Mark: 20A

 *** End of Tesk Library implementation details ***
"""


def csv_columns(text):
    rows = list(csv.DictReader(io.StringIO(text)))
    return {name: [row[name] for row in rows] for name in rows[0]}


def sunspots():
    with open(SUNSPOTS, encoding="utf-8") as file:
        return [line.split(",")[1].strip() for line in file if line[0].isdigit()]


def random_texts(generator, count, digits):
    return [f"{generator.choice('-+')}{generator.randrange(10 ** digits)}e{generator.randint(-digits, 3 - digits)}"
            for _ in range(count)]


class Formats(unittest.TestCase):
    def test_small_results_whole(self):
        self.assertEqual(run_well("fft", "-", "--digits", "6", stdin=FOUR), FOUR_AS_TEXT)
        self.assertEqual(run_well("fft", "-", "--digits", "6", "--format", "csv", stdin=FOUR), FOUR_AS_CSV)
        self.assertEqual(run_json("fft", "-", "--digits", "6", stdin=FOUR), FOUR_AS_JSON)
        for spectrum in (FOUR_AS_CSV, json.dumps(FOUR_AS_JSON), "5.5\n-1\n-1.5\n1.5\n"):
            self.assertEqual(run_well("fft", "-", "--inverse", "--digits", "6", stdin=spectrum), FOUR_BACK)

    def test_output_file_holds_what_standard_output_would(self):
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "spectrum")
            for form in ("text", "csv", "json"):
                self.assertEqual(run_well("fft", "-", "--format", form, "--output", file, stdin=FOUR), "")
                with open(file, encoding="utf-8") as written:
                    self.assertEqual(written.read(), run_well("fft", "-", "--format", form, stdin=FOUR))

    def test_text_tables_choose_their_notation_by_size(self):
        small = run_well("fft", "-", "--digits", "5", stdin="1e-9\n3e-9\n0\n0\n")
        self.assertIn(" 2.0000e-09 ", small)
        large = run_well("fft", "-", "--digits", "5", stdin="1e6\n3e6\n0\n0\n")
        self.assertIn(" 2.0000e+06 ", large)
        self.assertIn("  4000000000.5000  ", run_well("fft", "-", "--digits", "14", stdin="8000000000\n1\n0\n0\n"))
        self.assertIn(" 2000.00 ", run_well("fft", "-", "--digits", "6", stdin="1e3\n3e3\n0\n0\n"))

    def test_no_number_but_zero_is_shown_as_zero(self):
        text = run_well("eig", "-", stdin="1e-25 0\n0 3\n")
        self.assertIn("\n2  1.0000000000000000000e-25  0.0000000000000000000\n", text)
        text = run_well("cfft", "-", "--digits", "6", stdin="1e-9\n1e-9\n12\n1/7\n".replace("1/7", "1.23457e-7"))
        self.assertIn("\n1  -6.00000   6.12285e-08", text)

    def test_digits_may_stand_before_or_after_the_sub_command(self):
        texts = {run_well(*order, stdin=FOUR) for order in (("--digits", "33", "fft", "-"), ("fft", "-", "--digits", "33"),
                                                            ("fft", "--digits=33", "-"))}
        self.assertEqual(len(texts), 1)
        self.assertIn("# 33 digits", texts.pop())

    def test_a_flat_sequence_has_no_peaks(self):
        self.assertIn("# periods in units of sample\n", run_well("fft", "-", stdin="0.7\n" * 15))


class Values(unittest.TestCase):
    LENGTHS = (2, 3, 4, 5, 7, 8, 11, 12, 19, 30, 49, 64, 90, 120)

    def test_against_the_definition(self):
        generator = random.Random(20240)
        for digits in (20, 50, 100):
            for n in self.LENGTHS:
                with self.subTest(digits=digits, n=n):
                    texts = random_texts(generator, n, digits)
                    result = run_json("fft", "-", "--digits", str(digits), stdin="\n".join(texts))
                    real, imaginary = transform(decimals(texts), digits + 12)
                    error = relative_difference(decimals(result["real"] + result["imaginary"]), real + imaginary)
                    self.assertLess(error, Decimal(10) ** (1 - digits))

    def test_the_classic_entry_has_some_sixteen_digits(self):
        companion = run_json("fft", SUNSPOTS, "--digits", "40")
        classic = run_json("fft", SUNSPOTS, "--digits", "40", "--classic")
        self.assertEqual((companion["routine"], classic["routine"]), ("QuarnMPX_rfft_", "QuarnMP_c06faf_"))
        parts = [decimals(each["real"] + each["imaginary"]) for each in (classic, companion)]
        difference = relative_difference(*parts)
        self.assertTrue(Decimal("1e-18") < difference < Decimal("1e-14"), difference)

    def test_exact_where_the_transform_is_exact(self):
        # N = 4 needs no rounding but that of the division by 2: no digit may pass through a double.
        digits = 60
        texts = [text + "2" for text in ("1." + "123456789" * 6, "-3." + "987654321" * 6, "0." + "555544443" * 6, "7." + "0" * 53)]
        a, b, c, d = decimals(texts)
        result = run_json("fft", "-", "--digits", str(digits), stdin="\n".join(texts))
        with localcontext() as context:
            context.prec = digits
            expected = [(a + b + c + d) / 2, (a - c) / 2, (a - b + c - d) / 2, (a - c) / 2]
            self.assertEqual(decimals(result["real"]), expected)
            self.assertEqual(decimals(result["imaginary"]), [0, (d - b) / 2, 0, (b - d) / 2])

    def test_round_trip_gives_the_data_back(self):
        values = decimals(sunspots())
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "spectrum")
            for form, classic in (("csv", []), ("json", []), ("csv", ["--classic"])):
                run_well("fft", SUNSPOTS, "--digits", "60", "--format", form, "--output", file, *classic)
                back = decimals(run_json("fft", "--inverse", file, "--digits", "60", *classic)["value"])
                worst = max(abs(a - b) for a, b in zip(back, values, strict=True))
                self.assertLess(worst, Decimal("1e-12") if classic else Decimal("1e-56"))
                if not classic:
                    with localcontext() as context:
                        context.prec = 50
                        self.assertEqual([value.quantize(Decimal("1e-40")) for value in back], values)

    def test_frequencies_and_periods_follow_the_positions(self):
        result = run_json("fft", "-", "--digits", "12", stdin="day,v\n0,1\n0.5,2\n1,4\n1.5,0\n2,1\n")
        self.assertEqual(decimals(result["frequency"]), decimals(["0", "0.4", "0.8", "-0.8", "-0.4"]))
        text = run_well("fft", SUNSPOTS)
        self.assertIn("# periods in units of year; highest peaks at 11.12 (k = 26), 9.966 (k = 29), 96.33 (k = 3)\n", text)
        self.assertIn("\n 26   11.115 ", text)

    def test_constants(self):
        digits = 77
        result = run_json("constants", "--digits", str(digits))
        values = dict(zip(result["routine"], result["value"], strict=True))
        with localcontext() as context:
            context.prec = digits + 9
            true_pi = pi()
            context.prec = digits
            self.assertEqual(Decimal(values["QuarnMPX_x01aaf_"]), +true_pi)
        self.assertEqual(Decimal(values["QuarnMP_x01aaf_"]), Decimal(3.141592653589793))
        self.assertEqual(values["QuarnMP_x02ajf_"], "1e-77")
        self.assertEqual([values[name] for name in ("QuarnMP_x02akf_", "QuarnMP_x02alf_", "QuarnMP_x02amf_")],
                         ["1e-134217726", "1e+134217726", "1e-134217726"])
        self.assertEqual(values["QuarnMP_x02bhf_"], "10")

    def test_details(self):
        self.assertEqual("\n".join(line.rstrip() for line in run_well("details").split("\n")), BANNER)


@not_emulated
class Pictures(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def file(self, name):
        return os.path.join(self.folder.name, name)

    def words(self, name):
        root = xml.etree.ElementTree.parse(self.file(name)).getroot()
        return " ".join("".join(text.itertext()).strip() for text in root.iter("{http://www.w3.org/2000/svg}text"))

    def test_the_spectrum_is_drawn_beside_the_usual_result(self):
        text = run_well("fft", SUNSPOTS, "--plot", self.file("s.svg"))
        self.assertEqual(text, run_well("fft", SUNSPOTS))
        words = self.words("s.svg")
        for expected in ("The 289 values of 'sunspots'", "year", "frequency (cycles per year)", "magnitude |z_k|", "11.12 year"):
            self.assertIn(expected, words)

    def test_png(self):
        run_well("fft", SUNSPOTS, "--plot", self.file("s.png"))
        with open(self.file("s.png"), "rb") as file:
            self.assertEqual(file.read(8), b"\x89PNG\r\n\x1a\n")

    def test_the_inverse_draws_the_sequence(self):
        run_well("fft", "-", "--inverse", "--plot", self.file("b.svg"), stdin=FOUR_AS_CSV)
        self.assertIn("The 4 values", self.words("b.svg"))

    def test_every_kind_of_result_has_its_picture(self):
        matrix = "%%MatrixMarket matrix array complex general\n2 2\n2 0\n0 1\n0 -1\n2 0\n"
        with open(self.file("a+1.mtx"), "w", encoding="utf-8") as file:
            file.write(matrix)
        a = self.file("a+1.mtx")
        for arguments, stdin, expected in (
            (["sort", "-", "--descending"], "size\n3\n1\n2\n", ["Order of 3 values", "descending", "rank", "size"]),
            (["rank", "-"], "size\n3\n1\n2\n", ["Ranks of 3 values", "rank", "size"]),
            (["random", "--count", "500"], "", ["500 random numbers, generator 0", "numbers in 1/22", "499 pairs", "x_(k+1)"]),
            (["random"], "", ["1 random number"]),
            (["spmv", a, "-"], "1\ni\n", ["a+1.mtx", "real part", "imaginary part", "index"]),
            (["lu", a], "", ["L and U of the 2 by 2 matrix", "row", "column", "magnitude", "1e0"]),
            (["lu", a, "--part", "p"], "", ["Row order of the 2 by 2 matrix", "row of L U", "row of A"]),
            (["chol", a, "--upper"], "", ["U of A = U^H U", "magnitude"]),
            (["lu", "-"], "0 0\n0 0\n", ["L and U"]),
            (["null", "-"], "1 0\n0 1\n", ["Null space of the 2 by 2 matrix", "no elements"]),
            (["pinv", "-"], "3\n4\n", ["Pseudo-inverse", "magnitude", "1e-1"]),
            (["svd", "-"], "1 0\n0 1e-7\n", ["Singular values", "1e-6"]),
            (["fft", "-", "--scale", "log"], "5\n", ["The 1 value", "magnitude |z_k|"]),
            (["fft", "-", "--scale", "log"], "1e400\n3e400\n1e400\n", ["value / 1e400", "1e400", "2e400"]),
            (["fft", "-"], "1e-400\n3e-400\n2e-400\n", ["value / 1e-400", "magnitude |z_k| / 1e-400"]),
            (["zeros", "1", "-6e400", "11e800", "-6e1200"], "", ["real part / 1e400", "imaginary part / 1e400"]),
        ):
            with self.subTest(arguments=arguments, stdin=stdin):
                run_well(*arguments, "--plot", self.file("p+1.svg"), stdin=stdin)
                for words in expected:
                    self.assertIn(words, self.words("p+1.svg"))
                os.remove(self.file("p+1.svg"))
        lines = 'plot(1:3, [1 4 9], "r.svg"); plot([1i 2], "s.svg"); plot([1 2; 3 4], "t.svg")'
        run_well("repl", "--eval", lines, cwd=self.folder.name)
        self.assertIn("x", self.words("r.svg"))
        self.assertIn("imaginary part", self.words("s.svg"))
        self.assertIn("2 by 2", self.words("t.svg"))

    def test_large_pictures_are_small(self):
        for command in ("fft", "sort", "rank"):
            run_well(command, "-", "--output", self.file("r.txt"), "--plot", self.file("l.svg"),
                     stdin="".join(f"{k * k % 977}\n" for k in range(30000)))
            self.assertLess(os.path.getsize(self.file("l.svg")), 800_000)

    def test_titles_have_no_folders(self):
        text = run_well("sort", SUNSPOTS, "--output", self.file("r.txt"), "--plot", "-")
        self.assertIn("in sunspots.csv, ascending", text)
        with open(self.file("r.txt"), encoding="utf-8") as file:
            self.assertIn(SUNSPOTS, file.read())

    def test_pdf(self):
        run_well("fft", SUNSPOTS, "--plot", self.file("s.pdf"))
        with open(self.file("s.pdf"), "rb") as file:
            self.assertEqual(file.read(5), b"%PDF-")

    def test_plots_of_characters(self):
        shown = run_well("fft", SUNSPOTS, "--plot", "-", env={**os.environ, "LC_ALL": "C"})
        for words in ("The 289 values of 'sunspots'", "year", "1988", "11.12 year at", "*"):
            self.assertIn(words, shown)
        self.assertTrue(shown.isascii())
        self.assertLess(shown.index("magnitude\n"), shown.index("The 289 values"))
        run_well("fft", "-", "--output", self.file("r.csv"), "--plot", "-", stdin=FOUR)
        dots = run_well("sparse", "-", "--plot", "-", stdin="1 0\n0 1\n", env={**os.environ, "LC_ALL": "C.UTF-8"})
        self.assertIn("\u2588", dots)
        # Bars side by side, one scale for both axes of the plane, and powers of ten with their first digits.
        plain = {**os.environ, "LC_ALL": "C"}
        bars = run_well("random", "--count", "8", "--output", self.file("r.csv"), "--plot", "-", env=plain)
        self.assertRegex(bars, r"\n +0 \+(\*{5,7} +){3,}")
        plane = run_well("zeros", "1", "0", "-4", "--output", self.file("r.csv"), "--plot", "-", env=plain)
        self.assertRegex(plane, r"(?s)\n +2 \+\n.*\n +0 \+\*.*\*\n.*\n +-2 \+\n")
        self.assertIn("2.5e-2 to 1e2\n", run_well("inv", "-", "--output", self.file("r.csv"), "--plot", "-", env=plain,
                                                  stdin="40 0\n0 0.01\n"))

    def test_names_are_never_commands(self):
        name = "'`touch hit`' $(touch hit) @hit \\"
        text = f'"{name}"\n' + FOUR
        run_well("fft", "-", "--plot", "|touch hit.svg", stdin=text, cwd=self.folder.name)
        self.assertEqual(os.listdir(self.folder.name), ["|touch hit.svg"])
        self.assertIn("4 values of '" + name + "'", self.words("|touch hit.svg"))


if __name__ == "__main__":
    unittest.main()
