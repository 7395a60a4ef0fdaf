"""solve: solutions of known systems by every method, histories, comparisons, and what is refused."""

import csv
import io
import json
import os
import random
import tempfile
import unittest
from decimal import Decimal
from fractions import Fraction

from console import DATA, decimals, not_emulated, run, run_json, run_well

METHODS = ("rgmres", "fgmres", "cgs", "bicgstab", "tfqmr", "idrs", "direct")
HEAD = "%%MatrixMarket matrix coordinate "


def solution_of(a, b):
    """Gauss-Jordan over exact fractions."""
    n = len(b)
    rows = [list(map(Fraction, a[i])) + [Fraction(b[i])] for i in range(n)]
    for k in range(n):
        pivot = next(i for i in range(k, n) if rows[i][k])
        rows[k], rows[pivot] = rows[pivot], rows[k]
        rows[k] = [entry / rows[k][k] for entry in rows[k]]
        for i in range(n):
            if i != k and rows[i][k]:
                rows[i] = [x - rows[i][k] * y for x, y in zip(rows[i], rows[k], strict=True)]
    return [row[n] for row in rows]


def matrix_of(name):
    return os.path.join(DATA, name + ".mtx")


class Solve(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def test_a_solution_that_its_size_excuses_is_said_to_be_one(self):
        entries = [["0.3333333333333333", "0.1428571428571429"], ["0.6666666666666667", "0.2857142857142857"]]
        matrix = self.write("a.mtx", f"{HEAD}real general\n2 2 4\n" +
                            "".join(f"{i + 1} {j + 1} {entries[i][j]}\n" for i in range(2) for j in range(2)))
        for right_side, note in (("1\n1\n", True), ("1\n2\n", False)):
            b = self.write("b.csv", right_side)
            text = run_well("solve", matrix, "--rhs", b, "--method", "rgmres", "--tol", "1e-14", "--digits", "16")
            self.assertEqual("small beside ||A|| ||x|| alone" in text, note, text)

    def test_every_method_finds_the_exact_solution(self):
        seed = random.randrange(2 ** 32)
        chance = random.Random(seed)
        n = 12
        a = [[chance.randint(-9, 9) if chance.random() < 0.3 else 0 for _ in range(n)] for _ in range(n)]
        for i in range(n):
            a[i][i] = 60 + chance.randint(0, 9)
        b = [chance.randint(-99, 99) for _ in range(n)]
        exact = [Fraction(x) for x in solution_of(a, b)]
        entries = [f"{i + 1} {j + 1} {a[i][j]}" for i in range(n) for j in range(n) if a[i][j]]
        matrix = self.write("a.mtx", f"{HEAD}real general\n{n} {n} {len(entries)}\n" + "\n".join(entries) + "\n")
        right_side = self.write("b.csv", "name,b\n" + "".join(f"{i},{value}\n" for i, value in enumerate(b)))
        for method in METHODS:
            for precon in ("none",) if method == "direct" else ("none", "jacobi", "ssor", "ilu"):
                with self.subTest(seed=seed, method=method, precon=precon):
                    result = run_json("solve", matrix, "--rhs", right_side, "--method", method, "--precon", precon, "--digits", "60",
                                      "--tol", "1e-50", "--restart", "12")
                    worst = max(abs(Fraction(x) - y) for x, y in zip(decimals(result["value"]), exact, strict=True))
                    self.assertLess(worst, Fraction(1, 10 ** 48))
                    self.assertEqual(result["failure"], "")
                    self.assertLess(Decimal(result["relative_residual"]), Decimal("1e-49"))

    def test_ssor_saves_iterations(self):
        counts = [run_json("solve", matrix_of("bcsstk01"), "--method", "bicgstab", "--precon", precon, "--tol", "1e-25", "--digits",
                           "40")["iterations"] for precon in ("none", "jacobi", "ssor")]
        self.assertEqual(counts, sorted(counts, reverse=True))
        self.assertLess(3 * counts[2], counts[0])

    def test_incomplete_factors_save_iterations(self):
        def iterations(*options):
            result = run_json("solve", matrix_of("bcsstk01"), "--method", "cg", "--tol", "1e-25", "--digits", "40", *options)
            self.assertEqual(result["failure"], "")
            return result["iterations"]

        plain = iterations()
        self.assertLess(2 * iterations("--precon", "ic"), plain)
        self.assertLess(iterations("--precon", "ic", "--drop", "1e-4"), 10)
        self.assertEqual(iterations("--precon", "ilu", "--fill", "48"), 1)
        done = run("solve", matrix_of("west0067"), "--precon", "ic")
        self.assertEqual(done.returncode, 2)
        self.assertIn("--precon ic is for symmetric and Hermitian matrices", done.stderr)
        self.assertIn("--drop: must not be negative", run("solve", matrix_of("bcsstk01"), "--precon", "ic", "--drop", "-1").stderr)

    def test_a_complex_system_is_solved_directly(self):
        matrix = self.write("c.mtx", HEAD + "complex general\n2 2 3\n1 1 1 1\n1 2 0 2\n2 2 4 0\n")
        result = run_json("solve", matrix, "--method", "direct", "--rhs", "-", "--digits", "30", stdin="1+3i\n4\n")
        self.assertEqual((result["real"], result["imaginary"], result["routine"]), (["1", "1"], ["0", "0"], "QuarnMPX_zgerfs_"))
        self.assertEqual(run_json("solve", matrix, "--rhs", "-", stdin="1+3i\n4\n")["real"], ["1", "1"])

    def test_complex_systems_by_every_method(self):
        seed = int(os.environ.get("TESK_SEED", "0")) or random.randrange(1 << 30)
        chance = random.Random(seed)
        n = 15
        for hermitian in (False, True):
            a = {}
            for i in range(n):
                a[i, i] = (60 + chance.randint(0, 9), 0 if hermitian else chance.randint(-9, 9))
                for j in range(i):
                    if chance.random() < 0.3:
                        a[i, j] = (chance.randint(-9, 9), chance.randint(-9, 9))
                        if not hermitian:
                            a[j, i] = (chance.randint(-9, 9), chance.randint(-9, 9))
            entries = [f"{i + 1} {j + 1} {re} {im}" for (i, j), (re, im) in sorted(a.items())]
            kind = "hermitian" if hermitian else "general"
            matrix = self.write("a.mtx", f"{HEAD}complex {kind}\n{n} {n} {len(entries)}\n" + "\n".join(entries) + "\n")
            methods = ("cg", "minres", "symmlq", "auto") if hermitian else ("rgmres", "cgs", "bicgstab", "tfqmr", "auto")
            for method in methods:
                for precon in ("none", "jacobi", "ssor", "ic" if hermitian else "ilu"):
                    with self.subTest(seed=seed, method=method, precon=precon):
                        result = run_json("solve", matrix, "--method", method, "--precon", precon, "--digits", "60", "--tol", "1e-50",
                                          "--restart", "15")
                        self.assertEqual((result["failure"], result["routine"]), ("", "QuarnMPX_zf11bef_"))
                        self.assertLess(Decimal(result["relative_residual"]), Decimal("1e-48"))
                        self.assertLess(Decimal(result["largest_error"]), Decimal("1e-48"))

    def test_direct_solutions_are_true_to_the_last_digits(self):
        for name in ("west0067", "fs_183_1", "bcsstk01"):
            low, high = (decimals(run_json("solve", matrix_of(name), "--method", "direct", "--rhs", "-", "--digits", digits,
                                           stdin="".join(f"{i}\n" for i in range(1, order + 1)))["value"])
                         for digits in ("30", "60") for order in ({"west0067": 67, "fs_183_1": 183, "bcsstk01": 48}[name],))
            largest = max(map(abs, high))
            # The entries themselves are short, so that both precisions hold the same system.
            self.assertLess(max(abs(x - y) for x, y in zip(low, high, strict=True)), largest * Decimal("1e-29"), name)

    def test_large_systems_are_solved_by_sparse_factors(self):
        n = 1200
        for first in (4, -4, 1):  # definite, negative definite, not symmetric
            entries = [f"{i} {i} {first if i % 2 else 4}" for i in range(1, n + 1)]
            entries += [f"{i} {i - 1} -1" for i in range(2, n + 1)] + [f"{i - 1} {i} {-1 if first != 1 else 2}" for i in range(2, n + 1)]
            matrix = self.write("large.mtx", f"{HEAD}real general\n{n} {n} {len(entries)}\n" + "\n".join(entries) + "\n")
            result = run_json("solve", matrix, "--method", "direct", "--digits", "30")
            self.assertEqual((result["failure"], len(result["value"])), ("", n))
            self.assertLess(max(abs(x - 1) for x in decimals(result["value"])), Decimal("1e-26"))

    def test_the_history_is_that_of_true_residuals(self):
        history = os.path.join(self.folder, "h.csv")
        run_well("solve", matrix_of("west0067"), "--method", "cgs", "--digits", "50", "--tol", "1e-40", "--history", history)
        with open(history, encoding="utf-8") as file:
            rows = list(csv.DictReader(file))
        self.assertEqual([int(row["iteration"]) for row in rows], list(range(1, len(rows) + 1)))
        met = [Decimal(row["residual"]) <= Decimal(row["bound"]) for row in rows]
        self.assertEqual(met.index(True), len(met) - 1)
        thinned = os.path.join(self.folder, "h.json")
        run_well("solve", matrix_of("west0067"), "--method", "cgs", "--digits", "50", "--tol", "1e-40", "--every", "10", "--history", thinned)
        with open(thinned, encoding="utf-8") as file:
            self.assertEqual(json.load(file)["iteration"][:3], [10, 20, 30])

    def test_all_methods_side_by_side(self):
        arguments = ("solve", matrix_of("west0067"), "--method", "all", "--digits", "50", "--tol", "1e-30", "--maxit", "300")
        rows = list(csv.DictReader(io.StringIO(run_well(*arguments, "--format", "csv"))))
        self.assertEqual([row["method"] for row in rows], ["rgmres(30)", "cgs", "bicgstab(2)", "tfqmr", "idrs(4)"])
        self.assertEqual([row["outcome"] for row in rows],
                         ["IFAIL 8: The solution has not converged after 300 iterations."] + 4 * ["solved"])
        for row in rows[1:]:
            self.assertLess(Decimal(row["relative_residual"]), Decimal("1e-28"))

    def test_all_preconditioners_side_by_side(self):
        arguments = ("--precon", "all", "--digits", "40", "--tol", "1e-25")
        rows = list(csv.DictReader(io.StringIO(run_well("solve", matrix_of("bcsstk01"), "--method", "all", *arguments, "--format", "csv"))))
        general = ["rgmres(30)", "fgmres(30)", "cgs", "bicgstab(2)", "tfqmr", "idrs(4)"]
        names = general + ["cg", "minres", "symmlq"]
        expected = [(name, precon) for precon in ("none", "jacobi", "ssor", "ilu", "ic") for name in names
                    if (name, precon) != ("fgmres(30)", "none")]
        self.assertEqual([(row["method"], row["preconditioner"]) for row in rows], expected)
        for row in rows:
            if row["outcome"] == "solved":
                self.assertLess(Decimal(row["relative_residual"]), Decimal("1e-15"))
        self.assertEqual({row["outcome"] for row in rows if row["preconditioner"] in ("ssor", "ilu", "ic")}, {"solved"})
        history = os.path.join(self.folder, "h.csv")
        text = run_well("solve", matrix_of("west0067"), "--method", "cgs", *arguments, "--history", history)
        self.assertIn("# left out: jacobi divides by the diagonal, but row 1 has none", text)
        self.assertIn("# left out: ic is for symmetric and Hermitian matrices", text)
        with open(history, encoding="utf-8") as file:
            self.assertEqual({row["preconditioner"] for row in csv.DictReader(file)}, {"none", "ilu"})
        self.assertEqual(run("solve", matrix_of("west0067"), "--precon", "all", "--format", "mtx").returncode, 2)

    @not_emulated
    def test_pictures_of_histories(self):
        picture = os.path.join(self.folder, "h.svg")
        # Residuals far beyond the range of a double.
        run_well("solve", matrix_of("bcsstk01"), "--method", "all", "--precon", "jacobi", "--digits", "500", "--tol", "1e-450", "--plot", picture)
        with open(picture, encoding="utf-8") as file:
            text = file.read()
        for name in ("rgmres(30)", "cgs", "bicgstab(2)", "tfqmr", "1e-450", "jacobi"):
            self.assertIn(name, text)
        run_well("solve", matrix_of("bcsstk01"), "--method", "direct", "--plot", picture)
        run_well("solve", matrix_of("bcsstk01"), "--method", "all", "--precon", "all", "--maxit", "60", "--tol", "1e-12", "--plot", picture)
        with open(picture, encoding="utf-8") as file:
            text = file.read()
        for name in ("preconditioner none", "preconditioner ilu", "idrs(4)", "minres", "bcsstk01.mtx, 20 digits"):
            self.assertIn(name, text)

    def test_progress(self):
        done = run("solve", matrix_of("bcsstk01"), "--precon", "ssor", "--progress", "--every", "5")
        lines = done.stderr.splitlines()
        self.assertEqual(done.returncode, 0)
        self.assertGreater(len(lines), 1)
        for line in lines:
            self.assertRegex(line, r"^bicgstab: iteration \d+, residual [0-9.e+-]+, to reach [0-9.e+-]+$")

    def test_what_is_not_solved_is_written_and_said(self):
        done = run("solve", matrix_of("west0067"), "--method", "rgmres", "--maxit", "40", "--format", "json")
        self.assertEqual((done.returncode, done.stderr),
                         (1, "quarn: not solved: IFAIL 8: The solution has not converged after 40 iterations.\n"))
        self.assertEqual(len(json.loads(done.stdout)["value"]), 67)

        singular = self.write("s.mtx", HEAD + "real general\n2 2 2\n1 1 1\n2 1 1\n")
        done = run("solve", singular, "--method", "direct")
        self.assertEqual((done.returncode, done.stderr),
                         (1, "quarn: F07ADF/DGETRF: U(2, 2) is exactly zero: the matrix is singular\n"))

    def test_automatic_methods(self):
        head = HEAD + "real symmetric\n"
        matrices = {"cg": head + "2 2 3\n1 1 4\n2 1 1\n2 2 3\n",
                    "minres": head + "2 2 2\n2 1 1\n2 2 3\n",
                    "indefinite": head + "2 2 3\n1 1 1\n2 1 5\n2 2 1\n",
                    "bicgstab": HEAD + "real general\n2 2 4\n1 1 4\n1 2 1\n2 1 2\n2 2 3\n"}
        right_side = self.write("b.csv", "1\n-2\n")
        for name, text in matrices.items():
            with self.subTest(name):
                result = run_json("solve", self.write("a.mtx", text), "--rhs", right_side, "--method", "auto", "--tol", "1e-20",
                                  "--digits", "30")
                self.assertEqual(result["method"], "minres" if name == "indefinite" else name)
                self.assertEqual(result["failure"], "")
                self.assertLess(Decimal(result["relative_residual"]), Decimal("1e-19"))

    def test_symmetric_methods(self):
        for method in ("cg", "minres", "symmlq"):
            result = run_json("solve", matrix_of("bcsstk01"), "--method", method, "--precon", "ssor", "--tol", "1e-25", "--digits", "40")
            self.assertEqual((result["routine"], result["failure"]), ("QuarnMPX_f11bef_", ""))
            self.assertLess(Decimal(result["relative_residual"]), Decimal("1e-20"))
        done = run("solve", matrix_of("west0067"), "--method", "minres", "--format", "json")
        self.assertEqual(done.returncode, 1)
        self.assertRegex(json.loads(done.stdout)["failure"], "^IFAIL 7: Algorithm breakdown at iteration no.")

    def test_fewer_digits_than_the_solvers_work_with(self):
        system = self.write("few.mtx", HEAD + "real symmetric\n3 3 5\n1 1 4\n2 2 4\n3 3 4\n2 1 1\n3 2 -1\n")
        for digits in ("1", "5"):
            for method in ("rgmres", "cg", "minres", "bicgstab"):
                with self.subTest(digits=digits, method=method):
                    done = run("solve", system, "--rhs", "-", "--method", method, "--precon", "jacobi", "--digits", digits,
                               "--format", "csv", stdin="6\n6\n10\n")
                    self.assertEqual(done.returncode, 0, done.stderr)
                    self.assertEqual([Decimal(line.split(",")[1]) for line in done.stdout.split()[1:]], [1, 2, 3])

    def test_what_is_refused(self):
        wide = self.write("w.mtx", HEAD + "real general\n2 3 1\n1 1 1\n")
        square = self.write("q.mtx", HEAD + "real general\n2 2 2\n1 1 1\n2 1 1\n")
        help_line = " (quarn solve --help shows what there is)"
        for arguments, status, complaint in (
                ((wide,), 2, f"quarn: {wide}: 2 by 3, but a system needs a square matrix"),
                ((square, "--rhs", "-"), 2, f"quarn: {square}: order 2, but the right side has 3 numbers"),
                ((square, "--precon", "ssor"), 2, f"quarn: {square}: --precon ssor divides by the diagonal, but row 2 has none"),
                ((square, "--precon", "all", "--method", "direct"), 2, "quarn: --precon is for iterative methods: not with --method direct"),
                ((square, "--precon", "ilu", "--proven"), 2, "quarn: --precon is for iterative methods: not with --proven and --certificate"),
                ((square, "--error", "--working-digits", "9"), 2, "quarn: --error shows the bounds of a proof, and --working-digits makes none"),
                ((square, "--tol", "small"), 2, "quarn: --tol: 'small' is not a number"),
                ((square, "--tol", "1"), 2, "quarn: --tol: must be below 1"),
                ((square, "--precon", "jacobi", "--omega", "2"), 2, "quarn: --omega: must lie between 0 and 2"),
                (("-", "--rhs", "-"), 2, "quarn: only one of MATRIX and --rhs can be standard input"),
                ((square, "--method", "all", "--format", "mtx"), 2, "quarn: --method all gives a comparison, which is no matrix"),
                ((square, "--method", "gmres"), 2,
                 "quarn: --method: 'gmres' is not rgmres, fgmres, cgs, bicgstab, tfqmr, idrs, cg, minres, symmlq, all, auto or direct" + help_line),
                ((square, "--restart", "101"), 2, "quarn: --restart: Value 101 not in range 1 to 100" + help_line),
                ((matrix_of("west0067"), "--method", "rgmres", "--restart", "51"), 2, "quarn: --restart: of --method rgmres 50 at most")):
            with self.subTest(arguments=arguments):
                done = run("solve", *arguments, stdin="1\n2\n3\n")
                self.assertEqual((done.returncode, done.stdout, done.stderr), (status, "", complaint + "\n"))


if __name__ == "__main__":
    unittest.main()
