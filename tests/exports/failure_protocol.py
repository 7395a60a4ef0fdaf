"""Plays failure scenarios, each in a process of its own, and compares the whole standard output and the exit status."""

import argparse
import concurrent.futures
import os
import subprocess
import sys

TIMEOUT_SECONDS = 120

CLOSING = "\n ** ABNORMAL EXIT from Tesk Library routine {}\n"
SOFT = " ** Tesk soft failure - control returned\n"
HARD = " ** Tesk hard failure - execution terminated\n"
RECORDS = " first record\n second record\n"
C06FAF_3 = CLOSING.format("C06FAF: IFAIL =     3")
N_IS_ONE = " ** On entry, N .le. 1: N =               1.\n"
TEXTS = "\n\n"  # one for the record and one for the message buffer, whether or not anything is printed

# The scenario's words, its output, and the exit status where it is not 0. Output ends early where the process does.
SCENARIOS = [
    # Success prints nothing, whatever IFAIL was.
    ("end 0 0 2", "[0]\n"),
    ("end -1 0 2", "[0]\n"),
    ("classic c06faf 0 2", "[0]\n"),
    ("core c06faf 0 2", "[0][NONE]\n"),
    # IFAIL on entry decides: hard, noisy soft, silent soft, records only.
    ("end 0 3 2", RECORDS + C06FAF_3 + HARD),
    ("end -1 3 2", RECORDS + C06FAF_3 + SOFT + "[3]\n"),
    ("end 1 3 2", "[3]\n"),
    ("end -13 3 2", RECORDS + "[3]\n"),
    ("end -2 3 2", "[3]\n"),
    ("end -11 3 2", "[3]\n"),
    ("end -2147483648 3 2", "[3]\n"),
    # The tens digit of a positive IFAIL prints, the units digit chooses soft or hard.
    ("end 11 3 2", RECORDS + C06FAF_3 + SOFT + "[3]\n"),
    ("end 10 3 2", RECORDS + C06FAF_3 + HARD),
    ("end 12 3 2", RECORDS + C06FAF_3 + HARD),
    ("end 91 3 2", RECORDS + C06FAF_3 + SOFT + "[3]\n"),
    ("end 2 3 2", "[3]\n"),
    ("end 100 3 2", "[3]\n"),
    ("end 101 3 2", "[3]\n"),
    ("end 111 3 2", RECORDS + C06FAF_3 + SOFT + "[3]\n"),
    ("end 110 3 2", RECORDS + C06FAF_3 + HARD),
    # Records: none, a long one; failure numbers of any width.
    ("end -1 3 0", C06FAF_3 + SOFT + "[3]\n"),
    ("end -1 3 -1", C06FAF_3 + SOFT + "[3]\n"),
    ("end -13 3 LONG", "x" * 100 + "\n[3]\n"),
    ("end -1 -12345 1", " first record\n" + CLOSING.format("C06FAF: IFAIL =-12345") + SOFT + "[-12345]\n"),
    ("end -1 1234567 1", " first record\n" + CLOSING.format("C06FAF: IFAIL =1234567") + SOFT + "[1234567]\n"),
    # A named variable, without its trailing blanks; no value without a name.
    ("end-naming -1 2 ALPHA", " the record\n" + CLOSING.format("F06PAF: ALPHA =     2") + SOFT + "[2]\n"),
    (["end-naming", "-1", "2", " A B   "], " the record\n" + CLOSING.format("F06PAF:  A B =     2") + SOFT + "[2]\n"),
    (["end-naming", "-1", "2", "   "], " the record\n" + CLOSING.format("F06PAF") + SOFT + "[2]\n"),
    (["end-naming", "-1", "2", ""], " the record\n" + CLOSING.format("F06PAF") + SOFT + "[2]\n"),
    (["end-naming", "0", "2", "LDA"], " the record\n" + CLOSING.format("F06PAF: LDA =     2") + HARD),
    ("end-naming 1 2 LDA", "[2]\n"),
    ("end-naming -13 2 LDA", " the record\n[2]\n"),
    ("end-naming 0 0 LDA", "[0]\n"),
    # A negative unit keeps the messages back, but not the empty line and not the end of the process.
    ("unit -1 end -1 3 2", "\n[3]\n"),
    ("unit -1 end -13 3 2", "[3]\n"),
    ("unit -1 end 0 3 2", "\n"),
    ("unit -1 unit 0 end -13 3 2", RECORDS + "[3]\n"),
    ("unit -1 classic c06faf -1 1", TEXTS + "\n[3]\n"),
    ("unit -1 classic c06faf 0 1", TEXTS + "\n"),
    # A kernel with a wrong argument ends the process; its name keeps the blank that pads it.
    ("kernel None", "[done]\n"),
    (
        "kernel X",
        "\n ** On entry to F06PAF/DGEMV  parameter number  1 had an illegal value\n"
        + CLOSING.format("F06PAF/DGEMV ")
        + HARD,
    ),
    ("unit -1 kernel X", "\n\n"),
    # A routine's failures, through both of its forms.
    ("classic c06faf 1 1", TEXTS + "[3]\n"),
    ("classic c06faf -1 1", TEXTS + N_IS_ONE + C06FAF_3 + SOFT + "[3]\n"),
    ("classic c06faf -13 1", TEXTS + N_IS_ONE + "[3]\n"),
    ("classic c06faf 0 1", TEXTS + N_IS_ONE + C06FAF_3 + HARD),
    ("classic c06faf 11 1", TEXTS + N_IS_ONE + C06FAF_3 + SOFT + "[3]\n"),
    ("classic c06faf 10 1", TEXTS + N_IS_ONE + C06FAF_3 + HARD),
    ("classic c06faf 101 1", TEXTS + "[3]\n"),
    ("core c06faf 1 1", TEXTS + "[3][C06FAF     3 99999     1                1]\n"),
    ("core c06fbf 1 -7", TEXTS + "[3][C06FBF     3 99999     1               -7]\n"),
    (
        "classic c06fbf -1 46",
        TEXTS
        + " ** At least one prime factor of N is greater than 19.\n    N =              46.\n"
        + CLOSING.format("C06FBF: IFAIL =     1")
        + SOFT
        + "[1]\n",
    ),
    ("core c06faf 1 23", TEXTS + "[1][C06FAF     1 99998     1               23]\n"),
    (
        "core c06faf -13 2097152",
        TEXTS
        + " ** N has more than 20 prime factors.\n    N =         2097152.\n"
        + "[2][C06FAF     2 99997     1          2097152]\n",
    ),
    (["classic", "full c06faf", "-13", "1"], TEXTS + N_IS_ONE + "[3]\n"),
    (["core", "full c06fbf", "1", "23"], TEXTS + "[1][C06FBF     1 99998     1               23]\n"),
    # The first failure leaves nothing behind that a second would show.
    ("classic c06faf 1 1 core c06faf 0 4", TEXTS + "[3]\n[0][NONE]\n"),
    (
        "banner",
        " *** Start of Tesk Library implementation details ***\n"
        " \n"
        " Implementation title: Generalised Base Version\n"
        "            Precision: FORTRAN double precision\n"
        "         Product code: Tesk MP, dynamic library tesk2mp\n"
        "                 Mark: 20A\n"
        " \n"
        " *** End of Tesk Library implementation details ***\n",
    ),
]
MISMATCH = " *** IFAIL MISMATCH IN C06FAF: IFAIL = 3 , IERR = 1 , SRNAME = C06FAF\n[3]\n"


