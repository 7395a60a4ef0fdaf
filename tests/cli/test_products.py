"""spmv against a product of exact fractions, and what the matrix reader says of malformed files."""

import os
import random
import tempfile
import unittest
from fractions import Fraction

from console import run, run_json

HEAD = "%%MatrixMarket matrix coordinate "


def exact_product(field, symmetry, n, entries, x):
    """y as pairs (real, imaginary) of fractions; entries are words."""
    y = [(Fraction(0), Fraction(0))] * n

    def add(i, j, re, im):
        a, b = x[j]
        y[i] = (y[i][0] + re * a - im * b, y[i][1] + re * b + im * a)

    for words in entries:
        i, j = int(words[0]) - 1, int(words[1]) - 1
        re = Fraction(words[2]) if field != "pattern" else Fraction(1)
        im = Fraction(words[3]) if field == "complex" else Fraction(0)
        add(i, j, re, im)
        if symmetry != "general" and i != j:
            add(j, i, *{"symmetric": (re, im), "skew-symmetric": (-re, -im), "hermitian": (re, -im)}[symmetry])
    return y


class Products(unittest.TestCase):
    def product(self, matrix, vector, *options):
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "a.mtx")
            with open(file, "w", encoding="utf-8") as stream:
                stream.write(matrix)
            return run("spmv", file, "-", *options, stdin=vector), file

    def test_every_field_and_symmetry(self):
        seed = random.randrange(2 ** 32)
        chance = random.Random(seed)
        number = lambda field: str(chance.randint(-99, 99)) if field == "integer" else f"{chance.randint(-10**25, 10**25)}e-20"
        for field in ("real", "complex", "integer", "pattern"):
            for symmetry in ("general", "symmetric", "skew-symmetric") + (("hermitian",) if field == "complex" else ()):
                with self.subTest(seed=seed, field=field, symmetry=symmetry), tempfile.TemporaryDirectory() as folder:
                    n, entries = 9, []
                    for _ in range(40):
                        i, j = chance.randint(1, n), chance.randint(1, n)
                        if symmetry != "general":
                            i, j = max(i, j), min(i, j)
                        if symmetry != "skew-symmetric" or i != j:
                            entries.append([str(i), str(j)] + [number(field) for _ in range({"pattern": 0, "complex": 2}.get(field, 1))])
                    file = os.path.join(folder, "a.mtx")
                    with open(file, "w", encoding="utf-8") as stream:
                        stream.write(f"{HEAD}{field} {symmetry}\n% text\n\n{n} {n} {len(entries)}\n")
                        stream.writelines(" ".join(words) + "\n" for words in entries)
                    x = [(number("real"), number("real") if field == "complex" else "0") for _ in range(n)]
                    vector = "real,imaginary\n" if field == "complex" else ""
                    vector += "\n".join(",".join(pair) if field == "complex" else pair[0] for pair in x)
                    result = run_json("spmv", file, "-", "--digits", "80", stdin=vector)
                    expected = exact_product(field, symmetry, n, entries, [tuple(map(Fraction, pair)) for pair in x])
                    self.assertEqual([Fraction(t) for t in result["real" if field == "complex" else "value"]], [y[0] for y in expected])
                    if field == "complex":
                        self.assertEqual([Fraction(t) for t in result["imaginary"]], [y[1] for y in expected])

    def test_malformed_files(self):
        good = HEAD + "real general\n2 2 1\n"
        for text, line, reason in (("", 1, "the first line"), (HEAD + "real odd\n", 1, "'odd' is not"),
                                   (HEAD + "real hermitian\n", 1, "must be complex"), (HEAD + "real general\n2 2\n", 2, "numbers of rows"),
                                   (HEAD + "real symmetric\n2 3 1\n", 2, "square"), (good, 3, "ends after 0 of 1"),
                                   (good + "1 3 1\n", 3, "column '3'"), (good + "0 1 1\n", 3, "row '0'"),
                                   (good + "1 1 x\n", 3, "'x' is not a number"), (good + "1 1\n", 3, "2 words"),
                                   (good + "1 1 1\n1 2 1\n", 4, "more than the 1"),
                                   (HEAD + "integer general\n2 2 1\n1 1 1.5\n", 3, "whole number"),
                                   (HEAD + "real skew-symmetric\n2 2 1\n1 1 1\n", 3, "outside the triangle")):
            with self.subTest(text):
                done, file = self.product(text, "1\n2\n")
                self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (2, "", 1))
                self.assertTrue(done.stderr.startswith(f"quarn: {file}:{line}: ") and reason in done.stderr, done.stderr)

    def test_shapes_must_fit(self):
        for vector in ("1\n", "1\n2\n3\n"):
            self.assertEqual(self.product(HEAD + "real general\n2 2 1\n1 1 1\n", vector)[0].returncode, 2)


if __name__ == "__main__":
    unittest.main()
