"""lu, chol, norm, eig and zeros against exact fractions, and what they refuse."""

import os
import random
import re
import tempfile
import unittest
from decimal import Decimal, localcontext
from fractions import Fraction

from console import DATA, not_emulated, run, run_json, run_well

WEST = os.path.join(DATA, "west0067.mtx")
DIGITS = 30


def text_of(rows):
    return "".join(" ".join(map(str, row)) + "\n" for row in rows)


def numbers(result):
    """The rows of a result's columns c1, c2, ..., or of its only column."""
    columns = [result["value"]] if "value" in result else [cells for name, cells in result.items() if re.fullmatch(r"c\d+", name)]
    return [[Fraction(cell) for cell in row] for row in zip(*columns, strict=True)]


def product(a, b):
    return [[sum(x * y for x, y in zip(row, column, strict=True)) for column in zip(*b, strict=True)] for row in a]


def determinant(rows):
    a, value = [[Fraction(x) for x in row] for row in rows], Fraction(1)
    for k in range(len(a)):
        pivot = next((i for i in range(k, len(a)) if a[i][k]), None)
        if pivot is None:
            return Fraction(0)
        if pivot != k:
            a[k], a[pivot], value = a[pivot], a[k], -value
        value *= a[k][k]
        for i in range(k + 1, len(a)):
            factor = a[i][k] / a[k][k]
            a[i] = [x - factor * y for x, y in zip(a[i], a[k], strict=True)]
    return value


def complex_of(cell):
    """'1.5-2i' as a pair of decimals."""
    split = max(i for i, c in enumerate(cell) if c in "+-" and i > 0 and cell[i - 1] != "e")
    return Decimal(cell[:split]), Decimal(cell[split:-1])


