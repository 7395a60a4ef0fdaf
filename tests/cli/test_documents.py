"""README.md and docs/ tell the truth: every console block is run and every listing compared with its file.

In a block marked `console`, a line "$ COMMAND" is followed by the command's output (standard output and standard error
together); "..." stands for any lines. The last two places of long numbers may differ. A listing that follows a line `<!-- file: NAME -->` is that file.
"""

import glob
import os
import re
import subprocess
import tempfile
import unittest
from decimal import Decimal

from console import BIN

TOP = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
AS_ANYONE = dict(os.environ, OMPI_ALLOW_RUN_AS_ROOT="1", OMPI_ALLOW_RUN_AS_ROOT_CONFIRM="1")
DOCUMENTS = ["README.md", *sorted(glob.glob(os.path.join("docs", "**", "*.md"), root_dir=TOP, recursive=True))]

BLOCK = re.compile(r"(?:^<!-- file: (\S+) -->\n)?^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def blocks(document):
    with open(os.path.join(TOP, document), encoding="utf-8") as file:
        return BLOCK.findall(file.read())


def commands(block):
    """Pairs of a command and the output shown for it."""
    pieces = re.split(r"^\$ (.*)\n", block, flags=re.MULTILINE)
    return list(zip(pieces[1::2], pieces[2::2], strict=True))


def lines_of(text):
    """Blanks at the ends of lines do not count, nor do empty lines at the end."""
    return [line.rstrip() for line in text.rstrip().split("\n")] if text.strip() else []


def same(shown, printed):
    """Whether two lines are the same up to the last two places of long numbers, which are rounding errors."""
    words, others = (re.split(r"([\s,]+)", line) for line in (shown, printed))
    return len(words) == len(others) and all(map(same_word, words, others))


def same_word(shown, printed):
    if shown == printed:
        return True
    if not all(re.fullmatch(r"-?\d+\.\d{15,}", word) for word in (shown, printed)):
        return False
    return abs(Decimal(shown) - Decimal(printed)) <= 100 * Decimal(10) ** Decimal(shown).as_tuple().exponent


def agree(shown, printed):
    if shown and shown[0] == "...":
        return any(agree(shown[1:], printed[skipped:]) for skipped in range(len(printed) + 1))
    if not shown or not printed:
        return not shown and not printed
    return same(shown[0], printed[0]) and agree(shown[1:], printed[1:])


class Documents(unittest.TestCase):
    maxDiff = None

    def test_listings_are_the_files(self):
        for document in DOCUMENTS:
            for name, _, text in blocks(document):
                if name:
                    with self.subTest(document=document, file=name), open(os.path.join(TOP, name), encoding="utf-8") as file:
                        self.assertEqual(text, file.read())

    def test_commands_print_what_is_shown(self):
        module = os.path.join(os.path.dirname(BIN), "python")
        module_built = bool(glob.glob(os.path.join(module, "tesk2mp", "_core*")))
        for document in DOCUMENTS:
            # Documents build up files from block to block.
            with tempfile.TemporaryDirectory() as folder:
                os.mkdir(os.path.join(folder, "build"))
                os.mkdir(os.path.join(folder, "build", "release"))
                os.symlink(BIN, os.path.join(folder, "build", "release", "bin"))
                os.symlink(module, os.path.join(folder, "build", "release", "python"))
                os.symlink(os.path.join(BIN, "quarn"), os.path.join(folder, "quarn"))
                for name in ("examples", "python"):
                    os.symlink(os.path.join(TOP, name), os.path.join(folder, name))
                for _, kind, text in blocks(document):
                    for command, shown in commands(text) if kind == "console" else []:
                        if "PYTHONPATH" in command and not module_built:
                            continue
                        # Without MPI its example is not built.
                        if "example_mpi" in command and not os.path.exists(os.path.join(BIN, "example_mpi_poisson")):
                            continue
                        with self.subTest(document=document, command=command):
                            done = subprocess.run(["bash", "-c", command], cwd=folder, env=AS_ANYONE, stdin=subprocess.DEVNULL, timeout=120,
                                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
                            if not agree(lines_of(shown), lines_of(done.stdout)):
                                self.fail("shown:\n" + shown + "\nprinted:\n" + done.stdout)

    def test_there_is_something_to_run(self):
        for document in ("README.md", os.path.join("docs", "guide", "console.md")):
            self.assertIn("console", [kind for _, kind, _ in blocks(document)], document)

    def test_links_lead_somewhere(self):
        for document in DOCUMENTS:
            with open(os.path.join(TOP, document), encoding="utf-8") as file:
                prose = re.sub(r"```.*?```", "", file.read(), flags=re.S)
                for target in re.findall(r"\]\(([^)#\s]+)[^)]*\)", prose):
                    if "://" not in target:
                        with self.subTest(document=document, target=target):
                            self.assertTrue(os.path.exists(os.path.join(TOP, os.path.dirname(document), target)))


if __name__ == "__main__":
    unittest.main()
