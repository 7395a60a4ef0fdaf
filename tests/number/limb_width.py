"""A program compiled for another limb width than the library's does not link; one for the same width does, and runs."""

import argparse
import pathlib
import subprocess
import sys
import tempfile

SOURCE = """
#include <cstdio>
#include "quarn/quarnfloat.h"
int main() {
  Complex z(QuarnFloat(1) / QuarnFloat(8));
  std::puts(z.re.to_string().c_str());
}
"""


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--include", required=True)
    parser.add_argument("--library", required=True)
    parser.add_argument("--console", required=True)
    parser.add_argument("--width", type=int, required=True)
    parser.add_argument("compiler", nargs=argparse.REMAINDER, help="after --: the compiler with its options")
    options = parser.parse_args()
    folder = pathlib.Path(options.library).parent

    with tempfile.TemporaryDirectory() as scratch:
        source = pathlib.Path(scratch, "program.cpp")
        source.write_text(SOURCE)

        def build(width, program):
            command = [*options.compiler[1:], "-std=c++20", f"-DQUARN_LIMB_BITS={width}", f"-I{options.include}", source,
                       options.library, options.console, f"-Wl,-rpath,{folder}", "-o", program]
            return subprocess.run(command, capture_output=True, text=True)

        same = build(options.width, pathlib.Path(scratch, "same.exe"))
        if same.returncode != 0:
            sys.exit(f"the same width does not link:\n{same.stderr}")
        other = build(96 - options.width, pathlib.Path(scratch, "other.exe"))
        if other.returncode == 0 or "undefined reference" not in other.stderr:
            sys.exit(f"another width links, or fails otherwise:\n{other.stderr}")
        output = subprocess.run([pathlib.Path(scratch, "same.exe")], capture_output=True, text=True, check=True).stdout
        if output.strip() != "0.125":
            sys.exit(f"the program prints {output!r}")


if __name__ == "__main__":
    main()
