"""Certificates: what the console writes is confirmed by it and by the checker of Python, and nothing else is."""

import codecs
import contextlib
import copy
import gzip
import io
import json
import os
import pathlib
import random
import sys
import tempfile
import unittest
from decimal import Decimal, localcontext
from fractions import Fraction

from console import run, run_json, run_well

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "python/tesk2mp"))
import verify_certificate as checker  # noqa: E402

SEED = int(os.environ.get("TESK_SEED") or random.randrange(10**9))
HILBERT = "\n".join(" ".join(str(Decimal(27720) / (i + j + 1)) for j in range(5)) for i in range(5))
GODUNOV = """289 2064 336 128 80 32 16
1152 30 1312 512 288 128 32
-29 -2000 756 384 1008 224 48
512 128 640 0 640 512 128
1053 2256 -504 -384 -756 800 208
-287 -16 1712 -128 1968 -30 2032
-2176 -287 -1565 -512 -541 -1152 -289
"""
DEFECTIVE = "5 4 2 1\n0 1 -1 -1\n-1 -1 3 0\n1 1 -1 2\n"  # eigenvalues 1, 2, 4, 4, the last one defective
COMPLEX = "2 1+i 0.5\n1-2i 3 -i\n0 1e-8 1\n"
HERMITIAN = "2 1+i 0\n1-i 3 -2i\n0 2i 1e-12\n"
TALL = "1 2\n3 4\n5 6.000000000000000000001\n"
PROBLEMS = {
    "solution": (["solve", "-", "--digits", "30"], HILBERT),
    "complex solution": (["solve", "-"], COMPLEX),
    "inverse": (["inv", "-"], HILBERT),
    "complex inverse": (["inv", "-", "--digits", "2"], COMPLEX),
    "determinant": (["det", "-", "--digits", "50"], HILBERT),
    "complex determinant": (["det", "-"], COMPLEX),
    "eigenvalues": (["eig", "-", "--digits", "25"], GODUNOV),
    "defective eigenvalues": (["eig", "-"], DEFECTIVE),
    "complex eigenvalues": (["eig", "-", "--digits", "40"], COMPLEX),
    "pairs of eigenvalues": (["eig", "-", "--digits", "1"], "0 1 0\n-1 0 0\n1 0 2\n"),
    "symmetric eigenvalues": (["eig", "-"], HILBERT),
    "Hermitian eigenvalues": (["eig", "-", "--digits", "3"], HERMITIAN),
    "singular values": (["svd", "-"], TALL),
    "complex singular values": (["svd", "-", "--digits", "30"], COMPLEX),
    "zeros": (["zeros", "1", "-10", "35", "-50", "24"], ""),
    "multiple zeros": (["zeros", "1", "-3", "3.25", "-1.5", "0.25", "--digits", "15"], ""),
    "complex zeros": (["zeros", "1", "2i", "-3+i", "0", "0"], ""),
}
ANSWERS = {"solution": "x", "inverse": "x", "determinant": "determinant"}


def python_says(certificate) -> tuple:
    try:
        return 0, checker.check(certificate if isinstance(certificate, str) else json.dumps(certificate))
    except checker.Refuted as error:
        return 1, str(error)
    except checker.Malformed as error:
        return 2, str(error)


def console_says(certificate) -> tuple:
    done = run("verify", "-", stdin=certificate if isinstance(certificate, str) else json.dumps(certificate))
    return done.returncode, (done.stdout or done.stderr).strip()


def certificates():
    with tempfile.TemporaryDirectory() as folder:
        for name, (arguments, stdin) in PROBLEMS.items():
            file = os.path.join(folder, "certificate.json")
            result = run_json(*arguments, "--certificate", file, stdin=stdin)
            yield name, result, json.loads(pathlib.Path(file).read_text(encoding="utf-8"))


def numbers_of(part, path=()):
    """Where the texts of a part are."""
    for k, each in enumerate(part):
        yield from numbers_of(each, (*path, k)) if isinstance(each, list) else [((*path, k), each)]


def changed(certificate, name, path, text):
    result = copy.deepcopy(certificate)
    rows = result[name]
    for k in path[:-1]:
        rows = rows[k]
    rows[path[-1]] = text
    return result


