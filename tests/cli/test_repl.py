"""repl: transcripts, random expressions against exact fractions, scripts, and a terminal of its own."""

import cmath
import contextlib
import glob
import json
import os
import random
import re
import subprocess
import tempfile
import unittest
from decimal import Decimal, localcontext
from fractions import Fraction

from console import COMMAND, not_emulated, open_terminal, run, run_well

HERE = os.path.dirname(os.path.abspath(__file__))


class Transcripts(unittest.TestCase):
    maxDiff = None

    def test_transcripts(self):
        """Lines after "> " (and "... ", which go on) are typed, the others are what is answered; # and a capital letter start a
        comment."""
        for name in sorted(glob.glob(os.path.join(HERE, "transcripts", "*.txt"))):
            with open(name, encoding="utf-8") as file:
                lines = [line for line in file.read().splitlines() if not re.match("# [A-Z]", line)]
            typed = [re.sub(r"^(> |\.\.\. )", "", line) for line in lines if line.startswith(("> ", "... "))]
            answered = [line for line in lines if not line.startswith(("> ", "... "))]
            self.assertGreater(len(typed), 5)
            with self.subTest(os.path.basename(name)):
                done = subprocess.run([*COMMAND, "repl", "--keep-going"], input="\n".join(typed) + "\n", text=True, timeout=60,
                                      stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
                self.assertEqual(done.stdout.splitlines(), answered)
                self.assertEqual(done.returncode, 1 if any(line.startswith("error: ") for line in answered) else 0)


class Expressions(unittest.TestCase):
    def test_random_expressions_against_fractions(self):
        seed = random.randrange(2 ** 32)
        chance = random.Random(seed)

        def expression(depth):
            """Text and value; as many brackets as chance wants, so that precedence is tried."""
            if depth == 0 or chance.random() < 0.2:
                number = f"{chance.randint(0, 999)}.{chance.randint(0, 99):02}"
                return number, Fraction(number), 3
            kind = chance.choice("+-*/^u(")
            if kind == "u":
                text, value, _ = operand(depth, 2)
                return "-" + text, -value, 1.5
            if kind == "(":
                text, value, _ = expression(depth - 1)
                return f"({text})", value, 3
            if kind == "^":
                text, value, _ = operand(depth, 3)
                power = chance.randint(0, 3)
                return f"{text}^{power}", value ** power, 2
            level = 1 if kind in "*/" else 0
            left, a, _ = operand(depth, level)
            right, b, _ = operand(depth, level + 0.1)
            if kind == "/" and b == 0:
                kind = "*"
            blank = chance.choice(("", " "))
            return (left + blank + kind + blank + right,
                    {"+": lambda: a + b, "-": lambda: a - b, "*": lambda: a * b, "/": lambda: a / b}[kind](), level)

        def operand(depth, least):
            text, value, level = expression(depth - 1)
            return (text, value, level) if level >= least else (f"({text})", value, 3)

        cases = [expression(4)[:2] for _ in range(400)]
        text = "digits 25\n" + "".join(case + "\n" for case, _ in cases)
        answers = run_well("repl", stdin=text).splitlines()
        for (case, value), answer in zip(cases, answers, strict=True):
            with self.subTest(seed=seed, case=case):
                self.assert_true(answer.removeprefix("ans = "), value, 25)

    def assert_true(self, shown, exact, digits):
        """Is the number that is shown within 0.51 units of its last digit, or of the last of so many?"""
        if found := re.fullmatch(r"0 \(abs < (1e-?\d+)\)", shown):
            self.assertLess(abs(exact), Fraction(found[1]))
            return
        number = Decimal(shown)
        with localcontext() as context:
            context.prec = 1000
            unit = Fraction(Decimal(10) ** (number.adjusted() - digits + 1)) if number else 0
        self.assertLessEqual(abs(Fraction(number) - exact), unit * Fraction(51, 100), shown)

    def test_results_are_those_of_the_true_data(self):
        order = 20
        hilbert = [[Fraction(1, i + j + 1) for j in range(order)] for i in range(order)]
        determinant = Fraction(1)
        rows = [row + [Fraction(1)] for row in hilbert]
        for k in range(order):
            determinant *= rows[k][k]
            rows[k] = [each / rows[k][k] for each in rows[k]]
            for i in range(order):
                if i != k:
                    rows[i] = [a - rows[i][k] * b for a, b in zip(rows[i], rows[k], strict=True)]
        self.assert_true(run_well("calc", "det(hilbert(20))").strip(), determinant, 20)
        self.assert_true(run_well("repl", "--eval", "A = hilbert(20);", "--eval", "d = det(A);", "--eval", "digits 50", "--eval",
                                  "d").removeprefix("d = ").strip(), determinant, 50)
        solution = run_well("calc", r"hilbert(20) \ ones(20, 1)").split()
        self.assertEqual([Fraction(each) for each in solution], [row[-1] for row in rows])
        self.assert_true(run_well("calc", "sum(1./(1:1000).^2)").strip(), sum(Fraction(1, k * k) for k in range(1, 1001)), 20)
        with localcontext() as context:
            context.prec = 120
            self.assert_true(run_well("calc", "exp(1)^100", "--digits", "60").strip(), Fraction(Decimal(100).exp()), 60)
        # sin(10^30), from its remainder with the 100 digits of 2 pi that Machin's formula gives.
        self.assertEqual(Decimal(run_well("calc", "sin(1e30)")), self.sine(10 ** 30))
        for expression in ("sin(pi)", "1/3*3 - 1", "sqrt(2)^2 - 2"):
            self.assertRegex(run_well("calc", expression), r"^0 \(abs < 1e-\d+\)\n$")
        self.assertEqual(run_well("calc", "cos(1e-20) - 1"), "-5e-41\n")
        self.assertEqual(run_well("calc", "0/0"), "nan\n")

    def sine(self, x):
        """To 20 digits, in whole numbers."""
        scale = 10 ** 100

        def inverse_tangent(k):
            total, term, n = 0, scale // k, 1
            while term:
                total += term // n if n % 4 == 1 else -(term // n)
                term, n = term // (k * k), n + 2
            return total

        angle = x * scale % (8 * (4 * inverse_tangent(5) - inverse_tangent(239)))
        # 10^30 turns cost 31 of the 100 digits.
        total, term, n = 0, angle, 1
        while term:
            total += term
            term = -term * angle * angle // (scale * scale * (n + 1) * (n + 2))
            term = 0 if abs(term) < 2 else term
            n += 2
        with localcontext() as context:
            context.prec = 20
            return Decimal(total).scaleb(-100)

    def test_principal_values_beyond_domains(self):
        for name in ("sqrt", "log", "log10", "asin", "acos", "acosh", "atanh"):
            for x in (-3, -1.5, 1.25, 7) if name not in ("sqrt", "log", "log10") else (-3, -0.25):
                # 1/3*3 x is a number with a bound.
                for text in (str(x), f"{x}/3*3"):
                    with self.subTest(name=name, x=text):
                        shown = run_well("calc", f"{name}({text}) + 0", "--digits", "25").split()[0].replace("i", "j")
                        self.assertLess(abs(complex(shown) - getattr(cmath, name)(complex(x, 0))), 1e-14)

    def test_more_digits_decide_what_some_leave_open(self):
        exact = {"length(1:(1e30*(sqrt(2)^2-2)+5))": 5, "length(1:(5-exp(-80)))": 4, "length(1:(5+exp(-80)))": 5,
                 "length(0:0.1:1)": 11, "length(0:pi/8:pi)": 9, "length(2:1)": 0, "im(log(sqrt(5)^2 - 5 + 5e-30))": 0,
                 "atan2(0, 1)": 0, "fmod(6, 3)": 0, "1/0": "inf", "log(0)": "inf", "0/0": "nan"}
        for expression, value in exact.items():
            with self.subTest(expression):
                self.assertEqual(run_well("calc", expression).strip().lstrip("-"), str(value))
        with localcontext() as context:
            context.prec = 20
            root = str(Decimal("5e-30").sqrt())
        for expression in ("re(sqrt(sqrt(5)^2-5+5e-30))", "im(sqrt(sqrt(3)^2-3-5e-30))", "max(sqrt(sqrt(5)^2-5+5e-30), 0)"):
            self.assertEqual(Decimal(run_well("calc", expression)), Decimal(root), expression)
        self.assertRegex(run_well("calc", "sqrt(sqrt(3)^2-3-5e-30)"), r"^0\+2\.236067977\d+e-15i\n$")
        self.assertIn("the length of this range is not known", run("calc", "1:1/(1/3*3 - 1)").stderr)
        # Both ends of the range of numbers: neither an exact 0 nor an exact infinity.
        for expression in ("1/exp(1e10)", "1/10^1e10", "1/(1e900000000*1e900000000)", "gamma(1e10)"):
            self.assertRegex(run_well("calc", expression), r"^\?\n# 0 of 20 digits are proven")
        for expression in ("beta(1e11, 1e11)", "atan2(1e-900000000, 1e900000000)"):
            self.assertRegex(run_well("calc", expression), r"^0 \(abs < 1e-\d+\)\n$")
        self.assertIn("beyond the range of numbers", run("calc", "1e-2000000000").stderr)
        self.assertEqual(run_well("repl", stdin="1." + "0" * 100_001 + "1 - 1\n"), "ans = 1e-100002\n")
        self.assertEqual(run_well("calc", "0e-2000000000"), "0\n")

    def test_what_is_saved_has_proven_digits(self):
        seven = "1e1795*(sqrt(2)^2 - 2) + 123456.5"
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "saved")
            shown = run_well("repl", stdin=f'y = {seven}; save "{file}"\nsave(y, "{file}.csv")\nsave(logm([1, 2; 3, 4]), "{file}.csv")\n')
            self.assertEqual(shown, "# rounded to 7 digits, those that are proven\n# not proven: no proof of logm was found for these arguments\n")
            with open(file, encoding="utf-8") as text:
                self.assertIn("\n# 7 of 20 digits were proven\ny = [123456.5];\n", text.read())
            self.assertIn("'Q' is not proven (no proof of qr was found for these arguments)",
                          run("repl", "--eval", "Q, R = qr([1 2; 2 4]);", "--eval", f'save "{file}"').stderr)
            self.assertIn("no digit of this is proven", run("repl", "--eval", f'save(1/(1/3*3 - 1), "{file}")').stderr)
        self.assertEqual(run_well("calc", "[1, 2, 1e1800*(sqrt(2)^2 - 2) + 1234.5]"),
                         "  1  2  ?\n# 0 of 20 digits are proven with 1800 working digits\n")
        self.assertIn("not known exactly", run("calc", "fill(2*cos(0) + sqrt(2)^2 - 2, 1)").stderr)
        self.assertIn("not known exactly", run("calc", "linspace(0, 1, 3*cos(0) + sqrt(2)^2 - 2)").stderr)
        # The mark stays where values are shown again.
        lines = ["A = logm([1 2; 3 4]);", "A(1, 1)", "A(1, 1)"]
        self.assertEqual(run_well("repl", stdin="\n".join(lines)).count("no proof of logm was found"), 2)
        # Drawn once from a matrix that is not exact, not to be compared with itself.
        lines = ["A = random_values(2, 1/3, 2/3);", "A(1, 1)", "B = A + 1;", "B(1, 1)"]
        self.assertEqual(run_well("repl", stdin="\n".join(lines)).count("# not proven: no proof of random_values was found"), 2)

    def test_proofs_are_said_on_request(self):
        self.assertRegex(run_well("calc", "1/3", "--proven", "--error"),
                         r"^0\.33333333333333333333\n# error: 3\.333\d*e-21\n# 20 digits, all proven \(worked with 30\)\n$")
        self.assertEqual(run_well("calc", "2^100", "--proven", "--error"), f"{2**100}\n# error: 0\n# exact\n")
        self.assertRegex(run_well("repl", "--digits", "5", "--error", "--eval", "[1/3, 2; 1e-7/3, -2/3]"),
                         r"^ans =\n.*\n.*\nerror of ans =\n +3\.33\d*e-06 +0\.0*e\+00\n +3\.33\d*e-13 +3\.33\d*e-06\n$")
        # An error is no smaller than what rounding to fewer digits makes it.
        self.assertEqual(run_well("calc", "1.55555", "--digits", "3", "--error"), "1.56\n# error: 0.00445000001\n")
        self.assertEqual(run_well("calc", "1/0", "--proven", "--error"),
                         "inf\n# error: 0\n# exact\n")
        done = run("calc", "logm([1 2; 3 4])", "--proven")
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertIn("'ans' is not proven: no proof of logm was found for these arguments", done.stderr)
        self.assertIn("0 of 20 digits are proven", run("calc", "1/(1/3*3 - 1)", "--proven").stderr)
        # Nothing is written or drawn either.
        with tempfile.TemporaryDirectory() as folder:
            for name, call in (("a.csv", "save(logm([1 2; 3 4]), {})"), ("a.svg", "plot([1 1/(1e-1900 + sqrt(2)^2 - 2)], {})")):
                file = os.path.join(folder, name)
                done = run("repl", "--proven", "--eval", call.format(f'"{file}"'))
                self.assertRegex(done.stderr, "this is not proven: no proof of logm was found for these arguments|digits are proven with|no digit of this")
                self.assertEqual((done.returncode, os.path.exists(file)), (2, False))
        self.assertEqual(run("calc", "1/3", "--error", "--working-digits", "5").returncode, 2)

    def test_functions_of_matrices_that_are_proven(self):
        for expression, shown in (
                ("2*abs(chol([2 i; -i 2])).^2", "4 0; 1 3"),
                # Which few digits take for one that is not definite.
                ("prod(diag(chol(hilbert(40))))^2/det(hilbert(40))", "1"),
                ("pinv([1 2; 3 4; 5 6])*12", "-16 -4 8; 13 4 -5"),
                ("pinv([1 3 5; 2 4 6])*12", "-16 13; -4 4; 8 -5"),
                ("rcond([1 2; 3 4])*21", "1"),
                ("rcond([1 2; 2 4])", "0"),
                ("powm([1 1; 1 0], 100)*[0; 1] - [354224848179261915075; 218922995834555169026]", "0; 0"),
                ("powm([2 0; 0 4], -1)", "0.5 0; 0 0.25"),
                ("pinv([1 2; 2 4])*25", "1 2; 2 4"),
                ("lstsq([1 2; 2 4], [1/3; 2/3])*15", "1; 2"),
                ("abs(null([3 4; 6 8]))", "0.8; 0.6"),
                ("powm([5 4; 4 5], 1.5)", "14 13; 13 14"),
                ("sqrtm([4 4 1; 0 4 4; 0 0 4])*[1; 0; 0]", "2; 0; 0"),
                ("logm([1 2 7; 0 1 4; 0 0 1])*[0; 1; 0]", "2; 0; 0"),
                ("expm(-[0 2; 0 0])", "1 -2; 0 1"),
                ("logm(expm([0 1/3; 1/3 0]))*3", "0 1; 1 0"),
                ("scaled_det([1e300 0; 0 1e300])", "d = 1; e = 600"),
                ("cond([2 0; 0 1])", "2")):
            with self.subTest(expression=expression):
                lines = run_well("calc", expression, "--digits", "30", "--proven").splitlines()
                self.assertRegex(lines[-1], "^# (exact|30 digits, all proven)")
                values = [" ".join(line.split()) for line in lines[:-1] if not line.startswith("#")]
                self.assertEqual("; ".join(values), shown)
        # Factors that are shown belong together: all of one evaluation.
        lines = ["A = [1/3 2; 4 6; 1 1/7];", "L, U, P = lu(A);", "Q, R = qr([1 2i; 3 4; 5 6]);", "U2, s, V = svdvec(A);",
                 'norm(P*A - L*U, "max")', 'norm(Q*R - [1 2i; 3 4; 5 6], "max")', 'norm(U2*diag(s)*V\' - A, "max")']
        self.assertRegex(run_well("repl", stdin="\n".join(lines)), r"^(ans = 0( \(abs < 1e-\d+\))?\n){3}$")
        for expression, unproven in (("pinv([1/3 1/3; 1 1])", "pinv"), ("powm([1 2; 3 4], 0.5)", "powm"),
                                     ("qr([1 2; 2 4])", "qr"), ("null([1/3 1; 1 3])", "null"),
                                     ("svdvec([1 0; 0 1])", "svdvec"), ("sqrtm([0 1; 0 0])", "sqrtm"),
                                     ("logm([1 2; 3 4])", "logm"), ("chol([1 1; 1 1]/3)", "chol")):
            with self.subTest(expression=expression):
                done = run("calc", expression)
                self.assertTrue(f"no proof of {unproven} was found" in done.stdout or f"# not proven: {unproven} takes the rank" in done.stdout or done.returncode == 1, done.stdout + done.stderr)
                self.assertEqual(run("calc", expression, "--proven").stdout, "")
        self.assertIn("singular", run("calc", "powm([1 2; 2 4], -1)").stderr)
        # The triangle that is not read is that of a matrix without a factor.
        for matrix, refusal in (("[4 100; 2 5]", "not symmetric: element (2, 1) differs from its mirror image"),
                                ("[4+1i 0; 0 5]", "not Hermitian: element (1, 1) differs from its mirror image"),
                                ("[4 2i; 2i 5]", "not Hermitian: element (2, 1) differs from its mirror image"),
                                ("[1 1/3; 0 1]", "not symmetric: element (2, 1) differs from its mirror image"),
                                ("[4 1/0; 0/0 5]", "element (2, 1) is not finite")):
            for options in ([], ["--proven"], ["--working-digits", "10"]):
                done = run("calc", f"chol({matrix})", *options)
                self.assertEqual((done.returncode, done.stdout), (2, ""), matrix)
                self.assertIn(refusal, done.stderr)

    def test_what_is_not_proven_says_so(self):
        self.assertIn("# about 20 digits are true (estimate by a second computation: no proof of logm was found for these arguments)",
                      run_well("calc", "logm([1 2; 3 4])"))
        self.assertIn("computation: no proof of fft was found for these arguments)", run_well("calc", "fft([1 2 3])", "--digits", "1200"))
        # A rank is proven, or taken by a tolerance, which all computations can do wrongly.
        for expression, shown in (("null([1/3 1; 1 3+1e-100])", "[]  (2 by 0)\n"),
                                  ("matrix_rank([1/3 1; 1 3+1e-100])", "2\n"),
                                  ("matrix_rank([1/3 0; 0 0])", "1\n"),
                                  ("pinv([1/3 1; 1 3+1e-150])", "   9e+150  -3e+150\n  -3e+150   1e+150\n"),
                                  ("pinv([1/3 0; 0 0])", "  3  0\n  0  0\n"),
                                  ("null([1/3 0; 0 0])", "  0\n  1\n")):
            self.assertEqual(run_well("calc", expression), shown, expression)
        taken = "by the tolerance 2e-179; if that is right, about 20 digits are true (estimate by a second computation)\n"
        for call in ("null(A)", "pinv(A)", "lstsq(A, [1; 2])", "matrix_rank(A)", "A*null(A) + 1"):
            name = re.search(r"[a-z_]+(?=\(A)", call)[0]
            self.assertTrue(run_well("repl", "--eval", "A = [1/3 1; 1 3+1e-3000];", "--eval", call).endswith(
                f"\n# not proven: {name} takes the rank to be 1, {taken}"), call)
        once = run_well("calc", "pinv([1/3 1; 1 3])", "--working-digits", "20")
        self.assertTrue(once.endswith("\n# not proven: pinv takes the rank to be 1, by the tolerance 2e-19\n"), once)
        self.assertIn("element (1, 1) is not finite", run("calc", "matrix_rank([0/0 1])").stderr)
        self.assertEqual(run_well("calc", "pinv([1e999999999 1; 1 1e-999999999])"),
                         "  1e-999999999  0\n             0  0\n# not proven: pinv takes the rank to be 1, " + taken)
        # Rounding errors of a zero are no digits, and a failure of the estimate proves nothing.
        self.assertRegex(run_well("calc", "qr([1 2;2 4])"), r"\n +0\.0+ +0\.0+\n# about 20 digits")
        self.assertIn("definite is not known with", run("calc", "chol([1/3 1;1 3+1e-3000])").stderr)
        self.assertIn("# about 0 digits are true (estimate by error bounds)",
                      run_well("calc", "det(hilbert(20))", "--working-digits", "20"))
        self.assertEqual(run_well("calc", "1/(1/3*3 - 1)"), "?\n# 0 of 20 digits are proven with 1800 working digits\n")
        self.assertIn("singular", run("calc", "[1 2; 2 4] \\ [1; 1]").stderr)
        # Chains of assignments end with values and bounds.
        lines = ["x = 1/7;", *["x = x + 1/3 - 1/3;"] * 300, "x"]
        self.assertEqual(run_well("repl", stdin="\n".join(lines)), "x = 0.14285714285714285714\n")
        # Random numbers and files are data, read once.
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "a.csv")
            shown = run_well("repl", stdin=f'A = random(3, 3); save(A, "{file}"); B = load("{file}"); save([1], "{file}")\n'
                             'det(A) - det(B)\ndigits 60\nnorm(A*pi - B*pi, "max")\n')
            self.assertRegex(shown, r"^ans = 0( \(abs < 1e-\d+\))?\nans = 0( \(abs < 1e-\d+\))?\n$")


