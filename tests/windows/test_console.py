"""The console program on Windows: results byte by byte, standard input, files, what it says when it refuses."""

import json
import os
import shutil
import subprocess
import tempfile
import unittest
from decimal import Decimal

PROGRAM = os.environ["QUARN_PROGRAM"].split(";")  # with what runs it, on another system
FOLDER = os.environ["QUARN_FOLDER"]  # where that may write


def quarn(*arguments, stdin=""):
    done = subprocess.run([*PROGRAM, *arguments], input=stdin.encode(), capture_output=True, timeout=120)
    return done.returncode, done.stdout.decode(), done.stderr.decode().replace("\r\n", "\n")


class Console(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = tempfile.mkdtemp(dir=FOLDER)
        self.addCleanup(shutil.rmtree, self.folder)

    def path(self, name):
        return os.path.join(self.folder, name)

    def test_a_result_is_the_same_bytes_as_elsewhere(self):
        self.assertEqual(
            quarn("sort", "-", "--format", "csv", stdin="3\r\n1e-3\r\n-2.50\r\n"),
            (0, "rank,value,position\n1,-2.5,3\n2,0.001,2\n3,3,1\n", ""),
        )

    def test_forward_and_back_through_files(self):
        x = ["1", "-2.5", "1e-20", "3.25", "0", "7"]
        with open(self.path("x.csv"), "w", encoding="ascii") as file:
            file.write("\n".join(x))
        for arguments in (
            ["fft", self.path("x.csv"), "--format", "csv", "--output", self.path("z.csv")],
            ["fft", "--inverse", self.path("z.csv"), "--format", "json", "--output", self.path("back.json")],
        ):
            self.assertEqual(quarn(*arguments, "--digits", "60"), (0, "", ""))
        with open(self.path("back.json"), encoding="ascii") as file:
            back = json.load(file)["value"]
        for given, returned in zip(x, back, strict=True):
            self.assertLess(abs(Decimal(given) - Decimal(returned)), Decimal("1e-57"))

    def test_refusals(self):
        for arguments, stdin, status, text in (
            (["fft", "-"], "1\nx\n", 2, "quarn: standard input:2: 'x' is not a number\n"),
            (["fft", self.path("none.csv")], "", 2, "none.csv: No such file or directory\n"),
            (["eig", "-"], "1 2\n", 2, "quarn: standard input: 1 by 2, but a square matrix is needed\n"),
            (["constants", "--output", self.path("no/such")], "", 3, "No such file or directory\n"),
        ):
            with self.subTest(arguments=arguments):
                code, out, err = quarn(*arguments, stdin=stdin)
                self.assertEqual((code, out), (status, ""))
                self.assertTrue(err.endswith(text), err)

    def test_a_picture_without_its_program(self):
        code, _, err = quarn("fft", "-", "--plot", self.path("x.svg"), stdin="1\n2\n3\n")
        self.assertEqual((code, err), (3, "quarn: --plot needs the program gnuplot: No such file or directory\n"))


if __name__ == "__main__":
    unittest.main()