def play(command, expected, newline):
    """Says what is wrong, or None."""
    run = subprocess.run(command, stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, timeout=TIMEOUT_SECONDS)
    wanted = expected.replace("\n", newline).encode()
    if run.returncode != 0:
        return f"exit status {run.returncode}, expected 0"
    if run.stdout != wanted:
        return f"\n  printed  {run.stdout!r}\n  expected {wanted!r}"
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--exports", required=True, help="program that plays scenarios through the exports")
    parser.add_argument("--inside", required=True, help="program that brings about a mismatch")
    parser.add_argument("--emulator", default="", help="command that runs the programs")
    parser.add_argument("--newline", choices=["lf", "crlf"], default="lf")
    options = parser.parse_args()

    emulator = options.emulator.split(";") if options.emulator else []
    newline = "\r\n" if options.newline == "crlf" else "\n"
    plays = [
        ([options.exports, *(words.split() if isinstance(words, str) else words)], expected)
        for words, expected in SCENARIOS
    ]
    plays.append(([options.inside], MISMATCH))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        problems = list(pool.map(lambda row: play(emulator + row[0], row[1], newline), plays))
    failures = sum(problem is not None for problem in problems)
    for (command, _), problem in zip(plays, problems):
        if problem:
            print(f"{' '.join(command[1:]) or 'mismatch'}: {problem}")
    print(f"{len(plays)} scenarios, {failures} wrong")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