class Dense(unittest.TestCase):
    def setUp(self):
        self.seed = random.randrange(2 ** 32)
        self.chance = random.Random(self.seed)

    def matrix(self, rows, columns):
        return [[self.chance.choice((-1, 1)) * self.chance.randint(1, 99) for _ in range(columns)] for _ in range(rows)]

    def close(self, got, expected, digits=DIGITS - 3):
        scale = max(abs(x) for row in expected for x in row)
        for row, other in zip(got, expected, strict=True):
            for x, y in zip(row, other, strict=True):
                self.assertLessEqual(abs(x - y), scale * Fraction(1, 10 ** digits), self.seed)

    def run_on(self, command, rows, *options):
        return run_json(command, "-", "--digits", str(DIGITS), *options, stdin=text_of(rows))

    def test_selftest(self):
        result = run_json("selftest", "dgeqrf", "zgetrf", "dexpm", "--digits", "40", "--size", "6")
        self.assertEqual(sorted(result["routine"]), ["dexpm", "dgeqrf", "zgetrf"])
        for ratio, verdict in zip(result["ratio"], result["verdict"], strict=True):
            self.assertEqual(verdict, "good")
            self.assertLess(Decimal(ratio), 30)
        for arguments in (["nothing"], ["dgeqrf", "--digits", "5"], ["--size", "0"]):
            self.assertNotEqual(run("selftest", *arguments).returncode, 0, arguments)

    def test_gallery(self):
        result = run_json("gallery", "hilbert", "4", "--digits", "50")
        for i, row in enumerate(numbers(result)):
            for j, cell in enumerate(row):
                self.assertLessEqual(abs(cell - Fraction(1, i + j + 1)), Fraction(1, 10 ** 50))
        names = run_json("gallery")["name"]
        self.assertEqual(names, sorted(names))
        self.assertIn("kahan", names)
        one, two, other = (run_json("gallery", "random_normal", "3", "--seed", *seed.split())
                           for seed in ("1 2 3 4", "1 2 3 4", "1 2 3 5"))
        self.assertEqual(numbers(one), numbers(two))
        self.assertNotEqual(numbers(one), numbers(other))
        for arguments in (["nothing", "3"], ["hilbert"], ["hilbert", "x"], ["hilbert", "3", "1"], ["companion", "1", "0", "1"],
                          ["kahan", "2", "x"], ["godunov", "3"], ["hilbert", "0"], ["list", "--format", "mtx"]):
            outcome = run("gallery", *arguments)
            self.assertNotEqual(outcome.returncode, 0, arguments)

    def test_lu_of_any_shape(self):
        for shape in ((1, 1), (5, 5), (7, 4), (3, 6)):
            for weighted in ([], ["--weighted"]):
                a = self.matrix(*shape)
                with self.subTest(seed=self.seed, a=a, weighted=weighted):
                    lower, upper = (numbers(self.run_on("lu", a, "--part", part, *weighted)) for part in "lu")
                    order = self.run_on("lu", a, "--part", "p", *weighted)["p"]
                    self.close(product(lower, upper), [a[row - 1] for row in order])
                    whole = self.run_on("lu", a, *weighted)
                    for i, row in enumerate(numbers(whole)):
                        for j, x in enumerate(row):
                            self.assertEqual(x, lower[i][j] if i > j else upper[i][j])
                    if shape[0] == shape[1]:
                        exact = determinant(a)
                        self.assertLessEqual(abs(Fraction(whole["determinant"]) - exact), abs(exact) * Fraction(1, 10 ** 25))

    def test_digits_are_true_of_what_is_nearly_singular(self):
        nearly = "1 1\n1." + "0" * 9000 + "1 1\n"
        self.assertIn("not proven: 0 of 20 digits", run("norm", "-", "--condition", stdin=nearly).stdout)
        for arguments in (["inv", "-"], ["pinv", "-", "--proof-time", "0"]):
            self.assertIn("not proven: 0 of 20 digits", run(*arguments, stdin=nearly).stderr)
        # Below the range of numbers there is no proof, and a 0 is not known to be one.
        far = run_well("inv", "-", "--digits", "4", stdin="5e999999999 0\n0 1\n")
        self.assertIn("\n# not proven to be 0: 3 numbers that print as 0\n", far)
        self.assertNotIn("not proven", run_well("inv", "-", "--digits", "4", stdin="5 0\n0 1\n"))
        # The rank is proven, and the digits of the numbers say how many it takes.
        said = run_json("pinv", "-", "--proven", stdin=nearly)
        self.assertEqual((said["c1"], said["c2"], said["rank"]), (["-1e+9001", "1e+9001"], ["1e+9001", "-1e+9001"], 2))
        n, scale = 10, 232792560  # a multiple of 1 ... 19
        hilbert = [[scale // (i + j + 1) for j in range(n)] for i in range(n)]
        unit = [[scale * (i == j) for j in range(n)] for i in range(n)]
        inverse = [[round(scale * x) for x in row] for row in numbers(run_json("pinv", "-", stdin=text_of(hilbert)))]
        self.assertEqual(product(hilbert, inverse), unit)
        with tempfile.NamedTemporaryFile("w", suffix=".txt") as file:
            file.write(text_of([[scale]] * n))
            file.flush()
            x = numbers(run_json("lstsq", "-", "--rhs", file.name, stdin=text_of(hilbert)))
        self.assertEqual(product(hilbert, x), [[scale]] * n)
        exact = determinant(hilbert)
        for command in ("lu", "chol"):
            found = Fraction(run_json(command, "-", stdin=text_of(hilbert))["determinant"])
            self.assertLessEqual(abs(found - exact), exact * Fraction(1, 10 ** 19), command)
        # One computation with 8 digits says that it knows next to nothing; a matrix on the edge is not decided by it.
        once = run_json("lu", "-", "--working-digits", "8", stdin=text_of(hilbert))
        self.assertLess(once["true_digits_estimated"], 3)
        # What few working digits make of the numbers counts as an error too; a rank that is not settled says so.
        edge = "1.000001 1\n1 1\n"
        for command in ("lu", "pinv"):
            self.assertLess(run_json(command, "-", "--working-digits", "5", stdin=edge)["true_digits_estimated"], 5, command)
        self.assertEqual(run_json("null", "-", "--tolerance", "0", "--working-digits", "20", stdin="3 1\n9 3\n")
                         ["true_digits_estimated"], 0)
        self.assertEqual(run_json("lu", "-", stdin="1." + "0" * 39 + "1 1\n1 1\n")["determinant"], "1e-40")
        self.assertEqual(run("lstsq", "-", "--rhs", os.devnull, "--tolerance", "0.1", "--proven", stdin=edge).returncode, 2)
        # The order of the minor is proven: that of order 2 is positive by its last digit.
        late = "3 1 0\n1 0." + "3" * 39 + "4 0\n0 0 -1\n"
        for digits in ("10", "20", "30"):
            self.assertIn("leading minor of order 3", run("chol", "-", "--digits", digits, stdin=late).stderr)
        # More digits do not help where the rank is lower, and none are tried.
        singular = run_json("lu", "-", "--digits", "300", stdin=text_of([[1, 2, 4], [2, 5, 7], [3, 7, 11]]))
        self.assertEqual((singular["determinant"], singular["working_digits"]), ("0", 305))
        indefinite = [row[:] for row in hilbert]
        indefinite[n - 1][n - 1] -= 1
        self.assertIn("leading minor of order 10 is not positive", run("chol", "-", stdin=text_of(indefinite)).stderr)

    def test_a_rank_that_is_not_proven_is_a_condition(self):
        far = "1e999999999 1\n1 1e-999999999\n"
        for command in ("null", "pinv"):
            self.assertEqual(run_well(command, "-", stdin=far).splitlines()[1:4],
                             ["# 20 digits, by QuarnMPX_dgelsy_ (worked with 25); rank 1 by the tolerance 2e-19",
                              "# if the rank is right, about 20 digits are true (estimate by a second computation with 41)",
                              "# not proven: the rank would take too long"])
        self.assertRegex(run_well("pinv", "-", "--working-digits", "20", stdin="1 2\n3 6\n"),
                         r"; rank 1 by the tolerance 2e-19\n# if the rank is right, about 1\d digits")
        self.assertEqual(run_well("null", "-", "--format", "csv", stdin="1 2\n3 4\n"), "\n")
        scaled = run_json("null", "-", "--tolerance", "1e-10", "--digits", "8", stdin="1e-600000030 1e-600000000\n2e-600000030 1e-600000000\n")
        self.assertEqual([scaled["value"][0].lstrip("-"), scaled["value"][1].lstrip("-")], ["1", "1.5e-30"])
        # A rank that is asked for is right.
        self.assertIn("\n# about 20 digits", run_well("pinv", "-", "--tolerance", "1e-5", stdin="1 2\n3 6\n"))
        # What is not known is no 0, and zeros are eigenvalues.
        large = "1e999999999 0\n0 1\n"
        self.assertRegex(run_well("eig", "-", "--count", "2", stdin=large), r"\n1 +\? +0\.0+\n2 +\? +0\.0+\n$")
        self.assertRegex(run_well("svd", "-", "--count", "2", stdin=large), r"\n1 +\?\n2 +\?\n$")
        self.assertEqual(run_json("eig", "-", "--count", "2", stdin=large)["real"], ["nan", "nan"])
        zeros = run_json("eig", "-", "--count", "2", "--near", "0", stdin="0 0 0\n0 0 0\n0 0 0\n")
        self.assertEqual((zeros["real"], zeros["error"]), (["0", "0"], ["0", "0"]))
        # Rows and columns of zeros are exact.
        self.assertNotIn("abs <", run_well("pinv", "-", "--proven", stdin="0.1 0 0.2\n0.3 0 0.6\n0 0 0\n"))

    def test_complex_lu(self):
        self.assertIn("determinant -10-7i", run_well("lu", "-", stdin="1+2i 3\n4i 5i\n"))

    def test_factors_are_proven(self):
        matrix = "4 1 0\n1 3 1\n0 1 2\n"
        for command in ("lu", "chol"):
            said = run_well(command, "-", "--proven", "--error", "--digits", "30", stdin=matrix)
            self.assertRegex(said, r"# 30 digits, all proven \(worked with \d+\), by proven factors\n")
            self.assertRegex(said, r"determinant 18\b")
            self.assertRegex(said, r"exact value of an element at most: \d")
        self.assertIn("row interchanges: 3", run_well("lu", "-", stdin="0 1 0 0\n0 0 1 0\n0 0 0 2\n3 0 0 0\n"))
        # Without a proof: pivots relative to the rows, and rounding errors as pivots.
        self.assertNotIn("all proven", run_well("lu", "-", "--weighted", stdin=matrix))
        self.assertIn("not proven: the rank is less than the number of pivots", run_well("lu", "-", stdin="1 2\n3 6\n1 1\n".replace("1 1", "7 14")))
        self.assertEqual(run("lu", "-", "--weighted", "--proven", stdin=matrix).returncode, 2)

    def test_cholesky(self):
        b = self.matrix(6, 6)
        a = product(b, [list(row) for row in zip(*b, strict=True)])
        for i in range(6):
            a[i][i] += 1
        lower = numbers(self.run_on("chol", a))
        upper = numbers(self.run_on("chol", a, "--upper"))
        self.close(product(lower, [list(row) for row in zip(*lower, strict=True)]), a)
        self.close(upper, [list(row) for row in zip(*lower, strict=True)])

    def test_any_shape_and_rank(self):
        transposed = lambda rows: [list(row) for row in zip(*rows, strict=True)]
        for m, n, rank in ((5, 3, 3), (3, 5, 3), (5, 4, 2), (4, 4, 3)):
            a = product(self.matrix(m, rank), self.matrix(rank, n))
            b = self.matrix(m, 1)
            with self.subTest(seed=self.seed, a=a, b=b), tempfile.NamedTemporaryFile("w", suffix=".txt") as file:
                file.write(text_of(b))
                file.flush()
                solution = self.run_on("lstsq", a, "--rhs", file.name)
                x = numbers(solution)
                self.assertEqual(solution["rank"], rank)
                said = run_well("lstsq", "-", "--rhs", file.name, stdin=text_of(a))
                self.assertIn(f"; rank {rank}, proven\n", said)
                for command in ("pinv", "null"):
                    self.assertIn(f"; rank {rank}, proven\n", run_well(command, "-", "--proven", stdin=text_of(a)))
                said = run_well("pinv", "-", "--tolerance", "1e-12", stdin=text_of(a))
                self.assertIn(f"; rank {rank} by the tolerance 1e-12\n", said)
                self.assertIn("# not proven: --tolerance decides about the rank\n", said)
                residual = [[p[0] - q[0]] for p, q in zip(product(a, x), b, strict=True)]
                size = max(abs(entry) for row in a for entry in row)
                for row in product(transposed(a), residual):
                    self.assertLess(abs(row[0]), size ** 3 * Fraction(1, 10 ** (DIGITS - 6)))
                self.assertLess(abs(Fraction(solution["residual"]) ** 2 - sum(row[0] ** 2 for row in residual)), Fraction(1, 10 ** (DIGITS - 8)))
                inverse = numbers(self.run_on("pinv", a))
                self.close(product(product(a, inverse), a), a, DIGITS - 6)
                self.close(product(inverse, b), x, DIGITS - 8)
                if rank < n:
                    basis = numbers(self.run_on("null", a))
                    self.assertEqual(len(basis[0]), n - rank)
                    for row in product(a, basis):
                        self.assertLess(max(map(abs, row)), size * Fraction(1, 10 ** (DIGITS - 4)))
                    for row in product(transposed(basis), x):
                        self.assertLess(abs(row[0]), size * Fraction(1, 10 ** (DIGITS - 8)))

    def test_determinants_beyond_the_numbers(self):
        result = run_json("det", "-", "--working-digits", "20", stdin="1e800000000 0\n0 -25e800000000\n")
        self.assertEqual((result["determinant"], result["mantissa"], result["exponent"]), (["-2.5e1600000001"], "-2.5", 1600000001))
        # Of estimates too.
        for command, matrix, value in (("lu", "1e999999999 2\n2 1e-999999999\n", "-3"), ("chol", "1e-999999999 0\n0 1e-999999999\n", "1e-1999999998"),
                                       ("chol", "1e999999999 1e999999990\n1e999999990 2e999999999\n", "2e1999999998")):
            self.assertEqual(run_json(command, "-", "--digits", "9", "--proof-time", "0", stdin=matrix)["determinant"], value)
        nearly = "1 1\n1 1.0000000000000000000000000000000000000001\n"
        self.assertIn("# Matrix A is approximately singular.", run_well("det", "-", "--working-digits", "20", stdin="1 2\n2 4\n"))
        self.assertRegex(run_well("det", "-", "--proof-time", "0", stdin=nearly),
                         r"# not proven: \d+ of 20 digits are proven with 25 working digits, after 0 s; what follows is an estimate")
        self.assertIn("\n1e-40\n", run_well("det", "-", stdin=nearly).replace(" ", ""))

    def test_norms(self):
        a = self.matrix(4, 4)
        result = self.run_on("norm", a, "--condition")
        value = dict(zip(result["norm"], map(Fraction, result["value"]), strict=True))
        sums = lambda rows: max(sum(map(abs, row)) for row in rows)
        self.assertEqual(value["max"], max(abs(x) for row in a for x in row))
        self.assertEqual((value["one"], value["infinity"]), (sums(zip(*a, strict=True)), sums(a)))
        self.close([[value["frobenius"] ** 2]], [[Fraction(sum(x * x for row in a for x in row))]])
        whole = determinant(a)
        minor = lambda i, j: determinant([row[:j] + row[j + 1:] for k, row in enumerate(a) if k != i])
        inverse = [[(-1) ** (i + j) * minor(j, i) / whole for j in range(4)] for i in range(4)]
        self.close([[value["condition"]]], [[sums(zip(*a, strict=True)) * sums(zip(*inverse, strict=True))]], DIGITS - 6)

    def test_eigenvalues_satisfy_their_equation(self):
        a = self.matrix(7, 7)
        result = self.run_on("eig", a, "--vectors", "--condition")
        values = [(Decimal(x), Decimal(y)) for x, y in zip(result["real"], result["imaginary"], strict=True)]
        with localcontext() as context:
            context.prec = 60
            for j, (re, im) in enumerate(values):
                x = [complex_of(result[f"x{i + 1}"][j]) for i in range(7)]
                self.assertLess(abs(sum(p * p + q * q for p, q in x) - 1), Decimal("1e-28"))
                for i in range(7):
                    left = [sum(a[i][k] * x[k][part] for k in range(7)) for part in (0, 1)]
                    right = [re * x[i][0] - im * x[i][1], re * x[i][1] + im * x[i][0]]
                    self.assertLess(max(abs(p - q) for p, q in zip(left, right, strict=True)), Decimal("1e-25"), self.seed)
            trace = sum(re for re, _ in values) - sum(a[i][i] for i in range(7))
            self.assertLess(abs(trace), Decimal("1e-25"))
        magnitudes = [re * re + im * im for re, im in values]
        self.assertTrue(all(p >= q * (1 - Decimal("1e-25")) for p, q in zip(magnitudes, magnitudes[1:], strict=False)))
        plain = self.run_on("eig", a)
        alone = self.run_on("eig", a, "--condition")
        for other in (plain, alone):
            for p, q in zip(result["real"], other["real"], strict=True):
                self.assertLess(abs(Decimal(p) - Decimal(q)), Decimal("1e-23"))
        for p, q in zip(result["s"], alone["s"], strict=True):
            self.assertLess(abs(Decimal(p) - Decimal(q)), Decimal("1e-20"))

    def test_kinds_of_matrices(self):
        """Symmetric, Hermitian and complex matrices are recognised, and have the eigenvalues that they should."""
        for text, routine, real, imaginary in (
            ("0 3\n3 8\n", "dsyev", ["9", "-1"], ["0", "0"]),
            ("1 2i\n-2i 1\n", "zheev", ["3", "-1"], ["0", "0"]),
            ("3i 1\n0 2\n", "zgeev", ["0", "2"], ["3", "0"]),
        ):
            with self.subTest(routine=routine):
                result = run_json("eig", "-", "--vectors", "--condition", stdin=text)
                self.assertEqual(result["routine"], f"QuarnMPX_{routine}_")
                self.assertEqual([result["real"], result["imaginary"]], [real, imaginary])
                self.assertLess(Decimal(result["largest_residual"]), Decimal("1e-18"))

    def test_pencils_and_chosen_eigenvalues(self):
        """A x = lambda B x with B definite, singular and common; and some eigenvalues of a symmetric matrix."""
        with tempfile.TemporaryDirectory() as folder:
            mass = os.path.join(folder, "mass.txt")
            for a, b, routine, real in (
                ("2 -1\n-1 2\n", "4 0\n0 4\n", "dsygv", ["0.75", "0.25"]),
                ("2 i\n-i 2\n", "4 0\n0 4\n", "zhegv", ["0.75", "0.25"]),
                ("2 0\n0 3\n", "-4 0\n0 0\n", "dggev", ["inf", "-0.5"]),
                ("2i 0\n1 3i\n", "i 0\n0 i\n", "zggev", ["3", "2"]),
            ):
                with self.subTest(routine=routine):
                    with open(mass, "w", encoding="ascii") as file:
                        file.write(b)
                    result = run_json("eig", "-", "--mass", mass, "--vectors", stdin=a)
                    self.assertEqual(result["routine"], f"QuarnMPX_{routine}_")
                    self.assertEqual(result["real"], real)
                    self.assertLess(Decimal(result["largest_residual"]), Decimal("1e-18"))
        result = run_json("eig", "-", "--select", "2", "3", "--vectors", stdin="1 0 0\n0 5 0\n0 0 3\n")
        self.assertEqual((result["routine"], result["real"]), ("QuarnMPX_dsyevx_", ["5", "3"]))
        self.assertEqual(result["x2"], ["1+0i", "0+0i"])

    def test_singular_values(self):
        a = self.matrix(4, 3)
        u, v = (self.run_on("svd", a, "--factor", part) for part in ("u", "v"))
        values = [Fraction(x) for x in self.run_on("svd", a)["value"]]
        columns = lambda result: [[Fraction(x) for x in result[f"c{j + 1}"]] for j in range(3)]
        scaled = [[x * s for x in column] for column, s in zip(columns(u), values, strict=True)]
        self.close([list(row) for row in zip(*product([list(c) for c in zip(*columns(v), strict=True)], scaled), strict=True)], a)

    def test_a_real_matrix_from_the_field(self):
        """The determinant is the product of the eigenvalues."""
        values = run_json("eig", WEST, "--digits", "50")
        whole = Decimal(run_json("lu", WEST, "--digits", "50")["determinant"])
        with localcontext() as context:
            context.prec = 50
            real, imaginary = Decimal(1), Decimal(0)
            for x, y in zip(map(Decimal, values["real"]), map(Decimal, values["imaginary"]), strict=True):
                real, imaginary = real * x - imaginary * y, real * y + imaginary * x
            self.assertLess(abs(real - whole), abs(whole) * Decimal("1e-40"))

    def test_zeros(self):
        for coefficients, expected in (
            (["1", "-10", "35", "-50", "24"], [("1", "0"), ("2", "0"), ("3", "0"), ("4", "0")]),
            (["2", "0", "10", "0", "8"], [("0", "1"), ("0", "-1"), ("0", "2"), ("0", "-2")]),
            (["1", "-0.5", "0", "0", "0"], [("0.5", "0"), ("0", "0"), ("0", "0"), ("0", "0")]),
            (["1", "-6", "11", "-6"], [("1", "0"), ("2", "0"), ("3", "0")]),
            (["1", "-1-i", "i"], [("1", "0"), ("0", "1")]),
            (["1", "-7", "21", "-35", "35", "-21", "7", "-1"], [("1", "0")] * 7),
        ):
            with self.subTest(coefficients=coefficients):
                result = run_json("zeros", *coefficients, "--digits", "50")
                left = [(Decimal(x), Decimal(y)) for x, y in expected]
                for re, im, error in zip(*([Decimal(x) for x in result[name]] for name in ("real", "imaginary", "error")), strict=True):
                    nearest = min(left, key=lambda z: (z[0] - re) ** 2 + (z[1] - im) ** 2)
                    left.remove(nearest)
                    self.assertLess(max(abs(nearest[0] - re), abs(nearest[1] - im)), 10 * error + Decimal("1e-46"))

    def test_refusals(self):
        for arguments, stdin, status, complaint in (
            (["eig", "-"], "1 2\n", 2, "standard input: 1 by 2, but a square matrix is needed"),
            (["lstsq", "-"], "1 2\n", 2, "matrix and right side cannot both come from standard input"),
            (["pinv", "-", "--tolerance", "-1"], "1 2\n", 2, "--tolerance is a number from 0, not '-1'"),
            (["chol", "-"], "1 2\n3 4\n", 2, "standard input: not symmetric: element (2, 1) differs from its mirror image"),
            (["chol", "-"], "1 2\n2 1\n", 1, "DPOTRF: the leading minor of order 2 is not positive"),
            (["lu", "-", "--part", "x"], "1\n", 2, "--part: 'x' is not factors, l, u or p (quarn lu --help shows what there is)"),
            (["zeros", "0", "1", "2", "3", "4"], "", 1, "DPZEROS: the first coefficient is 0, or one is not finite"),
            (["zeros", "1", "1", "2", "3", "x"], "", 2, "coefficient 5: 'x' is not a number"),
        ):
            with self.subTest(arguments=arguments):
                done = run(*arguments, stdin=stdin)
                self.assertEqual((done.returncode, done.stdout, done.stderr), (status, "", f"quarn: {complaint}\n"))

    def test_norms_of_a_singular_matrix(self):
        for options, last, note in (
            ([], "inf", "# the matrix is singular, which is proven: its condition number is infinite\n"),
            (["--working-digits", "20"], "nan", "# the matrix is singular to the working digits: its condition number is infinite, or not known\n"),
        ):
            with self.subTest(options=options):
                self.assertEqual(run_json("norm", "-", "--condition", *options, stdin="1 2\n2 4\n")["value"], ["4", "6", "6", "5", last])
                self.assertIn(note, run("norm", "-", "--condition", *options, stdin="1 2\n2 4\n").stdout)

    def test_zeros_of_pencils_have_no_sign(self):
        with tempfile.TemporaryDirectory() as folder:
            mass = os.path.join(folder, "mass.txt")
            with open(mass, "w", encoding="ascii") as file:
                file.write("2 0\n0 -1\n")
            self.assertNotIn("-0", run("eig", "-", "--mass", mass, stdin="0 1\n0 0\n").stdout)

    def test_numbers_that_no_number_holds(self):
        coordinates = "%%MatrixMarket matrix coordinate real general\n2 2 5\n1 1 1e{0}\n1 1 -1e-{0}\n1 1 -1e{0}\n2 2 1\n1 2 0\n"
        self.assertEqual(run_json("det", "-", stdin=coordinates.format(499_000))["determinant"], ["-1e-499000"])
        self.assertIn("row 1, column 1 has several entries", run("det", "-", stdin=coordinates.format(700_000)).stderr)
        self.assertIn("coefficient 3: '-1e-2000000000' is beyond the range", run("zeros", "1", "0", "-1e-2000000000").stderr)

    @not_emulated
    def test_pictures(self):
        with tempfile.TemporaryDirectory() as folder:
            for arguments in (["eig", WEST], ["zeros", "1", "0", "0", "0", "-1"], ["zeros", "1", "0", "0", "0", "0"]):
                picture = os.path.join(folder, "plane.svg")
                run_well(*arguments, "--plot", picture)
                with open(picture, encoding="utf-8") as file:
                    self.assertIn("imaginary part", file.read())


if __name__ == "__main__":
    unittest.main()