class Runs(unittest.TestCase):
    def test_scripts_and_arguments(self):
        with tempfile.TemporaryDirectory() as folder:
            script = os.path.join(folder, "script")
            with open(script, "w", encoding="utf-8") as file:
                file.write("# two lines\nx = [1,\n  2]\n")
            shown = "x =\n  1  2\n"
            self.assertEqual(run_well("repl", script), shown)
            self.assertEqual(run_well("repl", "-", stdin="x = [1 2]"), shown)
            self.assertEqual(run_well("repl", "--eval", "x = [1 2];", "--eval", "x"), shown)
            self.assertEqual(run_well("repl", "--eval", "[1 2]"), shown.replace("x", "ans"))
            self.assertEqual(run_well("repl", "--digits", "5", "--eval", "1/3"), "ans = 0.33333\n")
            self.assertEqual(run_well("repl", stdin="quit\n1\n"), "")
            self.assertEqual(run_well("repl", stdin=""), "")

    def test_long_lines_take_neither_stack_nor_time(self):
        count = 100000
        lines = ("+".join(["1"] * count), "2" + "'" * count, "x = [" + "\n1" * 3000 + "\n];", "-".join(["x"] * 1000) + "; size(x)")
        shown = f"ans = {count}\nans = 2\nans =\n  1  3000\n"
        self.assertEqual(run_well("repl", stdin="\n".join(lines)), shown)

    def test_a_fault_ends_a_run_away_from_the_terminal(self):
        done = run("repl", stdin="1\n\n2 +\n3\n")
        self.assertEqual((done.returncode, done.stdout), (2, "ans = 1\n"))
        self.assertEqual(done.stderr, "  2 +\n     ^\nquarn: standard input:3: a number, a name or a bracket is expected here\n")
        done = run("repl", "--eval", "[1,", "--eval", "inv(0)]")
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn("quarn: --eval:2: DPROVEN_SOLVE: the matrix is singular", done.stderr)
        self.assertEqual(run("repl", "x", "--eval", "1").returncode, 2)

    def test_matrices_go_through_files_without_losing_a_digit(self):
        with tempfile.TemporaryDirectory() as folder:
            for ending in ("mtx", "csv", "json"):
                for matrix in ("random(3, 2)", "random(3, 2) + i*random(3, 2)", "random(4)", "random(4) * (1 - 2i)", "random(1, 4)"):
                    with self.subTest(ending=ending, matrix=matrix):
                        file = os.path.join(folder, "a." + ending)
                        text = f'A = {matrix}; save(A, "{file}"); B = load("{file}"); norm(A - B, "max")'
                        self.assertEqual(run_well("repl", "--digits", "70", "--eval", text), "ans = 0\n")

    def test_a_file_is_written_at_the_end_of_a_good_run(self):
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "shown")
            self.assertEqual(run("repl", "--eval", "1", "--eval", "2 +", "--output", file).returncode, 2)
            self.assertFalse(os.path.exists(file))
            self.assertEqual(run_well("repl", "--eval", "1", "--eval", "2", "--output", file), "")
            with open(file, encoding="utf-8") as text:
                self.assertEqual(text.read(), "ans = 1\nans = 2\n")

    def test_a_session_is_saved_and_loaded_with_all_digits(self):
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "session.quarn")
            lines = ["x = 1/3; digits 60", "A = random(2, 3) + i*random(2, 3); B = A + 0; s = \"text\"; e0 = fill(0, 2); n = 40!",
                     "big = [1/0, -1/0, 2]; digits 30", f'save "{file}"', "r = random()"]
            after = [f'load "{file}"', "norm(A - B, \"max\")", "x", "s", "n", "big", "size(e0)", "r - random()", "digits"]
            first = run_well("repl", *[part for line in lines for part in ("--eval", line)])
            number = first.splitlines()[-1].removeprefix("r = ")
            after[7] = f"{number} - random()"
            shown = run_well("repl", *[part for line in after for part in ("--eval", line)])
            self.assertEqual(shown, "ans = 0\nx = 0.333333333333333333333333333333\ns = \"text\"\n"
                             "n = 815915283247897734345611269596115894272000000000\nbig =\n  inf  -inf  2\nans =\n  0  2\n"
                             "ans = 0\n30\n")
            with open(file, "a", encoding="utf-8") as session:
                session.write("1 +\n")
            done = run("repl", "--eval", f'load "{file}"')
            self.assertEqual(done.returncode, 2)
            self.assertRegex(done.stderr, r"session\.quarn:\d+: a number, a name or a bracket is expected here")
            # All of it or nothing.
            with open(file, "w", encoding="utf-8") as session:
                session.write("digits 50\nx = 7\ny = nothing\n")
            shown = run("repl", "--keep-going", "--eval", "x = 1", "--eval", f'load "{file}"', "--eval", "x", "--eval", "digits")
            self.assertEqual((shown.returncode, shown.stdout), (1, "x = 1\nx = 7\nx = 1\n20\n"))

    def test_calc_inv_and_det(self):
        self.assertEqual(run_well("calc", "30! / 28!"), "870\n")
        self.assertEqual(run_well("calc", "[1 2]'"), "  1\n  2\n")
        self.assertEqual(run_well("calc", "1/3", "--digits", "5"), "0.33333\n")
        done = run("calc", "1 + sqrtt(2)")
        self.assertEqual((done.returncode, done.stderr.splitlines()[-1]),
                         (2, "quarn: there is no variable and no function 'sqrtt'; did you mean 'sqrt'?"))
        self.assertEqual(run_well("det", "-", "--format", "csv", stdin="2 0\n1 3\n").splitlines()[1].split(",")[0], "6")
        self.assertEqual(run_well("inv", "-", "--format", "csv", stdin="2 0\n0 4\n").splitlines()[1:], ["0.5,0", "0,0.25"])
        self.assertEqual(run("inv", "-", stdin="1 2\n2 4\n").returncode, 1)
        self.assertEqual(run("det", "-", stdin="1 2 3\n2 4 5\n").returncode, 2)

    def test_proven_digits(self):
        # 1e-25 apart: at 20 digits the matrix is singular, and its numbers have more digits than that.
        matrix = "1 1\n1 1.0000000000000000000000001\n"
        value, error = run_well("det", "-", "--format", "csv", stdin=matrix).splitlines()[1].split(",")
        self.assertEqual((value, 0 <= float(error) < 1e-45), ("1e-25", True))
        once = run_well("det", "-", "--working-digits", "40", stdin=matrix)
        self.assertIn("# about 13 digits are true (estimate by the condition number)", once)
        self.assertNotIn("proven", once)
        done = run_well("inv", "-", stdin=matrix)
        self.assertIn("# 20 digits, all proven (worked with ", done)
        self.assertIn("1.0000000000000000000000001000000000000000000e+25"[:12], done)
        hilbert = "\n".join(" ".join(f"{420 // (i + j + 1)}" for j in range(4)) for i in range(4))
        self.assertEqual(run_well("det", "-", "--format", "csv", stdin=hilbert).splitlines()[1].split(",")[0], "5145")
        self.assertNotIn("error", run_well("eig", "-", stdin=hilbert))
        self.assertIn("error", run_well("eig", "-", "--error", stdin=hilbert))
        self.assertIn("# an estimate, without a proof", run_well("eig", "-", "--vectors", stdin=hilbert))
        determinant = json.loads(run_well("det", "-", "--format", "json", stdin=matrix))
        self.assertEqual((determinant["proven"], determinant["working_digits"] > 40), (True, True))
        # Eigenvalues 2 +- 1e-20, which 20 digits of the matrix do not show; a double one; 1 and 3 of a symmetric matrix.
        apart = json.loads(run_well("eig", "-", "--digits", "25", "--format", "json",
                                    stdin="2 1\n1e-40 2\n"))
        self.assertEqual(apart["real"], ["2.00000000000000000001", "1.99999999999999999999"])
        self.assertTrue(all(0 < float(error) < 1e-24 for error in apart["error"]))
        double = json.loads(run_well("eig", "-", "--format", "json", stdin="2 1\n0 2\n"))
        self.assertEqual((double["count"], double["imaginary"]), ([2, 2], ["0", "0"]))
        self.assertEqual(run_well("eig", "-", "--format", "csv", stdin="2 1\n1 2\n").splitlines()[1][:6],
                         "1,3,0,")
        # The golden ratio and its inverse.
        values = run_well("svd", "-", "--digits", "30", "--format", "csv", stdin="1 1\n1 0\n").splitlines()
        self.assertEqual([line.split(",")[1] for line in values[1:]],
                         ["1.61803398874989484820458683437", "0.618033988749894848204586834366"])
        zeros = json.loads(run_well("zeros", "1", "-3", "3", "-1", "--format", "json"))
        self.assertEqual((zeros["real"], zeros["count"]), (["1"] * 3, [3] * 3))
        self.assertEqual(run_well("solve", "-", "--format", "csv", stdin=matrix).splitlines()[1][:4], "1,1,")
        for arguments in (["eig", "-", "--vectors"], ["svd", "-", "--factor", "u"], ["solve", "-", "--history", "h.csv"]):
            self.assertEqual(run(*arguments, "--proven", stdin=matrix).returncode, 2)
        self.assertEqual(run_well("det", "-", "--proven", "--format", "csv", stdin="1 2\n2 4\n"), "determinant,error\n0,0\n")
        for command in ("inv", "solve"):
            done = run(command, "-", "--proven", stdin="1 2\n2 4\n")
            self.assertEqual(done.returncode, 1)
            self.assertIn("the matrix is singular", done.stderr)

    def test_help_tells_of_every_function(self):
        overview = run_well("repl", "--eval", "help")
        # Headings end with a colon; the names stand below them.
        listed = overview[overview.index("Functions of numbers"):overview.index("\nConstants:")]
        names = " ".join(line for line in listed.splitlines() if not line.endswith(":")).split()
        for name in ("fft", "solve", "lu", "det", "inv", "eig", "zeros", "norm", "rank", "sort", "random"):
            self.assertIn(name, names)
        for name in names:
            with self.subTest(name):
                usage, purpose = run_well("repl", "--eval", "help " + name).splitlines()
                self.assertRegex(usage, rf"^(\w+(, \w+)* = )?{name}\(.*\)$")
                self.assertRegex(purpose, r"^  \S")


