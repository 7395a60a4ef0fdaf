#!/usr/bin/python3
"""Compares the number type with Python's decimal module on seeded random cases, digit for digit.

    decimal_compare.py --pairs 100000 --seed 1                  arithmetic, comparison, whole parts, text
    decimal_compare.py --operations elementary --pairs 20000    exp, ln, log10, power
    decimal_compare.py --operations all --write FILE            writes a vector file instead of comparing
"""

import argparse
import itertools
import pathlib
import subprocess
import sys
import time

import decimal_cases

BATCH = 10000


def question(case):
    digits, operation, operands = case
    return "%d %s %s" % (digits, operation, " ".join(map(str, operands)))


def write_vectors(path, cases, seed):
    with open(path, "w", encoding="ascii", newline="\n") as file:
        file.write("# digits, operation, operands, result; by decimal_compare.py --write, seed %d\n" % seed)
        for case in cases:
            file.write("%s %s\n" % (question(case), decimal_cases.evaluate(*case)))


def compare(program, cases, progress):
    """Returns the number of cases compared and of those that differ."""
    done = failed = 0
    while batch := list(itertools.islice(cases, BATCH)):
        questions = [question(case) for case in batch]
        run = subprocess.run([program], input="\n".join(questions) + "\n", capture_output=True, text=True, check=False)
        answers = run.stdout.splitlines()
        if run.returncode != 0 or len(answers) != len(batch):
            sys.exit("decimal_compare: %s ended with status %d after '%s'\n%s"
                     % (program, run.returncode, questions[min(len(answers), len(batch) - 1)], run.stderr))
        for case, asked, answer in zip(batch, questions, answers):
            expected = decimal_cases.evaluate(*case)
            if answer != expected:
                failed += 1
                if failed <= 20:
                    print("%s\n  ours   %s\n  python %s" % (asked, answer, expected))
        done += len(batch)
        if progress:
            progress.write_text("%d compared, %d differ\n" % (done, failed), encoding="ascii")
    return done, failed


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    root = pathlib.Path(__file__).resolve().parents[2]
    parser.add_argument("--pairs", type=int, default=100000, help="number of cases")
    parser.add_argument("--seed", type=int, default=int(time.time()), help="default: the clock")
    parser.add_argument("--digits", type=int, default=200, help="largest working precision")
    parser.add_argument("--operations", choices=decimal_cases.OPERATIONS, default="arithmetic")
    parser.add_argument("--program", default=str(root / "build/release/bin/decimal_calculator"))
    parser.add_argument("--progress", type=pathlib.Path, help="file that the progress of the run is written to")
    parser.add_argument("--write", type=pathlib.Path, help="write a vector file")
    options = parser.parse_args()

    operations = decimal_cases.OPERATIONS[options.operations]
    cases = itertools.islice(decimal_cases.Cases(options.seed, operations, options.digits), options.pairs)
    if options.write:
        write_vectors(options.write, cases, options.seed)
        return 0
    start = time.time()
    done, failed = compare(options.program, cases, options.progress)
    print("note: %d cases (%s), seed %d: %d differ; %.0f s"
          % (done, " ".join(operations), options.seed, failed, time.time() - start))
    return 1 if failed or done != options.pairs else 0


if __name__ == "__main__":
    sys.exit(main())
