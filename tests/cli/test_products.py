"""spmv against a product of exact fractions, and what it makes of its two files."""

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
            for symmetry in ("general", "symmetric", *{"pattern": (), "complex": ("skew-symmetric", "hermitian")}.get(field, ("skew-symmetric",))):
                with self.subTest(seed=seed, field=field, symmetry=symmetry), tempfile.TemporaryDirectory() as folder:
                    n, entries = 9, []
                    for _ in range(40):
                        i, j = chance.randint(1, n), chance.randint(1, n)
                        if symmetry != "general":
                            i, j = max(i, j), min(i, j)
                        if symmetry != "skew-symmetric" or i != j:
                            entries.append([str(i), str(j)] + [number(field) for _ in range({"pattern": 0, "complex": 2}.get(field, 1))])
                            if symmetry == "hermitian" and i == j:
                                entries[-1][3] = "0"
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

    def test_a_malformed_file_is_named_with_its_line(self):
        done, file = self.product(HEAD + "real general\n2 2 1\n1 1 x\n", "1\n2\n")
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(done.stderr, f"quarn: {file}:3: 'x' is not a number\n")

    def test_vectors_of_every_kind(self):
        matrix = "%%MatrixMarket matrix array complex hermitian\n2 2\n1 0\n0 2\n3 0\n"
        for vector, options in (("1\n1-i\n", []), ("a,b\n1,5\n1-i,6\n", ["--column", "a"]), ("[\"1\", \"1-1i\"]", []),
                                ("real,imaginary\n1,0\n1,-1\n", []),
                                ("%%MatrixMarket matrix array complex general\n2 1\n1 0\n1 -1\n", []),
                                ("%%MatrixMarket matrix coordinate complex general\n2 2 2\n1 2 1 0\n2 2 1 -1\n", ["--column", "2"])):
            with self.subTest(vector):
                done, _ = self.product(matrix, vector, *options, "--format", "csv")
                # [1, -2i; 2i, 3] [1, 1-i]
                self.assertEqual((done.stderr, done.stdout), ("", "i,real,imaginary\n1,-1,-2\n2,3,-1\n"))

    def test_transpose(self):
        entries = "2 2 3\n1 1 1 2\n1 2 3 4\n2 2 5 6\n"
        real = "2 2 3\n1 1 1\n1 2 3\n2 2 5\n"
        for matrix, y in ((HEAD + "complex general\n" + entries, [("1", "-2"), ("13", "-16")]),
                          (HEAD + "real general\n" + real, [("1",), ("13",)]),
                          (HEAD + "real symmetric\n2 2 3\n1 1 1\n2 1 3\n2 2 5\n", [("7",), ("13",)])):
            with self.subTest(matrix):
                done, _ = self.product(matrix, "1\n2\n", "--transpose", "--format", "csv")
                self.assertEqual([tuple(line.split(",")[1:]) for line in done.stdout.splitlines()[1:]], y)

    def test_shapes_must_fit(self):
        for vector in ("1\n", "1\n2\n3\n"):
            self.assertEqual(self.product(HEAD + "real general\n2 2 1\n1 1 1\n", vector)[0].returncode, 2)


if __name__ == "__main__":
    unittest.main()