def fractions(text):
    """Both parts of a number."""
    return [Fraction(part or "0") for part in checker.NUMBER.fullmatch(text).groups()]


def plus(text, amount):
    """The first part of a number, with something added exactly."""
    (whole, power), _ = checker.parsed(text, "")
    rest = text[len(checker.NUMBER.fullmatch(text)[1]):]
    with localcontext() as context:
        context.prec = 2000
        return f"{Decimal(whole).scaleb(power) + Decimal(amount):e}{rest}"


class Certificates(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        print(f"TESK_SEED={SEED}")
        random.seed(SEED)
        cls.all = list(certificates())

    def refused(self, certificate, what):
        for says in (python_says, console_says):
            status, text = says(certificate)
            self.assertEqual(status, 1, (what, says.__name__, text))
            self.assertRegex(text, "fails|not apart|not proven|not below|count|not alone", what)

    def test_what_is_written_holds(self):
        for name, result, certificate in self.all:
            kind = certificate["certificate"]
            self.assertIn(kind, name.replace("defective ", "").replace("pairs of ", "").replace("Hermitian", "symmetric"))
            self.assertEqual(python_says(certificate)[0], 0, (name, python_says(certificate)))
            self.assertEqual(console_says(certificate)[0], 0, (name, console_says(certificate)))
            # The answer is what was printed, its bounds as well.
            if kind == "determinant":
                self.assertEqual([result["determinant"], result["error"]],
                                 [certificate["determinant"], certificate["errors"]], name)
            elif "values" in certificate:
                printed = result["value"] if "value" in result else result["real"]
                self.assertEqual(printed, [checker.NUMBER.fullmatch(text)[1] for text in certificate["values"]], name)
                if name == "defective eigenvalues":  # equal ones have smaller bounds than discs can have
                    bounds = zip(result["error"], certificate["errors"])
                    self.assertTrue(all(float(x) <= float(y) for x, y in bounds), name)
                else:
                    # Discs do not show that an eigenvalue is exactly 0.
                    both = zip(result["error"], certificate["errors"])
                    zero = name == "eigenvalues"
                    claimed = [x if zero and x == "0" and Decimal(y) < Decimal("1e-40") else y for x, y in both]
                    self.assertEqual(result["error"], claimed, name)
            elif kind == "solution":
                self.assertEqual(result["value"] if "value" in result else result["real"],
                                 [checker.NUMBER.fullmatch(text)[1] for text in certificate["x"]])
                self.assertEqual(result["error"], certificate["errors"])

    def test_the_answer_is_near_the_exact_one(self):
        # 27720 times Hilbert's matrix, solved by fractions.
        certificate = next(certificate for name, _, certificate in self.all if name == "inverse")
        rows = [[Fraction(text) for text in row] for row in certificate["a"]]
        for i, row in enumerate(rows):
            for j in range(5):
                image = sum(x * Fraction(certificate["x"][k][j]) for k, x in enumerate(row))
                room = sum(abs(x) * Fraction(certificate["errors"][k][j]) for k, x in enumerate(row))
                self.assertLessEqual(abs(image - (i == j)), room)

    def test_false_answers_are_refused(self):
        for name, _, certificate in self.all:
            answer = ANSWERS.get(certificate["certificate"], "values")
            errors = dict(numbers_of(certificate["errors"]))
            places = list(numbers_of(certificate[answer]))
            for path, text in random.sample(places, min(3, len(places))):
                amount = 3 * Decimal(errors[path]) or Decimal("1e-30")
                self.refused(changed(certificate, answer, path, plus(text, amount)), f"{name}: another answer")
            # Bounds below what the proof shows; of an answer that is exact that may be nothing.
            path = random.choice(list(errors))
            if Decimal(dict(numbers_of(certificate["near_errors"]))[path]) != 0:
                self.refused(changed(certificate, "errors", path, "0"), f"{name}: no error")
            path, text = random.choice(list(numbers_of(certificate["near_errors"])))
            if Decimal(text) != 0:
                self.refused(changed(certificate, "near_errors", path, f"{Decimal(text) / 10**9:e}"),
                             f"{name}: a smaller bound of the proof")

    def test_other_problems_are_refused(self):
        for name, _, certificate in self.all:
            if certificate["certificate"] == "symmetric eigenvalues":
                continue  # one changed element is not Hermitian
            path, text = random.choice(list(numbers_of(certificate["a"])))
            self.refused(changed(certificate, "a", path, plus(text, "0.01")), f"{name}: a({path})")
            if "b" in certificate:
                path, text = random.choice(list(numbers_of(certificate["b"])))
                self.refused(changed(certificate, "b", path, plus(text, "0.01")), f"{name}: b")

    def test_other_proofs_are_refused_or_hold(self):
        # Whatever is changed in a proof, the two checkers agree, and a proof that still holds is one.
        for name, _, certificate in self.all:
            answer = dict(numbers_of(certificate[ANSWERS.get(certificate["certificate"], "values")]))
            errors = dict(numbers_of(certificate["errors"]))
            for part in set(certificate) - {"certificate", "a", "b", "x", "errors", "values", "determinant"}:
                path, text = random.choice(list(numbers_of(certificate[part])))
                for new in (plus(text, "1"), plus(text, "1e-3"), plus(text, "-1e-60"), "0"):
                    tampered = changed(certificate, part, path, new)
                    says = python_says(tampered), console_says(tampered)
                    what = (name, part, path, new, says)
                    self.assertEqual(says[0][0], says[1][0], what)
                    if fractions(new) == fractions(text):
                        self.assertEqual(says[0][0], 0, what)
                    elif part == "near" and says[0][0] == 0:
                        distance = sum((x - y) ** 2 for x, y in zip(fractions(new), fractions(answer[path])))
                        self.assertLessEqual(distance, Fraction(errors[path]) ** 2, what)
                    elif part == "near_errors" and says[0][0] == 0:
                        self.assertTrue(0 < Fraction(new) <= Fraction(errors[path]), what)
                    elif part in ("counts", "rows"):
                        self.assertNotEqual(says[0][0], 0, what)

    def test_each_inequality(self):
        by_name = {name: certificate for name, _, certificate in self.all}
        inverse = by_name["inverse"]
        self.refused(changed(inverse, "approximate_inverse", (0, 0), "1"), "R is no inverse")
        determinant = by_name["determinant"]
        swapped = copy.deepcopy(determinant)
        swapped["rows"] = swapped["rows"][1::-1] + swapped["rows"][2:]
        self.refused(swapped, "another permutation")
        doubled = copy.deepcopy(determinant)
        doubled["determinant"], doubled["near"] = ([f"{-Decimal(each[0]):e}"] for each in (doubled["determinant"], doubled["near"]))
        self.refused(doubled, "the sign of a permutation")
        pair = by_name["pairs of eigenvalues"]
        place = next(k for k, text in enumerate(pair["values"]) if text.endswith("i"))
        self.refused(changed(pair, "real", (place,), "1"), "i is not real")
        # Moved onto the real axis, with so large a bound that i is within it.
        moved = changed(changed(changed(pair, "values", (place,), "0"), "errors", (place,), "2"), "real", (place,), "1")
        self.refused(moved, "a disc that meets the conjugate of another")
        multiple = by_name["multiple zeros"]
        self.refused(dict(multiple, groups=[str(k + 1) for k in range(4)], counts=["1"] * 4), "discs that overlap")
        simple = by_name["zeros"]
        self.refused(dict(simple, groups=["1"] * 4, counts=["4"] * 4, real=["0"] * 4), "zeros that are no group")
        self.refused(dict(simple, counts=["2"] * 4), "counts without groups")
        self.refused(changed(simple, "near", (0,), simple["near"][1]), "equal approximations")
        symmetric = by_name["symmetric eigenvalues"]
        longer = copy.deepcopy(symmetric)
        longer["left"] = [[f"{2 * Decimal(text):e}" for text in row] for row in longer["left"]]
        self.refused(longer, "vectors that are not of norm 1")
        repeated = copy.deepcopy(symmetric)
        for row in repeated["left"]:
            row[1] = row[0]
        self.refused(repeated, "the same vector twice")
        eigen = by_name["eigenvalues"]
        self.refused(changed(eigen, "approximate_inverse", (0, 0), plus(eigen["approximate_inverse"][0][0], "1")),
                     "Y is no inverse")
        weights = dict(eigen, middle=[[text if i == j else "1" for j in range(7)] for i, text in enumerate(eigen["near"])])
        self.refused(weights, "a block that X does not have")
        self.refused(dict(eigen, weights=["0"] * 6 + ["90"]), "weights that enlarge a row sum")

    def test_what_is_no_certificate(self):
        by_name = {name: certificate for name, _, certificate in self.all}
        certificate = by_name["solution"]
        broken = ["", "[1]", "{", "nan", '"solution"', "[" * 100_000, "{}", '{"certificate": 1}', '{"certificate": "proof"}',
                  json.dumps(certificate)[:-5]]
        broken += [{key: value for key, value in certificate.items() if key != name} for name in certificate]
        for name in set(certificate) - {"certificate"}:
            broken += [dict(certificate, **{name: value})
                       for value in (None, 1, "1", [], [[]], [["1", "2"], ["3"]], [1.5], [None], {"a": 1}, [[["1"]]], ["1"])]
            path, _ = random.choice(list(numbers_of(certificate[name])))
            for text in ("nan", "NaN", "inf", "-Infinity", "", " ", "1e", "1e1000000000", "1e-1000000000", "1e" + "9" * 5000,
                         "0x1", "1_0", "١", "1+", "1" * 200_000, "1" * 99_999 + "x", "1e100001"):
                broken.append(changed(certificate, name, path, text))
        broken.append(changed(certificate, "errors", (0,), "-1e-30"))
        broken.append(dict(certificate, certificate="determinant"))
        # Not square, and "symmetric" with what would suffice for a part of it.
        proof = {"certificate": "symmetric eigenvalues", "near": ["1", "2"], "values": ["1", "2"], "errors": ["0", "0"],
                 "near_errors": ["0", "0"]}
        broken += [dict(proof, a=[["1", "0", "7"], ["0", "2", "9"]], left=[["1", "0"], ["0", "1"]]),
                   dict(proof, a=[["1", "0"], ["0", "2"], ["7", "9"]], left=[["1", "0"], ["0", "1"], ["0", "0"]]),
                   dict(proof, a=[["1", "0"], ["0", "2"], ["0", "0"]], left=[["1", "0"], ["0", "1"], ["0", "0"]])]
        # A name twice, of which either could count, and what the kind does not have.
        for _, _, other in self.all:
            name = random.choice(list(other))
            text = json.dumps(other)
            broken += [f'{{{json.dumps(name)}: {json.dumps(other[name])}, {text[1:]}',
                       f'{text[:-1]}, {json.dumps(name)}: {json.dumps(other[name])}}}', dict(other, proof=["1"]), {**other, "": ["1"]}]
            if other["certificate"] != "solution":
                broken.append(dict(other, b=other["a"]))
        broken.append(dict(by_name["symmetric eigenvalues"], right=by_name["symmetric eigenvalues"]["left"]))
        # Complex numbers that are not written out, where they would be right.
        zeros = by_name["complex zeros"]
        broken += [changed(zeros, "a", (1,), text)
                   for text in ("2i", "+2i", "0+2j", "0+2I", "0+i", "0++2i", "0+2i ", "(0,2)", "2i+0", "0 +2i", "0+2ii")]
        self.assertEqual({says(changed(zeros, "a", (1,), text))[0] for says in (python_says, console_says)
                          for text in ("0+2i", "-0.+.2e1i", "0e5+20E-1i", "0+2e+00000000i", "+.0+2e0i")}, {0})
        broken += [changed(zeros, "a", (1,), f"0+2e{'0' * 9}i"), changed(zeros, "groups", (0,), "1000000001")]
        for each in broken:
            for says in (python_says, console_says):
                status, text = says(each)
                self.assertEqual(status, 2, (str(each)[:300], says.__name__, text))
                self.assertLess(len(text), 400)
        # Numbers that are too far apart for whole ones: refused, or answered soon.
        apart = changed(changed(certificate, "a", (0, 0), "1e100000"), "a", (1, 1), "1e-100000")
        for says in (python_says, console_says):
            self.assertIn(says(apart)[0], (1, 2))

    def test_the_checker_is_a_script(self):
        with tempfile.TemporaryDirectory() as folder, contextlib.redirect_stdout(io.StringIO()) as out:
            good, bad = os.path.join(folder, "good.json"), os.path.join(folder, "bad.json")
            certificate = self.all[0][2]
            pathlib.Path(good).write_text(json.dumps(certificate), encoding="utf-8")
            pathlib.Path(bad).write_text(json.dumps(changed(certificate, "x", (0,), "7")), encoding="utf-8")
            with contextlib.redirect_stderr(out):
                self.assertEqual([checker.main([good]), checker.main([good, bad]), checker.main([bad, folder])], [0, 1, 2])
            self.assertIn("good.json: the proof holds: a solution of order 5", out.getvalue())
            self.assertIn("component 1: |answer - near| <= error - near_error fails", out.getvalue())

    def test_both_read_the_same_files(self):
        text = json.dumps(self.all[0][2], indent=1)
        utf8 = text.encode()
        files = {
            "mark": (codecs.BOM_UTF8 + utf8, 0),
            "two marks": (codecs.BOM_UTF8 * 2 + utf8, 0),  # a file's, and that of the JSON in it
            "three marks": (codecs.BOM_UTF8 * 3 + utf8, 2),
            "mark inside": (utf8.replace(b"{", b"{" + codecs.BOM_UTF8, 1), 2),
            "lines of Windows": (utf8.replace(b"\n", b"\r\n"), 0),
            "utf-16": (text.encode("utf-16"), 0),
            "utf-16, odd": (text.encode("utf-16") + b"\n", 0),
            "big-endian": (codecs.BOM_UTF16_BE + text.encode("utf-16-be"), 0),
            "packed": (gzip.compress(utf8), 0),
            "packed with a mark": (gzip.compress(codecs.BOM_UTF8 + utf8), 0),
            "half packed": (gzip.compress(utf8)[:200], 2),
            "wrongly packed": (gzip.compress(utf8)[:20] + b"\0" * 200, 2),
            "no text": (utf8 + b"\0", 2),
            "not utf-8": (utf8.replace(b"solution", b"\xe4", 1), 2),
            "empty": (b"", 2),
        }
        with tempfile.TemporaryDirectory() as folder:
            for name, (data, status) in files.items():
                file = os.path.join(folder, name)
                pathlib.Path(file).write_bytes(data)
                with contextlib.redirect_stdout(io.StringIO()), contextlib.redirect_stderr(io.StringIO()):
                    self.assertEqual((name, checker.main([file])), (name, status))
                self.assertEqual((name, run("verify", file).returncode), (name, status))

    def test_regular_matrices_that_few_digits_take_for_singular_ones(self):
        # The determinant is -1e-12, or -1e-40.
        for third in ("0." + "3" * 12, "0." + "3" * 40):
            for arguments in (["inv", "-"], ["solve", "-"], ["det", "-"]):
                with tempfile.TemporaryDirectory() as folder:
                    file = os.path.join(folder, "certificate.json")
                    run_well(*arguments, "--certificate", file, stdin=f"3 1\n1 {third}\n")
                    certificate = json.loads(pathlib.Path(file).read_text(encoding="utf-8"))
                    self.assertEqual((python_says(certificate)[0], console_says(certificate)[0]), (0, 0), (third, arguments))

    def test_without_a_proof_there_is_no_certificate(self):
        for arguments in (["solve", "-", "--working-digits", "30"], ["eig", "-", "--vectors"], ["svd", "-", "--factor", "u"]):
            self.assertEqual(run(*arguments, "--certificate", "c.json", stdin="1 2\n3 4\n").returncode, 2)
        done = run("det", "-", "--certificate", "c.json", stdin="1 2\n2 4\n")
        self.assertEqual((done.returncode, "a determinant that is 0 is proven by the rank" in done.stderr), (1, True))
        self.assertIn("the proof holds", run_well("verify", "-", stdin=json.dumps(self.all[0][2])))


if __name__ == "__main__":
    unittest.main()
