"""rank and sort against Python's stable sorted() of exact decimals, and round against Decimal.quantize()."""

import decimal
import random
import unittest

from console import decimals, run, run_json, run_well

DIGITS = 40


def near_values(generator, count):
    """Numbers that a double could not tell apart, with repeats, signs and several spellings."""
    stems = [f"{generator.choice(['', '-'])}1.{'0' * 25}{generator.randrange(10 ** 6):06}" for _ in range(max(1, count // 3))]
    return [generator.choice(stems) + generator.choice(["", "e0", "0", "e3"]) for _ in range(count)]


def order_of(values, descending):
    """Positions from 0 in sorted order; equal values by position in both orders."""
    return sorted(range(len(values)), key=lambda i: values[i].copy_negate() if descending else values[i])


class Rounding(unittest.TestCase):
    def test_against_decimal(self):
        seed = random.randrange(2 ** 32)
        generator = random.Random(seed)
        texts = [f"{generator.choice(['', '-'])}{generator.randrange(10 ** 6)}.{generator.randrange(10 ** 30):030}" for _ in range(50)]
        texts += ["0.125", "-0.135", "0.00499999999999999999999999999999999"]
        for mode in ("half-even", "half-up", "half-down", "up", "down", "ceiling", "floor", "05up"):
            with self.subTest(seed=seed, mode=mode), decimal.localcontext(prec=100) as context:
                context.rounding = "ROUND_" + mode.upper().replace("-", "_")
                done = run_json("round", "-", "--places", "2", "--mode", mode, stdin="\n".join(texts))
                expected = [str(x.quantize(decimal.Decimal("0.01"))).replace("-0.00", "0.00") for x in decimals(texts)]
                self.assertEqual(done["value"], expected)
                total = sum(decimals(texts)).quantize(decimal.Decimal("0.01"))
                for rule in ("largest-remainder", "cumulative"):
                    parts = run_json("round", "-", "--places", "2", "--mode", mode, "--parts", rule, stdin="\n".join(texts))
                    self.assertEqual(sum(decimals(parts["value"])), total)
                    self.assertEqual(parts["total"], str(total))

    def test_tables(self):
        table = "item,net,tax\na,2.345,0.5\nb,-0.004,12\n"
        self.assertEqual(run_well("round", "-", "--places", "2", "--mark", "--format", "csv", stdin=table),
                         "item,net,net_mark,tax,tax_mark\na,2.34,inexact,0.50,exact\nb,0.00,inexact,12.00,exact\n")
        self.assertEqual(run_well("round", "-", "--places", "-1", "--column", "tax", "--format", "csv", stdin=table),
                         "item,net,tax\na,2.345,0\nb,-0.004,10\n")
        self.assertEqual(run("round", "-", "--places", "1.5", stdin=table).returncode, 2)
        for text, complaint in (("item;net\na;1.234,50\nb;2,345\n", ":2: '1.234,50' is not a number"), ("x\na\nb\n", ": no column of numbers")):
            done = run("round", "-", stdin=text)
            self.assertEqual((done.returncode, done.stdout), (2, ""))
            self.assertIn("quarn: standard input" + complaint, done.stderr)


class Ranking(unittest.TestCase):
    def test_against_sorted(self):
        seed = random.randrange(2 ** 32)
        generator = random.Random(seed)
        for count in (1, 2, 3, 10, 50, 333):
            texts = near_values(generator, count)
            values = decimals(texts)
            for options in ([], ["--descending"]):
                with self.subTest(seed=seed, count=count, options=options):
                    order = order_of(values, bool(options))
                    ranked = run_json("rank", "-", "--digits", str(DIGITS), *options, stdin="\n".join(texts))
                    self.assertEqual(ranked["position"], list(range(1, count + 1)))
                    self.assertEqual(decimals(ranked["value"]), values)
                    self.assertEqual([ranked["rank"][i] for i in order], list(range(1, count + 1)))
                    done = run_json("sort", "-", "--digits", str(DIGITS), *options, stdin="\n".join(texts))
                    self.assertEqual(done["position"], [i + 1 for i in order])
                    self.assertEqual(decimals(done["value"]), [values[i] for i in order])

    def test_numbers_are_ranked_as_rounded_to_the_working_digits(self):
        text = "1.0002\n1.0001\n"
        self.assertEqual(run_json("rank", "-", "--digits", "4", stdin=text)["rank"], [1, 2])
        self.assertEqual(run_json("rank", "-", "--digits", "5", stdin=text)["rank"], [2, 1])

    def test_small_results_whole(self):
        text = "day,height\n1,2.5\n2,-4\n3,2.5\n"
        self.assertEqual(run_well("rank", "-", stdin=text),
                         "# Ranks of 3 values of 'height' (column 2 of 2) in standard input, ascending\n"
                         "# 20 digits; equal values keep their order\n"
                         "position  value  rank\n       1    2.5     2\n       2     -4     1\n       3    2.5     3\n")
        self.assertEqual(run_well("sort", "-", "--column", "day", "--descending", "--format", "csv", stdin=text),
                         "rank,value,position\n1,3,3\n2,2,2\n3,1,1\n")

    def test_bad_input_is_one_line(self):
        for command in ("rank", "sort"):
            for text, reason in (("1\nx\n", "standard input:2: 'x' is not a number"), ("", "standard input: no numbers in it"),
                                 ("1\nnan\n", "standard input:2: 'nan' is not a finite number (--missing drop or interpolate goes on without it)")):
                with self.subTest(command=command, text=text):
                    done = run(command, "-", stdin=text)
                    self.assertEqual((done.returncode, done.stdout, done.stderr), (2, "", "quarn: " + reason + "\n"))


if __name__ == "__main__":
    unittest.main()
