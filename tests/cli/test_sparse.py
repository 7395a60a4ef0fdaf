"""sparse: canonical forms against a dictionary of exact fractions, in every written form."""

import itertools
import json
import os
import random
import resource
import tempfile
import unittest
from decimal import localcontext
from fractions import Fraction

from console import DATA, EMULATOR, not_emulated, pi, run, run_json, run_well, sine_and_cosine, untrue

HEAD = "%%MatrixMarket matrix coordinate "


def canonical(entries, duplicates, zeros):
    """Sorted triples; entries are triples (row, column, value) in the order given."""
    kept = {}
    for i, j, value in entries:
        if (i, j) not in kept:
            kept[i, j] = value
        elif duplicates == "sum":
            kept[i, j] += value
    return sorted((i, j, value) for (i, j), value in kept.items() if zeros == "keep" or value != 0)


class Sparse(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.file = os.path.join(folder.name, "a.mtx")
        self.written = os.path.join(folder.name, "b.mtx")

    def write(self, kind, rows, columns, lines):
        with open(self.file, "w", encoding="utf-8") as stream:
            stream.write(f"{HEAD}{kind}\n{rows} {columns} {len(lines)}\n" + "".join(line + "\n" for line in lines))

    def test_canonical_forms(self):
        seed = random.randrange(2 ** 32)
        chance = random.Random(seed)
        for kind, duplicates, zeros in itertools.product(
                ("real general", "integer general", "complex general", "real symmetric", "complex hermitian", "real skew-symmetric",
                 "complex symmetric"), ("sum", "remove"), ("keep", "remove")):
            field, symmetry = kind.split()
            with self.subTest(seed=seed, kind=kind, duplicates=duplicates, zeros=zeros):
                rows = chance.randint(2, 9)
                columns = chance.randint(2, 9) if symmetry == "general" else rows
                entries = []
                for _ in range(chance.randint(0, 60)):
                    i, j = chance.randint(1, rows), chance.randint(1, columns)
                    if symmetry != "general":
                        i, j = max(i, j), min(i, j)
                    if symmetry == "skew-symmetric" and i == j:
                        continue
                    # Few values, so that sums are often zero. The parts of a complex number stand in one exact number.
                    real, imaginary = chance.randint(-2, 2), chance.randint(-1, 1) if field == "complex" else 0
                    if symmetry == "hermitian" and i == j:
                        imaginary = 0
                    entries.append((i, j, real + Fraction(imaginary, 1000)))
                split = lambda v: (round(v), (v - round(v)) * 1000)
                self.write(kind, rows, columns, [f"{i} {j} " + (f"{split(v)[0]} {split(v)[1]}" if field == "complex" else str(v))
                                                 for i, j, v in entries])
                expected = canonical(entries, duplicates, zeros)
                options = ["--dup", duplicates, "--zero", zeros]
                result = run_json("sparse", self.file, *options)
                values = [Fraction(t) for t in result["real" if field == "complex" else "value"]]
                if field == "complex":
                    values = [v + Fraction(t) / 1000 for v, t in zip(values, result["imaginary"], strict=True)]
                self.assertEqual(list(zip(result["row"], result["column"], values, strict=True)), expected)
                self.assertEqual((result["entries_read"], result["entries"], result["symmetry"]), (len(entries), len(expected), symmetry))
                # Written as a file and read again it is its own canonical form.
                run_well("sparse", self.file, *options, "--output", self.written)
                again = run_json("sparse", self.written, *options)
                for key in ("row", "column", "value", "real", "imaginary", "field"):
                    self.assertEqual(again.get(key), result.get(key))

    def test_no_digit_is_lost(self):
        long = "1.23456789012345678901234567890123456789e-300"
        self.write("real general", 1, 1, ["1 1 " + long])
        self.assertIn("\n1 1 " + long + "\n", run_well("sparse", self.file, "--digits", "60", "--format", "mtx"))

    def test_failing_on_what_is_found(self):
        for kind, lines, options, routine, words in (
                ("real general", ["2 1 1", "2 1 2"], ["--dup", "fail"], "F11ZAF", "a duplicate entry"),
                ("real symmetric", ["2 1 1", "2 1 2"], ["--dup", "fail"], "F11ZAF", "a duplicate entry"),
                ("complex hermitian", ["2 1 0 0"], ["--zero", "fail"], "F11ZNF", "a zero entry")):
            with self.subTest(kind):
                self.write(kind, 2, 2, lines)
                done = run("sparse", self.file, *options)
                complaint = f"quarn: {routine}: On entry, {words} has been found in row I and column J: I = 2, J = 1.\n"
                self.assertEqual((done.returncode, done.stdout, done.stderr), (1, "", complaint))

    def test_summary(self):
        self.write("real symmetric", 4, 4, ["4 1 3e-2", "1 1 -20", "4 4 5"])
        result = run_json("sparse", self.file, "--expand")
        self.assertEqual([result[key] for key in ("lower_bandwidth", "upper_bandwidth", "most_in_a_row", "empty_rows", "on_the_diagonal")],
                         [3, 3, 2, 2, 2])
        self.assertIn("magnitudes from 0.03 to 20\n", run_well("sparse", self.file))

    @not_emulated
    def test_memory_follows_the_entries_whatever_the_order(self):
        order = 2000000000
        text = f"%%MatrixMarket matrix coordinate real general\n{order} {order} 3\n{order} 7 1\n5 {order} 2\n{order} 7 3\n"
        result = run_json("sparse", "-", stdin=text)
        self.assertEqual((result["row"], result["column"], result["value"]), ([5, order], [order, 7], ["2", "4"]))
        self.assertEqual((result["upper_bandwidth"], result["empty_rows"]), (order - 5, order - 2))
        done = run("solve", "-", stdin=text)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertRegex(done.stderr, rf"^quarn: a system of order {order} at 20 digits needs \d+\.\d GB of memory, this machine")
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss, 2 ** 20)  # of kilobytes

    def test_sums_of_duplicates_are_those_of_their_numbers(self):
        self.write("real general", 2, 2, ["1 1 1e30", "1 1 1", "1 1 -1e30", "2 2 5"])  # at 20 digits the 1 is hidden
        self.assertEqual(run_json("sparse", self.file)["value"], ["1", "5"])
        self.assertEqual(run_json("solve", self.file, "--method", "direct", "--working-digits", "20")["value"], ["1", "1"])
        self.assertEqual([value[:2] for value in run_json("eig", self.file, "--working-digits", "20")["real"]], ["5", "1"])

    def test_sums_of_a_pattern_are_integers(self):
        self.write("pattern general", 2, 2, ["1 2", "1 2", "2 1"])
        self.assertTrue(run_well("sparse", self.file, "--format", "mtx").startswith(HEAD + "integer general\n"))
        self.assertTrue(run_well("sparse", self.file, "--format", "mtx", "--dup", "remove").startswith(HEAD + "pattern general\n"))

    def test_tables_are_matrices_too_and_entries_are_none(self):
        data = run_json("sparse", "-", stdin="4,0\n1,3-i\n")
        self.assertEqual([data[name] for name in ("row", "column", "real", "imaginary")],
                         [[1, 2, 2], [1, 1, 2], ["4", "1", "3"], ["0", "0", "-1"]])
        self.assertEqual(run_json("solve", "-", "--method", "direct", stdin="4 0\n1 3\n")["value"], ["1", "1"])
        entries = run_well("sparse", "-", "--output", "-", "--format", "csv", stdin="4,0\n1,3\n")
        done = run("lu", "-", stdin=entries)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertIn("entries of a sparse matrix", done.stderr)

    def test_factors(self):
        def factors(text, kind, *options):
            result = run_json("sparse", "-", "--factors", kind, *options, stdin=f"%%MatrixMarket matrix coordinate real {text}")
            return {(i, j): Fraction(x) for i, j, x in zip(result["row"], result["column"], result["value"], strict=True)}

        general = "general\n3 3 6\n1 1 4\n1 2 1\n2 1 2\n2 2 3\n3 1 1\n3 3 2\n"
        # U, and L below its diagonal; the place (3, 2) fills in.
        kept = {(1, 1): 4, (1, 2): 1, (2, 1): Fraction(1, 2), (2, 2): Fraction(5, 2), (3, 1): Fraction(1, 4), (3, 3): 2}
        self.assertEqual(factors(general, "ilu"), kept)
        self.assertEqual(factors(general, "ilu", "--fill", "1"), {**kept, (3, 2): Fraction(-1, 10)})
        complete = factors(general, "lu")
        product = 1
        for k in (1, 2, 3):
            product *= complete[k, k]
        self.assertLess(abs(abs(product) - 20), Fraction(1, 10 ** 17))  # the determinant
        symmetric = "symmetric\n2 2 3\n1 1 4\n2 1 2\n2 2 3\n"
        for kind in ("ic", "cholesky"):
            found = factors(symmetric, kind)
            self.assertEqual(sorted(found), [(1, 1), (2, 1), (2, 2)])
            self.assertLess(abs(found[1, 1] * found[2, 2] - 8), Fraction(1, 10 ** 17))
            done = run("sparse", "-", "--factors", kind, stdin=f"%%MatrixMarket matrix coordinate real {general}")
            self.assertEqual((done.returncode, done.stderr), (2, f"quarn: standard input: --factors {kind} is for symmetric and Hermitian matrices\n"))
        done = run("sparse", "-", "--factors", "lu", stdin="%%MatrixMarket matrix coordinate real general\n2 3 1\n1 1 1\n")
        self.assertEqual((done.returncode, done.stderr), (2, "quarn: standard input: 2 by 3, but --factors needs a square matrix\n"))
        # P A Q = L U and P A P^T = L D L^T by the orders that are written, of a matrix whose entries come in two parts.
        parts = {(i, j): Fraction(x) for i, j, x in ((1, 3, 2), (1, 1, 1), (2, 2, 5), (3, 1, 2), (4, 2, 1), (2, 4, 1), (4, 4, 3), (3, 3, 9))}
        text = "".join(f"{i} {j} {float(x / 2)}\n" for i, j, x in ((*place, x) for place, x in parts.items()) for _ in range(2))
        for kind in ("lu", "cholesky", "ilu", "ic"):
            picture = [] if EMULATOR else ["--plot", self.written + ".svg"]
            done = run("sparse", "-", "--factors", kind, "--permutation", self.written + ".json", "--format", "csv", *picture,
                       stdin=f"{HEAD}real general\n4 4 16\n{text}")
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            found = {(int(i), int(j)): Fraction(x) for i, j, x in (line.split(",") for line in done.stdout.split()[1:])}
            upper = {(i, j): x for (i, j), x in found.items() if i <= j} if kind.endswith("lu") else {
                (i, j): found[i, i] * (1 if i == j else found[j, i]) for i in range(1, 5) for j in range(i, 5) if (j, i) in found}
            lower = {**{(i, j): x for (i, j), x in found.items() if i > j}, **{(i, i): 1 for i in range(1, 5)}}
            with open(self.written + ".json", encoding="utf-8") as stream:
                order = json.load(stream)
            for i, j in itertools.product(range(1, 5), repeat=2):
                product = sum(lower.get((i, k), 0) * upper.get((k, j), 0) for k in range(1, 5))
                place = (order["row"][i - 1], order["column"][j - 1])
                self.assertLess(abs(product - parts.get(place, 0)), Fraction(1, 10 ** 18), kind)
            if picture:
                with open(self.written + ".svg", encoding="utf-8") as stream:
                    self.assertIn(": 8 entries", stream.read())  # each place once
        for options, complaint in ((["lu", "--dup", "sum"], "--dup, --zero and --expand do not go with --factors"),
                                   (["ilu", "--zero", "keep"], "--dup, --zero and --expand do not go with --factors"),
                                   (["ic", "--expand"], "--dup, --zero and --expand do not go with --factors"),
                                   (["lu", "--fill", "0"], "lu has all its fill"), (["cholesky", "--drop", "1"], "cholesky has all its fill"),
                                   (["ilu", "--fill", "1", "--drop", "1"], "exclude each other"),
                                   (["", "--fill", "1"], "are for --factors"), (["", "--drop", "1"], "are for --factors"),
                                   (["", "--permutation", "p.csv"], "are for --factors")):
            done = run("sparse", "-", *(["--factors"] if options[0] else []), *filter(None, options), stdin=f"{HEAD}real {general}")
            self.assertEqual((done.returncode, done.stdout), (2, ""), options)
            self.assertIn(complaint, done.stderr)
        text = run_well("sparse", os.path.join(DATA, "bcsstk01.mtx"), "--factors", "cholesky", "--plot", "-")
        self.assertIn("bcsstk01.mtx: 400 entries", text)
        self.assertIn("cholesky, L: 493 entries", text)

    def test_few_eigenvalues(self):
        n = 60
        self.write("real symmetric", n, n, [f"{i} {i} 2" for i in range(1, n + 1)] + [f"{i + 1} {i} -1" for i in range(1, n)])
        with localcontext() as context:
            context.prec = 80
            step = pi() / (n + 1)
            exact = [2 - 2 * sine_and_cosine(k * step)[1] for k in range(1, n + 1)]
            cases = [(["--near", "0"], exact[:3]), (["--near", "1"], sorted(exact, key=lambda x: abs(x - 1))[:3]),
                     (["--which", "smallest-real"], exact[:3]), ([], exact[:-4:-1]), (["--which", "both-ends"], [exact[0], *exact[-2:]])]
        for options, expected in cases:
            for digits in ("2", "30"):
                result = run_json("eig", self.file, "--count", "3", "--digits", digits, *options)
                self.assertEqual(result["imaginary"], ["0"] * 3)
                for text, value, error in zip(result["real"], expected, result["error"], strict=True):
                    self.assertIsNone(untrue(text, value, int(digits), error), options)
        text = run_well("eig", self.file, "--count", "2", "--near", "4", "--error", "--vectors", "--plot", "-")
        for words in ("# 2 eigenvalues of the 60 by 60 matrix in", "nearest to 4\n", "# 20 digits of an eigenvalue each, proven (worked with",
                      "# an estimate: that these are the ones", "error: so far away is the exact value at most", "x60"):
            self.assertIn(words, text)
        once = run_json("eig", self.file, "--count", "1", "--working-digits", "15", "--digits", "20")
        self.assertEqual(once["working_digits"], 15)
        self.assertTrue(8 < once["true_digits"] <= 15)
        # The one that --near names, of a multiple one too; a skew one, whose values are imaginary; a triangle's are known.
        self.assertEqual(run_json("eig", "-", "--count", "2", "--near", "2", stdin="1 0 0\n0 2 0\n0 0 2\n")["real"], ["2", "2"])
        skew = f"{HEAD}real skew-symmetric\n4 4 2\n2 1 3\n4 3 5\n"
        result = run_json("eig", "-", "--count", "2", stdin=skew)
        self.assertEqual((result["real"], sorted(result["imaginary"])), (["0", "0"], ["-5", "5"]))
        self.assertEqual(run_json("eig", "-", "--count", "1", "--near", "1+3i", stdin=skew)["imaginary"][0], "3")
        triangle = "".join(" ".join(str((i * j) % 7 - 3 if j > i else i + 1 if i == j else 0) for j in range(40)) + "\n" for i in range(40))
        for options, expected in (([], ["40", "39", "38"]), (["--which", "smallest-real", "--digits", "40"], ["1", "2", "3"]),
                                  (["--near", "7.2"], ["7", "8", "6"])):
            result = run_json("eig", "-", "--count", "3", *options, stdin=triangle)
            self.assertEqual((result["real"], result["imaginary"]), (expected, ["0"] * 3))
            self.assertNotIn("error", result)
        hermitian = run_json("eig", "-", "--count", "1", stdin=f"{HEAD}complex hermitian\n2 2 1\n2 1 3 -4\n")
        self.assertEqual((hermitian["routine"], hermitian["real"][0].lstrip("-")), ("QuarnMPX_zeigsh_", "5"))

    def test_few_singular_values(self):
        whole = run_json("svd", os.path.join(DATA, "west0067.mtx"), "--digits", "30")["value"]
        few = run_json("svd", os.path.join(DATA, "west0067.mtx"), "--digits", "30", "--count", "4")
        self.assertEqual(few["value"], whole[:4])
        self.assertEqual(few["routine"], "QuarnMPX_dsvds_")
        wide = "1 2 3\n4 5 6\n"
        self.assertEqual(run_json("svd", "-", "--count", "2", "--which", "smallest", stdin=wide)["value"], run_json("svd", "-", stdin=wide)["value"])
        self.assertIn("a value that may be 0 has no bound", run_well("svd", "-", "--count", "2", stdin="1 1\n1 1\n1 1\n"))
        u, v = (run_json("svd", "-", "--count", "1", "--factor", part, stdin=f"{HEAD}complex general\n2 3 1\n2 3 0 2\n") for part in "uv")
        size = [Fraction(x["real"][-1]) ** 2 + Fraction(x["imaginary"][-1]) ** 2 for x in (u, v)]
        self.assertLess(max(abs(x - 1) for x in size), Fraction(1, 10 ** 18))

    def test_what_few_values_refuse(self):
        for command, options, complaint in (
                ("eig", ["--near", "1"], "--near and --which are for --count"), ("svd", ["--which", "largest"], "--near and --which are for --count"),
                ("eig", ["--count", "1", "--near", "1", "--which", "largest"], "--near and --which exclude each other"),
                ("eig", ["--count", "1", "--near", "i"], "are real"), ("eig", ["--count", "1", "--near", "x"], "'x' is not a number"),
                ("eig", ["--count", "1", "--which", "largest-imaginary"], "its eigenvalues are real"),
                ("eig", ["--count", "1", "--proven"], "--proven and --certificate are for all values"),
                ("svd", ["--count", "1", "--certificate", "c"], "--proven and --certificate are for all values"),
                ("eig", ["--count", "1", "--condition"], "--count does not go with")):
            done = run(command, "-", *options, stdin="2 1\n1 3\n")
            self.assertEqual((done.returncode, done.stdout), (2, ""), options)
            self.assertIn(complaint, done.stderr)
        self.assertIn("both-ends is for symmetric", run("eig", "-", "--count", "1", "--which", "both-ends", stdin="2 1\n0 3\n").stderr)
        self.assertIn("2 by 1, but a square matrix is needed", run("eig", "-", "--count", "1", stdin="2\n1\n").stderr)
        done = run("eig", "-", "--count", "3", stdin="2 1\n1 3\n")
        self.assertEqual((done.returncode, done.stderr), (1, "quarn: DEIGSH: 3 eigenvalues of a matrix of order 2\n"))

    @not_emulated
    def test_a_picture_has_a_tile_for_each_place(self):
        picture = self.written.replace(".mtx", ".svg")
        for name, tiles in (("west0067", 294), ("bcsstk01", 400), ("fs_183_1", 1069)):
            run_well("sparse", os.path.join(DATA, name + ".mtx"), "--plot", picture)
            with open(picture, encoding="utf-8") as file:
                self.assertEqual(file.read().count("<polygon fill"), tiles)


if __name__ == "__main__":
    unittest.main()
