"""The package and the examples of the documentation pass mypy --strict, and the stub agrees with what there is."""

import doctest
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import tesk2mp

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
PACKAGES = pathlib.Path(tesk2mp.__file__).parent.parent
# The classes of the extension have a metaclass of their own; what modules import is not theirs.
ALLOWED = r"""
tesk2mp\.(Accumulator|LU|Cholesky|Complex|Real|Random|\w+Plan|SparseMatrix|IncompleteLU|IncompleteCholesky|SparseLU|SparseCholesky)
tesk2mp\.(Error|InvalidArgument|InvalidType|NumericalFailure)
tesk2mp\._.*
tesk2mp\.(fft|linalg|special|sparse|optimize|proven|verify_certificate)\..*
"""


class Types(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))

    def run_tool(self, *command):
        done = subprocess.run(
            command,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            check=False,
            cwd=self.folder,
            env={**os.environ, "MYPYPATH": str(PACKAGES), "PYTHONPATH": str(PACKAGES)},
        )
        self.assertEqual(done.returncode, 0, done.stdout)

    def test_examples(self):
        for document in [TOP / "README.md", *sorted((TOP / "docs").rglob("*.md"))]:
            for number, block in enumerate(re.findall(r"^```pycon\n(.*?)^```", document.read_text(), flags=re.S | re.M)):
                examples = doctest.DocTestParser().get_examples(block)
                sources = [example.source for example in examples if example.exc_msg is None]
                (self.folder / f"{document.stem.replace('-', '_')}_{number}.py").write_text("".join(sources))
        self.run_tool("mypy", "--strict", "--cache-dir", ".cache", "-p", "tesk2mp")
        self.run_tool("mypy", "--strict", "--cache-dir", ".cache", *sorted(path.name for path in self.folder.glob("*.py")))

    def test_stub(self):
        (self.folder / "allowed").write_text(ALLOWED)
        self.run_tool("stubtest", "--concise", "--allowlist", "allowed", "--ignore-unused-allowlist", "tesk2mp")


if __name__ == "__main__":
    unittest.main()
