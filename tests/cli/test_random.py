"""random: the streams against exact integer arithmetic, and a saved state goes on where its run stopped."""

import os
import random
import tempfile
import unittest
from decimal import Decimal, localcontext

from console import run, run_json, run_well

SEED = ["6698", "7535", "26792", "30140"]


def basic_variates(seed, count):
    """X := 13^13 X mod 2^60; u = X / 2^60 to its 53 leading bits."""
    x = sum(int(part) << 15 * i for i, part in enumerate(seed))
    for _ in range(count):
        x = x * 13 ** 13 % 2 ** 60
        yield x


class Random(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.state = os.path.join(self.folder.name, "state")

    def test_the_basic_generator_against_integers(self):
        for seed in (SEED, ["1", "0", "0", "0"], ["32767"] * 4):
            options = [] if seed is SEED else ["--seed", *seed]
            result = run_json("random", "--count", "200", "--classic", "--digits", "60", *options)
            states = list(basic_variates(seed, 200))
            with localcontext() as context:
                context.prec = 70
                for text, x in zip(result["value"], states, strict=True):
                    self.assertLess(abs(Decimal(text) - Decimal(x) / 2 ** 60), Decimal(2) ** -52)
            last = states[-1]
            self.assertEqual(result["next_seed"], " ".join(str(last >> 15 * i & 32767) for i in range(4)))

    def test_a_saved_state_goes_on_exactly(self):
        chance = random.Random(77)
        for generator in (0, 1, 5, 273):
            for classic in ([], ["--classic"]):
                with self.subTest(generator=generator, classic=classic):
                    start = ["--igen", str(generator), "--seed", *(str(chance.randrange(1, 32768)) for _ in range(4))]
                    whole = run_json("random", "--count", "30", "--digits", "50", *classic, *start)
                    parts = []
                    for i, count in enumerate((1, 12, 17)):
                        part = run_json("random", "--count", str(count), "--digits", "50", "--state", self.state, *classic,
                                        *(start if i == 0 else []))
                        parts += part["value"]
                    self.assertEqual(parts, whole["value"])
                    self.assertEqual(len(set(parts)), 30)
                    with open(self.state, encoding="utf-8") as file:
                        self.assertEqual(file.read(), f"quarn-random-state {generator} {whole['next_seed']}\n")
                    os.remove(self.state)

    def test_companions_fill_every_digit(self):
        values = run_json("random", "--count", "300", "--digits", "45")["value"]
        self.assertTrue(all(0 < Decimal(value) < 1 for value in values))
        with localcontext() as context:
            context.prec = 50
            self.assertEqual({str(Decimal(v).quantize(Decimal("1e-45")))[-1] for v in values}, set("0123456789"))

    def test_bad_requests_are_one_line(self):
        for content, reason in (("", ":1: not a saved state"), ("quarn-random-state 0 1 2 x 4\n", ":1: not a saved state"),
                                ("quarn-random-state 0 1 2 3 4 5\n", ":1: not a saved state"),
                                ("quarn-random-state 274 1 2 3 4\n", ":1: not a saved state"),
                                ("quarn-random-state 0 1 2 3 32768\n", ":1: 32768 is no seed of generator 0"),
                                ("quarn-random-state 0 0 0 0 0\n", ":1: the seeds must not all be 0"),
                                ("quarn-random-state 3 1 2 0 4\n", ":1: 0 is no seed of generator 3")):
            with open(self.state, "w", encoding="utf-8") as file:
                file.write(content)
            with self.subTest(content):
                done = run("random", "--state", self.state)
                self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (2, "", 1))
                self.assertTrue(done.stderr.startswith("quarn: " + self.state + reason), done.stderr)
                with open(self.state, encoding="utf-8") as file:
                    self.assertEqual(file.read(), content)
        for options in (["--igen", "274"], ["--igen", "-1"], ["--count", "0"], ["--seed", "1", "2", "3"],
                        ["--seed", "0", "0", "0", "0"], ["--seed", "1", "2", "3", "32768"], ["--state", "-"],
                        ["--igen", "1", "--seed", "1", "2", "3", "0"], ["--igen", "3", "--state", self.state]):
            with self.subTest(options):
                done = run("random", *options)
                self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (2, "", 1))

    def test_a_state_that_cannot_be_written(self):
        done = run("random", "--state", os.path.join(self.folder.name, "none", "state"))
        self.assertEqual((done.returncode, done.stderr.count("\n")), (3, 1))

    def test_formats(self):
        lines = run_well("random", "--count", "2", "--format", "csv").split("\n")
        self.assertEqual((lines[0], len(lines)), ("value", 4))


if __name__ == "__main__":
    unittest.main()