@not_emulated
class Terminal(unittest.TestCase):
    @contextlib.contextmanager
    def session(self, history):
        """The process at its terminal, and the terminal's other end."""
        primary, secondary = open_terminal()
        with subprocess.Popen([*COMMAND, "repl"], stdin=secondary, stdout=secondary, stderr=secondary, close_fds=True,
                              env={**os.environ, "QUARN_HISTORY": history, "TERM": "dumb"}) as process:
            os.close(secondary)
            yield process, primary
        os.close(primary)

    def has_editing(self):
        return "libedit" in subprocess.run(["ldd", COMMAND[-1]], capture_output=True, text=True, timeout=60).stdout

    def test_prompt_history_and_faults(self):
        with tempfile.TemporaryDirectory() as folder:
            history = os.path.join(folder, "history")
            with self.session(history) as (process, primary):
                os.write(primary, b"1 +\n6*7\nquit\n")
                output = b""
                try:
                    while chunk := os.read(primary, 4096):
                        output += chunk
                except OSError:
                    pass  # the other end is closed
                self.assertEqual(process.wait(30), 0)
            text = output.decode().replace("\r", "")
            self.assertIn("20 digits; help lists what there is, quit ends\n", text)
            self.assertIn("error: a number, a name or a bracket is expected here\n", text)
            self.assertIn("ans = 42\n", text)
            if os.path.exists(history):
                with open(history, encoding="utf-8") as file:
                    self.assertIn("6*7", file.read().replace("\\040", " "))

    def test_history_survives_a_session_that_is_killed(self):
        if not self.has_editing():
            self.skipTest("built without the editing library")
        with tempfile.TemporaryDirectory() as folder:
            history = os.path.join(folder, "history")
            with self.session(history) as (process, primary):
                output = b""

                def wait_for(text):
                    nonlocal output
                    while text not in output:
                        output += os.read(primary, 4096)
                    output = output.split(text, 1)[1]

                wait_for(b"> ")
                os.write(primary, b"6*7\n")
                wait_for(b"ans = 42\r\n")
                process.kill()
                process.wait(30)
            with open(history, encoding="utf-8") as file:
                self.assertIn("6*7", file.read())


if __name__ == "__main__":
    unittest.main()
