#!/usr/bin/env python3
"""headers.py --compiler COMMAND: each public header compiles alone, under the warnings that a careful user turns on, and
no name of theirs is ambiguous to who uses all namespaces."""
import argparse
import pathlib
import subprocess
import sys

INCLUDE = pathlib.Path(__file__).resolve().parents[2] / "include"
WARNINGS = "-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Werror".split()

ALL_NAMESPACES = """
using namespace std;
using namespace quarn;
using namespace tesk2mp;
QuarnFloat all(const Complex& z, const QuarnFloat& x) {
  const Complex w = sqrt(z) + exp(z) + pow(z, z) + polar(x, x) + conj(z) * norm(z) + sqrt(x);
  return abs(w) + abs(x) + arg(z) + real(z) + imag(z) + sqrt(x) + round(x) + hypot(x, x) + max(x, x) + tesk2mp::abs({x, x});
}
"""


def complaints(compiler, text):
    command = [*compiler, "-std=c++20", *WARNINGS, "-fsyntax-only", f"-I{INCLUDE}", "-x", "c++", "-"]
    done = subprocess.run(command, input=text, capture_output=True, text=True)
    return done.stderr if done.returncode else ""


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--compiler", required=True)
    compiler = parser.parse_args().compiler.split()

    if not complaints(compiler, "inline int truncated(long long x) { return x; }\n"):
        sys.exit("a conversion that loses bits is not noticed")
    headers = sorted(path.relative_to(INCLUDE) for path in INCLUDE.glob("*/*.h*"))
    problems = [text for header in headers if (text := complaints(compiler, f'#include "{header}"\n'))]
    includes = "".join(f'#include "{header}"\n' for header in ("tesk2mp/tesk2mp.hpp", "quarn/complex.h", "quarn/numeric.hpp"))
    problems += filter(None, [complaints(compiler, includes + ALL_NAMESPACES)])
    print(*problems, f"{len(headers)} headers", sep="\n")
    sys.exit(1 if problems or not headers else 0)


if __name__ == "__main__":
    main()
