"""Runs the console program for the tests, and an independent transform to compare it with."""

import decimal
import json
import os
import shlex
import subprocess
import tempfile
import unittest
from decimal import Decimal

BIN = os.environ["QUARN_BIN"]
EMULATOR = shlex.split(os.environ.get("QUARN_EMULATOR", ""))  # what runs a program for Windows
QUARN = os.path.join(BIN, "quarn.exe" if EMULATOR else "quarn")
COMMAND = [*EMULATOR, QUARN]
if EMULATOR:
    tempfile.tempdir = BIN  # it sees the checkout alone

# Pictures are drawn by the gnuplot installed here, a line is edited by the libraries of this system, and device files are
# this system's too.
not_emulated = unittest.skipIf(EMULATOR, "only with the programs of this system")
DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "examples")
SUNSPOTS = os.path.join(DATA, "sunspots.csv")

Outcome = subprocess.CompletedProcess


def open_terminal():
    """Both ends of a pseudo-terminal."""
    import pty  # which Windows does not have

    try:
        return pty.openpty()
    except OSError as error:
        raise AssertionError(f"this test needs a pseudo-terminal, and there is none ({error.strerror}): "
                             "mount -t devpts devpts /dev/pts -o ptmxmode=666") from error


def run(*arguments, stdin="", **options) -> Outcome:
    """quarn with the arguments; texts in, texts out. Results have plain newlines on every system, messages the system's."""
    done = subprocess.run([*COMMAND, *arguments], input=stdin.encode(), capture_output=True, timeout=120, **options)
    messages = done.stderr.decode()
    return Outcome(done.args, done.returncode, done.stdout.decode(), messages.replace("\r\n", "\n") if EMULATOR else messages)


def run_well(*arguments, **options) -> str:
    """Standard output of a run that must succeed and say nothing on standard error."""
    done = run(*arguments, **options)
    assert (done.returncode, done.stderr) == (0, ""), (arguments, done.returncode, done.stderr)
    return done.stdout


def run_json(*arguments, **options) -> dict:
    return json.loads(run_well(*arguments, "--format", "json", **options))


def decimals(texts) -> list:
    return [Decimal(text) for text in texts]


def sine_and_cosine(angle):
    """Taylor series at the context's precision; the angle lies within -pi ... pi."""
    term, total, k = Decimal(1), [Decimal(1), Decimal(0)], 0
    while abs(term) > Decimal(10) ** -decimal.getcontext().prec:
        k += 1
        term = term * angle / k
        total[k % 2] += term if k % 4 < 2 else -term
    return total[1], total[0]


def pi():
    """Machin's formula."""

    def arctangent_of_inverse(n):
        power, total, k = Decimal(1) / n, Decimal(0), 0
        while abs(power) > Decimal(10) ** -(decimal.getcontext().prec + 2):
            total += power / (2 * k + 1) if k % 2 == 0 else -power / (2 * k + 1)
            power /= n * n
            k += 1
        return total

    return 4 * (4 * arctangent_of_inverse(5) - arctangent_of_inverse(239))


def transform(x, digits):
    """z_k = 1/sqrt(N) sum of x_j exp(-2 pi i j k / N) from the definition: lists of real and imaginary parts."""
    with decimal.localcontext() as context:
        context.prec = digits
        n = len(x)
        table = [sine_and_cosine(2 * pi() * (j - n if 2 * j > n else j) / n) for j in range(n)]
        root = Decimal(n).sqrt()
        real = [sum(v * table[j * k % n][1] for j, v in enumerate(x)) / root for k in range(n)]
        imaginary = [-sum(v * table[j * k % n][0] for j, v in enumerate(x)) / root for k in range(n)]
        return real, imaginary


def relative_difference(a, b) -> Decimal:
    """Distance of two vectors in the Euclidean norm, relative to the second."""
    with decimal.localcontext() as context:
        context.prec = 30
        return (sum((p - q) ** 2 for p, q in zip(a, b, strict=True)).sqrt()) / sum(q * q for q in b).sqrt()


def untrue(text, exact, digits, error=None):
    """What is wrong with a number that is printed with so many true digits and, where there is one, with a bound."""
    with decimal.localcontext() as context:
        context.prec = 400
        shown = Decimal(text)
        distance = abs(shown - exact)
        if error is not None and distance > Decimal(error):
            return f"{text} is {distance:.3e} from {exact:.30e}, not {error}"
        if shown != 0 and distance > Decimal("0.51") * Decimal(10) ** (shown.adjusted() - digits + 1):
            return f"{text} is not {digits} digits of {exact:.30e}"
        return None
